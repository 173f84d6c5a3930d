// Answers from standard input: a person at a terminal, or another program.
#pragma once

#include "host/ed/input.h"

#include <cstdio>

// Whether standard input is a terminal.
bool input_is_terminal();

// What another program wrote to standard input, to its end; its encoding as that of a script file.
std::wstring piped_text();
// Lines that a person types, shown on `shown`, with editing, completion, and history kept in the profile.
// Escape and Ctrl-C are an Escape, Ctrl-D asks to quit, in a command it is an Escape too.
ed::line_source terminal_lines(std::FILE* shown);
