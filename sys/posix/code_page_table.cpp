#include "sys/posix/code_page_table.h"

#include "base/utf.h"

#include <algorithm>
#include <cerrno>
#include <iconv.h>
#include <optional>

namespace sys {

namespace {

// The pages by number, and the names that the system has for them: the prefix with the number less an offset.
struct page_range {
    int first;
    int last;
    const char* prefix;
    int offset;
};

constexpr page_range page_ranges[] = {
    {437, 437, "CP", 0},
    {737, 737, "CP", 0},
    {775, 775, "CP", 0},
    {850, 850, "CP", 0},
    {852, 852, "CP", 0},
    {855, 855, "CP", 0},
    {857, 858, "CP", 0},
    {860, 866, "CP", 0},
    {869, 869, "CP", 0},
    {874, 874, "CP", 0},
    {932, 932, "CP", 0},
    {936, 936, "CP", 0},
    {949, 950, "CP", 0},
    {1250, 1258, "CP", 0},
    {1361, 1361, "CP", 0},
    {10000, 10000, "MACINTOSH", -1},
    {10007, 10007, "MAC-CYRILLIC", -1},
    {20127, 20127, "US-ASCII", -1},
    {20866, 20866, "KOI8-R", -1},
    {21866, 21866, "KOI8-U", -1},
    {28591, 28601, "ISO-8859-", 28590},
    {28603, 28606, "ISO-8859-", 28590},
    {38598, 38598, "ISO-8859-8", -1},
    {51936, 51936, "EUC-CN", -1},
    {51949, 51949, "EUC-KR", -1},
};

// Empty for a number that is not one of ours.
std::string name_of(int number) {
    for (const page_range& range : page_ranges) {
        if (number >= range.first && number <= range.last)
            return range.offset < 0 ? range.prefix : range.prefix + std::to_string(number - range.offset);
    }
    return {};
}

class converter {
public:
    converter(const std::string& to, const std::string& from)
        : handle_(::iconv_open(to.c_str(), from.c_str())) {}
    ~converter() {
        if (is_open())
            ::iconv_close(handle_);
    }
    converter(const converter&) = delete;
    converter& operator=(const converter&) = delete;

    bool is_open() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // The bytes, which stand for one character, converted; otherwise nothing, and errno is EINVAL when they
    // are the beginning of a character. Some pages hold a character back to join it with the next: the second
    // call fetches it.
    std::optional<std::string> convert(std::string bytes) {
        char out[32];
        char* in_at = bytes.data();
        char* out_at = out;
        std::size_t in_left = bytes.size();
        std::size_t out_left = sizeof out;
        ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        // A positive answer counts characters that were replaced by others.
        if (::iconv(handle_, &in_at, &in_left, &out_at, &out_left) != 0 ||
            ::iconv(handle_, nullptr, nullptr, &out_at, &out_left) != 0)
            return std::nullopt;
        return std::string(out, out_at);
    }

    // The characters of many codes of two bytes, one after the other: as many as codes, or, where the system
    // does something else than one character for each, none. Zero for codes that stand for nothing.
    std::wstring convert_pairs(std::string bytes) {
        std::wstring characters;
        std::string out(bytes.size() * 2, '\0');
        char* in_at = bytes.data();
        std::size_t in_left = bytes.size();
        while (in_left != 0) {
            char* out_at = out.data();
            std::size_t out_left = out.size();
            ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
            const std::size_t result = ::iconv(handle_, &in_at, &in_left, &out_at, &out_left);
            characters += base::widen(std::string_view(out.data(), out_at));
            if (result == 0)
                break;
            if (result != static_cast<std::size_t>(-1) || errno != EILSEQ || in_left % 2 != 0 ||
                characters.size() * 2 != bytes.size() - in_left)
                return {};
            characters += L'\0';
            in_at += 2;
            in_left -= 2;
        }
        return characters.size() * 2 == bytes.size() ? characters : std::wstring();
    }

private:
    iconv_t handle_;
};

std::string bytes_of(unsigned code) {
    std::string bytes;
    if (code > 0xFF)
        bytes += static_cast<char>(code >> 8);
    bytes += static_cast<char>(code & 0xFF);
    return bytes;
}

} // namespace

std::optional<code_page_table> ask_for_code_page(int number) {
    const std::string name = name_of(number);
    converter decoder("UTF-8", name);
    converter encoder(name, "UTF-8");
    if (name.empty() || !decoder.is_open() || !encoder.is_open())
        return std::nullopt;
    code_page_table table{std::vector<char16_t>(0x10000), std::vector<std::uint16_t>(0x10000)};

    const auto put = [&](unsigned code, char32_t c) {
        if (c < 0x80 || c > 0xFFFF)
            return;
        table.characters[code] = static_cast<char16_t>(c);
        // Of several codes for one character the system tells which one is written.
        if (table.codes[c] == 0 ||
            encoder.convert(base::narrow(std::wstring(1, static_cast<wchar_t>(c)))) == bytes_of(code))
            table.codes[c] = static_cast<std::uint16_t>(code);
    };
    // False when the code is the beginning of a longer one.
    const auto add = [&](unsigned code) {
        const auto utf8 = decoder.convert(bytes_of(code));
        if (!utf8)
            return errno != EINVAL;
        const std::wstring text = base::widen(*utf8);
        if (text.size() == 1)
            put(code, static_cast<char32_t>(text[0]));
        return true;
    };
    constexpr unsigned first_trail = 0x21;
    const auto add_pairs = [&](unsigned lead) {
        std::string pairs;
        for (unsigned trail = first_trail; trail <= 0xFF; ++trail)
            pairs += bytes_of(lead << 8 | trail);
        const std::wstring characters = decoder.convert_pairs(pairs);
        for (unsigned trail = first_trail; trail <= 0xFF; ++trail)
            if (characters.empty())
                add(lead << 8 | trail);
            else
                put(lead << 8 | trail, static_cast<char32_t>(characters[trail - first_trail]));
    };
    for (unsigned byte = 0; byte < 0x80; ++byte)
        table.characters[byte] = static_cast<char16_t>(byte);
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte)
        if (!add(byte))
            add_pairs(byte);
    return table;
}

} // namespace sys
