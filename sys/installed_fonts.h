// The fonts that are installed on this machine.
#pragma once

#include <string>
#include <vector>

namespace sys {

// A face in one of its scripts: what Windows tells when it enumerates its fonts. One of them stands for all
// styles of a face, the regular one where there is one.
struct installed_font {
    std::wstring face; // each name of a face in another language is a face of its own
    std::wstring full_name;
    std::wstring style;
    std::wstring script; // "Western", "CHINESE_GB2312"
    int character_set = 0;
    int pitch_and_family =
        0;          // pitch in the lowest two bits: 1 fixed, 2 variable; the family in the upper four
    int weight = 0; // 400 regular, 700 bold
    bool italic = false;
    bool underlined = false;
    bool struck_out = false;
    bool true_type = false; // its outlines are TrueType's
};

// All of them, looked for anew, in no particular order. A face with an East Asian script is there twice, the
// second time as "@face", for text that runs down. Nothing where there is no font.
std::vector<installed_font> installed_fonts();

} // namespace sys
