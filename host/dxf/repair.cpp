#include "host/dxf/repair.h"

#include <map>

namespace dxf {

std::vector<std::wstring> messages_of(const std::vector<repair>& repairs, bool binary) {
    constexpr std::size_t most_of_a_kind = 20;
    std::map<repair_kind, std::vector<const repair*>> by_kind;
    for (const repair& one : repairs)
        by_kind[one.kind].push_back(&one);
    std::vector<std::wstring> messages;
    std::size_t number = 0;
    for (const auto& [kind, all] : by_kind) {
        for (std::size_t i = 0; i < all.size() && i < most_of_a_kind; ++i)
            messages.push_back(L"repair " + std::to_wstring(number + i + 1) +
                               (binary ? L": byte " : L": line ") + std::to_wstring(all[i]->line) + L": " +
                               all[i]->what + L": " + all[i]->done);
        if (all.size() > most_of_a_kind)
            messages.push_back(L"... and " + std::to_wstring(all.size() - most_of_a_kind) +
                               L" more of this kind");
        number += all.size();
    }
    return messages;
}

} // namespace dxf
