#include "module/fonts/FontTool.h"

#include "module/fonts/FontCatalogues.h"
#include "module/fonts/ShapeFonts.h"
#include "module/fonts/WindowsFonts.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/folders.h"
#include "sys/font_names.h"

#include <memory>

namespace {

std::unique_ptr<CWindowsFonts> windowsFonts;
std::unique_ptr<ShapeFonts> shapeFonts;

const CWindowsFonts& GetWindowsFonts(bool refresh) {
    if (windowsFonts == nullptr || refresh) {
        std::vector<sys::installed_font> fonts = sys::installed_fonts();
        sys::add_font_names(fonts, sys::system_folder() / "fonts.fmp");
        windowsFonts = std::make_unique<CWindowsFonts>(fonts);
    }
    return *windowsFonts;
}

const ShapeFonts& GetShapeFonts(bool refresh) {
    if (shapeFonts == nullptr || refresh) {
        std::vector<CString> folders;
        ZefExport::GetSupportPaths(folders);
        shapeFonts = std::make_unique<ShapeFonts>(ListShapeFonts(folders));
    }
    return *shapeFonts;
}

} // namespace

void ReleaseFontCatalogues() {
    windowsFonts.reset();
    shapeFonts.reset();
}

namespace FontTool {

void GetFontEncoded(std::vector<CString>& scripts, bool refresh) {
    GetWindowsFonts(refresh).GetScripts(nullptr, scripts);
}

void GetFontEncoded(const CString& face, std::vector<CString>& scripts, bool refresh) {
    GetWindowsFonts(refresh).GetScripts(&face, scripts);
}

void GetWinFont(const CString& script, std::vector<CString>& faces, bool refresh) {
    GetWindowsFonts(refresh).GetFaces(script, faces);
}

bool IsWinFont(const CString& face, const CString& script, int* charSet, int* familyFlags, bool refresh) {
    const WindowsFont* const font = GetWindowsFonts(refresh).Find(face, script);
    if (font == nullptr)
        return false;
    if (charSet != nullptr)
        *charSet = font->m_charSet;
    if (familyFlags != nullptr)
        *familyFlags = font->m_familyFlags;
    return true;
}

void GetShxFont(std::vector<CString>& shapeFontNames, std::vector<CString>& bigFontNames, bool refresh) {
    const ShapeFonts& fonts = GetShapeFonts(refresh);
    shapeFontNames.insert(shapeFontNames.end(), fonts.m_shapeFonts.begin(), fonts.m_shapeFonts.end());
    bigFontNames.insert(bigFontNames.end(), fonts.m_bigFonts.begin(), fonts.m_bigFonts.end());
}

} // namespace FontTool
