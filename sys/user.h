// Who is at work, and where.
#pragma once

#include <string>

namespace sys {

// The name that the user logged in by; his number when he has none.
std::wstring login_name();
// The computer's name in its network.
std::wstring computer_name();
// Now by the clock on the wall: "2026-11-22 09:12:31".
std::wstring local_time();

} // namespace sys
