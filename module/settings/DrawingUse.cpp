#include "module/settings/DrawingUse.h"

#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include "acdbads.h"
#include "acedads.h"
#include "dbobjptr.h"

namespace {

// How many entities of the whole drawing fit one condition, handed to a function one by one when there is
// one.
template<class Take>
int Count(short code, const CString& pattern, Take take) {
    resbuf* const filter = acutBuildList(code, pattern.GetString(), RTNONE);
    ads_name set;
    int count = 0;
    if (acedSSGet(L"_X", nullptr, nullptr, filter, set) == RTNORM) {
        Adesk::Int32 length = 0;
        acedSSLength(set, &length);
        for (Adesk::Int32 i = 0; i < length; ++i) {
            ads_name name;
            AcDbObjectId id;
            if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk && take(id))
                ++count;
        }
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
        use.entities =
            Count(AcDb::kDxfLayerName, JoinNames(patterns, L","), [](AcDbObjectId) { return true; });
    return use;
}

DrawingUse UseOfSystem(const PipeNode& system) {
    std::vector<CString> names;
    system.GetAllLayerName(names);
    DrawingUse use = UseOfLayers(names);
    use.pipes = Count(RTDXF0, L"ZEF_PIPE,ZEF_DOUBLELINEPIPE", [&](AcDbObjectId id) {
        const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
        return pipe.openStatus() == Acad::eOk && pipe->GetPipeSystemName() == system.m_name;
    });
    return use;
}
