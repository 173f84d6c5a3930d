#include "host/ed/profile_variables.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "host/ed/output.h"
#include "host/ed/running_commands.h"
#include "sys/registry.h"

#include <unordered_map>

namespace ed {

namespace {

constexpr std::wstring_view profile_key = L"Software\\ZEF\\zefhost\\Variables";

// The variables that were asked for, with the values that the profile holds.
std::unordered_map<variable_row*, variable_value>& in_profile() {
    static std::unordered_map<variable_row*, variable_value> values;
    return values;
}

sys::registry_value registry_value_of(const variable_value& value) {
    if (const int* const whole = std::get_if<int>(&value))
        return static_cast<std::uint32_t>(*whole);
    if (const double* const real = std::get_if<double>(&value))
        return base::widen(base::real_text(*real));
    return std::get<std::wstring>(value);
}

} // namespace

const variable_value& profile_value(variable_row& row) {
    if (in_profile().contains(&row))
        return row.value;
    const auto held = sys::registry_read(profile_key, row.name);
    const std::wstring* const text = held ? std::get_if<std::wstring>(&*held) : nullptr;
    variable_value value;
    if (held && text == nullptr && std::holds_alternative<int>(row.value))
        row.value = static_cast<int>(std::get<std::uint32_t>(*held));
    else if (text != nullptr && read_value(*text, row.value, value))
        row.value = value;
    in_profile().emplace(&row, row.value);
    return row.value;
}

void set_profile_value(variable_row& row, const variable_value& value) {
    profile_value(row);
    row.value = value;
    if (command_under_way() == nullptr)
        write_profile_variables();
}

void write_profile_variables() {
    std::vector<std::pair<std::wstring, sys::registry_value>> changed;
    for (const auto& [row, held] : in_profile())
        if (row->value != held)
            changed.emplace_back(row->name, registry_value_of(row->value));
    if (changed.empty())
        return;
    if (const auto written = sys::registry_write(profile_key, changed); !written)
        command_line::instance().error(L"zefhost: " + written.error()); // they hold for the session
    for (auto& [row, held] : in_profile())
        held = row->value;
}

} // namespace ed
