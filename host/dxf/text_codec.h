// Text of a drawing file: bytes to wide text and back.
//
// From 2007 on files are UTF-8, before that they are in the code page that $DWGCODEPAGE names; but the name
// is often wrong, so the bytes are judged first. Characters that a code page lacks stand as \U+XXXX or, in
// East Asian files, \M+nXXXX; control characters as ^J and the like. A byte that is no text in the file's
// encoding becomes a lone unit U+DC80..U+DCFF, which gives the byte back.
#pragma once

#include "adesk.h"

#include <string>
#include <string_view>

namespace sys {
class code_page;
}

namespace dxf {

class ACDB_PORT text_codec {
public:
    text_codec() = default;
    // `version` is the number in $ACADVER (1015 for "AC1015", 0 when unknown), `code_page` the value of
    // $DWGCODEPAGE, `utf8` whether the whole file is well-formed UTF-8 with bytes above 127.
    text_codec(int version, std::string_view code_page, bool utf8);

    std::wstring decode(std::string_view bytes) const;
    std::string encode(std::wstring_view text) const;

    // What the file is written in: "UTF-8" or the name of a code page.
    std::wstring name() const;

private:
    const sys::code_page* page_ = nullptr; // null: UTF-8
    int number_ = 65001;
};

// The Windows number of a $DWGCODEPAGE value ("ANSI_936", "gb2312", "dos850"); 0 when it names none.
ACDB_PORT int code_page_number(std::string_view name);

} // namespace dxf
