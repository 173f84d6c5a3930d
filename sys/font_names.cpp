#include "sys/font_names.h"

#include "base/utf.h"
#include "sys/file.h"

#include <algorithm>

namespace sys {

std::vector<std::pair<std::wstring, std::wstring>> font_names(const std::filesystem::path& file) {
    std::vector<std::pair<std::wstring, std::wstring>> names;
    const auto bytes = read_file(file);
    std::string_view rest = bytes ? bytes->view() : std::string_view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (const std::size_t middle = line.find(';'); middle != line.npos)
            names.emplace_back(base::widen(line.substr(0, middle)), base::widen(line.substr(middle + 1)));
    }
    return names;
}

void add_font_names(std::vector<installed_font>& fonts, const std::filesystem::path& file) {
    for (const auto& [name, face] : font_names(file)) {
        if (std::ranges::find(fonts, name, &installed_font::face) != fonts.end())
            continue;
        const std::size_t count = fonts.size();
        for (std::size_t i = 0; i < count; ++i)
            if (fonts[i].face == face) {
                installed_font named = fonts[i];
                named.face = name;
                fonts.push_back(std::move(named));
            }
    }
}

} // namespace sys
