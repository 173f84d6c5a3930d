#include "acgi.h"
#include "acutmem.h"
#include "host/gi/font.h"
#include "host/gi/set_text.h"

using Autodesk::AutoCAD::PAL::FontUtils::FontFamily;
using Autodesk::AutoCAD::PAL::FontUtils::FontPitch;

ACRX_CONS_DEFINE_MEMBERS(AcGiTextStyle, AcRxObject, 0)

namespace {

const std::shared_ptr<const gi::font>& plain_font() {
    static const auto font = std::make_shared<const gi::font>();
    return font;
}

// The font with a change.
template<class Change>
std::shared_ptr<const gi::font> changed(const gi::font& from, Change change) {
    auto font = std::make_shared<gi::font>(from);
    change(*font);
    font->hand = gi::hand_of_font(font->file, font->typeface);
    font->shapes = font->big_shapes = nullptr; // of the other one
    return font;
}

std::wstring text_of(const ACHAR* text) {
    return text != nullptr ? text : L"";
}

} // namespace

AcGiTextStyle::AcGiTextStyle() : m_font(plain_font()) {
}

AcGiTextStyle::AcGiTextStyle(const ACHAR* fontName, const ACHAR* bigFontName, double textSize, double xScale,
                             double obliqueAngle, double trackingPercent, Adesk::Boolean isBackward,
                             Adesk::Boolean isUpsideDown, Adesk::Boolean isVertical,
                             Adesk::Boolean isOverlined, Adesk::Boolean isUnderlined)
    : m_font(changed(*plain_font(),
                     [&](gi::font& font) {
                         font.file = text_of(fontName);
                         font.big_font = text_of(bigFontName);
                     })),
      m_size(textSize), m_scale(xScale), m_slant(obliqueAngle), m_tracking(trackingPercent),
      m_backward(isBackward), m_upsideDown(isUpsideDown), m_vertical(isVertical), m_underlined(isUnderlined),
      m_overlined(isOverlined) {
}

AcGiTextStyle::~AcGiTextStyle() = default;

void AcGiTextStyle::setFileName(const ACHAR* fontName) {
    m_font = changed(*m_font, [&](gi::font& font) { font.file = text_of(fontName); });
}

void AcGiTextStyle::setBigFontFileName(const ACHAR* bigFontName) {
    m_font = changed(*m_font, [&](gi::font& font) { font.big_font = text_of(bigFontName); });
}

Acad::ErrorStatus AcGiTextStyle::setFont(const ACHAR* typeface, Adesk::Boolean bold, Adesk::Boolean italic,
                                         Charset charset, FontPitch pitch, FontFamily family) {
    m_font = changed(*m_font, [&](gi::font& font) {
        font.typeface = text_of(typeface);
        font.bold = bold;
        font.italic = italic;
        font.charset = charset;
        font.pitch = pitch;
        font.family = family;
    });
    return Acad::eOk;
}

const ACHAR* AcGiTextStyle::fileName() const {
    return m_font->file.c_str();
}

const ACHAR* AcGiTextStyle::bigFontFileName() const {
    return m_font->big_font.c_str();
}

Acad::ErrorStatus AcGiTextStyle::font(ACHAR*& typeface, Adesk::Boolean& bold, Adesk::Boolean& italic,
                                      Charset& charset, FontPitch& pitch, FontFamily& family) const {
    acutNewString(m_font->typeface.c_str(), typeface);
    bold = m_font->bold;
    italic = m_font->italic;
    charset = m_font->charset;
    pitch = m_font->pitch;
    family = m_font->family;
    return Acad::eOk;
}

AcGePoint2d AcGiTextStyle::extents(const ACHAR* text, Adesk::Boolean /*penups*/, int len, Adesk::Boolean raw,
                                   AcGiWorldDraw* /*context*/) const {
    std::wstring_view message = text != nullptr ? text : L"";
    if (len >= 0)
        message = message.substr(0, static_cast<std::size_t>(len));
    const gi::text_box box =
        gi::box_of_text(raw ? std::wstring(message) : gi::shown_text(message), *this, m_size, m_scale);
    return {box.width, box.top - box.bottom};
}
