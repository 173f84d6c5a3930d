// The names of the files that drawings are saved to.
#pragma once

#include "adesk.h"
#include "base/result.h"

#include <string>

namespace ap {

// What a user means by a name: ".dxf" is put behind one without an ending. What follows the last point is an
// ending when it looks like one (two to four letters and digits, a letter first): "plan.2" and "给水.施工图"
// have none. Fails, with words for the user, for endings of what is not written here ("plan.dwg").
ACCORE_PORT base::result<std::wstring> drawing_file_name(const std::wstring& typed);

} // namespace ap
