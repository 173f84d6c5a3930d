// Who hears of the editor: those of the reactors of events that are the editor's.
#pragma once

#include "aced.h"
#include "host/rx/events.h"

namespace rx {

// Puts the editor and the events into the system registry, once.
void register_editor();

// Calls news(reactor) for each.
template<class News>
void tell_editor(News news) {
    event_reactors().tell([&](AcRxEventReactor& reactor) {
        // By the type, not the class: a program's reactor need not register its class.
        if (auto* const hears = dynamic_cast<AcEditorReactor*>(&reactor))
            news(*hears);
    });
}

} // namespace rx
