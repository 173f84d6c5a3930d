// Whole files of text, block by block: bytes of any page that this system knows to wide text, and back.
#pragma once

#include "sys/code_page.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace sys {

// What a page is made of that code_page does not hold: UTF-16 and UTF-32 (1200 1201 12000 12001), and those
// that the system converts itself (20932 50220 50221 50225 50227 51932 51950 54936).
class text_stream {
public:
    using decoded = code_page::decoded;

    // What encode() did.
    struct encoded {
        std::size_t units = 0; // how many were taken
        std::size_t bytes = 0; // how many bytes they gave
    };

    // A stream of the page with that number; null when neither code_page nor this class knows it.
    static std::unique_ptr<text_stream> open(int number);

    virtual ~text_stream() = default;

    // The next block of a text, as code_page::decode_block() does it. What cannot be decoded becomes
    // U+DC80..U+DCFF where that stands for the byte, U+FFFD where it does not.
    virtual decoded decode(std::string_view block, wchar_t* out) = 0;

    // How many bytes a unit may give, at most.
    static constexpr std::size_t longest = 16;

    // The next piece of a text, as far as the page has its characters: the first unit that was not taken
    // begins one that it lacks. A piece must not end between two surrogates that make a pair. U+DC80..U+DCFF
    // give their raw byte, except in UTF-16 and UTF-32. `out` has room for `longest` bytes for each unit, and
    // once more.
    virtual encoded encode(std::wstring_view text, char* out) = 0;

    // Ends the text: gives the bytes, at most `longest`, that bring the page back to where a text begins.
    virtual std::size_t finish(char* out);
};

// A stream that the system converts itself. Null when it knows no such page.
std::unique_ptr<text_stream> open_system_stream(int number);

} // namespace sys
