#include "module/frame/DrawingDefaults.h"

#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_public/SharedOptions.h"

void LoadDrawingDefaults() {
    // Here the section "DWG默认数据" of CmdConfig.xml will be read into the pipe entities' defaults.

    g_bIsPipeThick = IsPsLineWeight();
    g_nBreakPipeWidth = GetPsBreakWidth();
    g_nPipeTextBreak = GetPsPipeTextDis();
    g_iElbowType = GetElbowType();
}
