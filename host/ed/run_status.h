// How a run stands: the program's exit status.
#pragma once

#include "adesk.h"

namespace ed {

// What went wrong first; the program's exit status.
enum class run_status {
    well = 0,
    found = 1,        // a command that checks found something
    unreadable = 3,   // a drawing could not be read
    refused = 4,      // an unknown command, a refused answer, a command that failed
    ended_inside = 5, // the input ended inside a command
    not_saved = 6,
    not_loaded = 7, // an application
};

ACCORE_PORT run_status status_of_run();
// Something failed: the run's status, unless something failed before.
void note_failure(run_status status);
// A command that checks found something: the run's status, unless something failed.
void note_findings();

} // namespace ed
