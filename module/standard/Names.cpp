#include "module/standard/Names.h"

#include <algorithm>

bool KeyOrder::operator()(std::wstring_view a, std::wstring_view b) const {
    if constexpr (sizeof(wchar_t) == 2) {
        const auto [atA, atB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
        if (atA == a.end() || atB == b.end())
            return atA == a.end() && atB != b.end();
        // Surrogates stand for code points above all others.
        const auto rank = [](wchar_t unit) {
            const auto value = static_cast<unsigned>(unit) & 0xFFFFU;
            return value >= 0xD800U && value < 0xE000U ? value + 0x10000U : value;
        };
        return rank(*atA) < rank(*atB);
    } else {
        return a < b;
    }
}

CString JoinNames(const std::vector<CString>& names, LPCTSTR separator) {
    CString joined;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i != 0)
            joined += separator;
        joined += names[i];
    }
    return joined;
}
