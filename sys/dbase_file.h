// dBASE and FoxPro tables as files: the table, the memo file beside it, and the code page of their texts.
#pragma once

#include "base/dbase_table.h"
#include "base/result.h"

#include <filesystem>

namespace sys {

// How text stands in a table of that code page, by Windows' number. Fails when this system does not know it.
base::result<base::dbase_encoding> dbase_encoding_of(int page);

// Reads a table and its memo file, which has the same name but for the suffix, in whatever case. `page` is
// the code page of the texts; 0 takes the one that the header names, or else ansi_code_page(). A memo file
// that is not there is missed only when a memo is asked for. Fails with the file's name and what is wrong in
// it.
base::result<base::dbase_table> read_dbase(const std::filesystem::path& path, int page = 0);

// Writes a table and its memo file, each whole or not at all: the memo file first, in which the texts of the
// old table still stand, so that whatever happens in between the two belong together.
base::result<void> write_dbase(const base::dbase_table& table, const std::filesystem::path& path);

} // namespace sys
