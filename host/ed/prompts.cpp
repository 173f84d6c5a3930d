#include "host/ed/prompts.h"

#include "acedads.h"
#include "host/ed/expected.h"
#include "host/ed/user_break.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace ed {

namespace {

input_rules next_rules;
std::optional<std::wstring> last_keyword;

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

int ask_judged(const ACHAR* prompt, const input_rules& rules, answer_rule rule,
               const std::function<verdict(const answer&)>& judge) {
    editor& editor = editor::instance();
    last_keyword.reset();
    if (!editor::may_ask())
        return RTERROR;
    if (take_break()) // nobody asked for it: it ends this question
        return RTCAN;
    const expecting hint({rules.keywords.words(), expected().file, expected().others, expected().names});
    const std::wstring_view shown = prompt != nullptr ? prompt : L"";
    for (;;) {
        const answer given = editor.ask(shown, rule);
        verdict found;
        switch (given.kind) {
        case answer_kind::end:
            return RTCAN;
        case answer_kind::escape:
            press_break();
            return RTCAN;
        case answer_kind::enter:
            if ((rules.bits & RSG_NONULL) == 0)
                return RTNONE;
            found = verdict::refused(L"An answer is required.");
            break;
        case answer_kind::text:
            if (!given.quoted && !given.expression)
                if (auto word = rules.keywords.match(given.text)) {
                    keep_keyword(std::move(*word));
                    return RTKWORD;
                }
            found = judge(given);
            if (found.what == verdict::how::taken)
                return RTNORM;
            if (found.what == verdict::how::unknown && (rules.bits & RSG_OTHER) != 0 && !given.expression) {
                keep_keyword(given.text);
                return RTKWORD;
            }
            break;
        }
        if (!editor.refuse(shown, given, found.reason))
            return RTCAN;
    }
}

int ask_value(const ACHAR* prompt, const input_rules& rules, answer_rule rule,
              const std::function<std::wstring(const answer&)>& take) {
    return ask_judged(prompt, rules, rule, [&](const answer& given) {
        std::wstring reason = take(given);
        return reason.empty() ? verdict() : verdict::unknown(std::move(reason));
    });
}

} // namespace ed

int acedInitGet(int bits, const ACHAR* keywords) {
    ed::editor::instance();
    ed::next_rules = {bits, ed::keyword_list(keywords != nullptr ? keywords : L"")};
    return RTNORM;
}

int acedGetKword(const ACHAR* prompt, AcString& result) {
    const ed::input_rules rules = ed::take_input_rules();
    const int answered = ed::ask_value(prompt, rules, ed::answer_rule::word,
                                       [](const ed::answer&) { return std::wstring(ed::keyword_wanted); });
    if (answered != RTKWORD)
        return answered;
    result = ed::last_keyword->c_str();
    ed::last_keyword.reset();
    return RTNORM;
}

int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t size) {
    AcString word;
    const int answered = acedGetKword(prompt, word);
    if (answered == RTNORM)
        ed::copy_out(word.constPtr(), result, size);
    return answered;
}

int acedGetString(int cronly, const ACHAR* prompt, AcString& result) {
    ed::take_input_rules();
    const auto rule = cronly != 0 ? ed::answer_rule::line : ed::answer_rule::word;
    const int answered = ed::ask_value(prompt, {}, rule, [&](const ed::answer& given) -> std::wstring {
        result = given.text.c_str();
        return {};
    });
    if (answered != RTNONE)
        return answered;
    result.setEmpty();
    return RTNORM;
}

int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t size) {
    AcString text;
    const int answered = acedGetString(cronly, prompt, text);
    if (answered == RTNORM)
        ed::copy_out(text.constPtr(), result, size);
    return answered;
}

int acedGetInput(AcString& result) {
    if (!ed::last_keyword)
        return RTERROR;
    result = ed::last_keyword->c_str();
    ed::last_keyword.reset();
    return RTNORM;
}

int acedGetInput(ACHAR* result, size_t size) {
    AcString word;
    const int answered = acedGetInput(word);
    if (answered == RTNORM)
        ed::copy_out(word.constPtr(), result, size);
    return answered;
}
