#include "module/standard/PipeSystemTool.h"

#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"

#include "dbobjptr.h"

namespace PipeSystemTool {

CString GetPipeSystemName(AcDbObjectId pipe) {
    const AcDbObjectPointer<TDbPipe> opened(pipe, AcDb::kForRead);
    return opened.openStatus() == Acad::eOk ? GetPipeSystemName(opened.object()) : CString();
}

CString GetPipeSystemName(const TDbPipe* pipe) {
    if (pipe == nullptr)
        return {};
    const CString name = pipe->GetPipeSystemName();
    return name.IsEmpty() ? GetSystypeName(pipe->GetSystemType()) : name;
}

CString GetPipeSystemName(const TEntitySet& pipes) {
    for (const AcDbObjectId pipe : pipes) {
        const CString name = GetPipeSystemName(pipe);
        if (!name.IsEmpty())
            return name;
    }
    return {};
}

bool IsShowCrossPipe(AcDbObjectId section, LPCTSTR systemName) {
    const AcDbObjectPointer<TDbVerticalSection> drain(section, AcDb::kForRead);
    if (drain.openStatus() == Acad::eOk)
        return IsShowCrossPipe(drain.object(), systemName);
    const AcDbObjectPointer<TDbVerticalSectionFeed> feed(section, AcDb::kForRead);
    return feed.openStatus() == Acad::eOk && IsShowCrossPipe(feed.object(), systemName);
}

bool IsShowCrossPipe(const TDbVerticalSection* section, LPCTSTR systemName) {
    if (section == nullptr)
        return false;
    return section->HasField(systemName) ? section->IsShowCrossPipe(systemName)
                                         : section->IsShowCrossPipe(GetSysType(systemName));
}

bool IsShowCrossPipe(const TDbVerticalSectionFeed* section, LPCTSTR systemName) {
    return section != nullptr && section->IsShowCrossPipe(systemName);
}

} // namespace PipeSystemTool
