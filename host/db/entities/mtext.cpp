#include "host/db/entities/mtext.h"

#include "acutmem.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/entities/mtext_groups.h"
#include "host/db/tables/shape_files.h"
#include "host/db/tables/text_styles.h"

#include <cmath>

ENTITY_CLASS(AcDbMText, AcDbEntity, MTEXT, db::mtext_place)

VALUE_GETTER(AcDbMText, location, db::mtext_values(imp()).location)

Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& location) {
    assertWriteEnabled();
    const db::mtext_values before(imp());
    db::write_point(imp(), db::mtext_place, 10, location);
    db::follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, normal, db::mtext_values(imp()).normal)

Acad::ErrorStatus AcDbMText::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    const double angle = rotation();
    db::write_normal(imp(), db::mtext_place, normal.normal());
    db::write_direction(imp(), AcGeMatrix3d::planeToWorld(normal) *
                                   AcGeVector3d(std::cos(angle), std::sin(angle), 0.0));
    db::follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, direction, db::mtext_values(imp()).direction)

Acad::ErrorStatus AcDbMText::setDirection(const AcGeVector3d& direction) {
    assertWriteEnabled();
    const db::mtext_values before(imp());
    const AcGeVector3d flat = direction - before.normal * direction.dotProduct(before.normal);
    if (flat.isZeroLength())
        return Acad::eInvalidInput;
    db::write_direction(imp(), flat.normal());
    db::follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

double AcDbMText::rotation() const {
    assertReadEnabled();
    const db::mtext_values values(imp());
    const AcGeVector3d flat = AcGeMatrix3d::worldToPlane(values.normal) * values.direction;
    const double angle = std::atan2(flat.y, flat.x);
    return angle < 0.0 ? angle + 2.0 * std::acos(-1.0) : angle;
}

Acad::ErrorStatus AcDbMText::setRotation(double angle) {
    if (!std::isfinite(angle))
        return Acad::eInvalidInput;
    return setDirection(AcGeMatrix3d::planeToWorld(normal()) *
                        AcGeVector3d(std::cos(angle), std::sin(angle), 0.0));
}

VALUE_GETTER(AcDbMText, width, db::mtext_values(imp()).frame.width)

Acad::ErrorStatus AcDbMText::setWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0) || !std::isfinite(width))
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    db::write_real(imp(), db::mtext_place, 41, width, 0.0);
    db::follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, textHeight, db::mtext_values(imp()).frame.height)

Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
    assertWriteEnabled();
    if (!(height > 0.0) || !std::isfinite(height))
        return Acad::eInvalidInput;
    db::write_real(imp(), db::mtext_place, 40, height, 0.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, attachment, static_cast<AttachmentPoint>(db::mtext_values(imp()).frame.attachment))

Acad::ErrorStatus AcDbMText::setAttachment(AttachmentPoint attachment) {
    assertWriteEnabled();
    if (attachment < kTopLeft || attachment > kBottomRight)
        return Acad::eInvalidInput;
    db::write_integer(imp(), db::mtext_place, 71, attachment, kTopLeft);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setAttachmentMovingLocation(AttachmentPoint attachment) {
    assertWriteEnabled();
    if (attachment < kTopLeft || attachment > kBottomRight)
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    const double width = before.frame.width > 0.0 ? before.frame.width : actualWidth();
    const int columns = (attachment - 1) % 3 - (before.frame.attachment - 1) % 3;
    const int rows = (attachment - 1) / 3 - (before.frame.attachment - 1) / 3;
    setLocation(before.location + before.direction * (columns * width / 2.0) -
                before.up() * (rows * actualHeight() / 2.0));
    return setAttachment(attachment);
}

VALUE_GETTER(AcDbMText, flowDirection,
             static_cast<FlowDirection>(std::clamp(db::read_integer(imp(), db::mtext_place, 72, kLtoR), 1,
                                                   5)))
FIELD_SETTER(AcDbMText, setFlowDirection, db::mtext_place, 72)
VALUE_GETTER(AcDbMText, lineSpacingStyle,
             db::mtext_values(imp()).frame.exact_spacing ? AcDb::kExactly : AcDb::kAtLeast)

Acad::ErrorStatus AcDbMText::setLineSpacingStyle(AcDb::LineSpacingStyle style) {
    assertWriteEnabled();
    db::write_integer(imp(), db::mtext_place, 73, style, AcDb::kAtLeast);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, lineSpacingFactor, db::mtext_values(imp()).frame.spacing)

Acad::ErrorStatus AcDbMText::setLineSpacingFactor(double factor) {
    assertWriteEnabled();
    constexpr double least = 0.25;
    constexpr double most = 4.0;
    if (!(factor >= least && factor <= most))
        return Acad::eInvalidInput;
    db::write_real(imp(), db::mtext_place, 44, factor, 1.0);
    return Acad::eOk;
}

VALUE_GETTER(AcDbMText, textStyle, db::style_of(imp(), db::mtext_place))

Acad::ErrorStatus AcDbMText::setTextStyle(AcDbObjectId style) {
    assertWriteEnabled();
    return db::set_style(imp(), db::mtext_place, style);
}

Acad::ErrorStatus AcDbMText::contents(AcString& contents) const {
    assertReadEnabled();
    contents = imp().decode(db::bytes_of_contents(imp().groups())).c_str();
    return Acad::eOk;
}

ACHAR* AcDbMText::contents() const {
    AcString found;
    contents(found);
    ACHAR* copy = nullptr;
    acutNewString(found, copy);
    return copy;
}

int AcDbMText::setContents(const ACHAR* contents) {
    assertWriteEnabled();
    if (contents == nullptr)
        return 0;
    db::write_contents(imp(), contents);
    return 1;
}

Acad::ErrorStatus AcDbMText::text(AcString& text) const {
    AcString all;
    contents(all);
    text = db::plain_mtext(all.kwszPtr()).c_str();
    return Acad::eOk;
}

ACHAR* AcDbMText::text() const {
    AcString found;
    text(found);
    ACHAR* copy = nullptr;
    acutNewString(found, copy);
    return copy;
}

namespace {

db::mtext_layout layout_of(const AcDbImpObject& object, const db::mtext_values& values) {
    db::mtext_codes codes = db::read_mtext(object.decode(values.contents), values.style);
    for (db::mtext_format& format : codes.formats)
        db::complete_fonts(object.database, format.style);
    return db::lay_out(codes, values.frame);
}

} // namespace

double AcDbMText::actualHeight(AcGiWorldDraw* /*context*/) const {
    assertReadEnabled();
    return layout_of(imp(), db::mtext_values(imp())).height;
}

VALUE_GETTER(AcDbMText, actualWidth, layout_of(imp(), db::mtext_values(imp())).width)

Acad::ErrorStatus AcDbMText::getColumnType(ColumnType& type) const {
    assertReadEnabled();
    type = static_cast<ColumnType>(db::mtext_values(imp()).column_type);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnCount(int& count) const {
    assertReadEnabled();
    count = db::mtext_values(imp()).frame.columns;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnWidth(double& width) const {
    assertReadEnabled();
    width = db::mtext_values(imp()).frame.column_width;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnGutterWidth(double& gutter) const {
    assertReadEnabled();
    gutter = db::mtext_values(imp()).frame.gutter;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnFlowReversed(bool& reversed) const {
    assertReadEnabled();
    reversed = db::mtext_values(imp()).reversed;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnAutoHeight(bool& automatic) const {
    assertReadEnabled();
    automatic = db::mtext_values(imp()).automatic_height;
    return Acad::eOk;
}

PLANE_FIGURE(AcDbMText)

namespace {

template<class Color>
Color color_of(Adesk::UInt32 color) {
    Color made;
    if ((color & db::mtext_format::true_color) != 0)
        made.setRGB(static_cast<Adesk::UInt8>(color), static_cast<Adesk::UInt8>(color >> 8),
                    static_cast<Adesk::UInt8>(color >> 16));
    else
        made.setColorIndex(static_cast<Adesk::UInt16>(color));
    return made;
}

} // namespace

void db::draw_mtext(const AcDbImpObject& object, AcDbImpDatabase* styles, AcGiWorldDraw& draw) {
    const mtext_values values(object, styles);
    const AcCmEntityColor own = draw.subEntityTraits().trueColor();
    const mtext_layout layout = layout_of(object, values);
    const auto use = [&](Adesk::UInt32 color) {
        draw.subEntityTraits().setTrueColor(color != 0 ? color_of<AcCmEntityColor>(color) : own);
    };
    const auto at = [&](const AcGePoint2d& place) {
        return values.location + values.direction * place.x + values.up() * place.y;
    };
    for (const mtext_piece& piece : layout.pieces) {
        use(piece.color);
        draw.geometry().text(at(piece.start), values.normal, values.direction, piece.text.c_str(), -1, true,
                             piece.style);
    }
    for (const mtext_rule& rule : layout.rules) {
        use(rule.color);
        const AcGePoint3d ends[] = {at(rule.start), at(rule.end)};
        draw.geometry().polyline(2, ends, &values.normal);
    }
}

Adesk::Boolean AcDbMText::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_mtext(imp(), imp().database, *draw);
    return true;
}

Acad::ErrorStatus AcDbMText::subTransformBy(const AcGeMatrix3d& matrix) {
    const db::mtext_values before(imp());
    const AcGeVector3d x = matrix * before.direction;
    const AcGeVector3d y = matrix * before.up();
    const double factor = x.length();
    constexpr double slack = 1e-6; // of the length: what scales that were written with six digits leave
    if (factor == 0.0 || std::fabs(y.length() - factor) > slack * factor ||
        std::fabs(x.dotProduct(y)) > slack * factor * factor)
        return Acad::eCannotScaleNonUniformly;
    const bool same_size = std::fabs(factor - 1.0) <= 1e-12;
    db::write_point(imp(), db::mtext_place, 10, matrix * before.location);
    db::write_normal(imp(), db::mtext_place, x.crossProduct(y).normal());
    db::write_direction(imp(), x / factor);
    if (!same_size) {
        db::write_real(imp(), db::mtext_place, 40, before.frame.height * factor, 0.0);
        for (const int code : {41, 42, 43, 46})
            if (imp().groups().find(db::mtext_place, code) != dxf::group_list::npos)
                imp().edit().set_real(db::mtext_place, code,
                                      db::read_real(imp(), db::mtext_place, code) * factor);
        db::write_contents(imp(), db::with_heights_scaled(imp().decode(before.contents), factor));
    }
    db::follow_in_embedded(imp(), before, same_size ? 1.0 : factor);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const db::mtext_values values(imp());
    for (const db::mtext_piece& piece : layout_of(imp(), values).pieces) {
        auto text = std::make_unique<AcDbText>();
        text->setPropertiesFrom(this);
        text->setNormal(values.normal);
        text->setPosition(values.location + values.direction * piece.start.x + values.up() * piece.start.y);
        text->setTextString(piece.text.c_str());
        if (const AcDbObjectId style = textStyle(); !style.isNull())
            text->setTextStyle(style);
        text->setHeight(piece.style.textSize());
        text->setWidthFactor(piece.style.xScale());
        text->setOblique(piece.style.obliquingAngle());
        text->setRotation(rotation());
        if (piece.color != 0)
            text->setColor(color_of<AcCmColor>(piece.color));
        parts.append(text.release()); // the caller's
    }
    return Acad::eOk;
}
