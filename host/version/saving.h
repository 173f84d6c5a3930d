// Saving a drawing, as its own file or as files of another version hold it.
#pragma once

#include "base/result.h"
#include "host/db/core/imp_database.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace version {

// A version that drawings can be saved as: the number in $ACADVER, and the name that users know it by.
struct saved_version {
    int number;
    const wchar_t* name;
};

// Newest first.
inline constexpr saved_version saved_versions[] = {{1032, L"2018"}, {1027, L"2013"}, {1024, L"2010"},
                                                   {1021, L"2007"}, {1018, L"2004"}, {1015, L"2000"},
                                                   {1009, L"R12"}};

// The number of a version that a user names ("2018", "r12"; "12" too); 0 when there is none of that name.
int version_by_name(std::wstring_view name);
// The name of a version; of one that nothing can be saved as, that of the next older one ("R12" for all that
// are older still).
std::wstring version_name(int number);

// Gives the bytes of an ASCII file of a version piece by piece; the drawing in memory stays as it is. With
// the drawing's own version they are those of its own file. Stops when `put` answers false.
//
// Answers with one line for each kind of thing that the file does not have, or has in another form, with how
// many there were; nothing when it holds everything.
std::vector<std::wstring> write_as_version(AcDbImpDatabase& database, int version,
                                           const std::function<bool(std::string_view)>& put);

// Writes such a file, whole or not at all; the file that was there is kept as `backup`, if that is
// given. On failure says why nothing was written.
base::result<std::vector<std::wstring>> save_as_version(AcDbImpDatabase& database, int version,
                                                        const std::filesystem::path& file,
                                                        const std::filesystem::path& backup = {});

// Writes the drawing, whole or not at all, as its own file from now on. `version` is the number of one of
// saved_versions; 0: as it was saved last, or is. What the file does not hold is told
// (AcDbImpDatabase::reading) and stays in memory. The file that was there is kept as `backup`, if that is
// given. On failure says what is wrong and where.
base::result<void> save(AcDbImpDatabase& database, const std::wstring& path, int version = 0,
                        const std::filesystem::path& backup = {});
// The same of a copy; the drawing's own file stays the one it was.
base::result<void> save_copy(AcDbImpDatabase& database, const std::wstring& path, int version = 0,
                             const std::filesystem::path& backup = {});

} // namespace version
