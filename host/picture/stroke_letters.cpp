#include "host/picture/stroke_letters.h"

#include "sys/file.h"

#include <algorithm>
#include <optional>
#include <string>

namespace picture {

namespace {

constexpr double capital = 21.0; // the height of capitals in the file's units
constexpr double base_line = 9.0;
constexpr wchar_t installed_file[] = L"/usr/share/hershey-fonts/rowmans.jhf";

} // namespace

stroke_letters read_stroke_letters(std::string_view file) {
    std::string signs; // long letters go on in the next line
    for (const char sign : file)
        if (sign != '\n' && sign != '\r')
            signs += sign;
    stroke_letters letters;
    constexpr std::size_t number_columns = 5;
    constexpr std::size_t count_columns = 3;
    std::size_t at = 0;
    for (stroke_letter& letter : letters) {
        if (at + number_columns + count_columns > signs.size())
            break;
        std::size_t count = 0;
        for (const char digit : signs.substr(at + number_columns, count_columns))
            if (digit >= '0' && digit <= '9')
                count = count * 10 + static_cast<std::size_t>(digit - '0');
        at += number_columns + count_columns;
        if (count == 0 || at + 2 * count > signs.size())
            break;
        const auto value = [&](std::size_t place) { return static_cast<double>(signs[place] - 'R'); };
        const double left = value(at);
        letter.advance = (value(at + 1) - left) / capital;
        bool lifted = true;
        for (std::size_t pair = at + 2; pair < at + 2 * count; pair += 2) {
            if (signs[pair] == ' ' && signs[pair + 1] == 'R') {
                lifted = true;
                continue;
            }
            if (lifted)
                letter.strokes.emplace_back();
            lifted = false;
            letter.strokes.back().push_back(
                {(value(pair) - left) / capital, (base_line - value(pair + 1)) / capital});
        }
        at += 2 * count;
    }
    return letters;
}

const stroke_letters* installed_stroke_letters() {
    static const std::optional<stroke_letters> letters = []() -> std::optional<stroke_letters> {
        const auto file = sys::read_file(installed_file);
        if (!file)
            return std::nullopt;
        return read_stroke_letters(file->view());
    }();
    return letters ? &*letters : nullptr;
}

} // namespace picture
