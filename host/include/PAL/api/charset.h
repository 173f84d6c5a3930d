// Character sets of fonts, by the numbers that the system's font descriptions have for them.
#pragma once

enum Charset {
    kUndefinedCharset = -1,
    kAnsiCharset = 0,
    kDefaultCharset = 1,
    kSymbolCharset = 2,
    kMacCharset = 77,
    kShiftJisCharset = 128,
    kHangeulCharset = 129,
    kJohabCharset = 130,
    kGb2312Charset = 134,
    kChineseBig5Charset = 136,
    kGreekCharset = 161,
    kTurkishCharset = 162,
    kVietnameseCharset = 163,
    kHebrewCharset = 177,
    kArabicCharset = 178,
    kBalticCharset = 186,
    kRussianCharset = 204,
    kThaiCharset = 222,
    kEastEuropeCharset = 238,
    kOemCharset = 255,
};
