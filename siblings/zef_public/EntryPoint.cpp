// What the host tells zef_public: at its start it reads the shared options.
#include "rxregsvc.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "siblings/zef_public/SharedOptions.h"

#include <variant>

namespace {

struct StoredOption {
    const wchar_t* value;
    std::variant<int*, double*> variable;
};

const StoredOption storedOptions[] = {
    {L"DefaultPipeDn", &g_iDefaultPipeDn},
    {L"DbPipeLineWidth", &g_dDbPipeLineWidth},
    {L"IsElevDimChangeByPipeElev", &g_bIsElevDimChangeByPipeElev},
    {L"DnDimDist2Pipe", &g_nDnDimDist2Pipe},
    {L"IsStandPipeArc", &g_bStandPipeArc},
    {L"ElbowRate", &g_nElbowRate},
    {L"SanitaryDataType", &g_nSinataryDataType},
    {L"VPipeDimStyle", &g_iVPipeDimStyle},
    {L"VPipeDimDn2Label", &g_dVPipeDimDn2Label},
    {L"IsPipeDimCir", &g_bIsPipeDimCir},
    {L"FeedCircleScale", &g_nFeedCircleScale},
    {L"SprinklerRadius", &g_nSprinklerRadius},
    {L"ValveScale", &g_nValveScale},
    {L"DrainPtRadius", &g_nDrainPtRadius},
    {L"Blk3D", &g_bBlk3D},
    {L"SprinklerDistMod", &g_iSprinklerDistMod},
    {L"WellRadius", &g_nWellRadius},
    {L"DimPipeGradientType", &g_iDimPipeGradientType},
    {L"Toolbar", &g_bToolbar},
    {L"SelectPreview", &g_bEnableSelectPreview},
    {L"VrOsnap", &g_bVrOsnap},
    {L"DownloadQ8Split", &g_bDownloadQ8Split},
};

void ReadSharedOptions() {
    const TRegProperty config(GetRegLocation(), L"KOLConfig");
    for (const StoredOption& option : storedOptions)
        std::visit([&](auto* variable) { config.GetValue(option.value, *variable); }, option.variable);
}

} // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        ReadSharedOptions();
    }
    return AcRx::kRetOK;
}
