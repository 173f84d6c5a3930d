// The current user's registry: values of 32-bit numbers and texts below HKEY_CURRENT_USER. Names of keys and
// of values have no case. Where the system has none it is kept in <profile>/registry.reg, in the text form
// that Windows' registry editor exports and imports (version 5.00, UTF-16).
//
// Several programs on one profile lose none of each other's values. What cannot be understood in the file,
// other kinds of values too, is kept as it stands.
#pragma once

#include "base/result.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace sys {

using registry_value = std::variant<std::uint32_t, std::wstring>;

// The value `name` of `key`, e.g. L"Software\\X\\KOLConfig"; an empty name is the key's default value.
// Nothing when there is none, when it is of another kind, or when the file cannot be read.
std::optional<registry_value> registry_read(std::wstring_view key, std::wstring_view name);

// Writes these values and leaves the key's others alone, all or none; the key is made when it is missing.
// Fails when the file cannot be read or written, for an empty key, and for a key, name or text with a line
// end or a zero in it: the file's form has no place for those.
base::result<void> registry_write(std::wstring_view key,
                                  std::span<const std::pair<std::wstring, registry_value>> values);

// Removes one value. That there is none is no failure.
base::result<void> registry_erase(std::wstring_view key, std::wstring_view name);

} // namespace sys
