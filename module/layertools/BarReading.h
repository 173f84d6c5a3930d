// What the layer control bar shows of the current drawing at the moment when it is read.
#pragma once

#include "module/layertools/BarMemory.h"
#include "module/layertools/BarSystems.h"
#include "module/layertools/LayerFamilies.h"
#include "module/layertools/LayerStates.h"

// Layer toggles and rows are what the layers really are: set when all layers of the family, or of the system,
// are so; the current layer, which cannot be frozen, counts as frozen when others are. Toggles of entities,
// and rows without a layer, are what is stored.
class CBarReading {
public:
    explicit CBarReading(const std::vector<BarSystem>& systems);

    const CLayerFamilies& GetFamilies() const { return m_families; }

    bool IsSet(BarToggle toggle) const { return (m_toggles & toggle) != 0; }
    void SetEntityToggle(BarToggle toggle, bool set) {
        m_toggles = set ? m_toggles | toggle : m_toggles & ~unsigned{toggle};
    }

    struct Row {
        std::vector<AcDbObjectId> m_layers; // that the drawing has
        unsigned m_state = kRowOn;
    };
    const Row& GetRow(std::size_t row) const { return m_rows[row]; }
    void SetRow(std::size_t row, BarRowBit bit, bool set) {
        m_rows[row].m_state = set ? m_rows[row].m_state | bit : m_rows[row].m_state & ~unsigned{bit};
    }

    // Reads the layers again, which have been changed, and keeps all states in the drawing.
    void Store(const std::vector<BarSystem>& systems);

private:
    void ReadLayers();

    CLayerFamilies m_families;
    unsigned m_toggles;
    std::vector<Row> m_rows;
};
