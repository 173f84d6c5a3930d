#include "module/layertools/LayerStates.h"

#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/DrawingQueries.h"
#include "siblings/zef_kernal/ZefExport.h"

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
    AcDbObjectIdArray layers;
    KolTool::GetAllLayerIds(layers);
    return {layers.begin(), layers.end()};
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
