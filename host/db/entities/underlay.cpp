#include "acgi.h"
#include "dbunderlayref.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbUnderlayReference, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(AcDbPdfReference, AcDbUnderlayReference, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, PDFUNDERLAY, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbDwfReference, AcDbUnderlayReference, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, DWFUNDERLAY, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbDgnReference, AcDbUnderlayReference, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        0, DGNUNDERLAY, "ObjectDBX Classes")

namespace {

constexpr int underlay_order[] = {340, 10, 20, 30, 41, 42, 43, 50, 210, 220, 230, 280, 281, 282, 11, 21};
constexpr dxf::group_place underlay_place{"AcDbUnderlayReference", underlay_order};

// Bits of group 280.
constexpr int clip_flag = 1;
constexpr int on_flag = 2;

#define NEW_UNDERLAY(TYPE)                                                                                   \
    "0\n" TYPE "\n100\nAcDbEntity\n8\n0\n100\nAcDbUnderlayReference\n10\n0.0\n20\n0.0\n30\n0.0\n"            \
    "280\n2\n281\n100\n282\n0\n"

} // namespace

AcDbUnderlayReference::AcDbUnderlayReference() = default;
AcDbUnderlayReference::~AcDbUnderlayReference() = default;

AcDbPdfReference::AcDbPdfReference() {
    imp().begin_as(NEW_UNDERLAY("PDFUNDERLAY"));
}
AcDbPdfReference::~AcDbPdfReference() = default;

AcDbDwfReference::AcDbDwfReference() {
    imp().begin_as(NEW_UNDERLAY("DWFUNDERLAY"));
}
AcDbDwfReference::~AcDbDwfReference() = default;

AcDbDgnReference::AcDbDgnReference() {
    imp().begin_as(NEW_UNDERLAY("DGNUNDERLAY"));
}
AcDbDgnReference::~AcDbDgnReference() = default;

AcGePoint3d AcDbUnderlayReference::position() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), underlay_place, 10);
}

Acad::ErrorStatus AcDbUnderlayReference::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), underlay_place, 10, AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

AcGeScale3d AcDbUnderlayReference::scaleFactors() const {
    assertReadEnabled();
    return {db::read_real(imp(), underlay_place, 41, 1.0), db::read_real(imp(), underlay_place, 42, 1.0),
            db::read_real(imp(), underlay_place, 43, 1.0)};
}

double AcDbUnderlayReference::rotation() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), underlay_place, 50));
}

AcGeVector3d AcDbUnderlayReference::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), underlay_place);
}

AcGeMatrix3d AcDbUnderlayReference::transform() const {
    const AcGeVector3d x(std::cos(rotation()), std::sin(rotation()), 0.0);
    const AcGeScale3d scale = scaleFactors();
    AcGeMatrix3d in_plane;
    in_plane.setCoordSystem(db::read_point(imp(), underlay_place, 10), x * scale.sx,
                            AcGeVector3d(-x.y, x.x, 0.0) * scale.sy, AcGeVector3d::kZAxis * scale.sz);
    return AcGeMatrix3d::planeToWorld(normal()) * in_plane;
}

AcDbObjectId AcDbUnderlayReference::definitionId() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return AcDbObjectId::kNull;
    return imp().database->id(imp().database->records().find(imp().groups().handle(underlay_place, 340)));
}

bool AcDbUnderlayReference::isClipped() const {
    assertReadEnabled();
    return (db::read_integer(imp(), underlay_place, 280) & clip_flag) != 0 && clipBoundary().length() > 1;
}

bool AcDbUnderlayReference::isOn() const {
    assertReadEnabled();
    return (db::read_integer(imp(), underlay_place, 280) & on_flag) != 0;
}

const AcGePoint2dArray& AcDbUnderlayReference::clipBoundary() const {
    assertReadEnabled();
    m_boundary.removeAll();
    for (const AcGePoint3d& corner : db::read_points(imp(), underlay_place, 11))
        m_boundary.append(AcGePoint2d(corner.x, corner.y));
    return m_boundary;
}

Adesk::Boolean AcDbUnderlayReference::subWorldDraw(AcGiWorldDraw* draw) {
    std::vector<AcGePoint3d> rim;
    for (const AcGePoint2d& corner : clipBoundary())
        rim.push_back({corner.x, corner.y, 0.0});
    if (rim.size() < 2)
        rim = {AcGePoint3d::kOrigin};
    else if (rim.size() == 2)
        rim = {rim[0], {rim[1].x, rim[0].y, 0.0}, rim[1], {rim[0].x, rim[1].y, 0.0}, rim[0]};
    else
        rim.push_back(AcGePoint3d(rim.front()));
    draw->geometry().pushModelTransform(transform());
    draw->geometry().polyline(static_cast<Adesk::UInt32>(rim.size()), rim.data());
    draw->geometry().popModelTransform();
    return true;
}

Acad::ErrorStatus AcDbUnderlayReference::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * position();
    const AcGeScale3d scale = scaleFactors();
    const double turned = change.turned(rotation());
    db::write_real(imp(), underlay_place, 41, scale.sx * change.scale, 1.0);
    // A mirror in the plane turns the page over.
    db::write_real(imp(), underlay_place, 42, scale.sy * change.scale * (change.mirrored ? -1.0 : 1.0), 1.0);
    db::write_real(imp(), underlay_place, 43, scale.sz * change.scale, 1.0);
    db::write_real(imp(), underlay_place, 50, db::degrees(turned));
    db::write_normal(imp(), underlay_place, change.normal);
    db::write_proxy_graphics(imp(), {});
    return setPosition(moved);
}
