// Picks and selections: acedEntSel and acedSSGet.
#include "acdbads.h"
#include "acedads.h"
#include "base/case_fold.h"
#include "base/utf.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/db/properties.h"
#include "host/ed/expression.h"
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

// What the layers of entities show, asked once for each layer.
class layer_states {
public:
    explicit layer_states(AcDbImpDatabase& database) : database_(database) {}

    struct state {
        bool off = false;
        bool frozen = false;
        bool locked = false;
    };

    const state& of(dxf::record_id entity) {
        const std::uint32_t number = database_.records().layer(entity);
        if (number >= known_.size())
            known_.resize(number + 1);
        if (!known_[number])
            known_[number] = read(database_.find_entry(db::table_kind::layer, database_.layer_name(entity)));
        return *known_[number];
    }

private:
    state read(dxf::record_id layer) const {
        if (layer == dxf::no_record)
            return {};
        const dxf::group_list groups(database_.records().text(layer));
        const auto flags = groups.integer(db::layer_place, 70).value_or(0);
        return {groups.integer(db::layer_place, 62).value_or(7) < 0, (flags & 1) != 0, (flags & 4) != 0};
    }

    AcDbImpDatabase& database_;
    std::vector<std::optional<state>> known_; // by number of layer name
};

// Every live entity of the drawing's spaces, the newest first: that is what "X" looks at.
template<class Take>
void for_entities_newest_first(AcDbImpDatabase& database, Take take) {
    const dxf::record_table& records = database.records();
    for (dxf::record_id id = records.size(); id-- > 0;) {
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
    for_entities_newest_first(database, [&](dxf::record_id id) {
        if (!in_current_space(database, id))
            return true;
        const layer_states::state& state = states.of(id);
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
    selection_set set;
    layer_states states(database);
    for_entities_newest_first(database, [&](dxf::record_id id) {
        if (filter != nullptr && !filter->fits(id))
            return true;
        if (!whole_drawing && (states.of(id).frozen || states.of(id).locked))
            return true;
        set.add(database.id(id));
        return true;
    });
    return set;
}

// What is left of the set that was selected last, when that was in this drawing.
std::vector<AcDbObjectId> previous_in(AcDbImpDatabase& database) {
    std::vector<AcDbObjectId> left;
    for (const AcDbObjectId id : previous_selection().ids())
        if (database.record(id) != dxf::no_record && !id.isErased())
            left.push_back(id);
    return left;
}

// Answers of a selection that a command line can take so far.
constexpr std::wstring_view by_handle_only =
    L"Picking by point, window or crossing is not supported yet; answer with (handent \"2F\"), L, P or ALL.";

// Whether an answer selects by what is drawn: a point, or the letters of a window, a crossing and their like.
bool is_geometric(std::wstring_view answer) {
    constexpr std::wstring_view ways[] = {L"W",     L"WINDOW", L"C",  L"CROSSING", L"F",
                                          L"FENCE", L"WP",     L"CP", L"BOX"};
    return parse_point(answer) || std::any_of(std::begin(ways), std::end(ways), [&](std::wstring_view way) {
               return base::equal_no_case(answer, way);
           });
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
            const int answered =
                ask_value((removing_ ? remove_prompt_ : add_prompt_).c_str(), rules, answer_rule::word,
                          [&](const answer& given) { return take(given, set); });
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
        } else if (base::equal_no_case(given.text, L"L") || base::equal_no_case(given.text, L"LAST")) {
            const dxf::record_id last = last_visible(database_);
            if (last != dxf::no_record)
                picked.push_back(database_.id(last));
        } else if (base::equal_no_case(given.text, L"P") || base::equal_no_case(given.text, L"PREVIOUS")) {
            picked = previous_in(database_);
        } else if (base::equal_no_case(given.text, L"ALL")) {
            const selection_set all = select_all(database_, filter_, false);
            for (const AcDbObjectId id : all.ids())
                if (in_current_space(database_, database_.record(id)))
                    picked.push_back(id);
        } else if (base::equal_no_case(given.text, L"R") || base::equal_no_case(given.text, L"REMOVE")) {
            removing_ = true;
            return {};
        } else if (base::equal_no_case(given.text, L"A") || base::equal_no_case(given.text, L"ADD")) {
            removing_ = false;
            return {};
        } else {
            return std::wstring(is_geometric(given.text) ? by_handle_only : L"Invalid selection.");
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
    std::wstring add_prompt_;
    std::wstring remove_prompt_;
};

} // namespace

} // namespace ed

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point) {
    const ed::input_rules rules = ed::take_input_rules();
    AcDbImpDatabase* const database = ed::current();
    if (database == nullptr)
        return RTERROR;
    dxf::record_id picked = dxf::no_record;
    const auto take = [&](const ed::answer& given) -> std::wstring {
        if (given.expression) {
            std::wstring reason;
            const auto parsed = ed::parse_expression(given.text, reason);
            if (!parsed || parsed->what != ed::expression::function::handent)
                return reason;
            return ed::entity_of_handle(*database, parsed->text, picked);
        }
        if (base::equal_no_case(given.text, L"L") || base::equal_no_case(given.text, L"LAST")) {
            picked = ed::last_visible(*database);
            return {};
        }
        return std::wstring(ed::is_geometric(given.text) ? ed::by_handle_only : L"Invalid selection.");
    };
    const int answered =
        ed::ask_value(prompt != nullptr ? prompt : L"\nSelect object: ",
                      {rules.bits & ~RSG_NONULL, rules.keywords}, ed::answer_rule::word, take);
    if (answered == RTNONE) {
        ed::set_error_number(ed::null_response);
        return RTERROR;
    }
    if (answered != RTNORM)
        return answered;
    if (picked == dxf::no_record) {
        ed::set_error_number(ed::nothing_hit);
        return RTERROR;
    }
    entity[0] = database->id(picked).asOldId();
    entity[1] = 0;
    if (point != nullptr)
        ads_point_clear(point); // a pick by name has no point
    return RTNORM;
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
    } else {
        return RTREJ; // windows, fences and points are not supported yet
    }
    if (selected.ids().empty()) {
        ed::set_error_number(0);
        return RTERROR;
    }
    ed::previous_selection() = selected;
    return ed::name_selection_set(std::move(selected), set) ? RTNORM : RTERROR;
}
