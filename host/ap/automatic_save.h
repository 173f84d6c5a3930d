// Automatic saves: what a crash would take of a drawing is in the folder SAVEFILEPATH, or else in the user's
// temporary folder, as NAME_1_COUNT_XXXX.sv$, a DXF file under another ending. They go when the drawing is
// saved or closed.
#pragma once

#include "adesk.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

class AcDbImpDatabase;

namespace ap {

class ACCORE_PORT automatic_save {
public:
    using clock = std::chrono::steady_clock;

    automatic_save() = default;
    automatic_save(const automatic_save&) = delete;
    automatic_save& operator=(const automatic_save&) = delete;
    // Removes the file.
    ~automatic_save();

    // To be called at each prompt: writes the drawing when SAVETIME minutes have gone since it was changed
    // first, or changed again behind the last of these saves. What the user is to be told; empty when nothing
    // was to be done.
    std::wstring at_prompt(AcDbImpDatabase& drawing, const std::wstring& title, clock::time_point now);
    // The drawing was saved: the file is not needed any more.
    void drawing_saved(AcDbImpDatabase& drawing);

    // The file; empty when there is none.
    const std::filesystem::path& file() const { return file_; }

private:
    void remove();

    std::size_t seen_ = 0; // of the journal of changes
    std::optional<clock::time_point> changed_;
    std::filesystem::path file_;
    int count_ = 0;
};

} // namespace ap
