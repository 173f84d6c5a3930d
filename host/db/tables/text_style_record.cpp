#include "acutmem.h"
#include "adscodes.h"
#include "dbsymtb.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/tables/entry_fields.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <cmath>

using Autodesk::AutoCAD::PAL::FontUtils::FontFamily;
using Autodesk::AutoCAD::PAL::FontUtils::FontPitch;

ACRX_CONS_DEFINE_MEMBERS(AcDbTextStyleTableRecord, AcDbSymbolTableRecord, 0)

namespace {

// Bits of group 70.
constexpr int shape_bit = 1;
constexpr int vertical_bit = 4;

std::wstring file_of(const AcDbTextStyleTableRecord& style, int code) {
    style.assertReadEnabled();
    return style.imp().decode(
        dxf::trimmed(style.imp().groups().text(db::text_style_place, code).value_or("")));
}

Acad::ErrorStatus set_file(AcDbTextStyleTableRecord& style, int code, const ACHAR* name) {
    if (!style.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    const std::wstring wanted = name != nullptr ? name : L"";
    if (file_of(style, code) != wanted)
        style.imp().edit().set_text(db::text_style_place, code, style.imp().encode(wanted));
    return Acad::eOk;
}

ACHAR* copy_of(const std::wstring& text) {
    ACHAR* copy = nullptr;
    acutNewString(text.c_str(), copy);
    return copy;
}

// Extended data of the application ACAD: the typeface, and a number with bold and italic in its highest byte,
// the character set in the second one, pitch and family in the lowest.
constexpr int italic_bit = 0x1000000;
constexpr int bold_bit = 0x2000000;

constexpr double steepest = 85.0; // degrees, as the editor takes them

} // namespace

AcDbTextStyleTableRecord::AcDbTextStyleTableRecord() {
    imp().begin_new(db::new_entry_text("AcDbTextStyleTableRecord"));
}

BIT_MEMBERS(AcDbTextStyleTableRecord, isShapeFile, setIsShapeFile, db::text_style_place, 70, shape_bit)
BIT_MEMBERS(AcDbTextStyleTableRecord, isVertical, setIsVertical, db::text_style_place, 70, vertical_bit)
FIELD_GETTER(AcDbTextStyleTableRecord, textSize, db::text_style_place, 40)
FIELD_GETTER(AcDbTextStyleTableRecord, priorSize, db::text_style_place, 42)
FIELD_GETTER(AcDbTextStyleTableRecord, xScale, db::text_style_place, 41)
FIELD_GETTER(AcDbTextStyleTableRecord, obliquingAngle, db::text_style_place, 50)

Acad::ErrorStatus AcDbTextStyleTableRecord::setTextSize(double size) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(size >= 0.0) || !std::isfinite(size))
        return Acad::eInvalidInput;
    db::write_real(imp(), db::text_style_place, 40, size);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setPriorSize(double size) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(size > 0.0) || !std::isfinite(size))
        return Acad::eInvalidInput;
    db::write_real(imp(), db::text_style_place, 42, size);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setXScale(double scale) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(scale > 0.0) || !std::isfinite(scale))
        return Acad::eInvalidInput;
    db::write_real(imp(), db::text_style_place, 41, scale, 1.0);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setObliquingAngle(double angle) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(std::fabs(angle) < db::radians(steepest)))
        return Acad::eInvalidInput;
    if (obliquingAngle() != angle)
        db::write_real(imp(), db::text_style_place, 50, db::degrees(angle));
    return Acad::eOk;
}

VALUE_GETTER(AcDbTextStyleTableRecord, flagBits,
             static_cast<Adesk::UInt8>(db::read_integer(imp(), db::text_style_place, 71)))

void AcDbTextStyleTableRecord::setFlagBits(Adesk::UInt8 flags) {
    assertWriteEnabled();
    db::write_integer(imp(), db::text_style_place, 71, flags & 6);
}

// ---- fonts

Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(ACHAR*& name) const {
    name = copy_of(file_of(*this, 3));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(const ACHAR*& name) const {
    m_fileSeen = file_of(*this, 3).c_str();
    name = m_fileSeen.kwszPtr();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(AcString& name) const {
    name = file_of(*this, 3).c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setFileName(const ACHAR* name) {
    return set_file(*this, 3, name);
}

Acad::ErrorStatus AcDbTextStyleTableRecord::bigFontFileName(ACHAR*& name) const {
    name = copy_of(file_of(*this, 4));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::bigFontFileName(const ACHAR*& name) const {
    m_bigFontSeen = file_of(*this, 4).c_str();
    name = m_bigFontSeen.kwszPtr();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::bigFontFileName(AcString& name) const {
    name = file_of(*this, 4).c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setBigFontFileName(const ACHAR* name) {
    return set_file(*this, 4, name);
}

Acad::ErrorStatus AcDbTextStyleTableRecord::font(AcString& typeface, bool& bold, bool& italic,
                                                 Charset& charset, FontPitch& pitch,
                                                 FontFamily& family) const {
    resbuf* const data = xData(L"ACAD");
    std::wstring name;
    int flags = 0;
    for (const resbuf* node = data; node != nullptr; node = node->rbnext) {
        if (node->restype == 1000 && name.empty())
            name = node->resval.rstring;
        else if (node->restype == 1071)
            flags = static_cast<int>(node->resval.rlong);
    }
    acutRelRb(data);
    typeface = name.c_str();
    bold = (flags & bold_bit) != 0;
    italic = (flags & italic_bit) != 0;
    charset = static_cast<Charset>(flags >> 8 & 0xFF);
    pitch = static_cast<FontPitch>(flags & 0x3);
    family = static_cast<FontFamily>(flags & 0x70);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::font(ACHAR*& typeface, bool& bold, bool& italic, Charset& charset,
                                                 FontPitch& pitch, FontFamily& family) const {
    AcString name;
    const Acad::ErrorStatus status = font(name, bold, italic, charset, pitch, family);
    typeface = copy_of(name.kwszPtr());
    return status;
}

Acad::ErrorStatus AcDbTextStyleTableRecord::setFont(const ACHAR* typeface, bool bold, bool italic,
                                                    Charset charset, FontPitch pitch, FontFamily family) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (typeface == nullptr)
        return Acad::eInvalidInput;
    if (imp().database != nullptr && !db::register_application(*imp().database, L"ACAD"))
        return Acad::eRegappIdNotFound;
    const int flags = (bold ? bold_bit : 0) | (italic ? italic_bit : 0) |
                      (static_cast<int>(charset) & 0xFF) << 8 | static_cast<int>(pitch) |
                      static_cast<int>(family);
    resbuf* const data = *typeface != 0 ? acutBuildList(1001, L"ACAD", 1000, typeface, 1071, flags, 0)
                                        : acutBuildList(1001, L"ACAD", 0);
    const Acad::ErrorStatus status = setXData(data);
    acutRelRb(data);
    return status;
}
