#include "host/rx/editor_reactors.h"

#include "rxregsvc.h"

#include <memory>

ACRX_NO_CONS_DEFINE_MEMBERS(AcEditorReactor, AcRxEventReactor)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEditor, AcRxEvent)

AcEditor::~AcEditor() = default;

AcEditorReactor::~AcEditorReactor() = default;
void AcEditorReactor::commandWillStart(const ACHAR* /*command*/) {
}
void AcEditorReactor::commandEnded(const ACHAR* /*command*/) {
}
void AcEditorReactor::commandCancelled(const ACHAR* /*command*/) {
}
void AcEditorReactor::commandFailed(const ACHAR* /*command*/) {
}
void AcEditorReactor::unknownCommand(const ACHAR* /*text*/, AcDbVoidPtrArray* /*texts*/) {
}
void AcEditorReactor::sysVarWillChange(const ACHAR* /*name*/) {
}
void AcEditorReactor::sysVarChanged(const ACHAR* /*name*/, Adesk::Boolean /*success*/) {
}
void AcEditorReactor::beginDwgOpen(const ACHAR* /*fileName*/) {
}
void AcEditorReactor::endDwgOpen(const ACHAR* /*fileName*/, AcDbDatabase* /*database*/) {
}
void AcEditorReactor::beginClose(AcDbDatabase* /*database*/) {
}
void AcEditorReactor::beginQuit() {
}
void AcEditorReactor::quitWillStart() {
}

namespace rx {

namespace {

class editor_object final : public AcEditor {};
class event_object final : public AcRxEvent {};

} // namespace

void register_editor() {
    static bool done = false;
    if (std::exchange(done, true))
        return;
    AcRxEventReactor::rxInit();
    AcRxEvent::rxInit();
    AcEditorReactor::rxInit();
    AcEditor::rxInit();
    acrxBuildClassHierarchy();
    Adesk::UInt32 id = 0;
    // The registry's.
    acrxSysRegistry()->atPut(ACED_EDITOR_OBJ, std::make_unique<editor_object>().release(), id);
    acrxSysRegistry()->atPut(ACRX_EVENT_OBJ, std::make_unique<event_object>().release(), id);
}

} // namespace rx
