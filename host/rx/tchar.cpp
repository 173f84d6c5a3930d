#include "tchar.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "host/rx/letter_case.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

namespace {

// The longest text that a function without a size may write: as much as memory has.
constexpr std::size_t unbounded = std::numeric_limits<std::size_t>::max();

// Copies a text into a buffer of so many characters. False, and an empty text there, when it does not fit.
bool put(TCHAR* to, std::size_t size, std::wstring_view text) {
    if (text.size() >= size) {
        if (size != 0)
            *to = 0;
        return false;
    }
    std::copy(text.begin(), text.end(), to);
    to[text.size()] = 0;
    return true;
}

// A number, held within the 32 bits that `long` has for the programs that call this.
template<typename Number, typename Wide>
Number held(Wide value) {
    using limits = std::numeric_limits<Number>;
    return static_cast<Number>(std::clamp<Wide>(value, limits::min(), limits::max()));
}

// The case-free order of at most `n` characters.
int compare(const TCHAR* a, const TCHAR* b, std::size_t n) {
    for (std::size_t i = 0; i != n; ++i) {
        const wchar_t x = base::fold_case(a[i]);
        const wchar_t y = base::fold_case(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
        if (x == 0)
            break;
    }
    return 0;
}

// The longest decimal number at the front of a text, blanks before it skipped; empty when there is none.
// Tells the end of what was read, which is the beginning then.
std::wstring number_at_front(const TCHAR* s, TCHAR** end) {
    const TCHAR* first = s;
    while (rx::is_blank(*first))
        ++first;
    const TCHAR* at = first;
    const auto skip_digits = [&at] {
        const TCHAR* const before = at;
        while (_istdigit(*at))
            ++at;
        return at - before;
    };
    if (*at == L'-' || *at == L'+')
        ++at;
    auto digits = skip_digits();
    if (*at == L'.') {
        ++at;
        digits += skip_digits();
    }
    if (digits == 0)
        first = at = s;
    else if (*at == L'e' || *at == L'E') {
        const TCHAR* const mantissa_end = at++;
        if (*at == L'-' || *at == L'+')
            ++at;
        if (skip_digits() == 0)
            at = mantissa_end;
    }
    if (end != nullptr)
        *end = const_cast<TCHAR*>(at);
    return std::wstring(first, at);
}

} // namespace

int _tcsicmp(const TCHAR* a, const TCHAR* b) {
    return compare(a, b, unbounded);
}

int _tcsnicmp(const TCHAR* a, const TCHAR* b, std::size_t n) {
    return compare(a, b, n);
}

TCHAR* _tcsupr(TCHAR* s) {
    std::transform(s, s + std::wcslen(s), s, rx::to_upper);
    return s;
}

TCHAR* _tcslwr(TCHAR* s) {
    std::transform(s, s + std::wcslen(s), s, rx::to_lower);
    return s;
}

TCHAR* _tcsdup(const TCHAR* s) {
    const std::size_t size = std::wcslen(s) + 1;
    auto* const copy = static_cast<TCHAR*>(std::malloc(size * sizeof(TCHAR)));
    if (copy != nullptr)
        std::copy_n(s, size, copy);
    return copy;
}

int _tcscpy_s(TCHAR* to, std::size_t size, const TCHAR* from) {
    if (to == nullptr || size == 0)
        return EINVAL;
    if (from == nullptr) {
        *to = 0;
        return EINVAL;
    }
    return put(to, size, from) ? 0 : ERANGE;
}

int _tcscat_s(TCHAR* to, std::size_t size, const TCHAR* from) {
    if (to == nullptr || size == 0)
        return EINVAL;
    const std::size_t length = static_cast<std::size_t>(std::find(to, to + size, TCHAR()) - to);
    const bool good = length < size && from != nullptr;
    if (good && put(to + length, size - length, from))
        return 0;
    *to = 0;
    return good ? ERANGE : EINVAL;
}

int _ttoi(const TCHAR* s) {
    return held<int>(std::wcstoll(s, nullptr, 10));
}

LONG _ttol(const TCHAR* s) {
    return held<LONG>(std::wcstoll(s, nullptr, 10));
}

double _tstof(const TCHAR* s) {
    return _tcstod(s, nullptr);
}

LONG _tcstol(const TCHAR* s, TCHAR** end, int base) {
    return held<LONG>(std::wcstoll(s, end, base));
}

ULONG _tcstoul(const TCHAR* s, TCHAR** end, int base) {
    // A minus sign wraps round, as strtoul has it.
    const long long value = std::wcstoll(s, end, base);
    return value < 0 ? static_cast<ULONG>(held<LONG>(value)) : held<ULONG>(value);
}

double _tcstod(const TCHAR* s, TCHAR** end) {
    // Not the C library's: it would read the number as the locale writes it.
    const std::wstring text = number_at_front(s, end);
    if (text.empty())
        return 0.0;
    const auto value = base::parse_real(base::narrow(text));
    return value ? *value : text.front() == L'-' ? -HUGE_VAL : HUGE_VAL;
}

int _vstprintf_s(TCHAR* to, std::size_t size, const TCHAR* format, va_list arguments) {
    const std::wstring text = base::format_wide(format, arguments);
    return put(to, size, text) ? static_cast<int>(text.size()) : -1;
}

int _vstprintf(TCHAR* to, const TCHAR* format, va_list arguments) {
    return _vstprintf_s(to, unbounded, format, arguments);
}

int _stprintf(TCHAR* to, const TCHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vstprintf(to, format, arguments);
    va_end(arguments);
    return length;
}

int _stprintf_s(TCHAR* to, std::size_t size, const TCHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vstprintf_s(to, size, format, arguments);
    va_end(arguments);
    return length;
}

int _istspace(int c) {
    return rx::is_blank(static_cast<wchar_t>(c));
}

int _totupper(int c) {
    return rx::to_upper(static_cast<wchar_t>(c));
}

int _totlower(int c) {
    return rx::to_lower(static_cast<wchar_t>(c));
}
