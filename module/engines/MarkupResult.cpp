#include "module/engines/MarkupResult.h"

#include "module/engines/MarkupSyntax.h"

#include <iterator>

namespace {

constexpr std::size_t mostFaults = 1000;

// In the words %t stands for the text, %n and %m for the numbers.
struct EventRow {
    const wchar_t* name;
    const wchar_t* textAttribute;
    const wchar_t* numberAttribute;
    const wchar_t* number2Attribute;
    const wchar_t* words;
};

constexpr EventRow rows[] = {
    {L"root_has_sibling", nullptr, nullptr, nullptr, L"root element has sibling"},
    {L"no_root_element", nullptr, nullptr, nullptr, L"no root element"},
    {L"lone_end_tag", L"tagname", L"offset", nullptr, L"lone end tag '%t' at offset %n"},
    {L"unended_start_tag", L"tagname", L"offset", L"offset2",
     L"start tag '%t' at offset %n expecting end tag at offset %m"},
    {L"first_tag_syntax", nullptr, L"offset", nullptr,
     L"tag syntax error at offset %n expecting tag name / ! or ?"},
    {L"exclamation_tag_syntax", nullptr, L"offset", nullptr,
     L"tag syntax error at offset %n expecting 'DOCTYPE' [ or -"},
    {L"doctype_tag_syntax", nullptr, L"offset", nullptr,
     L"tag syntax error at offset %n expecting markup declaration"},
    {L"comment_tag_syntax", nullptr, L"offset", nullptr,
     L"tag syntax error at offset %n expecting - to begin comment"},
    {L"cdata_section_syntax", nullptr, L"offset", nullptr,
     L"tag syntax error at offset %n expecting 'CDATA'"},
    {L"unterminated_tag_syntax", nullptr, L"offset", nullptr, L"unterminated tag at offset %n"},
    {L"file_error", nullptr, nullptr, nullptr, L"file error"},
    {L"read", L"encoding", L"length", nullptr, L"%t length %n"},
    {L"write", L"encoding", L"length", nullptr, L"%t length %n"},
    {L"bom", nullptr, nullptr, nullptr, L"BOM +"},
    {L"converted_to", L"encoding", nullptr, nullptr, L"converted to %t"},
    {L"converted_from", L"encoding", nullptr, nullptr, L"converted from %t"},
    {L"nulls_removed", nullptr, L"count", nullptr, L"removed %n nulls"},
    {L"conversion_loss", nullptr, nullptr, nullptr, L"(chars lost in conversion!)"},
    {L"utf8_detection", nullptr, nullptr, nullptr, L"(used UTF-8 detection)"},
    {L"endian_swap", nullptr, nullptr, nullptr, L"endian swap"},
    {L"truncation_error", L"encoding", nullptr, nullptr, L"encoding %t adjustment error"},
};
static_assert(std::size(rows) == static_cast<std::size_t>(MarkupEvent::TruncationError) + 1);

const EventRow& RowOf(MarkupEvent event) {
    return rows[static_cast<std::size_t>(event)];
}

bool IsFault(MarkupEvent event) {
    return event < MarkupEvent::FileError;
}

} // namespace

void MarkupResult::Add(MarkupEvent event, std::size_t number, std::size_t number2) {
    Add(event, std::wstring_view(), number, number2);
}

void MarkupResult::Add(MarkupEvent event, std::wstring_view text, std::size_t number, std::size_t number2) {
    if (!IsFault(event) || m_faults++ < mostFaults)
        m_records.push_back({event, std::wstring(text), number, number2});
}

void MarkupResult::Add(const MarkupResult& other) {
    m_records.insert(m_records.end(), other.m_records.begin(), other.m_records.end());
    m_faults += other.m_faults;
}

std::wstring MarkupResult::GetMarkup() const {
    std::wstring markup;
    const auto add = [&markup](const wchar_t* name, std::wstring_view value) {
        if (name == nullptr)
            return;
        markup.append(L" ").append(name).append(L"=\"");
        AppendEscaped(markup, value);
        markup += L'"';
    };
    for (const Record& record : m_records) {
        const EventRow& row = RowOf(record.event);
        markup.append(L"<").append(row.name);
        add(row.textAttribute, record.text);
        add(row.numberAttribute, std::to_wstring(record.number));
        add(row.number2Attribute, std::to_wstring(record.number2));
        markup += L"/>";
    }
    return markup;
}

std::wstring MarkupResult::GetWords() const {
    std::wstring words;
    for (const Record& record : m_records) {
        if (!words.empty())
            words += IsFault(record.event) ? L'\n' : L' ';
        for (const wchar_t* at = RowOf(record.event).words; *at != L'\0'; ++at) {
            if (*at != L'%')
                words += *at;
            else if (*++at == L't')
                words += record.text;
            else
                words += std::to_wstring(*at == L'n' ? record.number : record.number2);
        }
    }
    return words;
}
