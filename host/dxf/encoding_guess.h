// Which encoding the text of a drawing is in, judged by its bytes. Headers name the wrong code page often:
// the drawing was written by a program that puts a fixed name there, or was converted without changing it.
#pragma once

#include "adesk.h"

#include <string>
#include <string_view>
#include <vector>

namespace dxf {

inline constexpr int utf8_page = 65001;

// The different lines of a drawing that hold bytes above 127, one behind the other with line feeds between;
// those that are met first, when there are many. What lies in one of the `sealed` pieces, which are in order,
// is no text.
ACDB_PORT std::string lines_with_high_bytes(std::string_view drawing,
                                            const std::vector<std::string_view>& sealed = {});

// The number of the code page, or utf8_page, that `sample` is in most likely. `named` is the one that the
// drawing names, 0 when it names none: it is right unless the bytes speak clearly against it. When none is
// named `may_be_dos` tells that the drawing is as old as programs for DOS; of others code page 1252 is the
// most likely.
ACDB_PORT int guess_encoding(std::string_view sample, int named, bool may_be_dos);

// How an encoding is called: "UTF-8", "GBK (code page 936)", "code page 857".
ACDB_PORT std::wstring encoding_name(int number);

// The number of an encoding that a person names: as $DWGCODEPAGE does ("ANSI_936", "gb2312", "dos850"), by
// number ("936", "cp936"), or by another usual name ("gbk", "shift-jis", "utf-8"). 0 when it is none, or one
// that this system can not read.
ACDB_PORT int encoding_number(std::string_view name);

} // namespace dxf
