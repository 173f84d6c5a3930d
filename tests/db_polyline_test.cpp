// Light polylines and old ones, meshes, faces and solids: what their groups say, what setters do to them,
// what is drawn.
#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "host/db/core/open_objects.h"
#include "tests/db_figures.h"

#include <chrono>
#include <cmath>

namespace {

using Changes = std::vector<std::string>;

std::string light(std::string_view groups) {
    return test::with_entities("0 LWPOLYLINE|5 100|8 0" + std::string(groups));
}

// What is drawn of a drawing's entity: its lines and arcs counted, its areas, and their box.
struct counting_canvas final : gi::canvas {
    int strokes = 0;
    int arcs = 0;
    int areas = 0;
    void lines(std::span<const AcGePoint3d>) override { ++strokes; }
    void area(std::span<const AcGePoint3d>) override { ++areas; }
    void curve(const gi::arc&) override { ++arcs; }
};

counting_canvas drawn(const AcDbEntity& entity) {
    counting_canvas canvas;
    gi::tracer(canvas, kAcGiStandardDisplay).draw(entity);
    return canvas;
}

AcGePoint3d vertex_of(const AcDbPolyline& polyline, unsigned index) {
    AcGePoint3d point;
    EXPECT_EQ(polyline.getPointAt(index, point), Acad::eOk);
    return point;
}

} // namespace

// ---- light polylines

TEST(DbPolyline, TellsWhatItsGroupsSay) {
    // Of the plane that looks down, with vertices in a manner that no big program has.
    const auto database =
        test::database_of(light("|90 7|70 129|38 4|39 2|43 1.5|10 1.0|20 2|10 3|42 1|20 4|10 5|"
                                "20 6|40 0.5|41 0.25|91 17|210 0|220 0|230 -1"));
    const test::seen<AcDbPolyline> polyline(*database, 0x100);
    ASSERT_EQ(polyline->numVerts(), 3u) << "not what group 90 says";
    EXPECT_TRUE(polyline->isClosed());
    EXPECT_TRUE(polyline->hasPlinegen());
    EXPECT_EQ(polyline->elevation(), 4.0);
    EXPECT_EQ(polyline->thickness(), 2.0);
    EXPECT_TRUE(vertex_of(*polyline, 1).isEqualTo({-3, 4, -4}));
    double start = 0.0;
    double end = 0.0;
    EXPECT_EQ(polyline->getWidthsAt(0, start, end), Acad::eOk);
    EXPECT_EQ(start, 1.5);
    EXPECT_EQ(polyline->getWidthsAt(2, start, end), Acad::eOk);
    EXPECT_EQ(start + end, 0.75);
    EXPECT_EQ(polyline->getConstantWidth(start), Acad::eInvalidContext);
    EXPECT_EQ(polyline->getBulgeAt(1, start), Acad::eOk);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(polyline->segType(0), AcDbPolyline::kLine);
    EXPECT_EQ(polyline->segType(1), AcDbPolyline::kArc);
    EXPECT_EQ(polyline->segType(3), AcDbPolyline::kEmpty);
    AcGePoint2d point;
    EXPECT_EQ(polyline->getPointAt(3, point), Acad::eInvalidIndex);
    EXPECT_EQ(polyline->getBulgeAt(3, start), Acad::eInvalidIndex);
}

TEST(DbPolyline, SettersChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        void (*change)(AcDbPolyline&);
        Changes expected;
    };
    const std::string bytes = light("|90 2|70 0|43 1.50|10 1.0|20 2.00|10 3|20 4|42 0.50|1001 ACAD|1070 1");
    const row rows[] = {
        {"the same again",
         [](AcDbPolyline& p) {
             p.setPointAt(0, {1, 2});
             p.setBulgeAt(1, 0.5);
             p.setBulgeAt(0, 0.0);
             p.setWidthsAt(1, 1.5, 1.5);
             p.setConstantWidth(1.5);
             p.setClosed(false);
             p.setElevation(0);
             p.transformBy(AcGeMatrix3d::kIdentity);
         },
         {}},
        {"a point",
         [](AcDbPolyline& p) {
             p.setPointAt(0, {1, 7});
         },
         {"- 2.00", "+ 7.0"}},
        {"a bulge", [](AcDbPolyline& p) { p.setBulgeAt(0, 1); }, {"+ 42", "+ 1.0"}},
        {"closed", [](AcDbPolyline& p) { p.setClosed(true); }, {"- 0", "+ 1"}},
        {"height", [](AcDbPolyline& p) { p.setElevation(3); }, {"+ 38", "+ 3.0"}},
        {"plane",
         [](AcDbPolyline& p) {
             p.setNormal({0, 0, -2});
         },
         {"+ 210", "+ 0.0", "+ 220", "+ 0.0", "+ 230", "+ -1.0"}},
        {"width of all", [](AcDbPolyline& p) { p.setConstantWidth(2); }, {"- 1.50", "+ 2.0"}},
        {"a width of its own",
         [](AcDbPolyline& p) { EXPECT_EQ(p.setWidthsAt(1, 3, 4), Acad::eOk); },
         {"- 43", "- 1.50", "+ 40", "+ 1.5", "+ 41", "+ 1.5", "+ 40", "+ 3.0", "+ 41", "+ 4.0"}},
        {"widths taken away again",
         [](AcDbPolyline& p) {
             p.setWidthsAt(1, 3, 4);
             p.setConstantWidth(1.5);
         },
         {"- 1.50", "+ 1.5"}},
        {"a vertex more",
         [](AcDbPolyline& p) {
             EXPECT_EQ(p.addVertexAt(2, {5, 6}, 0.25), Acad::eOk);
         },
         {"- 2", "+ 3", "+ 10", "+ 5.0", "+ 20", "+ 6.0", "+ 42", "+ 0.25"}},
        {"a vertex in front",
         [](AcDbPolyline& p) {
             EXPECT_EQ(p.addVertexAt(0, {5, 6}), Acad::eOk);
         },
         {"- 2", "+ 3", "+ 5.0", "+ 20", "+ 6.0", "+ 10"}},
        {"a vertex less",
         [](AcDbPolyline& p) { EXPECT_EQ(p.removeVertexAt(0), Acad::eOk); },
         {"- 2", "+ 1", "- 1.0", "- 20", "- 2.00", "- 10"}},
        {"refused",
         [](AcDbPolyline& p) {
             EXPECT_EQ(p.addVertexAt(3, {}), Acad::eInvalidIndex);
             EXPECT_EQ(p.removeVertexAt(2), Acad::eInvalidIndex);
             EXPECT_EQ(p.setPointAt(2, {}), Acad::eInvalidIndex);
             EXPECT_EQ(p.setBulgeAt(2, 1), Acad::eInvalidIndex);
             EXPECT_EQ(p.setWidthsAt(0, -1, 0), Acad::eInvalidInput);
             EXPECT_EQ(p.setConstantWidth(-1), Acad::eInvalidInput);
             EXPECT_EQ(p.setNormal({}), Acad::eInvalidInput);
         },
         {}},
    };
    for (const row& row : rows) {
        const auto database = test::database_of(bytes);
        {
            const test::written_to<AcDbPolyline> polyline(*database, 0x100);
            row.change(*polyline);
        }
        EXPECT_EQ(test::differences(bytes, test::written(database->imp().drawing())), row.expected)
            << row.what;
    }
}

// What is asked between changes is what they made, whoever made them.
TEST(DbPolyline, FollowsItsOwnChanges) {
    const auto database = test::database_of(light("|90 2|70 0|10 1|20 2|10 3|20 4"));
    AcDbPolyline* polyline = nullptr;
    ASSERT_EQ(
        acdbOpenObject(polyline, database->imp().id(database->imp().records().find(0x100)), AcDb::kForWrite),
        Acad::eOk);
    EXPECT_EQ(polyline->numVerts(), 2u);
    polyline->addVertexAt(1, {9, 9}, 0.0, 1.0, 2.0);
    polyline->addVertexAt(3, {7, 7});
    polyline->setElevation(5);
    EXPECT_TRUE(vertex_of(*polyline, 1).isEqualTo({9, 9, 5}));
    EXPECT_TRUE(vertex_of(*polyline, 3).isEqualTo({7, 7, 5}));
    double start = 0.0;
    double end = 0.0;
    EXPECT_EQ(polyline->getWidthsAt(1, start, end), Acad::eOk);
    EXPECT_EQ(start + end, 3.0);
    EXPECT_EQ(polyline->getWidthsAt(3, start, end), Acad::eOk);
    EXPECT_EQ(start + end, 0.0);
    EXPECT_EQ(polyline->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 3.0);
    polyline->removeVertexAt(3);
    EXPECT_EQ(polyline->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 2.0);
    EXPECT_EQ(polyline->cancel(), Acad::eOk);
    const test::written_to<AcDbPolyline> again(*database, 0x100);
    EXPECT_EQ(again->numVerts(), 2u) << "what was cancelled is forgotten";
    again->reset(false, 0);
    EXPECT_EQ(again->numVerts(), 0u);
    EXPECT_EQ(again->getEndParam(end), Acad::eDegenerateGeometry);
}

TEST(DbPolyline, IsAsLargeAsItIsDrawn) {
    struct row {
        const char* what;
        const char* groups;
        test::box expected;
    };
    const double half = std::sqrt(0.5);
    const row rows[] = {
        {"lines", "|90 3|10 0|20 0|10 4|20 0|10 4|20 3", {0, 0, 4, 3}},
        {"one vertex", "|90 1|10 2|20 3", {2, 3, 2, 3}},
        {"no vertex", "|90 0", test::nothing},
        {"a missing coordinate", "|90 2|10 1|10 3|20 4", {1, 0, 3, 4}},
        {"half a circle", "|90 2|10 0|20 0|42 1|10 4|20 0", {0, -2, 4, 0}},
        {"half a circle to the right", "|90 2|10 0|20 0|42 -1|10 4|20 0", {0, 0, 4, 2}},
        {"closed by an arc", "|90 2|70 1|10 0|20 0|10 4|20 0|42 1", {0, 0, 4, 2}},
        {"an arc between equal points", "|90 2|10 1|20 1|42 1|10 1|20 1", {1, 1, 1, 1}},
        {"seen from below", "|90 2|10 0|20 0|42 1|10 4|20 0|210 0|220 0|230 -1", {-4, -2, 0, 0}},
        {"wide", "|90 2|43 2|10 0|20 0|10 4|20 0", {0, -1, 4, 1}},
        {"tapering", "|90 2|10 0|20 0|40 2|41 0|10 4|20 0", {0, -1, 4, 1}},
        {"with a mitre", "|90 3|43 2|10 0|20 0|10 4|20 0|10 4|20 3", {0, -1, 5, 3}},
        // The corner at 60 degrees goes out by the root of 3.
        {"with a sharp mitre",
         "|90 3|43 2|10 0|20 0|10 8|20 0|10 4|20 6.928203230275509",
         {0, -1, 8 + std::sqrt(3.0), 7.428203230275509}},
        {"turning back, without a mitre",
         "|90 3|43 2|10 0|20 0|10 8|20 0|10 0|20 0.1",
         {-0.0124990234, -1, 8.0124990234, 1.0999218811}},
        {"wide all around", "|90 4|70 1|43 2|10 0|20 0|10 4|20 0|10 4|20 4|10 0|20 4", {-1, -1, 5, 5}},
        {"a wide arc", "|90 2|43 2|10 0|20 0|42 1|10 4|20 0", {-1, -3, 5, 0}},
        // A quarter of a circle about 0,0 from the right to the top.
        {"a wide quarter", "|90 2|43 0.5|10 2|20 0|42 0.41421356237309503|10 0|20 2", {0, 0, 2.25, 2.25}},
        {"a wide eighth, its rim furthest out",
         "|90 2|43 1|10 1.4142135623730951|20 1.4142135623730951|"
         "42 0.19891236737965800|10 0|20 2",
         {0, 1.5 * half, 2.5 * half, 2.5}},
    };
    for (const row& row : rows) {
        const auto database = test::database_of(light(row.groups));
        EXPECT_EQ(test::box_of(*test::seen<>(*database, 0x100)), row.expected) << row.what;
    }
}

// As many vertices as survey drawings have: what is asked of each must not walk over all.
TEST(DbPolyline, ReadsAndAppendsManyVerticesInTime) {
    constexpr unsigned many = 100'000;
    std::string groups = "|90 " + std::to_string(many) + "|70 0";
    for (unsigned i = 0; i < many; ++i)
        groups += "|10 " + std::to_string(i) + "|20 " + std::to_string(i % 7) + "|42 0.5";
    const auto database = test::database_of(light(groups));
    const auto begin = std::chrono::steady_clock::now();
    const test::seen<AcDbPolyline> polyline(*database, 0x100);
    double sum = 0.0;
    AcDbPolyline copy;
    for (unsigned i = 0; i < many; ++i) {
        const AcGePoint3d point = vertex_of(*polyline, i);
        double bulge = 0.0;
        double dist = 0.0;
        polyline->getBulgeAt(i, bulge);
        polyline->getDistAtParam(i, dist);
        sum += point.x + bulge;
        ASSERT_EQ(copy.addVertexAt(i, {point.x, point.y}, bulge), Acad::eOk);
        ASSERT_EQ(copy.setPointAt(i, {point.x + 1.0, point.y}), Acad::eOk);
    }
    EXPECT_EQ(sum, many * (many - 1.0) / 2.0 + many * 0.5);
    EXPECT_EQ(copy.numVerts(), many);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(taken.count(), 20.0) << "a walk for each vertex takes minutes";
}

// ---- old polylines and meshes

namespace {

// Vertices of a text "x y flags; ...".
std::string old_polyline(std::string_view groups, std::string_view vertices) {
    std::string text = "0 POLYLINE|5 100|8 0|66 1" + std::string(groups);
    int handle = 0x101;
    std::istringstream all{std::string(vertices)};
    for (std::string vertex; std::getline(all, vertex, ';');) {
        std::istringstream one(vertex);
        std::string x, y, z, flags;
        one >> x >> y >> z >> flags;
        std::ostringstream number;
        number << std::hex << handle++;
        text += "|0 VERTEX|5 " + number.str() + "|8 0|10 " + x + "|20 " + y + "|30 " + z + "|70 " + flags;
        for (std::string more; one >> more;)
            text += "|" + more.replace(more.find('='), 1, " ");
    }
    return test::with_entities(text + "|0 SEQEND|5 1FF|8 0");
}

} // namespace

TEST(DbOldPolyline, FlagsDecideWhatItIs) {
    struct row {
        const char* flags;
        const char* vertex;
        const wchar_t* expected;
        const wchar_t* expected_vertex;
    };
    for (const row& row : {row{"", "0 0 0 0", L"AcDb2dPolyline", L"AcDb2dVertex"},
                           row{"|70 133", "0 0 0 16", L"AcDb2dPolyline", L"AcDb2dVertex"},
                           row{"|70 8", "0 0 0 32", L"AcDb3dPolyline", L"AcDb3dPolylineVertex"},
                           row{"|70 16", "0 0 0 64", L"AcDbPolygonMesh", L"AcDbPolygonMeshVertex"},
                           row{"|70 64", "0 0 0 192", L"AcDbPolyFaceMesh", L"AcDbPolyFaceMeshVertex"},
                           row{"|70 64", "0 0 0 128", L"AcDbPolyFaceMesh", L"AcDbFaceRecord"}}) {
        const auto database = test::database_of(old_polyline(row.flags, row.vertex));
        EXPECT_STREQ(test::seen<>(*database, 0x100)->isA()->name(), row.expected);
        EXPECT_STREQ(test::seen<>(*database, 0x101)->isA()->name(), row.expected_vertex);
        EXPECT_STREQ(test::seen<>(*database, 0x1FF)->isA()->name(), L"AcDbSequenceEnd");
    }
}

TEST(DbOldPolyline, IsAsLargeAsItIsDrawn) {
    struct row {
        const char* what;
        const char* groups;
        const char* vertices;
        test::box expected;
    };
    const row rows[] = {
        {"lines", "|70 0", "0 0 0 0;4 0 0 0;4 3 0 0", {0, 0, 4, 3}},
        {"closed by an arc", "|70 1", "0 0 0 0;4 0 0 0 42=1", {0, 0, 4, 2}},
        {"a width of all", "|70 0|40 2|41 2", "0 0 0 0;4 0 0 0", {0, -1, 4, 1}},
        {"a width of its own", "|70 0|40 2|41 2", "0 0 0 0 40=0 41=0;4 0 0 0", {0, 0, 4, 0}},
        {"the frame of a spline", "|70 4", "0 9 0 16;0 0 0 8;2 1 0 8;9 9 0 16", {0, 0, 2, 1}},
        {"nothing but a frame", "|70 4", "0 9 0 16;9 0 0 16", {0, 0, 9, 9}},
        {"what was fitted", "|70 2", "0 0 0 2;2 1 0 1;4 0 0 2", {0, 0, 4, 1}},
        {"a spline in space", "|70 12", "0 9 0 48;0 0 0 40;2 1 0 40;9 9 0 48", {0, 0, 2, 1}},
        {"a mesh", "|70 16|71 2|72 2", "0 0 0 64;1 0 0 64;0 5 0 64;1 6 0 64", {0, 0, 1, 6}},
        {"a mesh with too few vertices",
         "|70 16|71 9|72 2",
         "0 0 0 64;1 0 0 64;0 5 0 64;1 6 0 64;9 9 0 64",
         {0, 0, 1, 6}},
        {"a mesh without columns", "|70 16|71 2", "0 0 0 64;1 0 0 64", test::nothing},
        {"a smooth mesh",
         "|70 20|71 2|72 2|73 2|74 2|75 6",
         "9 9 0 80;9 9 0 80;9 9 0 80;9 9 0 80;0 0 0 72;1 0 0 72;0 1 0 72;1 1 0 72",
         {0, 0, 1, 1}},
        {"faces",
         "|70 64",
         "0 0 0 192;4 0 0 192;0 4 0 192;9 9 0 192;0 0 0 128 71=1 72=-2 73=3",
         {0, 0, 4, 4}},
        {"faces of vertices that are not there",
         "|70 64",
         "0 0 0 192;4 0 0 192;0 0 0 128 71=1 72=2 73=7 74=-99999",
         {0, 0, 4, 0}},
        {"no vertices", "|70 0", "", test::nothing},
    };
    for (const row& row : rows) {
        const auto database = test::database_of(old_polyline(row.groups, row.vertices));
        EXPECT_EQ(test::box_of(*test::seen<>(*database, 0x100)), row.expected) << row.what;
    }
}

TEST(DbOldPolyline, DrawsEdgesThatAreVisible) {
    struct row {
        const char* what;
        std::string bytes;
        int strokes;
        int arcs;
        int areas;
    };
    const row rows[] = {
        {"polyface", old_polyline("|70 64", "0 0 0 192;4 0 0 192;0 4 0 192;0 0 0 128 71=1 72=-2 73=3"), 2, 0,
         0},
        {"face", test::with_entities("0 3DFACE|5 100|8 0|10 0|20 0|11 4|21 0|12 4|22 4|13 0|23 4|70 5"), 2, 0,
         0},
        {"triangle", test::with_entities("0 3DFACE|5 100|8 0|10 0|20 0|11 4|21 0|12 4|22 4|13 4|23 4"), 3, 0,
         0},
        {"mesh", old_polyline("|70 49|71 2|72 2", "0 0 0 64;1 0 0 64;0 5 0 64;1 6 0 64"), 6, 0, 0},
        {"solid", test::with_entities("0 SOLID|5 100|8 0|10 0|20 0|11 4|21 0|12 0|22 4|13 4|23 4"), 0, 0, 1},
        {"thick solid", test::with_entities("0 SOLID|5 100|8 0|10 0|20 0|11 4|21 0|12 0|22 4|13 4|23 4|39 1"),
         0, 0, 6},
        {"line and arc", light("|90 4|10 0|20 0|10 1|20 0|10 2|20 0|42 1|10 3|20 0"), 1, 1, 0},
        {"wide line and wide arc", light("|90 3|43 1|10 0|20 0|10 1|20 0|42 1|10 3|20 0"), 0, 2, 2},
    };
    for (const row& row : rows) {
        const auto database = test::database_of(row.bytes);
        const counting_canvas canvas = drawn(*test::seen<>(*database, 0x100));
        EXPECT_EQ(canvas.strokes, row.strokes) << row.what;
        EXPECT_EQ(canvas.arcs, row.arcs) << row.what;
        EXPECT_EQ(canvas.areas, row.areas) << row.what;
    }
}

TEST(DbOldPolyline, GoesOverItsVerticesAndOpensThem) {
    const auto database = test::database_of(old_polyline("|70 0|30 7", "1 2 7 0;3 4 7 0 42=0.5;5 6 7 0"));
    database->imp().objects().set_erased(database->imp().records().find(0x102), true);
    const test::seen<AcDb2dPolyline> polyline(*database, 0x100);
    const std::unique_ptr<AcDbObjectIterator> vertices(polyline->vertexIterator());
    std::vector<double> found;
    for (; !vertices->done(); vertices->step()) {
        AcDb2dVertex* vertex = nullptr;
        ASSERT_EQ(polyline->openVertex(vertex, vertices->objectId(), AcDb::kForRead), Acad::eOk);
        found.push_back(polyline->vertexPosition(*vertex).x);
        vertex->close();
    }
    EXPECT_EQ(found, (std::vector<double>{1, 5})) << "not the erased one";
    AcDb2dVertex* vertex = nullptr;
    EXPECT_EQ(polyline->openVertex(vertex, polyline->objectId(), AcDb::kForRead), Acad::eInvalidInput);
    double length = 0.0;
    EXPECT_EQ(polyline->length(length), Acad::eOk);
    EXPECT_NEAR(length, std::sqrt(32.0), 1e-12);
    // What the vertices become the polyline is.
    {
        const test::written_to<AcDb2dVertex> moved(*database, 0x103);
        EXPECT_EQ(moved->setPosition({1, 12, 7}), Acad::eOk);
    }
    EXPECT_EQ(polyline->length(length), Acad::eOk);
    EXPECT_NEAR(length, 10.0, 1e-12);
}

TEST(DbOldPolyline, TransformsItsVerticesOrNothing) {
    const std::string bytes = old_polyline("|70 2|10 0|20 0|30 0|40 1", "1 2 0 2 50=0 40=2;3 4 0 0 42=0.5");
    const auto database = test::database_of(bytes);
    {
        const test::written_to<AcDb2dPolyline> polyline(*database, 0x100);
        AcGeMatrix3d mirror;
        mirror.setToScaling(AcGeScale3d(-2, 2, 2));
        EXPECT_EQ(polyline->transformBy(AcGeMatrix3d::translation({0, 0, 5}) * mirror), Acad::eOk);
    }
    EXPECT_EQ(test::written(database->imp().drawing()),
              old_polyline("|70 2|10 0|20 0|30 5.0|40 2.0",
                           "-2.0 4.0 5.0 2 50=180.0 40=4.0;-6.0 8.0 5.0 0 42=-0.5"));
    const auto other = test::database_of(bytes);
    AcDbEntity* vertex = nullptr; // somebody reads the last vertex
    ASSERT_EQ(acdbOpenAcDbEntity(vertex, other->imp().id(other->imp().records().find(0x102)), AcDb::kForRead),
              Acad::eOk);
    {
        const test::written_to<AcDb2dPolyline> polyline(*other, 0x100);
        EXPECT_EQ(polyline->transformBy(AcGeMatrix3d::translation({1, 0, 0})), Acad::eWasOpenForRead);
    }
    vertex->close();
    EXPECT_EQ(test::written(other->imp().drawing()), bytes) << "none was moved";
}

// New ones draw before they belong to a drawing, and become records behind their polyline when they do.
TEST(DbOldPolyline, IsMadeAndPutIntoADrawing) {
    AcGePoint3dArray points;
    for (const AcGePoint3d& point :
         {AcGePoint3d(0, 0, 0), AcGePoint3d(4, 0, 0), AcGePoint3d(0, 3, 0), AcGePoint3d(4, 3, 2)})
        points.append(point);
    AcGeDoubleArray bulges;
    bulges.append(1.0);
    std::vector<std::unique_ptr<AcDbEntity>> made;
    made.push_back(
        std::make_unique<AcDb2dPolyline>(AcDb::k2dSimplePoly, points, 2.0, true, 1.0, 1.0, &bulges));
    made.push_back(std::make_unique<AcDb3dPolyline>(AcDb::k3dSimplePoly, points));
    made.push_back(std::make_unique<AcDbPolygonMesh>(AcDb::kSimpleMesh, Adesk::Int16(2), Adesk::Int16(2),
                                                     points, false, false));
    auto polyface = std::make_unique<AcDbPolyFaceMesh>();
    for (const AcGePoint3d& point : points)
        EXPECT_EQ(polyface->appendVertex(new AcDbPolyFaceMeshVertex(point)), Acad::eOk);
    EXPECT_EQ(polyface->appendFaceRecord(new AcDbFaceRecord(1, 2, -4, 3)), Acad::eOk);
    EXPECT_EQ(polyface->numVertices(), 4);
    EXPECT_EQ(polyface->numFaces(), 1);
    EXPECT_EQ(polyface->appendVertex(static_cast<AcDbPolyFaceMeshVertex*>(nullptr)),
              Acad::eNullObjectPointer);
    made.push_back(std::move(polyface));
    for (std::unique_ptr<AcDbEntity>& entity : made) {
        AcDbExtents before;
        ASSERT_EQ(entity->getGeomExtents(before), Acad::eOk);
        const auto database =
            test::database_of(test::modern_drawing("0 LINE|5 100|100 AcDbEntity|8 0|100 AcDbLine|"
                                                   "10 0|20 0|11 1|21 1"));
        AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
        ASSERT_EQ(space.openStatus(), Acad::eOk);
        AcDbObjectId id;
        ASSERT_EQ(space->appendAcDbEntity(id, entity.get()), Acad::eOk);
        AcDbEntity* const resident = entity.release();
        EXPECT_EQ(resident->close(), Acad::eOk);
        const auto again = test::database_of(test::written(database->imp().drawing()));
        const test::seen<> read(*again, id.handle());
        AcDbExtents behind;
        ASSERT_EQ(read->getGeomExtents(behind), Acad::eOk);
        EXPECT_TRUE(test::same_box(before, behind)) << test::text_of(behind);
    }
    // What stands behind one without vertices is no vertex: an end stands between.
    const auto database = test::database_of(test::modern_drawing({}));
    AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
    const std::initializer_list<AcDbEntity*> empty_and_point = {new AcDb2dPolyline, new AcDbPoint};
    for (AcDbEntity* const entity : empty_and_point) {
        ASSERT_EQ(space->appendAcDbEntity(entity), Acad::eOk);
        entity->close();
    }
    EXPECT_TRUE(test::opened(test::written(database->imp().drawing()))->repairs().empty());
}

TEST(DbSolid, StandsInItsPlane) {
    AcDbSolid solid;
    EXPECT_EQ(solid.setNormal({1, 0, 0}), Acad::eOk);
    EXPECT_EQ(solid.setPointAt(0, {5, 1, 2}), Acad::eOk);
    AcGePoint3d point;
    EXPECT_EQ(solid.getPointAt(0, point), Acad::eOk);
    EXPECT_TRUE(point.isEqualTo({5, 1, 2}));
    EXPECT_EQ(solid.getPointAt(4, point), Acad::eInvalidIndex);
    AcGeMatrix3d flat;
    flat.setToScaling(AcGeScale3d(1, 0, 1));
    EXPECT_EQ(solid.transformBy(flat), Acad::eDegenerateGeometry);

    AcDbFace face({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, true, false);
    Adesk::Boolean visible = true;
    EXPECT_EQ(face.isEdgeVisibleAt(1, visible), Acad::eOk);
    EXPECT_FALSE(visible);
    EXPECT_EQ(face.makeEdgeVisibleAt(1), Acad::eOk);
    EXPECT_EQ(face.isEdgeVisibleAt(1, visible), Acad::eOk);
    EXPECT_TRUE(visible);
    EXPECT_EQ(face.makeEdgeVisibleAt(4), Acad::eInvalidIndex);
    EXPECT_EQ(face.getVertexAt(3, point), Acad::eOk);
    EXPECT_TRUE(point.isEqualTo({1, 1, 0}));
}
