#include "host/ed/pick.h"

#include "dbmain.h"
#include "host/ed/view.h"
#include "host/picture/layer_states.h"
#include "host/view/extents.h"
#include "host/view/space_index.h"
#include "host/view/tracer.h"

namespace ed {

namespace {

// Tests what an entity of the space draws, with what is drawn in it, against a region. Of what lies one above
// the other the last drawn is on top, and so is remembered.
class testing final : public gi::canvas {
public:
    // What the answer depends on: the topmost hit, or whether anything is touched, or everything inside.
    enum class wanted { topmost, any, all };

    testing(const gi::region& region, picture::layer_states& states, wanted what)
        : region_(region), states_(states), wanted_(what), all_(region) {}

    bool touched() const { return touched_; }
    bool all_inside() const { return all_.all_inside(); }
    // The entities from the outermost to the one that was hit.
    const std::vector<gi::visit>& path() const { return path_; }

    bool enter(const gi::visit& entity) override {
        const auto place = states_.inside(places_.empty() ? nullptr : &places_.back(), entity);
        if (place.state.frozen)
            return false;
        places_.push_back(place);
        return true;
    }
    void leave() override { places_.pop_back(); }
    bool is_done() const override {
        return wanted_ == wanted::any ? touched_ : wanted_ == wanted::all && all_.any_outside();
    }
    bool enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) override {
        if (gi::is_empty(block))
            return true; // of what has no extents, lines without end may yet be hit
        AcDbExtents moved = block;
        moved.transformBy(to_world);
        const bool meets = moved.minPoint().x <= region_.most().x &&
                           moved.maxPoint().x >= region_.least().x &&
                           moved.minPoint().y <= region_.most().y && moved.maxPoint().y >= region_.least().y;
        if (!meets && seen()) { // all of it is outside
            const AcGePoint3d corner[] = {moved.minPoint()};
            all_.lines(corner);
        }
        return meets;
    }
    void lines(std::span<const AcGePoint3d> points) override {
        test([&](gi::region_test& test) { test.lines(points); });
    }
    void area(std::span<const AcGePoint3d> points) override {
        test([&](gi::region_test& test) { test.area(points); });
    }
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override {
        test([&](gi::region_test& test) { test.area_of_rims(rims); });
    }
    void curve(const gi::arc& arc) override {
        test([&](gi::region_test& test) { test.curve(arc); });
    }
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override {
        test([&](gi::region_test& test) { test.unbounded(from, direction, both); });
    }

private:
    // An off layer hides what is drawn on it; references on it still show what stands on other layers.
    bool seen() const { return !places_.empty() && !places_.back().state.off; }

    template<class Figure>
    void test(Figure figure) {
        if (!seen())
            return;
        figure(all_);
        gi::region_test one(region_);
        figure(one);
        if (!one.touched())
            return;
        touched_ = true;
        path_.clear();
        for (const auto& around : places_)
            path_.push_back(around.entity);
    }

    const gi::region& region_;
    picture::layer_states& states_;
    wanted wanted_;
    gi::region_test all_;
    bool touched_ = false;
    std::vector<gi::visit> path_;
    std::vector<picture::layer_states::place> places_;
};

dxf::record_id current_space(AcDbImpDatabase& database) {
    return database.record(database.self().currentSpaceId());
}

gi::flat_box box_around(const gi::region& region) {
    gi::flat_box box;
    box.add(region.least().x, region.least().y);
    box.add(region.most().x, region.most().y);
    return box;
}

} // namespace

std::optional<hit> pick(AcDbImpDatabase& database, const AcGePoint3d& point) {
    const double half = pick_reach(database);
    const gi::region box =
        gi::region::box({point.x - half, point.y - half}, {point.x + half, point.y + half});
    picture::layer_states states(database);
    for (const dxf::record_id entity :
         gi::entities_near(database, current_space(database), box_around(box))) {
        testing test(box, states, testing::wanted::topmost);
        gi::tracer(test).draw(database, entity);
        if (!test.touched())
            continue;
        hit found;
        found.entity = entity;
        found.innermost = test.path().back().database->id(test.path().back().entity);
        found.to_world = test.path().back().to_world;
        for (std::size_t i = test.path().size() - 1; i-- > 0;)
            found.containers.push_back(test.path()[i].database->id(test.path()[i].entity));
        return found;
    }
    return std::nullopt;
}

std::vector<dxf::record_id> entities_in(AcDbImpDatabase& database, const gi::region& region, reach reach) {
    std::vector<dxf::record_id> found;
    picture::layer_states states(database);
    for (const dxf::record_id entity :
         gi::entities_near(database, current_space(database), box_around(region))) {
        testing test(region, states, reach == reach::inside ? testing::wanted::all : testing::wanted::any);
        gi::tracer(test).draw(database, entity);
        if (reach == reach::inside ? test.all_inside() : test.touched())
            found.push_back(entity);
    }
    return found;
}

} // namespace ed
