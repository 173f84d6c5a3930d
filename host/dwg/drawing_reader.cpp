#include "host/dwg/drawing_reader.h"

#include "base/utf.h"
#include "host/dwg/assembly.h"

#include <algorithm>

namespace dwg {

bool is_dwg(std::string_view bytes) {
    constexpr std::size_t name = 6;
    if (bytes.size() <= name || !bytes.starts_with("AC"))
        return false;
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    return std::all_of(bytes.begin() + 2, bytes.begin() + name, is_digit) && bytes[name] == '\0';
}

base::result<drawing_text> read_drawing(std::string_view bytes) {
    auto file = open_container(bytes);
    if (!file)
        return base::failure{file.error()};
    drawing_text out;
    out.damage = file->damage;
    assembly(*file, out).run();
    if (out.objects == 0)
        return base::failure{L"the map of the objects of this DWG file is damaged"};
    constexpr std::size_t padding = 64;
    out.size = out.dxf.size();
    out.dxf.append(padding, '\0');
    return out;
}

std::wstring notes(const drawing_text& drawing) {
    constexpr std::pair<int, std::wstring_view> years[] = {{r2000, L"2000"}, {r2004, L"2004"},
                                                           {r2007, L"2007"}, {r2010, L"2010"},
                                                           {r2013, L"2013"}, {r2018, L"2018"}};
    std::wstring line = L"DWG of ";
    for (const auto& [version, year] : years)
        if (version == drawing.version)
            line += year;
    line += L", " + std::to_wstring(drawing.objects) + L" objects";
    std::size_t count = 0;
    std::wstring kinds;
    for (const auto& [kind, of_kind] : drawing.proxies) {
        count += of_kind;
        kinds += (kinds.empty() ? L"" : L", ") + base::widen(kind) + L" " + std::to_wstring(of_kind);
    }
    if (count != 0)
        line += L"; " + std::to_wstring(count) + L" are kept as they are, as proxies: " + kinds;
    constexpr std::size_t most = 20;
    for (std::size_t i = 0; i < drawing.damage.size() && i < most; ++i)
        line += L"\n" + drawing.damage[i];
    if (drawing.damage.size() > most)
        line += L"\n... and " + std::to_wstring(drawing.damage.size() - most) + L" more of this kind";
    return line;
}

} // namespace dwg
