// Keyword lists of prompts: which words a user may type, and what the program gets for them.
#pragma once

#include "adesk.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

// A list as acedInitGet takes it: "Yes No", "LType eXit", "LTYPE,LT", and behind a lone "_" the global words:
// "Ja Nein _ Yes No".
class ACCORE_PORT keyword_list {
public:
    keyword_list() = default;
    explicit keyword_list(std::wstring_view list);

    bool empty() const { return words_.empty(); }
    // The words that a user types, as they are spelled.
    std::vector<std::wstring> words() const;
    // The keyword that a text stands for, as the program gets it; nothing when it is none. Case is ignored,
    // "_" in front asks for the global word. The capitals of a word are the least that has to be typed.
    std::optional<std::wstring> match(std::wstring_view typed) const;

private:
    struct word {
        std::wstring local;        // what is typed
        std::wstring abbreviation; // the least of it
        std::wstring global;       // what the program gets
        std::wstring global_abbreviation;
    };
    std::vector<word> words_;
};

} // namespace ed
