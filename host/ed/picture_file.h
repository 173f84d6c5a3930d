// Pictures of a drawing written to files.
#pragma once

#include "host/picture/picture.h"

namespace ed {

// Writes a picture whole or not at all; its format follows from the file's ending. The second form shows the
// current tab.
ACCORE_PORT base::result<void> write_picture(AcDbImpDatabase& drawing, const std::wstring& file,
                                             const picture::request& request);
ACCORE_PORT base::result<void> write_picture(AcDbImpDatabase& drawing, const std::wstring& file);
// The current tab with what changed since an earlier form of the drawing, which is read from a file.
ACCORE_PORT base::result<void> write_changes(AcDbImpDatabase& drawing, const std::wstring& before,
                                             const std::wstring& file);

} // namespace ed
