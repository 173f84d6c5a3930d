// What a tracer is made of: the attributes that drawables set, and the geometry that they hand over.
#pragma once

#include "dbpl.h"
#include "host/db/core/imp_database.h"
#include "host/view/clip.h"
#include "host/view/nesting.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <map>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace gi {

class tracer::traits final : public AcGiDrawableTraits {
public:
    explicit traits(bool read) : read_(read) {}
    bool read() const { return read_; }

    void setColor(const Adesk::UInt16 color) override { color_.setColorIndex(color); }
    void setTrueColor(const AcCmEntityColor& color) override { color_ = color; }
    void setLayer(const AcDbObjectId layer) override { layer_ = layer; }
    void setLineType(const AcDbObjectId linetype) override { linetype_ = linetype; }
    void setLineTypeScale(double scale) override { linetype_scale_ = scale; }
    void setLineWeight(const AcDb::LineWeight weight) override { weight_ = weight; }
    void setFillType(const AcGiFillType type) override { fill_ = type; }
    void setThickness(double thickness) override { thickness_ = thickness; }
    void setSelectionMarker(const Adesk::LongPtr /*marker*/) override {}

    Adesk::UInt16 color() const override { return color_.colorIndex(); }
    AcCmEntityColor trueColor() const override { return color_; }
    AcDbObjectId layerId() const override { return layer_; }
    AcDbObjectId lineTypeId() const override { return linetype_; }
    double lineTypeScale() const override { return linetype_scale_; }
    AcDb::LineWeight lineWeight() const override { return weight_; }
    AcGiFillType fillType() const override { return fill_; }
    double thickness() const override { return thickness_; }

private:
    bool read_;
    AcCmEntityColor color_;
    AcDbObjectId layer_;
    AcDbObjectId linetype_;
    double linetype_scale_ = 1.0;
    AcDb::LineWeight weight_ = AcDb::kLnWtByLayer;
    AcGiFillType fill_ = kAcGiFillAlways;
    double thickness_ = 0.0;
};

class tracer::sink final : public AcGiWorldGeometry {
public:
    sink(tracer& owner, const AcGeMatrix3d& to_world) : owner_(owner) { stack_.push_back(to_world); }

    void getModelToWorldTransform(AcGeMatrix3d& matrix) const override { matrix = stack_.back(); }
    void getWorldToModelTransform(AcGeMatrix3d& matrix) const override { matrix = stack_.back().inverse(); }
    Adesk::Boolean pushModelTransform(const AcGeVector3d& normal) override {
        return pushModelTransform(AcGeMatrix3d::planeToWorld(normal));
    }
    Adesk::Boolean pushModelTransform(const AcGeMatrix3d& matrix) override {
        stack_.push_back(stack_.back() * matrix);
        return true;
    }
    Adesk::Boolean popModelTransform() override {
        if (stack_.size() > 1)
            stack_.pop_back();
        return true;
    }
    Adesk::Boolean pushClipBoundary(AcGiClipBoundary* boundary) override;
    void popClipBoundary() override {
        if (!clips_.empty())
            clips_.pop_back();
    }

    Adesk::Boolean circle(const AcGePoint3d& center, const double radius,
                          const AcGeVector3d& normal) const override {
        return circularArc(center, radius, normal, normal.perpVector(), full_turn);
    }
    Adesk::Boolean circle(const AcGePoint3d& first, const AcGePoint3d& second,
                          const AcGePoint3d& third) const override {
        return through(first, second, third, true, kAcGiArcSimple);
    }
    Adesk::Boolean circularArc(const AcGePoint3d& center, const double radius, const AcGeVector3d& normal,
                               const AcGeVector3d& startVector, const double sweepAngle,
                               const AcGiArcType arcType = kAcGiArcSimple) const override;
    Adesk::Boolean circularArc(const AcGePoint3d& start, const AcGePoint3d& point, const AcGePoint3d& end,
                               const AcGiArcType arcType = kAcGiArcSimple) const override {
        return through(start, point, end, false, arcType);
    }
    Adesk::Boolean polyline(const Adesk::UInt32 nbPoints, const AcGePoint3d* points,
                            const AcGeVector3d* normal, Adesk::LongPtr /*marker*/) const override;
    Adesk::Boolean polygon(const Adesk::UInt32 nbPoints, const AcGePoint3d* points) const override;
    Adesk::Boolean mesh(const Adesk::UInt32 rows, const Adesk::UInt32 columns,
                        const AcGePoint3d* points) const override;
    Adesk::Boolean shell(const Adesk::UInt32 nbVertex, const AcGePoint3d* vertices,
                         const Adesk::UInt32 faceListSize, const Adesk::Int32* faces) const override;
    Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                        const AcGeVector3d& direction, const double height, const double width,
                        const double oblique, const ACHAR* message) const override {
        AcGiTextStyle style;
        style.setTextSize(height);
        style.setXScale(width);
        style.setObliquingAngle(oblique);
        return text(position, normal, direction, message, -1, false, style);
    }
    Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                        const AcGeVector3d& direction, const ACHAR* message, const Adesk::Int32 length,
                        const Adesk::Boolean raw, const AcGiTextStyle& style) const override;
    Adesk::Boolean xline(const AcGePoint3d& first, const AcGePoint3d& second) const override {
        out().unbounded(stack_.back() * first, stack_.back() * (second - first), true);
        return false;
    }
    Adesk::Boolean ray(const AcGePoint3d& first, const AcGePoint3d& second) const override {
        out().unbounded(stack_.back() * first, stack_.back() * (second - first), false);
        return false;
    }
    Adesk::Boolean pline(const AcDbPolyline& polyline, Adesk::UInt32 /*fromIndex*/,
                         Adesk::UInt32 /*numSegs*/) const override {
        return const_cast<AcDbPolyline&>(polyline).worldDraw(&owner_);
    }
    Adesk::Boolean draw(AcGiDrawable* drawable) const override;
    bool wants(const AcDbExtents& extents) const { return out().enter_block(extents, stack_.back()); }
    bool tells_apart(const AcGeVector3d& step) const {
        return (stack_.back() * step).length() >= out().finest();
    }
    void setExtents(AcGePoint3d* extents) const override {
        if (owner_.purpose_ == kAcGiForExtents && extents != nullptr)
            polyline(2, extents, nullptr, -1);
    }

private:
    static constexpr double full_turn = 2.0 * std::numbers::pi;
    // A reference and its block for each, and what stands in the last one.
    static constexpr std::size_t deepest = 2 * most_nested_blocks + 1;
    // Drawn once more than the drawings hold, within one entity: blocks that hold each other many times over
    // would not end in anybody's lifetime.
    static constexpr std::size_t most_repeated = 1'000'000;

    struct place {
        AcDbImpDatabase* database;
        dxf::record_id record;
        friend bool operator==(const place&, const place&) = default;
    };
    // An entity of a block, and the attributes that it sets.
    struct part {
        std::unique_ptr<AcDbObject> view;
        traits attributes{true};
        bool is_invisible = false;
    };
    static constexpr std::size_t most_kept = 100'000; // parts of blocks

    std::vector<AcGePoint3d> in_world(std::size_t count, const AcGePoint3d* points) const {
        std::vector<AcGePoint3d> moved(points, points + count);
        for (AcGePoint3d& point : moved)
            point = stack_.back() * point;
        return moved;
    }
    // What an extrusion adds to a point; nothing without thickness.
    AcGeVector3d extrusion(const AcGeVector3d* normal) const {
        const double thickness = owner_.subEntityTraits().thickness();
        if (thickness == 0.0)
            return {};
        return stack_.back() * ((normal != nullptr ? *normal : AcGeVector3d::kZAxis) * thickness);
    }
    void draw_block(AcGiDrawable& block, const place& here) const;
    // An entity, with its attributes where they are known.
    void draw_entity(AcGiDrawable& drawable, const AcDbObject* object, const part* known) const;
    std::vector<part> parts_of(const place& block) const;

    Adesk::Boolean through(const AcGePoint3d& first, const AcGePoint3d& second, const AcGePoint3d& third,
                           bool whole, AcGiArcType type) const;

    // What the drawings that an entity leads into hold may be drawn, each of them for its first time.
    void allow(const AcDbImpDatabase& database) const {
        if (std::find(entered_.begin(), entered_.end(), &database) != entered_.end())
            return;
        entered_.push_back(&database);
        most_drawn_ += database.records().size();
    }

    canvas& out() const { return clips_.empty() ? owner_.canvas_ : static_cast<canvas&>(*clips_.back()); }

    tracer& owner_;
    std::vector<AcGeMatrix3d> stack_;
    mutable std::vector<std::unique_ptr<clipped_canvas>> clips_; // each over the one before it
    mutable std::vector<place> blocks_;                          // that are being drawn
    mutable std::map<std::pair<const AcDbImpDatabase*, dxf::record_id>, std::vector<part>> kept_; // by blocks
    mutable std::size_t parts_kept_ = 0;
    mutable std::size_t depth_ = 0;
    mutable std::size_t drawn_ = 0; // within the outermost drawable
    mutable std::size_t most_drawn_ = 0;
    mutable std::vector<const AcDbImpDatabase*> entered_; // by it
};

} // namespace gi
