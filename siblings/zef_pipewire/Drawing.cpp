#include "siblings/zef_pipewire/Drawing.h"

#include "acgiutil.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TPen.h"

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
    fromAcDbTextStyle(style, m_style);
    style.setTextSize(m_height);
    return style;
}

std::vector<TLabelLine> TLabel::Place(const AcGiTextStyle& style) const {
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

void TLabel::Draw(TPen& pen) const {
    const AcGiTextStyle style = GetStyle();
    for (const TLabelLine& line : Place(style))
        pen.Text(line.m_start, m_angle, line.m_text, style, m_style);
}
