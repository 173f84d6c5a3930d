// A DWG file as its container holds it: the sections that a drawing is read from, unpacked.
#pragma once

#include "adesk.h"
#include "base/result.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace dwg {

// The numbers in the versions' names.
enum release : int { r2000 = 1015, r2004 = 1018, r2007 = 1021, r2010 = 1024, r2013 = 1027, r2018 = 1032 };

struct container {
    int version = 0; // one of the above
    int maintenance = 0;
    int code_page = 0;       // as the file numbers them
    std::string_view header; // each with what surrounds it; empty: the file has none
    std::string_view classes;
    std::string_view handles; // the object map
    std::string_view objects; // addresses of the object map count from its begin
    std::string_view measurement;
    std::string_view summary;
    std::string_view data_store;
    std::vector<std::wstring> damage; // what of it is not as it should be, though it could be read

    std::deque<std::string> unpacked; // what the views look at, if not at the file itself
};

// Opens the container of a file; `bytes` must outlive what is given. On failure says what is wrong.
base::result<container> open_container(std::string_view bytes);

// The parts of it, by version.
base::result<void> open_2000(std::string_view bytes, container& out);
base::result<void> open_2004(std::string_view bytes, container& out);
base::result<void> open_2007(std::string_view bytes, container& out);

// Gives a section to the view of its name. Sections of other names are not kept.
bool is_wanted(std::string_view name);
void keep_section(container& out, std::string_view name, std::string bytes);

// Unpacks what a page holds to at most `room` bytes; false when the packed bytes are damaged, and then `out`
// holds what could be unpacked.
ACDB_PORT bool unpack_2004(std::string_view packed, std::size_t room, std::string& out);
ACDB_PORT bool unpack_2007(std::string_view packed, std::size_t room, std::string& out);

} // namespace dwg
