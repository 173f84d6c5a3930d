// What is seen of a pipe's centre line.
#include "dbobjptr.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// Along the centre line, from its start.
struct Span {
    double m_from;
    double m_to;
};

double Cross(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.y - a.y * b.x;
}

// Where a symbol stands on a line in the plan, as a part of its length, unless it stands beside it.
std::optional<double> PlaceOf(const TDbPipeAttachment& symbol, const AcGePoint3d& start,
                              const AcGeVector3d& along) {
    const double square = along.x * along.x + along.y * along.y;
    const AcGeVector3d away = symbol.GetPosition() - start;
    if (square <= 0.0 || std::fabs(Cross(along, away)) > symbol.GetSize() / 2 * std::sqrt(square))
        return std::nullopt;
    return (away.x * along.x + away.y * along.y) / square;
}

// Where another line crosses a line in the plan, inside of both, as a part of its length.
std::optional<double> PlaceOf(const TDbPipe& other, const AcGePoint3d& start, const AcGeVector3d& along) {
    const AcGeVector3d across = other.GetEndPoint() - other.GetStartPoint();
    const AcGeVector3d away = other.GetStartPoint() - start;
    const double turn = Cross(along, across);
    if (turn == 0.0)
        return std::nullopt;
    const double here = Cross(away, across) / turn;
    const double there = Cross(away, along) / turn;
    const bool isInside = here > 0.0 && here < 1.0 && there > 0.0 && there < 1.0;
    return isInside ? std::optional(here) : std::nullopt;
}

} // namespace

double TDbPipe::GetPassingGap(const TDbPipe& /*passing*/) const {
    return GetPsBreakWidth(database()) * GetPlotScale();
}

std::vector<TDbPipe::Part> TDbPipe::GetVisibleParts() const {
    assertReadEnabled();
    const AcDbObjectIdArray& symbols = GetAttachments();
    if (symbols.isEmpty() && m_passingPipes.isEmpty())
        return {{m_start, m_end}};
    const AcGeVector3d along = m_end - m_start;
    const double length = GetLength();
    std::vector<Span> hidden;
    const auto hide = [&](const std::optional<double>& place, double width) {
        if (place)
            hidden.push_back({*place * length - width / 2, *place * length + width / 2});
    };
    for (int i = 0; i < symbols.length(); ++i) {
        const AcDbObjectPointer<TDbPipeAttachment> symbol(symbols[i], AcDb::kForRead);
        if (symbol.openStatus() == Acad::eOk)
            hide(PlaceOf(*symbol.object(), m_start, along), symbol->GetSize());
    }
    for (int i = 0; i < m_passingPipes.length(); ++i) {
        const AcDbObjectPointer<TDbPipe> passing(m_passingPipes[i], AcDb::kForRead);
        if (passing.openStatus() == Acad::eOk)
            hide(PlaceOf(*passing.object(), m_start, along), GetPassingGap(*passing.object()));
    }
    std::ranges::sort(hidden, {}, &Span::m_from);

    std::vector<Part> parts;
    double from = 0.0;
    const auto show = [&](double to) {
        if (to > from)
            parts.emplace_back(m_start + along * (from / length), m_start + along * (to / length));
    };
    for (const Span& span : hidden) {
        show(std::min(span.m_from, length));
        from = std::max(from, span.m_to);
    }
    show(length);
    return parts;
}

double TDbPipe::GetVisibleLength() const {
    double length = 0.0;
    for (const auto& [start, end] : GetVisibleParts())
        length += start.distanceTo(end);
    return length;
}
