#include "siblings/zef_kernal/TRegProperty.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "sys/registry.h"

#include <optional>
#include <utility>

namespace {

// The value as one of the kinds that the registry has; nothing when it is of another one.
template<class Kind>
std::optional<Kind> Read(HKEY root, const std::wstring& key, LPCTSTR name) {
    if (root != HKEY_CURRENT_USER)
        return std::nullopt;
    const auto value = sys::registry_read(key, name);
    const Kind* const held = value ? std::get_if<Kind>(&*value) : nullptr;
    return held != nullptr ? std::optional(*held) : std::nullopt;
}

bool Write(HKEY root, const std::wstring& key, LPCTSTR name, sys::registry_value value) {
    const std::pair<std::wstring, sys::registry_value> row[] = {{name, std::move(value)}};
    return root == HKEY_CURRENT_USER && sys::registry_write(key, row);
}

} // namespace

TRegProperty::TRegProperty(LPCTSTR location, LPCTSTR subKey)
    : m_root(HKEY_CURRENT_USER), m_key(std::wstring(location) + L"\\" + subKey) {
}

bool TRegProperty::GetValue(LPCTSTR name, int& value) const {
    const auto number = Read<std::uint32_t>(m_root, m_key, name);
    if (number)
        value = static_cast<int>(*number);
    return number.has_value();
}

bool TRegProperty::GetValue(LPCTSTR name, double& value) const {
    const auto text = Read<std::wstring>(m_root, m_key, name);
    const auto number = text ? base::parse_real(base::narrow(*text)) : std::nullopt;
    if (number)
        value = *number;
    return number.has_value();
}

bool TRegProperty::GetValue(LPCTSTR name, CString& value) const {
    const auto text = Read<std::wstring>(m_root, m_key, name);
    if (text)
        value = text->c_str();
    return text.has_value();
}

bool TRegProperty::SetValue(LPCTSTR name, int value) {
    return Write(m_root, m_key, name, static_cast<std::uint32_t>(value));
}

bool TRegProperty::SetValue(LPCTSTR name, double value) {
    return Write(m_root, m_key, name, base::widen(base::real_text(value)));
}

bool TRegProperty::SetValue(LPCTSTR name, LPCTSTR value) {
    return Write(m_root, m_key, name, std::wstring(value));
}
