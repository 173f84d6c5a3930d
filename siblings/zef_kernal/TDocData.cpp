#include "siblings/zef_kernal/TDocData.h"

#include "siblings/zef_kernal/DocDataCommand.h"

#include "AcApDMgr.h"
#include "aced.h"
#include "acutads.h"

#include <memory>

namespace {

std::unique_ptr<AcApDataManager<TDocData>> g_data;

// Asks whether the drawing is worked with the add-on.
void AskUse() {
    TDocData* const data = GetCurDocData();
    if (data == nullptr)
        return;
    acedInitGet(0, L"Y N");
    ACHAR answer[8] = {};
    const int given = acedGetKword(data->m_isUsed ? L"\n本图是否使用本插件[是(Y)/否(N)] <是>:"
                                                  : L"\n本图是否使用本插件[是(Y)/否(N)] <否>:",
                                   answer);
    if (given == RTNORM)
        data->m_isUsed = answer[0] == L'Y';
}

} // namespace

TDocData* GetCurDocData() {
    return g_data != nullptr && acDocManager->curDocument() != nullptr ? &g_data->docData() : nullptr;
}

void BeginDocData() {
    g_data = std::make_unique<AcApDataManager<TDocData>>();
    if (AcEdCommandStack* const stack = acedRegCmds)
        stack->addCommand(L"ZEF_KERNAL", L"cjkg", L"cjkg", ACRX_CMD_MODAL, AskUse);
}

void EndDocData() {
    if (AcEdCommandStack* const stack = acedRegCmds)
        stack->removeGroup(L"ZEF_KERNAL");
    g_data.reset();
}
