// The double-line pipe that follows the user's answers from its start to its next point.
#pragma once

#include "dbjig.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"

#include <memory>

class TDoublePipeJig : public AcEdJig {
public:
    // Takes over a pipe whose start is the rubber band's.
    explicit TDoublePipeJig(std::unique_ptr<TDbDoubleLinePipe> pipe);

    DragStatus sampler() override;
    Adesk::Boolean update() override;
    AcDbEntity* entity() const override;

    const TDbDoubleLinePipe& Pipe() const { return *m_pipe; }
    const AcGePoint3d& Point() const { return m_point; }

private:
    std::unique_ptr<TDbDoubleLinePipe> m_pipe;
    AcGePoint3d m_point;
};
