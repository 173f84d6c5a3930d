#include "dbpl.h"

#include "host/db/entities/flat_path.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/entities/polyline_vertices.h"

namespace {

constexpr int closed_flag = 1;
constexpr int plinegen_flag = 128;

} // namespace

ENTITY_CLASS(AcDbPolyline, AcDbCurve, LWPOLYLINE, db::polyline_place)

// How many there will be is of no use to a list that grows by itself.
AcDbPolyline::AcDbPolyline(unsigned int /*num_verts*/) : AcDbPolyline() {
}

AcDbPolyline::~AcDbPolyline() = default;

const AcDbImpPolyline& AcDbPolyline::vertices() const {
    assertReadEnabled();
    if (!m_vertices)
        m_vertices = std::make_unique<AcDbImpPolyline>();
    if (!m_vertices->stands_for(imp()))
        m_vertices->read(imp());
    return *m_vertices;
}

AcDbImpPolyline& AcDbPolyline::editVertices() {
    assertWriteEnabled();
    return const_cast<AcDbImpPolyline&>(vertices());
}

unsigned int AcDbPolyline::numVerts() const {
    return static_cast<unsigned int>(vertices().size());
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& pt, double bulge,
                                            double startWidth, double endWidth,
                                            Adesk::Int32 vertexIdentifier) {
    AcDbImpPolyline& all = editVertices();
    if (index > all.size())
        return Acad::eInvalidIndex;
    all.insert(imp(), index, {pt, bulge, startWidth, endWidth}, vertexIdentifier);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
    AcDbImpPolyline& all = editVertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    all.remove(imp(), index);
    return Acad::eOk;
}

void AcDbPolyline::reset(Adesk::Boolean reuse, unsigned int numVerts) {
    AcDbImpPolyline& all = editVertices();
    while (all.size() > (reuse ? numVerts : 0))
        all.remove(imp(), all.size() - 1);
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& pt) const {
    const AcDbImpPolyline& all = vertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    pt = all.in_world(index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& pt) const {
    const AcDbImpPolyline& all = vertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    pt = all[index].point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& pt) {
    AcDbImpPolyline& all = editVertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    all.set_point(imp(), index, pt);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
    const AcDbImpPolyline& all = vertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    bulge = all[index].bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
    AcDbImpPolyline& all = editVertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    all.set_bulge(imp(), index, bulge);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const {
    const AcDbImpPolyline& all = vertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    startWidth = all[index].start_width;
    endWidth = all[index].end_width;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double startWidth, double endWidth) {
    AcDbImpPolyline& all = editVertices();
    if (index >= all.size())
        return Acad::eInvalidIndex;
    if (!(startWidth >= 0.0 && endWidth >= 0.0))
        return Acad::eInvalidInput;
    all.set_widths(imp(), index, startWidth, endWidth);
    return Acad::eOk;
}

AcDbPolyline::SegType AcDbPolyline::segType(unsigned int index) const {
    const AcDbImpPolyline& all = vertices();
    if (all.size() == 1 && index == 0)
        return kPoint;
    if (index >= all.size() || (index + 1 == all.size() && !isClosed()))
        return kEmpty;
    const AcGePoint2d& to = all[(index + 1) % all.size()].point;
    if (all[index].point == to)
        return kCoincident;
    return all[index].bulge != 0.0 ? kArc : kLine;
}

Adesk::Boolean AcDbPolyline::isOnlyLines() const {
    return !hasBulges();
}

Adesk::Boolean AcDbPolyline::hasBulges() const {
    const AcDbImpPolyline& all = vertices();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].bulge != 0.0)
            return true;
    return false;
}

Adesk::Boolean AcDbPolyline::hasWidth() const {
    const AcDbImpPolyline& all = vertices();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].start_width != 0.0 || all[i].end_width != 0.0)
            return true;
    return false;
}

BIT_MEMBERS(AcDbPolyline, isClosed, setClosed, db::polyline_place, 70, closed_flag)
BIT_MEMBERS(AcDbPolyline, hasPlinegen, setPlinegen, db::polyline_place, 70, plinegen_flag)
FIELD_MEMBERS(AcDbPolyline, elevation, setElevation, db::polyline_place, 38)
FIELD_MEMBERS(AcDbPolyline, thickness, setThickness, db::polyline_place, 39)

Acad::ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
    const AcDbImpPolyline& all = vertices();
    const double first = all.size() > 0 ? all[0].start_width : db::read_real(imp(), db::polyline_place, 43);
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].start_width != first || all[i].end_width != first)
            return Acad::eInvalidContext;
    width = first;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setConstantWidth(double width) {
    AcDbImpPolyline& all = editVertices();
    if (!(width >= 0.0))
        return Acad::eInvalidInput;
    all.set_constant_width(imp(), width);
    return Acad::eOk;
}

FIELD_MEMBERS(AcDbPolyline, normal, setNormal, db::polyline_place, 210)

void AcDbPolyline::getEcs(AcGeMatrix3d& matrix) const {
    matrix = AcGeMatrix3d::planeToWorld(normal());
    matrix.setTranslation(normal() * elevation());
}

bool AcDbPolyline::subMakePieces(AcDbImpCurve& pieces) const {
    db::add_pieces(vertices().path(*this), pieces);
    return true;
}

Adesk::Boolean AcDbPolyline::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_path(vertices().path(*this), *draw);
    return true;
}

Acad::ErrorStatus AcDbPolyline::subExplode(AcDbVoidPtrArray& parts) const {
    db::explode_path(vertices().path(*this), *this, parts);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::subTransformBy(const AcGeMatrix3d& matrix) {
    AcDbImpPolyline& all = editVertices();
    db::flat_path path = all.path(*this);
    double growth = 1.0;
    if (!db::transform_path(path, matrix, growth))
        return Acad::eCannotScaleNonUniformly;
    all.scale_shared_width(imp(), growth);
    setElevation(path.elevation);
    setThickness(path.thickness);
    setNormal(path.normal);
    editVertices().take(imp(), path);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::reverseCurve() {
    editVertices().reverse(imp(), isClosed());
    return Acad::eOk;
}
