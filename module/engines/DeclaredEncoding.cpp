#include "module/engines/DeclaredEncoding.h"

#include "module/engines/MarkupSyntax.h"

#include <algorithm>

namespace {

constexpr auto nowhere = std::wstring_view::npos;

std::wstring_view TrimFrontOrMark(std::wstring_view text) {
    const auto isBlank = [](wchar_t c) { return IsBlank(c) || c == L'\xFEFF'; };
    return {std::find_if_not(text.begin(), text.end(), isBlank), text.end()};
}

// The attribute whose name has these small letters, in any case.
std::wstring_view FindAttribute(std::wstring_view tag, std::wstring_view small) {
    for (AttributeScan attributes(tag); attributes.Next();)
        if (EqualsSmall(attributes.GetName(), small))
            return attributes.GetValue();
    return {};
}

// Up to and with its `>`, which may stand in quotes, too.
std::wstring_view GetFrontTag(std::wstring_view text) {
    std::size_t at = 0;
    while ((at = text.find_first_of(L">\"'", at)) != nowhere && text[at] != L'>') {
        at = text.find(text[at], at + 1);
        at += at != nowhere;
    }
    return text.substr(0, at == nowhere ? nowhere : at + 1);
}

// "text/html; charset=gbk"
std::wstring_view GetCharset(std::wstring_view content) {
    constexpr std::wstring_view key = L"charset=";
    for (std::size_t at = 0; at + key.size() <= content.size(); ++at) {
        if (!EqualsSmall(content.substr(at, key.size()), key))
            continue;
        content = TrimFrontOrMark(content.substr(at + key.size()));
        const auto ends = [](wchar_t c) { return IsBlank(c) || c == L';'; };
        return {content.begin(), std::find_if(content.begin(), content.end(), ends)};
    }
    return {};
}

std::wstring_view GetHtmlEncoding(std::wstring_view text) {
    bool isFirst = true;
    bool isInHead = false;
    for (std::size_t at = 0; (at = text.find(L'<', at)) != nowhere;) {
        if (text.substr(at + 1, 1) == L"!" || text.substr(at + 1, 1) == L"?") {
            at = FindMarkedPiece(text, at).end;
            continue;
        }
        const std::wstring_view tag = GetFrontTag(text.substr(at));
        const std::wstring_view name = GetFrontName(tag.substr(1));
        if (isFirst && !EqualsSmall(name, L"html"))
            return {};
        isFirst = false;
        if (EqualsSmall(name, L"head"))
            isInHead = true;
        else if (EqualsSmall(name, L"body") ||
                 (tag.starts_with(L"</") && isInHead && EqualsSmall(GetFrontName(tag.substr(2)), L"head")))
            return {};
        else if (isInHead && EqualsSmall(name, L"meta") &&
                 EqualsSmall(FindAttribute(tag, L"http-equiv"), L"content-type"))
            return GetCharset(FindAttribute(tag, L"content"));
        at += tag.size();
    }
    return {};
}

} // namespace

std::wstring_view GetDeclaredEncoding(std::wstring_view text) {
    text = TrimFrontOrMark(text);
    if (text.starts_with(L"<?xml") && GetFrontName(text.substr(2)).size() == 3) {
        const std::wstring_view declaration = text.substr(0, FindMarkedPiece(text, 0).end);
        if (const std::wstring_view encoding = FindAttribute(declaration, L"encoding"); !encoding.empty())
            return encoding;
        text.remove_prefix(declaration.size());
    }
    return GetHtmlEncoding(text);
}
