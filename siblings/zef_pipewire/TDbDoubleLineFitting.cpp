#include "siblings/zef_pipewire/TDbDoubleLineFitting.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

ACRX_DXF_DEFINE_MEMBERS(TDbDoubleLineFitting, TDbPipePrototype, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_DOUBLELINEFITTING, "ZEF_PIPEWIRE|pipe entities")

namespace {

constexpr double nearBy = 1e-6;
constexpr double fullTurn = 2.0 * std::numbers::pi;

AcGeVector3d Along(double angle) {
    return {std::cos(angle), std::sin(angle), 0.0};
}

AcGeVector3d LeftOf(const AcGeVector3d& along) {
    return {-along.y, along.x, 0.0};
}

// From 0 to below a full turn.
double Turned(double angle) {
    angle = std::fmod(angle, fullTurn);
    return angle < 0.0 ? angle + fullTurn : angle;
}

// How far along the first direction two lines meet that lie beside directions from one point: to the left of
// the first, to the right of the second. Of parallel ones nought.
double MeetingPlace(const AcGeVector3d& first, double left, const AcGeVector3d& second, double right) {
    const double sine = first.x * second.y - first.y * second.x;
    const double cosine = first.x * second.x + first.y * second.y;
    return std::fabs(sine) < nearBy ? 0.0 : (right + left * cosine) / sine;
}

} // namespace

AcGePoint3d TDbDoubleLineFitting::GetPosition() const {
    assertReadEnabled();
    return m_position;
}

void TDbDoubleLineFitting::SetPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    m_position = position;
}

std::vector<TFittingBranch> TDbDoubleLineFitting::GetBranches() const {
    assertReadEnabled();
    std::vector<TFittingBranch> branches;
    for (std::size_t i = 0; i < m_angles.size(); ++i)
        branches.push_back({m_angles[i], m_lengths[i], m_diameters[i]});
    return branches;
}

void TDbDoubleLineFitting::SetBranches(const std::vector<TFittingBranch>& branches) {
    assertWriteEnabled();
    m_angles.clear();
    m_lengths.clear();
    m_diameters.clear();
    for (const TFittingBranch& branch : branches) {
        m_angles.push_back(Turned(branch.m_angle));
        m_lengths.push_back(branch.m_length);
        m_diameters.push_back(branch.m_diameter);
    }
}

double TDbDoubleLineFitting::GetBendRadius() const {
    assertReadEnabled();
    return m_bendRadius;
}

void TDbDoubleLineFitting::SetBendRadius(double radius) {
    assertWriteEnabled();
    m_bendRadius = std::max(radius, 0.0);
}

Adesk::Boolean TDbDoubleLineFitting::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    if (!IsHiddenFor(*draw)) {
        TDrawingPen pen(*draw);
        Draw(pen);
    }
    return true;
}

Acad::ErrorStatus TDbDoubleLineFitting::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    TGatheringPen pen(*this, parts);
    Draw(pen);
    return Acad::eOk;
}

void TDbDoubleLineFitting::Draw(TPen& pen) const {
    if (!DrawArcs(pen))
        DrawCorners(pen);
    for (const TFittingBranch& branch : GetBranches()) { // where it meets the pipe
        const AcGeVector3d along = Along(branch.m_angle);
        const AcGeVector3d side = LeftOf(along) * (branch.m_diameter / 2);
        const AcGePoint3d end = m_position + along * branch.m_length;
        pen.Line({end + side, end - side});
    }
}

// Of an elbow whose two ends are alike and as far from the centre as its arc wants. False for others.
bool TDbDoubleLineFitting::DrawArcs(TPen& pen) const {
    if (m_angles.size() != 2 || m_bendRadius <= 0.0 || std::fabs(m_diameters[0] - m_diameters[1]) > nearBy)
        return false;
    double first = m_angles[0];
    double opening = Turned(m_angles[1] - first);
    if (opening > std::numbers::pi) {
        first = m_angles[1];
        opening = fullTurn - opening;
    }
    if (opening < nearBy || std::numbers::pi - opening < nearBy)
        return false;
    const double away = m_bendRadius / std::sin(opening / 2);
    const AcGePoint3d center = m_position + Along(first + opening / 2) * away;
    // From the foot on the second branch, seen from the arc's centre, to that on the first.
    const double start = Turned(first + opening + std::numbers::pi / 2);
    const double end = start + std::numbers::pi - opening;
    const double half = m_diameters[0] / 2;
    pen.Arc(center, m_bendRadius + half, start, end);
    if (m_bendRadius - half > nearBy)
        pen.Arc(center, m_bendRadius - half, start, end);
    return true;
}

void TDbDoubleLineFitting::DrawCorners(TPen& pen) const {
    std::vector<TFittingBranch> branches = GetBranches();
    std::ranges::sort(branches, {}, &TFittingBranch::m_angle);
    for (std::size_t i = 0; i < branches.size(); ++i) {
        const TFittingBranch& first = branches[i];
        const TFittingBranch& second = branches[(i + 1) % branches.size()];
        const AcGeVector3d along = Along(first.m_angle);
        const AcGeVector3d across = Along(second.m_angle);
        const AcGeVector3d left = LeftOf(along) * (first.m_diameter / 2);
        const AcGeVector3d right = LeftOf(across) * (-second.m_diameter / 2);
        const double place = MeetingPlace(along, first.m_diameter / 2, across, second.m_diameter / 2);
        std::vector<AcGePoint3d> wall = {m_position + along * first.m_length + left};
        const AcGePoint3d corner = m_position + along * place + left;
        const AcGePoint3d last = m_position + across * second.m_length + right;
        const bool isStraight = std::fabs(along.x * across.y - along.y * across.x) < nearBy;
        if (!isStraight)
            wall.push_back(corner);
        else if (std::fabs(first.m_diameter - second.m_diameter) > nearBy) // a step
            wall.push_back(m_position + left);
        if (isStraight && std::fabs(first.m_diameter - second.m_diameter) > nearBy)
            wall.push_back(m_position + right);
        wall.push_back(last);
        pen.Line(wall);
    }
}

Acad::ErrorStatus TDbDoubleLineFitting::subTransformBy(const AcGeMatrix3d& matrix) {
    if (!matrix.isUniScaledOrtho())
        return Acad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    m_position = matrix * m_position;
    const double scale = matrix.scale();
    for (std::size_t i = 0; i < m_angles.size(); ++i) {
        const AcGeVector3d along = matrix * Along(m_angles[i]);
        m_angles[i] = Turned(std::atan2(along.y, along.x));
        m_lengths[i] *= scale;
        m_diameters[i] *= scale;
    }
    m_bendRadius *= scale;
    return Acad::eOk;
}

TDxfFields TDbDoubleLineFitting::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbDoubleLineFitting",
            version,
            {{10, &m_position}, {40, &m_bendRadius}, {50, &m_angles}, {41, &m_lengths}, {42, &m_diameters}}};
}

Acad::ErrorStatus TDbDoubleLineFitting::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = TDbPipePrototype::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    CutToShortest(m_angles, m_lengths, m_diameters);
    return status;
}

Acad::ErrorStatus TDbDoubleLineFitting::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = TDbPipePrototype::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbDoubleLineFitting*>(this)->Fields().Write(filer) : status;
}
