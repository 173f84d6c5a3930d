#include "base/case_fold.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "host/rx/letter_case.h"

#include "acstring.h"

#include <algorithm>
#include <string_view>

namespace {

std::wstring_view view(const ACHAR* text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

int position(std::size_t at) {
    return at != std::wstring::npos ? static_cast<int>(at) : -1;
}

} // namespace

AcString::AcString(const char* utf8) : m_text(utf8 != nullptr ? base::widen(utf8) : std::wstring()) {
}

AcString& AcString::assign(const ACHAR* text) {
    m_text = view(text);
    return *this;
}

AcString& AcString::setEmpty() {
    m_text.clear();
    return *this;
}

ACHAR AcString::getAt(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_text.size()
               ? m_text[static_cast<std::size_t>(index)]
               : ACHAR();
}

AcString& AcString::append(const ACHAR* text) {
    m_text += view(text);
    return *this;
}

AcString& AcString::append(const AcString& text) {
    m_text += text.m_text;
    return *this;
}

AcString& AcString::append(ACHAR character) {
    m_text += character;
    return *this;
}

AcString& AcString::format(const ACHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    formatV(format, arguments);
    va_end(arguments);
    return *this;
}

AcString& AcString::formatV(const ACHAR* format, va_list arguments) {
    m_text = base::format_wide(format, arguments);
    return *this;
}

int AcString::compare(const ACHAR* text) const {
    return m_text.compare(view(text));
}

int AcString::compareNoCase(const ACHAR* text) const {
    return base::compare_no_case(m_text, view(text));
}

bool AcString::matchesStart(const ACHAR* text) const {
    return m_text.starts_with(view(text));
}

int AcString::find(const ACHAR* text) const {
    return position(m_text.find(view(text)));
}

int AcString::find(ACHAR character) const {
    return position(m_text.find(character));
}

int AcString::findRev(ACHAR character) const {
    return position(m_text.rfind(character));
}

AcString AcString::substr(int start, int count) const {
    AcString part;
    const std::size_t at = std::min(static_cast<std::size_t>(std::max(start, 0)), m_text.size());
    part.m_text = m_text.substr(at, count < 0 ? m_text.npos : static_cast<std::size_t>(count));
    return part;
}

AcString& AcString::makeUpper() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), rx::to_upper);
    return *this;
}

AcString& AcString::makeLower() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), rx::to_lower);
    return *this;
}

AcString& AcString::trim() {
    const auto is_not_blank = [](wchar_t c) { return !rx::is_blank(c); };
    m_text.erase(std::find_if(m_text.rbegin(), m_text.rend(), is_not_blank).base(), m_text.end());
    m_text.erase(m_text.begin(), std::find_if(m_text.begin(), m_text.end(), is_not_blank));
    return *this;
}
