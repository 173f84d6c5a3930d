#include "sys/font_names.h"

#include "base/utf.h"
#include "sys/file.h"

#include <algorithm>

namespace sys {

void add_font_names(std::vector<installed_font>& fonts, const std::filesystem::path& file) {
    const auto bytes = read_file(file);
    std::string_view rest = bytes ? bytes->view() : std::string_view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const std::size_t middle = line.find(';');
        if (middle == line.npos)
            continue;
        const std::wstring name = base::widen(line.substr(0, middle));
        const std::wstring face = base::widen(line.substr(middle + 1));
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
