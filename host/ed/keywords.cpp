#include "host/ed/keywords.h"

#include "base/case_fold.h"

#include <algorithm>

namespace ed {

namespace {

struct spelled {
    std::wstring word;
    std::wstring least;
};

bool is_small(wchar_t c) {
    return c >= L'a' && c <= L'z';
}

// "LTYPE,LT" says its abbreviation; else it is the word's first run of letters that are not small ones
// ("LType": LT, "eXit": X). A word without capitals, or with nothing else, is typed whole.
spelled spell(std::wstring_view text) {
    const std::size_t comma = text.find(L',');
    spelled found;
    found.word = text.substr(0, comma);
    if (comma != text.npos) {
        found.least = text.substr(comma + 1);
    } else if (std::any_of(found.word.begin(), found.word.end(), is_small)) {
        const auto first = std::find_if_not(found.word.begin(), found.word.end(), is_small);
        found.least.assign(first, std::find_if(first, found.word.end(), is_small));
    }
    if (found.least.empty())
        found.least = found.word;
    return found;
}

// Whether what was typed is the word, or a beginning of it that is long enough, or its abbreviation.
bool stands_for(std::wstring_view typed, std::wstring_view word, std::wstring_view least) {
    if (base::equal_no_case(typed, least))
        return true;
    if (typed.size() > word.size() || typed.size() < least.size())
        return false;
    if (!base::equal_no_case(word.substr(0, least.size()), least)) // "eXit" is never "ex", only "x" or "exit"
        return base::equal_no_case(typed, word);
    return base::equal_no_case(typed, word.substr(0, typed.size()));
}

} // namespace

keyword_list::keyword_list(std::wstring_view list) {
    std::vector<spelled> locals;
    std::vector<spelled> globals;
    std::vector<spelled>* part = &locals;
    for (std::size_t at = list.find_first_not_of(L' '); at != list.npos;
         at = list.find_first_not_of(L' ', at)) {
        const std::size_t end = std::min(list.find(L' ', at), list.size());
        const std::wstring_view text = list.substr(at, end - at);
        if (text == L"_")
            part = &globals;
        else
            part->push_back(spell(text));
        at = end;
    }
    for (std::size_t i = 0; i < locals.size(); ++i) {
        const spelled& global = i < globals.size() ? globals[i] : locals[i];
        words_.push_back({locals[i].word, locals[i].least, global.word, global.least});
    }
}

std::vector<std::wstring> keyword_list::words() const {
    std::vector<std::wstring> found;
    for (const word& known : words_)
        found.push_back(known.local);
    return found;
}

std::optional<std::wstring> keyword_list::match(std::wstring_view typed) const {
    if (typed.empty())
        return std::nullopt;
    for (const word& known : words_)
        if (stands_for(typed, known.local, known.abbreviation))
            return known.global;
    if (typed.front() == L'_')
        for (const word& known : words_)
            if (stands_for(typed.substr(1), known.global, known.global_abbreviation))
                return known.global;
    return std::nullopt;
}

} // namespace ed
