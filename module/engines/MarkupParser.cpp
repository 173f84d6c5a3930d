#include "module/engines/MarkupParser.h"

#include "module/engines/MarkupSyntax.h"

#include <algorithm>

static_assert(MarkupScan<wchar_t>::blockSize <= WideText::padding);

namespace {

void SetNameLength(MarkupElement& record, std::size_t length) {
    record.nameLength = std::min<std::size_t>(length, MarkupElement::longName) & MarkupElement::longName;
}

} // namespace

MarkupParser::MarkupParser(const WideText& text, MarkupIndex& index, MarkupResult& result)
    : m_begin(text.GetData()), m_end(m_begin + text.GetSize()), m_index(index), m_result(result),
      m_scan(m_begin) {
}

void MarkupParser::Run() {
    for (;;) {
        const wchar_t* const at = m_scan.Next();
        if (*at == L'<') {
            if (at[1] == L'/')
                TakeEndTag(at);
            else if (BeginsName(at[1]))
                TakeStartTag(at);
            else if (at[1] == L'!' || at[1] == L'?')
                TakePiece(at);
            else
                AddFault(MarkupEvent::FirstTagSyntax, at);
        } else if (*at == L'&') {
            m_index[m_parent].hasPlainContent = 0;
        } else if (at >= m_end) {
            break;
        }
    }
    while (m_parent != 0)
        CloseUnended(m_end);
    MarkupElement& document = m_index[0];
    document.length = GetOffset(m_end);
    if (document.firstChild == 0)
        m_result.Add(MarkupEvent::NoRootElement);
    else
        m_index[document.firstChild].previous = m_previous;
}

// Notes what is wrong with what begins at `at`, which stays part of the text around it.
void MarkupParser::AddFault(MarkupEvent event, const wchar_t* at) {
    m_result.Add(event, GetOffset(at));
    m_index[m_parent].hasPlainContent = 0;
}

std::wstring_view MarkupParser::GetName(ElementIndex element) const {
    const MarkupElement& record = m_index[element];
    return GetFrontName({m_begin + record.start + 1, record.tagLength - 1});
}

void MarkupParser::TakeStartTag(const wchar_t* open) {
    bool isPlain = true;
    const wchar_t* const close = FindTagEnd(open, isPlain);
    if (close == nullptr)
        return;
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

// The `>` of a start tag; null when there is none before the next `<` outside of quotes.
const wchar_t* MarkupParser::FindTagEnd(const wchar_t* open, bool& isPlain) {
    for (;;) {
        const wchar_t* at = m_scan.Next();
        if (*at == L'>')
            return at;
        if (*at == L'"' || *at == L'\'') {
            const wchar_t quote = *at;
            do {
                at = m_scan.Next();
                isPlain = isPlain && *at != L'&';
            } while (*at != quote && at < m_end);
        }
        isPlain = isPlain && *at != L'&';
        if (*at == L'<' || at >= m_end) {
            AddFault(MarkupEvent::UnterminatedTagSyntax, open);
            m_scan.MoveTo(at);
            return nullptr;
        }
    }
}

void MarkupParser::TakeEndTag(const wchar_t* open) {
    const wchar_t* close = m_scan.Next();
    while (*close != L'>') {
        if (*close == L'<' || close >= m_end) {
            AddFault(MarkupEvent::UnterminatedTagSyntax, open);
            m_scan.MoveTo(close);
            return;
        }
        close = m_scan.Next();
    }
    if (m_parent != 0) {
        const wchar_t* name = open + 2;
        const wchar_t* mine = m_begin + m_index[m_parent].start + 1;
        while (*name == *mine && !EndsName(*name)) {
            ++name;
            ++mine;
        }
        if (EndsName(*name) && EndsName(*mine)) {
            Close(close + 1, static_cast<std::size_t>(name - open - 2));
            return;
        }
    }
    const std::wstring_view name = GetFrontName({open + 2, static_cast<std::size_t>(close - open - 2)});
    if (!IsOpen(name)) {
        m_result.Add(MarkupEvent::LoneEndTag, name, GetOffset(open));
        m_index[m_parent].hasPlainContent = 0;
        return;
    }
    while (GetName(m_parent) != name)
        CloseUnended(open);
    Close(close + 1, name.size());
}

void MarkupParser::TakePiece(const wchar_t* open) {
    const FoundPiece found =
        FindMarkedPiece({m_begin, static_cast<std::size_t>(m_end - m_begin)}, GetOffset(open));
    m_index[m_parent].hasPlainContent = 0;
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
    m_scan.MoveTo(m_begin + found.end);
}

// Closes the element that is open; its text ends at `end`.
void MarkupParser::Close(const wchar_t* end, std::size_t nameLength) {
    if (m_keepsOpenNames)
        --m_openNames[GetName(m_parent)];
    MarkupElement& record = m_index[m_parent];
    record.length = GetOffset(end) - record.start;
    SetNameLength(record, nameLength);
    if (record.firstChild != 0)
        m_index[record.firstChild].previous = m_previous;
    m_previous = m_parent;
    m_parent = record.parent;
    --m_level;
}

void MarkupParser::CloseUnended(const wchar_t* expected) {
    m_result.Add(MarkupEvent::UnendedStartTag, GetName(m_parent), m_index[m_parent].start,
                 GetOffset(expected));
    m_index[m_parent].isUnended = 1;
    Close(expected, GetName(m_parent).size());
}

bool MarkupParser::IsOpen(std::wstring_view name) {
    if (!m_keepsOpenNames) {
        m_keepsOpenNames = true;
        for (ElementIndex element = m_parent; element != 0; element = m_index[element].parent)
            ++m_openNames[GetName(element)];
    }
    const auto found = m_openNames.find(name);
    return found != m_openNames.end() && found->second > 0;
}
