// Texts in styles that the standard lacks, and styles whose fonts this machine lacks.
#include "base/wildcard.h"
#include "dbents.h"
#include "dbmtext.h"
#include "dbobjptr.h"
#include "module/check/DrawingCheck.h"
#include "module/fonts/FontTool.h"
#include "module/standard/Names.h"
#include "module/standard/StandardManager.h"

#include <algorithm>
#include <set>

namespace {

// The style of a text; null for what is none.
AcDbObjectId StyleOf(const AcDbEntity& entity) {
    if (const auto* const text = AcDbText::cast(&entity))
        return text->textStyle();
    if (const auto* const paragraph = AcDbMText::cast(&entity))
        return paragraph->textStyle();
    return {};
}

// "HZTXT" for "C:\fonts\hztxt.SHX".
CString StemOf(const CString& file) {
    CString stem = file.Mid(std::max(file.ReverseFind(L'\\'), file.ReverseFind(L'/')) + 1);
    const int dot = stem.ReverseFind(L'.');
    return dot > 0 ? stem.Left(dot) : stem;
}

bool IsOutlineFile(const CString& file) {
    const CString end = file.Right(4);
    return end.CompareNoCase(L".ttf") == 0 || end.CompareNoCase(L".ttc") == 0 ||
           end.CompareNoCase(L".otf") == 0;
}

class Fonts {
public:
    Fonts() {
        std::vector<CString> shapes;
        std::vector<CString> bigFonts;
        FontTool::GetShxFont(shapes, bigFonts, false);
        m_shapes.insert(shapes.begin(), shapes.end());
        m_bigFonts.insert(bigFonts.begin(), bigFonts.end());
    }
    bool HasShape(const CString& file) const { return m_shapes.contains(StemOf(file)); }
    bool HasBigFont(const CString& file) const { return m_bigFonts.contains(StemOf(file)); }
    static bool HasFace(const CString& face) {
        std::vector<CString> scripts;
        FontTool::GetFontEncoded(face, scripts, false);
        return !scripts.empty();
    }

private:
    std::set<CString, NoCaseOrder> m_shapes;
    std::set<CString, NoCaseOrder> m_bigFonts;
};

// The fonts that a style asks for and that are not there, with "、" between. Which face a font file holds
// only the file tells: where the style names no face, the file's own name stands for it.
CString MissingFonts(const AcDbTextStyleTableRecord& style, const Fonts& fonts) {
    AcString face;
    bool bold = false;
    bool italic = false;
    Charset charset{};
    Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch{};
    Autodesk::AutoCAD::PAL::FontUtils::FontFamily family{};
    style.font(face, bold, italic, charset, pitch, family);
    AcString file;
    AcString bigFont;
    style.fileName(file);
    style.bigFontFileName(bigFont);
    const CString shape = file.kACharPtr();
    const CString big = bigFont.kACharPtr();
    std::vector<CString> missing;
    if (!face.isEmpty()) {
        if (!Fonts::HasFace(face.kACharPtr()))
            missing.emplace_back(face.kACharPtr());
        return JoinNames(missing, L"、");
    }
    if (IsOutlineFile(shape) ? !Fonts::HasFace(StemOf(shape)) : !shape.IsEmpty() && !fonts.HasShape(shape))
        missing.push_back(shape);
    if (!big.IsEmpty() && !fonts.HasBigFont(big))
        missing.push_back(big);
    return JoinNames(missing, L"、");
}

class CTextRules : public CRuleFamily {
public:
    explicit CTextRules(const CheckContext& context)
        : CRuleFamily(context), m_layers(context.m_rules[CheckRule::TextStyle].m_layers),
          m_isOn(context.IsOn(CheckRule::TextStyle)) {}

    void Look(const AcDbEntity& entity, const CheckedLayer& layer, bool /*isInSpace*/) override {
        const AcDbObjectId id = StyleOf(entity);
        if (id.isNull())
            return;
        const auto [place, isNew] = m_styles.try_emplace(id.asOldId());
        Style& style = place->second;
        if (isNew)
            Meet(id, style);
        if (style.m_kind >= 0 &&
            (m_layers.IsEmpty() || base::wildcard_match(ViewOf(layer.m_name), ViewOf(m_layers), true)))
            m_context.m_findings.Add(style.m_kind, entity.objectId());
    }

    void Finish() override {
        if (!m_context.IsOn(CheckRule::TextFont))
            return;
        const Fonts fonts;
        for (const auto& [id, style] : m_styles) {
            const AcDbObjectPointer<AcDbTextStyleTableRecord> record(style.m_id, AcDb::kForRead);
            const CString missing =
                record.openStatus() == Acad::eOk ? MissingFonts(*record.object(), fonts) : CString();
            if (missing.IsEmpty())
                continue;
            CString text;
            text.Format(L"文字样式\"%s\"的字体 %s 不在本机上", style.m_name, missing);
            m_context.m_findings.Add(m_context.m_findings.GetKind(CheckRule::TextFont, text), style.m_id);
        }
    }

private:
    struct Style {
        AcDbObjectId m_id;
        CString m_name;
        int m_kind = -1; // of findings; -1 for a style of the standard
    };

    void Meet(AcDbObjectId id, Style& style) const {
        style.m_id = id;
        const AcDbObjectPointer<AcDbTextStyleTableRecord> record(id, AcDb::kForRead);
        AcString name;
        if (record.openStatus() == Acad::eOk)
            record->getName(name);
        style.m_name = name.kACharPtr();
        const CStandardManager* const manager = CStandardManager::Loaded();
        const auto isSame = [&](const TextStyleNode& one) { return IsSameName(one.m_name, style.m_name); };
        if (!m_isOn || manager == nullptr || std::ranges::any_of(manager->Standard().m_textStyles, isSame))
            return;
        CString text;
        text.Format(L"文字样式\"%s\"不在标准中", style.m_name);
        style.m_kind = m_context.m_findings.GetKind(CheckRule::TextStyle, text);
    }

    CString m_layers;
    bool m_isOn;
    std::map<Adesk::LongPtr, Style> m_styles;
};

} // namespace

std::unique_ptr<CRuleFamily> MakeTextRules(const CheckContext& context) {
    return std::make_unique<CTextRules>(context);
}
