// What the host tells zef_pipewire: at its start it brings the classes of the pipe entities.
#include "rxregsvc.h"
#include "siblings/zef_pipewire/TDbDoubleLineFitting.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_pipewire/TDbVerticalSection.h"

#include <iterator>

namespace {

struct ClassRow {
    void (*rxInit)();
    AcRxClass* (*desc)();
};

template<class T>
constexpr ClassRow Row() {
    return {&T::rxInit, &T::desc};
}

// Behind those that they are derived from.
constexpr ClassRow classes[] = {
    Row<TDbPipePrototype>(),
    Row<TDbPipe>(),
    Row<TDbDoubleLinePipe>(),
    Row<TDbDoubleLineFitting>(),
    Row<TDbPipeAttachment>(),
    Row<TDbPipeNode>(),
    Row<TDbText>(),
    Row<TDbSectionPrototype>(),
    Row<TDbVerticalSection>(),
    Row<TDbVerticalSectionFeed>(),
    Row<TDbPsConfig>(),
};

} // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        for (const ClassRow& row : classes)
            row.rxInit();
        acrxBuildClassHierarchy();
    } else if (message == AcRx::kUnloadAppMsg) {
        for (auto row = std::rbegin(classes); row != std::rend(classes); ++row)
            deleteAcRxClass(row->desc());
    }
    return AcRx::kRetOK;
}
