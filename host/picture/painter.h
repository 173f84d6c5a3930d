// The canvas of pictures: figures with their look (colour, weight, pattern) put on a sheet.
//
// A look is resolved when it is drawn: ByLayer by the layer that rules there, ByBlock by the reference around
// it, layer 0 in a block by the layer of the reference.
#pragma once

#include "acgi.h"
#include "host/gi/canvas.h"
#include "host/picture/block_figures.h"
#include "host/picture/changes.h"
#include "host/picture/drawn_images.h"
#include "host/picture/layer_states.h"
#include "host/picture/line_pattern.h"
#include "host/picture/sheet_view.h"
#include "host/picture/text_painter.h"
#include "sys/paper.h"

#include <map>
#include <mutex>
#include <optional>
#include <tuple>
#include <unordered_map>

namespace gi {
class tracer;
}

namespace picture {

inline constexpr int default_weight = 25; // hundredths of a millimetre, what LWDEFAULT begins with

enum class colors { as_drawn, greys, black };

// What all of a picture has in common.
struct manner {
    colors drawn_in = colors::as_drawn;
    sys::ink background{255, 255, 255};
    double dot = 0.1;            // millimetres: what is smaller is a dot, and nobody sees it closer
    double weight_scale = 1.0;   // of lineweights
    bool plotted_only = true;    // leaves out layers that are not plotted
    double linetype_scale = 1.0; // $LTSCALE, and what a viewport makes of it
    dxf::record_id viewport = dxf::no_record; // whose looks of layers hold
    // Colours show what changed; of the drawing before only what went is drawn.
    const changes* changed = nullptr;
};

// What the painters of a picture have in common while several threads draw it. Whoever asks the drawing for
// more than the bytes of its records holds the lock; painters do so where `draw_plain` needs it, and must be
// called with it held for all else.
struct shared_drawing {
    explicit shared_drawing(AcDbImpDatabase& drawing) : blocks(drawing) {}

    std::mutex lock;
    plain_blocks blocks;
    drawn_images images;
};

class painter final : public gi::canvas {
public:
    // Draws what `states` show of a drawing, seen through `view`.
    painter(sys::paper& paper, text_painter& texts, AcDbImpDatabase& drawing, shared_drawing& shared,
            layer_states& states, const sheet_view& view, const manner& manner);

    // The tracer that draws for this canvas; it must outlive the last call.
    void follow(gi::tracer& tracer);

    // What comes next is drawn by itself: nothing is known of what the paper was told before.
    void begin_part();

    // Draws an entity of a space if it is of a usual kind (line, circle, arc, polyline, point, reference to a
    // plain block, text) with nothing unusual: from the groups of its record, without an object. False for
    // all others, of which nothing is drawn then.
    bool draw_plain(dxf::record_id entity);

    bool reads_traits() const override { return true; }
    bool sees_it_stand_still() const override { return true; }
    double finest() const override { return manner_.dot / view_.scale(); }
    bool enter(const gi::visit& entity) override;
    void leave() override { frames_.pop_back(); }
    bool enter_block(const AcDbExtents& extents, const AcGeMatrix3d& to_world) override;
    void lines(std::span<const AcGePoint3d> points) override;
    void area(std::span<const AcGePoint3d> points) override;
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override;
    bool text(const gi::text_line& line) override;
    void curve(const gi::arc& arc) override;
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override;

private:
    // A look with nothing left open.
    struct look {
        sys::pen pen;
        const line_pattern* pattern = nullptr; // null for a continuous line
        AcCmEntityColor color;
        int weight = 0; // hundredths of a millimetre
        double linetype_scale = 1.0;
        dxf::record_id layer = dxf::no_record; // of the drawing
        bool seen = false;
        change mark = change::none;
    };
    struct frame : layer_states::place {
        look around;               // of the reference, for what is ByBlock
        std::optional<look> known; // of the attributes below
        AcCmEntityColor color;
        AcDbObjectId layer;
        AcDbObjectId linetype;
        AcDb::LineWeight weight = AcDb::kLnWtByLayer;
        double linetype_scale = 1.0;
    };
    // Of entities that differ in their places alone.
    struct plain_look {
        layer_states::place place;
        look shown;
        bool frozen = false; // it, or what it stands in
    };
    // What they differ by otherwise: layer by its number, colour, true colour, weight, linetype, its scale.
    using plain_key =
        std::tuple<std::uint32_t, std::int64_t, std::int64_t, std::int64_t, std::string_view, double, change>;
    struct common_groups;
    struct layer_look {
        AcCmEntityColor color;
        const line_pattern* pattern = nullptr;
        int weight = 0;
        double opacity = 1.0;
        bool plotted = true;
        std::wstring name;
    };

    struct linetype {
        line_pattern pattern;
        bool by_layer = false;
        bool by_block = false;
        const line_pattern* drawn() const { return pattern.dashes.empty() ? nullptr : &pattern; }
    };

    const layer_look& look_of_layer(dxf::record_id layer);
    const linetype& linetype_of(const AcDbObjectId& id);
    // Of what is drawn now.
    const look& current();
    // What holds around what stands in the drawing itself.
    look of_nothing() const;
    const layer_state& state_of_layer(const frame& now);
    look resolve(frame& now);
    sys::ink ink_of(const AcCmEntityColor& color, double opacity) const;
    void show_change(look& found, const frame& now) const;
    double opacity_of(const frame& now, double of_layer) const;
    std::string_view type_now() const;

    // ---- entities drawn from their groups (plain_entities.cpp)

    const plain_look& look_of(dxf::record_id entity, const common_groups& groups);
    bool draw_plain_line(dxf::record_id entity);
    bool draw_plain_arc(dxf::record_id entity);
    bool draw_plain_polyline(dxf::record_id entity);
    bool draw_plain_point(dxf::record_id entity);
    bool draw_plain_reference(dxf::record_id entity);
    bool draw_plain_dimension(dxf::record_id entity);
    bool draw_plain_text(dxf::record_id entity); // or an attribute; plain_texts.cpp
    const AcGiTextStyle& style_named(std::string_view name);
    std::wstring message_of(std::string_view bytes);
    const block_figures* block_named(std::string_view name);
    const std::vector<plain_look>& looks_in(const block_figures& block, const plain_look& reference);
    plain_look look_in(const block_figures::attributes& part, const plain_look& reference);
    void draw_block(const block_figures& block, const AcGeMatrix3d& to_world, const plain_look& reference);
    void draw_figure(const block_figures::figure& figure, const AcGeMatrix3d& to_world, const look& look);
    void draw_attributes(dxf::record_id reference, const plain_look& own);

    enum class size { outside, dot, seen };
    size size_of(const AcDbExtents& extents, const AcGeMatrix3d& to_world) const;
    size size_of(std::span<const AcGePoint3d> corners, const AcGeMatrix3d& to_world) const;

    // Tells the paper on which layer things stand that come next.
    void put_on_layer(const look& look);
    void draw_lines(std::span<const AcGePoint3d> points, const look& look);
    void draw_curve(const gi::arc& arc, const look& look);
    void draw_text(const gi::text_line& line, const look& look);
    void draw_unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both, const look& look);
    void stroke(std::span<const AcGePoint3d> points, const look& look);
    void fill(std::span<const std::vector<AcGePoint3d>> rims, const look& look,
              const sys::shading* colors = nullptr);
    void dot(const AcGePoint3d& point, const look& look);
    void point_sign(const AcGePoint3d& point, const look& look);
    bool draw_inside(std::span<const AcGePoint3d> corners, const look& look);
    void write_path(const std::wstring& path, std::span<const AcGePoint3d> corners, const look& look);
    bool is_hatch_drawn(std::span<const std::vector<AcGePoint3d>> rims, const look& look);

    sys::paper& paper_;
    text_painter& texts_;
    AcDbImpDatabase& drawing_;
    shared_drawing& shared_;
    layer_states& states_;
    const sheet_view& view_;
    const manner& manner_;
    const AcGiSubEntityTraits* traits_ = nullptr;
    gi::tracer* tracer_ = nullptr;
    const look* around_ = nullptr; // of the reference whose attributes are drawn
    std::vector<frame> frames_;
    std::map<std::pair<const layer_states::table*, Adesk::LongPtr>, layer_state> part_states_;
    std::unordered_map<dxf::record_id, layer_look> layer_looks_;
    std::unordered_map<Adesk::LongPtr, linetype> linetypes_;
    std::map<plain_key, plain_look> plain_looks_;
    const std::pair<const plain_key, plain_look>* last_look_ = nullptr;
    std::unordered_map<std::string_view, const block_figures*> plain_blocks_;
    std::unordered_map<std::string_view, AcGiTextStyle> styles_; // by the bytes that texts name them with
    std::map<std::pair<const block_figures*, const plain_look*>, std::vector<plain_look>> block_looks_;
    std::vector<AcGePoint3d> points_;     // of the entity that is drawn
    std::optional<dxf::record_id> layer_; // that the paper knows of
    int point_mode_ = 0;
    double point_size_ = 0.0; // of the world
    int attribute_mode_ = 1;  // $ATTMODE: none, those that are not invisible, all
    sys::sheet_point last_dot_;
    sys::ink last_dot_ink_;
};

} // namespace picture
