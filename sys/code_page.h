// The code pages of drawings and old text files, by the numbers that Windows gives them. One object a page,
// made when it is first asked for and kept; all of it may be used by several threads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sys {

class code_page {
public:
    // The page of that number: 437 850 852 855 857 860-866 869 874 932 936 949 950 1250-1258 1361 10000 20127
    // 28591-28599 28603 28605 65001. Null when it is another, or when this system does not know it.
    static const code_page* find(int number);

    code_page(const code_page&) = delete;
    code_page& operator=(const code_page&) = delete;

    // The text of some bytes. A byte b that cannot be decoded becomes U+DC00+b; bytes below 0x80 are ASCII in
    // every page.
    std::wstring decode(std::string_view bytes) const;

    // Appends the bytes of one character; false, and `out` as it was, when the page does not have it.
    // U+DC80..U+DCFF gives the raw byte.
    bool encode(char32_t c, std::string& out) const;

private:
    explicit code_page(int number) : number_(number) {}
    bool fill();

    int number_;
    // By the byte, or by lead * 256 + trail: the character, 0 when there is none. Empty for UTF-8.
    std::vector<char16_t> characters_;
    // By the character: the byte, or lead * 256 + trail; 0 when the page does not have it.
    std::vector<std::uint16_t> codes_;
};

} // namespace sys
