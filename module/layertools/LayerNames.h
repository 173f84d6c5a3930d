// Names of layers, as commands gather them.
#pragma once

#include "siblings/zef_kernal/TPickEntSet.h"

#include <string>
#include <unordered_set>
#include <vector>

// Names of layers in the order in which they came, each once; names that differ in case only are one.
class CLayerNames {
public:
    // Those of picked entities.
    explicit CLayerNames(const TPickEntSet& picked);

    // An empty name is passed over.
    void Add(const CString& name);
    bool Holds(const CString& name) const;

    auto begin() const { return m_names.begin(); }
    auto end() const { return m_names.end(); }

private:
    std::vector<CString> m_names;
    std::unordered_set<std::wstring> m_folded;
};
