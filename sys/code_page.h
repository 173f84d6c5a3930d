// The code pages of drawings and old text files, by the numbers that Windows gives them. One object a page,
// made when it is first asked for and kept; all of it may be used by several threads.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sys {

class code_page {
public:
    // The page of that number: 437 737 775 850 852 855 857 858 860-866 869 874 932 936 949 950 1250-1258 1361
    // 10000 10007 20127 20866 21866 28591-28601 28603-28606 38598 51936 51949 65001. Null when it is another,
    // or when this system does not know it.
    static const code_page* find(int number);

    code_page(const code_page&) = delete;
    code_page& operator=(const code_page&) = delete;

    // The text of some bytes. A byte b that cannot be decoded becomes U+DC00+b; bytes below 0x80 are ASCII in
    // every page. In 936 the characters that GB 18030 writes in four bytes are read too.
    std::wstring decode(std::string_view bytes) const;

    struct decoded {
        std::size_t bytes = 0; // how many were taken
        std::size_t units = 0; // how many units they gave
        std::size_t lost = 0;  // how many of the bytes could not be decoded
    };

    // The same for one block of a longer text, into `out`, which has room for as many units as there are
    // bytes. A character that the end of the block cuts off is not taken: the next block begins with it.
    decoded decode_block(std::string_view block, wchar_t* out) const;

    // Appends the bytes of one character; false, and `out` as it was, when the page does not have it.
    // U+DC80..U+DCFF gives the raw byte.
    bool encode(char32_t c, std::string& out) const;

private:
    explicit code_page(int number) : number_(number) {}
    bool fill();

    int number_;
    // By the byte, or by lead * 256 + trail: the character, 0 when there is none. Null for UTF-8.
    const char16_t* characters_ = nullptr;
    // The bytes that begin a character of two.
    std::array<bool, 256> is_lead_{};
    // By the character: the byte, or lead * 256 + trail; 0 when the page does not have it.
    const std::uint16_t* codes_ = nullptr;
    // Where these lie, unless the program itself holds them.
    std::vector<char16_t> own_characters_;
    std::vector<std::uint16_t> own_codes_;
};

// The page that a system's programs write texts in which tell no encoding: 936 unless it was set.
int ansi_code_page();

// False, and nothing changed, when there is no such page.
bool set_ansi_code_page(int number);

} // namespace sys
