#include "siblings/zef_kernal/TWDict.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "sys/atomic_file.h"
#include "sys/file.h"
#include "sys/folders.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    return text;
}

bool HasLineEnd(std::string_view text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) != text.npos;
}

// The name in a section's header; nothing for another line.
std::optional<std::string_view> HeaderName(std::string_view line) {
    line = Trimmed(line);
    if (line.size() < 2 || line.front() != '[' || line.back() != ']')
        return std::nullopt;
    return line.substr(1, line.size() - 2);
}

// Key and value of a line, without the blanks around them. An empty key for a line that has none.
std::pair<std::string_view, std::string_view> Entry(std::string_view line) {
    const std::size_t sign = line.find('=');
    const std::string_view key = Trimmed(line.substr(0, sign));
    if (sign == line.npos || key.empty() || key[0] == ';' || key[0] == '#')
        return {};
    return {key, Trimmed(line.substr(sign + 1))};
}

} // namespace

std::size_t TWDictSection::Find(std::string_view key) const {
    // Lines that are no entries have an empty key, which is asked for in vain.
    const auto isEntry = [&](const std::string& line) { return !key.empty() && Entry(line).first == key; };
    return static_cast<std::size_t>(std::find_if(m_lines.begin(), m_lines.end(), isEntry) - m_lines.begin());
}

bool TWDictSection::GetValue(LPCTSTR key, int& value) const {
    CString text;
    if (!GetValue(key, text))
        return false;
    const auto number = base::parse_integer(base::narrow(text.GetString()));
    if (!number || *number < std::numeric_limits<int>::min() || *number > std::numeric_limits<int>::max())
        return false;
    value = static_cast<int>(*number);
    return true;
}

bool TWDictSection::GetValue(LPCTSTR key, double& value) const {
    CString text;
    const auto number = GetValue(key, text) ? base::parse_real(base::narrow(text.GetString())) : std::nullopt;
    if (number)
        value = *number;
    return number.has_value();
}

bool TWDictSection::GetValue(LPCTSTR key, CString& value) const {
    const std::size_t at = Find(base::narrow(key));
    if (at == m_lines.size())
        return false;
    value = base::widen(Entry(m_lines[at]).second).c_str();
    return true;
}

bool TWDictSection::SetValue(LPCTSTR key, int value) {
    return Set(base::narrow(key), std::to_string(value));
}

bool TWDictSection::SetValue(LPCTSTR key, double value) {
    return Set(base::narrow(key), base::real_text(value));
}

bool TWDictSection::SetValue(LPCTSTR key, LPCTSTR value) {
    return Set(base::narrow(key), base::narrow(value));
}

bool TWDictSection::Set(std::string_view key, std::string_view value) {
    const std::string line = std::string(key) + "=" + std::string(value);
    if (key.empty() || HasLineEnd(line) || !base::is_utf8(line) || Entry(line).first != key || key[0] == '[')
        return false;
    if (const std::size_t at = Find(key); at != m_lines.size()) {
        std::string& old = m_lines[at];
        const std::string_view had = Entry(old).second;
        // An empty value has no place of its own: behind the sign.
        const std::size_t start =
            had.empty() ? old.find('=') + 1 : static_cast<std::size_t>(had.data() - old.data());
        old.replace(start, had.size(), value);
        return true;
    }
    // Comments and blank lines at the section's end may belong to what follows.
    std::size_t at = m_lines.size();
    while (at > 1 && Entry(m_lines[at - 1]).first.empty())
        --at;
    if (!m_lines[at - 1].ends_with('\n'))
        m_lines[at - 1] += m_lineEnd;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), line + m_lineEnd);
    return true;
}

TWDict::TWDict() {
    Append({});
}

TWDict::~TWDict() = default;

TWDictSection& TWDict::Append(std::string name) {
    m_sections.emplace_back(new TWDictSection);
    m_sections.back()->m_name = std::move(name);
    m_sections.back()->m_lineEnd = m_lineEnd;
    return *m_sections.back();
}

bool TWDict::ReadFile(LPCTSTR path) {
    const auto file = sys::read_file(sys::to_path(path));
    sys::text_form form;
    const auto text = file ? sys::utf8_of(file->view(), form) : std::nullopt;
    if (!text)
        return false;
    m_form = form;
    std::string_view rest = *text;
    const std::size_t feed = rest.find('\n');
    m_lineEnd = feed == rest.npos || (feed > 0 && rest[feed - 1] == '\r') ? "\r\n" : "\n";
    m_sections.clear();
    TWDictSection* section = &Append({});
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
        if (const auto name = HeaderName(line))
            section = &Append(std::string(*name));
        section->m_lines.emplace_back(line);
        rest.remove_prefix(line.size());
    }
    return true;
}

bool TWDict::WriteFile(LPCTSTR path) const {
    std::string text;
    for (const auto& section : m_sections)
        for (const std::string& line : section->m_lines)
            text += line;
    const auto bytes = sys::bytes_of(text, m_form);
    if (!bytes)
        return false;
    auto file = sys::atomic_file::create(sys::to_path(path));
    return file && file->write(*bytes) && file->commit();
}

TWDictSection* TWDict::FindOrAddDict(LPCTSTR sectionName) {
    const std::string name = base::narrow(sectionName);
    if (HasLineEnd(name))
        return nullptr;
    const auto found = std::find_if(m_sections.begin() + 1, m_sections.end(),
                                    [&](const auto& section) { return section->m_name == name; });
    if (found != m_sections.end())
        return found->get();
    std::vector<std::string>& before = m_sections.back()->m_lines;
    if (!before.empty() && !before.back().ends_with('\n'))
        before.back() += m_lineEnd;
    TWDictSection& added = Append(name);
    added.m_lines.push_back("[" + name + "]" + m_lineEnd);
    return &added;
}
