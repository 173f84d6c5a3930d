#include "host/picture/picture.h"

#include "base/ordered_work.h"
#include "dbents.h"
#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/group_list.h"
#include "host/picture/recorded_paper.h"
#include "host/view/extents.h"
#include "host/view/space_index.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <span>

namespace picture {

namespace {

constexpr double border = 5.0; // millimetres around what is fitted into a paper

// The paper of a layout: its size, and where on it the origin of the sheet lies.
struct layout_paper {
    double width = 0.0;
    double height = 0.0;
    double left = 0.0; // of the origin
    double bottom = 0.0;
    double scale = 1.0; // millimetres to a unit
};

std::optional<layout_paper> paper_of_layout(AcDbImpDatabase& drawing, dxf::record_id space) {
    const dxf::record_id layout = db::layout_of(drawing, space);
    if (layout == dxf::no_record)
        return std::nullopt;
    constexpr dxf::group_place place{"AcDbPlotSettings"};
    const dxf::group_list groups(drawing.records().text(layout));
    const auto real = [&](int code) { return groups.real(place, code).value_or(0.0); };
    const auto whole = [&](int code) { return groups.integer(place, code).value_or(0); };
    layout_paper paper{real(44), real(45), real(40), real(41), 1.0};
    const bool inches = whole(72) == 0;
    constexpr double mm_per_inch = 25.4;
    paper.scale = inches ? mm_per_inch : 1.0;
    if (real(142) > 0.0 && real(143) > 0.0)
        paper.scale *= real(142) / real(143);
    // 73: turned by so many quarters, with the margins: left 40, bottom 41, right 42, top 43.
    const double margins[] = {real(40), real(41), real(42), real(43)};
    const auto quarters = static_cast<std::size_t>(whole(73) & 3);
    if (quarters % 2 != 0)
        std::swap(paper.width, paper.height);
    paper.left = margins[(4 - quarters) % 4] + real(46);
    paper.bottom = margins[(5 - quarters) % 4] + real(47);
    constexpr double least = 20.0;
    constexpr double most = 10'000.0;
    if (!(paper.width > least && paper.width < most && paper.height > least && paper.height < most))
        return std::nullopt;
    return paper;
}

struct area {
    AcGePoint2d least;
    AcGePoint2d most;
    double width() const { return most.x - least.x; }
    double height() const { return most.y - least.y; }
    AcGePoint3d middle() const { return {(least.x + most.x) / 2.0, (least.y + most.y) / 2.0, 0.0}; }
};

// What a space holds; something to look at for an empty one.
area extents_of(AcDbImpDatabase& drawing, dxf::record_id space) {
    const gi::flat_box extents = gi::flat_extents(drawing, space);
    if (extents.is_empty())
        return {{0.0, 0.0}, {420.0, 297.0}};
    return {{extents.least_x, extents.least_y}, {extents.most_x, extents.most_y}};
}

// A sheet and what is seen on it.
struct plan {
    double width;
    double height;
    sheet_view view;
};

plan planned(AcDbImpDatabase& drawing, dxf::record_id space, const request& wanted) {
    const bool is_model = space == drawing.blocks().find(ACDB_MODEL_SPACE);
    area shown;
    if (!wanted.window)
        shown = extents_of(drawing, space);
    if (!wanted.window && wanted.before != nullptr) {
        const dxf::record_id old = wanted.before->blocks().find(drawing.names().name_of(space));
        if (old != dxf::no_record) {
            const area other = extents_of(*wanted.before, old);
            shown.least = {std::min(shown.least.x, other.least.x), std::min(shown.least.y, other.least.y)};
            shown.most = {std::max(shown.most.x, other.most.x), std::max(shown.most.y, other.most.y)};
        }
    }
    if (wanted.window) {
        const auto& [a, b] = *wanted.window;
        shown = {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}};
    } else if (!is_model && !wanted.scale && !wanted.paper) {
        if (const auto paper = paper_of_layout(drawing, space)) {
            const sheet_box box{0.0, 0.0, paper->width, paper->height};
            const area on_paper{{-paper->left / paper->scale, -paper->bottom / paper->scale},
                                {(paper->width - paper->left) / paper->scale,
                                 (paper->height - paper->bottom) / paper->scale}};
            // Sheets that were never set up stick out of their paper: then all of it is shown.
            const double slack = 0.05 * std::max(on_paper.width(), on_paper.height());
            if (shown.least.x > on_paper.least.x - slack && shown.least.y > on_paper.least.y - slack &&
                shown.most.x < on_paper.most.x + slack && shown.most.y < on_paper.most.y + slack)
                return {paper->width, paper->height,
                        sheet_view::from_above(on_paper.middle(), on_paper.width(), box)};
        }
    }
    constexpr std::pair a3{420.0, 297.0};
    std::pair<double, double> paper = wanted.paper.value_or(a3);
    if (!wanted.paper && shown.height() > shown.width())
        std::swap(paper.first, paper.second);
    const auto [width, height] = paper;
    const sheet_box box{0.0, 0.0, width, height};
    constexpr double nothing = 1e-9; // a point has some room around it
    const double fitting = std::min((width - 2.0 * border) / std::max(shown.width(), nothing),
                                    (height - 2.0 * border) / std::max(shown.height(), nothing));
    const double scale =
        wanted.scale.value_or(shown.width() < nothing && shown.height() < nothing ? 1.0 : fitting);
    return {width, height, sheet_view::from_above(shown.middle(), width / scale, box)};
}

// Gathers the rim of a closed entity.
class rim_canvas final : public gi::canvas {
public:
    explicit rim_canvas(const sheet_view& sheet) : sheet_(sheet) {}

    std::vector<sys::sheet_point> rim;

    void lines(std::span<const AcGePoint3d> points) override {
        for (const AcGePoint3d& point : points)
            rim.push_back(sheet_.at(point));
    }
    void area(std::span<const AcGePoint3d> points) override { lines(points); }
    void curve(const gi::arc& arc) override {
        constexpr double fine = 0.05; // millimetres
        lines(gi::flattened(arc, fine / sheet_.scale()));
    }

private:
    const sheet_view& sheet_;
};

// Draws parts of what is seen in a view, one after the other. To be made with the drawing's lock held.
class part_drawing {
public:
    part_drawing(AcDbImpDatabase& drawing, shared_drawing& shared, const text_painter& texts,
                 const sheet_view& view, dxf::record_id viewport, const manner& manner)
        : drawing_(drawing), shared_(shared), states_(drawing, viewport), texts_(paper_, texts),
          canvas_(paper_, texts_, drawing, shared, states_, view, manner),
          tracer_(std::make_unique<gi::tracer>(canvas_)) {
        canvas_.follow(*tracer_);
    }
    ~part_drawing() {
        const std::lock_guard hold(shared_.lock);
        tracer_.reset(); // it keeps objects of the drawing
    }
    part_drawing(const part_drawing&) = delete;
    part_drawing& operator=(const part_drawing&) = delete;

    void draw(std::span<const dxf::record_id> entities, recorded_paper& drawn) {
        paper_.clear();
        canvas_.begin_part();
        for (const dxf::record_id entity : entities) {
            if (canvas_.draw_plain(entity))
                continue;
            const std::lock_guard hold(shared_.lock);
            tracer_->draw(drawing_, entity);
        }
        std::swap(paper_, drawn);
    }

private:
    AcDbImpDatabase& drawing_;
    shared_drawing& shared_;
    layer_states states_;
    recorded_paper paper_;
    text_painter texts_;
    painter canvas_;
    std::unique_ptr<gi::tracer> tracer_;
};

class session {
public:
    session(AcDbImpDatabase& drawing, sys::paper& paper, manner manner)
        : drawing_(drawing), paper_(paper), texts_(paper, lacking_), shared_(drawing), manner_(manner) {
        if (const auto scale = drawing.drawing().header_value("$LTSCALE"))
            linetype_scale_ = dxf::leading_real(*scale).value_or(1.0);
        const auto by_paper = drawing.drawing().header_value("$PSLTSCALE");
        patterns_by_paper_ = !by_paper || dxf::trimmed(*by_paper) != "0";
    }

    void draw_space(dxf::record_id space, const sheet_view& view) {
        manner_.linetype_scale = linetype_scale_;
        draw_seen(space, view, dxf::no_record, manner_);
    }
    // What went lies below what came, above what stayed.
    void draw_before(session& before) { before_ = &before; }

    std::vector<std::wstring> images_not_shown() const { return shared_.images.told(); }
    std::vector<std::wstring> lacking() const { return lacking_.told(paper_); }

private:
    // What of a space can be seen in a view, the oldest first.
    std::vector<dxf::record_id> seen_of(dxf::record_id space, const sheet_view& view) {
        AcGePoint2d least;
        AcGePoint2d most;
        view.world_box(least, most);
        gi::flat_box around;
        constexpr double thickest = 3.0; // millimetres that lines reach beyond where they lie
        around.add(least.x, least.y, thickest / view.scale());
        around.add(most.x, most.y, thickest / view.scale());
        std::vector<dxf::record_id> entities = gi::entities_near(drawing_, space, around);
        std::reverse(entities.begin(), entities.end());
        return entities;
    }

    void draw_seen(dxf::record_id space, const sheet_view& view, dxf::record_id viewport,
                   const manner& manner) {
        std::vector<dxf::record_id> entities = seen_of(space, view);
        if (before_ == nullptr) {
            draw_entities(entities, view, viewport, manner);
            return;
        }
        const auto changed =
            std::stable_partition(entities.begin(), entities.end(), [&](dxf::record_id entity) {
                return manner.changed->of(drawing_, entity) == change::none;
            });
        const auto same = static_cast<std::size_t>(changed - entities.begin());
        draw_entities(std::span(entities).first(same), view, viewport, manner);
        const dxf::record_id old = before_->drawing_.blocks().find(drawing_.names().name_of(space));
        if (old != dxf::no_record) {
            const std::vector<dxf::record_id> gone = before_->seen_of(old, view);
            before_->draw_run(gone, view, dxf::no_record, before_->manner_);
        }
        draw_entities(std::span(entities).subspan(same), view, viewport, manner);
    }

    // What is seen of model space through the viewports of a sheet is drawn where they stand in its order.
    void draw_entities(std::span<const dxf::record_id> entities, const sheet_view& view,
                       dxf::record_id viewport, const manner& manner) {
        std::size_t drawn = 0;
        for (std::size_t i = 0; i < entities.size() && viewport == dxf::no_record; ++i)
            if (drawing_.records().type(entities[i]) == dxf::type_viewport &&
                !db::is_sheet_itself(drawing_, entities[i])) {
                draw_run(entities.subspan(drawn, i - drawn), view, viewport, manner);
                drawn = i;
                draw_viewport(entities[i], view);
            }
        draw_run(entities.subspan(drawn), view, viewport, manner);
    }

    // Draws entities in parts, which all cores make and which are put on the paper one after the other.
    void draw_run(std::span<const dxf::record_id> entities, const sheet_view& view, dxf::record_id viewport,
                  const manner& manner) {
        const auto make = [&] {
            const std::lock_guard hold(shared_.lock);
            auto made = std::make_unique<part_drawing>(drawing_, shared_, texts_, view, viewport, manner);
            return [worker = std::move(made), entities](std::size_t part, recorded_paper& drawn) {
                const std::size_t first = part * together;
                worker->draw(entities.subspan(first, std::min(together, entities.size() - first)), drawn);
            };
        };
        const auto take = [this](std::size_t, const recorded_paper& drawn) { drawn.draw_on(paper_); };
        base::work_in_order<recorded_paper>((entities.size() + together - 1) / together, make, take);
    }

    // What is seen of model space through a viewport of a sheet.
    void draw_viewport(dxf::record_id viewport, const sheet_view& sheet) {
        const std::unique_ptr<AcDbObject> object = drawing_.objects().view(viewport);
        const AcDbViewport* const seen = AcDbViewport::cast(object.get());
        const double scale = seen != nullptr ? seen->customScale() : 0.0;
        if (!(scale > 0.0) || !std::isfinite(scale) || is_off(viewport))
            return;
        const AcGePoint3d middle = seen->centerPoint();
        const AcGeVector3d half(seen->width() / 2.0, seen->height() / 2.0, 0.0);
        const sys::sheet_point low = sheet.at(middle - half);
        const sys::sheet_point high = sheet.at(middle + half);
        const sheet_box box{low.x, high.y, high.x, low.y};
        const sheet_view view =
            sheet_view::through(seen->viewTarget(), seen->viewDirection(), seen->twistAngle(),
                                seen->viewCenter(), scale * sheet.scale(), box);
        const dxf::record_id model = drawing_.blocks().find(ACDB_MODEL_SPACE);
        std::vector<sys::sheet_point> rim = rim_of(viewport, sheet);
        if (rim.empty())
            rim = {
                {box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}};
        manner inside = manner_;
        inside.linetype_scale = patterns_by_paper_ ? linetype_scale_ / scale : linetype_scale_;
        inside.viewport = viewport;
        paper_.push_clip(rim);
        draw_seen(model, view, viewport, inside);
        paper_.pop_clip();
    }

    // The entity that clips a viewport, as a line on the sheet; empty for a viewport that is a rectangle.
    std::vector<sys::sheet_point> rim_of(dxf::record_id viewport, const sheet_view& sheet) {
        constexpr dxf::group_place place{"AcDbViewport"};
        const dxf::group_list groups(drawing_.records().text(viewport));
        constexpr std::int64_t clipped = 0x10000;
        const dxf::record_id entity = drawing_.records().find(groups.handle(place, 340));
        if ((groups.integer(place, 90).value_or(0) & clipped) == 0 || entity == dxf::no_record ||
            drawing_.records().gone(entity))
            return {};
        rim_canvas canvas(sheet);
        gi::tracer(canvas).draw(drawing_, entity);
        return canvas.rim.size() > 2 ? std::move(canvas.rim) : std::vector<sys::sheet_point>();
    }

    bool is_off(dxf::record_id viewport) const {
        constexpr dxf::group_place place{"AcDbViewport"};
        const dxf::group_list groups(drawing_.records().text(viewport));
        constexpr std::int64_t off = 0x20000;
        if (const auto flags = groups.integer(place, 90))
            return (*flags & off) != 0;
        return groups.integer(place, 68).value_or(1) == 0;
    }

    static constexpr std::size_t together = 1024; // entities in a part, however many cores there are

    AcDbImpDatabase& drawing_;
    session* before_ = nullptr;
    sys::paper& paper_;
    lacking_fonts lacking_;
    text_painter texts_; // what is known of fonts
    shared_drawing shared_;
    manner manner_;
    double linetype_scale_ = 1.0;
    bool patterns_by_paper_ = true;
};

} // namespace

base::result<drawn> draw(AcDbImpDatabase& drawing, const request& request, sys::paper_format format) {
    std::vector<plan> plans;
    for (const dxf::record_id space : request.spaces)
        plans.push_back(planned(drawing, space, request));
    if (plans.empty())
        return base::failure{L"there is nothing to draw"};
    sys::paper_setup setup;
    setup.format = format;
    setup.width = plans.front().width;
    setup.height = plans.front().height;
    setup.dots_per_mm = request.dots_per_mm;
    if (request.dark)
        setup.background = {0, 0, 0};
    auto paper = sys::make_paper(setup);
    if (!paper)
        return paper.why();
    manner manner;
    manner.drawn_in = request.drawn_in;
    manner.background = setup.background;
    constexpr double finest_print = 0.05; // millimetres
    manner.dot = format == sys::paper_format::png ? 0.8 / request.dots_per_mm : finest_print;
    std::optional<changes> changed;
    if (request.before != nullptr)
        manner.changed = &changed.emplace(*request.before, drawing);
    picture::session session(drawing, **paper, manner);
    std::optional<picture::session> before;
    if (request.before != nullptr)
        session.draw_before(before.emplace(*request.before, **paper, manner));
    for (std::size_t i = 0; i < plans.size(); ++i) {
        if (i != 0)
            (*paper)->next_sheet(plans[i].width, plans[i].height);
        session.draw_space(request.spaces[i], plans[i].view);
    }
    drawn made;
    made.lacking = session.lacking();
    made.images = session.images_not_shown();
    auto bytes = (*paper)->finish();
    if (!bytes)
        return bytes.why();
    made.bytes = *std::move(bytes);
    return made;
}

} // namespace picture
