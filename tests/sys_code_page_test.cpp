#include "sys/code_page.h"

#include <gtest/gtest.h>

namespace {

using sys::code_page;

std::string encoded(const code_page& page, std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text)
        EXPECT_TRUE(page.encode(static_cast<char32_t>(c), bytes)) << std::hex << static_cast<unsigned>(c);
    return bytes;
}

TEST(SysCodePage, KnownTexts) {
    const struct {
        int number;
        std::string_view bytes;
        std::wstring_view text;
    } rows[] = {
        {437, "\x82\xE1\xF8\xDB", L"éß°█"},
        {874, "\xA1\xD2", L"กา"},
        {932, "\x93\xFA\x96{\xB1\\~", L"日本ｱ\\~"},
        {936, "\xB8\xF8\xCB\xAE\x80\xA1\xA4\xA1\xAA", L"给水€·—"},
        {949, "\xC7\xD1\xB1\xDB\x8C\x63", L"한글똠"},
        {950, "\xA4\xA4\xA4\xE5\xA5\\", L"中文功"},
        {1251, "\xCF\xF0\xE8\xE2\xE5\xF2", L"Привет"},
        {1252, "\x80\xE9\x99", L"€é™"},
        {1255, "\xF9\xC8", L"ש\x05B8"},
        {1258, "\x61\xEC\xD5", L"a\x0301Ơ"},
        {1361, "\x88\x61\\", L"가\\"},
        {10000, "\x8E\xA5", L"é•"},
        {28605, "\xA4", L"€"},
        {65001, "\xE7\xBB\x99\xF0\x9F\x98\x80", L"给\U0001F600"},
    };
    for (const auto& row : rows) {
        const code_page* const page = code_page::find(row.number);
        ASSERT_NE(page, nullptr) << row.number;
        EXPECT_EQ(page, code_page::find(row.number));
        EXPECT_EQ(page->decode(row.bytes), row.text) << row.number;
        EXPECT_EQ(encoded(*page, row.text), row.bytes) << row.number;
    }
    for (const int number : {-1, 0, 1, 1200, 1249, 1259, 28602, 65000})
        EXPECT_EQ(code_page::find(number), nullptr) << number;
}

TEST(SysCodePage, WhatCannotBeDecodedOrEncoded) {
    const code_page& chinese = *code_page::find(936);
    EXPECT_EQ(chinese.decode("\xFF\xB8 \xB8"), L"\xDCFF\xDCB8 \xDCB8");
    EXPECT_EQ(encoded(chinese, L"\xDCFF\xDCB8 \xDCB8"), "\xFF\xB8 \xB8");
    std::string out = "kept";
    for (const char32_t c : {0xE000u, 0xD800u, 0xDC7Fu, 0x1F600u, 0x110000u, 0xFFFFFFFFu})
        EXPECT_FALSE(chinese.encode(c, out)) << std::hex << static_cast<unsigned>(c);
    EXPECT_FALSE(code_page::find(65001)->encode(0xD800, out));
    EXPECT_FALSE(code_page::find(1252)->encode(U'水', out));
    EXPECT_FALSE(code_page::find(20127)->encode(U'é', out));
    EXPECT_EQ(out, "kept");
}

// Any two bytes come back, except that 932 and 950 hold some characters twice: there the character comes
// back.
TEST(SysCodePage, EveryPairOfBytes) {
    for (const int number :
         {437, 850, 857, 864, 874, 932, 936, 949, 950, 1255, 1258, 1361, 10000, 20127, 28598}) {
        const code_page& page = *code_page::find(number);
        const bool has_doubles = number == 932 || number == 950;
        for (unsigned pair = 0; pair <= 0xFFFF; ++pair) {
            const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
            const std::wstring text = page.decode({bytes, 2});
            std::string back;
            for (const wchar_t c : text)
                ASSERT_TRUE(page.encode(static_cast<char32_t>(c), back)) << number << std::hex << ' ' << pair;
            if (back != std::string_view(bytes, 2)) {
                ASSERT_TRUE(has_doubles) << number << std::hex << ' ' << pair;
                ASSERT_EQ(page.decode(back), text) << number << std::hex << ' ' << pair;
            }
        }
    }
}

} // namespace

// Bytes by an independent converter.
TEST(SysCodePage, GbkReadsWhatGb18030WritesInFourBytes) {
    struct row {
        std::string_view bytes;
        std::wstring text;
    };
    const sys::code_page& gbk = *sys::code_page::find(936);
    for (const row& row : {row{"\x81\x30\x81\x30", L"\x80"}, row{"\x82\x30\x85\x33\xB8\xF8", L"\x34CE给"},
                           row{"\x95\x34\xB2\x35", L"\U00020BB7"}, row{"\xE3\x32\x9A\x35", L"\U0010FFFF"},
                           row{"\x81\x30\x81", L"\xDC81"
                                               L"0"
                                               L"\xDC81"},
                           row{"\xFF\x30\x81\x30", L"\xDCFF"
                                                   L"0\xDC81"
                                                   L"0"}}) {
        EXPECT_TRUE(gbk.decode(row.bytes) == row.text) << row.bytes;
        wchar_t block[16];
        const auto taken = gbk.decode_block(row.bytes, block);
        EXPECT_TRUE(taken.bytes < row.bytes.size() || std::wstring(block, taken.units) == row.text)
            << row.bytes;
    }
}
