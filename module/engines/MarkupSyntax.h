// The small parts of markup: names, attributes inside a tag, entities, and where a piece that is no element
// ends.
#pragma once

#include "module/engines/MarkupScan.h"
#include <algorithm>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Blanks and control characters.
constexpr bool IsBlank(wchar_t c) {
    return static_cast<char32_t>(c) <= U' ';
}

// A text without the blanks that it begins with.
inline std::wstring_view TrimFront(std::wstring_view text) {
    return {std::find_if_not(text.begin(), text.end(), IsBlank), text.end()};
}

// A set of characters below 64, blanks among them.
constexpr std::uint64_t MakeCharacterSet(std::string_view others) {
    std::uint64_t set = (std::uint64_t(1) << (U' ' + 1)) - 1;
    for (const char c : others)
        set |= std::uint64_t(1) << c;
    return set;
}

constexpr bool IsIn(std::uint64_t set, wchar_t c) {
    const auto unit = static_cast<char32_t>(c);
    return unit < 64 && (set >> unit & 1) != 0;
}

// What ends a name in a tag: a blank, nought, `/`, `>`, or a quote, which begins a text in quotes wherever in
// a tag it stands.
constexpr bool EndsName(wchar_t c) {
    return IsIn(MakeCharacterSet("/>\"'"), c);
}

// What a tag's name may begin with: a letter, `_`, `:`, or anything beyond ASCII.
constexpr bool BeginsName(wchar_t c) {
    const auto unit = static_cast<char32_t>(c);
    return unit >= 0x80 || (unit | 0x20) - U'a' < 26 || unit == U'_' || unit == U':';
}

// Whether a text may be written as a name: it begins as one and has digits, `-` and `.` besides.
bool IsName(std::wstring_view text);

// The name that begins at the front of the text: up to what ends it.
inline std::wstring_view GetFrontName(std::wstring_view text) {
    std::size_t size = 0;
    while (size < text.size() && !EndsName(text[size]))
        ++size;
    return text.substr(0, size);
}

// Equal but for the case of ASCII letters; `small` has small ones.
bool EqualsSmall(std::wstring_view text, std::wstring_view small);

// The text with < & > " ' as entities: how long it is; written from `out` on, which has room for it, to the
// end that is given; added to `out`.
std::size_t GetEscapedSize(std::wstring_view text);
wchar_t* WriteEscaped(wchar_t* out, std::wstring_view text);
void AppendEscaped(std::wstring& out, std::wstring_view text);

// The text with the five entities and the numeric references as what they stand for, added to `out`. What
// only begins as one, or names no character, stays as it stands.
void AppendResolved(std::wstring& out, std::wstring_view text);

// The attributes of a tag, one after the other, as they stand there.
class AttributeScan {
public:
    // None.
    AttributeScan() = default;
    // A start tag or a declaration, from the `<` on, whole or without its end. Behind it can be read as far
    // as scanReach tells.
    explicit AttributeScan(std::wstring_view tag) : AttributeScan(tag, GetFrontName(tag.substr(1)).size()) {}
    // The same when the length of the name is known.
    AttributeScan(std::wstring_view tag, std::size_t nameLength)
        : m_begin(tag.data()), m_at(m_begin + 1 + nameLength), m_end(m_begin + tag.size()) {}

    // Goes to the next attribute, first to the first one; false when there is none.
    bool Next() {
        const bool isAtEnd = m_end - m_at == 1 && *m_at == L'>';
        return !isAtEnd && (TakeCommon() || TakeAny());
    }

    std::wstring_view GetName() const { return m_name; }
    // What stands between the quotes; empty when there is no value.
    std::wstring_view GetValue() const { return m_value; }
    // Where in the tag the attribute is, quotes included: from its name to its value's end.
    std::size_t GetBegin() const { return static_cast<std::size_t>(m_name.data() - m_begin); }
    std::size_t GetEnd() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    bool TakeCommon();
    bool TakeAny();
    void SkipBlanks();
    std::wstring_view SkipQuoted();

    const wchar_t* m_begin = nullptr;
    const wchar_t* m_at = nullptr;
    const wchar_t* m_end = nullptr;
    std::wstring_view m_name;
    std::wstring_view m_value;
};

// What a document is made of beside start tags. The first three bad ones begin as markup and are none.
enum class MarkupPiece {
    Text,
    EndTag,
    Comment,
    CDataSection,
    ProcessingInstruction,
    DocumentType,
    BadExclamation,  // <! and what begins none of these
    BadComment,      // <!- and something else
    BadCDataSection, // <![ and something else
};

struct FoundPiece {
    MarkupPiece piece;
    // Behind it; of the bad ones, behind what was recognised.
    std::size_t end;
    // False when the text ends inside it, or when an element's tag begins inside a document type.
    bool isTerminated = true;
    // Where the text between its marks begins, and how long it is.
    std::size_t inner = 0;
    std::size_t innerLength = 0;
    // The `<` of a bad declaration inside a document type, the first one; nowhere when there is none.
    std::size_t badDeclaration = std::wstring_view::npos;
};

// The piece at a place of the text where `<!` or `<?` stands.
FoundPiece FindMarkedPiece(std::wstring_view text, std::size_t at);

// The piece at a place of a text that lies between the tags of elements. There the bad ones, and every other
// `<`, are part of a text.
FoundPiece FindPiece(std::wstring_view text, std::size_t at);
