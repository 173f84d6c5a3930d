// What the question under way takes, for who helps a person to answer it: a terminal completes by it.
#pragma once

#include "adesk.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ed {

struct expected_answer {
    std::vector<std::wstring> keywords = {}; // as they are spelled in the list
    std::wstring file = {};                  // a file with this extension (".dxf"); empty: no file
    std::vector<std::wstring> others = {};   // words that are understood besides the keywords
    // Names of which the answer is one, or a list by commas; asked for when somebody wants them.
    std::function<std::vector<std::wstring>()> names = {};
};

// Of the question that waits; nothing is expected at the command prompt, where a command is.
ACCORE_PORT expected_answer& expected();

// Says what is expected while it lives.
class expecting {
public:
    explicit expecting(expected_answer answer) : before_(std::exchange(expected(), std::move(answer))) {}
    expecting(const expecting&) = delete;
    expecting& operator=(const expecting&) = delete;
    ~expecting() { expected() = std::move(before_); }

private:
    expected_answer before_;
};

} // namespace ed
