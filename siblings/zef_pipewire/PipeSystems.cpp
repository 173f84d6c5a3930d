#include "siblings/zef_pipewire/PipeSystems.h"

#include <algorithm>
#include <iterator>

namespace {

// By their codes, from 0. Drawings hold the codes: new names go to the end.
constexpr const wchar_t* names[] = {
    L"给水",     L"给水2",        L"给水3",    L"直饮水",     L"中水",    L"中水2",    L"中水3",
    L"循环给水", L"循环回水",     L"热给水",   L"热给水2",    L"热给水3", L"热回水",   L"热回水2",
    L"热回水3",  L"热媒给水",     L"热媒回水", L"消防",       L"消防2",   L"消防3",    L"喷淋",
    L"喷淋2",    L"喷淋3",        L"雨淋",     L"水幕",       L"水炮",    L"污水",     L"废水",
    L"通气",     L"压力污水",     L"压力废水", L"凝结水",     L"雨水",    L"压力雨水", L"虹吸雨水",
    L"其它",     L"屋顶水箱给水", L"蒸汽",     L"蒸汽凝结水", L"膨胀",    L"水喷雾",   L"细水雾",
    L"气体灭火", L"排水",
};

} // namespace

int GetSysType(LPCTSTR systemName) {
    const std::wstring_view wanted = systemName != nullptr ? systemName : L"";
    const auto found =
        std::ranges::find(names, wanted, [](const wchar_t* name) { return std::wstring_view(name); });
    return found != std::end(names) ? static_cast<int>(found - std::begin(names)) : kCustomSystemType;
}

CString GetSystypeName(int systemType) {
    return systemType >= 0 && systemType < static_cast<int>(std::size(names)) ? names[systemType] : L"";
}
