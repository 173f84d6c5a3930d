// Picks of one entity: acedEntSel and its nested forms.
#include "acdbads.h"
#include "acedads.h"
#include "geassign.h"
#include "host/ed/coordinates.h"
#include "host/ed/expression.h"
#include "host/ed/message_filters.h"
#include "host/ed/pick.h"
#include "host/ed/prompts.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"

#include <optional>

namespace ed {

namespace {

constexpr int nothing_hit = 7;
constexpr int null_response = 52;

// Asks for one entity; a point (of the user's coordinates) gives what it hits, with the references around it
// when `nested`.
int select_entity(const ACHAR* prompt, bool nested, std::optional<hit>& picked, AcGePoint3d& at) {
    const input_rules rules = take_input_rules();
    AcDbImpDatabase* const database = selected_drawing();
    if (database == nullptr)
        return RTERROR;
    at = {}; // a pick by name has no point
    const auto by_name = [&](dxf::record_id entity) {
        if (entity != dxf::no_record)
            picked = hit{entity, database->id(entity), {}, {}};
    };
    const auto take = [&](const answer& given) -> verdict {
        if (given.expression) {
            std::wstring reason;
            const auto parsed = parse_expression(given.text, reason);
            if (!parsed || parsed->what != expression::function::handent)
                return verdict::refused(reason);
            dxf::record_id entity = dxf::no_record;
            if (reason = entity_of_handle(*database, parsed->text, entity); !reason.empty())
                return verdict::refused(reason);
            by_name(entity);
            return {};
        }
        if (const auto point = take_point(given.text)) {
            at = *point;
            if (click(at))
                picked = pick(*database, to_world(at));
            return {};
        }
        if (way_of_answer(given.text) == way::last) {
            by_name(last_visible(*database));
            return {};
        }
        return verdict::unknown(L"Invalid selection.");
    };
    const int answered = ask_judged(prompt != nullptr ? prompt : L"\nSelect object: ",
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

} // namespace

} // namespace ed

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point) {
    std::optional<ed::hit> picked;
    AcGePoint3d at;
    const int answered = ed::select_entity(prompt, false, picked, at);
    if (answered == RTNORM) {
        acdbGetAdsName(*reinterpret_cast<ads_name*>(entity), picked->innermost);
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
        AcDbImpDatabase* const database = ed::selected_drawing();
        if (database == nullptr || point == nullptr)
            return RTERROR;
        at = asPnt3d(point);
        picked = ed::pick(*database, ed::to_world(at));
        if (!picked) {
            ed::set_error_number(ed::nothing_hit);
            return RTERROR;
        }
    }
    if (answered != RTNORM)
        return answered;
    acdbGetAdsName(*reinterpret_cast<ads_name*>(entity), picked->innermost);
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
        acdbGetAdsName(*reinterpret_cast<ads_name*>(node->resval.rlname), *container);
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
