#include "host/ed/run_status.h"

namespace ed {

namespace {

run_status& status() {
    static run_status so_far = run_status::well;
    return so_far;
}

} // namespace

run_status status_of_run() {
    return status();
}

void note_failure(run_status failure) {
    if (status() == run_status::well || status() == run_status::found)
        status() = failure;
}

void note_findings() {
    if (status() == run_status::well)
        status() = run_status::found;
}

} // namespace ed
