#include "module/engines/MarkupFault.h"

#include "module/engines/MarkupDoc.h"

#include <algorithm>
#include <cwchar>
#include <string>

namespace {

int LineAt(MarkupDoc& document, std::size_t offset) {
    const std::wstring_view before = document.GetDocumentText().substr(0, offset);
    return 1 + static_cast<int>(std::ranges::count(before, L'\n'));
}

// The first place that stands for bytes that are no character.
std::size_t FindLost(std::wstring_view text) {
    const auto isHigh = [](wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; };
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == 0xFFFD || (text[i] >= 0xDC80 && text[i] <= 0xDCFF && (i == 0 || !isHigh(text[i - 1]))))
            return i;
    return text.size();
}

// The value of an attribute in the records of a result; empty when there is none.
std::wstring ValueIn(const std::wstring& result, std::wstring_view attribute) {
    const std::size_t at = result.find(attribute);
    if (at == result.npos)
        return {};
    const std::size_t begin = at + attribute.size();
    return result.substr(begin, result.find(L'"', begin) - begin);
}

} // namespace

CString MarkupFault::GetText() const {
    if (line == 0)
        return what;
    CString text;
    text.Format(L"第 %d 行: %s", line, what.GetString());
    return text;
}

std::optional<MarkupFault> FindMarkupFault(MarkupDoc& document) {
    const std::wstring told = document.GetErrorText();
    constexpr std::wstring_view mark = L" at offset ";
    if (const std::size_t place = told.find(mark); place != told.npos) {
        const std::size_t begin = told.rfind(L'\n', place) + 1; // 0 when there is no line before
        const std::size_t offset = std::wcstoul(told.c_str() + place + mark.size(), nullptr, 10);
        return MarkupFault{
            LineAt(document, offset),
            (L"不是合式的 XML: " + told.substr(begin, told.find(L'\n', place) - begin)).c_str()};
    }
    const std::wstring result = document.GetResult();
    const auto has = [&](std::wstring_view record) { return result.find(record) != result.npos; };
    if (has(L"<file_error") || has(L"<no_root_element") || has(L"<root_has_sibling"))
        return MarkupFault{0, (L"文件无法读取: " + told.substr(told.rfind(L'\n') + 1)).c_str()};
    if (!has(L"<conversion_loss") && !has(L"<truncation_error"))
        return std::nullopt;
    return MarkupFault{
        LineAt(document, FindLost(document.GetDocumentText())),
        (L"文件内容不符合编码 " + ValueIn(result, L"<read encoding=\"") + L"，文字可能是错的").c_str()};
}
