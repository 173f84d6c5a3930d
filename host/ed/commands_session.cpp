// SCRIPT, DELAY, MODEL.
#include "acedads.h"
#include "host/db/core/support_path.h"
#include "host/db/tables/spaces.h"
#include "host/ed/editor.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace ed {

namespace {

// Why the file is no script that can be read; empty, and its lines wait to be read, when it is.
std::wstring call_script(std::wstring name) {
    if (sys::to_path(name).extension().empty())
        name += L".scr";
    AcDbDatabase* const drawing = current_drawing();
    const auto file = db::find_support_file(name, drawing != nullptr ? &drawing->imp() : nullptr);
    const auto bytes = sys::read_file(file.empty() ? sys::to_path(name) : file);
    if (!bytes)
        return bytes.error();
    return editor::instance().input.call_script(name, sys::plain_text(bytes->view()))
               ? L""
               : L"Scripts call each other without end.";
}

} // namespace

void script_command() {
    const expecting hint({{}, L".scr"});
    ask_value(L"\nEnter script file name: ", {}, answer_rule::line,
              [](const answer& given) { return call_script(file_of(given.text)); });
}

// Ends early when the user breaks it off.
void delay_command() {
    constexpr int longest = 32767;
    int milliseconds = 0;
    acedInitGet(RSG_NONEG, L"");
    if (acedGetInt(L"\nEnter delay time (in milliseconds): ", &milliseconds) != RTNORM)
        return;
    using clock = std::chrono::steady_clock;
    const auto end = clock::now() + std::chrono::milliseconds(std::min(milliseconds, longest));
    constexpr std::chrono::milliseconds breath(50);
    while (clock::now() < end && acedUsrBrk() == 0)
        std::this_thread::sleep_for(std::min<clock::duration>(breath, end - clock::now()));
}

void model_command() {
    if (current_drawing() == nullptr)
        return;
    if (current_drawing()->tilemode() || !db::set_current_tab(current_drawing()->imp(), L"Model"))
        return;
    acutPrintf(L"\nRegenerating model.\n");
}

} // namespace ed
