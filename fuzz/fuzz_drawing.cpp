// Any bytes as a drawing, DXF or DWG: they are refused with a reason, or come back byte for byte, or
// repaired so that they need no second repair; the same after a change that was taken back; and every object
// can be opened and read.
#include "acutmem.h"
#include "dbobjptr.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/dwg/drawing_reader.h"
#include "host/dxf/drawing.h"

#include <cstdlib>

namespace {

std::string written(const dxf::drawing& drawing) {
    std::string bytes;
    drawing.write([&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    return bytes;
}

void insist(bool condition) {
    if (!condition)
        std::abort();
}

void read_all(AcDbDatabase& database) {
    AcDbImpDatabase& imp = database.imp();
    for (dxf::record_id record = 0; record < imp.records().size(); ++record) {
        AcDbObject* object = nullptr;
        if (acdbOpenObject(object, imp.id(record), AcDb::kForRead) != Acad::eOk)
            continue;
        acutRelRb(object->xData());
        if (const AcDbEntity* const entity = AcDbEntity::cast(object)) {
            AcString layer;
            entity->layer(layer);
            static_cast<void>(entity->color());
            static_cast<void>(entity->blockId());
        } else if (const AcDbDictionary* const dictionary = AcDbDictionary::cast(object)) {
            static_cast<void>(dictionary->numEntries());
        }
        object->close();
    }
}

void change_layers(AcDbDatabase& database) {
    AcDbImpDatabase& imp = database.imp();
    for (const dxf::record_id entry : imp.names().entries(db::table_kind::layer)) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(imp.id(entry), AcDb::kForWrite);
        if (layer.openStatus() != Acad::eOk)
            continue;
        layer->setIsOff(!layer->isOff());
        layer->setIsLocked(true);
    }
    auto added = std::make_unique<AcDbLayerTableRecord>();
    added->setName(L"新层");
    const AcDbLayerTablePointer table(database.layerTableId(), AcDb::kForWrite);
    if (table.openStatus() == Acad::eOk && table->add(added.get()) == Acad::eOk)
        added.release()->close();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    auto drawing = dxf::drawing::from_bytes(bytes);
    if (!drawing) {
        insist(!drawing.error().empty());
        return 0;
    }
    const std::string whole = written(**drawing);
    if ((*drawing)->repairs().empty()) {
        insist(whole == bytes || dwg::is_dwg(bytes));
    } else {
        insist(!(*drawing)->messages().empty());
        const auto again = dxf::drawing::from_bytes(whole);
        insist(again && (*again)->repairs().empty() && written(**again) == whole);
    }
    AcDbDatabase database(false, true);
    database.imp().set_drawing(std::move(*drawing));
    read_all(database);
    insist(written(database.imp().drawing()) == whole);
    database.imp().history().begin_step("layers");
    change_layers(database);
    const std::string changed = written(database.imp().drawing());
    database.imp().history().undo();
    insist(written(database.imp().drawing()) == whole);
    database.imp().history().redo();
    insist(written(database.imp().drawing()) == changed);
    return 0;
}
