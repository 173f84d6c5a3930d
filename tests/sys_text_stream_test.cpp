// Text in blocks: the same as in one piece, wherever the borders are.
#include "sys/text_stream.h"

#include "base/utf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

std::wstring decoded(int page, std::string_view bytes, std::size_t block, std::size_t& lost,
                     std::size_t& left) {
    const auto stream = sys::text_stream::open(page);
    std::wstring out(bytes.size(), L'?');
    std::size_t size = 0;
    lost = 0;
    while (!bytes.empty()) {
        const auto done = stream->decode(bytes.substr(0, block), out.data() + size);
        if (done.bytes == 0 && block >= bytes.size())
            break;
        EXPECT_LE(done.units, done.bytes);
        size += done.units;
        lost += done.lost;
        bytes.remove_prefix(done.bytes);
        block = done.bytes == 0 ? block + 1 : block;
    }
    left = bytes.size();
    return out.substr(0, size);
}

std::string encoded(int page, std::wstring_view text, std::size_t& taken) {
    const auto stream = sys::text_stream::open(page);
    std::string out((text.size() + 1) * sys::text_stream::longest, '\0');
    const auto done = stream->encode(text, out.data());
    taken = done.units;
    out.resize(done.bytes + stream->finish(out.data() + done.bytes));
    return out;
}

TEST(SysTextStream, BlocksOfAnySize) {
    const std::wstring ascii = L"plain <text> long enough to be taken in several large steps, ";
    const struct {
        int page;
        std::wstring text;
    } rows[] = {
        {65001, L"é水\U0001F4A7"}, {936, L"给水€—"},         {932, L"日本ｱ"},
        {949, L"한글똠"},          {950, L"中文功"},         {1252, L"€é"},
        {28598, L"שלום"},          {1200, L"水\U0001F4A7"},  {1201, L"水é"},
        {12000, L"\U0001F4A7"},    {12001, L"水\U0001F4A7"}, {54936, L"给𠀀ä"},
        {51932, L"日丂ｱ"},         {50220, L"日本語"},
    };
    for (const auto& row : rows) {
        std::wstring text;
        for (int i = 0; i < 20; ++i)
            text += ascii.substr(0, static_cast<std::size_t>(i * 7 % 61)) + row.text +
                    (i % 3 == 0 ? row.text : L"");
        std::size_t taken = 0;
        const std::string bytes = encoded(row.page, text, taken);
        ASSERT_EQ(taken, text.size()) << row.page;
        for (const std::size_t block : {1u, 2u, 3u, 5u, 16u, 17u, 33u, 100u, 100'000u}) {
            std::size_t lost = 0;
            std::size_t left = 0;
            ASSERT_EQ(decoded(row.page, bytes, block, lost, left), text) << row.page << ' ' << block;
            ASSERT_EQ(lost + left, 0u) << row.page << ' ' << block;
        }
    }
    for (const int page : {-1, 0, 1, 37, 1199, 1202, 52936, 65000, 65002})
        EXPECT_EQ(sys::text_stream::open(page), nullptr) << page;
}

// Any bytes at all: what decode() makes of the whole, but for a character that the end cuts off.
TEST(SysTextStream, RandomBytes) {
    std::mt19937 random(7);
    for (const int page : {65001, 936, 932, 949, 950, 1252, 1361, 51949, 38598}) {
        for (int round = 0; round < 300; ++round) {
            std::string bytes;
            for (auto size = random() % 200; size > 0; --size)
                bytes += static_cast<char>(random() % 4 != 0 ? random() : random() % 2 != 0 ? 0xE6 : 0x81);
            std::size_t lost = 0;
            std::size_t left = 0;
            const std::wstring text = decoded(page, bytes, 1 + random() % 40, lost, left);
            const auto taken = std::string_view(bytes).substr(0, bytes.size() - left);
            ASSERT_LE(left, 3u);
            ASSERT_EQ(text, sys::code_page::find(page)->decode(taken)) << page;
            ASSERT_EQ(lost, static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](wchar_t c) {
                          return base::is_escaped_byte(static_cast<char32_t>(c));
                      })));
            std::size_t units = 0;
            const bool has_doubles = page == 932 || page == 950;
            const std::string again = encoded(page, text, units);
            const bool has_four = page == 936 && units != text.size(); // GB 18030's are read, not written
            ASSERT_TRUE(again == taken || has_doubles || has_four) << page;
        }
    }
}

TEST(SysTextStream, WhatAPageLacks) {
    const struct {
        int page;
        std::wstring_view text;
        std::size_t taken;
        std::string_view bytes;
    } rows[] = {
        {20127, L"some plain text that is longé", 28, "some plain text that is long"},
        {936, L"水\U0001F4A7x", 1, "\xCB\xAE"},
        {936, L"\xDCFF水", 2, "\xFF\xCB\xAE"},
        {65001, L"x\xD800", 1, "x"},
        {1200, L"\xD800x", 2, {"\x00\xD8x\x00", 4}},
        {51932, L"日\xDCFF\U0001F4A7", 2, "\xC6\xFC\xFF"},
    };
    for (const auto& row : rows) {
        std::size_t taken = 0;
        EXPECT_EQ(encoded(row.page, row.text, taken), row.bytes) << row.page;
        EXPECT_EQ(taken, row.taken) << row.page;
    }
}

} // namespace
