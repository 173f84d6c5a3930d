#include "host/db/entities/dimension_kinds.h"

#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"

namespace db {

const dimension_kind& kind_of(const AcDbDimension& dimension) {
    static const dimension_kind rows[] = {
        {AcDbRotatedDimension::desc, linear_place, {13, 14}, false},
        {AcDbAlignedDimension::desc, linear_place, {13, 14}, false},
        {AcDb3PointAngularDimension::desc, three_point_place, {13, 14, 15}, true},
        {AcDb2LineAngularDimension::desc, two_line_place, {13, 14, 15, 16}, true},
        {AcDbRadialDimension::desc, radial_place, {15}, false},
        {AcDbDiametricDimension::desc, diametric_place, {15}, false},
        {AcDbOrdinateDimension::desc, ordinate_place, {13, 14}, false},
        {AcDbArcDimension::desc, arc_dimension_place, {13, 14, 15, 16, 17}, false},
        {AcDbRadialDimensionLarge::desc, large_radial_place, {13, 14, 15}, false},
    };
    for (const dimension_kind& row : rows)
        if (dimension.isKindOf(row.desc()))
            return row;
    return rows[0];
}

void leave_block(AcDbImpObject& imp) {
    dxf::group_list& groups = imp.edit();
    for (const int code : {2, 42, 12, 22, 32})
        groups.remove(dimension_place, code);
    write_proxy_graphics(imp, {});
}

Acad::ErrorStatus set_dimension_point(AcDbImpObject& imp, const dxf::group_place& where, int code,
                                      const AcGePoint3d& point) {
    if (read_point(imp, where, code) == point)
        return Acad::eOk;
    write_point(imp, where, code, point);
    leave_block(imp);
    return Acad::eOk;
}

} // namespace db

// A class with its constructor: its type, its number in group 70, and what a new one says from its own marker
// on.
#define DIMENSION_KIND(CLASS, TYPE, KIND, OWN)                                                               \
    ACRX_DXF_DEFINE_MEMBERS(CLASS, AcDbDimension, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TYPE,       \
                            "ObjectDBX Classes")                                                             \
    CLASS::CLASS() {                                                                                         \
        imp().begin_as("0\n" #TYPE                                                                           \
                       "\n100\nAcDbEntity\n8\n0\n100\nAcDbDimension\n10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n"   \
                       "21\n0.0\n31\n0.0\n70\n" #KIND "\n71\n5\n3\nStandard\n100\n" OWN);                    \
    }
#define POINT_13 "13\n0.0\n23\n0.0\n33\n0.0\n"
#define POINT_14 "14\n0.0\n24\n0.0\n34\n0.0\n"
#define POINT_15 "15\n0.0\n25\n0.0\n35\n0.0\n"
#define POINT_16 "16\n0.0\n26\n0.0\n36\n0.0\n"

// The look of a dimension goes with a change of its points.
#define DIMENSION_POINT(CLASS, GET, SET, PLACE, CODE)                                                        \
    FIELD_GETTER(CLASS, GET, PLACE, CODE)                                                                    \
    Acad::ErrorStatus CLASS::SET(const AcGePoint3d& point) {                                                 \
        assertWriteEnabled();                                                                                \
        return db::set_dimension_point(imp(), PLACE, CODE, point);                                           \
    }

DIMENSION_KIND(AcDbRotatedDimension, DIMENSION, 32,
               "AcDbAlignedDimension\n" POINT_13 POINT_14 "50\n0.0\n100\nAcDbRotatedDimension\n")
DIMENSION_POINT(AcDbRotatedDimension, xLine1Point, setXLine1Point, db::linear_place, 13)
DIMENSION_POINT(AcDbRotatedDimension, xLine2Point, setXLine2Point, db::linear_place, 14)
DIMENSION_POINT(AcDbRotatedDimension, dimLinePoint, setDimLinePoint, db::dimension_place, 10)

FIELD_GETTER(AcDbRotatedDimension, rotation, db::linear_place, 50)

Acad::ErrorStatus AcDbRotatedDimension::setRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), db::linear_place, 50, db::degrees(rotation));
    db::leave_block(imp());
    return Acad::eOk;
}

FIELD_GETTER(AcDbRotatedDimension, oblique, db::linear_place, 52)

DIMENSION_KIND(AcDbAlignedDimension, DIMENSION, 33, "AcDbAlignedDimension\n" POINT_13 POINT_14)
DIMENSION_POINT(AcDbAlignedDimension, xLine1Point, setXLine1Point, db::linear_place, 13)
DIMENSION_POINT(AcDbAlignedDimension, xLine2Point, setXLine2Point, db::linear_place, 14)
DIMENSION_POINT(AcDbAlignedDimension, dimLinePoint, setDimLinePoint, db::dimension_place, 10)

FIELD_GETTER(AcDbAlignedDimension, oblique, db::linear_place, 52)

DIMENSION_KIND(AcDb3PointAngularDimension, DIMENSION, 37,
               "AcDb3PointAngularDimension\n" POINT_13 POINT_14 POINT_15)
DIMENSION_POINT(AcDb3PointAngularDimension, arcPoint, setArcPoint, db::dimension_place, 10)
DIMENSION_POINT(AcDb3PointAngularDimension, centerPoint, setCenterPoint, db::three_point_place, 15)
DIMENSION_POINT(AcDb3PointAngularDimension, xLine1Point, setXLine1Point, db::three_point_place, 13)
DIMENSION_POINT(AcDb3PointAngularDimension, xLine2Point, setXLine2Point, db::three_point_place, 14)

DIMENSION_KIND(AcDb2LineAngularDimension, DIMENSION, 34,
               "AcDb2LineAngularDimension\n" POINT_13 POINT_14 POINT_15 POINT_16)
DIMENSION_POINT(AcDb2LineAngularDimension, arcPoint, setArcPoint, db::two_line_place, 16)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine1Start, setXLine1Start, db::two_line_place, 13)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine1End, setXLine1End, db::two_line_place, 14)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine2Start, setXLine2Start, db::two_line_place, 15)
DIMENSION_POINT(AcDb2LineAngularDimension, xLine2End, setXLine2End, db::dimension_place, 10)

DIMENSION_KIND(AcDbRadialDimension, DIMENSION, 36, "AcDbRadialDimension\n" POINT_15 "40\n0.0\n")
DIMENSION_POINT(AcDbRadialDimension, center, setCenter, db::dimension_place, 10)
DIMENSION_POINT(AcDbRadialDimension, chordPoint, setChordPoint, db::radial_place, 15)

FIELD_GETTER(AcDbRadialDimension, leaderLength, db::radial_place, 40)

DIMENSION_KIND(AcDbDiametricDimension, DIMENSION, 35, "AcDbDiametricDimension\n" POINT_15 "40\n0.0\n")
DIMENSION_POINT(AcDbDiametricDimension, chordPoint, setChordPoint, db::diametric_place, 15)
DIMENSION_POINT(AcDbDiametricDimension, farChordPoint, setFarChordPoint, db::dimension_place, 10)

FIELD_GETTER(AcDbDiametricDimension, leaderLength, db::diametric_place, 40)

DIMENSION_KIND(AcDbOrdinateDimension, DIMENSION, 38, "AcDbOrdinateDimension\n" POINT_13 POINT_14)
DIMENSION_POINT(AcDbOrdinateDimension, origin, setOrigin, db::dimension_place, 10)
DIMENSION_POINT(AcDbOrdinateDimension, definingPoint, setDefiningPoint, db::ordinate_place, 13)
DIMENSION_POINT(AcDbOrdinateDimension, leaderEndPoint, setLeaderEndPoint, db::ordinate_place, 14)

constexpr int along_x = 64; // a bit of group 70, above the kind
BIT_GETTER(AcDbOrdinateDimension, isUsingXAxis, db::dimension_place, 70, along_x)

DIMENSION_KIND(AcDbArcDimension, ARC_DIMENSION, 37,
               "AcDbArcDimension\n" POINT_13 POINT_14 POINT_15 "70\n0\n40\n0.0\n41\n0.0\n71\n0\n" POINT_16
               "17\n0.0\n27\n0.0\n37\n0.0\n")
DIMENSION_POINT(AcDbArcDimension, arcPoint, setArcPoint, db::dimension_place, 10)
DIMENSION_POINT(AcDbArcDimension, centerPoint, setCenterPoint, db::arc_dimension_place, 15)
DIMENSION_POINT(AcDbArcDimension, xLine1Point, setXLine1Point, db::arc_dimension_place, 13)
DIMENSION_POINT(AcDbArcDimension, xLine2Point, setXLine2Point, db::arc_dimension_place, 14)

FIELD_GETTER(AcDbArcDimension, leader1Point, db::arc_dimension_place, 16)
FIELD_GETTER(AcDbArcDimension, leader2Point, db::arc_dimension_place, 17)
FIELD_GETTER(AcDbArcDimension, isPartial, db::arc_dimension_place, 70)
FIELD_GETTER(AcDbArcDimension, hasLeader, db::arc_dimension_place, 71)
FIELD_GETTER(AcDbArcDimension, arcStartParam, db::arc_dimension_place, 40)
FIELD_GETTER(AcDbArcDimension, arcEndParam, db::arc_dimension_place, 41)

DIMENSION_KIND(AcDbRadialDimensionLarge, LARGE_RADIAL_DIMENSION, 41,
               "AcDbRadialDimensionLarge\n" POINT_13 POINT_14 POINT_15 "40\n0.0\n")
DIMENSION_POINT(AcDbRadialDimensionLarge, center, setCenter, db::dimension_place, 10)
DIMENSION_POINT(AcDbRadialDimensionLarge, chordPoint, setChordPoint, db::large_radial_place, 13)
DIMENSION_POINT(AcDbRadialDimensionLarge, overrideCenter, setOverrideCenter, db::large_radial_place, 14)
DIMENSION_POINT(AcDbRadialDimensionLarge, jogPoint, setJogPoint, db::large_radial_place, 15)
