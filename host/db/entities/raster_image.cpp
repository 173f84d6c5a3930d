#include "acgi.h"
#include "dbwipe.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDbRasterImage, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, IMAGE,
                        "ISM")
ACRX_DXF_DEFINE_MEMBERS(AcDbWipeout, AcDbRasterImage, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, WIPEOUT,
                        "WipeOut")

namespace {

constexpr int image_order[] = {90,  10, 20,  30,  11,  21,  31,  12,  22, 32, 13, 23,
                               340, 70, 280, 281, 282, 283, 290, 360, 71, 91, 14, 24};
constexpr dxf::group_place image_place{"AcDbRasterImage", image_order};
constexpr dxf::group_place wipeout_place{"AcDbWipeout", image_order};

const dxf::group_place& place_of(const AcDbRasterImage& image) {
    return image.isKindOf(AcDbWipeout::desc()) ? wipeout_place : image_place;
}

#define NEW_IMAGE(TYPE, MARKER)                                                                              \
    "0\n" TYPE "\n100\nAcDbEntity\n8\n0\n100\n" MARKER "\n90\n0\n10\n0.0\n20\n0.0\n30\n0.0\n"                \
    "11\n1.0\n21\n0.0\n31\n0.0\n12\n0.0\n22\n1.0\n32\n0.0\n13\n1.0\n23\n1.0\n70\n7\n280\n0\n"                \
    "281\n50\n282\n50\n283\n0\n71\n1\n91\n2\n14\n-0.5\n24\n-0.5\n14\n0.5\n24\n0.5\n"

} // namespace

AcDbRasterImage::AcDbRasterImage() {
    imp().begin_as(NEW_IMAGE("IMAGE", "AcDbRasterImage"));
}

AcDbRasterImage::~AcDbRasterImage() = default;

AcDbWipeout::AcDbWipeout() {
    imp().begin_as(NEW_IMAGE("WIPEOUT", "AcDbWipeout"));
}

AcDbWipeout::~AcDbWipeout() = default;

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

AcDbObjectId AcDbRasterImage::imageDefId() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return AcDbObjectId::kNull;
    return imp().database->id(imp().database->records().find(imp().groups().handle(place_of(*this), 340)));
}

bool AcDbRasterImage::isSetDisplayOpt(ImageDisplayOpt option) const {
    assertReadEnabled();
    return (db::read_integer(imp(), place_of(*this), 70) & option) != 0;
}

bool AcDbRasterImage::isClipped() const {
    assertReadEnabled();
    return db::read_integer(imp(), place_of(*this), 280) != 0 && isSetDisplayOpt(kClip) &&
           clipBoundaryType() != kInvalid;
}

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
