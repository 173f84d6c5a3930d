#include "module/fonts/FontTool.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/StandardEdit.h"
#include "siblings/zef_kernal/ZefExport.h"

#include "acutads.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

namespace FontUtils = Autodesk::AutoCAD::PAL::FontUtils;

const TextStyleNode* FindStyle(LPCTSTR name) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    return manager != nullptr ? manager->Index().FindTextStyleByName(name) : nullptr;
}

const TextStyleNode* FindStyle(TextStyleEnum use) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    const CString key = GetTextStyleKey(use);
    return manager != nullptr && !key.IsEmpty() ? manager->Index().FindTextStyleByKey(key) : nullptr;
}

// False when the style's fonts are shape fonts, or the machine lacks its Windows font.
bool CopyStyle(const TextStyleNode& style, AcDbTextStyleTableRecord& record) {
    constexpr int pitchBits = 0x03;
    constexpr int familyBits = 0xF0;
    int charSet = 0;
    int familyFlags = 0;
    const bool isWindowsFont =
        FontTool::IsWinFont(style.m_chineseFont, style.m_encoding, &charSet, &familyFlags, false);
    record.setName(style.m_name);
    record.setTextSize(style.m_height);
    record.setXScale(style.m_scale);
    record.setFileName(isWindowsFont ? style.m_chineseFont : style.m_englishFont);
    record.setBigFontFileName(isWindowsFont ? style.m_englishFont : style.m_chineseFont);
    if (isWindowsFont)
        record.setFont(style.m_chineseFont, style.m_isBold, style.m_isItalic, static_cast<Charset>(charSet),
                       static_cast<FontUtils::FontPitch>(familyFlags & pitchBits),
                       static_cast<FontUtils::FontFamily>(familyFlags & familyBits));
    else // a typeface that the record had would count for more than its files
        record.setFont(L"", false, false, kAnsiCharset, FontUtils::FontPitch::kDefault,
                       FontUtils::FontFamily::kDoNotCare);
    return isWindowsFont;
}

AcDbObjectId MakeStyle(const TextStyleNode& style) {
    auto record = std::make_unique<AcDbTextStyleTableRecord>();
    if (!CopyStyle(style, *record) && style.m_isWinFont)
        acutPrintf(L"\n本机没有文字样式\"%s\"的字体\"%s\"，请安装该字体！", style.m_name.GetString(),
                   style.m_chineseFont.GetString());
    return ZefExport::AddTextStyle(record.release(), true, acdbHostApplicationServices()->workingDatabase());
}

AcDbObjectId InitStyle(LPCTSTR name, const TextStyleNode* style) {
    const AcDbObjectId there = ZefExport::GetTextStyleId(name);
    return there.isNull() && style != nullptr ? MakeStyle(*style) : there;
}

// The first style of a name, or of a use, in the standard, handed to a function that changes it.
template<class NameOrUse, class Change>
bool ChangeStyle(NameOrUse which, Change change) {
    const TextStyleNode* const found = FindStyle(which);
    if (found == nullptr)
        return false;
    CStandardManager& manager = *CStandardManager::Loaded();
    const auto place = static_cast<std::size_t>(found - manager.Standard().m_textStyles.data());
    change(StandardEdit(manager).TextStyles()[place]);
    return true;
}

} // namespace

namespace PipeSystemTool {

AcDbObjectId InitTextStyle(LPCTSTR styleName) {
    return InitStyle(styleName, FindStyle(styleName));
}

AcDbObjectId InitTextStyle(TextStyleEnum use) {
    const TextStyleNode* const style = FindStyle(use);
    return style != nullptr ? InitStyle(style->m_name, style) : AcDbObjectId(AcDbObjectId::kNull);
}

bool UpdateTextStyle(LPCTSTR styleName) {
    const AcDbObjectPointer<AcDbTextStyleTableRecord> record(ZefExport::GetTextStyleId(styleName),
                                                             AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return false;
    const TextStyleNode* const style = FindStyle(styleName);
    if (style != nullptr && record->upgradeOpen() == Acad::eOk) {
        CopyStyle(*style, *record.object());
        record->downgradeOpen();
    }
    return true;
}

bool UpdateTextStyle(TextStyleEnum use) {
    const TextStyleNode* const style = FindStyle(use);
    return style != nullptr && UpdateTextStyle(style->m_name);
}

bool IsModified(const TextStyleNode& style) {
    constexpr double slack = 1e-6;
    const CStandardManager* const manager = CStandardManager::Loaded();
    const TextStyleNode* const kept =
        manager != nullptr ? manager->Index().FindTextStyleByKey(style.m_key) : nullptr;
    if (kept == nullptr)
        return false;
    TextStyleNode compared = style;
    if (std::fabs(style.m_height - kept->m_height) <= slack)
        compared.m_height = kept->m_height;
    if (std::fabs(style.m_scale - kept->m_scale) <= slack)
        compared.m_scale = kept->m_scale;
    return compared != *kept;
}

bool SetTextStyleHeight(LPCTSTR styleName, double height) {
    return ChangeStyle(styleName, [height](TextStyleNode& style) { style.m_height = height; });
}

bool SetTextStyleHeight(TextStyleEnum use, double height) {
    return ChangeStyle(use, [height](TextStyleNode& style) { style.m_height = height; });
}

bool SetTextStyleScale(LPCTSTR styleName, double scale) {
    return ChangeStyle(styleName, [scale](TextStyleNode& style) { style.m_scale = scale; });
}

bool SetTextStyleScale(TextStyleEnum use, double scale) {
    return ChangeStyle(use, [scale](TextStyleNode& style) { style.m_scale = scale; });
}

bool SetTextStyleInfo(LPCTSTR styleName, const TextStyleNode& info) {
    return ChangeStyle(styleName, [&info](TextStyleNode& style) { style = info; });
}

bool SetTextStyleInfo(TextStyleEnum use, const TextStyleNode& info) {
    return ChangeStyle(use, [&info](TextStyleNode& style) { style = info; });
}

} // namespace PipeSystemTool
