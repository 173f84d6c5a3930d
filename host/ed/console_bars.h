// Bars on the command line: BAR prints those that applications show, and presses their buttons. It belongs to
// the console's input as a click belongs to a window: it is no command, none starts or ends with it.
//
// What stands behind it on its line names the button: an identifier, a label, or a row's name and the word of
// a column ("给水管线 FREEZE", also with / between them). A press at the command prompt is a step of undo of
// its own, inside a command ('BAR) a part of that.
#pragma once

#include "adesk.h"
#include "ui/bar.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ed {

// What it is called, and what HELP says of it.
inline constexpr std::wstring_view bar_name = L"BAR";
inline constexpr std::wstring_view bar_help =
    L"prints the bar that is shown; BAR and an identifier, a label, or a row's name and a word, presses";

// As ui::presenter has them; a bar that is shown is printed at once.
void show_bar(ui::bar& shown);
void hide_bar(ui::bar& shown);

// The picture of a bar in lines of text, and for the user what it is called in answers.
ACCORE_PORT std::wstring bar_text(const ui::bar_content& content);

bool is_bar(std::wstring_view name);
// What a line says behind BAR; nothing for one that begins otherwise.
std::optional<std::wstring> behind_bar(std::wstring_view line);
// Does what was said behind BAR; `run` runs a press as a step of that name (editor::run_press). Gives the
// reason when it names no button, or it can not be pressed.
using press_runner = std::function<void(std::wstring_view name, const std::function<void()>& press)>;
std::wstring use_bars(std::wstring_view said, const press_runner& run);

} // namespace ed
