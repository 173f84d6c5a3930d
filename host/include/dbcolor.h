// Colours of layers and entities: an index, a true colour, or one that is taken from layer or block.
#pragma once

#include "AdAChar.h"
#include "acestext.h"
#include "adesk.h"

#include <string>

namespace AcCm {

// Ways of choosing a colour that a dialog offers.
enum DialogTabs {
    kACITab = 1,
    kTrueColorTab = 2,
    kColorBookTab = 4,
};

} // namespace AcCm

class ACDB_PORT AcCmEntityColor {
public:
    enum ColorMethod {
        kByLayer = 0xC0,
        kByBlock = 0xC1,
        kByColor = 0xC2, // red, green and blue
        kByACI = 0xC3,   // an index
        kForeground = 0xC5,
        kNone = 0xC8,
    };
    enum ACIcolorMethod {
        kACIbyBlock = 0,
        kACIForeground = 7,
        kACIbyLayer = 256,
        kACIclear = 0,
        kACIRed = 1,
        kACIYellow = 2,
        kACIGreen = 3,
        kACICyan = 4,
        kACIBlue = 5,
        kACIMagenta = 6,
        kACIWhite = 7,
        kACIstandard = 7,
        kACImaximum = 255,
        kACInone = 257,
        kACIminimum = -255,
    };

    AcCmEntityColor() = default;

    ColorMethod colorMethod() const { return m_method; }
    Acad::ErrorStatus setColorMethod(ColorMethod method);

    bool isByLayer() const { return m_method == kByLayer; }
    bool isByBlock() const { return m_method == kByBlock; }
    bool isByColor() const { return m_method == kByColor; }
    bool isByACI() const { return m_method == kByACI; }
    bool isNone() const { return m_method == kNone; }

    // 0 ByBlock, 256 ByLayer, 257 none, else 1 to 255; of a true colour the nearest of these.
    Adesk::UInt16 colorIndex() const;
    // Sets the method too. eInvalidInput above 257, and nothing changed.
    Acad::ErrorStatus setColorIndex(Adesk::UInt16 index);

    // 0 to 255; of an index by the palette.
    Adesk::UInt8 red() const;
    Adesk::UInt8 green() const;
    Adesk::UInt8 blue() const;
    // Makes it a true colour.
    Acad::ErrorStatus setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);

    // The palette's red, green and blue of an index, as 0xRRGGBB.
    static Adesk::UInt32 lookUpRGB(Adesk::UInt8 index);
    // The index whose colour is nearest.
    static Adesk::UInt8 lookUpACI(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);

    friend bool operator==(const AcCmEntityColor&, const AcCmEntityColor&) = default;

private:
    ColorMethod m_method = kByBlock;
    Adesk::UInt32 m_value = 0; // an index, or 0xRRGGBB
};

// A colour as programs hand it about: the same, with its names in a colour book. A new one is ByBlock-like
// index 0 until it is set.
class ACDB_PORT AcCmColor : public AcCmEntityColor {
public:
    // The names of a colour of a colour book; null when there is none. An index drops them.
    const ACHAR* colorName() const { return m_name.empty() ? nullptr : m_name.c_str(); }
    const ACHAR* bookName() const { return m_book.empty() ? nullptr : m_book.c_str(); }
    Acad::ErrorStatus setNames(const ACHAR* colorName, const ACHAR* bookName = nullptr);
    Acad::ErrorStatus setColorIndex(Adesk::UInt16 index);

    friend bool operator==(const AcCmColor&, const AcCmColor&) = default;

private:
    std::wstring m_name;
    std::wstring m_book;
};
