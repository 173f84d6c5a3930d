// Picks and selections: acedEntSel and acedSSGet.
#include "acdbads.h"
#include "acedads.h"
#include "base/case_fold.h"
#include "base/utf.h"
#include "dbsymtb.h"
#include "geassign.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/db/properties.h"
#include "host/ed/expression.h"
#include "host/ed/layer_states.h"
#include "host/ed/pick.h"
#include "host/ed/prompts.h"
#include "host/ed/selection_filter.h"
#include "host/ed/selection_set.h"
#include "host/ed/system_variables.h"

#include <algorithm>
#include <optional>

namespace ed {

namespace {

constexpr int nothing_hit = 7;
constexpr int null_response = 52;

AcDbImpDatabase* current() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    return database != nullptr ? &database->imp() : nullptr;
}

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
        if (database.in_space(id) && !take(id))
            return;
    }
}

bool in_current_space(AcDbImpDatabase& database, dxf::record_id entity) {
    return database.id(database.records().find(database.records().owner_handle(entity))) ==
           database.self().currentSpaceId();
}

dxf::record_id last_visible(AcDbImpDatabase& database) {
    dxf::record_id found = dxf::no_record;
    layer_states states(database);
    for_entities_newest_first(database, nullptr, [&](dxf::record_id id) {
        if (!in_current_space(database, id))
            return true;
        const layer_state& state = states.of(id);
        const bool visible =
            dxf::group_list(database.records().text(id)).integer(db::entity_place, 60).value_or(0) != 1;
        if (state.off || state.frozen || !visible)
            return true;
        found = id;
        return false;
    });
    return found;
}

// The main entity with a handle: of a part, the entity that it belongs to. An empty reason when there is one.
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

// All that a filter fits, of the whole drawing or of what is neither frozen nor locked.
selection_set select_all(AcDbImpDatabase& database, const selection_filter* filter, bool whole_drawing) {
    std::vector<AcDbObjectId> found;
    layer_states states(database);
    const bool judged = filter == nullptr || filter->asks_layers_alone();
    for_entities_newest_first(
        database, filter != nullptr ? filter->layers() : nullptr, [&](dxf::record_id id) {
            const bool fits = judged || filter->fits(id);
            if (fits && (whole_drawing || !(states.of(id).frozen || states.of(id).locked)))
                found.push_back(database.id(id));
            return true;
        });
    return selection_set(std::move(found));
}

// What is left of the set that was selected last, when that was in this drawing.
std::vector<AcDbObjectId> previous_in(AcDbImpDatabase& database) {
    std::vector<AcDbObjectId> left;
    for (const AcDbObjectId id : previous_selection().ids())
        if (database.record(id) != dxf::no_record && !id.isErased())
            left.push_back(id);
    return left;
}

// The ways to select at a prompt, each by its letters or its whole word.
enum class way {
    last,
    previous,
    all,
    remove,
    add,
    window,
    crossing,
    box,
    fence,
    window_polygon,
    crossing_polygon
};

std::optional<way> way_by_name(std::wstring_view answer) {
    struct row {
        std::wstring_view letters;
        std::wstring_view word;
        way means;
    };
    static constexpr row rows[] = {{L"L", L"LAST", way::last},
                                   {L"P", L"PREVIOUS", way::previous},
                                   {L"ALL", L"ALL", way::all},
                                   {L"R", L"REMOVE", way::remove},
                                   {L"A", L"ADD", way::add},
                                   {L"W", L"WINDOW", way::window},
                                   {L"C", L"CROSSING", way::crossing},
                                   {L"BOX", L"BOX", way::box},
                                   {L"F", L"FENCE", way::fence},
                                   {L"WP", L"WPOLYGON", way::window_polygon},
                                   {L"CP", L"CPOLYGON", way::crossing_polygon}};
    if (answer.starts_with(L"_"))
        answer.remove_prefix(1);
    for (const row& row : rows)
        if (base::equal_no_case(answer, row.letters) || base::equal_no_case(answer, row.word))
            return row.means;
    return std::nullopt;
}

// Asks for a point: RTNORM, RTNONE for Enter where that is allowed, RTCAN.
int ask_point(const wchar_t* prompt, bool enter_ends, AcGePoint2d& point) {
    return ask_value(prompt, {enter_ends ? 0 : RSG_NONULL, {}}, answer_rule::word,
                     [&](const answer& given) -> std::wstring {
                         const auto read = parse_point(given.text);
                         if (!read)
                             return L"Invalid point.";
                         point = {(*read)[0], (*read)[1]};
                         return {};
                     });
}

// Asks for what a way wants, and gives the entities of the current space that it takes. RTNORM, RTCAN.
int select_by_region(AcDbImpDatabase& database, way chosen, std::vector<AcDbObjectId>& picked) {
    std::vector<AcGePoint2d> points(1);
    const bool two_corners = chosen == way::window || chosen == way::crossing || chosen == way::box;
    const wchar_t* const first = two_corners            ? L"Specify first corner: "
                                 : chosen == way::fence ? L"Specify first fence point: "
                                                        : L"First polygon point: ";
    if (const int answered = ask_point(first, false, points[0]); answered != RTNORM)
        return answered;
    if (two_corners) {
        AcGePoint2d opposite;
        if (const int answered = ask_point(L"Specify opposite corner: ", false, opposite); answered != RTNORM)
            return answered;
        points.push_back(opposite);
    } else {
        for (;;) {
            AcGePoint2d next;
            const int answered = ask_point(chosen == way::fence ? L"Specify next fence point: "
                                                                : L"Specify endpoint of line: ",
                                           true, next);
            if (answered == RTNONE)
                break;
            if (answered != RTNORM)
                return answered;
            points.push_back(next);
        }
    }
    // A box that is drawn to the left crosses.
    const bool inside = chosen == way::window || chosen == way::window_polygon ||
                        (chosen == way::box && points[0].x <= points[1].x);
    const gi::region region = two_corners            ? gi::region::box(points[0], points[1])
                              : chosen == way::fence ? gi::region::fence(std::move(points))
                                                     : gi::region::polygon(std::move(points));
    for (const dxf::record_id entity :
         entities_in(database, region, inside ? reach::inside : reach::inside_or_crossing))
        picked.push_back(database.id(entity));
    return RTNORM;
}

class interactive_selection {
public:
    interactive_selection(AcDbImpDatabase& database, const selection_filter* filter, input_rules rules,
                          bool single, std::wstring add_prompt, std::wstring remove_prompt)
        : database_(database), filter_(filter), rules_(std::move(rules)), single_(single),
          add_prompt_(std::move(add_prompt)), remove_prompt_(std::move(remove_prompt)) {}

    // RTNORM, RTNONE for Enter without a selection, RTCAN, RTKWORD.
    int run(selection_set& set) {
        for (;;) {
            const input_rules rules{rules_.bits & ~RSG_NONULL, rules_.keywords};
            region_.reset();
            int answered =
                ask_value((removing_ ? remove_prompt_ : add_prompt_).c_str(), rules, answer_rule::word,
                          [&](const answer& given) { return take(given, set); });
            if (answered == RTNORM && region_) {
                std::vector<AcDbObjectId> picked;
                answered = select_by_region(database_, *region_, picked);
                if (answered == RTNORM)
                    report(picked, set);
            }
            if (answered == RTNONE)
                return set.ids().empty() ? RTNONE : RTNORM;
            if (answered != RTNORM)
                return answered;
            if (single_ && !set.ids().empty())
                return RTNORM;
        }
    }

private:
    std::wstring take(const answer& given, selection_set& set) {
        std::vector<AcDbObjectId> picked;
        if (given.expression) {
            std::wstring reason;
            const auto parsed = parse_expression(given.text, reason);
            if (!parsed)
                return reason;
            if (parsed->what == expression::function::handent) {
                dxf::record_id entity = dxf::no_record;
                if (reason = entity_of_handle(database_, parsed->text, entity); !reason.empty())
                    return reason;
                picked.push_back(database_.id(entity));
            } else {
                const auto filter = selection_filter::make(database_, parsed->filter.get());
                if (!filter ||
                    !(base::equal_no_case(parsed->text, L"X") || base::equal_no_case(parsed->text, L"_X")))
                    return L"Invalid selection expression.";
                picked = select_all(database_, &*filter, true).ids();
            }
        } else if (const auto point = parse_point(given.text)) {
            if (const auto hit = pick(database_, {(*point)[0], (*point)[1], (*point)[2]}))
                picked.push_back(database_.id(hit->entity));
        } else if (const auto chosen = way_by_name(given.text)) {
            switch (*chosen) {
            case way::last:
                if (const dxf::record_id last = last_visible(database_); last != dxf::no_record)
                    picked.push_back(database_.id(last));
                break;
            case way::previous:
                picked = previous_in(database_);
                break;
            case way::all: {
                const selection_set all = select_all(database_, filter_, false);
                for (const AcDbObjectId id : all.ids())
                    if (in_current_space(database_, database_.record(id)))
                        picked.push_back(id);
                break;
            }
            case way::remove:
            case way::add:
                removing_ = *chosen == way::remove;
                return {};
            default:
                region_ = *chosen; // its points are asked for next
                return {};
            }
        } else {
            return L"Invalid selection.";
        }
        report(picked, set);
        return {};
    }

    // "2 found, 1 duplicate, 5 total", as the editor says it.
    void report(const std::vector<AcDbObjectId>& picked, selection_set& set) {
        std::size_t changed = 0;
        std::size_t filtered = 0;
        for (const AcDbObjectId id : picked) {
            if (filter_ != nullptr && !filter_->fits(database_.record(id)))
                ++filtered;
            else
                changed += (removing_ ? set.remove(id) : set.add(id)) ? 1 : 0;
        }
        std::wstring text = std::to_wstring(picked.size()) + L" found";
        if (filtered != 0)
            text += L", " + std::to_wstring(filtered) + L" filtered out";
        if (removing_)
            text += L", " + std::to_wstring(changed) + L" removed";
        else if (changed + filtered < picked.size())
            text += L", " + std::to_wstring(picked.size() - changed - filtered) + L" duplicate";
        if (set.ids().size() != picked.size() || removing_)
            text += L", " + std::to_wstring(set.ids().size()) + L" total";
        command_line::instance().print(L"\n" + text);
    }

    AcDbImpDatabase& database_;
    const selection_filter* filter_;
    input_rules rules_;
    bool single_;
    bool removing_ = false;
    std::optional<way> region_; // the way that was chosen last, when it wants points
    std::wstring add_prompt_;
    std::wstring remove_prompt_;
};

} // namespace

} // namespace ed

namespace ed {

namespace {

// Asks for one entity; a point gives what it hits, with the references around it when `nested`.
int select_entity(const ACHAR* prompt, bool nested, std::optional<hit>& picked, AcGePoint3d& at) {
    const input_rules rules = take_input_rules();
    AcDbImpDatabase* const database = current();
    if (database == nullptr)
        return RTERROR;
    at = {}; // a pick by name has no point
    const auto by_name = [&](dxf::record_id entity) {
        if (entity != dxf::no_record)
            picked = hit{entity, database->id(entity), {}, {}};
    };
    const auto take = [&](const answer& given) -> std::wstring {
        if (given.expression) {
            std::wstring reason;
            const auto parsed = parse_expression(given.text, reason);
            if (!parsed || parsed->what != expression::function::handent)
                return reason;
            dxf::record_id entity = dxf::no_record;
            reason = entity_of_handle(*database, parsed->text, entity);
            by_name(entity);
            return reason;
        }
        if (const auto point = parse_point(given.text)) {
            at = {(*point)[0], (*point)[1], (*point)[2]};
            picked = pick(*database, at);
            return {};
        }
        if (way_by_name(given.text) == way::last) {
            by_name(last_visible(*database));
            return {};
        }
        return L"Invalid selection.";
    };
    const int answered = ask_value(prompt != nullptr ? prompt : L"\nSelect object: ",
                                   {rules.bits & ~RSG_NONULL, rules.keywords}, answer_rule::word, take);
    if (answered == RTNONE) {
        set_error_number(null_response);
        return RTERROR;
    }
    if (answered == RTNORM && !picked) {
        set_error_number(nothing_hit);
        return RTERROR;
    }
    if (answered == RTNORM && !nested)
        picked->innermost = database->id(picked->entity);
    return answered;
}

// The region that a mode of acedSSGet and its points mean; nothing for another mode.
std::optional<gi::region> region_of(std::wstring_view mode, const void* first, const void* second) {
    if (first == nullptr)
        return std::nullopt;
    if (mode == L"w" || mode == L"c") {
        if (second == nullptr)
            return std::nullopt;
        return gi::region::box(asPnt2d(static_cast<const ads_real*>(first)),
                               asPnt2d(static_cast<const ads_real*>(second)));
    }
    if (mode != L"wp" && mode != L"cp" && mode != L"f")
        return std::nullopt;
    std::vector<AcGePoint2d> points;
    for (const auto* node = static_cast<const resbuf*>(first); node != nullptr; node = node->rbnext)
        points.push_back(asPnt2d(node->resval.rpoint));
    return mode == L"f" ? gi::region::fence(std::move(points)) : gi::region::polygon(std::move(points));
}

void name_of_entity(AcDbObjectId id, ads_name name) {
    name[0] = id.asOldId();
    name[1] = 0;
}

} // namespace

} // namespace ed

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point) {
    std::optional<ed::hit> picked;
    AcGePoint3d at;
    const int answered = ed::select_entity(prompt, false, picked, at);
    if (answered == RTNORM) {
        ed::name_of_entity(picked->innermost, entity);
        if (point != nullptr)
            asPnt3d(point) = at;
    }
    return answered;
}

int acedNEntSelP(const ACHAR* prompt, ads_name entity, ads_point point, int usePoint, ads_matrix transform,
                 resbuf** containers) {
    std::optional<ed::hit> picked;
    AcGePoint3d at;
    int answered = RTNORM;
    if (usePoint == 0) {
        answered = ed::select_entity(prompt, true, picked, at);
    } else {
        ed::take_input_rules();
        AcDbImpDatabase* const database = ed::current();
        if (database == nullptr || point == nullptr)
            return RTERROR;
        at = asPnt3d(point);
        picked = ed::pick(*database, at);
        if (!picked) {
            ed::set_error_number(ed::nothing_hit);
            return RTERROR;
        }
    }
    if (answered != RTNORM)
        return answered;
    ed::name_of_entity(picked->innermost, entity);
    if (point != nullptr)
        asPnt3d(point) = at;
    if (transform != nullptr)
        for (unsigned row = 0; row < 4; ++row)
            for (unsigned column = 0; column < 4; ++column)
                transform[row][column] = picked->to_world(row, column);
    if (containers == nullptr)
        return answered;
    *containers = nullptr;
    for (auto container = picked->containers.rbegin(); container != picked->containers.rend(); ++container) {
        resbuf* const node = acutNewRb(RTENAME);
        ed::name_of_entity(*container, node->resval.rlname);
        node->rbnext = *containers;
        *containers = node;
    }
    return answered;
}

int acedNEntSel(const ACHAR* prompt, ads_name entity, ads_point point, ads_point transform[4],
                resbuf** containers) {
    ads_matrix whole;
    const int answered = acedNEntSelP(prompt, entity, point, 0, whole, containers);
    if (answered == RTNORM && transform != nullptr)
        for (unsigned column = 0; column < 4;
             ++column) // here the images of the axes and of the origin are rows
            for (unsigned row = 0; row < 3; ++row)
                transform[column][row] = whole[row][column];
    return answered;
}

int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter, ads_name set) {
    const ed::input_rules rules = ed::take_input_rules();
    AcDbImpDatabase* const database = ed::current();
    if (database == nullptr || set == nullptr)
        return RTERROR;
    std::optional<ed::selection_filter> fitting;
    if (filter != nullptr) {
        fitting = ed::selection_filter::make(*database, filter);
        if (!fitting)
            return RTREJ;
    }
    const ed::selection_filter* const chosen = fitting ? &*fitting : nullptr;

    std::wstring how = base::folded(mode != nullptr ? mode : L"");
    if (how.starts_with(L"_"))
        how.erase(0, 1);
    const std::size_t colon = std::min(how.find(L':'), how.size());
    const std::wstring options = how.substr(colon);
    how.resize(colon);

    ed::selection_set selected;
    if (how == L"x" || how == L"a") {
        selected = ed::select_all(*database, chosen, how == L"x");
    } else if (how == L"l") {
        const dxf::record_id last = ed::last_visible(*database);
        if (last != dxf::no_record && (chosen == nullptr || chosen->fits(last)))
            selected.add(database->id(last));
    } else if (how == L"p") {
        for (const AcDbObjectId id : ed::previous_in(*database))
            if (chosen == nullptr || chosen->fits(database->record(id)))
                selected.add(id);
    } else if (how == L"i") {
        // Nothing is picked before a command where input comes from a command line.
    } else if (how.empty() && pt2 == nullptr && (pt1 == nullptr || options.find(L'$') != options.npos)) {
        std::wstring add_prompt = L"\nSelect objects: ";
        std::wstring remove_prompt = L"\nRemove objects: ";
        if (pt1 != nullptr) {
            const auto* const prompts = static_cast<const ACHAR* const*>(pt1);
            add_prompt = prompts[0];
            remove_prompt = prompts[1] != nullptr ? prompts[1] : prompts[0];
        }
        ed::interactive_selection asking(*database, chosen, rules, options.find(L's') != options.npos,
                                         std::move(add_prompt), std::move(remove_prompt));
        const int answered = asking.run(selected);
        if (answered == RTNONE) {
            ed::set_error_number(ed::null_response);
            return RTERROR;
        }
        if (answered != RTNORM)
            return answered;
    } else if (const auto region = ed::region_of(how, pt1, pt2)) {
        const ed::reach reach = how.starts_with(L"w") ? ed::reach::inside : ed::reach::inside_or_crossing;
        for (const dxf::record_id entity : ed::entities_in(*database, *region, reach))
            if (chosen == nullptr || chosen->fits(entity))
                selected.add(database->id(entity));
    } else if (how.empty() && pt1 != nullptr && pt2 == nullptr) {
        const auto* const at = static_cast<const ads_real*>(pt1);
        const auto hit = ed::pick(*database, asPnt3d(at));
        if (hit && (chosen == nullptr || chosen->fits(hit->entity)))
            selected.add(database->id(hit->entity));
    } else {
        return RTREJ;
    }
    if (selected.ids().empty()) {
        ed::set_error_number(0);
        return RTERROR;
    }
    ed::previous_selection() = selected;
    return ed::name_selection_set(std::move(selected), set) ? RTNORM : RTERROR;
}
