#include "base/utf.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace std::string_literals;

TEST(BaseUtf, DecodesAndEncodes) {
    const struct {
        std::string bytes;
        std::wstring text;
    } rows[] = {
        {"", L""},
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
}

TEST(BaseUtf, EscapesEachBadByte) {
    const struct {
        const char* bytes;
        std::wstring text;
    } rows[] = {
        {"\x80", L"\xDC80"},
        {"a\xFFz", L"a\xDCFFz"},
        {"\xC0\x80", L"\xDCC0\xDC80"},           // overlong, two bytes
        {"\xE0\x9F\xBF", L"\xDCE0\xDC9F\xDCBF"}, // overlong, three
        {"\xF0\x8F\xBF\xBF", L"\xDCF0\xDC8F\xDCBF\xDCBF"},
        {"\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},           // a surrogate
        {"\xED\xB2\x80", L"\xDCED\xDCB2\xDC80"},           // the escape of 0x80 itself
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"}, // above U+10FFFF
        {"\xF5\x80\x80\x80", L"\xDCF5\xDC80\xDC80\xDC80"},
        {"\xE7\xBB", L"\xDCE7\xDCBB"}, // cut off
        {"\xE7\xBB\xE6\xB0\xB4", L"\xDCE7\xDCBB水"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(base::widen(row.bytes), row.text);
        EXPECT_EQ(base::narrow(row.text), row.bytes);
        EXPECT_FALSE(base::is_utf8(row.bytes)) << row.bytes;
    }
}

TEST(BaseUtf, AnyBytesComeBack) {
    std::mt19937 random(1);
    const std::string_view favourites = "\xC3\xE0\xED\xF0\xF4\x80\x8F\x90\xA0\xBF\x41";
    for (int round = 0; round < 200'000; ++round) {
        std::string bytes(random() % 7, '\0');
        for (char& byte : bytes)
            byte = random() % 2 ? favourites[random() % favourites.size()] : static_cast<char>(random());
        const std::wstring text = base::widen(bytes);
        ASSERT_EQ(base::narrow(text), bytes);
        bool has_escape = false;
        for (const wchar_t unit : text)
            has_escape = has_escape || base::is_escaped_byte(static_cast<char32_t>(unit));
        ASSERT_EQ(base::is_utf8(bytes), !has_escape) << bytes;
    }
}

TEST(BaseUtf, OneCharacterAnywhereInALongText) {
    for (std::size_t at = 0; at < 100; ++at) {
        std::string bytes(100, 'x');
        bytes.replace(at, 1, "\xC3\xA9");
        EXPECT_TRUE(base::is_utf8(bytes)) << at;
        EXPECT_EQ(base::widen(bytes)[at], L'é') << at;
        bytes.erase(at, 1);
        EXPECT_FALSE(base::is_utf8(bytes)) << at;
        EXPECT_EQ(base::narrow(base::widen(bytes)), bytes) << at;
    }
}

TEST(BaseUtf, WhatIsNoCharacter) {
    EXPECT_EQ(base::narrow(L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(base::narrow(L"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    std::string out;
    base::append_utf8(out, 0x110000);
    EXPECT_EQ(out, "\xEF\xBF\xBD");
}

} // namespace
