#include "acgi.h"
#include "dbfcf.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/db/tables/dimension_style.h"
#include "host/db/tables/text_styles.h"

namespace {

constexpr db::field tolerance_fields[] = {
    db::number(3, "Standard"),    db::point(10, "0.0"), db::number(1, ""), db::normal(),
    db::point(11, "1.0 0.0 0.0"),
};
constexpr auto tolerance_place = db::section_of<tolerance_fields>("AcDbFcf");

// The parts of a text between separators; empty ones at the end are left out.
std::vector<std::wstring> parts_of(std::wstring_view text,
                                   std::initializer_list<std::wstring_view> separators) {
    std::vector<std::wstring> parts(1);
    while (!text.empty()) {
        bool separated = false;
        for (const std::wstring_view separator : separators)
            if (!separated && text.starts_with(separator)) {
                parts.emplace_back();
                text.remove_prefix(separator.size());
                separated = true;
            }
        if (!separated) {
            parts.back() += text.front();
            text.remove_prefix(1);
        }
    }
    while (!parts.empty() && parts.back().empty())
        parts.pop_back();
    return parts;
}

// A sign in braces, "{\Fgdt;j}", is what stands behind the font's name.
std::wstring without_fonts(std::wstring_view text) {
    std::wstring plain;
    while (!text.empty()) {
        if (text.starts_with(L"{\\F") || text.starts_with(L"{\\f")) {
            text.remove_prefix(std::min(text.find(L';'), text.size() - 1) + 1);
            continue;
        }
        if (text.front() != L'}')
            plain += text.front();
        text.remove_prefix(1);
    }
    return plain;
}

} // namespace

ENTITY_CLASS(AcDbFcf, AcDbEntity, TOLERANCE, tolerance_place)

FIELD_GETTER(AcDbFcf, text, tolerance_place, 1)

Acad::ErrorStatus AcDbFcf::setText(const ACHAR* text) {
    assertWriteEnabled();
    if (text == nullptr)
        return Acad::eInvalidInput;
    imp().edit().set_text(tolerance_place, 1, imp().encode(text));
    return Acad::eOk;
}

FIELD_MEMBERS(AcDbFcf, location, setLocation, tolerance_place, 10)

AcGeVector3d AcDbFcf::direction() const {
    assertReadEnabled();
    const AcGeVector3d direction = db::read_point(imp(), tolerance_place, 11).asVector();
    return direction.isZeroLength() ? AcGeMatrix3d::planeToWorld(normal()) * AcGeVector3d::kXAxis
                                    : direction.normal();
}

FIELD_GETTER(AcDbFcf, normal, tolerance_place, 210)
VALUE_GETTER(AcDbFcf, dimensionStyle, db::dimension_style_id(imp(), tolerance_place))

// Rows of boxes, twice as high as the letters, each as wide as its text and once their height.
Adesk::Boolean AcDbFcf::subWorldDraw(AcGiWorldDraw* draw) {
    const double height = db::dimension_text_height(imp(), db::dimension_style_of(imp(), tolerance_place));
    if (!(height > 0.0))
        return true;
    const AcGeVector3d x = direction();
    const AcGeVector3d y = normal().crossProduct(x);
    AcGiTextStyle style = db::text_style(imp().database, "");
    style.setTextSize(height);
    AcGePoint3d row = location() - y * height;
    const std::wstring words = imp().decode(imp().groups().text(tolerance_place, 1).value_or(""));
    for (const std::wstring& line : parts_of(words, {L"\n", L"^J", L"\\P"})) {
        AcGePoint3d corner = row;
        for (const std::wstring& cell : parts_of(line, {L"%%v", L"%%V"})) {
            const std::wstring shown = without_fonts(cell);
            const double width =
                shown.empty() ? 0.0 : style.extents(shown.c_str(), false, -1, false).x + height;
            const AcGePoint3d rim[] = {corner, corner + x * width, corner + x * width + y * height * 2.0,
                                       corner + y * height * 2.0, corner};
            draw->geometry().polyline(5, rim);
            draw->geometry().text(corner + (x + y) * height / 2.0, normal(), x, shown.c_str(), -1, false,
                                  style);
            corner += x * width;
        }
        row -= y * height * 2.0;
    }
    return true;
}

Acad::ErrorStatus AcDbFcf::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGeVector3d along = (matrix * direction()).normal();
    setLocation(matrix * location());
    db::write_normal(imp(), tolerance_place, change.normal);
    db::write_point(imp(), tolerance_place, 11, AcGePoint3d::kOrigin + along);
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}
