// The text of a document with its elements, and the changes that are made to it.
//
// A change does not touch the text: what is new goes to its end, and the element is noted as changed, with
// where its parts stand now and which place in its parent's text it takes. So a change costs what it writes,
// wherever it is. When the whole text is asked for, it is written anew in order; the same happens when half
// of the store is of no use any more.
#pragma once

#include "module/engines/MarkupIndex.h"
#include "module/engines/MarkupInput.h"
#include "module/engines/MarkupResult.h"
#include "module/engines/MarkupSyntax.h"
#include "module/engines/WideText.h"

#include <string>
#include <string_view>
#include <vector>

class MarkupTree {
public:
    // A part of the store.
    struct Span {
        std::uint32_t begin = 0;
        std::uint32_t size = 0;
        std::uint32_t GetEnd() const { return begin + size; }
    };

    // An empty document.
    MarkupTree() = default;

    // Reads a text, and what the input adds to it; without one, which may be null, the text is whole. What is
    // wrong with it goes to the result, which is empty before. Throws std::bad_alloc, also when the text is
    // too long.
    MarkupTree(WideText text, MarkupInput* input, MarkupResult& result);

    // The whole text with all changes. Throws std::bad_alloc.
    std::wstring_view GetText();

    const MarkupElement& GetElement(ElementIndex element) const { return m_index[element]; }
    ElementIndex GetLastChild(ElementIndex parent) const;

    // The start tag, from `<` to `>`.
    std::wstring_view GetTag(ElementIndex element) const {
        const MarkupElement& record = m_index[element];
        return record.isChanged ? GetView(m_changes[record.start].tag)
                                : GetView({record.start, record.tagLength});
    }

    std::wstring_view GetName(ElementIndex element) const {
        const std::wstring_view tag = GetTag(element);
        return {tag.data() + 1, GetNameLength(element, tag)};
    }

    AttributeScan GetAttributes(ElementIndex element) const {
        const std::wstring_view tag = GetTag(element);
        return {tag, GetNameLength(element, tag)};
    }

    // What stands between the tags, as it was before child elements were changed or added; of the document,
    // all of it.
    Span GetContent(ElementIndex element) const {
        const MarkupElement& record = m_index[element];
        if (record.isChanged)
            return m_changes[record.start].content;
        return {record.start + record.tagLength, record.length - record.tagLength - GetEndTagLength(record)};
    }

    // The part of the parent's content that the element takes; empty when it is a new one.
    Span GetPlace(ElementIndex element) const {
        const MarkupElement& record = m_index[element];
        return record.isChanged ? m_changes[record.start].place : Span{record.start, record.length};
    }

    std::wstring_view GetView(Span span) const { return m_text.GetView(span.begin, span.size); }

    // Hands the pieces that lie directly inside the element to `take`, in order.
    template<class Take>
    void ForOwnText(ElementIndex element, Take take) const;

    // Changes. They throw std::bad_alloc, and nothing is changed then.

    // A new element of that name behind `previous`, 0 being none, at a place in the parent's content that
    // lies neither before `previous` nor behind its next sibling. Without data it is an empty one. The texts
    // may be parts of the store.
    ElementIndex Insert(ElementIndex parent, ElementIndex previous, std::uint32_t place,
                        std::wstring_view name, std::wstring_view data);

    // Other content, as markup, for an element that has no child elements.
    void SetContent(ElementIndex element, std::wstring_view content);

    // Another start tag, of the same kind, for an element. It is no part of the store.
    void SetTag(ElementIndex element, std::wstring_view tag);

private:
    static constexpr std::wstring_view lineEnd = L"\r\n";

    // Where an element's parts stand.
    struct Parts {
        Span place; // as GetPlace() tells it
        Span tag;
        Span content;               // the end tag follows it
        std::uint32_t endTagLength; // 0 when there is none
        bool isNew = false;         // a line end follows the element ...
        bool isAtFront = false;     // ... and stands before it
    };

    std::size_t GetNameLength(ElementIndex element, std::wstring_view tag) const {
        const std::size_t length = m_index[element].nameLength;
        return length < MarkupElement::longName ? length : GetFrontName(tag.substr(1)).size();
    }
    Parts GetParts(ElementIndex element) const;
    // The parts of an element that is changed from now on. Throws std::bad_alloc.
    Parts& Change(ElementIndex element);
    void Open(ElementIndex element, std::wstring_view content);
    std::uint32_t GetEndTagLength(const MarkupElement& record) const {
        if (record.length == record.tagLength || record.isUnended)
            return 0;
        // Mostly "</name>"; then the text, which is far away from the record, is not looked at.
        return record.hasPlainEnd ? record.nameLength + 3 : FindEndTagLength(record);
    }
    std::uint32_t FindEndTagLength(const MarkupElement& record) const;
    wchar_t* MakeRoom(std::size_t size);
    std::uint32_t Store(std::wstring_view text);
    void Settle();
    void Rewrite();

    WideText m_text; // the store: the document's text, and what was written since
    MarkupIndex m_index;
    std::vector<Parts> m_changes;
    std::size_t m_unused = 0;    // how much of the store belongs to no element any more
    std::uint32_t m_deepest = 0; // no level is higher
};

template<class Take>
void MarkupTree::ForOwnText(ElementIndex element, Take take) const {
    const Span content = GetContent(element);
    std::uint32_t at = content.begin;
    for (ElementIndex child = m_index[element].firstChild; child != 0;) {
        const MarkupElement& record = m_index[child];
        const Span place = GetPlace(child);
        take(GetView({at, place.begin - at}));
        at = place.GetEnd();
        if (record.isChanged) {
            const Parts& parts = m_changes[record.start];
            if (parts.isAtFront)
                take(lineEnd);
            if (parts.isNew)
                take(lineEnd);
        }
        child = record.next;
    }
    take(GetView({at, content.GetEnd() - at}));
}
