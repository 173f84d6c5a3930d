#include "host/picture/block_figures.h"

#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/references.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

namespace picture {

namespace {

// Keeps figures with the attributes of their entities.
class keeping_canvas final : public gi::canvas {
public:
    keeping_canvas(const AcDbImpDatabase& drawing, block_figures& kept) : drawing_(drawing), kept_(kept) {}

    void follow(const AcGiSubEntityTraits& traits) { traits_ = &traits; }
    bool is_plain() const { return plain_; }
    std::size_t size() const { return size_; }

    bool reads_traits() const override { return true; }
    bool is_done() const override { return !plain_; }
    bool enter(const gi::visit& entity) override {
        // These are drawn as more than their figures.
        const std::string_view type = entity.database->records().type_name(entity.entity);
        plain_ =
            plain_ && entity.database == &drawing_ && type != "HATCH" && type != "IMAGE" && type != "WIPEOUT";
        if (!plain_)
            return false;
        level made;
        made.entity = entity.entity;
        made.is_point = type == "POINT";
        if (!levels_.empty()) {
            made.around = look_now();
            if (drawing_.records().kind(entity.entity) == dxf::record_kind::part)
                end_reference(); // attributes stand behind what it shows
        }
        levels_.push_back(made);
        return true;
    }
    void leave() override {
        end_reference();
        levels_.pop_back();
    }
    bool enter_block(const AcDbExtents& extents, const AcGeMatrix3d& to_block) override {
        if (levels_.empty())
            return true; // the block itself
        plain_ = plain_ && !levels_.back().has_shown;
        levels_.back().has_shown = true;
        if (!plain_ || gi::is_empty(extents))
            return plain_;
        block_figures::figure& made = add(block_figures::kind::nested, 8);
        for (const AcGePoint3d& corner : gi::corners_of(extents))
            made.lists.front().push_back(to_block * corner);
        levels_.back().reference = kept_.figures.size();
        return plain_;
    }
    void lines(std::span<const AcGePoint3d> points) override {
        const bool is_point = points.size() == 1 && levels_.back().is_point;
        add(is_point ? block_figures::kind::point : block_figures::kind::lines, points.size())
            .lists.front()
            .assign(points.begin(), points.end());
    }
    void area(std::span<const AcGePoint3d> points) override {
        add(block_figures::kind::areas, points.size()).lists.front().assign(points.begin(), points.end());
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
    // An entity, within those that hold it.
    struct level {
        dxf::record_id entity = dxf::no_record;
        std::size_t around = block_figures::of_block;
        std::size_t look = block_figures::of_block; // the last of its own
        std::size_t reference = 0;                  // number of the figure behind its `nested`, or 0
        bool has_shown = false;                     // a block
        bool is_point = false;
    };

    std::size_t look_now() {
        level& now = levels_.back();
        const block_figures::attributes wanted{now.entity,
                                               traits_->trueColor(),
                                               traits_->layerId(),
                                               traits_->lineTypeId(),
                                               traits_->lineWeight(),
                                               traits_->lineTypeScale(),
                                               now.around};
        if (now.look == block_figures::of_block || !(kept_.looks[now.look] == wanted)) {
            now.look = kept_.looks.size();
            kept_.looks.push_back(wanted);
        }
        return now.look;
    }
    block_figures::figure& add(block_figures::kind what, std::size_t size) {
        constexpr std::size_t most = 20'000; // points and the like in a block
        size_ += size + 1;
        plain_ = plain_ && size_ < most;
        const std::size_t look = look_now();
        block_figures::figure& made = kept_.figures.emplace_back();
        made.what = what;
        made.look = look;
        made.lists.resize(1);
        return made;
    }
    void end_reference() {
        std::size_t& first = levels_.back().reference;
        if (first != 0)
            kept_.figures[first - 1].inside = kept_.figures.size() - first;
        first = 0;
    }

    const AcDbImpDatabase& drawing_;
    block_figures& kept_;
    const AcGiSubEntityTraits* traits_ = nullptr;
    std::vector<level> levels_;
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

std::unique_ptr<block_figures> plain_blocks::figures_of(dxf::record_id block) {
    constexpr std::size_t most_entities = 2'000;
    constexpr std::size_t most_kept = 2'000'000;
    if (kept_ > most_kept || drawing_.references().place(block).database != &drawing_ ||
        drawing_.blocks().entities(block).size() > most_entities)
        return nullptr;
    auto made = std::make_unique<block_figures>();
    keeping_canvas canvas(drawing_, *made);
    gi::tracer tracer(canvas);
    canvas.follow(tracer.subEntityTraits());
    tracer.draw(drawing_, block);
    if (!canvas.is_plain())
        return nullptr;
    kept_ += canvas.size();
    made->extents = gi::extents_of_block(drawing_, block);
    made->base = drawing_.blocks().base_of(block);
    return made;
}

} // namespace picture
