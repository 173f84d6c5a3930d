#include "module/doubleline/TDoublePipeJig.h"

TDoublePipeJig::TDoublePipeJig(std::unique_ptr<TDbDoubleLinePipe> pipe)
    : m_pipe(std::move(pipe)), m_point(m_pipe->GetStartPoint()) {
}

AcEdJig::DragStatus TDoublePipeJig::sampler() {
    AcGePoint3d point = m_point;
    const DragStatus status = acquirePoint(point, m_pipe->GetStartPoint());
    if (status == kNormal)
        m_point = point;
    return status;
}

Adesk::Boolean TDoublePipeJig::update() {
    m_pipe->SetEnds(m_pipe->GetStartPoint(), m_point);
    return true;
}

AcDbEntity* TDoublePipeJig::entity() const {
    return m_pipe.get();
}
