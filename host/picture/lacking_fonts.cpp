#include "host/picture/lacking_fonts.h"

namespace picture {

void lacking_fonts::add(const std::wstring& file, std::wstring_view stands_in) {
    const std::lock_guard alone(lock_);
    all_.try_emplace(file, lacking{std::wstring(stands_in), std::nullopt, false});
}

void lacking_fonts::add(const std::wstring& name, const sys::sheet_font& chosen, bool may_be_here) {
    const std::lock_guard alone(lock_);
    all_.try_emplace(name, lacking{{}, chosen, may_be_here});
}

std::vector<std::wstring> lacking_fonts::told(sys::paper& paper) const {
    std::vector<std::wstring> lines;
    for (const auto& [name, font] : all_) {
        std::wstring stands_in = font.stands_in;
        if (font.chosen)
            stands_in = paper.stand_in(*font.chosen, font.may_be_here ? std::wstring_view(name) : L"");
        if (!font.may_be_here || !stands_in.empty())
            lines.push_back(name + L": " + (stands_in.empty() ? L"nothing" : stands_in));
    }
    return lines;
}

} // namespace picture
