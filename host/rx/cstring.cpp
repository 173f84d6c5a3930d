#include "base/case_fold.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "host/rx/letter_case.h"

#include "afx.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace {

std::wstring_view view(LPCWSTR text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

std::wstring_view view(LPCWSTR text, int length) {
    return text != nullptr && length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length))
                                         : std::wstring_view();
}

std::wstring wide(LPCSTR utf8) {
    return utf8 != nullptr ? base::widen(utf8) : std::wstring();
}

CString string(std::wstring_view text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

int position(std::size_t at) {
    return at != std::wstring::npos ? static_cast<int>(at) : -1;
}

// A count or position that may be negative, as one that the standard library takes.
std::size_t clamped(int n) {
    return static_cast<std::size_t>(std::max(n, 0));
}

// Cuts off what `goes` is true for, at the one end or the other.
template<typename Predicate>
void trim_left(std::wstring& text, Predicate goes) {
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), goes));
}

template<typename Predicate>
void trim_right(std::wstring& text, Predicate goes) {
    text.erase(std::find_if_not(text.rbegin(), text.rend(), goes).base(), text.end());
}

auto is(wchar_t character) {
    return [character](wchar_t c) { return c == character; };
}

auto is_in(std::wstring_view set) {
    return [set](wchar_t c) { return set.find(c) != set.npos; };
}

} // namespace

CString::CString(LPCWSTR text, int length) : m_text(view(text, length)) {
}

CString::CString(LPCSTR utf8) : m_text(wide(utf8)) {
}

CString::CString(LPCSTR utf8, int length)
    : m_text(utf8 != nullptr ? base::widen(std::string_view(utf8, clamped(length))) : std::wstring()) {
}

CString::CString(wchar_t character, int count) : m_text(clamped(count), character) {
}

CString& CString::operator=(LPCWSTR text) {
    m_text = view(text);
    return *this;
}

CString& CString::operator=(LPCSTR utf8) {
    m_text = wide(utf8);
    return *this;
}

CString& CString::operator=(wchar_t character) {
    m_text.assign(1, character);
    return *this;
}

CString& CString::operator+=(const CString& text) {
    m_text += text.m_text;
    return *this;
}

CString& CString::operator+=(LPCWSTR text) {
    m_text += view(text);
    return *this;
}

CString& CString::operator+=(LPCSTR utf8) {
    m_text += wide(utf8);
    return *this;
}

CString& CString::operator+=(wchar_t character) {
    m_text += character;
    return *this;
}

int CString::Compare(LPCWSTR text) const {
    return m_text.compare(view(text));
}

int CString::CompareNoCase(LPCWSTR text) const {
    return base::compare_no_case(m_text, view(text));
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    const std::size_t at = std::min(clamped(first), m_text.size());
    return string(std::wstring_view(m_text).substr(at, clamped(count)));
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Right(int count) const {
    return Mid(GetLength() - std::min(GetLength(), std::max(count, 0)));
}

CString CString::SpanIncluding(LPCWSTR set) const {
    return string(std::wstring_view(m_text).substr(0, m_text.find_first_not_of(view(set))));
}

CString CString::SpanExcluding(LPCWSTR set) const {
    return string(std::wstring_view(m_text).substr(0, m_text.find_first_of(view(set))));
}

CString CString::Tokenize(LPCWSTR set, int& start) const {
    const std::wstring_view text = m_text;
    const std::size_t first = start < 0 ? text.npos : text.find_first_not_of(view(set), clamped(start));
    if (first == text.npos) {
        start = -1;
        return {};
    }
    const std::size_t end = std::min(text.find_first_of(view(set), first), text.size());
    start = static_cast<int>(end) + 1;
    return string(text.substr(first, end - first));
}

int CString::Find(wchar_t character, int start) const {
    return position(m_text.find(character, clamped(start)));
}

int CString::Find(LPCWSTR text, int start) const {
    return position(m_text.find(view(text), clamped(start)));
}

int CString::ReverseFind(wchar_t character) const {
    return position(m_text.rfind(character));
}

int CString::FindOneOf(LPCWSTR set) const {
    return position(m_text.find_first_of(view(set)));
}

int CString::Replace(wchar_t from, wchar_t to) {
    int count = 0;
    for (wchar_t& c : m_text) {
        if (c == from) {
            c = to;
            ++count;
        }
    }
    return count;
}

int CString::Replace(LPCWSTR from, LPCWSTR to) {
    const std::wstring_view gone = view(from);
    if (gone.empty())
        return 0;
    // Made anew: one pass, and the arguments may be parts of the text itself.
    std::wstring made;
    int count = 0;
    std::size_t at = 0;
    for (std::size_t next; (next = m_text.find(gone, at)) != m_text.npos; at = next + gone.size()) {
        made.append(m_text, at, next - at).append(view(to));
        ++count;
    }
    if (count != 0)
        m_text = made.append(m_text, at);
    return count;
}

int CString::Remove(wchar_t character) {
    return static_cast<int>(std::erase(m_text, character));
}

int CString::Insert(int index, wchar_t character) {
    m_text.insert(std::min(clamped(index), m_text.size()), 1, character);
    return GetLength();
}

int CString::Insert(int index, LPCWSTR text) {
    m_text.insert(std::min(clamped(index), m_text.size()), view(text));
    return GetLength();
}

int CString::Delete(int index, int count) {
    m_text.erase(std::min(clamped(index), m_text.size()), clamped(count));
    return GetLength();
}

void CString::Truncate(int length) {
    m_text.resize(std::min(clamped(length), m_text.size()));
}

CString& CString::MakeUpper() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), rx::to_upper);
    return *this;
}

CString& CString::MakeLower() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), rx::to_lower);
    return *this;
}

CString& CString::MakeReverse() {
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

CString& CString::TrimLeft() {
    trim_left(m_text, rx::is_blank);
    return *this;
}

CString& CString::TrimLeft(wchar_t character) {
    trim_left(m_text, is(character));
    return *this;
}

CString& CString::TrimLeft(LPCWSTR set) {
    trim_left(m_text, is_in(view(set)));
    return *this;
}

CString& CString::TrimRight() {
    trim_right(m_text, rx::is_blank);
    return *this;
}

CString& CString::TrimRight(wchar_t character) {
    trim_right(m_text, is(character));
    return *this;
}

CString& CString::TrimRight(LPCWSTR set) {
    trim_right(m_text, is_in(view(set)));
    return *this;
}

void CString::FormatV(LPCWSTR format, va_list arguments) {
    m_text = base::format_wide(format, arguments);
}

void CString::AppendFormatV(LPCWSTR format, va_list arguments) {
    m_text += base::format_wide(format, arguments);
}

void CString::Print(bool append, const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (append)
        AppendFormatV(format, arguments);
    else
        FormatV(format, arguments);
    va_end(arguments);
}

LPWSTR CString::GetBuffer(int length) {
    m_text.resize(std::max(m_text.size(), clamped(length)));
    return m_text.data();
}

LPWSTR CString::GetBufferSetLength(int length) {
    m_text.resize(clamped(length));
    return m_text.data();
}

void CString::ReleaseBuffer(int length) {
    m_text.resize(length >= 0 ? static_cast<std::size_t>(length) : std::wcslen(m_text.c_str()));
}

void CString::Preallocate(int length) {
    m_text.reserve(clamped(length));
}
