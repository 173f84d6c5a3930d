#include "host/rx/events.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcRxEventReactor, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcRxEvent, AcRxObject)

AcRxEvent::~AcRxEvent() = default;

void AcRxEvent::addReactor(AcRxEventReactor* reactor) {
    rx::event_reactors().add(reactor);
}

void AcRxEvent::removeReactor(AcRxEventReactor* reactor) {
    rx::event_reactors().remove(reactor);
}

AcRxEventReactor::~AcRxEventReactor() = default;
void AcRxEventReactor::databaseConstructed(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::databaseToBeDestroyed(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::beginSave(AcDbDatabase* /*database*/, const ACHAR* /*intendedName*/) {
}
void AcRxEventReactor::saveComplete(AcDbDatabase* /*database*/, const ACHAR* /*actualName*/) {
}
void AcRxEventReactor::abortSave(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::beginDxfIn(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::abortDxfIn(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::dxfInComplete(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::beginDxfOut(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::abortDxfOut(AcDbDatabase* /*database*/) {
}
void AcRxEventReactor::dxfOutComplete(AcDbDatabase* /*database*/) {
}

namespace rx {

reactor_list<AcRxEventReactor>& event_reactors() {
    static reactor_list<AcRxEventReactor> all;
    return all;
}

} // namespace rx
