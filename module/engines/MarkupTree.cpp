#include "module/engines/MarkupTree.h"

#include "module/engines/MarkupParser.h"
#include "module/engines/MarkupSyntax.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <new>
#include <utility>

using std::string_view_literals::operator""sv;

namespace {

// How much of the store may be of no use before it is worth while to write a small document anew.
constexpr std::size_t smallWaste = std::size_t(1) << 20;

std::uint32_t Narrow(std::size_t size) {
    return static_cast<std::uint32_t>(size);
}

// The end of the text that is written from `out` on.
wchar_t* Write(wchar_t* out, std::wstring_view text) {
    return std::wmemcpy(out, text.data(), text.size()) + text.size();
}

} // namespace

MarkupTree::MarkupTree(WideText text, MarkupInput* input, MarkupResult& result) : m_text(std::move(text)) {
    m_deepest = ParseMarkup(m_text, input, m_index, result);
    m_text.Trim();
}

std::wstring_view MarkupTree::GetText() {
    if (!m_changes.empty())
        Rewrite();
    return m_text.GetView(0, m_index[0].length);
}

ElementIndex MarkupTree::GetLastChild(ElementIndex parent) const {
    const ElementIndex first = m_index[parent].firstChild;
    return first != 0 ? m_index[first].previous : 0;
}

ElementIndex MarkupTree::Insert(ElementIndex parent, ElementIndex previous, std::uint32_t place,
                                std::wstring_view name, std::wstring_view data) {
    const std::size_t tagLength = name.size() + (data.empty() ? 3 : 2);
    const std::size_t endTagLength = data.empty() ? 0 : name.size() + 3;
    const std::size_t length = GetEscapedSize(data) + endTagLength + tagLength;
    const bool isAtFront = parent != 0 && m_index[parent].firstChild == 0 && GetContent(parent).size == 0;
    std::wstring keptName;
    std::wstring keptData;
    if (isAtFront || !m_text.HasRoom(length)) { // the store moves when it grows
        name = keptName = name;
        data = keptData = data;
    }
    if (isAtFront) {
        // An empty element's tag becomes two tags.
        Open(parent, {});
        place = GetContent(parent).begin;
    }
    Parts parts;
    parts.place = {place, 0};
    wchar_t* const begin = MakeRoom(length);
    wchar_t* at = WriteEscaped(begin, data);
    parts.content = {Narrow(m_text.GetSize()), Narrow(static_cast<std::size_t>(at - begin))};
    parts.endTagLength = Narrow(endTagLength);
    if (!data.empty()) {
        at = Write(at, L"</"sv);
        at = Write(at, name);
        *at++ = L'>';
    }
    parts.tag = {Narrow(m_text.GetSize() + length - tagLength), Narrow(tagLength)};
    *at++ = L'<';
    at = Write(at, name);
    Write(at, data.empty() ? L"/>"sv : L">"sv);
    m_text.SetSize(m_text.GetSize() + length);
    parts.isNew = true;
    parts.isAtFront = isAtFront;
    m_changes.push_back(parts);
    const ElementIndex element = m_index.Add();

    MarkupElement& record = m_index[element];
    record = {};
    record.start = Narrow(m_changes.size() - 1);
    record.isChanged = true;
    record.parent = parent;
    if (parent != 0)
        record.level =
            std::min(m_index[parent].level + 1u, MarkupElement::highestLevel) & MarkupElement::highestLevel;
    record.nameLength =
        std::min<std::uint32_t>(Narrow(name.size()), MarkupElement::longName) & MarkupElement::longName;
    m_deepest = std::max<std::uint32_t>(m_deepest, record.level);

    const ElementIndex first = m_index[parent].firstChild;
    const ElementIndex last = GetLastChild(parent);
    ElementIndex& link = previous != 0 ? m_index[previous].next : m_index[parent].firstChild;
    record.next = link;
    link = element;
    record.previous = previous != 0 ? previous : last;
    if (record.next != 0)
        m_index[record.next].previous = element;
    if (first == 0)
        record.previous = element;
    else if (record.next == 0)
        m_index[first].previous = element;
    Settle();
    return element;
}

void MarkupTree::SetContent(ElementIndex element, std::wstring_view content) {
    if (!content.empty() || GetContent(element).size > 0)
        Open(element, content);
    Settle();
}

void MarkupTree::SetTag(ElementIndex element, std::wstring_view tag) {
    Parts& parts = Change(element);
    m_text.Extend(tag.size());
    if (parts.tag.GetEnd() == m_text.GetSize())
        m_text.SetSize(parts.tag.begin);
    else
        m_unused += parts.tag.size;
    parts.tag = {Store(tag), Narrow(tag.size())};
    Settle();
}

MarkupTree::Parts MarkupTree::GetParts(ElementIndex element) const {
    const MarkupElement& record = m_index[element];
    if (record.isChanged)
        return m_changes[record.start];
    Parts parts;
    parts.place = {record.start, record.length};
    parts.tag = {record.start, record.tagLength};
    parts.content = GetContent(element);
    parts.endTagLength = GetEndTagLength(record);
    return parts;
}

MarkupTree::Parts& MarkupTree::Change(ElementIndex element) {
    MarkupElement& record = m_index[element];
    if (!record.isChanged) {
        m_changes.push_back(GetParts(element));
        record.start = Narrow(m_changes.size() - 1);
        record.isChanged = true;
        record.hasPlainTag = false;
        record.hasPlainContent = false;
    }
    return m_changes[record.start];
}

// Gives an element a start tag, this content and an end tag.
void MarkupTree::Open(ElementIndex element, std::wstring_view content) {
    const std::wstring name(GetName(element));
    std::wstring tag(GetTag(element));
    const bool isEmptyTag = tag.ends_with(L"/>");
    if (isEmptyTag)
        tag.erase(tag.size() - 2, 1);
    if (tag.ends_with(L"/>")) // of two slashes the other one
        tag.insert(tag.size() - 1, L" ");
    std::wstring rest(content);
    rest.append(L"</").append(name).append(L">");

    const std::uint32_t at = Store(rest);
    const std::uint32_t tagAt = isEmptyTag ? Store(tag) : 0;
    Parts& parts = Change(element);
    m_unused += parts.content.size + parts.endTagLength + (isEmptyTag ? parts.tag.size : 0);
    if (isEmptyTag)
        parts.tag = {tagAt, Narrow(tag.size())};
    parts.content = {at, Narrow(content.size())};
    parts.endTagLength = Narrow(rest.size() - content.size());
}

// No end tag has a `<` in it but its own.
std::uint32_t MarkupTree::FindEndTagLength(const MarkupElement& record) const {
    const std::wstring_view text = GetView({record.start, record.length});
    return Narrow(text.size() - text.rfind(L'<'));
}

// The end of the store, with room for `size` units behind it.
wchar_t* MarkupTree::MakeRoom(std::size_t size) {
    if (size > longestMarkup - m_text.GetSize())
        throw std::bad_alloc();
    return m_text.Extend(size);
}

// Puts a text that is no part of the store at its end and tells where it begins.
std::uint32_t MarkupTree::Store(std::wstring_view text) {
    const std::size_t at = m_text.GetSize();
    MakeRoom(text.size());
    m_text.Append(text);
    return Narrow(at);
}

// Writes the text anew when half of the store is of no use any more: so all of it together costs no more than
// a few times what was written.
void MarkupTree::Settle() {
    if (m_unused < std::max(smallWaste, m_text.GetSize() / 2))
        return;
    try {
        Rewrite();
    } catch (const std::bad_alloc&) {
        // It goes on as it is.
    }
}

void MarkupTree::Rewrite() {
    struct Level {
        ElementIndex element;
        Parts parts;
        std::uint32_t at; // in the old content: up to where it is written
    };
    std::vector<Level> open;
    open.reserve(m_deepest + 2);
    // Nothing of the store is written twice. From here on nothing fails.
    WideText out;
    wchar_t* const begin = out.Extend(m_text.GetSize() - m_unused + m_changes.size() * 2 * lineEnd.size());
    wchar_t* to = begin;
    const auto size = [&] { return Narrow(static_cast<std::size_t>(to - begin)); };
    const auto write = [&](std::wstring_view text) { to = std::copy(text.begin(), text.end(), to); };
    const auto writeStored = [&](std::uint32_t from, std::uint32_t end) {
        write(m_text.GetView(from, end - from));
    };

    Parts document = {};
    document.content = GetContent(0);
    open.push_back({0, document, document.content.begin});
    ElementIndex next = m_index[0].firstChild;
    for (;;) {
        if (next != 0) {
            Level level = {next, GetParts(next), 0};
            const Parts& parts = level.parts;
            writeStored(open.back().at, parts.place.begin);
            open.back().at = parts.place.GetEnd();
            if (parts.isAtFront)
                write(lineEnd);
            MarkupElement& record = m_index[next];
            record.start = size();
            record.tagLength = parts.tag.size;
            if (parts.endTagLength > 0)
                record.isUnended = false;
            record.isChanged = false;
            writeStored(parts.tag.begin, parts.tag.GetEnd());
            level.at = parts.content.begin;
            open.push_back(level);
            next = record.firstChild;
            continue;
        }
        const Level done = open.back();
        open.pop_back();
        writeStored(done.at, done.parts.content.GetEnd() + done.parts.endTagLength);
        MarkupElement& record = m_index[done.element];
        record.length = size() - record.start;
        if (open.empty())
            break;
        if (done.parts.isNew)
            write(lineEnd);
        next = record.next;
    }
    out.SetSize(size());
    out.Trim();
    m_text = std::move(out);
    m_changes.clear();
    m_unused = 0;
}
