#include "host/db/creation/new_object.h"

#include "host/db/core/format_versions.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/object_links.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/custom/custom_objects.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

namespace db {

namespace {

std::string object_text(AcDbImpDatabase& database, const AcDbImpObject& object, std::uint64_t owner,
                        bool reactor) {
    record_text text(database);
    const auto& groups = object.groups().groups();
    text.add(0, groups.front().value);
    text.add_handle(5, database.records().new_handle());
    if (reactor) {
        text.add(102, reactor_braces);
        text.add_handle(330, owner);
        text.add(102, "}");
    }
    text.add_handle(330, owner);
    for (std::size_t i = 1; i < groups.size(); ++i)
        text.transcoded(object, groups[i]);
    return text.text();
}

} // namespace

Acad::ErrorStatus add_object(AcDbImpDatabase& database, AcDbObject& object, std::uint64_t owner, bool reactor,
                             AcDbObjectId& id) {
    if (AcDbEntity::cast(&object) != nullptr)
        return Acad::eIllegalEntityType;
    if (database.drawing().ensure_root_dictionary() == dxf::no_record)
        return Acad::eNotApplicable;
    const dxf::record_id previous = database.drawing().last_in(database.drawing().parts().objects);
    if (previous == dxf::no_record)
        return Acad::eNotApplicable;
    if (const Acad::ErrorStatus status = prepare_new(database, object); status != Acad::eOk)
        return status;
    register_applications(database, object.imp());
    const dxf::record_id record = database.records().insert_after(
        previous, object_text(database, object.imp(), owner, reactor), dxf::record_kind::object, owner);
    database.objects().adopt(object, record);
    id = database.id(record);
    database.objects().appended(object);
    return Acad::eOk;
}

} // namespace db
