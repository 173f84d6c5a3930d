#include "module/layertools/BarReading.h"

#include "dbapserv.h"
#include "dbobjptr.h"

namespace {

// The state of several layers together, as bits of a row.
unsigned GetStateOf(const std::vector<AcDbObjectId>& layers) {
    const AcDbObjectId current = acdbHostApplicationServices()->workingDatabase()->clayer();
    bool on = true;
    bool locked = !layers.empty();
    std::size_t frozen = 0;
    std::size_t thawed = 0; // of those that could be frozen
    for (const AcDbObjectId id : layers) {
        const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk)
            continue;
        on = on && !layer->isOff();
        locked = locked && layer->isLocked();
        frozen += layer->isFrozen() ? 1U : 0U;
        thawed += !layer->isFrozen() && id != current ? 1U : 0U;
    }
    return (on ? unsigned{kRowOn} : 0U) | (frozen != 0 && thawed == 0 ? unsigned{kRowFrozen} : 0U) |
           (locked ? unsigned{kRowLocked} : 0U);
}

} // namespace

CBarReading::CBarReading(const std::vector<BarSystem>& systems) {
    const BarStates stored = LoadBarStates();
    m_toggles = stored.m_toggles;
    for (const BarSystem& system : systems)
        m_rows.push_back({m_families.GetSystemLayers(system.m_system), stored.GetRow(system.m_rowName)});
    ReadLayers();
}

void CBarReading::ReadLayers() {
    m_toggles &= kEntityToggles;
    const unsigned architecture = GetStateOf(m_families.GetLayers(LayerFamily::Architecture));
    const unsigned drainage = GetStateOf(m_families.GetLayers(LayerFamily::Drainage));
    const auto take = [&](unsigned state, BarRowBit bit, BarToggle toggle) {
        m_toggles |= (state & bit) != 0 ? unsigned{toggle} : 0U;
    };
    take(architecture, kRowOn, kArchitectureLayers);
    take(architecture, kRowFrozen, kFreezeArchitecture);
    take(architecture, kRowLocked, kLockArchitecture);
    take(drainage, kRowOn, kDrainageLayers);
    take(drainage, kRowFrozen, kFreezeDrainage);
    take(drainage, kRowLocked, kLockDrainage);
    for (Row& row : m_rows)
        row.m_state = row.m_layers.empty() ? row.m_state & kRowOn : GetStateOf(row.m_layers);
}

void CBarReading::Store(const std::vector<BarSystem>& systems) {
    ReadLayers();
    BarStates states;
    states.m_toggles = m_toggles;
    for (std::size_t i = 0; i < systems.size(); ++i)
        states.m_rows.emplace_back(systems[i].m_rowName, m_rows[i].m_state);
    SaveBarStates(states);
}
