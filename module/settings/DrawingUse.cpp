#include "module/settings/DrawingUse.h"

#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include "acdbads.h"
#include "acedads.h"
#include "dbobjptr.h"

namespace {

int CountOnLayers(const CString& pattern) {
    resbuf* const filter = acutBuildList(AcDb::kDxfLayerName, pattern.GetString(), RTNONE);
    ads_name set;
    Adesk::Int32 count = 0;
    if (acedSSGet(L"_X", nullptr, nullptr, filter, set) == RTNORM) {
        acedSSLength(set, &count);
        acedSSFree(set);
    }
    acutRelRb(filter);
    return count;
}

} // namespace

CString DrawingUse::GetText() const {
    CString text;
    if (layers != 0)
        text.Format(L"图层 %d 个(图元 %d 个)", layers, entities);
    CString ofPipes;
    if (pipes != 0)
        ofPipes.Format(L"%s管线 %d 根", layers != 0 ? L"，" : L"", pipes);
    return text + ofPipes;
}

DrawingUse UseOfLayers(const std::vector<CString>& names) {
    DrawingUse use;
    std::vector<CString> patterns;
    for (const CString& name : names)
        if (!ZefExport::GetLayerIdFromString(name).isNull()) {
            ++use.layers;
            patterns.push_back(ZefExport::GetLiteralPattern(name));
        }
    if (!patterns.empty())
        use.entities = CountOnLayers(JoinNames(patterns, L","));
    return use;
}

DrawingUse UseOfSystem(const PipeNode& system) {
    std::vector<CString> names;
    system.GetAllLayerName(names);
    DrawingUse use = UseOfLayers(names);
    for (const AcDbObjectId id : EntitiesOfDrawing(L"ZEF_PIPE,ZEF_DOUBLELINEPIPE")) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        if (pipe.openStatus() == Acad::eOk && pipe->GetPipeSystemName() == system.m_name)
            ++use.pipes;
    }
    return use;
}
