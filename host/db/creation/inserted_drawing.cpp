#include "host/db/creation/inserted_drawing.h"

#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_block.h"
#include "host/db/creation/transfer.h"
#include "sys/folders.h"

namespace db {

namespace {

constexpr dxf::group_place begin_place{"AcDbBlockBegin"};

void empty_block(AcDbImpDatabase& drawing, dxf::record_id block) {
    for (const dxf::record_id entity : drawing.blocks().entities(block))
        if (!drawing.records().gone(entity))
            drawing.objects().set_erased(entity, true);
}

} // namespace

base::result<inserted_drawing> insert_drawing(AcDbImpDatabase& drawing, const std::filesystem::path& file,
                                              const std::wstring& name) {
    AcDbDatabase source(false, true);
    if (auto read = source.imp().read(sys::from_path(file)); !read)
        return read.why();
    inserted_drawing made;
    const dxf::record_id known = drawing.names().find(table_kind::block, name);
    made.redefined = known != dxf::no_record;
    if (made.redefined) {
        made.block = drawing.id(known);
        const AcDbObjectPointer<AcDbBlockTableRecord> block(made.block, AcDb::kForWrite);
        if (block.openStatus() != Acad::eOk || block->isLayout() || block->isFromExternalReference())
            return base::failure{L"The block \"" + name + L"\" can not be redefined."};
        empty_block(drawing, known);
        block->setOrigin(insertion_base(source.imp()));
    } else {
        auto block = std::make_unique<AcDbBlockTableRecord>();
        const AcDbBlockTablePointer table(drawing.self().blockTableId(), AcDb::kForWrite);
        if (block->setName(name.c_str()) != Acad::eOk ||
            block->setOrigin(insertion_base(source.imp())) != Acad::eOk || table.openStatus() != Acad::eOk ||
            table->add(made.block, block.get()) != Acad::eOk)
            return base::failure{L"The drawing can not hold a block \"" + name + L"\"."};
        block.release()->close(); // the table's now
    }
    transfer copying(source.imp(), drawing);
    copying.copy_entities(source.imp().blocks().find(ACDB_MODEL_SPACE), made.block);
    made.told = copying.told();
    return made;
}

Acad::ErrorStatus add_reference_block(AcDbImpDatabase& drawing, const std::wstring& name,
                                      const std::wstring& path, bool overlay, AcDbObjectId& id) {
    constexpr std::int64_t external = 4;
    constexpr std::int64_t overlaid = 8;
    auto block = std::make_unique<AcDbBlockTableRecord>();
    if (const Acad::ErrorStatus status = block->setName(name.c_str()); status != Acad::eOk)
        return status;
    block->imp().edit().set_integer(begin_place, 70, overlay ? external | overlaid : external);
    block->imp().edit().set_text(begin_place, 1, block->imp().encode(path));
    const AcDbBlockTablePointer table(drawing.self().blockTableId(), AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk)
        return table.openStatus();
    const Acad::ErrorStatus status = table->add(id, block.get());
    if (status == Acad::eOk)
        block.release()->close(); // the table's now
    return status;
}

} // namespace db
