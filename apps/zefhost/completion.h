// What a person may have begun to type at a prompt: a command, a keyword, a file.
#pragma once

#include "apps/zefhost/line_editor.h"

// What the text in front of the cursor can become, by what the prompt under way takes.
completions complete_answer(std::wstring_view before_cursor);
