#include "base/utf.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace std::string_literals;

TEST(BaseUtf, Characters) {
    const struct {
        std::string bytes;
        std::wstring text;
    } rows[] = {
        {"a\0b"s, L"a\0b"s},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", L"\x80\x7FF\x800\xFFFF"},
        {"\xE7\xBB\x99\xE6\xB0\xB4", L"给水"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(base::widen(row.bytes), row.text);
        EXPECT_EQ(base::narrow(row.text), row.bytes);
        EXPECT_TRUE(base::is_utf8(row.bytes)) << row.bytes;
    }
    EXPECT_EQ(base::narrow(L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(base::narrow(L"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(BaseUtf, EachBadByteIsEscaped) {
    const struct {
        const char* bytes;
        std::wstring text;
    } rows[] = {
        {"a\xFFz\x80", L"a\xDCFFz\xDC80"},
        {"\xC0\x80", L"\xDCC0\xDC80"}, // overlong
        {"\xE0\x9F\xBF", L"\xDCE0\xDC9F\xDCBF"},
        {"\xF0\x8F\xBF\xBF", L"\xDCF0\xDC8F\xDCBF\xDCBF"},
        {"\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},           // a surrogate
        {"\xED\xB2\x80", L"\xDCED\xDCB2\xDC80"},           // the escape of 0x80 itself
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"}, // above U+10FFFF
        {"\xE7\xBB\xE6\xB0\xB4\xE7", L"\xDCE7\xDCBB水\xDCE7"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(base::widen(row.bytes), row.text);
        EXPECT_FALSE(base::is_utf8(row.bytes)) << row.bytes;
    }
}

// Behind some ASCII, so that the bytes lie everywhere in the blocks that are looked at together.
TEST(BaseUtf, AnyBytesComeBack) {
    std::mt19937 random(1);
    const std::string_view favourites = "\xC3\xE0\xED\xF0\xF4\x80\x8F\x90\xA0\xBF\x41";
    for (int round = 0; round < 200'000; ++round) {
        std::string bytes(random() % 70, 'x');
        for (std::size_t more = random() % 7; more > 0; --more)
            bytes += random() % 2 ? favourites[random() % favourites.size()] : static_cast<char>(random());
        bytes.append(random() % 40, 'y');
        const std::wstring text = base::widen(bytes);
        ASSERT_EQ(base::narrow(text), bytes);
        bool has_escape = false;
        for (const wchar_t unit : text)
            has_escape = has_escape || base::is_escaped_byte(static_cast<char32_t>(unit));
        ASSERT_EQ(base::is_utf8(bytes), !has_escape) << bytes;
    }
}

} // namespace
