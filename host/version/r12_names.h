// Names of symbols as R12 takes them: up to 31 bytes, capital letters, digits, $, - and _, and what lies
// above ASCII in the file's code page.
#pragma once

#include "host/db/core/table_kind.h"
#include "host/version/conversion.h"

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace version {

class r12_names {
public:
    explicit r12_names(conversion& job) : job_(job) {}

    // The name, in the file's bytes, of the symbol that the source names by these bytes. Two symbols of a
    // table never get the same; who asks first has the better one.
    const std::string& of(db::table_kind table, std::string_view bytes);

private:
    struct names_of_table {
        std::unordered_map<std::string_view, std::string> by_bytes; // of the source, where they lie
        std::unordered_map<std::wstring, std::string> by_name;      // folded
        std::unordered_set<std::string> taken;
    };

    std::string made_of(std::wstring_view name, names_of_table& names);

    conversion& job_;
    std::array<names_of_table, db::table_kinds> tables_;
};

} // namespace version
