// make_objects DRAWING OUT: puts something new of each kind into a drawing: a layer, a block with a line, a
// reference to it, a circle in each space, an extension dictionary, an xrecord. What the drawing's version
// can not hold is left out.
#include "acutmem.h"
#include "base/utf.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "sys/folders.h"

#include <cstdio>
#include <cstdlib>

namespace {

void expect(Acad::ErrorStatus status, const char* what) {
    if (status == Acad::eOk)
        return;
    std::fprintf(stderr, "make_objects: %s: %s\n", what, base::narrow(acadErrorStatusText(status)).c_str());
    std::exit(1);
}

template<class Record>
AcDbObjectId add_record(AcDbDatabase& database, const wchar_t* name, const char* what) {
    AcDbObjectId id;
    typename Record::TableType* table = nullptr;
    expect(database.getSymbolTable(table, AcDb::kForWrite), what);
    auto* const record = new Record; // the database's, once it is added
    expect(record->setName(name), what);
    expect(table->add(id, record), what);
    record->close();
    table->close();
    return id;
}

AcDbObjectId append(AcDbObjectId block, AcDbEntity* entity, const char* what) {
    AcDbObjectId id;
    AcDbBlockTableRecordPointer record(block, AcDb::kForWrite);
    expect(record.openStatus(), what);
    expect(record->appendAcDbEntity(id, entity), what);
    entity->close();
    return id;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_objects DRAWING OUT\n");
        return 2;
    }
    AcDbDatabase database(false, true);
    if (const auto read = database.imp().read(sys::from_path(argv[1])); !read) {
        std::fprintf(stderr, "make_objects: %s\n", base::narrow(read.error()).c_str());
        return 3;
    }
    const AcDbObjectId layer = add_record<AcDbLayerTableRecord>(database, L"ZEF_NEW", "layer");
    const AcDbObjectId block = add_record<AcDbBlockTableRecord>(database, L"ZEF_NEW_BLOCK", "block");
    append(block, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)), "line in a block");
    const AcDbObjectId model = database.imp().id(database.imp().blocks().find(ACDB_MODEL_SPACE));
    for (const dxf::record_id space : database.imp().names().entries(db::table_kind::block)) {
        if (!db::blocks::is_space_name(database.imp().names().name_of(space)))
            continue;
        auto* const circle = new AcDbCircle(AcGePoint3d(1, 2, 0), AcGeVector3d::kZAxis, 3.0);
        expect(circle->setLayer(layer), "layer of a circle");
        resbuf* const data = acutBuildList(1001, L"ZEF_NEW", 1000, L"a pipe", 0);
        circle->setXData(data);
        acutRelRb(data);
        append(database.imp().id(space), circle, "circle in a space");
    }
    const AcDbObjectId reference =
        append(model, new AcDbBlockReference(AcGePoint3d(5, 5, 0), block), "block reference");
    if (database.imp().drawing().version() >= 1012) {
        AcDbObjectPointer<AcDbEntity> entity(reference, AcDb::kForWrite);
        expect(entity->createExtensionDictionary(), "extension dictionary");
        AcDbDictionaryPointer dictionary(entity->extensionDictionary(), AcDb::kForWrite);
        AcDbObjectId id;
        auto* const record = new AcDbXrecord;
        expect(dictionary->setAt(L"ZEF_NEW", record, id), "xrecord");
        record->close();
    }
    expect(database.dxfOut(sys::from_path(argv[2]).c_str()), "saving");
    return 0;
}
