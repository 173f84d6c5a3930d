#include "module/engines/MarkupSyntax.h"

#include "base/utf.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr auto nowhere = std::wstring_view::npos;

constexpr std::wstring_view documentTypeMark = L"<!DOCTYPE";
constexpr std::wstring_view cdataMark = L"<![CDATA[";
// Of the marks that tell what a piece is.
constexpr std::size_t longestMark = 10;

struct Entity {
    wchar_t character;
    std::wstring_view text;
};

constexpr Entity entities[] = {
    {L'<', L"&lt;"}, {L'&', L"&amp;"}, {L'>', L"&gt;"}, {L'"', L"&quot;"}, {L'\'', L"&apos;"}};
constexpr std::uint64_t markedCharacters = MakeCharacterSet("<&>\"'");

bool NeedsEntity(wchar_t unit) {
    return IsIn(markedCharacters, unit) && !IsBlank(unit);
}

// What stands for a character that needs it.
std::wstring_view FindEntity(wchar_t unit) {
    return std::ranges::find(entities, unit, &Entity::character)->text;
}

// -1 when it is no digit of that base, 10 or 16.
int GetDigit(wchar_t c, int base) {
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    const auto letter = static_cast<wchar_t>(c | 0x20);
    return base == 16 && letter >= L'a' && letter <= L'f' ? letter - L'a' + 10 : -1;
}

// The length of the numeric reference at the front of the text, 0 when there is none that names a character.
std::size_t ReadReference(std::wstring_view text, char32_t& character) {
    const bool isHexadecimal = text.starts_with(L"&#x");
    const int base = isHexadecimal ? 16 : 10;
    const std::size_t first = isHexadecimal ? 3 : 2;
    std::uint32_t value = 0;
    for (std::size_t i = first; i < text.size() && value <= 0x10FFFF; ++i) {
        if (const int digit = GetDigit(text[i], base); digit >= 0) {
            value = value * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit);
            continue;
        }
        character = value;
        const bool isCharacter = value != 0 && (value & ~0x7FFu) != 0xD800;
        return text[i] == L';' && i > first && isCharacter ? i + 1 : 0;
    }
    return 0;
}

bool IsQuote(wchar_t c) {
    return c == L'"' || c == L'\'';
}

bool EndsBareValue(wchar_t c) {
    return IsIn(MakeCharacterSet(">\"'"), c);
}

bool EndsAttributeName(wchar_t c) {
    return IsIn(MakeCharacterSet("/>=\"'"), c);
}

// What stands between attributes.
bool SeparatesAttributes(wchar_t c) {
    return IsIn(MakeCharacterSet("/>=?"), c);
}

std::size_t Behind(std::wstring_view text, std::wstring_view mark, std::size_t from) {
    const std::size_t found = text.find(mark, from);
    return found == nowhere ? nowhere : found + mark.size();
}

// Behind the declaration that begins at `at` inside a document type.
std::size_t FindDeclarationEnd(std::wstring_view text, std::size_t at) {
    while ((at = text.find_first_of(L">\"'", at)) != nowhere && text[at] != L'>') {
        at = text.find(text[at], at + 1);
        at += at != nowhere;
    }
    return at == nowhere ? nowhere : at + 1;
}

bool IsDeclaration(std::wstring_view text) {
    constexpr std::wstring_view kinds[] = {L"<!ELEMENT", L"<!ATTLIST", L"<!ENTITY", L"<!NOTATION"};
    return std::any_of(std::begin(kinds), std::end(kinds),
                       [text](std::wstring_view kind) { return text.starts_with(kind); });
}

FoundPiece FindDocumentType(std::wstring_view text, std::size_t begin) {
    FoundPiece found = {MarkupPiece::DocumentType, text.size(), false, begin + documentTypeMark.size()};
    const auto endAt = [&](std::size_t at, std::size_t end, bool isTerminated) {
        found.innerLength = at - found.inner;
        found.end = end;
        found.isTerminated = isTerminated;
        return found;
    };
    bool isInside = false;
    for (std::size_t at = found.inner; (at = text.find_first_of(L"[]\"'<>", at)) != nowhere; ++at) {
        switch (text[at]) {
        case L'[':
        case L']':
            isInside = text[at] == L'[';
            break;
        case L'>':
            if (!isInside)
                return endAt(at, at + 1, true);
            break;
        case L'<': {
            const std::wstring_view front = text.substr(at, longestMark);
            std::size_t end = at + 1;
            if (front.starts_with(L"<!--"))
                end = Behind(text, L"-->", at + 4);
            else if (front.starts_with(L"<?"))
                end = Behind(text, L"?>", at + 2);
            else if (isInside && IsDeclaration(front))
                end = FindDeclarationEnd(text, at);
            else if (isInside || front.starts_with(L"<!"))
                found.badDeclaration = std::min(found.badDeclaration, at);
            else
                return endAt(at, at, false);
            if (end == nowhere)
                return endAt(text.size(), text.size(), false);
            at = end - 1;
            break;
        }
        default:
            at = text.find(text[at], at + 1);
            if (at == nowhere)
                return endAt(text.size(), text.size(), false);
        }
    }
    return endAt(text.size(), text.size(), false);
}

} // namespace

bool IsName(std::wstring_view text) {
    return !text.empty() && BeginsName(text[0]) && std::all_of(text.begin(), text.end(), [](wchar_t c) {
        return BeginsName(c) || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.';
    });
}

bool EqualsSmall(std::wstring_view text, std::wstring_view small) {
    return std::equal(text.begin(), text.end(), small.begin(), small.end(), [](wchar_t c, wchar_t known) {
        return (c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c) == known;
    });
}

std::size_t GetEscapedSize(std::wstring_view text) {
    std::size_t size = text.size();
    for (const wchar_t unit : text)
        if (NeedsEntity(unit))
            size += FindEntity(unit).size() - 1;
    return size;
}

wchar_t* WriteEscaped(wchar_t* out, std::wstring_view text) {
    for (const wchar_t unit : text) {
        if (NeedsEntity(unit))
            out = std::ranges::copy(FindEntity(unit), out).out;
        else
            *out++ = unit;
    }
    return out;
}

void AppendEscaped(std::wstring& out, std::wstring_view text) {
    const std::size_t size = out.size();
    out.resize(size + GetEscapedSize(text));
    WriteEscaped(out.data() + size, text);
}

void AppendResolved(std::wstring& out, std::wstring_view text) {
    for (std::size_t found; (found = text.find(L'&')) != nowhere;) {
        out += text.substr(0, found);
        text.remove_prefix(found);
        std::size_t length = 0;
        if (text.starts_with(L"&#")) {
            char32_t character = 0;
            length = ReadReference(text, character);
            if (length > 0)
                base::append_wide(out, character);
        }
        for (const Entity& entity : entities) {
            if (text.starts_with(entity.text)) {
                out += entity.character;
                length = entity.text.size();
            }
        }
        if (length == 0) {
            out += L'&';
            length = 1;
        }
        text.remove_prefix(length);
    }
    out += text;
}

// Takes an attribute as nearly all are written: a blank, a short name of letters, `="`, and a value.
bool AttributeScan::TakeCommon() {
    constexpr int shortest = 5; // a blank, a letter, `=""`
    if (m_end - m_at < shortest)
        return false;
    constexpr unsigned first = 1;
    constexpr unsigned second = 2;
    const TagFront front = MarkTagFront(m_at);
    const unsigned behindName = front.low & ~(first | second);
    if ((front.low & (first | second)) != first || *m_at != L' ' || behindName == 0)
        return false;
    const int nameEnd = std::countr_zero(behindName);
    const unsigned behindQuote = front.quotes >> nameEnd;
    if (m_at[nameEnd] != L'=' || (behindQuote & second) == 0)
        return false;
    const wchar_t* const value = m_at + nameEnd + 2;
    const unsigned quotes = behindQuote & ~(first | second);
    const wchar_t* const valueEnd =
        quotes != 0 ? m_at + nameEnd + std::countr_zero(quotes) : FindUnit(value, m_end, L'"');
    if (valueEnd >= m_end)
        return false;
    m_name = {m_at + 1, m_at + nameEnd};
    m_value = {value, valueEnd};
    m_at = valueEnd + 1;
    return true;
}

bool AttributeScan::TakeAny() {
    for (;;) {
        while (m_at < m_end && SeparatesAttributes(*m_at))
            ++m_at;
        if (m_at == m_end)
            return false;
        if (!IsQuote(*m_at))
            break;
        SkipQuoted(); // a value without a name
    }
    const wchar_t* const begin = m_at;
    const wchar_t* const nameEnd = FindLowUnit(begin, m_end, EndsAttributeName);
    m_name = {begin, nameEnd};
    m_value = {};
    m_at = nameEnd;
    SkipBlanks();
    if (m_at == m_end || *m_at != L'=') {
        m_at = nameEnd;
        return true;
    }
    ++m_at;
    SkipBlanks();
    if (m_at < m_end && IsQuote(*m_at)) {
        m_value = SkipQuoted();
        return true;
    }
    const wchar_t* const value = m_at;
    m_at = FindLowUnit(value, m_end, EndsBareValue);
    // The slash of an empty element's tag is none of the value.
    if (m_at > value && m_at[-1] == L'/' && m_end - m_at == 1)
        --m_at;
    m_value = {value, m_at};
    return true;
}

void AttributeScan::SkipBlanks() {
    while (m_at < m_end && IsBlank(*m_at))
        ++m_at;
}

// Gives what stands between the quote that is here and the next one of its kind.
std::wstring_view AttributeScan::SkipQuoted() {
    const wchar_t* const begin = m_at + 1;
    const wchar_t* const end = FindUnit(begin, m_end, *m_at);
    m_at = std::min(end + 1, m_end);
    return {begin, end};
}

FoundPiece FindMarkedPiece(std::wstring_view text, std::size_t at) {
    const std::wstring_view front = text.substr(at, longestMark);
    const auto upTo = [&](MarkupPiece piece, std::size_t markSize, std::wstring_view endMark) {
        const std::size_t inner = at + markSize;
        const std::size_t mark = text.find(endMark, inner);
        const bool isTerminated = mark != nowhere;
        return FoundPiece{piece, isTerminated ? mark + endMark.size() : text.size(), isTerminated, inner,
                          (isTerminated ? mark : text.size()) - inner};
    };
    if (front.starts_with(L"<?"))
        return upTo(MarkupPiece::ProcessingInstruction, 2, L"?>");
    if (front.starts_with(L"<!--"))
        return upTo(MarkupPiece::Comment, 4, L"-->");
    if (front.starts_with(cdataMark))
        return upTo(MarkupPiece::CDataSection, cdataMark.size(), L"]]>");
    if (front.starts_with(documentTypeMark))
        return FindDocumentType(text, at);
    if (front.starts_with(L"<!-"))
        return {MarkupPiece::BadComment, at + 3};
    if (front.starts_with(L"<!["))
        return {MarkupPiece::BadCDataSection, at + 3};
    return {MarkupPiece::BadExclamation, at + 2};
}

FoundPiece FindPiece(std::wstring_view text, std::size_t begin) {
    for (std::size_t at = begin; (at = text.find(L'<', at)) != nowhere; ++at) {
        FoundPiece found = {MarkupPiece::Text, at};
        if (text.substr(at, 2) == L"</") {
            const std::size_t last = text.find_first_of(L"<>", at + 2);
            const std::size_t end = std::min(last, text.size());
            found = {MarkupPiece::EndTag, end, true, at + 2, end - at - 2};
            if (last != nowhere && text[last] == L'>')
                ++found.end;
        } else if (text.substr(at, 2) == L"<!" || text.substr(at, 2) == L"<?") {
            found = FindMarkedPiece(text, at);
        }
        if (found.piece == MarkupPiece::Text || found.piece >= MarkupPiece::BadExclamation)
            continue;
        if (at == begin)
            return found;
        return {MarkupPiece::Text, at, true, begin, at - begin};
    }
    return {MarkupPiece::Text, text.size(), true, begin, text.size() - begin};
}
