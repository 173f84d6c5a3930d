#include "host/ed/user_break.h"

#include "acedads.h"

#include <atomic>

namespace ed {

namespace {

std::atomic<bool> break_pending = false;

} // namespace

void press_break() {
    break_pending = true;
}

bool is_break_pending() {
    return break_pending;
}

bool take_break() {
    return break_pending.exchange(false);
}

} // namespace ed

int acedUsrBrk() {
    return ed::take_break() ? 1 : 0;
}
