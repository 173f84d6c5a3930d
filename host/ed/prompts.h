// What the next input call accepts, for the calls that ask.
#pragma once

#include "adscodes.h"
#include "host/ed/editor.h"
#include "host/ed/keywords.h"

#include <functional>
#include <string>

namespace ed {

// What acedInitGet said; it holds for one call.
struct input_rules {
    int bits = 0;
    keyword_list keywords;
};

// Takes what was said for the next call, and forgets it.
input_rules take_input_rules();

// What became of an answer: taken, refused with a reason, or not understood at all. What is not understood is
// still an answer where RSG_OTHER takes any text; what is refused never is.
struct verdict {
    enum class how { taken, refused, unknown } what = how::taken;
    std::wstring reason;

    static verdict refused(std::wstring why) { return {how::refused, std::move(why)}; }
    static verdict unknown(std::wstring why) { return {how::unknown, std::move(why)}; }
};

// Asks until an answer is taken, the user ends it, or the run stops. Gives RTNORM when `judge` took the
// answer, RTNONE for Enter, RTKWORD for a keyword (acedGetInput has it), RTCAN for Escape, also for one that
// nobody has looked at since (acedUsrBrk), and for the end of the input.
int ask_judged(const ACHAR* prompt, const input_rules& rules, answer_rule rule,
               const std::function<verdict(const answer&)>& judge);
// The same where `take` answers with an empty text, or with the reason why the answer is refused.
int ask_value(const ACHAR* prompt, const input_rules& rules, answer_rule rule,
              const std::function<std::wstring(const answer&)>& take);

// Keeps a keyword for acedGetInput.
void keep_keyword(std::wstring word);

// A text into a caller's buffer of `size` characters, cut where it must be.
void copy_out(std::wstring_view text, ACHAR* buffer, std::size_t size);

} // namespace ed
