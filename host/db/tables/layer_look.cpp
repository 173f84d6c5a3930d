#include "host/db/tables/layer_look.h"

#include "acdblayerstatemanager.h"
#include "acutmem.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/tables/symbol_entry.h"

#include <memory>

namespace db {

namespace {

using manager = AcDbLayerStateManager;

// A layer's transparency is extended data of this application, one number.
constexpr const ACHAR* transparency_name = L"AcCmTransparency";
constexpr short whole_number = 1071;

using chain = std::unique_ptr<resbuf, int (*)(resbuf*)>;

int transparency_of(const AcDbLayerTableRecord& layer) {
    const chain data(layer.xData(transparency_name), acutRelRb);
    for (const resbuf* node = data.get(); node != nullptr; node = node->rbnext)
        if (node->restype == whole_number)
            return node->resval.rlong;
    return 0;
}

void set_transparency(AcDbLayerTableRecord& layer, int transparency) {
    register_application(*layer.imp().database, transparency_name);
    const chain data(transparency != 0 ? acutBuildList(1001, transparency_name, whole_number, transparency, 0)
                                       : acutBuildList(1001, transparency_name, 0),
                     acutRelRb);
    layer.setXData(data.get());
}

layer_look look_of(const AcDbLayerTableRecord& layer) {
    layer_look look;
    look.layer = layer.objectId();
    look.flags = (layer.isOff() ? layer_off : 0) | (layer.isFrozen() ? layer_frozen : 0) |
                 (layer.isLocked() ? layer_locked : 0) | (layer.isPlottable() ? layer_plotted : 0) |
                 (layer.VPDFLT() ? layer_frozen_in_new : 0);
    look.color = layer.color();
    look.weight = layer.lineWeight();
    look.linetype = layer.linetypeObjectId();
    look.transparency = transparency_of(layer);
    return look;
}

} // namespace

layer_look look_of(AcDbImpDatabase& drawing, dxf::record_id layer) {
    return look_of(drawing, layer, drawing.records().text(layer));
}

layer_look look_of(AcDbImpDatabase& drawing, dxf::record_id layer, std::string_view text) {
    AcDbLayerTableRecord seen; // a view of its own: the drawing's may be open
    AcDbImpObject& imp = seen.imp();
    imp.begin_new(std::string(text));
    imp.groups(); // read now: as part of the drawing it would be its record that is read
    imp.look_on(drawing, layer);
    return look_of(seen);
}

int difference(const layer_look& a, const layer_look& b) {
    constexpr std::pair<int, int> flags[] = {{layer_off, manager::kOn},
                                             {layer_frozen, manager::kFrozen},
                                             {layer_locked, manager::kLocked},
                                             {layer_plotted, manager::kPlot},
                                             {layer_frozen_in_new, manager::kNewViewport}};
    int mask = 0;
    for (const auto& [flag, of_mask] : flags)
        if (((a.flags ^ b.flags) & flag) != 0)
            mask |= of_mask;
    if (!(a.color == b.color))
        mask |= manager::kColor;
    if (a.linetype != b.linetype)
        mask |= manager::kLineType;
    if (a.weight != b.weight)
        mask |= manager::kLineWeight;
    if (a.transparency != b.transparency)
        mask |= manager::kTransparency;
    return mask;
}

Acad::ErrorStatus give_look(AcDbImpDatabase& drawing, const layer_look& look, int mask) {
    const dxf::record_id record = drawing.record(look.layer);
    if (record == dxf::no_record || drawing.records().gone(record))
        return Acad::eWasErased;
    const int wanted = difference(look_of(drawing, record), look) & mask;
    if (wanted == 0)
        return Acad::eOk;
    const AcDbObjectPointer<AcDbLayerTableRecord> layer(look.layer, AcDb::kForWrite);
    if (layer.openStatus() != Acad::eOk)
        return layer.openStatus();
    const auto is = [&](int flag) { return (look.flags & flag) != 0; };
    if ((wanted & manager::kOn) != 0)
        layer->setIsOff(is(layer_off));
    if ((wanted & manager::kFrozen) != 0)
        layer->setIsFrozen(is(layer_frozen));
    if ((wanted & manager::kLocked) != 0)
        layer->setIsLocked(is(layer_locked));
    if ((wanted & manager::kPlot) != 0)
        layer->setIsPlottable(is(layer_plotted));
    if ((wanted & manager::kNewViewport) != 0)
        layer->setVPDFLT(is(layer_frozen_in_new));
    if ((wanted & manager::kColor) != 0)
        layer->setColor(look.color);
    if ((wanted & manager::kLineType) != 0 && !look.linetype.isErased())
        layer->setLinetypeObjectId(look.linetype);
    if ((wanted & manager::kLineWeight) != 0)
        layer->setLineWeight(look.weight);
    if ((wanted & manager::kTransparency) != 0)
        set_transparency(*layer.object(), look.transparency);
    return Acad::eOk;
}

} // namespace db
