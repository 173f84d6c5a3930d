#include "acgi.h"
#include "dbsymtb.h"
#include "host/db/imp_database.h"
#include "host/db/imp_object.h"
#include "host/dxf/record_header.h"

ACRX_CONS_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, 0)

AcDbBlockTableRecord::AcDbBlockTableRecord() = default;
AcDbBlockTableRecord::~AcDbBlockTableRecord() = default;

namespace {

// The BLOCK record, which holds the flags and the path of an external reference.
dxf::record_id block_begin(const AcDbImpObject& imp) {
    const dxf::record_table& records = imp.database->records();
    for (const dxf::record_id begin : imp.database->drawing().parts().block_begins)
        if (begin == imp.record || records.owner_handle(begin) == records.handle(imp.record))
            return begin;
    return dxf::no_record;
}

std::int64_t block_flags(const AcDbImpObject& imp) {
    const dxf::record_id begin = block_begin(imp);
    if (begin == dxf::no_record)
        return 0;
    return dxf::group_list(imp.database->records().text(begin)).integer({"AcDbBlockBegin"}, 70).value_or(0);
}

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
    for (const dxf::record_id entity : imp().database->entities(imp().record))
        ids.append(imp().database->id(entity));
    iterator = new AcDbBlockTableRecordIterator(std::move(ids)); // the caller's
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

// Everything that a reference to it shows.
Adesk::Boolean AcDbBlockTableRecord::subWorldDraw(AcGiWorldDraw* draw) {
    if (imp().database == nullptr)
        return true;
    for (const dxf::record_id entity : imp().database->drawn_of_block(imp().record))
        if (const auto view = imp().database->view(entity))
            draw->geometry().draw(view.get());
    return true;
}

bool AcDbBlockTableRecord::isLayout() const {
    AcString name;
    getName(name);
    return AcDbImpDatabase::is_space_name(name.kwszPtr());
}

bool AcDbBlockTableRecord::isAnonymous() const {
    return (block_flags(imp()) & anonymous_flag) != 0;
}

bool AcDbBlockTableRecord::isFromExternalReference() const {
    return (block_flags(imp()) & (external_flag | overlay_flag)) != 0;
}

bool AcDbBlockTableRecord::isFromOverlayReference() const {
    return (block_flags(imp()) & overlay_flag) != 0;
}

Acad::ErrorStatus AcDbBlockTableRecord::pathName(AcString& path) const {
    const dxf::record_id begin = block_begin(imp());
    if (begin == dxf::no_record)
        return Acad::eKeyNotFound;
    const dxf::group_list groups(imp().database->records().text(begin));
    path = imp().decode(groups.text({"AcDbBlockBegin"}, 1).value_or("")).c_str();
    return Acad::eOk;
}
