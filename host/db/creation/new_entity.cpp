#include "host/db/creation/new_entity.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "host/db/core/blocks.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/lines_alike.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/custom_objects.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/db/tables/viewport_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <utility>

namespace db {

namespace {

bool is_part(std::string_view type) {
    return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
}

// Whether a linetype needs no record.
bool is_built_in_linetype(std::wstring_view name) {
    return base::equal_no_case(name, L"ByLayer") || base::equal_no_case(name, L"ByBlock") ||
           base::equal_no_case(name, L"Continuous");
}

// The record behind which the entities of a block go on; no_record when there is no such place.
dxf::record_id end_of_block(AcDbImpDatabase& database, dxf::record_id block, const std::wstring& name) {
    // The sheet that is current, or was last, has its entities where model space has them.
    if (base::equal_no_case(name, ACDB_MODEL_SPACE) || base::equal_no_case(name, ACDB_PAPER_SPACE)) {
        const dxf::record_id section = database.drawing().ensure_section("ENTITIES");
        return section != dxf::no_record ? database.drawing().last_in(section) : dxf::no_record;
    }
    const dxf::record_id begin = database.blocks().begin_of(block);
    return begin != dxf::no_record ? database.drawing().last_in(begin) : dxf::no_record;
}

bool is_external(const AcDbImpDatabase& database, dxf::record_id block) {
    const dxf::record_id begin = database.blocks().begin_of(block);
    constexpr std::int64_t external_flags = 4 | 8;
    if (begin == dxf::no_record)
        return false;
    const auto flags = base::parse_integer(dxf::value_of(database.records().text(begin), 70));
    return (flags.value_or(0) & external_flags) != 0;
}

// A copy from another drawing may name what this one does not have.
void keep_to_known_names(AcDbImpDatabase& database, AcDbImpObject& entity) {
    const auto named = [&](int code) {
        return entity.decode(dxf::trimmed(entity.groups().text(entity_place, code).value_or("")));
    };
    const std::wstring layer = named(8);
    if (const dxf::record_id current = database.layers().current();
        current != dxf::no_record && !base::equal_no_case(layer, L"0") &&
        database.names().find(table_kind::layer, layer) == dxf::no_record)
        entity.edit().set_text(entity_place, 8, entity.encode(database.names().name_of(current)));
    const std::wstring linetype = named(6);
    if (!linetype.empty() && !is_built_in_linetype(linetype) &&
        database.names().find(table_kind::linetype, linetype) == dxf::no_record)
        entity.edit().remove(entity_place, 6);
}

// Gives an entity its record behind another one.
dxf::record_id insert(AcDbImpDatabase& database, dxf::record_id previous, AcDbEntity& entity,
                      dxf::record_kind kind, std::uint64_t owner, std::uint64_t owner_written,
                      bool on_paper) {
    AcDbImpObject& imp = entity.imp();
    give_defaults(database, imp, false);
    keep_to_known_names(database, imp);
    register_applications(database, imp);
    record_text text(database);
    text.head(dxf::trimmed(imp.groups().groups().front().value), owner_written);
    add_data(text, imp, on_paper);
    const dxf::record_id record = database.records().insert_after(previous, text.text(), kind, owner);
    database.objects().adopt(entity, record);
    save_graphics(entity);
    return record;
}

void tell_added(AcDbImpDatabase& database, dxf::record_id container, AcDbEntity& entity, AcDbObjectId& id) {
    id = entity.objectId();
    database.objects().content_changed(container);
    database.objects().appended(entity);
}

// The end of a sequence of parts, with layer and space of the entity.
void end_sequence(AcDbImpDatabase& database, dxf::record_id previous, dxf::record_id entity) {
    const dxf::group_list groups(database.records().text(entity));
    record_text text(database);
    text.head("SEQEND", database.records().handle(entity));
    if (database.drawing().version() >= release_13)
        text.add(100, "AcDbEntity");
    if (groups.integer(entity_place, 67).value_or(0) == 1)
        text.add(67, "1");
    text.add(8, groups.text(entity_place, 8).value_or("0"));
    database.records().insert_after(previous, text.text(), dxf::record_kind::part,
                                    database.records().handle(entity));
}

// Says in an entity's record that parts follow it. Polylines say so from the beginning.
void announce_parts(AcDbImpDatabase& database, dxf::record_id entity) {
    if (database.records().type(entity) != dxf::type_insert)
        return;
    constexpr int flag = 66;
    static constexpr int order[] = {5, 102, 330, 67, 8, 6, 62, 370, 48, 60, flag};
    static constexpr dxf::group_place place{"AcDbBlockReference", order};
    if (AcDbImpObject* const open = database.objects().opened(entity)) {
        open->edit().set_integer(place, flag, 1);
        return;
    }
    dxf::group_list groups(database.records().text(entity));
    groups.set_integer(place, flag, 1);
    if (groups.changed())
        database.records().replace(entity, groups.write(database.drawing().style()));
}

} // namespace

void add_data(record_text& text, const AcDbImpObject& object, bool on_paper) {
    const auto& groups = object.groups().groups();
    const std::string_view type = dxf::trimmed(groups.front().value);
    const int version = text.version();
    bool marked = !on_paper; // the flag of paper space stands first in what all entities have in common
    const auto mark = [&] {
        if (!marked)
            text.add(67, "1");
        marked = true;
    };
    if (version < release_13)
        mark();
    for (std::size_t i = 1; i < groups.size(); ++i) {
        if (groups[i].code == 67 || !knows_group(version, type, groups[i].code))
            continue;
        constexpr int layer = 8;
        if (groups[i].code == layer)
            text.layer(object, groups[i]);
        else
            text.transcoded(object, groups[i]);
        if (groups[i].code == 100)
            mark();
    }
}

void give_defaults(AcDbImpDatabase& database, AcDbImpObject& entity, bool all) {
    const auto wanted = [&](unsigned what) { return all || (entity.given & what) == 0; };
    const auto header = [&](std::string_view variable) { return database.drawing().header_value(variable); };
    if (wanted(AcDbImpObject::given_layer))
        if (const dxf::record_id layer = database.layers().current(); layer != dxf::no_record)
            entity.edit().set_text(entity_place, 8, entity.encode(database.names().name_of(layer)));
    if (wanted(AcDbImpObject::given_color)) {
        AcCmColor color;
        color.setColorIndex(AcCmColor::kACIbyLayer);
        const auto index = base::parse_integer(header("$CECOLOR").value_or("256")).value_or(256);
        if (index >= AcCmColor::kACIbyBlock && index <= AcCmColor::kACIbyLayer)
            color.setColorIndex(static_cast<Adesk::UInt16>(index));
        if (color.isByLayer())
            entity.edit().remove(entity_place, 62);
        else
            write_color(entity, entity_place, color);
    }
    if (wanted(AcDbImpObject::given_linetype)) {
        const std::wstring name = database.drawing().codec().decode(header("$CELTYPE").value_or("ByLayer"));
        if (base::equal_no_case(name, L"ByLayer"))
            entity.edit().remove(entity_place, 6);
        else
            entity.edit().set_text(entity_place, 6, entity.encode(name));
    }
    if (wanted(AcDbImpObject::given_scale)) {
        const double scale = dxf::leading_real(header("$CELTSCALE").value_or("1")).value_or(1.0);
        if (scale > 0.0 && scale != 1.0)
            entity.edit().set_real(entity_place, 48, scale);
        else
            entity.edit().remove(entity_place, 48);
    }
    if (wanted(AcDbImpObject::given_weight)) {
        const auto weight = base::parse_integer(header("$CELWEIGHT").value_or("-1")).value_or(-1);
        if (weight != AcDb::kLnWtByLayer && is_line_weight(static_cast<int>(weight)))
            entity.edit().set_integer(entity_place, 370, weight);
        else
            entity.edit().remove(entity_place, 370);
    }
    entity.given = ~0u;
}

Acad::ErrorStatus add_entity(AcDbImpDatabase& database, dxf::record_id block, AcDbEntity& entity,
                             AcDbObjectId& id) {
    AcDbImpObject& imp = entity.imp();
    const std::shared_ptr<lines_alike> alike = imp.alike();
    if (alike != nullptr) {
        if (const dxf::record_id record = alike->add(database, block, imp); record != dxf::no_record) {
            database.objects().adopt(entity, record);
            tell_added(database, block, entity, id);
            return Acad::eOk;
        }
    }
    if (is_external(database, block))
        return Acad::eIsXRefObject;
    const std::wstring name = database.names().name_of(block);
    const dxf::record_id previous = end_of_block(database, block, name);
    if (previous == dxf::no_record)
        return Acad::eNotApplicable;
    if (const Acad::ErrorStatus status = prepare_new(database, entity); status != Acad::eOk)
        return status;
    const std::string_view type = dxf::trimmed(imp.groups().groups().front().value);
    if (is_part(type) || first_version_of(type) > database.drawing().version())
        return Acad::eIllegalEntityType;
    const bool on_paper = base::folded(name).starts_with(L"*paper_space");
    // What stands for a space that the file does not tell of is no owner that could be named.
    const std::uint64_t owner = database.records().handle(block);
    const bool named = database.records().kind(block) != dxf::record_kind::implied;
    auto parts = std::exchange(imp.parts, {});
    const unsigned given = imp.given; // what it is given now its parts are given too
    const dxf::record_id record =
        insert(database, previous, entity, dxf::record_kind::entity, owner, named ? owner : 0, on_paper);
    if (database.records().type(record) ==
        dxf::type_polyline) // vertices have an end also when there are none
        end_sequence(database, record, record);
    for (auto& part : parts) {
        part->imp().given &= given;
        AcDbObjectId part_id;
        if (add_part(database, record, static_cast<AcDbEntity&>(*part), part_id) == Acad::eOk)
            part.release()->close();
    }
    if (on_paper && database.records().type(record) == dxf::type_viewport)
        begin_viewport(imp);
    if (alike != nullptr)
        alike->added(database, block, record);
    tell_added(database, block, entity, id);
    return Acad::eOk;
}

Acad::ErrorStatus add_part(AcDbImpDatabase& database, dxf::record_id owner, AcDbEntity& part,
                           AcDbObjectId& id) {
    const dxf::record_table& records = database.records();
    if (!is_part(dxf::trimmed(part.imp().groups().groups().front().value)) ||
        records.kind(owner) != dxf::record_kind::entity)
        return Acad::eIllegalEntityType;
    dxf::record_id previous = owner;
    dxf::record_id next = records.next(owner);
    while (next != dxf::no_record && records.kind(next) == dxf::record_kind::part &&
           records.type(next) != dxf::type_seqend) {
        previous = next;
        next = records.next(next);
    }
    const bool ended = next != dxf::no_record && records.type(next) == dxf::type_seqend;
    if (!ended) {
        announce_parts(database, owner);
        end_sequence(database, previous, owner);
    } else if (records.gone(next)) {
        announce_parts(database, owner);
        database.records().set_gone(next, false);
    }
    const bool on_paper = dxf::group_list(records.text(owner)).integer(entity_place, 67).value_or(0) == 1;
    const std::uint64_t handle = records.handle(owner);
    insert(database, previous, part, dxf::record_kind::part, handle, handle, on_paper);
    tell_added(database, owner, part, id);
    return Acad::eOk;
}

} // namespace db
