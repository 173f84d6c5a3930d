// Answers from standard input: a person at a terminal, or another program.
#pragma once

#include "host/ed/input.h"

// Whether standard input is a terminal.
bool input_is_terminal();

// What another program wrote to standard input, to its end; its encoding as that of a script file.
std::wstring piped_text();
// Lines that a person types, with editing, history and completion of command names.
ed::line_source terminal_lines();

// The text of a script file: UTF-8, UTF-16 with its mark, or GBK.
std::wstring script_text_of(std::string_view bytes);
