#include "module/doubleline/DoubleLineNetwork.h"

#include "module/frame/SpecData.h"
#include "siblings/zef_pipewire/CurrentSpace.h"
#include "siblings/zef_pipewire/TDbDoubleLineFitting.h"

#include "dbobjptr.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double nearBy = 0.1;      // ends that meet
constexpr double shortest = 1.0;    // what is left of a pipe between its fittings, mm
constexpr double straight = 0.0017; // radians, a tenth of a degree
const wchar_t* const tooShort = L"管段太短，放不下管件！";
const wchar_t* const locked = L"相接的管线所在图层已锁定，不能连接！";

double Cross(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.y - a.y * b.x;
}

double Dot(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.x + a.y * b.y;
}

double AngleOf(const AcGeVector3d& along) {
    return std::atan2(along.y, along.x);
}

// Between two directions, from 0 to half a turn.
double Opening(const AcGeVector3d& a, const AcGeVector3d& b) {
    return std::fabs(std::atan2(Cross(a, b), Dot(a, b)));
}

// Where the foot of a point lies on a line, as a part of its length.
double FootOf(const AcGePoint3d& point, const AcGePoint3d& start, const AcGePoint3d& end) {
    const AcGeVector3d along = end - start;
    const double square = along.dotProduct(along);
    return square > 0.0 ? (point - start).dotProduct(along) / square : 0.0;
}

// How far from their common point the walls of two branches meet.
double CornerPlace(const AcGeVector3d& a, double half, const AcGeVector3d& b, double otherHalf) {
    const double sine = std::fabs(Cross(a, b));
    return sine < straight ? 0.0 : std::max(0.0, (otherHalf + half * Dot(a, b)) / sine);
}

} // namespace

bool CDoubleLineNetwork::Pipe::IsVertical() const {
    return std::hypot(end.x - start.x, end.y - start.y) < nearBy;
}

CDoubleLineNetwork::CDoubleLineNetwork() {
    Read();
}

void CDoubleLineNetwork::Read() {
    m_pipes.clear();
    m_fittings.clear();
    for (const AcDbObjectId id : EntitiesOfCurrentSpace(L"ZEF_DOUBLELINEPIPE")) {
        const AcDbObjectPointer<TDbDoubleLinePipe> pipe(id, AcDb::kForRead);
        if (pipe.openStatus() == Acad::eOk)
            m_pipes.push_back({id, pipe->GetStartPoint(), pipe->GetEndPoint(), pipe->GetStartOuter(),
                               pipe->GetEndOuter(), pipe->GetStartDn(), pipe->GetEndDn(),
                               pipe->GetPipeSystemName()});
    }
    for (const AcDbObjectId id : EntitiesOfCurrentSpace(L"ZEF_DOUBLELINEFITTING")) {
        const AcDbObjectPointer<TDbDoubleLineFitting> fitting(id, AcDb::kForRead);
        if (fitting.openStatus() != Acad::eOk)
            continue;
        Fitting one{id, fitting->GetPosition(), 0.0, {}};
        for (const TFittingBranch& branch : fitting->GetBranches())
            one.reach = std::max(one.reach, branch.m_length);
        for (int i = 0; i < fitting->GetAttachments().length(); ++i)
            one.pipes.push_back(fitting->GetAttachments()[i]);
        m_fittings.push_back(std::move(one));
    }
}

const CDoubleLineNetwork::Pipe* CDoubleLineNetwork::Find(AcDbObjectId id) const {
    const auto found = std::ranges::find(m_pipes, id, &Pipe::id);
    return found != m_pipes.end() ? &*found : nullptr;
}

AcGePoint3d CDoubleLineNetwork::Snap(const AcGePoint3d& point) const {
    for (const Fitting& fitting : m_fittings)
        if (fitting.position.distanceTo(point) < fitting.reach)
            return fitting.position;
    for (const Pipe& pipe : m_pipes) {
        if (pipe.IsVertical())
            continue;
        const double part = FootOf(point, pipe.start, pipe.end);
        const double length = pipe.start.distanceTo(pipe.end);
        const AcGePoint3d foot = pipe.start + (pipe.end - pipe.start) * std::clamp(part, 0.0, 1.0);
        const double half = std::max(pipe.startOuter, pipe.endOuter) / 2;
        if (foot.distanceTo(point) > half + nearBy)
            continue;
        if (part * length < half)
            return pipe.start;
        return (1.0 - part) * length < half ? pipe.end : foot;
    }
    return point;
}

// Where a new pipe crosses those of its system at the same height, in their order.
std::vector<AcGePoint3d> CDoubleLineNetwork::JoinedCrossings(const TDbDoubleLinePipe& model,
                                                             const AcGePoint3d& from,
                                                             const AcGePoint3d& to) const {
    const AcGeVector3d along = to - from;
    std::vector<std::pair<double, AcGePoint3d>> found;
    for (const Pipe& pipe : m_pipes) {
        const AcGeVector3d across = pipe.end - pipe.start;
        const double turn = Cross(along, across);
        if (pipe.system != model.GetPipeSystemName() || std::fabs(turn) < nearBy)
            continue;
        const double here = Cross(pipe.start - from, across) / turn;
        const double there = Cross(pipe.start - from, along) / turn;
        const double length = along.length();
        const double other = across.length();
        if (here * length < nearBy || (1.0 - here) * length < nearBy || there * other < nearBy ||
            (1.0 - there) * other < nearBy)
            continue;
        const AcGePoint3d point = from + along * here;
        if (point.distanceTo(pipe.start + across * there) < nearBy)
            found.emplace_back(here, point);
    }
    std::ranges::sort(found, {}, &std::pair<double, AcGePoint3d>::first);
    std::vector<AcGePoint3d> points(found.size());
    std::ranges::transform(found, points.begin(), &std::pair<double, AcGePoint3d>::second);
    return points;
}

CString CDoubleLineNetwork::Draw(const TDbDoubleLinePipe& model, const AcGePoint3d& from,
                                 const AcGePoint3d& to, const TFittingOrder& order) {
    std::vector<AcGePoint3d> points = {from};
    for (const AcGePoint3d& point : JoinedCrossings(model, from, to))
        points.push_back(point);
    points.push_back(to);
    for (std::size_t i = 1; i < points.size(); ++i)
        if (CString why = DrawPart(model, points[i - 1], points[i], order); !why.IsEmpty())
            return why;
    return {};
}

CString CDoubleLineNetwork::DrawPart(const TDbDoubleLinePipe& model, const AcGePoint3d& from,
                                     const AcGePoint3d& to, const TFittingOrder& order) {
    std::unique_ptr<TDbDoubleLinePipe> pipe(TDbDoubleLinePipe::cast(model.clone()));
    if (pipe == nullptr)
        return L"管线不能加入当前图形！";
    pipe->SetEnds(from, to);
    const AcDbObjectId id = Add(std::move(pipe));
    if (id.isNull())
        return L"管线不能加入当前图形！";
    for (const AcGePoint3d& point : {from, to}) {
        std::vector<AcDbObjectId> pipes = PipesAt(point);
        if (std::ranges::find(pipes, id) == pipes.end())
            pipes.push_back(id);
        if (CString why = Join(point, pipes, order); !why.IsEmpty())
            return why;
        Read();
    }
    CCrossings crossings;
    {
        const AcDbObjectPointer<TDbDoubleLinePipe> drawn(id, AcDb::kForWrite);
        if (drawn.openStatus() == Acad::eOk)
            crossings.GoUnder(*drawn.object());
    }
    crossings.GoOver(id);
    return {};
}

AcDbObjectId CDoubleLineNetwork::Add(std::unique_ptr<TDbDoubleLinePipe> pipe) {
    Pipe made{{},
              pipe->GetStartPoint(),
              pipe->GetEndPoint(),
              pipe->GetStartOuter(),
              pipe->GetEndOuter(),
              pipe->GetStartDn(),
              pipe->GetEndDn(),
              pipe->GetPipeSystemName()};
    made.id = AppendToCurrentSpace(std::move(pipe));
    if (!made.id.isNull())
        m_pipes.push_back(made);
    return made.id;
}

// The pipes that a fitting joins in a point or that end there; one that runs through is cut.
std::vector<AcDbObjectId> CDoubleLineNetwork::PipesAt(const AcGePoint3d& point) {
    for (const Fitting& fitting : m_fittings)
        if (fitting.position.distanceTo(point) < nearBy) {
            std::vector<AcDbObjectId> pipes = fitting.pipes;
            std::erase_if(pipes, [&](AcDbObjectId id) { return Find(id) == nullptr; });
            return pipes;
        }
    std::vector<AcDbObjectId> pipes;
    for (const Pipe& pipe : m_pipes)
        if (!pipe.IsVertical() &&
            (pipe.start.distanceTo(point) < nearBy || pipe.end.distanceTo(point) < nearBy))
            pipes.push_back(pipe.id);
    const std::vector<Pipe> all = m_pipes; // cutting adds to them
    for (const Pipe& pipe : all) {
        const double part = FootOf(point, pipe.start, pipe.end);
        const double length = pipe.start.distanceTo(pipe.end);
        if (pipe.IsVertical() || part * length < nearBy || (1.0 - part) * length < nearBy ||
            (pipe.start + (pipe.end - pipe.start) * part).distanceTo(point) >= nearBy)
            continue;
        const AcDbObjectId rest = Cut(pipe, point);
        if (!rest.isNull())
            pipes.insert(pipes.end(), {pipe.id, rest});
    }
    return pipes;
}

// Ends a pipe in a point and gives what is left of it behind that. Null when it can not be changed.
AcDbObjectId CDoubleLineNetwork::Cut(const Pipe& pipe, const AcGePoint3d& point) {
    std::unique_ptr<TDbDoubleLinePipe> rest;
    {
        const AcDbObjectPointer<TDbDoubleLinePipe> whole(pipe.id, AcDb::kForWrite);
        if (whole.openStatus() != Acad::eOk)
            return {};
        rest.reset(TDbDoubleLinePipe::cast(whole->clone()));
        if (rest == nullptr)
            return {};
        rest->SetEnds(point, pipe.end);
        whole->SetEnds(pipe.start, point);
    }
    const AcDbObjectId id = Add(std::move(rest));
    std::ranges::find(m_pipes, pipe.id, &Pipe::id)->end = point;
    for (const Fitting& fitting : m_fittings) { // the one at the other end joins the rest now
        if (std::ranges::find(fitting.pipes, pipe.id) == fitting.pipes.end() ||
            fitting.position.distanceTo(pipe.end) > fitting.position.distanceTo(pipe.start))
            continue;
        const AcDbObjectPointer<TDbDoubleLineFitting> joint(fitting.id, AcDb::kForWrite);
        if (joint.openStatus() == Acad::eOk) {
            joint->RemoveAttachment(pipe.id);
            joint->AddAttachment(id);
        }
    }
    return id;
}

CDoubleLineNetwork::Branch CDoubleLineNetwork::BranchOf(AcDbObjectId id, const AcGePoint3d& point) const {
    const Pipe& pipe = *Find(id);
    Branch branch;
    branch.pipe = id;
    branch.isAtStart = pipe.start.distanceTo(point) <= pipe.end.distanceTo(point);
    const AcGeVector3d away = (branch.isAtStart ? pipe.end : pipe.start) - point;
    branch.room = away.length();
    branch.along = branch.room > 0.0 ? away / branch.room : away;
    branch.outer = branch.isAtStart ? pipe.startOuter : pipe.endOuter;
    branch.dn = branch.isAtStart ? pipe.startDn : pipe.endDn;
    return branch;
}

void CDoubleLineNetwork::EraseFitting(const AcGePoint3d& point) {
    for (const Fitting& fitting : m_fittings)
        if (fitting.position.distanceTo(point) < nearBy) {
            const AcDbObjectPointer<TDbDoubleLineFitting> old(fitting.id, AcDb::kForWrite);
            if (old.openStatus() == Acad::eOk)
                old->erase();
        }
}

CString CDoubleLineNetwork::Join(const AcGePoint3d& point, const std::vector<AcDbObjectId>& pipes,
                                 const TFittingOrder& order) {
    std::vector<Branch> branches(pipes.size());
    std::ranges::transform(pipes, branches.begin(), [&](AcDbObjectId id) { return BranchOf(id, point); });
    constexpr std::size_t most = 4;
    if (branches.size() > most)
        return L"一处最多连接四根管线！";
    for (std::size_t i = 0; i < branches.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (Opening(branches[i].along, branches[k].along) < straight)
                return L"与已有管线重叠！";
    if (branches.size() < 2)
        return {};
    if (branches.size() == 2 && Opening(branches[0].along, branches[1].along) > std::numbers::pi - straight)
        return Reduce(point, branches[0], branches[1]);
    return Fit(point, branches, order);
}

// Two pipes in one line: nothing between them when they are alike.
CString CDoubleLineNetwork::Reduce(const AcGePoint3d& point, const Branch& one, const Branch& other) {
    if (std::fabs(one.outer - other.outer) < nearBy)
        return {};
    const Branch& large = one.outer > other.outer ? one : other;
    const Branch& small = one.outer > other.outer ? other : one;
    double length = SpecData::GetReducerLength(large.dn);
    if (length <= 0.0)
        length = large.dn;
    if (CString why = Pull(point, small, length); !why.IsEmpty())
        return why;
    std::unique_ptr<TDbDoubleLinePipe> reducer;
    {
        const AcDbObjectPointer<TDbDoubleLinePipe> model(small.pipe, AcDb::kForRead);
        if (model.openStatus() == Acad::eOk)
            reducer.reset(TDbDoubleLinePipe::cast(model->clone()));
    }
    if (reducer == nullptr)
        return locked;
    reducer->SetEnds(point, point + small.along * length);
    reducer->SetDns(large.dn, small.dn);
    reducer->SetOuters(large.outer, small.outer);
    reducer->SetFlange(0.0, 0.0);
    return Add(std::move(reducer)).isNull() ? L"管件不能加入当前图形！" : L"";
}

CString CDoubleLineNetwork::Fit(const AcGePoint3d& point, const std::vector<Branch>& branches,
                                const TFittingOrder& order) {
    const bool isElbow = branches.size() == 2;
    const bool isEven = isElbow && std::fabs(branches[0].outer - branches[1].outer) < nearBy;
    std::vector<double> lengths;
    double radius = 0.0;
    if (isEven && !order.m_elbowSeries.IsEmpty()) {
        radius = SpecData::GetElbowRadius(order.m_elbowSeries, branches[0].dn);
        if (radius <= 0.0)
            radius = 1.5 * branches[0].dn;
        const double tangent = radius / std::tan(Opening(branches[0].along, branches[1].along) / 2);
        const bool fits = std::ranges::all_of(
            branches, [&](const Branch& branch) { return branch.room >= tangent + shortest; });
        if (fits)
            lengths = {tangent, tangent};
        else
            radius = 0.0; // a corner needs less
    }
    if (lengths.empty())
        for (const Branch& branch : branches) {
            double corner = 0.0;
            for (const Branch& other : branches)
                if (&other != &branch)
                    corner = std::max(
                        corner, CornerPlace(branch.along, branch.outer / 2, other.along, other.outer / 2));
            const double usual = isElbow ? 0.0 : SpecData::GetTeeLength(branch.dn);
            lengths.push_back(std::max(usual, corner + (isElbow ? 0.0 : shortest)));
        }
    auto fitting = std::make_unique<TDbDoubleLineFitting>();
    std::vector<TFittingBranch> parts;
    for (std::size_t i = 0; i < branches.size(); ++i) {
        if (CString why = Pull(point, branches[i], lengths[i]); !why.IsEmpty())
            return why;
        parts.push_back({AngleOf(branches[i].along), lengths[i], branches[i].outer});
        fitting->AddAttachment(branches[i].pipe);
    }
    fitting->SetPosition(point);
    fitting->SetBranches(parts);
    fitting->SetBendRadius(radius);
    {
        const AcDbObjectPointer<TDbDoubleLinePipe> model(branches.back().pipe, AcDb::kForRead);
        if (model.openStatus() != Acad::eOk)
            return locked;
        fitting->setPropertiesFrom(model.object());
        fitting->SetPipeSystemName(model->GetPipeSystemName());
        fitting->SetSystemType(model->GetSystemType());
        fitting->SetPlotScale(model->GetPlotScale());
    }
    EraseFitting(point);
    return AppendToCurrentSpace(std::move(fitting)).isNull() ? L"管件不能加入当前图形！" : L"";
}

// Draws the end of a pipe back to the end of its branch.
CString CDoubleLineNetwork::Pull(const AcGePoint3d& point, const Branch& branch, double length) {
    if (branch.room < length + shortest)
        return tooShort;
    const AcDbObjectPointer<TDbDoubleLinePipe> pipe(branch.pipe, AcDb::kForWrite);
    if (pipe.openStatus() != Acad::eOk)
        return locked;
    const AcGePoint3d end = point + branch.along * length;
    if (branch.isAtStart)
        pipe->SetEnds(end, pipe->GetEndPoint());
    else
        pipe->SetEnds(pipe->GetStartPoint(), end);
    return {};
}
