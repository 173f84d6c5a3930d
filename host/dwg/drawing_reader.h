// A DWG file as a drawing: its bytes become the text of an ASCII DXF drawing of the same version, which all
// the rest of the program reads.
#pragma once

#include "adesk.h"
#include "base/result.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace dwg {

struct drawing_text {
    std::string dxf;
    int version = 0;                            // as $ACADVER has it: 1015 for 2000
    std::size_t objects = 0;                    // of the file
    std::map<std::string, std::size_t> proxies; // kept as they are without being understood, by their kind
    std::vector<std::wstring> damage;           // what was left out or is wrong, one line each
};

// Reads a DWG file. What is damaged is left out and told; fails when nothing can be read of it, with words
// that say why.
ACDB_PORT base::result<drawing_text> read_drawing(std::string_view bytes);

// Whether a file that begins so is a DWG file of any version.
ACDB_PORT bool is_dwg(std::string_view bytes);

// What a user should know of how a drawing was read, in lines that feeds part. The first one is "DWG of 2013,
// 481 objects; 60 are kept as they are, as proxies: SUN 20, ... and 3 other kinds"; the others tell of
// damage.
ACDB_PORT std::wstring notes(const drawing_text& drawing);

} // namespace dwg
