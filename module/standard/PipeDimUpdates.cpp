// How a pipe's label is arranged so that it fits the pipe.
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include "dbents.h"

#include <memory>

namespace {

constexpr double slack = 0.001;

// A text that looks as the pipe's label does, to be measured.
std::unique_ptr<AcDbText> MakeProbe(const TDbPipe& pipe) {
    const TPipeValues& values = pipe.GetValues();
    auto probe = std::make_unique<AcDbText>();
    probe->setPropertiesFrom(&pipe);
    if (!values.m_labelStyle.isNull())
        probe->setTextStyle(values.m_labelStyle);
    probe->setHeight(pipe.GetLabelHeight());
    probe->setRotation(0.0);
    probe->setHorizontalMode(AcDb::kTextCenter);
    probe->setVerticalMode(AcDb::kTextVertMid);
    return probe;
}

// Of the widest line; nothing when no line can be measured.
bool MeasureLabel(const TDbPipe& pipe, AcDbText& probe, double& widest) {
    bool isMeasured = false;
    widest = 0.0;
    for (const CString& line : pipe.GetMultiLineDimTextByDimElements()) {
        AcDbExtents extents;
        probe.setTextString(line);
        if (probe.getGeomExtents(extents) != Acad::eOk)
            continue;
        isMeasured = true;
        const double width = extents.maxPoint().x - extents.minPoint().x;
        if (width > widest + slack)
            widest = width;
    }
    return isMeasured;
}

} // namespace

namespace PipeSystemTool {

void UpatePipeDimType(TDbPipe* pipe, const PipeDimNode& arrangement) {
    std::vector<int> types;
    for (const PipeDimElement& element : arrangement.m_elements) {
        types.push_back(element.m_type);
        pipe->SetDimElementPrefix(element.m_type, element.m_prefix);
        pipe->SetDimElementSuffix(element.m_type, element.m_suffix);
        pipe->SetDimElementPrecision(element.m_type, element.m_precision, element.m_keepZeros);
    }
    pipe->SetDimElements(types, arrangement.m_elementsInLine);
}

bool UpatePipeDimType(TDbPipe* pipe, const std::vector<PipeDimNode>& arrangements) {
    const double length = pipe->GetVisibleLength();
    const std::unique_ptr<AcDbText> probe = MakeProbe(*pipe);
    const std::unique_ptr<TDbPipe> tried(TDbPipe::cast(pipe->clone()));
    for (const PipeDimNode& arrangement : arrangements) {
        UpatePipeDimType(tried.get(), arrangement);
        double widest = 0.0;
        if (MeasureLabel(*tried, *probe, widest) && length + slack > widest) {
            UpatePipeDimType(pipe, arrangement);
            return true;
        }
    }
    return false;
}

} // namespace PipeSystemTool
