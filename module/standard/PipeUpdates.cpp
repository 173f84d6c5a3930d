#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemUpdates.h"
#include "module/standard/StandardEdit.h"
#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "siblings/zef_public/SharedOptions.h"

#include "dbobjptr.h"

#include <cstdint>

namespace {

// Hands the pipe of an id, open for writing, to a function. False for what is no pipe.
template<class Update>
bool UpdatePipe(AcDbObjectId id, Update update) {
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForWrite);
    if (pipe.openStatus() != Acad::eOk)
        return false;
    update(pipe.object());
    return true;
}

template<class Section>
bool ShowCrossPipe(AcDbObjectId id, LPCTSTR systemName, bool show) {
    const AcDbObjectPointer<Section> section(id, AcDb::kForWrite);
    if (section.openStatus() == Acad::eOk)
        PipeSystemTool::SetShowCrossPipe(section.object(), systemName, show);
    return section.openStatus() == Acad::eOk;
}

void ShowCrossPipe(TDbSectionPrototype& section, LPCTSTR systemName, bool show) {
    section.SetShowCrossPipe(systemName, show);
    section.SetShowCrossPipe(GetSysType(systemName), show);
}

} // namespace

namespace PipeSystemTool {

void SetPipeLayer(TDbPipe* pipe, LPCTSTR systemName) {
    if (pipe == nullptr || !pipe->isWriteEnabled())
        return;
    pipe->setLayer(InitLayer(systemName, pipe->IsVertical() ? L"立管" : L"管线", nullptr), true);
    pipe->ChangeValues().m_labelLayer = InitLayer(systemName, L"管径文字", nullptr);
    pipe->SetArrowLayerId(InitLayer(systemName, L"管线流向", nullptr));
}

void SetPipeLayer(AcDbObjectId pipe, LPCTSTR systemName) {
    UpdatePipe(pipe, [systemName](TDbPipe* opened) { SetPipeLayer(opened, systemName); });
}

void SetPipeSystemName(TDbPipe* pipe, LPCTSTR name) {
    pipe->SetPipeSystemName(name);
    pipe->SetSystemType(GetSysType(name));
}

bool SetPipeSystemName(AcDbObjectId pipe, LPCTSTR name) {
    return UpdatePipe(pipe, [name](TDbPipe* opened) { SetPipeSystemName(opened, name); });
}

void UpdatePipeInfo(TDbPipe* pipe) {
    TPipeValues& values = pipe->ChangeValues();
    const CString material = GetPipeMaterialByIdx(values.m_material);
    double outer = values.m_dn;
    double wall = 0.0;
    if (!material.IsEmpty()) {
        outer = GetPipeOuterDn(material, values.m_dn);
        wall = (outer - GetPipeInnerDn(material, values.m_dn)) * 0.5;
    }
    pipe->SetOuterDn(outer);
    pipe->SetField(L"PIPE_THICK", wall);
    values.m_isChanged = true;
}

void UpdatePipeInfo(AcDbObjectId pipe) {
    UpdatePipe(pipe, [](TDbPipe* opened) { UpdatePipeInfo(opened); });
}

void UpdatePipeInfo(TEntitySet pipes) { // NOLINT(performance-unnecessary-value-param): callers link it so
    if (pipes.GetCount() > 0)
        UpdatePipeInfo(pipes.GetAt(0));
}

void UpdateMaterialLineWeight(TDbPipe* pipe, bool material, bool lineWidth, PipeMaterialEnum use) {
    const CString system = pipe->GetPipeSystemName();
    TPipeValues& values = pipe->ChangeValues();
    if (material) {
        values.m_material = static_cast<std::int16_t>(GetPipeMaterialIndex(system, use));
        values.m_isChanged = true;
    }
    if (lineWidth)
        values.m_lineWidth = GetPipeLineWidth(system);
}

void UpdatePipeLabel(TDbPipe* pipe) {
    TPipeValues& values = pipe->ChangeValues();
    values.m_labelPrefix = GetPrefixOfPipeMaterial(values.m_material);
    values.m_isChanged = true;
}

void UpdateVPipeRadius(TDbPipe* pipe) {
    const CString system = pipe->GetPipeSystemName();
    if (system.IsEmpty() || !pipe->IsVertical())
        return;
    TPipeValues& values = pipe->ChangeValues();
    values.m_vPipeRadius = GetVPipeRadius(system);
    switch (GetVPipeType(system)) {
    case 1:
        values.m_vPipeRadius = GetVPipeRadius1(system);
        values.m_vPipeSecond = GetVPipeRadius2(system);
        break;
    case 2:
        values.m_vPipeSecond = -1.0;
        break;
    case 3:
        values.m_vPipeSecond = -3.0;
        break;
    default:
        values.m_vPipeSecond = g_bStandPipeArc ? 0.0 : -2.0;
        break;
    }
}

void UpdatePipeMaterial() {
    ReloadPipeMaterials();
}

void SetPipeStatus(LPCTSTR systemName, unsigned int flags) {
    CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr)
        return;
    StandardEdit edit(*manager);
    for (PipeNode* const system : edit.Systems(systemName))
        system->m_status = static_cast<int>(flags);
}

void SetShowCrossPipe(AcDbObjectId section, LPCTSTR systemName, bool show) {
    if (!ShowCrossPipe<TDbVerticalSection>(section, systemName, show))
        ShowCrossPipe<TDbVerticalSectionFeed>(section, systemName, show);
}

void SetShowCrossPipe(TDbVerticalSection* section, LPCTSTR systemName, bool show) {
    ShowCrossPipe(*section, systemName, show);
}

void SetShowCrossPipe(TDbVerticalSectionFeed* section, LPCTSTR systemName, bool show) {
    ShowCrossPipe(*section, systemName, show);
}

} // namespace PipeSystemTool
