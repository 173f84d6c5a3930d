#include "acgi.h"
#include "acutmem.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/fields.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/tables/draw_order.h"
#include "host/db/tables/spaces.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <algorithm>

ACRX_CONS_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, 0)

AcDbBlockTableRecord::AcDbBlockTableRecord() {
    imp().begin_as(db::new_block_text);
}

namespace {

constexpr int begin_order[] = {2, 70, 10, 20, 30, 3, 1, 4};
constexpr dxf::group_place begin_place{"AcDbBlockBegin", begin_order};

// The BLOCK record, which holds the flags, the base point and the path of an external reference.
dxf::record_id block_begin(const AcDbImpObject& imp) {
    return imp.database != nullptr ? imp.database->blocks().begin_of(imp.record) : dxf::no_record;
}

// Its groups; those of a new block are with the record's own.
dxf::group_list begin_groups(const AcDbImpObject& imp) {
    const dxf::record_id begin = block_begin(imp);
    return begin != dxf::no_record ? dxf::group_list(imp.database->records().text(begin)) : dxf::group_list();
}

template<class Change>
void change_begin(AcDbImpObject& imp, Change change) {
    if (imp.database == nullptr) {
        change(imp.edit());
        return;
    }
    dxf::group_list groups = begin_groups(imp);
    change(groups);
    if (!groups.changed())
        return;
    imp.database->records().replace(block_begin(imp), groups.write(imp.database->drawing().style()));
    imp.database->objects().content_changed(imp.record);
}

std::int64_t block_flags(const AcDbImpObject& imp) {
    const dxf::record_id begin = block_begin(imp);
    if (begin == dxf::no_record)
        return 0;
    return dxf::group_list(imp.database->records().text(begin)).integer({"AcDbBlockBegin"}, 70).value_or(0);
}

constexpr int record_order[] = {2, 340, 70, 280, 281};
constexpr dxf::group_place record_place{"AcDbBlockTableRecord", record_order};

constexpr std::int64_t anonymous_flag = 1;
constexpr std::int64_t external_flag = 4;
constexpr std::int64_t overlay_flag = 8;

} // namespace

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const {
    assertReadEnabled();
    iterator = nullptr;
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    AcDbObjectIdArray ids;
    const auto [database, block] = imp().database->references().place(imp().record);
    for (const dxf::record_id entity : database->blocks().entities(block))
        ids.append(database->id(entity));
    iterator = new AcDbBlockTableRecordIterator(std::move(ids)); // the caller's
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

// Everything that a reference to it shows.
Adesk::Boolean AcDbBlockTableRecord::subWorldDraw(AcGiWorldDraw* draw) {
    if (imp().database == nullptr)
        return true;
    const auto [database, block] = imp().database->references().place(imp().record);
    for (const dxf::record_id entity : db::drawn_in_order(*database, block)) {
        if (draw->regenAbort())
            break;
        if (const auto view = database->objects().view(entity))
            draw->geometry().draw(view.get());
    }
    return true;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}

bool AcDbBlockTableRecord::isLayout() const {
    AcString name;
    getName(name);
    return db::blocks::is_space_name(name.kwszPtr());
}

VALUE_GETTER(AcDbBlockTableRecord, getLayoutId,
             imp().database != nullptr ? imp().database->id(db::layout_of(*imp().database, imp().record))
                                       : AcDbObjectId::kNull)

AcGePoint3d AcDbBlockTableRecord::origin() const {
    assertReadEnabled();
    if (imp().database != nullptr)
        if (const auto base = imp().database->references().base_point(imp().record))
            return *base;
    const auto point = [](const dxf::group_list& groups) {
        return AcGePoint3d(groups.real(begin_place, 10).value_or(0.0),
                           groups.real(begin_place, 20).value_or(0.0),
                           groups.real(begin_place, 30).value_or(0.0));
    };
    return imp().database == nullptr ? point(imp().groups()) : point(begin_groups(imp()));
}

Acad::ErrorStatus AcDbBlockTableRecord::setOrigin(const AcGePoint3d& origin) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database != nullptr && block_begin(imp()) == dxf::no_record)
        return Acad::eNotApplicable;
    change_begin(imp(), [&](dxf::group_list& groups) {
        groups.set_real(begin_place, 10, origin.x);
        groups.set_real(begin_place, 20, origin.y);
        if (origin.z != 0.0 || groups.find(begin_place, 30) != dxf::group_list::npos)
            groups.set_real(begin_place, 30, origin.z);
    });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::comments(ACHAR*& text) const {
    assertReadEnabled();
    const dxf::group_list begin = begin_groups(imp());
    const dxf::group_list& groups = imp().database == nullptr ? imp().groups() : begin;
    return acutNewString(imp().decode(groups.text(begin_place, 4).value_or("")).c_str(), text);
}

Acad::ErrorStatus AcDbBlockTableRecord::setComments(const ACHAR* text) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database != nullptr &&
        (block_begin(imp()) == dxf::no_record || imp().database->drawing().version() < db::release_13))
        return Acad::eNotApplicable;
    change_begin(imp(), [&](dxf::group_list& groups) {
        if (text == nullptr || *text == 0)
            groups.remove(begin_place, 4);
        else
            groups.set_text(begin_place, 4, imp().encode(text));
    });
    return Acad::eOk;
}

VALUE_GETTER(AcDbBlockTableRecord, explodable, imp().groups().integer(record_place, 280).value_or(1) != 0)

Acad::ErrorStatus AcDbBlockTableRecord::setExplodable(bool explodable) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database != nullptr && imp().database->drawing().version() < db::release_2007)
        return Acad::eNotApplicable;
    if (this->explodable() != explodable)
        imp().edit().set_integer(record_place, 280, explodable ? 1 : 0);
    return Acad::eOk;
}

bool AcDbBlockTableRecord::hasAttributeDefinitions() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return false;
    const dxf::record_table& records = imp().database->records();
    const auto entities = imp().database->blocks().entities(imp().record);
    return std::any_of(entities.begin(), entities.end(), [&](dxf::record_id entity) {
        return !records.gone(entity) && records.type_name(entity) == "ATTDEF";
    });
}

Acad::ErrorStatus AcDbBlockTableRecord::getBlockReferenceIds(AcDbObjectIdArray& ids, bool /*directOnly*/,
                                                             bool /*forceValidity*/) const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    AcDbImpDatabase& database = *imp().database;
    const dxf::record_table& records = database.records();
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.type(id) == dxf::type_insert && records.kind(id) == dxf::record_kind::entity &&
            !records.gone(id) &&
            database.blocks().find_bytes(dxf::value_of(records.text(id), 2)) == imp().record)
            ids.append(database.id(id));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::subErase(bool erasing) {
    return erasing && isLayout() ? Acad::eCannotBeErasedByCaller : AcDbSymbolTableRecord::subErase(erasing);
}

bool AcDbBlockTableRecord::isAnonymous() const {
    if (imp().database == nullptr) {
        AcString name;
        getName(name);
        return name.kwszPtr()[0] == L'*';
    }
    return (block_flags(imp()) & anonymous_flag) != 0;
}

bool AcDbBlockTableRecord::isFromExternalReference() const {
    return (block_flags(imp()) & (external_flag | overlay_flag)) != 0;
}

bool AcDbBlockTableRecord::isFromOverlayReference() const {
    return (block_flags(imp()) & overlay_flag) != 0;
}

AcDb::XrefStatus AcDbBlockTableRecord::xrefStatus() const {
    if (!isFromExternalReference())
        return AcDb::kXrfNotAnXref;
    switch (imp().database->references().state(imp().record)) {
    case db::reference_state::loaded:
        return AcDb::kXrfResolved;
    case db::reference_state::not_found:
        return AcDb::kXrfFileNotFound;
    case db::reference_state::left_out:
        return AcDb::kXrfUnreferenced;
    case db::reference_state::none:
    case db::reference_state::unreadable:
    case db::reference_state::circular:
        break;
    }
    return AcDb::kXrfUnresolved;
}

AcDbDatabase* AcDbBlockTableRecord::xrefDatabase(bool /*incUnres*/) const {
    assertReadEnabled();
    AcDbImpDatabase* const loaded =
        imp().database != nullptr ? imp().database->references().database(imp().record) : nullptr;
    return loaded != nullptr ? &loaded->self() : nullptr;
}

Acad::ErrorStatus AcDbBlockTableRecord::pathName(AcString& path) const {
    const dxf::record_id begin = block_begin(imp());
    if (begin == dxf::no_record)
        return Acad::eKeyNotFound;
    const dxf::group_list groups(imp().database->records().text(begin));
    path = imp().decode(groups.text({"AcDbBlockBegin"}, 1).value_or("")).c_str();
    return Acad::eOk;
}
