// registry_writer PROFILE NAME COUNT: writes COUNT values NAME1, NAME2, ... one by one under a key that all
// writers share. registry_writer --check PROFILE NAME COUNT: status 1, and how many, when any of them is not
// there.
#include "base/utf.h"
#include "sys/folders.h"
#include "sys/registry.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace {

const std::wstring key = L"Software\\Zef\\Torture";

// Numbers and texts in turn, so that both kinds are tried.
sys::registry_value value_of(const std::wstring& name, int number) {
    if (number % 2 == 0)
        return static_cast<std::uint32_t>(number);
    return name + L" \"给水\" \\ " + std::to_wstring(number);
}

} // namespace

int main(int argc, char** argv) {
    const bool check = argc > 1 && std::string_view(argv[1]) == "--check";
    if (argc != (check ? 5 : 4)) {
        std::fprintf(stderr, "usage: registry_writer [--check] PROFILE NAME COUNT\n");
        return 2;
    }
    char** arguments = argv + (check ? 2 : 1);
    sys::set_profile_folder(arguments[0]);
    const std::wstring name = base::widen(arguments[1]);
    const int count = std::atoi(arguments[2]);
    int lost = 0;
    for (int i = 1; i <= count; ++i) {
        const std::pair<std::wstring, sys::registry_value> value{name + std::to_wstring(i),
                                                                 value_of(name, i)};
        if (check) {
            lost += sys::registry_read(key, value.first) != value.second;
        } else if (const auto written = sys::registry_write(key, {&value, 1}); !written) {
            std::fprintf(stderr, "registry_writer: %s\n", base::narrow(written.error()).c_str());
            return 1;
        }
    }
    if (lost > 0)
        std::fprintf(stderr, "registry_writer: %d of %d values of %s are lost\n", lost, count, arguments[1]);
    return lost > 0 ? 1 : 0;
}
