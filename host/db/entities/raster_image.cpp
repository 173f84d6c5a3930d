#include "acgi.h"
#include "dbwipe.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

namespace {

constexpr db::field image_fields[] = {
    db::number(90, "0"),   db::point(10, "0.0"),  db::point(11, "1.0 0.0 0.0"), db::point(12, "0.0 1.0 0.0"),
    db::pair(13, "1.0"),   db::number(340),       db::number(70, "7"),          db::number(280, "0"),
    db::number(281, "50"), db::number(282, "50"), db::number(283, "0"),         db::number(290),
    db::number(360),       db::number(71, "1"),   db::number(91, "2"),          db::pair(14, "-0.5"),
    db::pair(14, "0.5"), // a new one's whole frame
};
constexpr auto image_place = db::section_of<image_fields>("AcDbRasterImage");
constexpr auto wipeout_place = db::section_of<image_fields>("AcDbWipeout");

const db::section& place_of(const AcDbRasterImage& image) {
    return image.isKindOf(AcDbWipeout::desc()) ? wipeout_place : image_place;
}

} // namespace

ENTITY_CLASS_OF(AcDbRasterImage, AcDbEntity, IMAGE, "ISM", image_place)
ENTITY_CLASS_OF(AcDbWipeout, AcDbRasterImage, WIPEOUT, "WipeOut", wipeout_place)

void AcDbRasterImage::getOrientation(AcGePoint3d& origin, AcGeVector3d& u, AcGeVector3d& v) const {
    assertReadEnabled();
    const dxf::group_place& place = place_of(*this);
    const AcGeVector2d size = imageSize();
    origin = db::read_point(imp(), place, 10);
    u = db::read_point(imp(), place, 11).asVector() * size.x;
    v = db::read_point(imp(), place, 12).asVector() * size.y;
}

Acad::ErrorStatus AcDbRasterImage::setOrientation(const AcGePoint3d& origin, const AcGeVector3d& u,
                                                  const AcGeVector3d& v) {
    assertWriteEnabled();
    const AcGeVector2d size = imageSize();
    if (!(size.x > 0.0 && size.y > 0.0) || u.crossProduct(v).isZeroLength())
        return Acad::eInvalidInput;
    const dxf::group_place& place = place_of(*this);
    db::write_point(imp(), place, 10, origin);
    db::write_point(imp(), place, 11, AcGePoint3d::kOrigin + u / size.x);
    db::write_point(imp(), place, 12, AcGePoint3d::kOrigin + v / size.y);
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}

AcGeVector2d AcDbRasterImage::imageSize(bool /*bGetCachedValue*/) const {
    assertReadEnabled();
    const AcGePoint3d size = db::read_point(imp(), place_of(*this), 13);
    return {size.x, size.y};
}

VALUE_GETTER(AcDbRasterImage, imageDefId, db::read_id(imp(), place_of(*this), 340))

bool AcDbRasterImage::isSetDisplayOpt(ImageDisplayOpt option) const {
    assertReadEnabled();
    return db::read_bit(imp(), place_of(*this), 70, option);
}

VALUE_GETTER(AcDbRasterImage, isClipped,
             db::read_integer(imp(), place_of(*this), 280) != 0 && isSetDisplayOpt(kClip) &&
                 clipBoundaryType() != kInvalid)

AcDbRasterImage::ClipBoundaryType AcDbRasterImage::clipBoundaryType() const {
    assertReadEnabled();
    const int corners = clipBoundary().length();
    const int type = db::read_integer(imp(), place_of(*this), 71);
    if (type == kRect && corners >= 2)
        return kRect;
    return type == kPoly && corners >= 3 ? kPoly : kInvalid;
}

const AcGePoint2dArray& AcDbRasterImage::clipBoundary() const {
    assertReadEnabled();
    m_boundary.removeAll();
    for (const AcGePoint3d& corner : db::read_points(imp(), place_of(*this), 14))
        m_boundary.append(AcGePoint2d(corner.x, corner.y));
    return m_boundary;
}

Acad::ErrorStatus AcDbRasterImage::getPixelToModelTransform(AcGeMatrix3d& transform) const {
    assertReadEnabled();
    const dxf::group_place& place = place_of(*this);
    const AcGeVector3d u = db::read_point(imp(), place, 11).asVector();
    const AcGeVector3d v = db::read_point(imp(), place, 12).asVector();
    // A pixel's number is that of its middle, and rows are counted from the top.
    const AcGePoint3d first = db::read_point(imp(), place, 10) + u * 0.5 + v * (imageSize().y - 0.5);
    transform.setCoordSystem(first, u, -v, u.crossProduct(-v));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbRasterImage::getVertices(AcGePoint3dArray& vertices) const {
    assertReadEnabled();
    vertices.removeAll();
    AcGeMatrix3d to_world;
    getPixelToModelTransform(to_world);
    AcGePoint2dArray corners;
    if (isClipped())
        corners = clipBoundary();
    if (corners.isEmpty()) {
        corners.append(AcGePoint2d(-0.5, -0.5));
        corners.append(AcGePoint2d(imageSize().x - 0.5, imageSize().y - 0.5));
    }
    if (!isClipped() || clipBoundaryType() == kRect) {
        const AcGePoint2d a = corners[0];
        const AcGePoint2d b = corners[1];
        corners.removeAll();
        for (const AcGePoint2d& corner :
             {AcGePoint2d(a.x, a.y), AcGePoint2d(b.x, a.y), AcGePoint2d(b.x, b.y), AcGePoint2d(a.x, b.y)})
            corners.append(corner);
    }
    for (const AcGePoint2d& corner : corners)
        vertices.append(to_world * AcGePoint3d(corner.x, corner.y, 0.0));
    if (vertices.length() > 3 && vertices.first() == vertices.last())
        vertices.removeLast();
    return Acad::eOk;
}

Adesk::Boolean AcDbRasterImage::subWorldDraw(AcGiWorldDraw* draw) {
    AcGePoint3dArray frame;
    getVertices(frame);
    frame.append(AcGePoint3d(frame.first()));
    draw->geometry().polyline(static_cast<Adesk::UInt32>(frame.length()), frame.asArrayPtr());
    return true;
}

Acad::ErrorStatus AcDbRasterImage::subTransformBy(const AcGeMatrix3d& matrix) {
    AcGePoint3d origin;
    AcGeVector3d u;
    AcGeVector3d v;
    getOrientation(origin, u, v);
    const Acad::ErrorStatus status = setOrientation(matrix * origin, matrix * u, matrix * v);
    return status == Acad::eInvalidInput ? Acad::eCannotScaleNonUniformly : status;
}
