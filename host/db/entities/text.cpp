#include "host/db/entities/text.h"

#include "acutmem.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/first_groups.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/tables/text_styles.h"
#include "host/dxf/record_header.h"
#include "host/gi/set_text.h"
#include "host/gi/text_alignment.h"

#include <cmath>
#include <numbers>

namespace {

// Attributes may have what belongs to the text behind their own marker.
constexpr dxf::group_place anywhere{"*", db::order_of<db::text_fields>};
constexpr auto second_marker = db::marker("AcDbText");

// The vertical mode stands behind a second marker of the class, in attributes in a group of their own.
constexpr int vertical_order[] = {39, 10, 20, 30, 40, 1,   50,  41,  51,  7,
                                  71, 72, 11, 21, 31, 210, 220, 230, 100, 73};
constexpr dxf::group_place vertical_place{"*", vertical_order};

const dxf::group_place& place_of(const AcDbImpObject& object, int code) {
    const dxf::group_list& groups = object.groups();
    const bool elsewhere = groups.find(db::text_place, code) == dxf::group_list::npos &&
                           groups.find(anywhere, code) != dxf::group_list::npos;
    return elsewhere ? anywhere : db::text_place;
}

std::string_view type_of(const AcDbImpObject& object) {
    const auto& groups = object.groups().groups();
    return groups.empty() ? std::string_view() : dxf::trimmed(groups.front().value);
}

void write_vertical(AcDbImpObject& object, int mode) {
    if (type_of(object) == "ATTRIB")
        db::write_integer(object, db::attribute_place, 74, mode);
    else if (type_of(object) == "ATTDEF")
        db::write_integer(object, db::definition_place, 74, mode);
    else
        db::write_integer(object, vertical_place, 73, mode);
}

void write_number(AcDbImpObject& object, int code, double value, double missing) {
    db::write_near(object, place_of(object, code), code, value, missing);
}

void write_rotation(AcDbImpObject& object, double angle) {
    db::write_angle(object, place_of(object, 50), 50, angle);
}

// All three coordinates, also where a plain nought could be left out: readers want them.
void write_point(AcDbImpObject& object, int code, const AcGePoint3d& point) {
    const dxf::group_place& where = place_of(object, code);
    for (int axis = 0; axis < 3; ++axis) {
        const double value = point[static_cast<unsigned>(axis)];
        if (object.groups().find(where, code + axis * 10) == dxf::group_list::npos)
            object.edit().set_real(where, code + axis * 10, value);
        else
            db::write_near(object, where, code + axis * 10, value);
    }
}

constexpr int backward_bit = 2;
constexpr int upside_down_bit = 4;

void set_flag(AcDbImpObject& object, int bit, bool on) {
    db::write_bit(object, place_of(object, 71), 71, bit, on);
}

constexpr double steepest = 85.0; // degrees, as the editor takes them

} // namespace

namespace db {

text_line::text_line(const AcDbImpObject& object) {
    const first_groups groups(object.groups());
    position = groups.point(10);
    alignment = groups.has(11) ? groups.point(11) : position;
    normal = groups.normal();
    style = text_style(object.database, groups.text(7));
    height = groups.real(40, style.textSize() > 0.0 ? style.textSize() : 1.0);
    rotation = radians(groups.real(50));
    width_factor = groups.real(41, 1.0);
    oblique = radians(std::remainder(groups.real(51), 360.0));
    thickness = groups.real(39);
    const int flags = groups.integer(71);
    backward = (flags & backward_bit) != 0;
    upside_down = (flags & upside_down_bit) != 0;
    horizontal = std::clamp(groups.integer(72), 0, 5);
    const bool attribute = type_of(object) != "TEXT";
    vertical = std::clamp(groups.integer(attribute ? 74 : 73), 0, 3);
    text = groups.text(1);
    style.setObliquingAngle(oblique);
    style.setBackward(backward);
    style.setUpsideDown(upside_down);
}

void text_line::align(std::wstring_view shown) {
    start = position;
    if (is_default_alignment())
        return;
    const gi::text_box box = gi::box_of_text(shown, style, height, width_factor);
    if (gi::runs_down(style)) {
        // What is to the right of a row is below in a column, which stands upright whatever it lies between.
        if (lies_between_points())
            return;
        const bool in_middle = horizontal == AcDb::kTextCenter || horizontal == AcDb::kTextMid;
        const double share = in_middle ? 0.5 : horizontal == AcDb::kTextRight ? 1.0 : 0.0;
        const double up = (box.top - box.bottom) * (upside_down ? -share : share);
        start = alignment + AcGeVector3d(-std::sin(rotation), std::cos(rotation), 0.0) * up;
        return;
    }
    const AcGeVector3d between = alignment - position;
    const double distance = std::hypot(between.x, between.y);
    if (lies_between_points()) {
        if (distance == 0.0 || box.width == 0.0)
            return;
        rotation = std::atan2(between.y, between.x);
        if (horizontal == AcDb::kTextAlign)
            height *= distance / box.width;
        else
            width_factor *= distance / box.width;
        if (backward) // it runs from the other end
            start = alignment;
        return;
    }
    const gi::text_shift shift = gi::shift_of_alignment(horizontal, vertical, box, height);
    const AcGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0);
    const AcGeVector3d y(-x.y, x.x, 0.0);
    start =
        alignment + x * (backward ? -shift.along : shift.along) + y * (upside_down ? -shift.up : shift.up);
}

void draw_text(const AcDbImpObject& object, std::wstring_view message, AcGiWorldDraw& draw) {
    text_line line(object);
    const double written = line.height;
    const std::wstring shown = gi::shown_text(message);
    line.align(shown);
    if (line.horizontal == AcDb::kTextAlign && line.height != written) {
        // The height that the drawing gives is the real one; what differs is how wide we think the signs are.
        line.width_factor *= line.height / written;
        line.height = written;
    }
    line.style.setTextSize(line.height);
    line.style.setXScale(line.width_factor);
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(line.normal);
    draw.subEntityTraits().setThickness(line.thickness);
    draw.geometry().text(plane * line.start, line.normal,
                         plane * AcGeVector3d(std::cos(line.rotation), std::sin(line.rotation), 0.0),
                         std::wstring(message).c_str(), -1, false, line.style);
}

} // namespace db

ENTITY_CLASS(AcDbText, AcDbEntity, TEXT, db::text_place, second_marker)

AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style, double height,
                   double rotation)
    : AcDbText() {
    setPosition(position);
    setTextString(text);
    if (!style.isNull())
        setTextStyle(style);
    if (height > 0.0)
        setHeight(height);
    setRotation(rotation);
}

// In the file points are in the coordinates of the plane.
AcGePoint3d AcDbText::position() const {
    assertReadEnabled();
    const db::text_line line(imp());
    return AcGeMatrix3d::planeToWorld(line.normal) * line.position;
}

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    write_point(imp(), 10, AcGeMatrix3d::worldToPlane(normal()) * position);
    return adjustAlignment();
}

AcGePoint3d AcDbText::alignmentPoint() const {
    assertReadEnabled();
    const db::text_line line(imp());
    if (line.is_default_alignment())
        return AcGePoint3d::kOrigin;
    return AcGeMatrix3d::planeToWorld(line.normal) * line.alignment;
}

Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& point) {
    assertWriteEnabled();
    if (isDefaultAlignment())
        return Acad::eNotApplicable;
    write_point(imp(), 11, AcGeMatrix3d::worldToPlane(normal()) * point);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, isDefaultAlignment, db::text_line(imp()).is_default_alignment())
VALUE_GETTER(AcDbText, normal, db::read_normal(imp(), place_of(imp(), 210)))

Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const db::text_line line(imp());
    const bool aligned = imp().groups().find(place_of(imp(), 11), 11) != dxf::group_list::npos;
    const AcGeMatrix3d change = AcGeMatrix3d::worldToPlane(normal) * AcGeMatrix3d::planeToWorld(line.normal);
    db::write_normal(imp(), place_of(imp(), 210), normal.normal());
    write_point(imp(), 10, change * line.position);
    if (aligned)
        write_point(imp(), 11, change * line.alignment);
    return Acad::eOk;
}

VALUE_GETTER(AcDbText, thickness, db::read_real(imp(), place_of(imp(), 39), 39))

Acad::ErrorStatus AcDbText::setThickness(double thickness) {
    assertWriteEnabled();
    write_number(imp(), 39, thickness, 0.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbText, oblique, db::text_line(imp()).oblique)

Acad::ErrorStatus AcDbText::setOblique(double angle) {
    assertWriteEnabled();
    if (!(std::fabs(angle) < db::radians(steepest)))
        return Acad::eInvalidInput;
    if (oblique() != angle)
        write_number(imp(), 51, db::degrees(angle), 0.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbText, rotation, db::text_line(imp()).rotation)

Acad::ErrorStatus AcDbText::setRotation(double angle) {
    assertWriteEnabled();
    if (!std::isfinite(angle))
        return Acad::eInvalidInput;
    write_rotation(imp(), angle);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, height, db::text_line(imp()).height)

Acad::ErrorStatus AcDbText::setHeight(double height) {
    assertWriteEnabled();
    if (!(height > 0.0) || !std::isfinite(height))
        return Acad::eInvalidInput;
    write_number(imp(), 40, height, 0.0);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, widthFactor, db::text_line(imp()).width_factor)

Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
    assertWriteEnabled();
    if (!(factor > 0.0) || !std::isfinite(factor))
        return Acad::eInvalidInput;
    write_number(imp(), 41, factor, 1.0);
    return adjustAlignment();
}

ACHAR* AcDbText::textString() const {
    ACHAR* copy = nullptr;
    acutNewString(textStringConst(), copy);
    return copy;
}

const ACHAR* AcDbText::textStringConst() const {
    assertReadEnabled();
    m_textSeen = imp().decode(imp().groups().text(place_of(imp(), 1), 1).value_or("")).c_str();
    return m_textSeen.kwszPtr();
}

Acad::ErrorStatus AcDbText::textString(AcString& text) const {
    text = textStringConst();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
    assertWriteEnabled();
    if (text == nullptr)
        return Acad::eInvalidInput;
    const dxf::group_place& where = place_of(imp(), 1);
    if (imp().decode(imp().groups().text(where, 1).value_or("")) != text)
        imp().edit().set_text(where, 1, imp().encode(text));
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, textStyle, db::style_of(imp(), place_of(imp(), 7)))

Acad::ErrorStatus AcDbText::setTextStyle(AcDbObjectId style) {
    assertWriteEnabled();
    const Acad::ErrorStatus status = db::set_style(imp(), place_of(imp(), 7), style);
    return status == Acad::eOk ? adjustAlignment() : status;
}

VALUE_GETTER(AcDbText, isMirroredInX, db::text_line(imp()).backward)

Acad::ErrorStatus AcDbText::mirrorInX(Adesk::Boolean mirrored) {
    assertWriteEnabled();
    set_flag(imp(), backward_bit, mirrored);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, isMirroredInY, db::text_line(imp()).upside_down)

Acad::ErrorStatus AcDbText::mirrorInY(Adesk::Boolean mirrored) {
    assertWriteEnabled();
    set_flag(imp(), upside_down_bit, mirrored);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, horizontalMode, static_cast<AcDb::TextHorzMode>(db::text_line(imp()).horizontal))

Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
    assertWriteEnabled();
    if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit)
        return Acad::eInvalidInput;
    db::write_integer(imp(), place_of(imp(), 72), 72, mode);
    return adjustAlignment();
}

VALUE_GETTER(AcDbText, verticalMode, static_cast<AcDb::TextVertMode>(db::text_line(imp()).vertical))

Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
    assertWriteEnabled();
    if (mode < AcDb::kTextBase || mode > AcDb::kTextTop)
        return Acad::eInvalidInput;
    write_vertical(imp(), mode);
    return adjustAlignment();
}

Acad::ErrorStatus AcDbText::adjustAlignment(const AcDbDatabase* /*database*/) {
    assertWriteEnabled();
    db::text_line line(imp());
    if (line.is_default_alignment() || imp().groups().find(anywhere, 11) == dxf::group_list::npos)
        return Acad::eOk;
    line.align(gi::shown_text(imp().decode(line.text)));
    if (!line.lies_between_points())
        write_point(imp(), 10, line.start);
    write_rotation(imp(), line.rotation);
    write_number(imp(), 40, line.height, 0.0);
    write_number(imp(), 41, line.width_factor, 1.0);
    return Acad::eOk;
}

PLANE_FIGURE(AcDbText)

Adesk::Boolean AcDbText::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_text(imp(), textStringConst(), *draw);
    return true;
}

// Whatever becomes of a parallelogram is one again, and so of a slanted text.
Acad::ErrorStatus AcDbText::subTransformBy(const AcGeMatrix3d& matrix) {
    db::text_line line(imp());
    const std::wstring shown = gi::shown_text(imp().decode(line.text));
    const double height = line.height;
    const double width_factor = line.width_factor;
    line.align(shown);
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(line.normal);
    const AcGeVector3d direction =
        plane * AcGeVector3d(std::cos(line.rotation), std::sin(line.rotation), 0.0);
    const AcGeVector3d right = direction * (line.backward ? -1.0 : 1.0);
    const AcGeVector3d up = line.normal.crossProduct(direction) * (line.upside_down ? -1.0 : 1.0) +
                            right * std::tan(line.oblique);
    const AcGeVector3d new_right = matrix * right;
    const AcGeVector3d new_up = matrix * up;
    AcGeVector3d normal = new_right.crossProduct(new_up);
    if (normal.length() <= 1e-12 * new_right.length() * new_up.length())
        return Acad::eCannotScaleNonUniformly; // seen from its edge
    normal /= normal.length();
    // The normal keeps to the side on which the old one's image is. What is seen from behind then reads
    // backwards, or, between two points that say where right is, stands on its head.
    if (normal.dotProduct(matrix * line.normal) < 0.0)
        normal = -normal;
    const AcGeVector3d along = new_right / new_right.length();
    const double rise = new_up.dotProduct(normal.crossProduct(along));
    const bool opposite = rise < 0.0; // which of the two it is: exactly one of them, or none or both
    const bool backward = line.lies_between_points() ? line.backward : opposite != line.upside_down;
    const bool upside_down = line.lies_between_points() ? opposite != line.backward : line.upside_down;
    const AcGeMatrix3d to_plane = AcGeMatrix3d::worldToPlane(normal);
    const AcGeVector3d new_direction = to_plane * (backward ? -along : along);
    const AcGePoint3d position = to_plane * (matrix * (plane * line.position));
    const AcGePoint3d alignment = to_plane * (matrix * (plane * line.alignment));
    const AcGePoint3d start = to_plane * (matrix * (plane * line.start));
    const bool aligned = imp().groups().find(anywhere, 11) != dxf::group_list::npos;

    db::write_normal(imp(), place_of(imp(), 210), normal);
    write_point(imp(), 10, position);
    write_rotation(imp(), std::atan2(new_direction.y, new_direction.x));
    write_number(imp(), 51, db::degrees(std::atan2(new_up.dotProduct(along), std::fabs(rise))), 0.0);
    write_number(imp(), 40, height * std::fabs(rise), 0.0);
    write_number(imp(), 41, width_factor * new_right.length() / std::fabs(rise), 1.0);
    write_number(imp(), 39, line.thickness * (matrix * line.normal).length(), 0.0);
    set_flag(imp(), backward_bit, backward);
    set_flag(imp(), upside_down_bit, upside_down);
    if (aligned) {
        write_point(imp(), 11, alignment);
        // What was above the base line at a right angle may not be so any more.
        db::text_line now(imp());
        now.align(shown);
        if (!now.lies_between_points() && !now.is_default_alignment())
            write_point(imp(), 11, alignment + (start - now.start));
    }
    return Acad::eOk;
}
