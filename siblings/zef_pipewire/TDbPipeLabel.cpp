// What a pipe's label says.
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double metre = 1000.0;

// How an element is written unless the pipe says otherwise; decimals below 0: as the defaults say for
// lengths.
struct ElementRow {
    int m_type;
    const wchar_t* m_prefix;
    const wchar_t* m_suffix;
    int m_decimals;
};
constexpr ElementRow elementRows[] = {
    {kDimDn, L"", L"", 0},
    {kDimOuterDn, L"%%c", L"", 1},
    {kDimThickness, L"x", L"", 1},
    {kDimLength, L"L=", L"m", -1},
    {kDimGradient, L"i=", L"", 3},
    {kDimStartElevation, L"H=", L"", 3},
    {kDimEndElevation, L"H=", L"", 3},
    {kDimSystem, L"", L"", 0},
};

CString NumberText(double number, int decimals, bool keepZeros) {
    constexpr int most = 9;
    CString text;
    text.Format(L"%.*f", std::clamp(decimals, 0, most), number);
    if (!keepZeros && text.Find(L'.') >= 0)
        text.TrimRight(L'0').TrimRight(L'.');
    return text;
}

// Whether a diameter behind it is an outer one: the signs of plastic pipes, of copper and of thin steel.
bool IsSignOfOuter(CString sign) {
    sign.TrimRight();
    const CString last = sign.Right(2);
    return last == L"De" || last == L"dn" || last == L"Dw";
}

} // namespace

std::size_t TDbPipe::FindElement(int type) const {
    const auto found = std::ranges::find(m_styledElements, type);
    return static_cast<std::size_t>(found - m_styledElements.begin());
}

std::size_t TDbPipe::AddElement(int type) {
    assertWriteEnabled();
    const std::size_t at = FindElement(type);
    if (at < m_styledElements.size())
        return at;
    const auto row = std::ranges::find(elementRows, type, &ElementRow::m_type);
    const bool isKnown = row != std::end(elementRows);
    m_styledElements.push_back(type);
    m_prefixes.emplace_back(isKnown ? row->m_prefix : L"");
    m_suffixes.emplace_back(isKnown ? row->m_suffix : L"");
    m_precisions.push_back(-1);
    m_keepZeros.push_back(0);
    return at;
}

void TDbPipe::SetDimElements(const std::vector<int>& types, int elementsInLine) {
    assertWriteEnabled();
    m_dimElements = types;
    m_elementsInLine = std::max(elementsInLine, 0);
}

const std::vector<int>& TDbPipe::GetDimElements() const {
    assertReadEnabled();
    return m_dimElements;
}

void TDbPipe::SetDimElementPrefix(int type, LPCTSTR prefix) {
    m_prefixes[AddElement(type)] = prefix;
}

void TDbPipe::SetDimElementSuffix(int type, LPCTSTR suffix) {
    m_suffixes[AddElement(type)] = suffix;
}

void TDbPipe::SetDimElementPrecision(int type, int precision, bool keepZeros) {
    const std::size_t at = AddElement(type);
    m_precisions[at] = precision;
    m_keepZeros[at] = keepZeros ? 1 : 0;
}

CString TDbPipe::SignedDiameter(const CString& sign, double diameter) {
    return sign + NumberText(diameter, 1, false);
}

CString TDbPipe::GetLabelText() const {
    assertReadEnabled();
    const CString& format = m_values.m_labelFormat;
    if (format.Find(L"%%c") >= 0) {
        const CString thickness =
            m_values.m_thickness > 0.0 ? L"x" + NumberText(m_values.m_thickness, 1, false) : CString();
        return SignedDiameter(format, m_values.m_dn) + thickness;
    }
    const CString& prefix = m_values.m_labelPrefix;
    const CString sign = !format.IsEmpty() ? format : !prefix.IsEmpty() ? prefix : CString(L"DN");
    const bool tellsOuter = IsSignOfOuter(sign) && m_outerDn > 0.0;
    return SignedDiameter(sign, tellsOuter ? m_outerDn : m_values.m_dn);
}

CString TDbPipe::ElementText(int type) const {
    const auto row = std::ranges::find(elementRows, type, &ElementRow::m_type);
    if (row == std::end(elementRows))
        return {};
    const std::size_t at = FindElement(type);
    const bool isStyled = at < m_styledElements.size();
    int decimals = isStyled && m_precisions[at] >= 0 ? m_precisions[at] : row->m_decimals;
    if (decimals < 0)
        TDefaultCfg::GetDefaultValue(TDefaultCfg::kInteger, 1, decimals);
    const bool keepZeros = isStyled && m_keepZeros[at] != 0;
    const double level = std::hypot(m_end.x - m_start.x, m_end.y - m_start.y);
    CString text;
    double number = 0.0;
    switch (type) {
    case kDimDn:
        text = GetLabelText();
        break;
    case kDimSystem:
        text = GetPipeSystemName();
        break;
    case kDimOuterDn:
        number = m_outerDn;
        break;
    case kDimThickness:
        GetField(L"PIPE_THICK", number);
        break;
    case kDimLength:
        number = GetLength() / metre;
        break;
    case kDimGradient:
        number = level > 0.0 ? std::fabs(m_end.z - m_start.z) / level : 0.0;
        break;
    case kDimStartElevation:
        number = m_start.z / metre;
        break;
    default:
        number = m_end.z / metre;
        break;
    }
    if (type != kDimDn && type != kDimSystem)
        text = NumberText(number, decimals, keepZeros);
    return isStyled ? m_prefixes[at] + text + m_suffixes[at] : row->m_prefix + text + row->m_suffix;
}

std::vector<CString> TDbPipe::GetMultiLineDimTextByDimElements() const {
    assertReadEnabled();
    if (m_dimElements.empty())
        return {GetLabelText()};
    std::vector<CString> lines;
    int inLine = 0;
    for (const int type : m_dimElements) {
        const bool begins = lines.empty() || (m_elementsInLine > 0 && inLine == m_elementsInLine);
        if (begins) {
            lines.emplace_back();
            inLine = 0;
        } else {
            lines.back() += L" ";
        }
        lines.back() += ElementText(type);
        ++inLine;
    }
    return lines;
}
