#include "host/dwg/drawing_reader.h"

#include "base/utf.h"
#include "host/dwg/assembly.h"

#include <algorithm>
#include <utility>
#include <vector>

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
        return file.why();
    drawing_text out;
    out.damage = file->damage;
    assembly(*file, out).run();
    if (out.objects == 0)
        return base::failure{L"the map of the objects of this DWG file is damaged"};
    return out;
}

namespace {

// How many objects are kept as proxies, and of which kinds: the most frequent, as many as a line has room
// for.
std::wstring proxies_told(const drawing_text& drawing) {
    constexpr std::size_t room = 5;
    std::size_t count = 0;
    std::vector<std::pair<std::size_t, std::string>> kinds;
    for (const auto& [kind, of_kind] : drawing.proxies) {
        count += of_kind;
        kinds.emplace_back(of_kind, kind);
    }
    std::stable_sort(kinds.begin(), kinds.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::wstring told = L"; " + std::to_wstring(count) + L" are kept as they are, as proxies: ";
    // One kind takes no more room than the words that it is one more.
    const std::size_t named = kinds.size() <= room + 1 ? kinds.size() : room;
    for (std::size_t i = 0; i < named; ++i)
        told +=
            (i == 0 ? L"" : L", ") + base::widen(kinds[i].second) + L" " + std::to_wstring(kinds[i].first);
    if (named < kinds.size())
        told += L" and " + std::to_wstring(kinds.size() - named) + L" other kinds";
    return told;
}

} // namespace

std::wstring notes(const drawing_text& drawing) {
    constexpr std::pair<int, std::wstring_view> years[] = {{r2000, L"2000"}, {r2004, L"2004"},
                                                           {r2007, L"2007"}, {r2010, L"2010"},
                                                           {r2013, L"2013"}, {r2018, L"2018"}};
    std::wstring line = L"DWG of ";
    for (const auto& [version, year] : years)
        if (version == drawing.version)
            line += year;
    line += L", " + std::to_wstring(drawing.objects) + L" objects";
    if (!drawing.proxies.empty())
        line += proxies_told(drawing);
    constexpr std::size_t most = 20;
    for (std::size_t i = 0; i < drawing.damage.size() && i < most; ++i)
        line += L"\n" + drawing.damage[i];
    if (drawing.damage.size() > most)
        line += L"\n... and " + std::to_wstring(drawing.damage.size() - most) + L" more of this kind";
    return line;
}

} // namespace dwg
