#include "dbcolor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// The palette of colour indices, as the field has used it since the first colour screens: 1 to 9 by name;
// from 10 on 24 hues of 15 degrees, each in five values, full and half saturated; from 250 on six greys.
std::array<Adesk::UInt32, 256> make_palette() {
    std::array<Adesk::UInt32, 256> palette{0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                           0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
    constexpr double values[] = {1.0, 0.65, 0.5, 0.3, 0.15};
    for (int index = 10; index < 250; ++index) {
        const int turn = index / 10 - 1;
        const double hue = turn * 15.0 / 60.0; // in sixths of the circle
        const int step = index % 10 / 2;
        const double value = values[step] * 255.0;
        const double least = index % 2 == 0 ? 0.0 : value * 0.5;
        const auto channel = [&](double offset) {
            const double k = std::fmod(offset + hue, 6.0);
            const double share = std::clamp(std::min(k, 4.0 - k), 0.0, 1.0);
            return static_cast<Adesk::UInt32>(value - (value - least) * share);
        };
        palette[static_cast<std::size_t>(index)] = channel(5) << 16 | channel(3) << 8 | channel(1);
    }
    constexpr Adesk::UInt32 greys[] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
    std::copy(std::begin(greys), std::end(greys), palette.begin() + 250);
    return palette;
}

const std::array<Adesk::UInt32, 256>& palette() {
    static const auto made = make_palette();
    return made;
}

} // namespace

Adesk::UInt32 AcCmEntityColor::lookUpRGB(Adesk::UInt8 index) {
    return palette()[index];
}

Adesk::UInt8 AcCmEntityColor::lookUpACI(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
    int best = 1;
    int least = 4 * 255 * 255;
    for (int index = 1; index < 256; ++index) {
        const Adesk::UInt32 rgb = palette()[static_cast<std::size_t>(index)];
        const int r = static_cast<int>(rgb >> 16) - red;
        const int g = static_cast<int>(rgb >> 8 & 0xFF) - green;
        const int b = static_cast<int>(rgb & 0xFF) - blue;
        if (const int distance = r * r + g * g + b * b; distance < least) {
            least = distance;
            best = index;
        }
    }
    return static_cast<Adesk::UInt8>(best);
}

Acad::ErrorStatus AcCmEntityColor::setColorMethod(ColorMethod method) {
    m_method = method;
    return Acad::eOk;
}

Adesk::UInt16 AcCmEntityColor::colorIndex() const {
    switch (m_method) {
    case kByLayer:
        return kACIbyLayer;
    case kByBlock:
        return kACIbyBlock;
    case kByColor:
        return lookUpACI(red(), green(), blue());
    case kForeground:
        return kACIForeground;
    case kNone:
        return kACInone;
    case kByACI:
        break;
    }
    return static_cast<Adesk::UInt16>(m_value);
}

Acad::ErrorStatus AcCmEntityColor::setColorIndex(Adesk::UInt16 index) {
    if (index > kACInone)
        return Acad::eInvalidInput;
    m_method = index == kACIbyBlock   ? kByBlock
               : index == kACIbyLayer ? kByLayer
               : index == kACInone    ? kNone
                                      : kByACI;
    m_value = index;
    return Acad::eOk;
}

Adesk::UInt8 AcCmEntityColor::red() const {
    const Adesk::UInt32 rgb = m_method == kByACI ? lookUpRGB(static_cast<Adesk::UInt8>(m_value)) : m_value;
    return static_cast<Adesk::UInt8>(rgb >> 16);
}

Adesk::UInt8 AcCmEntityColor::green() const {
    const Adesk::UInt32 rgb = m_method == kByACI ? lookUpRGB(static_cast<Adesk::UInt8>(m_value)) : m_value;
    return static_cast<Adesk::UInt8>(rgb >> 8);
}

Adesk::UInt8 AcCmEntityColor::blue() const {
    const Adesk::UInt32 rgb = m_method == kByACI ? lookUpRGB(static_cast<Adesk::UInt8>(m_value)) : m_value;
    return static_cast<Adesk::UInt8>(rgb);
}

Acad::ErrorStatus AcCmEntityColor::setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
    m_method = kByColor;
    m_value = static_cast<Adesk::UInt32>(red << 16 | green << 8 | blue);
    return Acad::eOk;
}

Acad::ErrorStatus AcCmColor::setColorIndex(Adesk::UInt16 index) {
    const Acad::ErrorStatus status = AcCmEntityColor::setColorIndex(index);
    if (status == Acad::eOk)
        setNames(nullptr);
    return status;
}

Acad::ErrorStatus AcCmColor::setNames(const ACHAR* colorName, const ACHAR* bookName) {
    m_name = colorName != nullptr ? colorName : L"";
    m_book = bookName != nullptr ? bookName : L"";
    return Acad::eOk;
}
