#include "host/ed/selection_sources.h"

#include "dbdict.h"
#include "dbobjptr.h"
#include "host/ap/documents.h"
#include "host/db/core/blocks.h"
#include "host/db/core/layer_facts.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"
#include "host/ed/pick.h"
#include "host/ed/selection_set.h"
#include "host/ed/view.h"

namespace ed {

namespace {

// Every live entity of the drawing's spaces, the newest first: that is what "X" looks at. With `layers` only
// what stands on these.
template<class Take>
void for_entities_newest_first(AcDbImpDatabase& database, const std::vector<bool>* layers, Take take) {
    const dxf::record_table& records = database.records();
    for (dxf::record_id id = records.size(); id-- > 0;) {
        if (layers != nullptr && !(*layers)[records.layer(id)])
            continue;
        if (records.kind(id) != dxf::record_kind::entity || records.gone(id))
            continue;
        if (database.blocks().in_space(id) && !take(id))
            return;
    }
}

} // namespace

AcDbImpDatabase* selected_drawing() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    return database != nullptr ? &database->imp() : nullptr;
}

bool in_current_space(AcDbImpDatabase& database, dxf::record_id entity) {
    return database.id(database.records().find(database.records().owner_handle(entity))) ==
           database.self().currentSpaceId();
}

dxf::record_id last_visible(AcDbImpDatabase& database) {
    dxf::record_id found = dxf::no_record;
    picture::layer_states states(database);
    for_entities_newest_first(database, nullptr, [&](dxf::record_id id) {
        if (!in_current_space(database, id))
            return true;
        const picture::layer_state& state = states.of(id);
        const bool visible =
            dxf::group_list(database.records().text(id)).integer(db::entity_place, 60).value_or(0) != 1;
        if (state.off || state.frozen || !visible)
            return true;
        found = id;
        return false;
    });
    return found;
}

std::wstring entity_of_handle(AcDbImpDatabase& database, const std::wstring& handle, dxf::record_id& entity) {
    const dxf::record_table& records = database.records();
    entity = records.find(AcDbHandle(handle.c_str()));
    if (entity != dxf::no_record && records.kind(entity) == dxf::record_kind::part)
        entity = records.find(records.owner_handle(entity));
    if (entity == dxf::no_record || records.gone(entity))
        return L"No object has the handle " + handle + L".";
    if (records.kind(entity) != dxf::record_kind::entity)
        return L"The object with the handle " + handle + L" is no entity.";
    return {};
}

std::vector<AcDbObjectId> select_all(AcDbImpDatabase& database, const selection_filter* filter,
                                     bool whole_drawing) {
    std::vector<AcDbObjectId> found;
    picture::layer_states states(database);
    const bool judged = filter == nullptr || filter->asks_layers_alone();
    for_entities_newest_first(
        database, filter != nullptr ? filter->layers() : nullptr, [&](dxf::record_id id) {
            const bool fits = judged || filter->fits(id);
            if (fits && (whole_drawing || !(states.of(id).frozen || states.of(id).locked)))
                found.push_back(database.id(id));
            return true;
        });
    return found;
}

std::vector<AcDbObjectId> previous_in(AcDbImpDatabase& database) {
    std::vector<AcDbObjectId> left;
    for (const AcDbObjectId id : previous_selection().ids())
        if (database.record(id) != dxf::no_record && !id.isErased())
            left.push_back(id);
    return left;
}

std::optional<std::vector<AcDbObjectId>> select_group(AcDbImpDatabase& database, const std::wstring& name) {
    const AcDbObjectPointer<AcDbDictionary> root(database.id(database.drawing().ensure_root_dictionary()));
    AcDbObjectId groups;
    if (root.openStatus() != Acad::eOk || root->getAt(L"ACAD_GROUP", groups) != Acad::eOk)
        return std::nullopt;
    const AcDbObjectPointer<AcDbDictionary> dictionary(groups);
    AcDbObjectId group;
    if (dictionary.openStatus() != Acad::eOk || dictionary->getAt(name.c_str(), group) != Acad::eOk)
        return std::nullopt;
    const dxf::record_table& records = database.records();
    const dxf::group_list list(records.text(database.record(group)));
    const auto [first, last] = list.extent({"AcDbGroup"});
    std::vector<AcDbObjectId> members;
    constexpr int member_code = 340;
    for (std::size_t i = first; i < last; ++i) {
        if (list.groups()[i].code != member_code)
            continue;
        const dxf::record_id member = records.find(dxf::parse_handle(list.groups()[i].value));
        if (member != dxf::no_record && !records.gone(member) && in_current_space(database, member))
            members.push_back(database.id(member));
    }
    return members;
}

gi::region region_of(way chosen, std::vector<AcGePoint2d> points) {
    switch (chosen) {
    case way::fence:
        return gi::region::fence(std::move(points));
    case way::window_polygon:
    case way::crossing_polygon:
        return gi::region::polygon(std::move(points));
    default:
        return gi::region::box(points[0], points[1]);
    }
}

bool takes_inside_only(way chosen, const std::vector<AcGePoint2d>& points) {
    // A box that is drawn to the left crosses.
    return chosen == way::window || chosen == way::window_polygon ||
           (chosen == way::box && points[0].x <= points[1].x);
}

std::vector<AcDbObjectId> select_region(AcDbImpDatabase& database, way chosen,
                                        std::vector<AcGePoint2d> points) {
    const reach how = takes_inside_only(chosen, points) ? reach::inside : reach::inside_or_crossing;
    std::vector<AcDbObjectId> found;
    for (const dxf::record_id entity : entities_in(database, region_of(chosen, std::move(points)), how))
        found.push_back(database.id(entity));
    return found;
}

std::vector<AcDbObjectId> select_point(AcDbImpDatabase& database, const AcGePoint3d& point,
                                       const selection_mode& mode) {
    if (mode.everything && !mode.nested) {
        const double reach = pick_reach(database);
        return select_region(database, way::crossing,
                             {{point.x - reach, point.y - reach}, {point.x + reach, point.y + reach}});
    }
    const auto hit = pick(database, point);
    if (!hit)
        return {};
    return {mode.nested ? hit->innermost : database.id(hit->entity)};
}

} // namespace ed
