#include "siblings/zef_pipewire/Drawing.h"

#include "acstring.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"

#include <cmath>

namespace {

constexpr double lineStep = 1.5; // from one base line to the next, in heights of a line

} // namespace

bool IsSystemHiddenFor(const AcGiWorldDraw& draw, AcDbDatabase* database, LPCTSTR systemName) {
    const AcGiRegenType purpose = draw.regenType();
    return purpose != kAcGiForExtents && purpose != kAcGiSaveWorldDrawForProxy &&
           !IsPipeSystemShown(database, systemName);
}

double TLabel::GetTotalHeight() const {
    return m_lines.empty() ? 0.0 : m_height * (1.0 + lineStep * static_cast<double>(m_lines.size() - 1));
}

AcGiTextStyle TLabel::GetStyle() const {
    AcGiTextStyle style;
    style.setTextSize(m_height);
    const AcDbTextStyleTableRecordPointer record(m_style, AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return style;
    AcString file;
    if (record->fileName(file) == Acad::eOk)
        style.setFileName(file.kwszPtr());
    if (record->bigFontFileName(file) == Acad::eOk)
        style.setBigFontFileName(file.kwszPtr());
    style.setXScale(record->xScale());
    style.setObliquingAngle(record->obliquingAngle());
    return style;
}

std::vector<TLabelLine> TLabel::Place() const {
    const AcGiTextStyle style = GetStyle();
    const AcGeVector3d along(std::cos(m_angle), std::sin(m_angle), 0.0);
    const AcGeVector3d up(-along.y, along.x, 0.0);
    std::vector<TLabelLine> placed;
    double base = GetTotalHeight() / 2 - m_height;
    for (const CString& text : m_lines) {
        const double width = style.extents(text, false, -1, false).x;
        placed.push_back({m_middle - along * (width / 2) + up * base, text});
        base -= lineStep * m_height;
    }
    return placed;
}

void TLabel::Draw(AcGiWorldDraw& draw) const {
    const AcGiTextStyle style = GetStyle();
    const AcGeVector3d along(std::cos(m_angle), std::sin(m_angle), 0.0);
    for (const TLabelLine& line : Place())
        draw.geometry().text(line.m_start, AcGeVector3d::kZAxis, along, line.m_text, -1, false, style);
}

void TLabel::Explode(const AcDbEntity& from, AcDbObjectId layer, AcDbVoidPtrArray& parts) const {
    for (const TLabelLine& line : Place()) {
        auto* const text = new AcDbText(line.m_start, line.m_text, m_style, m_height, m_angle);
        AppendPiece(text, from, parts);
        if (!layer.isNull())
            text->setLayer(layer);
    }
}

void AppendPiece(AcDbEntity* piece, const AcDbEntity& from, AcDbVoidPtrArray& parts) {
    piece->setPropertiesFrom(&from);
    parts.append(piece);
}

void SetLayerOf(AcGiWorldDraw& draw, AcDbObjectId layer) {
    if (!layer.isNull())
        draw.subEntityTraits().setLayer(layer);
}
