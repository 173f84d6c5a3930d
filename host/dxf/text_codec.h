// Text of a drawing file: bytes to wide text and back.
//
// From 2007 on files are UTF-8, before that they are in the code page that $DWGCODEPAGE names, as a rule;
// which it is judges host/dxf/encoding_guess.h. Characters that a code page lacks stand as \U+XXXX or, in
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
    text_codec() = default; // UTF-8
    // `number` is that of a code page, or 65001. One that the system does not know is read as 1252, what most
    // programs write.
    explicit text_codec(int number);

    std::wstring decode(std::string_view bytes) const;
    std::string encode(std::wstring_view text) const;

    // What the file is written in, as the constructor takes it.
    int number() const { return number_; }

private:
    const sys::code_page* page_ = nullptr; // null: UTF-8
    int number_ = 65001;
};

// The Windows number of a $DWGCODEPAGE value ("ANSI_936", "gb2312", "dos850"); 0 when it names none.
ACDB_PORT int code_page_number(std::string_view name);

} // namespace dxf
