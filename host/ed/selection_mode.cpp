#include "host/ed/selection_mode.h"

#include "base/case_fold.h"
#include "host/ed/keywords.h"

#include <utility>

namespace ed {

namespace {

// By the letters of the interface's documentation.
std::optional<way> way_of_letters(std::wstring_view letters) {
    constexpr std::pair<std::wstring_view, way> rows[] = {
        {L"", way::ask},     {L".", way::point},           {L"a", way::all},
        {L"b", way::box},    {L"c", way::crossing},        {L"cp", way::crossing_polygon},
        {L"f", way::fence},  {L"g", way::group},           {L"i", way::implied},
        {L"l", way::last},   {L"m", way::multiple},        {L"p", way::previous},
        {L"w", way::window}, {L"wp", way::window_polygon}, {L"x", way::drawing}};
    for (const auto& [known, means] : rows)
        if (letters == known)
            return means;
    return std::nullopt;
}

bool set_option(selection_mode& mode, wchar_t letter) {
    switch (letter) {
    case L'$':
        return mode.prompts = true;
    case L'd':
        return mode.doubles = true;
    case L'e':
        return mode.everything = true;
    case L'k':
        return mode.callbacks = true;
    case L'l':
        return mode.unlocked = true;
    case L'n':
        return mode.nested = true;
    case L's':
        return mode.once = true;
    default:
        return false;
    }
}

// Of the user's answers, spelled as they are typed.
constexpr std::pair<const wchar_t*, way> answers[] = {{L"Window", way::window},
                                                      {L"Last", way::last},
                                                      {L"Crossing", way::crossing},
                                                      {L"BOX", way::box},
                                                      {L"ALL", way::all},
                                                      {L"Fence", way::fence},
                                                      {L"WPolygon", way::window_polygon},
                                                      {L"CPolygon", way::crossing_polygon},
                                                      {L"Group", way::group},
                                                      {L"Add", way::add},
                                                      {L"Remove", way::remove},
                                                      {L"Multiple", way::multiple},
                                                      {L"Previous", way::previous},
                                                      {L"Undo", way::undo},
                                                      {L"AUto", way::automatic},
                                                      {L"SIngle", way::single}};

} // namespace

std::vector<std::wstring> words_for_ways() {
    std::vector<std::wstring> words;
    for (const auto& [word, means] : answers)
        words.emplace_back(word);
    return words;
}

std::optional<way> way_of_answer(std::wstring_view answer) {
    static const keyword_list words = [] {
        std::wstring list;
        for (const std::wstring& word : words_for_ways())
            list += word + L" ";
        return keyword_list(list);
    }();
    const auto word = words.match(answer);
    for (const auto& [known, means] : answers)
        if (word == known)
            return means;
    return std::nullopt;
}

bool selection_mode::allows(way chosen) const {
    if (denied.contains(chosen))
        return false;
    return !only_whole || chosen == way::all || chosen == way::last || chosen == way::previous;
}

std::optional<selection_mode> parse_selection_mode(std::wstring_view text) {
    const std::wstring folded = base::folded(text);
    std::wstring_view rest = folded;
    if (rest.starts_with(L'_'))
        rest.remove_prefix(1);
    selection_mode mode;
    if (rest.starts_with(L'#')) {
        mode.only_whole = true;
        rest.remove_prefix(1);
    }
    const auto cut = [&rest] {
        const std::size_t end = std::min(rest.find_first_of(L":+-"), rest.size());
        const std::wstring_view part = rest.substr(0, end);
        rest.remove_prefix(end);
        return part;
    };
    const auto how = way_of_letters(cut());
    if (!how)
        return std::nullopt;
    mode.how = *how;
    while (!rest.empty()) {
        const wchar_t sign = rest.front();
        rest.remove_prefix(1);
        const std::wstring_view letters = cut();
        if (letters.empty())
            return std::nullopt;
        if (sign == L':') {
            for (const wchar_t letter : letters)
                if (!set_option(mode, letter))
                    return std::nullopt;
            continue;
        }
        const auto named = letters == L"r" ? std::optional(way::remove) : way_of_letters(letters);
        if (!named)
            return std::nullopt;
        if (sign == L'+')
            mode.first = named;
        else
            mode.denied.insert(*named);
    }
    return mode;
}

} // namespace ed
