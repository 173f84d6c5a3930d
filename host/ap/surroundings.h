// What the documents ask of who runs them: whether somebody is there, what to show, and what the user wishes.
// Declared here and defined by the editor (host/ed/surroundings.cpp).
#pragma once

#include <chrono>
#include <string>

namespace ap {

// Whether a person sits at the command line.
bool has_person();
// Shows a line there; and an error.
void show(const std::wstring& line);
void show_error(const std::wstring& line);

// Whether the file that a save replaces is kept.
bool keeps_backup();
// How long after a change a drawing is saved by itself, nought: never; and where, empty: with the user's
// other temporary files.
std::chrono::minutes automatic_pause();
std::wstring automatic_folder();

} // namespace ap
