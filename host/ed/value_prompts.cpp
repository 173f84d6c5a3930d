// Numbers, distances, angles, points and file names, as the C interface asks for them.
#include "acedads.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "geassign.h"
#include "host/ed/coordinates.h"
#include "host/ed/expected.h"
#include "host/ed/prompts.h"
#include "host/ed/system_variables.h"
#include "host/ed/unit_text.h"
#include "sys/folders.h"

#include <cmath>
#include <limits>
#include <optional>

namespace ed {

namespace {

// What the bits forbid; nothing when the number may be taken.
std::optional<verdict> forbidden(int bits, double value) {
    if ((bits & RSG_NOZERO) != 0 && value == 0.0)
        return verdict::refused(L"Value must be nonzero.");
    if ((bits & RSG_NONEG) != 0 && value < 0.0)
        return verdict::refused(L"Value must be positive.");
    return std::nullopt;
}

// Outside of the drawing's limits where LIMCHECK says that nothing is.
bool outside_limits(int bits, const AcGePoint3d& user) {
    if ((bits & RSG_NOLIM) != 0 || variable<int>(L"LIMCHECK") == 0)
        return false;
    const AcGePoint3d point = to_world(user);
    const AcGePoint3d least = variable<AcGePoint3d>(L"LIMMIN");
    const AcGePoint3d most = variable<AcGePoint3d>(L"LIMMAX");
    return point.x < least.x || point.y < least.y || point.x > most.x || point.y > most.y;
}

verdict judge_point(const answer& given, int bits, AcGePoint3d& point) {
    const auto read = read_point(given.text);
    if (!read)
        return verdict::unknown(L"Invalid point.");
    if (outside_limits(bits, *read))
        return verdict::refused(L"**Outside limits");
    point = *read;
    put_variable(L"LASTPOINT", point);
    return {};
}

int prompt_point(const ACHAR* prompt, const input_rules& rules, AcGePoint3d& point) {
    return ask_judged(prompt, rules, answer_rule::word,
                      [&](const answer& given) { return judge_point(given, rules.bits, point); });
}

// Asks for what is typed, or shown by two points, of which a base may be the first. RTNORM with `shown` when
// it was points, else `judge` took it.
struct points_shown {
    bool shown = false;
    AcGePoint3d first, second;
};
int ask_typed_or_shown(const ads_real* base, const ACHAR* prompt, const input_rules& rules,
                       const std::function<verdict(const answer&)>& judge, points_shown& points) {
    AcGePoint3d point;
    const int answered = ask_judged(prompt, rules, answer_rule::word, [&](const answer& given) {
        const bool is_point = given.text.find_first_of(L",<@") != given.text.npos;
        points.shown = is_point;
        return is_point ? judge_point(given, rules.bits, point) : judge(given);
    });
    if (answered != RTNORM || !points.shown)
        return answered;
    points.first = base != nullptr ? asPnt3d(base) : point;
    points.second = point;
    if (base != nullptr)
        return RTNORM;
    // The second point is an answer to the same question, but the words are no answers to it any more.
    return prompt_point(L"Specify second point: ", {rules.bits | RSG_NONULL, {}}, points.second);
}

// With `absolute` from the x axis, else from the direction that the drawing measures angles from.
int prompt_angle(const ads_real* base, const ACHAR* prompt, bool absolute, ads_real* result) {
    const input_rules rules = take_input_rules();
    double direction = 0.0;
    points_shown points;
    const int answered = ask_typed_or_shown(
        base, prompt, rules,
        [&](const answer& given) -> verdict {
            const auto read = read_direction(given.text);
            if (!read)
                return verdict::unknown(L"Requires valid numeric angle or second point.");
            if ((rules.bits & RSG_NOZERO) != 0 && within_turn(*read - variable<double>(L"ANGBASE")) == 0.0)
                return verdict::refused(L"Value must be nonzero.");
            direction = *read;
            return {};
        },
        points);
    if (answered != RTNORM)
        return answered;
    if (points.shown) {
        const AcGeVector3d line = points.second - points.first;
        direction = std::atan2(line.y, line.x);
    }
    if (result != nullptr)
        *result = within_turn(absolute ? direction : direction - variable<double>(L"ANGBASE"));
    return RTNORM;
}

} // namespace

} // namespace ed

int acedGetInt(const ACHAR* prompt, int* result) {
    const ed::input_rules rules = ed::take_input_rules();
    return ed::ask_judged(prompt, rules, ed::answer_rule::word, [&](const ed::answer& given) {
        const auto value = base::parse_integer(base::narrow(given.text));
        if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
            return ed::verdict::unknown(L"Requires an integer value or option keyword.");
        if (const auto why = ed::forbidden(rules.bits, static_cast<double>(*value)))
            return *why;
        if (result != nullptr)
            *result = static_cast<int>(*value);
        return ed::verdict();
    });
}

int acedGetReal(const ACHAR* prompt, ads_real* result) {
    const ed::input_rules rules = ed::take_input_rules();
    return ed::ask_judged(prompt, rules, ed::answer_rule::word, [&](const ed::answer& given) {
        const auto value = base::parse_real(base::narrow(given.text));
        if (!value)
            return ed::verdict::unknown(L"Requires numeric value or option keyword.");
        if (const auto why = ed::forbidden(rules.bits, *value))
            return *why;
        if (result != nullptr)
            *result = *value;
        return ed::verdict();
    });
}

int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* result) {
    const ed::input_rules rules = ed::take_input_rules();
    double distance = 0.0;
    ed::points_shown points;
    const int answered = ed::ask_typed_or_shown(
        base, prompt, rules,
        [&](const ed::answer& given) {
            const auto read = ed::read_length(given.text);
            if (!read)
                return ed::verdict::unknown(L"Requires numeric distance, second point, or option keyword.");
            if (const auto why = ed::forbidden(rules.bits, *read))
                return *why;
            distance = *read;
            return ed::verdict();
        },
        points);
    if (answered != RTNORM)
        return answered;
    if (points.shown) {
        AcGeVector3d line = points.second - points.first;
        if ((rules.bits & RSG_2D) != 0)
            line.z = 0.0;
        distance = line.length();
    }
    if (result != nullptr)
        *result = distance;
    return RTNORM;
}

int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* result) {
    return ed::prompt_angle(base, prompt, false, result);
}

int acedGetOrient(const ads_point base, const ACHAR* prompt, ads_real* result) {
    return ed::prompt_angle(base, prompt, true, result);
}

int acedGetPoint(const ads_point /*base*/, const ACHAR* prompt, ads_point result) {
    AcGePoint3d point;
    const int answered = ed::prompt_point(prompt, ed::take_input_rules(), point);
    if (answered == RTNORM && result != nullptr)
        asPnt3d(result) = point;
    return answered;
}

int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result) {
    if (base == nullptr) {
        ed::take_input_rules();
        return RTERROR;
    }
    return acedGetPoint(base, prompt, result);
}

int acedGetFileD(const ACHAR* title, const ACHAR* initial, const ACHAR* extension, int flags,
                 resbuf* result) {
    ed::take_input_rules();
    if (result == nullptr)
        return RTERROR;
    constexpr int for_a_new_file = 1;
    std::wstring name = initial != nullptr ? initial : L"";
    std::wstring prompt = std::wstring(L"\n") + (title != nullptr ? title : L"Enter file name");
    prompt += name.empty() ? L": " : L" <" + name + L">: ";
    ed::expected_answer files;
    if (extension != nullptr && *extension != 0)
        files.file = std::wstring(L".") + extension;
    const ed::expecting hint(files);
    const auto judge = [&](const std::wstring& typed) {
        std::filesystem::path file = sys::to_path(typed);
        if (extension != nullptr && *extension != 0 && !file.has_extension())
            file.replace_extension(sys::to_path(extension));
        std::error_code ignored;
        if ((flags & for_a_new_file) == 0 && !std::filesystem::is_regular_file(file, ignored))
            return ed::verdict::refused(L"Cannot find the file '" + typed + L"'.");
        name = sys::from_path(file);
        return ed::verdict();
    };
    const int bits = name.empty() || judge(name).what != ed::verdict::how::taken ? RSG_NONULL : 0;
    int answered = ed::ask_judged(prompt.c_str(), {bits, {}}, ed::answer_rule::line,
                                  [&](const ed::answer& given) { return judge(given.text); });
    if (answered == RTNONE)
        answered = RTNORM;
    if (answered != RTNORM)
        return answered;
    result->rbnext = nullptr;
    result->restype = RTSTR;
    acutNewString(name.c_str(), result->resval.rstring);
    return RTNORM;
}

// There is no cursor that could drag anything.
int acedDragGen(const ads_name /*set*/, const ACHAR* /*prompt*/, int /*cursor*/,
                int (* /*sample*/)(ads_point, ads_matrix), ads_point /*result*/) {
    ed::take_input_rules();
    return RTERROR;
}

namespace ed {

namespace {

// The transformation from a coordinate system to the world's: 0 the world's, 1 the user's, or that of an
// extrusion direction (RT3DPOINT) or of an entity. Nothing for those of displays.
std::optional<AcGeMatrix3d> system_to_world(const resbuf* system) {
    if (system == nullptr)
        return std::nullopt;
    if (system->restype == RTSHORT && system->resval.rint == 0)
        return AcGeMatrix3d();
    if (system->restype == RTSHORT && system->resval.rint == 1)
        return user_to_world();
    if (system->restype == RT3DPOINT || system->restype == RTPOINT)
        return AcGeMatrix3d::planeToWorld(asVec3d(system->resval.rpoint));
    return std::nullopt;
}

} // namespace

} // namespace ed

int acedTrans(const ads_point point, const resbuf* from, const resbuf* to, int displacement,
              ads_point result) {
    const auto source = ed::system_to_world(from);
    const auto target = ed::system_to_world(to);
    if (point == nullptr || result == nullptr || !source || !target)
        return RTERROR;
    const AcGeMatrix3d matrix = target->inverse() * *source;
    if (displacement != 0)
        asVec3d(result) = matrix * asVec3d(point);
    else
        asPnt3d(result) = matrix * asPnt3d(point);
    return RTNORM;
}
