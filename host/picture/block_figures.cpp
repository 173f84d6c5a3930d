#include "host/picture/block_figures.h"

#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/references.h"
#include "host/db/tables/draw_order.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

namespace picture {

namespace {

// Keeps figures with the attributes of their entities.
class keeping_canvas final : public gi::canvas {
public:
    explicit keeping_canvas(block_figures& kept) : kept_(kept) {}

    void follow(const AcGiSubEntityTraits& traits) { traits_ = &traits; }
    bool is_plain() const { return plain_; }

    bool reads_traits() const override { return true; }
    bool is_done() const override { return !plain_; }
    bool enter(const gi::visit& entity) override {
        // These are drawn as more than their figures.
        const std::string_view type = entity.database->records().type_name(entity.entity);
        plain_ = plain_ && depth_ == 0 && type != "HATCH" && type != "POINT" && type != "IMAGE" &&
                 type != "WIPEOUT";
        if (!plain_)
            return false;
        ++depth_;
        entity_ = entity.entity;
        return true;
    }
    void leave() override { --depth_; }
    bool enter_block(const AcDbExtents& /*extents*/, const AcGeMatrix3d& /*to_world*/) override {
        plain_ = false;
        return false;
    }
    void lines(std::span<const AcGePoint3d> points) override {
        add(block_figures::kind::lines, points.size()).lists.emplace_back(points.begin(), points.end());
    }
    void area(std::span<const AcGePoint3d> points) override {
        add(block_figures::kind::areas, points.size()).lists.emplace_back(points.begin(), points.end());
    }
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override {
        std::size_t points = 0;
        for (const std::vector<AcGePoint3d>& rim : rims)
            points += rim.size();
        add(block_figures::kind::areas, points).lists.assign(rims.begin(), rims.end());
    }
    bool text(const gi::text_line& line) override {
        block_figures::figure& made = add(block_figures::kind::text, line.text.size());
        made.signs = line.text;
        made.line = line;
        made.line.text = made.signs;
        made.line.written_with = nullptr;
        if (line.written_with != nullptr) {
            made.font = *line.written_with;
            made.line.written_with = &made.font;
        }
        return true;
    }
    void curve(const gi::arc& arc) override { add(block_figures::kind::curve, 1).arc = arc; }
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override {
        block_figures::figure& made = add(block_figures::kind::unbounded, 1);
        made.arc.center = from;
        made.arc.u = direction;
        made.both = both;
    }

private:
    block_figures::figure& add(block_figures::kind what, std::size_t size) {
        constexpr std::size_t most = 20'000; // points and the like in a block
        size_ += size + 1;
        plain_ = plain_ && size_ < most;
        const block_figures::attributes now{entity_,
                                            traits_->trueColor(),
                                            traits_->layerId(),
                                            traits_->lineTypeId(),
                                            traits_->lineWeight(),
                                            traits_->lineTypeScale()};
        if (kept_.looks.empty() || !(kept_.looks.back() == now))
            kept_.looks.push_back(now);
        block_figures::figure& made = kept_.figures.emplace_back();
        made.what = what;
        made.look = kept_.looks.size() - 1;
        return made;
    }

    block_figures& kept_;
    const AcGiSubEntityTraits* traits_ = nullptr;
    dxf::record_id entity_ = dxf::no_record;
    std::size_t depth_ = 0;
    std::size_t size_ = 0;
    bool plain_ = true;
};

} // namespace

const block_figures* plain_blocks::find(std::string_view name) {
    const auto [at, fresh] = known_.try_emplace(name);
    if (fresh)
        if (const dxf::record_id block = drawing_.blocks().find_bytes(name); block != dxf::no_record)
            at->second = figures_of(block);
    return at->second.get();
}

std::unique_ptr<block_figures> plain_blocks::figures_of(dxf::record_id block) const {
    constexpr std::size_t most_entities = 2'000;
    if (drawing_.references().place(block).database != &drawing_)
        return nullptr;
    const std::vector<dxf::record_id> entities = db::drawn_in_order(drawing_, block);
    if (entities.size() > most_entities)
        return nullptr;
    auto made = std::make_unique<block_figures>();
    keeping_canvas canvas(*made);
    gi::tracer tracer(canvas);
    canvas.follow(tracer.subEntityTraits());
    for (const dxf::record_id entity : entities)
        if (canvas.is_plain())
            tracer.draw(drawing_, entity);
    if (!canvas.is_plain())
        return nullptr;
    made->extents = gi::extents_of_block(drawing_, block);
    made->base = drawing_.blocks().base_of(block);
    return made;
}

} // namespace picture
