// Entities of the current drawing in the order in which they came. Whoever adds them sees to it that none is
// there twice.
#pragma once

#include "dbid.h"
#include "siblings/zef_kernal/KernalPort.h"

#include <cstddef>
#include <utility>
#include <vector>

class ZEF_KERNAL_PORT TEntitySet {
public:
    TEntitySet() = default;
    explicit TEntitySet(std::vector<AcDbObjectId> entities) : m_entities(std::move(entities)) {}

    void Add(AcDbObjectId entity) { m_entities.push_back(entity); }
    int GetCount() const { return static_cast<int>(m_entities.size()); }
    // From 0 to GetCount() - 1.
    AcDbObjectId GetAt(int index) const { return m_entities[static_cast<std::size_t>(index)]; }

    auto begin() const { return m_entities.begin(); }
    auto end() const { return m_entities.end(); }

    // Has the display draw them anew.
    void UpdateGraphic() const;

private:
    std::vector<AcDbObjectId> m_entities;
};
