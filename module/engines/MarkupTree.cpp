#include "module/engines/MarkupTree.h"

#include "module/engines/MarkupParser.h"
#include "module/engines/MarkupSyntax.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace {

// What may gather in the store before it is worth while to write a small document anew.
constexpr std::size_t smallStore = std::size_t(1) << 20;

std::uint32_t Narrow(std::size_t size) {
    return static_cast<std::uint32_t>(size);
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
                                std::wstring_view tag, std::wstring_view rest, std::uint32_t endTagLength) {
    const bool isAtFront = parent != 0 && m_index[parent].firstChild == 0 && GetContent(parent).size == 0;
    if (isAtFront) {
        // An empty element's tag becomes two tags.
        Open(parent, {});
        place = GetContent(parent).begin;
    }
    Parts parts;
    parts.place = {place, 0};
    parts.content = {Store(rest), Narrow(rest.size()) - endTagLength};
    parts.endTagLength = endTagLength;
    parts.tag = {Store(tag), Narrow(tag.size())};
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
    record.nameLength = MarkupElement::longName;
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

// Puts a text that is no part of the store at its end and tells where it begins.
std::uint32_t MarkupTree::Store(std::wstring_view text) {
    const std::size_t at = m_text.GetSize();
    if (text.size() > longestMarkup - at)
        throw std::bad_alloc();
    m_text.Append(text);
    return Narrow(at);
}

// Writes the text anew when the store has doubled since that was done: so all of it together costs no more
// than a few times what was written.
void MarkupTree::Settle() {
    if (m_text.GetSize() < std::max<std::size_t>(smallStore, 2 * std::size_t(m_index[0].length)))
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
    wchar_t* const begin = out.Extend(m_text.GetSize() + m_changes.size() * 2 * lineEnd.size());
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
}
