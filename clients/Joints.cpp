#include "clients/Joints.h"

#include "clients/CurrentSpace.h"
#include "dbobjptr.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"

#include <algorithm>

CJoints::CJoints() {
    for (const AcDbObjectId id : EntitiesOfCurrentSpace(L"ZEF_PIPENODE")) {
        const AcDbObjectPointer<TDbPipeNode> node(id, AcDb::kForRead);
        if (node.openStatus() == Acad::eOk)
            m_joints.push_back({node->GetPosition(), id});
    }
}

AcDbObjectId CJoints::FindOrAdd(const AcGePoint3d& position, AcDbObjectId layer) {
    const auto found = std::ranges::find_if(
        m_joints, [&](const Joint& joint) { return joint.m_position.distanceTo(position) < nearBy; });
    if (found != m_joints.end())
        return found->m_id;
    auto node = std::make_unique<TDbPipeNode>();
    node->SetPosition(position);
    if (!layer.isNull())
        node->setLayer(layer);
    const AcDbObjectId id = AppendToCurrentSpace(std::move(node));
    if (!id.isNull())
        m_joints.push_back({position, id});
    return id;
}

bool CJoints::AddPipe(AcDbObjectId joint, AcDbObjectId pipe) {
    const AcDbObjectPointer<TDbPipeNode> node(joint, AcDb::kForWrite);
    if (node.openStatus() == Acad::eOk)
        node->AddPipe(pipe);
    return node.openStatus() == Acad::eOk;
}
