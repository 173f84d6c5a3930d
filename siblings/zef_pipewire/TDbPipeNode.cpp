#include "siblings/zef_pipewire/TDbPipeNode.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

ACRX_DXF_DEFINE_MEMBERS(TDbPipeNode, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_PIPENODE, "ZEF_PIPEWIRE|pipe entities")

AcGePoint3d TDbPipeNode::GetPosition() const {
    assertReadEnabled();
    return m_position;
}

void TDbPipeNode::SetPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    m_position = position;
}

const AcDbObjectIdArray& TDbPipeNode::GetPipes() const {
    assertReadEnabled();
    return m_pipes;
}

void TDbPipeNode::AddPipe(AcDbObjectId pipe) {
    assertWriteEnabled();
    if (!m_pipes.contains(pipe))
        m_pipes.append(pipe);
}

bool TDbPipeNode::IsShown() const {
    assertReadEnabled();
    return m_isShown;
}

void TDbPipeNode::Show(bool show) {
    assertWriteEnabled();
    m_isShown = show;
}

Adesk::Boolean TDbPipeNode::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    TDrawingPen pen(*draw);
    Draw(pen);
    return true;
}

Acad::ErrorStatus TDbPipeNode::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    TGatheringPen pen(*this, parts);
    Draw(pen);
    return Acad::eOk;
}

void TDbPipeNode::Draw(TPen& pen) const {
    constexpr double radius = 25.0;
    if (m_isShown)
        pen.Circle(m_position, radius);
}

Acad::ErrorStatus TDbPipeNode::subTransformBy(const AcGeMatrix3d& matrix) {
    assertWriteEnabled();
    m_position = matrix * m_position;
    return Acad::eOk;
}

TDxfFields TDbPipeNode::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbPipeNode", version, {{10, &m_position}, {290, &m_isShown}, {330, &m_pipes}}};
}

Acad::ErrorStatus TDbPipeNode::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer);
    return status == Acad::eOk ? Fields().Read(filer) : status;
}

Acad::ErrorStatus TDbPipeNode::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbPipeNode*>(this)->Fields().Write(filer) : status;
}

bool IsNoDrawingObject(const AcDbEntity* entity) {
    const TDbPipeNode* const node = TDbPipeNode::cast(entity);
    return node != nullptr && !node->IsShown();
}
