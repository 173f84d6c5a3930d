#include "module/engines/MarkupParser.h"

#include "module/engines/MarkupEncoding.h"
#include "module/engines/MarkupScan.h"
#include "module/engines/MarkupSyntax.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <unordered_map>

namespace {

using Scan = MarkupScan<wchar_t>;

static_assert(Scan::blockSize <= WideText::padding && scanReach <= WideText::padding);

// How much is at hand behind each character that is looked at, as long as there is more to come.
constexpr std::size_t lookAhead = 16;

void SetNameLength(MarkupElement& record, std::size_t length) {
    record.nameLength = std::min<std::size_t>(length, MarkupElement::longName) & MarkupElement::longName;
}

class Parser {
public:
    Parser(WideText& text, MarkupInput* input, MarkupIndex& index, MarkupResult& result)
        : m_text(text), m_input(input), m_begin(text.GetData()),
          m_limit(input != nullptr ? m_begin : m_begin + text.GetSize()), m_index(index), m_result(result) {}

    void Run();

    // Whether it ended because the text would have to be moved to grow.
    bool LacksRoom() const { return m_lacksRoom; }
    std::uint32_t GetDeepest() const { return m_deepest; }

private:
    // The next sign; at or behind the limit only when the text ends there.
    const wchar_t* Next(Scan& scan) {
        const wchar_t* const at = scan.Next();
        return at < m_limit ? at : NextBehindLimit(scan, at);
    }
    const wchar_t* NextBehindLimit(Scan& scan, const wchar_t* at);
    bool ReadMore();
    std::uint32_t GetOffset(const wchar_t* at) const { return static_cast<std::uint32_t>(at - m_begin); }
    std::wstring_view GetName(ElementIndex element) const;

    void TakeStartTag(Scan& scan, const wchar_t* open);
    void TakeEndTag(Scan& scan, const wchar_t* open);
    const wchar_t* FindTagEnd(Scan& scan, bool& isPlain);
    const wchar_t* TakePiece(const wchar_t* open);

    void Close(const wchar_t* end, std::size_t nameLength, std::size_t endTagLength);
    void CloseUnended(const wchar_t* expected);
    void CloseOther(const wchar_t* open, const wchar_t* close);
    bool IsOpen(std::wstring_view name);
    void AddFault(MarkupEvent event, const wchar_t* at);

    WideText& m_text;
    MarkupInput* m_input; // null when all was read
    bool m_lacksRoom = false;
    const wchar_t* const m_begin;
    const wchar_t* m_limit; // signs at and behind it are not looked at yet; at last, the end of the text
    MarkupIndex& m_index;
    MarkupResult& m_result;
    ElementIndex m_parent = 0;   // the element that is open, innermost
    ElementIndex m_previous = 0; // its last child so far
    std::uint32_t m_level = 0;
    std::uint32_t m_deepest = 0;
    // How often each name is open; kept up only when the first end tag has come that fits no start tag,
    // because good texts never ask.
    std::unordered_map<std::wstring_view, std::uint32_t> m_openNames;
    bool m_keepsOpenNames = false;
};

void Parser::Run() {
    // Apart from the members, so that it can stay in registers.
    Scan scan(m_begin);
    for (;;) {
        const wchar_t* const at = Next(scan);
        if (*at == L'<') {
            if (at[1] == L'/')
                TakeEndTag(scan, at);
            else if (BeginsName(at[1]))
                TakeStartTag(scan, at);
            else if (at[1] == L'!' || at[1] == L'?')
                scan.MoveTo(TakePiece(at));
            else
                AddFault(MarkupEvent::FirstTagSyntax, at);
        } else if (*at == L'&') {
            m_index[m_parent].hasPlainContent = 0;
        } else if (at >= m_limit) {
            break;
        }
    }
    while (m_parent != 0)
        CloseUnended(m_limit);
    MarkupElement& document = m_index[0];
    document.length = GetOffset(m_limit);
    if (document.firstChild == 0)
        m_result.Add(MarkupEvent::NoRootElement);
    else
        m_index[document.firstChild].previous = m_previous;
}

// Kept apart from the loops that hardly ever need it.
[[gnu::noinline]] const wchar_t* Parser::NextBehindLimit(Scan& scan, const wchar_t* at) {
    while (at >= m_limit && ReadMore()) {
        scan.MoveTo(at);
        at = scan.Next();
    }
    return at;
}

// Moves the limit; false when it is at the end of the text.
bool Parser::ReadMore() {
    if (m_input == nullptr)
        return false;
    m_lacksRoom = !m_text.HasRoom(markupBlockSize);
    const bool hasRead = !m_lacksRoom && m_input->Read(m_text);
    if (m_text.GetSize() > longestMarkup)
        throw std::bad_alloc();
    if (!hasRead)
        m_input = nullptr;
    m_limit = m_begin + m_text.GetSize() - (hasRead ? std::min(lookAhead, m_text.GetSize()) : 0);
    return true;
}

std::wstring_view Parser::GetName(ElementIndex element) const {
    const MarkupElement& record = m_index[element];
    return GetFrontName({m_begin + record.start + 1, record.tagLength - 1});
}

inline void Parser::TakeStartTag(Scan& scan, const wchar_t* open) {
    bool isPlain = true;
    const wchar_t* const close = FindTagEnd(scan, isPlain);
    if (*close != L'>') {
        AddFault(MarkupEvent::UnterminatedTagSyntax, open);
        scan.MoveTo(close);
        return;
    }
    const ElementIndex element = m_index.Add();
    if (m_previous != 0)
        m_index[m_previous].next = element;
    else
        m_index[m_parent].firstChild = element;
    if (m_parent == 0 && m_previous != 0 && m_index[0].firstChild == m_previous)
        m_result.Add(MarkupEvent::RootHasSibling);

    MarkupElement& record = m_index[element];
    record.start = GetOffset(open);
    record.tagLength = GetOffset(close + 1) - record.start;
    record.length = record.tagLength;
    record.parent = m_parent;
    record.next = 0;
    record.previous = m_previous;
    record.firstChild = 0;
    record.level = std::min(m_level, MarkupElement::highestLevel) & MarkupElement::highestLevel;
    record.nameLength = MarkupElement::longName;
    record.hasPlainTag = isPlain;
    record.hasPlainContent = 1;
    record.hasPlainEnd = 0;
    record.isUnended = 0;
    record.isChanged = 0;
    m_previous = element;
    if (close[-1] == L'/') {
        SetNameLength(record, GetFrontName({open + 1, record.tagLength - 1}).size());
    } else {
        m_parent = element;
        m_previous = 0;
        m_deepest = std::max(m_deepest, ++m_level);
        if (m_keepsOpenNames)
            ++m_openNames[GetName(element)];
    }
}

// The `>` of a start tag, or what ends it without one: the next `<` outside of quotes, or the end of the
// text.
inline const wchar_t* Parser::FindTagEnd(Scan& scan, bool& isPlain) {
    for (;;) {
        const wchar_t* at = Next(scan);
        if (*at == L'"' || *at == L'\'') {
            const wchar_t quote = *at;
            for (at = Next(scan); *at != quote && at < m_limit; at = Next(scan))
                isPlain = isPlain && *at != L'&';
        }
        if (*at == L'>' || *at == L'<' || at >= m_limit)
            return at;
        isPlain = isPlain && *at != L'&';
    }
}

inline void Parser::TakeEndTag(Scan& scan, const wchar_t* open) {
    const wchar_t* close = Next(scan);
    while (*close != L'>') {
        if (*close == L'<' || close >= m_limit) {
            AddFault(MarkupEvent::UnterminatedTagSyntax, open);
            scan.MoveTo(close);
            return;
        }
        close = Next(scan);
    }
    const wchar_t* const name = open + 2;
    const auto length = static_cast<std::size_t>(FindLowUnit(name, close, EndsName) - name);
    const wchar_t* const mine = m_begin + m_index[m_parent].start + 1;
    if (m_parent != 0 && AreEqual(name, mine, length) && EndsName(mine[length]))
        Close(close + 1, length, static_cast<std::size_t>(close + 1 - open));
    else
        CloseOther(open, close);
}

// Takes an end tag that does not fit the element that is open.
void Parser::CloseOther(const wchar_t* open, const wchar_t* close) {
    const std::wstring_view name = GetFrontName({open + 2, static_cast<std::size_t>(close - open - 2)});
    if (!IsOpen(name)) {
        m_result.Add(MarkupEvent::LoneEndTag, name, GetOffset(open));
        m_index[m_parent].hasPlainContent = 0;
        return;
    }
    while (GetName(m_parent) != name)
        CloseUnended(open);
    Close(close + 1, name.size(), static_cast<std::size_t>(close + 1 - open));
}

// Takes what begins with `<!` or `<?` and tells where it ends.
const wchar_t* Parser::TakePiece(const wchar_t* open) {
    m_index[m_parent].hasPlainContent = 0;
    FoundPiece found = FindMarkedPiece(m_text.GetView(), GetOffset(open));
    // A long one is looked at again when twice as much of it is at hand.
    while (!found.isTerminated && m_input != nullptr) {
        const std::size_t wanted = m_text.GetSize() * 2 - GetOffset(open);
        while (m_text.GetSize() < wanted && ReadMore()) {
        }
        found = FindMarkedPiece(m_text.GetView(), GetOffset(open));
    }
    if (found.badDeclaration != std::wstring_view::npos)
        m_result.Add(MarkupEvent::DoctypeTagSyntax, found.badDeclaration);
    switch (found.piece) {
    case MarkupPiece::BadComment:
        AddFault(MarkupEvent::CommentTagSyntax, open);
        break;
    case MarkupPiece::BadCDataSection:
        AddFault(MarkupEvent::CDataSectionSyntax, open);
        break;
    case MarkupPiece::BadExclamation:
        AddFault(MarkupEvent::ExclamationTagSyntax, open);
        break;
    default:
        if (!found.isTerminated)
            AddFault(MarkupEvent::UnterminatedTagSyntax, open);
    }
    return m_begin + found.end;
}

// Closes the element that is open; its text ends at `end`, with an end tag of that length.
inline void Parser::Close(const wchar_t* end, std::size_t nameLength, std::size_t endTagLength) {
    if (m_keepsOpenNames)
        --m_openNames[GetName(m_parent)];
    MarkupElement& record = m_index[m_parent];
    record.length = GetOffset(end) - record.start;
    SetNameLength(record, nameLength);
    record.hasPlainEnd = nameLength < MarkupElement::longName && endTagLength == nameLength + 3;
    if (record.firstChild != 0)
        m_index[record.firstChild].previous = m_previous;
    m_previous = m_parent;
    m_parent = record.parent;
    --m_level;
}

void Parser::CloseUnended(const wchar_t* expected) {
    const std::wstring_view name = GetName(m_parent);
    m_result.Add(MarkupEvent::UnendedStartTag, name, m_index[m_parent].start, GetOffset(expected));
    m_index[m_parent].isUnended = 1;
    Close(expected, name.size(), 0);
}

bool Parser::IsOpen(std::wstring_view name) {
    if (!m_keepsOpenNames) {
        m_keepsOpenNames = true;
        for (ElementIndex element = m_parent; element != 0; element = m_index[element].parent)
            ++m_openNames[GetName(element)];
    }
    const auto found = m_openNames.find(name);
    return found != m_openNames.end() && found->second > 0;
}

// Notes what is wrong with what begins at `at`, which stays part of the text around it.
void Parser::AddFault(MarkupEvent event, const wchar_t* at) {
    m_result.Add(event, GetOffset(at));
    m_index[m_parent].hasPlainContent = 0;
}

} // namespace

std::uint32_t ParseMarkup(WideText& text, MarkupInput* input, MarkupIndex& index, MarkupResult& result) {
    if (input != nullptr) {
        text.Extend(input->GetExpectedSize() + markupBlockSize);
        text.SetSize(0);
        Parser parser(text, input, index, result);
        parser.Run();
        if (!parser.LacksRoom())
            return parser.GetDeepest();
        // A pipe, or a file that grew meanwhile: first all of it, then once more.
        while (input->Read(text)) {
        }
        index.Clear();
        result.Clear();
    }
    if (text.GetSize() > longestMarkup)
        throw std::bad_alloc();
    Parser parser(text, nullptr, index, result);
    parser.Run();
    return parser.GetDeepest();
}
