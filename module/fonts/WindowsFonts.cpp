#include "module/fonts/WindowsFonts.h"

#include "module/standard/Names.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace {

bool IsListed(const sys::installed_font& font) {
    return font.true_type && !font.face.empty() && !IsSameName(std::wstring_view(font.face), L"marlett");
}

WindowsFont RecordOf(const sys::installed_font& font) {
    WindowsFont record;
    record.m_face = font.face.c_str();
    record.m_charSet = font.character_set;
    record.m_familyFlags = font.pitch_and_family;
    record.m_fullName = font.full_name.c_str();
    record.m_style = font.style.c_str();
    record.m_script = font.script.c_str();
    record.m_weight = font.weight;
    record.m_italic = font.italic ? 1 : 0;
    record.m_underline = font.underlined ? 1 : 0;
    record.m_strikeOut = font.struck_out ? 1 : 0;
    record.m_charSetByte = static_cast<BYTE>(font.character_set);
    return record;
}

bool StandsBefore(const WindowsFont& a, const WindowsFont& b) {
    const KeyOrder before;
    const auto texts = {&WindowsFont::m_face, &WindowsFont::m_script, &WindowsFont::m_fullName};
    for (const auto text : texts)
        if (a.*text != b.*text)
            return before(a.*text, b.*text);
    return std::tie(a.m_charSet, a.m_familyFlags) < std::tie(b.m_charSet, b.m_familyFlags);
}

} // namespace

CWindowsFonts::CWindowsFonts(const std::vector<sys::installed_font>& fonts) {
    for (const sys::installed_font& font : fonts)
        if (IsListed(font))
            m_fonts.push_back(RecordOf(font));
    std::ranges::sort(m_fonts, StandsBefore);
}

void CWindowsFonts::GetScripts(const CString* face, std::vector<CString>& scripts) const {
    const std::size_t before = scripts.size();
    std::set<CString, NoCaseOrder> seen;
    for (const WindowsFont& font : m_fonts)
        if ((face == nullptr || IsSameName(font.m_face, *face)) && seen.insert(font.m_script).second)
            scripts.push_back(font.m_script);
    std::sort(scripts.begin() + static_cast<std::ptrdiff_t>(before), scripts.end(), KeyOrder());
}

void CWindowsFonts::GetFaces(const CString& script, std::vector<CString>& faces) const {
    for (const WindowsFont& font : m_fonts)
        if (IsSameName(font.m_script, script))
            faces.push_back(font.m_face);
}

const WindowsFont* CWindowsFonts::Find(const CString& face, const CString& script) const {
    const KeyOrder before;
    auto font = std::ranges::lower_bound(m_fonts, face, before, &WindowsFont::m_face);
    for (; font != m_fonts.end() && !before(face, font->m_face); ++font)
        if (IsSameName(font->m_script, script))
            return &*font;
    return nullptr;
}
