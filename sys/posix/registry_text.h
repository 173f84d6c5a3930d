// A registry file in the text form of Windows' registry editor, version 5.00, as lines: those that are not
// understood stay where they are.
#pragma once

#include "sys/registry.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sys {

class registry_text {
public:
    // Of any bytes; without the mark of UTF-16 they are taken for UTF-8.
    explicit registry_text(std::string_view bytes = {});

    // Whether bytes are UTF-16 with its mark or well-formed UTF-8. What is read from others can not be
    // written back.
    static bool is_text(std::string_view bytes);

    // The file in UTF-16LE with its mark.
    std::string bytes() const;

    // Keys are below HKEY_CURRENT_USER.
    std::optional<registry_value> read(std::wstring_view key, std::wstring_view name) const;

    // True when the text changed. Of several lines with one name the last counts, as it does when a file is
    // imported.
    bool write(std::wstring_view key, std::wstring_view name, const registry_value& value);
    bool erase(std::wstring_view key, std::wstring_view name);

private:
    struct place {
        std::vector<std::size_t> lines; // that give the value
        std::size_t section_end = 0;    // behind the section's last line, 0 when there is no such section
    };
    place find(std::wstring_view key, std::wstring_view name) const;
    void index();

    // Without their ends, except that a value that goes on in further lines is one.
    std::vector<std::wstring> lines_;
    // By folded key, line feed, folded name: the values of the kinds that are understood.
    std::map<std::wstring, registry_value> values_;
};

} // namespace sys
