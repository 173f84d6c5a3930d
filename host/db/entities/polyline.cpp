#include "dbpl.h"

#include "base/number_text.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/flat_path.h"
#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <optional>
#include <utility>

ACRX_DXF_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, LWPOLYLINE,
                        "ObjectDBX Classes")

namespace {

constexpr int polyline_order[] = {90, 70, 43, 38, 39, 210, 220, 230, 10, 20, 91, 40, 41, 42};
constexpr dxf::group_place polyline_place{"AcDbPolyline", polyline_order};

constexpr int closed_flag = 1;
constexpr int plinegen_flag = 128;

constexpr std::size_t none = dxf::group_list::npos;

// A vertex, and where in the record its groups stand.
struct vertex_groups {
    db::path_vertex vertex;
    std::size_t begin = 0; // its group 10, and behind its last group
    std::size_t end = 0;
};

bool is_of_vertex(int code) {
    return code == 20 || code == 40 || code == 41 || code == 42 || code == 91;
}

} // namespace

// The vertices as the groups have them: read once, and kept in step by what changes them here.
class AcDbImpPolyline {
public:
    void read(const AcDbImpObject& object);
    bool stands_for(const AcDbImpObject& object) const { return revision_ == object.revision(); }

    std::size_t size() const { return vertices_.size(); }
    const db::path_vertex& operator[](std::size_t index) const { return vertices_[index].vertex; }
    AcGePoint3d in_world(std::size_t index) const {
        const AcGePoint2d& point = vertices_[index].vertex.point;
        return to_world_ * AcGePoint3d(point.x, point.y, elevation_);
    }

    void set_point(AcDbImpObject& object, std::size_t index, const AcGePoint2d& point);
    void set_bulge(AcDbImpObject& object, std::size_t index, double bulge);
    void set_widths(AcDbImpObject& object, std::size_t index, double start, double end);
    void set_constant_width(AcDbImpObject& object, double width);
    void scale_shared_width(AcDbImpObject& object, double factor) {
        db::write_real(object, polyline_place, 43, width_ * factor);
    }
    db::flat_path path(const AcDbPolyline& polyline) const;
    // Puts the vertices of a path with as many in the place of these.
    void take(AcDbImpObject& object, const db::flat_path& path);
    void reverse(AcDbImpObject& object, bool closed);
    // Widths below nought are those that all segments share.
    void insert(AcDbImpObject& object, std::size_t index, const db::path_vertex& vertex, int identifier);
    void remove(AcDbImpObject& object, std::size_t index);

private:
    using fresh = std::vector<dxf::group_list::fresh_group>;

    // Writes all vertices anew, each by what `write` appends for it.
    template<class Write>
    void rewrite(AcDbImpObject& object, Write write);

    dxf::group_list& edit(AcDbImpObject& object);
    void set_real(AcDbImpObject& object, std::size_t index, int code, double value, bool add = true);
    void set_count(dxf::group_list& groups);
    void give_each_its_width(AcDbImpObject& object);

    std::vector<vertex_groups> vertices_;
    std::size_t count_at_ = none; // group 90
    std::size_t end_ = 0;         // where a vertex behind the last one goes
    double width_ = 0.0;          // of segments that have none of their own
    double elevation_ = 0.0;
    AcGeMatrix3d to_world_;
    std::size_t revision_ = none;
};

void AcDbImpPolyline::read(const AcDbImpObject& object) {
    const dxf::group_list& groups = object.groups();
    revision_ = object.revision();
    width_ = groups.real(polyline_place, 43).value_or(0.0);
    elevation_ = groups.real(polyline_place, 38).value_or(0.0);
    to_world_ = AcGeMatrix3d::planeToWorld(db::read_normal(object, polyline_place));
    count_at_ = groups.find(polyline_place, 90);
    vertices_.clear();
    const auto [first, last] = groups.extent(polyline_place);
    end_ = last;
    bool in_vertex = false;
    for (std::size_t i = first; i < last; ++i) {
        const dxf::group& group = groups.groups()[i];
        const auto number = [&] { return dxf::leading_real(group.value).value_or(0.0); };
        if (group.code == 10) {
            vertices_.push_back({{{number(), 0.0}, 0.0, width_, width_}, i, i + 1});
            in_vertex = true;
            continue;
        }
        in_vertex = in_vertex && is_of_vertex(group.code);
        if (!in_vertex)
            continue;
        vertex_groups& current = vertices_.back();
        current.end = i + 1;
        switch (group.code) {
        case 20:
            current.vertex.point.y = number();
            break;
        case 40:
            current.vertex.start_width = number();
            break;
        case 41:
            current.vertex.end_width = number();
            break;
        case 42:
            current.vertex.bulge = number();
            break;
        default:
            break;
        }
    }
    if (!vertices_.empty())
        end_ = vertices_.back().end;
}

dxf::group_list& AcDbImpPolyline::edit(AcDbImpObject& object) {
    dxf::group_list& groups = object.edit();
    revision_ = object.revision();
    return groups;
}

// Sets a number of a vertex: in its group, or in a new one where that is written when `add` is true.
void AcDbImpPolyline::set_real(AcDbImpObject& object, std::size_t index, int code, double value, bool add) {
    dxf::group_list& groups = edit(object);
    const vertex_groups& vertex = vertices_[index];
    std::size_t at = vertex.begin + 1;
    for (std::size_t i = vertex.begin; i < vertex.end; ++i) {
        if (groups.groups()[i].code == code) {
            groups.set_real_at(i, value);
            return;
        }
        if (groups.groups()[i].code < code || groups.groups()[i].code == 91)
            at = i + 1;
    }
    if (!add)
        return;
    const dxf::group_list::fresh_group added[] = {{code, base::real_text(value)}};
    groups.splice(at, at, added);
    read(object);
}

void AcDbImpPolyline::set_count(dxf::group_list& groups) {
    if (count_at_ != none)
        groups.set_integer_at(count_at_, static_cast<std::int64_t>(vertices_.size()));
}

void AcDbImpPolyline::set_point(AcDbImpObject& object, std::size_t index, const AcGePoint2d& point) {
    set_real(object, index, 10, point.x);
    set_real(object, index, 20, point.y);
    vertices_[index].vertex.point = point;
}

void AcDbImpPolyline::set_bulge(AcDbImpObject& object, std::size_t index, double bulge) {
    if (vertices_[index].vertex.bulge == bulge)
        return;
    set_real(object, index, 42, bulge);
    vertices_[index].vertex.bulge = bulge;
}

template<class Write>
void AcDbImpPolyline::rewrite(AcDbImpObject& object, Write write) {
    dxf::group_list& groups = edit(object);
    fresh all;
    for (const vertex_groups& vertex : vertices_)
        write(vertex, std::span(groups.groups()).subspan(vertex.begin, vertex.end - vertex.begin), all);
    if (!vertices_.empty())
        groups.splice(vertices_.front().begin, vertices_.back().end, all);
    read(object);
}

// Takes the width that all segments share to each vertex.
void AcDbImpPolyline::give_each_its_width(AcDbImpObject& object) {
    if (object.groups().find(polyline_place, 43) == none)
        return;
    rewrite(object, [](const vertex_groups& vertex, std::span<const dxf::group> groups, fresh& out) {
        const auto give = [&] {
            out.push_back({40, base::real_text(vertex.vertex.start_width)});
            out.push_back({41, base::real_text(vertex.vertex.end_width)});
        };
        bool given = false;
        for (const dxf::group& group : groups) {
            if (group.code == 40 || group.code == 41)
                continue;
            if (group.code == 42 && !std::exchange(given, true))
                give();
            out.push_back({group.code, std::string(group.value)});
        }
        if (!given)
            give();
    });
    edit(object).remove(polyline_place, 43);
    read(object);
}

void AcDbImpPolyline::set_widths(AcDbImpObject& object, std::size_t index, double start, double end) {
    const db::path_vertex& vertex = vertices_[index].vertex;
    if (vertex.start_width == start && vertex.end_width == end)
        return;
    give_each_its_width(object);
    set_real(object, index, 40, start);
    set_real(object, index, 41, end);
    vertices_[index].vertex.start_width = start;
    vertices_[index].vertex.end_width = end;
}

void AcDbImpPolyline::set_constant_width(AcDbImpObject& object, double width) {
    const bool own = std::any_of(vertices_.begin(), vertices_.end(), [&](const vertex_groups& vertex) {
        return vertex.vertex.start_width != width_ || vertex.vertex.end_width != width_;
    });
    if (own)
        rewrite(object, [](const vertex_groups& /*vertex*/, std::span<const dxf::group> groups, fresh& out) {
            for (const dxf::group& group : groups)
                if (group.code != 40 && group.code != 41)
                    out.push_back({group.code, std::string(group.value)});
        });
    db::write_real(object, polyline_place, 43, width);
    read(object);
}

void AcDbImpPolyline::insert(AcDbImpObject& object, std::size_t index, const db::path_vertex& vertex,
                             int identifier) {
    db::path_vertex added = vertex;
    if (added.start_width < 0.0)
        added.start_width = width_;
    if (added.end_width < 0.0)
        added.end_width = width_;
    const bool own_width = added.start_width != width_ || added.end_width != width_;
    if (own_width)
        give_each_its_width(object);
    fresh groups_of_it{{10, base::real_text(added.point.x)}, {20, base::real_text(added.point.y)}};
    if (identifier != 0)
        groups_of_it.push_back({91, std::to_string(identifier)});
    if (added.start_width != width_ || added.end_width != width_) {
        groups_of_it.push_back({40, base::real_text(added.start_width)});
        groups_of_it.push_back({41, base::real_text(added.end_width)});
    }
    if (added.bulge != 0.0)
        groups_of_it.push_back({42, base::real_text(added.bulge)});
    dxf::group_list& groups = edit(object);
    const std::size_t at = index < vertices_.size() ? vertices_[index].begin : end_;
    groups.splice(at, at, groups_of_it);
    if (index == vertices_.size() && (count_at_ == none || count_at_ < at)) {
        end_ = at + groups_of_it.size();
        vertices_.push_back({added, at, end_});
    } else {
        read(object);
    }
    set_count(groups);
}

void AcDbImpPolyline::remove(AcDbImpObject& object, std::size_t index) {
    dxf::group_list& groups = edit(object);
    const vertex_groups removed = vertices_[index];
    groups.splice(removed.begin, removed.end, {});
    if (index + 1 == vertices_.size() && index > 0 && (count_at_ == none || count_at_ < removed.begin)) {
        vertices_.pop_back();
        end_ = vertices_.back().end;
    } else {
        read(object);
    }
    set_count(groups);
}

void AcDbImpPolyline::take(AcDbImpObject& object, const db::flat_path& path) {
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        const db::path_vertex& vertex = path.vertices[i];
        set_point(object, i, vertex.point);
        set_bulge(object, i, vertex.bulge);
        set_real(object, i, 40, vertex.start_width, false);
        set_real(object, i, 41, vertex.end_width, false);
        vertices_[i].vertex = vertex;
    }
}

// Each segment belongs to its first vertex, so bulges and widths go to the vertex at its other end. A closed
// one still begins where it did.
void AcDbImpPolyline::reverse(AcDbImpObject& object, bool closed) {
    const std::size_t count = vertices_.size();
    const std::vector<dxf::group> old = object.groups().groups();
    const auto text = [&](std::size_t index, int code) -> std::optional<std::string> {
        for (std::size_t i = vertices_[index].begin; i < vertices_[index].end; ++i)
            if (old[i].code == code)
                return std::string(old[i].value);
        return std::nullopt;
    };
    std::size_t left = closed ? count + 1 : count;
    rewrite(object, [&](const vertex_groups&, std::span<const dxf::group>, fresh& out) {
        --left;
        const std::size_t segment = (left + count - 1) % count;
        for (const int code : {10, 20, 91})
            if (const auto value = text(left % count, code))
                out.push_back({code, *value});
        for (const auto& [code, from] : {std::pair(40, 41), std::pair(41, 40)})
            if (const auto value = text(segment, from))
                out.push_back({code, *value});
        if (const double bulge = vertices_[segment].vertex.bulge; bulge != 0.0)
            out.push_back({42, base::real_text(-bulge)});
    });
}

// ---- the polyline

AcDbPolyline::AcDbPolyline() {
    imp().begin_as("0\nLWPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbPolyline\n90\n0\n70\n0\n43\n0.0\n");
}

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

bool AcDbPolyline::isClosed() const {
    assertReadEnabled();
    return (db::read_integer(imp(), polyline_place, 70) & closed_flag) != 0;
}

void AcDbPolyline::setClosed(Adesk::Boolean closed) {
    assertWriteEnabled();
    const int flags = db::read_integer(imp(), polyline_place, 70);
    db::write_integer(imp(), polyline_place, 70, closed ? flags | closed_flag : flags & ~closed_flag);
}

Adesk::Boolean AcDbPolyline::hasPlinegen() const {
    assertReadEnabled();
    return (db::read_integer(imp(), polyline_place, 70) & plinegen_flag) != 0;
}

void AcDbPolyline::setPlinegen(Adesk::Boolean generated) {
    assertWriteEnabled();
    const int flags = db::read_integer(imp(), polyline_place, 70);
    db::write_integer(imp(), polyline_place, 70, generated ? flags | plinegen_flag : flags & ~plinegen_flag);
}

double AcDbPolyline::elevation() const {
    assertReadEnabled();
    return db::read_real(imp(), polyline_place, 38);
}

void AcDbPolyline::setElevation(double elevation) {
    assertWriteEnabled();
    db::write_real(imp(), polyline_place, 38, elevation);
}

double AcDbPolyline::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), polyline_place, 39);
}

Acad::ErrorStatus AcDbPolyline::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), polyline_place, 39, thickness);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
    const AcDbImpPolyline& all = vertices();
    const double first = all.size() > 0 ? all[0].start_width : db::read_real(imp(), polyline_place, 43);
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

AcGeVector3d AcDbPolyline::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), polyline_place);
}

Acad::ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    db::write_normal(imp(), polyline_place, normal.normal());
    return Acad::eOk;
}

void AcDbPolyline::getEcs(AcGeMatrix3d& matrix) const {
    matrix = AcGeMatrix3d::planeToWorld(normal());
    matrix.setTranslation(normal() * elevation());
}

// ---- as a curve, and as a whole

db::flat_path AcDbImpPolyline::path(const AcDbPolyline& polyline) const {
    db::flat_path made;
    made.vertices.reserve(vertices_.size());
    for (const vertex_groups& vertex : vertices_)
        made.vertices.push_back(vertex.vertex);
    made.closed = polyline.isClosed();
    made.elevation = elevation_;
    made.normal = polyline.normal();
    made.thickness = polyline.thickness();
    return made;
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
