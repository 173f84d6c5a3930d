// System variables that are kept in the user's profile.
//
// What a command sets on its way and gives back before it ends never gets there: the profile is written when
// the command has ended. So it holds the user's values also when the program is killed in the middle of one.
#pragma once

#include "host/ed/variable_table.h"

namespace ed {

// Read once a session, as the editor does: another program's changes count from its next start.
const variable_value& profile_value(variable_row& row);
// Holds for the session at once, and in the profile from the end of the command under way.
void set_profile_value(variable_row& row, const variable_value& value);
// Writes what differs from the profile. A failure is told.
void write_profile_variables();

} // namespace ed
