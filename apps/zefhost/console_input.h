// Answers from standard input: a person at a terminal, or another program.
#pragma once

#include "host/ed/input.h"

// Whether standard input is a terminal.
bool input_is_terminal();

// Lines of standard input; at a terminal with editing, history and completion of command names.
ed::line_source console_lines();

// The text of a script file: UTF-8, UTF-16 with its mark, or GBK.
std::wstring script_text_of(std::string_view bytes);
