#include "host/ed/prompts.h"

#include "acedads.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/ed/expression.h"
#include "host/ed/system_variables.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace ed {

namespace {

input_rules next_rules;
std::optional<std::wstring> last_keyword;
bool break_pending = false;

constexpr std::wstring_view keyword_wanted = L"Invalid option keyword.";

} // namespace

input_rules take_input_rules() {
    return std::exchange(next_rules, {});
}

void keep_keyword(std::wstring word) {
    last_keyword = std::move(word);
}

void copy_out(std::wstring_view text, ACHAR* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0)
        return;
    const std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.begin(), length, buffer);
    buffer[length] = 0;
}

int ask_value(const ACHAR* prompt, const input_rules& rules, answer_rule rule,
              const std::function<std::wstring(const answer&)>& take) {
    editor& editor = editor::instance();
    last_keyword.reset();
    const std::wstring_view shown = prompt != nullptr ? prompt : L"";
    for (;;) {
        const answer given = editor.ask(shown, rule);
        std::wstring reason;
        switch (given.kind) {
        case answer_kind::end:
            return RTCAN;
        case answer_kind::escape:
            break_pending = true;
            return RTCAN;
        case answer_kind::enter:
            if ((rules.bits & RSG_NONULL) == 0)
                return RTNONE;
            reason = L"An answer is required.";
            break;
        case answer_kind::text:
            if (!given.quoted && !given.expression)
                if (auto word = rules.keywords.match(given.text)) {
                    keep_keyword(std::move(*word));
                    return RTKWORD;
                }
            reason = take(given);
            if (reason.empty())
                return RTNORM;
            // A value that one of the bits forbids is refused all the same.
            if ((rules.bits & RSG_OTHER) != 0 && !given.expression &&
                !base::parse_real(base::narrow(given.text))) {
                keep_keyword(given.text);
                return RTKWORD;
            }
            break;
        }
        if (!editor.refuse(shown, given, reason))
            return RTCAN;
    }
}

} // namespace ed

int acedInitGet(int bits, const ACHAR* keywords) {
    ed::editor::instance();
    ed::next_rules = {bits, ed::keyword_list(keywords != nullptr ? keywords : L"")};
    return RTNORM;
}

int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t size) {
    const ed::input_rules rules = ed::take_input_rules();
    const int answered = ed::ask_value(prompt, rules, ed::answer_rule::word,
                                       [](const ed::answer&) { return std::wstring(ed::keyword_wanted); });
    if (answered != RTKWORD)
        return answered;
    ed::copy_out(*ed::last_keyword, result, size);
    ed::last_keyword.reset();
    return RTNORM;
}

int acedGetInt(const ACHAR* prompt, int* result) {
    const ed::input_rules rules = ed::take_input_rules();
    return ed::ask_value(prompt, rules, ed::answer_rule::word, [&](const ed::answer& given) -> std::wstring {
        const auto value = base::parse_integer(base::narrow(given.text));
        if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
            return L"Requires an integer value or option keyword.";
        if ((rules.bits & RSG_NOZERO) != 0 && *value == 0)
            return L"Value must be nonzero.";
        if ((rules.bits & RSG_NONEG) != 0 && *value < 0)
            return L"Value must be positive.";
        if (result != nullptr)
            *result = static_cast<int>(*value);
        return {};
    });
}

int acedGetReal(const ACHAR* prompt, ads_real* result) {
    const ed::input_rules rules = ed::take_input_rules();
    return ed::ask_value(prompt, rules, ed::answer_rule::word, [&](const ed::answer& given) -> std::wstring {
        const auto value = base::parse_real(base::narrow(given.text));
        if (!value)
            return L"Requires numeric value or option keyword.";
        if ((rules.bits & RSG_NOZERO) != 0 && *value == 0.0)
            return L"Value must be nonzero.";
        if ((rules.bits & RSG_NONEG) != 0 && *value < 0.0)
            return L"Value must be positive.";
        if (result != nullptr)
            *result = *value;
        return {};
    });
}

int acedGetPoint(const ads_point /*base*/, const ACHAR* prompt, ads_point result) {
    const ed::input_rules rules = ed::take_input_rules();
    return ed::ask_value(prompt, rules, ed::answer_rule::word, [&](const ed::answer& given) -> std::wstring {
        const auto point = ed::parse_point(given.text);
        if (!point)
            return L"Invalid point.";
        if (result != nullptr)
            ads_point_set(point->data(), result);
        return {};
    });
}

int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t size) {
    ed::take_input_rules();
    const auto rule = cronly != 0 ? ed::answer_rule::line : ed::answer_rule::word;
    const int answered = ed::ask_value(prompt, {}, rule, [&](const ed::answer& given) -> std::wstring {
        ed::copy_out(given.text, result, size);
        return {};
    });
    if (answered != RTNONE)
        return answered;
    ed::copy_out({}, result, size);
    return RTNORM;
}

int acedGetInput(ACHAR* result, size_t size) {
    if (!ed::last_keyword)
        return RTERROR;
    ed::copy_out(*ed::last_keyword, result, size);
    ed::last_keyword.reset();
    return RTNORM;
}

int acedUsrBrk() {
    return std::exchange(ed::break_pending, false) ? 1 : 0;
}
