#include "clients/Joints.h"

#include "dbobjptr.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"

#include <algorithm>
#include <cmath>

namespace {

// The cell of a place, moved by whole cells; few cells share a number.
std::uint64_t CellOf(const AcGePoint3d& position, int dx, int dy, int dz) {
    const auto number = [](double length, int moved) {
        return static_cast<std::uint64_t>(
            static_cast<std::int64_t>(std::clamp(std::floor(length / CJoints::nearBy), -1e18, 1e18)) + moved);
    };
    constexpr std::uint64_t oddX = 0x9E3779B97F4A7C15;
    constexpr std::uint64_t oddY = 0xC2B2AE3D27D4EB4F;
    return number(position.x, dx) * oddX ^ number(position.y, dy) * oddY ^ number(position.z, dz);
}

} // namespace

CJoints::CJoints() {
    for (const AcDbObjectId id : EntitiesOfCurrentSpace(L"ZEF_PIPENODE")) {
        const AcDbObjectPointer<TDbPipeNode> node(id, AcDb::kForRead);
        if (node.openStatus() == Acad::eOk)
            m_joints.emplace(CellOf(node->GetPosition(), 0, 0, 0), Joint{node->GetPosition(), id});
    }
}

AcDbObjectId CJoints::FindOrAdd(const AcGePoint3d& position, AcDbObjectId layer) {
    constexpr int cells = 27;
    for (int i = 0; i < cells; ++i) {
        const auto [from, to] = m_joints.equal_range(CellOf(position, i % 3 - 1, i / 3 % 3 - 1, i / 9 - 1));
        for (auto joint = from; joint != to; ++joint)
            if (joint->second.m_position.distanceTo(position) < nearBy)
                return joint->second.m_id;
    }
    auto node = std::make_unique<TDbPipeNode>();
    node->SetPosition(position);
    if (!layer.isNull())
        node->setLayer(layer);
    const AcDbObjectId id = AppendToCurrentSpace(std::move(node));
    if (!id.isNull())
        m_joints.emplace(CellOf(position, 0, 0, 0), Joint{position, id});
    return id;
}

bool CJoints::AddPipe(AcDbObjectId joint, AcDbObjectId pipe) {
    const AcDbObjectPointer<TDbPipeNode> node(joint, AcDb::kForWrite);
    if (node.openStatus() == Acad::eOk)
        node->AddPipe(pipe);
    return node.openStatus() == Acad::eOk;
}
