// What reading and writing files of markup share: blocks, pages and byte-order marks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Files are processed in blocks of that many bytes, or characters.
constexpr std::size_t markupBlockSize = 16384;

// An encoding by its name, and the code page that is meant; 0 when it is none that is known.
struct MarkupEncoding {
    static constexpr int utf8 = 65001;
    static constexpr int utf16 = 1200;
    static constexpr int utf16Big = 1201;
    static constexpr int utf32 = 12000;
    static constexpr int utf32Big = 12001;

    std::wstring name;
    int page = 0;

    bool IsBigEndian() const { return page == utf16Big || page == utf32Big; }
    // Whether each character has two or four bytes.
    bool IsWide() const { return page == utf16 || page == utf32 || IsBigEndian(); }
};

struct MarkupMark {
    std::string_view bytes;
    int page;
    const wchar_t* name;
};

constexpr MarkupMark markupMarks[] = {{"\xEF\xBB\xBF", MarkupEncoding::utf8, L"UTF-8"},
                                      {"\xFF\xFE", MarkupEncoding::utf16, L"UTF-16LE"},
                                      {"\xFE\xFF", MarkupEncoding::utf16Big, L"UTF-16BE"}};

// How a file is written, where its encoding leaves that open.
struct MarkupFileForm {
    bool hasMark = false; // a byte-order mark
    bool isBigEndian = false;
};
