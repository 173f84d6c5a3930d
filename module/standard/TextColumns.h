// Texts in columns on the command line.
#pragma once

#include "afx.h"

// How many columns of a screen a text takes: signs of the East take two.
inline int WidthOf(const CString& text) {
    int width = 0;
    for (int i = 0; i < text.GetLength(); ++i)
        width += text[i] >= 0x1100 ? 2 : 1;
    return width;
}

// With blanks behind it up to that width.
inline CString Padded(const CString& text, int width) {
    CString padded = text;
    for (int i = WidthOf(text); i < width; ++i)
        padded += L' ';
    return padded;
}
