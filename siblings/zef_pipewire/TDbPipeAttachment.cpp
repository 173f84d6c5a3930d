#include "siblings/zef_pipewire/TDbPipeAttachment.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(TDbPipeAttachment, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_PIPEATTACHMENT, "ZEF_PIPEWIRE|pipe entities")

AcGePoint3d TDbPipeAttachment::GetPosition() const {
    assertReadEnabled();
    return m_position;
}

void TDbPipeAttachment::SetPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    m_position = position;
}

double TDbPipeAttachment::GetRotation() const {
    assertReadEnabled();
    return m_rotation;
}

void TDbPipeAttachment::SetRotation(double angle) {
    assertWriteEnabled();
    m_rotation = angle;
}

double TDbPipeAttachment::GetSize() const {
    assertReadEnabled();
    return m_size;
}

void TDbPipeAttachment::SetSize(double size) {
    assertWriteEnabled();
    if (size > 0.0)
        m_size = size;
}

int TDbPipeAttachment::GetKind() const {
    assertReadEnabled();
    return m_kind;
}

void TDbPipeAttachment::SetKind(int kind) {
    assertWriteEnabled();
    m_kind = kind;
}

CString TDbPipeAttachment::GetPipeSystemName() const {
    assertReadEnabled();
    return m_systemName;
}

void TDbPipeAttachment::SetPipeSystemName(LPCTSTR name) {
    assertWriteEnabled();
    m_systemName = name;
}

AcDbObjectId TDbPipeAttachment::GetPipe() const {
    assertReadEnabled();
    return m_pipe;
}

void TDbPipeAttachment::SetPipe(AcDbObjectId pipe) {
    assertWriteEnabled();
    m_pipe = pipe;
}

Adesk::Boolean TDbPipeAttachment::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    if (!IsSystemHiddenFor(*draw, database(), m_systemName)) {
        TDrawingPen pen(*draw);
        Draw(pen);
    }
    return true;
}

Acad::ErrorStatus TDbPipeAttachment::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    TGatheringPen pen(*this, parts);
    Draw(pen);
    return Acad::eOk;
}

// Figures are along the x axis around the origin, one unit long.
void TDbPipeAttachment::Draw(TPen& pen) const {
    const AcGeMatrix3d place = AcGeMatrix3d::translation(m_position.asVector()) *
                               AcGeMatrix3d::rotation(m_rotation, AcGeVector3d::kZAxis) *
                               AcGeMatrix3d::scaling(m_size);
    const auto placed = [&](std::vector<AcGePoint3d> points) {
        for (AcGePoint3d& point : points)
            point = place * point;
        return points;
    };
    const std::vector<AcGePoint3d> ahead = {{0, 0, 0}, {0.5, 0.25, 0}, {0.5, -0.25, 0}, {0, 0, 0}};
    const std::vector<AcGePoint3d> behind = {{0, 0, 0}, {-0.5, 0.25, 0}, {-0.5, -0.25, 0}, {0, 0, 0}};
    const std::vector<AcGePoint3d> narrowing = {
        {-0.5, 0.25, 0}, {0.5, 0, 0}, {-0.5, -0.25, 0}, {-0.5, 0.25, 0}};
    switch (m_kind) {
    case kCheckValve:
        pen.Area(placed({behind.begin(), behind.end() - 1}));
        pen.Line(placed(ahead));
        break;
    case kWaterMeter:
        pen.Circle(m_position, m_size / 2);
        pen.Line(placed(narrowing));
        break;
    case kReducer:
        pen.Line(placed(narrowing));
        break;
    default:
        pen.Line(placed(behind));
        pen.Line(placed(ahead));
        break;
    }
}

Acad::ErrorStatus TDbPipeAttachment::subTransformBy(const AcGeMatrix3d& matrix) {
    if (!matrix.isUniScaledOrtho())
        return Acad::eCannotScaleNonUniformly;
    assertWriteEnabled();
    const AcGeVector3d along = matrix * AcGeVector3d(std::cos(m_rotation), std::sin(m_rotation), 0.0);
    m_position = matrix * m_position;
    m_rotation = std::atan2(along.y, along.x);
    m_size *= matrix.scale();
    return Acad::eOk;
}

TDxfFields TDbPipeAttachment::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbPipeAttachment",
            version,
            {{10, &m_position},
             {50, &m_rotation},
             {40, &m_size},
             {71, &m_kind},
             {1, &m_systemName},
             {330, &m_pipe}}};
}

Acad::ErrorStatus TDbPipeAttachment::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    KeepPositive(m_size, usualSize);
    return status;
}

Acad::ErrorStatus TDbPipeAttachment::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbPipeAttachment*>(this)->Fields().Write(filer) : status;
}
