#include "base/wide_format.h"

#include "base/utf.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace base {

namespace {

// What may stand before a conversion's letter, and how many bits an integer has then.
struct length {
    std::wstring_view mark;
    int bits;
};

// The longer of two that begin alike stands first; the last one fits everything.
constexpr int long_bits = 8 * sizeof(long);
constexpr int pointer_bits = 8 * sizeof(void*);
constexpr length lengths[] = {
    {L"hh", 8},
    {L"h", 16},
    {L"ll", 64},
    {L"l", long_bits},
    {L"w", long_bits},
    {L"I64", 64},
    {L"I32", 32},
    {L"I", pointer_bits},
    {L"z", pointer_bits},
    {L"t", pointer_bits},
    {L"j", 64},
    {L"L", 64},
    {L"", 32},
};

// One conversion, as far as it stands before its letter.
struct conversion {
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;
    length size = {};
};

bool is_digit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

class formatter {
public:
    explicit formatter(va_list args) { va_copy(args_, args); }
    ~formatter() { va_end(args_); }
    formatter(const formatter&) = delete;
    formatter& operator=(const formatter&) = delete;

    std::wstring run(const wchar_t* at) {
        while (*at != 0) {
            if (*at != L'%') {
                out_ += *at++;
                continue;
            }
            const wchar_t* const begin = at++;
            conversion how;
            take_flags(at, how);
            how.width = take_number(at, 0);
            if (how.width < 0) {
                how.left = true;
                how.width = how.width == std::numeric_limits<int>::min() ? 0 : -how.width;
            }
            if (*at == L'.')
                how.precision = std::max(take_number(++at, 0), -1);
            how.size = take_length(at);
            const wchar_t letter = *at;
            if (letter != 0)
                ++at;
            if (!put(letter, how))
                out_.append(begin, at);
        }
        return std::move(out_);
    }

private:
    static void take_flags(const wchar_t*& at, conversion& how) {
        for (;; ++at) {
            if (*at == L'-')
                how.left = true;
            else if (*at == L'+')
                how.plus = true;
            else if (*at == L' ')
                how.blank = true;
            else if (*at == L'#')
                how.alternate = true;
            else if (*at == L'0')
                how.zero = true;
            else
                return;
        }
    }

    int take_number(const wchar_t*& at, int otherwise) {
        if (*at == L'*') {
            ++at;
            return va_arg(args_, int);
        }
        if (!is_digit(*at))
            return otherwise;
        std::int64_t number = 0;
        for (; is_digit(*at); ++at)
            number = std::min<std::int64_t>(number * 10 + (*at - L'0'), std::numeric_limits<int>::max());
        return static_cast<int>(number);
    }

    static length take_length(const wchar_t*& at) {
        const auto begins = [at](std::wstring_view mark) {
            std::size_t same = 0;
            while (same < mark.size() && at[same] == mark[same])
                ++same;
            return same == mark.size();
        };
        const length* size = lengths;
        while (!begins(size->mark))
            ++size;
        at += size->mark.size();
        return *size;
    }

    bool put(wchar_t letter, const conversion& how) {
        constexpr std::wstring_view upper_letters = L"SCXEFGA";
        const bool upper = upper_letters.find(letter) != upper_letters.npos;
        const wchar_t lower = upper ? static_cast<wchar_t>(letter + (L'a' - L'A')) : letter;
        switch (lower) {
        case L'%':
            out_ += L'%';
            return true;
        case L's':
            put_text(is_narrow(upper, how.size), how);
            return true;
        case L'c':
            put_character(is_narrow(upper, how.size), how);
            return true;
        case L'd':
        case L'i': {
            const auto value = static_cast<std::int64_t>(take_integer(true, how.size.bits));
            const auto bits = static_cast<std::uint64_t>(value);
            put_integer(value < 0 ? 0 - bits : bits, 10, sign(value < 0, how), false, how);
            return true;
        }
        case L'u':
            put_integer(take_integer(false, how.size.bits), 10, L"", false, how);
            return true;
        case L'o':
            put_integer(take_integer(false, how.size.bits), 8, L"", false, how);
            return true;
        case L'x': {
            const std::uint64_t value = take_integer(false, how.size.bits);
            const std::wstring_view prefix = upper ? L"0X" : L"0x";
            put_integer(value, 16, how.alternate && value != 0 ? prefix : L"", upper, how);
            return true;
        }
        case L'p': {
            conversion all_digits = how;
            all_digits.precision = 2 * sizeof(void*);
            put_integer(reinterpret_cast<std::uintptr_t>(va_arg(args_, void*)), 16, L"", true, all_digits);
            return true;
        }
        case L'e':
        case L'f':
        case L'g':
        case L'a':
            put_real(static_cast<char>(lower), upper, how);
            return true;
        default:
            return false;
        }
    }

    // The letter's case turns the kind round; a length says it outright.
    static bool is_narrow(bool upper_case, const length& size) {
        return size.mark.starts_with(L'h') || (upper_case && size.mark != L"l" && size.mark != L"w");
    }

    std::uint64_t take_integer(bool is_signed, int bits) {
        const auto raw = bits > 32 ? static_cast<std::uint64_t>(va_arg(args_, long long))
                                   : static_cast<std::uint64_t>(va_arg(args_, int));
        const int unused = 64 - bits;
        return is_signed ? static_cast<std::uint64_t>(static_cast<std::int64_t>(raw << unused) >> unused)
                         : raw << unused >> unused;
    }

    void put_text(bool is_utf8, const conversion& how) {
        const auto limit = how.precision < 0 ? std::numeric_limits<std::size_t>::max()
                                             : static_cast<std::size_t>(how.precision);
        if (is_utf8) {
            const char* const text = va_arg(args_, const char*);
            put_padded(text == nullptr ? std::wstring(L"(null)").substr(0, limit)
                                       : widen(first_characters(text, limit)),
                       how);
        } else {
            const wchar_t* text = va_arg(args_, const wchar_t*);
            if (text == nullptr)
                text = L"(null)";
            // A text with a precision need not have an end.
            std::size_t size = 0;
            while (size < limit && text[size] != 0)
                ++size;
            put_padded({text, size}, how);
        }
    }

    // As many characters as the limit allows; no byte behind them is looked at.
    static std::string_view first_characters(const char* text, std::size_t limit) {
        std::size_t size = 0;
        for (std::size_t count = 0; count < limit && text[size] != 0; ++count) {
            const auto lead = static_cast<unsigned char>(text[size++]);
            int tails = lead < 0xC2 || lead > 0xF4 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
            for (; tails > 0 && (text[size] & 0xC0) == 0x80; --tails)
                ++size;
        }
        return {text, size};
    }

    void put_character(bool is_byte, const conversion& how) {
        const int c = va_arg(args_, int);
        if (is_byte) {
            const char byte = static_cast<char>(c);
            put_padded(widen({&byte, 1}), how);
        } else {
            const auto unit = static_cast<wchar_t>(c);
            put_padded({&unit, 1}, how);
        }
    }

    void put_integer(std::uint64_t value, int radix, std::wstring_view prefix, bool upper, conversion how) {
        char text[64];
        std::string digits(text, std::to_chars(text, text + sizeof text, value, radix).ptr);
        if (value == 0 && how.precision == 0)
            digits.clear();
        if (how.precision > 0 && digits.size() < static_cast<std::size_t>(how.precision))
            digits.insert(0, static_cast<std::size_t>(how.precision) - digits.size(), '0');
        if (radix == 8 && how.alternate && (digits.empty() || digits[0] != '0'))
            digits.insert(0, 1, '0');
        how.zero = how.zero && how.precision < 0;
        put_number(prefix, digits, upper, how);
    }

    void put_real(char letter, bool upper, conversion how) {
        const double value =
            how.size.mark == L"L" ? static_cast<double>(va_arg(args_, long double)) : va_arg(args_, double);
        std::wstring prefix(sign(std::signbit(value), how));
        if (!std::isfinite(value)) {
            how.zero = false;
            put_number(prefix, std::isnan(value) ? "nan" : "inf", upper, how);
            return;
        }
        if (letter == 'a')
            prefix += upper ? L"0X" : L"0x";
        if (how.precision < 0)
            how.precision = letter == 'a' ? 13 : 6;
        put_number(prefix, real_digits(std::fabs(value), letter, how), upper, how);
    }

    static std::string real_digits(double value, char letter, const conversion& how) {
        const auto text = [value](std::chars_format format, int precision) {
            // The largest double has 309 digits before the point.
            std::string digits(static_cast<std::size_t>(precision) + 330, '\0');
            char* const end = digits.data() + digits.size();
            const char* const written = std::to_chars(digits.data(), end, value, format, precision).ptr;
            digits.resize(static_cast<std::size_t>(written - digits.data()));
            return digits;
        };
        if (letter == 'g' && !how.alternate)
            return text(std::chars_format::general, how.precision);

        std::string digits;
        if (letter == 'g') {
            const int precision = std::max(how.precision, 1);
            digits = text(std::chars_format::scientific, precision - 1);
            const int exponent = std::stoi(digits.substr(digits.find('e') + 1));
            if (exponent >= -4 && exponent < precision)
                digits = text(std::chars_format::fixed, precision - 1 - exponent);
        } else {
            const auto format = letter == 'a'   ? std::chars_format::hex
                                : letter == 'e' ? std::chars_format::scientific
                                                : std::chars_format::fixed;
            digits = text(format, how.precision);
        }
        if (how.alternate && digits.find('.') == digits.npos)
            digits.insert(std::min(digits.find_first_of(letter == 'a' ? "p" : "e"), digits.size()), 1, '.');
        return digits;
    }

    static std::wstring_view sign(bool negative, const conversion& how) {
        return negative ? L"-" : how.plus ? L"+" : how.blank ? L" " : L"";
    }

    void put_number(std::wstring_view prefix, std::string_view digits, bool upper, const conversion& how) {
        std::wstring text(prefix);
        const std::size_t size = prefix.size() + digits.size();
        if (how.zero && !how.left && size < static_cast<std::size_t>(how.width))
            text.append(static_cast<std::size_t>(how.width) - size, L'0');
        for (const char c : digits)
            text += static_cast<wchar_t>(upper && c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
        put_padded(text, how);
    }

    void put_padded(std::wstring_view text, const conversion& how) {
        const auto width = static_cast<std::size_t>(how.width);
        const std::size_t blanks = width > text.size() ? width - text.size() : 0;
        if (!how.left)
            out_.append(blanks, L' ');
        out_ += text;
        if (how.left)
            out_.append(blanks, L' ');
    }

    va_list args_;
    std::wstring out_;
};

} // namespace

std::wstring format_wide(const wchar_t* format, va_list args) {
    return format != nullptr ? formatter(args).run(format) : std::wstring();
}

std::wstring format_wide_arguments(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring out = format_wide(format, args);
    va_end(args);
    return out;
}

} // namespace base
