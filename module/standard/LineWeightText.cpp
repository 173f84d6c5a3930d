#include "module/standard/LineWeightText.h"

#include <cwchar>
#include <string_view>

namespace {

struct WeightText {
    int weight;
    const wchar_t* text;
};

constexpr int byDefault = -3;

constexpr WeightText weights[] = {
    {byDefault, L"默认"}, {-1, L"随层"},  {-2, L"随块"},  {0, L"0.00"},   {5, L"0.05"},   {9, L"0.09"},
    {13, L"0.13"},        {15, L"0.15"},  {18, L"0.18"},  {20, L"0.20"},  {25, L"0.25"},  {30, L"0.30"},
    {35, L"0.35"},        {40, L"0.40"},  {50, L"0.50"},  {53, L"0.53"},  {60, L"0.60"},  {70, L"0.70"},
    {80, L"0.80"},        {90, L"0.90"},  {100, L"1.00"}, {106, L"1.06"}, {120, L"1.20"}, {140, L"1.40"},
    {158, L"1.58"},       {200, L"2.00"}, {211, L"2.11"},
};

} // namespace

int ParseLineWeight(LPCTSTR text) {
    const std::wstring_view wanted = text != nullptr ? text : L"";
    for (const WeightText& row : weights)
        if (wanted == row.text)
            return row.weight;
    return byDefault;
}

CString GetLineWeightText(int lineWeight) {
    for (const WeightText& row : weights)
        if (row.weight == lineWeight)
            return row.text;
    return weights[0].text;
}

AcCmColor ParseColor(LPCTSTR text) {
    const std::wstring_view wanted = text != nullptr ? text : L"";
    AcCmColor color;
    if (wanted == L"256" || wanted == L"ByLayer") {
        color.setColorIndex(AcCmEntityColor::kACIbyLayer);
        return color;
    }
    if (wanted == L"0" || wanted == L"ByBlock") {
        color.setColorIndex(AcCmEntityColor::kACIbyBlock);
        return color;
    }
    const auto number = [](const wchar_t* from) { return std::wcstol(from, nullptr, 10); };
    const std::size_t first = wanted.find(L',');
    const std::size_t second = first == wanted.npos ? first : wanted.find(L',', first + 1);
    if (second != wanted.npos) {
        const auto part = [&](std::size_t at) { return static_cast<Adesk::UInt8>(number(text + at)); };
        color.setRGB(part(0), part(first + 1), part(second + 1));
    } else if (const long index = wanted.empty() ? 0 : number(text); index >= 0 && index <= 0xFFFF) {
        color.setColorIndex(static_cast<Adesk::UInt16>(index));
    }
    return color;
}

CString GetColorText(const AcCmColor& color) {
    if (color.isByLayer())
        return L"ByLayer";
    if (color.isByBlock())
        return L"ByBlock";
    CString text;
    if (color.isByColor())
        text.Format(L"%d,%d,%d", color.red(), color.green(), color.blue());
    else
        text.Format(L"%d", static_cast<int>(color.colorIndex()));
    return text;
}
