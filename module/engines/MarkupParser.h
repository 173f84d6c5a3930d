// Reads a text once and fills the index with its elements; what is wrong with the text goes to the result.
#pragma once

#include "module/engines/MarkupIndex.h"
#include "module/engines/MarkupResult.h"
#include "module/engines/MarkupScan.h"
#include "module/engines/WideText.h"

#include <string_view>
#include <unordered_map>

class MarkupParser {
public:
    MarkupParser(const WideText& text, MarkupIndex& index, MarkupResult& result);

    // To be called once. Offsets in the index have 32 bits: a longer text must not be given.
    void Run();

    // The highest level of an element.
    std::uint32_t GetDeepest() const { return m_deepest; }

private:
    std::uint32_t GetOffset(const wchar_t* at) const { return static_cast<std::uint32_t>(at - m_begin); }
    std::wstring_view GetName(ElementIndex element) const;
    void AddFault(MarkupEvent event, const wchar_t* at);

    void TakeStartTag(const wchar_t* open);
    void TakeEndTag(const wchar_t* open);
    void TakePiece(const wchar_t* open);
    const wchar_t* FindTagEnd(const wchar_t* open, bool& isPlain);

    void Close(const wchar_t* end, std::size_t nameLength);
    void CloseUnended(const wchar_t* expected);
    bool IsOpen(std::wstring_view name);

    const wchar_t* const m_begin;
    const wchar_t* const m_end;
    MarkupIndex& m_index;
    MarkupResult& m_result;
    MarkupScan<wchar_t> m_scan;
    ElementIndex m_parent = 0;   // the element that is open, innermost
    ElementIndex m_previous = 0; // its last child so far
    std::uint32_t m_level = 0;
    std::uint32_t m_deepest = 0;
    // How often each name is open; kept up only when the first end tag has come that fits no start tag,
    // because good texts never ask.
    std::unordered_map<std::wstring_view, std::uint32_t> m_openNames;
    bool m_keepsOpenNames = false;
};
