#include "dbspline.h"

#include "acgi.h"
#include "base/number_text.h"
#include "dbhelix.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr db::field spline_fields[] = {
    db::normal(),
    db::number(70, "0"),
    db::number(71, "3"),
    db::number(72, "0"), // knots, control points, fit points
    db::number(73, "0"),
    db::number(74, "0"),
    db::number(42, "1e-07"), // tolerances
    db::number(43, "1e-07"),
    db::number(44),
    db::point(12), // tangents
    db::point(13),
    db::number(40),
    db::number(41),
    db::point(10),
    db::point(11),
};
constexpr auto spline_place = db::section_of<spline_fields>("AcDbSpline");

constexpr db::field helix_fields[] = {
    db::number(90, "29"),         db::number(91, "63"),  db::point(10, "0.0"),  db::point(11, "1.0 0.0 0.0"),
    db::point(12, "0.0 0.0 1.0"), db::number(40, "1.0"), db::number(41, "3.0"), db::number(42, "1.0"),
    db::number(290, "1"),         db::number(280, "1"),
};
constexpr auto helix_place = db::section_of<helix_fields>("AcDbHelix");

constexpr int closed_flag = 1;
constexpr int periodic_flag = 2;
constexpr int rational_flag = 4;

constexpr double default_knot_tolerance = 1e-7;
constexpr double default_fit_tolerance = 1e-10;

} // namespace

// What the groups say; kept until they change.
class AcDbImpSpline {
public:
    explicit AcDbImpSpline(const AcDbImpObject& object);
    AcDbImpSpline() = default;
    // In the place of what the groups say now.
    void write(AcDbImpObject& object) const;
    // The curve that it is drawn as; without points when the data make none.
    ge::bspline curve() const;

    int flags = 0;
    ge::bspline control; // not mended
    std::vector<AcGePoint3d> fit;
    AcGeVector3d start_tangent;
    AcGeVector3d end_tangent;
    double knot_tolerance = default_knot_tolerance;
    double point_tolerance = default_knot_tolerance;
    double fit_tolerance = default_fit_tolerance;
    std::size_t revision = 0;
};

namespace {

std::vector<double> read_reals(const AcDbImpObject& object, int code) {
    const dxf::group_list& groups = object.groups();
    const auto [first, last] = groups.extent(spline_place);
    std::vector<double> found;
    for (std::size_t i = first; i < last; ++i)
        if (groups.groups()[i].code == code)
            found.push_back(dxf::leading_real(groups.groups()[i].value).value_or(0.0));
    return found;
}

template<class Array, class Value>
void assign(Array& array, const std::vector<Value>& values) {
    array.setLogicalLength(0);
    for (const Value& value : values)
        array.append(value);
}

bool is_index(int index, std::size_t size) {
    return index >= 0 && static_cast<std::size_t>(index) < size;
}

} // namespace

AcDbImpSpline::AcDbImpSpline(const AcDbImpObject& object)
    : flags(db::read_integer(object, spline_place, 70)), fit(db::read_points(object, spline_place, 11)),
      start_tangent(db::read_point(object, spline_place, 12).asVector()),
      end_tangent(db::read_point(object, spline_place, 13).asVector()),
      knot_tolerance(db::read_real(object, spline_place, 42, default_knot_tolerance)),
      point_tolerance(db::read_real(object, spline_place, 43, default_knot_tolerance)),
      fit_tolerance(db::read_real(object, spline_place, 44, default_fit_tolerance)),
      revision(object.revision()) {
    control.degree = db::read_integer(object, spline_place, 71, 3);
    control.knots = read_reals(object, 40);
    control.points = db::read_points(object, spline_place, 10);
    control.weights = read_reals(object, 41);
}

ge::bspline AcDbImpSpline::curve() const {
    ge::bspline made = control;
    if (ge::mend(made))
        return made;
    made = ge::through(fit, start_tangent, end_tangent);
    if (!ge::mend(made))
        made.points.clear();
    return made;
}

void AcDbImpSpline::write(AcDbImpObject& object) const {
    std::vector<dxf::group_list::fresh_group> fresh;
    const auto add_integer = [&](int code, std::size_t value) {
        fresh.push_back({code, std::to_string(value)});
    };
    const auto add_real = [&](int code, double value) { fresh.push_back({code, base::real_text(value)}); };
    const auto add_point = [&](int code, const AcGePoint3d& point) {
        for (unsigned axis = 0; axis < 3; ++axis)
            add_real(code + 10 * static_cast<int>(axis), point[axis]);
    };
    fresh.push_back({70, std::to_string(flags)});
    fresh.push_back({71, std::to_string(control.degree)});
    add_integer(72, control.knots.size());
    add_integer(73, control.points.size());
    add_integer(74, fit.size());
    add_real(42, knot_tolerance);
    add_real(43, point_tolerance);
    if (!fit.empty()) {
        add_real(44, fit_tolerance);
        if (!start_tangent.isZeroLength())
            add_point(12, AcGePoint3d::kOrigin + start_tangent);
        if (!end_tangent.isZeroLength())
            add_point(13, AcGePoint3d::kOrigin + end_tangent);
    }
    for (const double knot : control.knots)
        add_real(40, knot);
    for (const double weight : control.weights)
        add_real(41, weight);
    for (const AcGePoint3d& point : control.points)
        add_point(10, point);
    for (const AcGePoint3d& point : fit)
        add_point(11, point);

    // The groups of a spline stand together, but in a record without markers others stand around them.
    dxf::group_list& groups = object.edit();
    auto [first, last] = groups.extent(spline_place);
    const auto is_own = [&](std::size_t index) {
        const std::span<const int> own = spline_place.order;
        return std::find(own.begin(), own.end(), groups.groups()[index].code) != own.end();
    };
    while (first < last && !is_own(first))
        ++first;
    while (last > first && !is_own(last - 1))
        --last;
    groups.splice(first, last, fresh);
}

ENTITY_CLASS(AcDbSpline, AcDbCurve, SPLINE, spline_place)

AcDbSpline::AcDbSpline(const AcGePoint3dArray& fitPoints, int order, double fitTolerance)
    : AcDbSpline(fitPoints, {}, {}, order, fitTolerance) {
}

AcDbSpline::AcDbSpline(const AcGePoint3dArray& fitPoints, const AcGeVector3d& startTangent,
                       const AcGeVector3d& endTangent, int order, double fitTolerance)
    : AcDbSpline() {
    setFitData(fitPoints, order - 1, fitTolerance, startTangent, endTangent);
}

AcDbSpline::AcDbSpline(int degree, bool rational, bool closed, bool periodic,
                       const AcGePoint3dArray& controlPoints, const AcGeDoubleArray& knots,
                       const AcGeDoubleArray& weights, double controlPtTol, double knotTol)
    : AcDbSpline() {
    setNurbsData(degree, rational, closed, periodic, controlPoints, knots, weights, controlPtTol, knotTol);
}

AcDbSpline::~AcDbSpline() = default;

const AcDbImpSpline& AcDbSpline::data() const {
    assertReadEnabled();
    if (!m_data || m_data->revision != imp().revision())
        m_data = std::make_unique<AcDbImpSpline>(imp());
    return *m_data;
}

bool AcDbSpline::isRational() const {
    return (data().flags & rational_flag) != 0;
}

bool AcDbSpline::isClosed() const {
    return (data().flags & closed_flag) != 0;
}

bool AcDbSpline::isPeriodic() const {
    return (data().flags & periodic_flag) != 0;
}

int AcDbSpline::degree() const {
    return data().control.degree;
}

int AcDbSpline::numControlPoints() const {
    return static_cast<int>(data().control.points.size());
}

Acad::ErrorStatus AcDbSpline::getControlPointAt(int index, AcGePoint3d& point) const {
    const std::vector<AcGePoint3d>& points = data().control.points;
    if (!is_index(index, points.size()))
        return Acad::eInvalidIndex;
    point = points[static_cast<std::size_t>(index)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::setControlPointAt(int index, const AcGePoint3d& point) {
    assertWriteEnabled();
    if (!is_index(index, data().control.points.size()))
        return Acad::eInvalidIndex;
    int at = 0;
    db::change_points(imp(), spline_place, 10,
                      [&](const AcGePoint3d& old) { return at++ == index ? point : old; });
    return purgeFitData();
}

double AcDbSpline::weightAt(int index) const {
    const ge::bspline& control = data().control;
    if (!is_index(index, control.points.size()))
        return -1.0;
    return is_index(index, control.weights.size()) ? control.weights[static_cast<std::size_t>(index)] : 1.0;
}

bool AcDbSpline::hasFitData() const {
    return !data().fit.empty();
}

int AcDbSpline::numFitPoints() const {
    return static_cast<int>(data().fit.size());
}

Acad::ErrorStatus AcDbSpline::getFitPointAt(int index, AcGePoint3d& point) const {
    const std::vector<AcGePoint3d>& points = data().fit;
    if (!is_index(index, points.size()))
        return Acad::eInvalidIndex;
    point = points[static_cast<std::size_t>(index)];
    return Acad::eOk;
}

double AcDbSpline::fitTolerance() const {
    return data().fit_tolerance;
}

Acad::ErrorStatus AcDbSpline::getFitTangents(AcGeVector3d& startTangent, AcGeVector3d& endTangent) const {
    const AcDbImpSpline& all = data();
    if (all.start_tangent.isZeroLength() && all.end_tangent.isZeroLength())
        return Acad::eNotApplicable;
    startTangent = all.start_tangent;
    endTangent = all.end_tangent;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getFitData(AcGePoint3dArray& fitPoints, int& degree, double& fitTolerance,
                                         bool& tangentsExist, AcGeVector3d& startTangent,
                                         AcGeVector3d& endTangent) const {
    const AcDbImpSpline& all = data();
    if (all.fit.empty())
        return Acad::eNotApplicable;
    assign(fitPoints, all.fit);
    degree = all.control.degree;
    fitTolerance = all.fit_tolerance;
    tangentsExist = getFitTangents(startTangent, endTangent) == Acad::eOk;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::setFitData(const AcGePoint3dArray& fitPoints, int degree, double fitTolerance,
                                         const AcGeVector3d& startTangent, const AcGeVector3d& endTangent) {
    assertWriteEnabled();
    AcDbImpSpline made;
    made.fit.assign(fitPoints.begin(), fitPoints.end());
    made.control = ge::through(made.fit, startTangent, endTangent);
    constexpr int cubic = 3;
    if (degree != cubic || made.control.points.empty())
        return Acad::eInvalidInput;
    made.start_tangent = startTangent;
    made.end_tangent = endTangent;
    made.fit_tolerance = fitTolerance > 0.0 ? fitTolerance : default_fit_tolerance;
    made.write(imp());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::purgeFitData() {
    assertWriteEnabled();
    if (!hasFitData())
        return Acad::eOk;
    AcDbImpSpline kept = data();
    kept.control = kept.curve();
    kept.fit.clear();
    kept.write(imp());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getNurbsData(int& degree, bool& rational, bool& closed, bool& periodic,
                                           AcGePoint3dArray& controlPoints, AcGeDoubleArray& knots,
                                           AcGeDoubleArray& weights, double& controlPtTol,
                                           double& knotTol) const {
    const AcDbImpSpline& all = data();
    const ge::bspline curve = all.curve();
    if (curve.points.empty())
        return Acad::eDegenerateGeometry;
    degree = curve.degree;
    rational = isRational();
    closed = isClosed();
    periodic = isPeriodic();
    assign(controlPoints, curve.points);
    assign(knots, curve.knots);
    assign(weights, curve.weights);
    controlPtTol = all.point_tolerance;
    knotTol = all.knot_tolerance;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                           const AcGePoint3dArray& controlPoints,
                                           const AcGeDoubleArray& knots, const AcGeDoubleArray& weights,
                                           double controlPtTol, double knotTol) {
    assertWriteEnabled();
    AcDbImpSpline made;
    made.flags = (closed ? closed_flag : 0) | (periodic ? periodic_flag : 0) | (rational ? rational_flag : 0);
    made.control.degree = degree;
    made.control.points.assign(controlPoints.begin(), controlPoints.end());
    made.control.knots.assign(knots.begin(), knots.end());
    if (rational)
        made.control.weights.assign(weights.begin(), weights.end());
    ge::bspline mended = made.control;
    if (!ge::mend(mended) || mended.degree != degree || mended.knots != made.control.knots ||
        (rational && mended.weights.empty()))
        return Acad::eInvalidInput;
    if (controlPtTol > 0.0)
        made.point_tolerance = controlPtTol;
    if (knotTol > 0.0)
        made.knot_tolerance = knotTol;
    made.write(imp());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::reverseCurve() {
    assertWriteEnabled();
    AcDbImpSpline turned = data();
    turned.control = turned.curve();
    if (turned.control.points.empty())
        return Acad::eDegenerateGeometry;
    turned.control = turned.control.reversed();
    std::reverse(turned.fit.begin(), turned.fit.end());
    std::swap(turned.start_tangent, turned.end_tangent);
    turned.start_tangent.negate();
    turned.end_tangent.negate();
    turned.write(imp());
    return Acad::eOk;
}

bool AcDbSpline::subMakePieces(AcDbImpCurve& pieces) const {
    auto curve = std::make_shared<const ge::bspline>(data().curve());
    if (!curve->points.empty())
        pieces.add_spline(std::move(curve));
    return true;
}

Adesk::Boolean AcDbSpline::subWorldDraw(AcGiWorldDraw* draw) {
    const ge::bspline curve = data().curve();
    if (curve.points.empty())
        return true;
    std::vector<double> params;
    if (draw->regenType() == kAcGiForExtents) {
        // The points furthest along the axes of the world are all that counts.
        params = {curve.first(), curve.last()};
        AcGeMatrix3d to_world;
        draw->geometry().getModelToWorldTransform(to_world);
        for (unsigned axis = 0; axis < 3; ++axis) {
            const auto found = ge::turns(curve, {to_world(axis, 0), to_world(axis, 1), to_world(axis, 2)});
            params.insert(params.end(), found.begin(), found.end());
        }
    } else {
        AcDbExtents box;
        for (const AcGePoint3d& point : curve.points)
            box.addPoint(point);
        constexpr double fine = 1e-3; // of its size
        params = ge::flattening(curve, std::min(draw->deviation(kAcGiMaxDevForCurve, curve.points.front()),
                                                box.minPoint().distanceTo(box.maxPoint()) * fine));
    }
    std::vector<AcGePoint3d> points;
    points.reserve(params.size());
    for (const double param : params)
        points.push_back(curve.at(param).point);
    draw->geometry().polyline(static_cast<Adesk::UInt32>(points.size()), points.data());
    return true;
}

Acad::ErrorStatus AcDbSpline::subTransformBy(const AcGeMatrix3d& matrix) {
    // Points alone would be joined in another way where the distances between them grow unevenly.
    if (!matrix.isUniScaledOrtho() && data().control.points.empty() && hasFitData()) {
        AcDbImpSpline made = data();
        made.control = made.curve();
        made.write(imp());
    }
    for (const int code : {10, 11})
        db::change_points(imp(), spline_place, code,
                          [&](const AcGePoint3d& point) { return matrix * point; });
    for (const int code : {12, 13})
        db::change_points(imp(), spline_place, code, [&](const AcGePoint3d& tangent) {
            return AcGePoint3d::kOrigin + matrix * tangent.asVector();
        });
    // The normal of the plane that it lies in stands at right angles to what two directions in it become.
    if (imp().groups().find(spline_place, 210) != dxf::group_list::npos) {
        const AcGeVector3d x = db::read_normal(imp(), spline_place).perpVector();
        const AcGeVector3d y = db::read_normal(imp(), spline_place).crossProduct(x);
        const AcGeVector3d up = (matrix * x).crossProduct(matrix * y);
        if (!up.isZeroLength())
            db::write_normal(imp(), spline_place, up.normal());
    }
    return Acad::eOk;
}

// ---- helices

ENTITY_CLASS(AcDbHelix, AcDbSpline, HELIX, spline_place, helix_place)

FIELD_GETTER(AcDbHelix, axisPoint, helix_place, 10)
FIELD_GETTER(AcDbHelix, startPoint, helix_place, 11)
FIELD_GETTER(AcDbHelix, axisVector, helix_place, 12)
FIELD_GETTER(AcDbHelix, baseRadius, helix_place, 40)
FIELD_GETTER(AcDbHelix, turns, helix_place, 41)
FIELD_GETTER(AcDbHelix, turnHeight, helix_place, 42)
FIELD_GETTER(AcDbHelix, twist, helix_place, 290)

Acad::ErrorStatus AcDbHelix::subTransformBy(const AcGeMatrix3d& matrix) {
    if (!matrix.isUniScaledOrtho())
        return Acad::eCannotScaleNonUniformly;
    if (const Acad::ErrorStatus status = AcDbSpline::subTransformBy(matrix); status != Acad::eOk)
        return status;
    const double scale = matrix.scale();
    db::write_point(imp(), helix_place, 10, matrix * axisPoint());
    db::write_point(imp(), helix_place, 11, matrix * startPoint());
    db::write_point(imp(), helix_place, 12, AcGePoint3d::kOrigin + (matrix * axisVector()) / scale);
    db::write_real(imp(), helix_place, 40, baseRadius() * scale);
    db::write_real(imp(), helix_place, 42, turnHeight() * scale);
    if (matrix.det() < 0.0)
        db::write_integer(imp(), helix_place, 290, twist() ? 0 : 1);
    return Acad::eOk;
}
