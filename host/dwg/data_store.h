// The data store of 2013 and later: what belongs to objects and is too large for them, such as the bodies of
// solids.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dwg {

class record_writer;

struct stored_data {
    std::uint64_t owner = 0; // the object that it belongs to
    std::string_view schema; // what kind of data it is
    std::string_view bytes;
};

// Reads the section of the store, which must outlive what is given. What can not be read is told in `damage`.
std::vector<stored_data> read_data_store(std::string_view section, std::vector<std::wstring>& damage);

// Writes the section ACDSDATA; none when there is no data.
void write_data_store(record_writer& write, const std::vector<stored_data>& all);

} // namespace dwg
