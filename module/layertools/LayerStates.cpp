#include "module/layertools/LayerStates.h"

#include "dbapserv.h"
#include "dbobjptr.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <memory>

namespace {

bool HasState(const AcDbLayerTableRecord& layer, LayerState state) {
    switch (state) {
    case LayerState::Off:
        return layer.isOff();
    case LayerState::Locked:
        return layer.isLocked();
    default:
        return layer.isFrozen();
    }
}

} // namespace

std::vector<AcDbObjectId> GetAllLayerIds() {
    std::vector<AcDbObjectId> layers;
    const AcDbLayerTablePointer table(acdbHostApplicationServices()->workingDatabase()->layerTableId());
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() != Acad::eOk || table->newIterator(made) != Acad::eOk)
        return layers;
    for (const std::unique_ptr<AcDbSymbolTableIterator> each(made); !each->done(); each->step()) {
        AcDbObjectId layer;
        if (each->getRecordId(layer) == Acad::eOk)
            layers.push_back(layer);
    }
    return layers;
}

CString GetLayerName(AcDbObjectId layer) {
    const AcDbObjectPointer<AcDbLayerTableRecord> record(layer, AcDb::kForRead);
    AcString name;
    if (record.openStatus() == Acad::eOk)
        record->getName(name);
    return name.kACharPtr();
}

LayerChange SetLayerState(AcDbObjectId layer, LayerState state, bool wanted) {
    AcDbObjectPointer<AcDbLayerTableRecord> record(layer, AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return LayerChange::NotOpened;
    if (HasState(*record.object(), state) == wanted)
        return LayerChange::WasSo;
    if (record->upgradeOpen() != Acad::eOk)
        return LayerChange::NotOpened;
    Acad::ErrorStatus status = Acad::eOk;
    switch (state) {
    case LayerState::Off:
        record->setIsOff(wanted);
        break;
    case LayerState::Locked:
        record->setIsLocked(wanted);
        break;
    case LayerState::Frozen:
        status = record->setIsFrozen(wanted);
        break;
    }
    return status == Acad::eOk ? LayerChange::Done : LayerChange::Refused;
}

LayerChange SetLayerState(const wchar_t* layerName, LayerState state, bool wanted) {
    return SetLayerState(ZefExport::GetLayerIdFromString(layerName), state, wanted);
}
