// Selections by programs: acedSSGet.
#include "acedads.h"
#include "geassign.h"
#include "host/ed/coordinates.h"
#include "host/ed/pick_first.h"
#include "host/ed/selection_prompt.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"

#include <algorithm>

namespace ed {

namespace {

constexpr int nothing_hit = 7;
constexpr int null_response = 52;

AcGePoint2d flat_world(const ads_real* user) {
    const AcGePoint3d world = to_world(asPnt3d(user));
    return {world.x, world.y};
}

// The points of a way that a program gives: two corners, or a chain. Too few for a malformed call.
std::vector<AcGePoint2d> given_points(way how, const void* first, const void* second) {
    std::vector<AcGePoint2d> points;
    if (how == way::window || how == way::crossing || how == way::box) {
        for (const void* const corner : {first, second})
            if (corner != nullptr)
                points.push_back(flat_world(static_cast<const ads_real*>(corner)));
        return points;
    }
    for (const auto* node = static_cast<const resbuf*>(first); node != nullptr; node = node->rbnext)
        points.push_back(flat_world(node->resval.rpoint));
    return points;
}

// Asks the user. RTNORM with a set that may be empty, or what ends the call.
int ask(AcDbImpDatabase& database, const selection_filter* filter, const selection_mode& mode,
        const input_rules& rules, const void* given_prompts, selection_set& selected) {
    std::wstring add_prompt = L"\nSelect objects: ";
    std::wstring remove_prompt = L"\nRemove objects: ";
    if (mode.prompts && given_prompts != nullptr) {
        const auto* const prompts = static_cast<const ACHAR* const*>(given_prompts);
        add_prompt = prompts[0];
        remove_prompt = prompts[1] != nullptr ? prompts[1] : prompts[0];
    }
    selection_prompt asking(database, filter, mode, rules, std::move(add_prompt), std::move(remove_prompt));
    const int answered = asking.run(selected);
    if (answered == RTNONE) {
        set_error_number(null_response);
        return RTERROR;
    }
    if (answered == RTNORM && selected.ids().empty()) {
        set_error_number(asking.hit_nothing() ? nothing_hit : 0);
        return RTERROR;
    }
    return answered;
}

// What a way that asks nobody selects, before the filter. Nothing for a malformed call.
std::optional<std::vector<AcDbObjectId>> select_by(AcDbImpDatabase& database, const selection_mode& mode,
                                                   const selection_filter* filter, const void* first,
                                                   const void* second) {
    switch (mode.how) {
    case way::drawing:
    case way::all:
        return select_all(database, filter, mode.how == way::drawing);
    case way::last: {
        const dxf::record_id last = last_visible(database);
        return last != dxf::no_record ? std::vector{database.id(last)} : std::vector<AcDbObjectId>();
    }
    case way::previous:
        return previous_in(database);
    case way::implied:
        return picked_first();
    case way::group:
        if (first == nullptr)
            return std::nullopt;
        return select_group(database, static_cast<const ACHAR*>(first)).value_or(std::vector<AcDbObjectId>());
    case way::ask:
        if (first == nullptr || second != nullptr)
            return std::nullopt;
        return select_point(database, to_world(asPnt3d(static_cast<const ads_real*>(first))), mode);
    case way::window:
    case way::crossing:
    case way::box:
    case way::fence:
    case way::window_polygon:
    case way::crossing_polygon: {
        auto points = given_points(mode.how, first, second);
        const bool polygon = mode.how == way::window_polygon || mode.how == way::crossing_polygon;
        if (points.size() < (polygon ? 3 : 2))
            return std::nullopt;
        return select_region(database, mode.how, std::move(points));
    }
    default:
        return std::nullopt;
    }
}

// Takes of these what there still is, fits the filter and is not locked where that is asked for.
void keep_fitting(AcDbImpDatabase& database, const selection_mode& mode, const selection_filter* filter,
                  std::vector<AcDbObjectId> found, selection_set& selected) {
    // These were judged while they were looked for, and none is there twice.
    if (!mode.unlocked && (mode.how == way::drawing || mode.how == way::all)) {
        selected = selection_set(std::move(found));
        return;
    }
    picture::layer_states states(database);
    for (const AcDbObjectId id : found) {
        const dxf::record_id record = database.record(id);
        if (record != dxf::no_record && !database.records().gone(record) &&
            (filter == nullptr || filter->fits(record)) && !(mode.unlocked && states.of(record).locked))
            selected.add(id);
    }
}

} // namespace

} // namespace ed

int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter, ads_name set) {
    const ed::input_rules rules = ed::take_input_rules();
    AcDbImpDatabase* const database = ed::selected_drawing();
    if (database == nullptr || set == nullptr)
        return RTERROR;
    std::optional<ed::selection_filter> fitting;
    if (filter != nullptr) {
        fitting = ed::selection_filter::make(*database, filter);
        if (!fitting)
            return RTREJ;
    }
    const ed::selection_filter* const chosen = fitting ? &*fitting : nullptr;
    const auto how = ed::parse_selection_mode(mode != nullptr ? mode : L"");
    if (!how)
        return RTREJ;

    ed::selection_set selected;
    const bool asks = pt2 == nullptr && ((how->how == ed::way::ask && (pt1 == nullptr || how->prompts)) ||
                                         how->how == ed::way::multiple || how->how == ed::way::point);
    if (asks) {
        ed::selection_mode asked = *how;
        if (how->how == ed::way::point) {
            asked.first = ed::way::point;
            asked.once = true;
        }
        if (how->how == ed::way::ask && !how->first)
            ed::keep_fitting(*database, *how, chosen, ed::picked_first(), selected);
        if (!selected.ids().empty()) {
            ed::command_line::instance().print(L"\n" + std::to_wstring(selected.ids().size()) + L" found");
        } else if (const int answered = ed::ask(*database, chosen, asked, rules, pt1, selected);
                   answered != RTNORM) {
            return answered;
        }
    } else {
        auto found = ed::select_by(*database, *how, chosen, pt1, pt2);
        if (!found)
            return RTREJ;
        ed::keep_fitting(*database, *how, chosen, std::move(*found), selected);
        if (selected.ids().empty()) {
            ed::set_error_number(0);
            return RTERROR;
        }
    }
    ed::previous_selection() = selected;
    return ed::name_selection_set(std::move(selected), set) ? RTNORM : RTERROR;
}

int acedSSSetKwordCallbackPtr(resbuf* (*callback)(const ACHAR* keyword)) {
    ed::selection_keyword_callback() = callback;
    return RTNORM;
}

int acedSSGetKwordCallbackPtr(resbuf* (**callback)(const ACHAR* keyword)) {
    if (callback == nullptr)
        return RTERROR;
    *callback = ed::selection_keyword_callback();
    return RTNORM;
}
