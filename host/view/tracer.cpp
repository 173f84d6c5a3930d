#include "host/view/tracer.h"

#include "dbents.h"
#include "dbpl.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/tables/draw_order.h"
#include "host/gi/font.h"
#include "host/view/clip.h"
#include "host/view/extents.h"
#include "host/view/nesting.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

ACRX_NO_CONS_DEFINE_MEMBERS(AcGiSubEntityTraits, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiDrawableTraits, AcGiSubEntityTraits)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiGeometry, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiWorldGeometry, AcGiGeometry)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiCommonDraw, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiWorldDraw, AcGiCommonDraw)

namespace gi {

namespace {

// A line under, through or over some of the signs of a text.
struct text_rule {
    std::size_t place; // 0 under, 1 through, 2 over
    std::size_t first; // sign
    std::size_t last;  // behind the last one
};

// Those that the codes %%u, %%k and %%o switch on and off in a text of which `count` signs are shown.
std::vector<text_rule> rules_of(std::wstring_view text, std::size_t count, bool under, bool over) {
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t begun[] = {under ? 0 : none, none, over ? 0 : none};
    std::vector<text_rule> rules;
    const auto end = [&](std::size_t place, std::size_t at) {
        if (begun[place] != none && at > begun[place])
            rules.push_back({place, begun[place], at});
        begun[place] = none;
    };
    for (std::size_t at = text.find(L"%%"); at != text.npos && at + 2 < text.size();
         at = text.find(L"%%", at)) {
        const std::size_t place = std::wstring_view(L"uUkKoO").find(text[at + 2]) / 2;
        at += 3;
        if (place > 2)
            continue;
        const std::size_t shown = shown_text(text.substr(0, at)).size();
        if (begun[place] == none)
            begun[place] = shown;
        else
            end(place, shown);
    }
    for (std::size_t place = 0; place < 3; ++place)
        end(place, count);
    return rules;
}

} // namespace

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

Adesk::Boolean tracer::sink::circularArc(const AcGePoint3d& center, const double radius,
                                         const AcGeVector3d& normal, const AcGeVector3d& startVector,
                                         const double sweepAngle, const AcGiArcType arcType) const {
    const AcGeVector3d x = startVector.normal() * radius;
    const AcGeVector3d y = normal.normal().crossProduct(x);
    const AcGeMatrix3d& m = stack_.back();
    arc drawn{m * center, m * x, m * y, 0.0, sweepAngle};
    out().curve(drawn);
    if (const AcGeVector3d up = extrusion(&normal); !up.isZeroLength()) {
        const AcGePoint3d sides[] = {drawn.at(0.0), drawn.at(0.0) + up};
        out().lines(sides);
        drawn.center += up;
        out().curve(drawn);
        const AcGePoint3d other[] = {drawn.at(sweepAngle) - up, drawn.at(sweepAngle)};
        out().lines(other);
    }
    if (arcType == kAcGiArcSector) {
        const AcGePoint3d rim[] = {drawn.at(0.0), drawn.center, drawn.at(sweepAngle)};
        out().lines(rim);
    } else if (arcType == kAcGiArcChord) {
        const AcGePoint3d rim[] = {drawn.at(0.0), drawn.at(sweepAngle)};
        out().lines(rim);
    }
    return false;
}

Adesk::Boolean tracer::sink::through(const AcGePoint3d& first, const AcGePoint3d& second,
                                     const AcGePoint3d& third, bool whole, AcGiArcType type) const {
    const AcGeVector3d a = second - first;
    const AcGeVector3d b = third - first;
    const AcGeVector3d normal = a.crossProduct(b);
    if (normal.isZeroLength()) { // the three stand in a line
        const AcGePoint3d line[] = {first, second, third};
        return polyline(3, line, nullptr, -1);
    }
    const AcGePoint3d center =
        first + (normal.crossProduct(a) * b.lengthSqrd() + b.crossProduct(normal) * a.lengthSqrd()) /
                    (2.0 * normal.lengthSqrd());
    const AcGeVector3d start = first - center;
    const double sweep = whole ? full_turn : start.angleTo(third - center, normal);
    return circularArc(center, start.length(), normal, start, sweep, type);
}

Adesk::Boolean tracer::sink::polyline(const Adesk::UInt32 nbPoints, const AcGePoint3d* points,
                                      const AcGeVector3d* normal, Adesk::LongPtr /*marker*/) const {
    const std::vector<AcGePoint3d> moved = in_world(nbPoints, points);
    out().lines(moved);
    if (const AcGeVector3d up = extrusion(normal); !up.isZeroLength()) {
        std::vector<AcGePoint3d> lifted = moved;
        for (AcGePoint3d& point : lifted)
            point += up;
        out().lines(lifted);
        for (std::size_t i = 0; i < moved.size(); ++i) {
            const AcGePoint3d side[] = {moved[i], lifted[i]};
            out().lines(side);
        }
    }
    return false;
}

Adesk::Boolean tracer::sink::polygon(const Adesk::UInt32 nbPoints, const AcGePoint3d* points) const {
    std::vector<AcGePoint3d> moved = in_world(nbPoints, points);
    if (owner_.subEntityTraits().fillType() == kAcGiFillAlways) {
        out().area(moved);
    } else if (!moved.empty()) {
        moved.push_back(moved.front());
        out().lines(moved);
    }
    return false;
}

Adesk::Boolean tracer::sink::mesh(const Adesk::UInt32 rows, const Adesk::UInt32 columns,
                                  const AcGePoint3d* points) const {
    const std::vector<AcGePoint3d> moved = in_world(std::size_t{rows} * columns, points);
    for (std::size_t row = 0; row < rows; ++row)
        out().lines(std::span(moved).subspan(row * columns, columns));
    std::vector<AcGePoint3d> column(rows);
    for (std::size_t i = 0; i < columns; ++i) {
        for (std::size_t row = 0; row < rows; ++row)
            column[row] = moved[row * columns + i];
        out().lines(column);
    }
    return false;
}

Adesk::Boolean tracer::sink::shell(const Adesk::UInt32 nbVertex, const AcGePoint3d* vertices,
                                   const Adesk::UInt32 faceListSize, const Adesk::Int32* faces) const {
    const std::vector<AcGePoint3d> moved = in_world(nbVertex, vertices);
    std::vector<std::vector<AcGePoint3d>> rims; // of a face and the holes behind it
    const auto draw_face = [&] {
        if (rims.size() == 1)
            out().area(rims.front());
        else if (!rims.empty())
            out().area_of_rims(rims);
        rims.clear();
    };
    for (Adesk::UInt32 at = 0; at < faceListSize;) {
        const std::int64_t signed_count = faces[at++];
        if (signed_count >= 0)
            draw_face();
        const auto count = static_cast<Adesk::UInt32>(
            std::min<std::int64_t>(std::abs(signed_count), std::int64_t{faceListSize} - at));
        std::vector<AcGePoint3d> rim;
        rim.reserve(count);
        for (Adesk::UInt32 i = 0; i < count; ++i)
            if (const auto index = static_cast<Adesk::UInt32>(faces[at + i]); index < nbVertex)
                rim.push_back(moved[index]);
        at += count;
        if (!rim.empty())
            rims.push_back(std::move(rim));
    }
    draw_face();
    return false;
}

Adesk::Boolean tracer::sink::text(const AcGePoint3d& position, const AcGeVector3d& normal,
                                  const AcGeVector3d& direction, const ACHAR* message,
                                  const Adesk::Int32 length, const Adesk::Boolean raw,
                                  const AcGiTextStyle& style) const {
    std::wstring_view signs = message != nullptr ? message : L"";
    if (length >= 0)
        signs = signs.substr(0, static_cast<std::size_t>(length));
    const std::wstring shown = raw ? std::wstring(signs) : shown_text(signs);
    const text_box box =
        measure_text(shown, style.imp().hand, style.textSize(), style.xScale(), style.trackingPercent());
    if (shown.empty())
        return false;
    AcGeVector3d x = direction.normal();
    AcGeVector3d y = normal.normal().crossProduct(x);
    if (style.isBackward())
        x = -x;
    if (style.isUpsideDown())
        y = -y;
    const AcGeMatrix3d& to_world = stack_.back();
    const double wide = style.textSize() * style.xScale();
    if (out().text({to_world * position, to_world * (x * wide), to_world * (y * style.textSize()),
                    style.obliquingAngle(), shown, &style.imp(), wide > 0.0 ? box.width / wide : 0.0})) {
        const auto width_of = [&](std::size_t count) {
            return measure_text(std::wstring_view(shown).substr(0, count), style.imp().hand, style.textSize(),
                                style.xScale(), style.trackingPercent())
                .width;
        };
        for (const text_rule& rule : rules_of(raw ? std::wstring_view() : signs, shown.size(),
                                              style.isUnderlined(), style.isOverlined())) {
            constexpr double places[] = {-0.2, 0.5, 1.2}; // heights above the base line
            const AcGePoint3d at = position + y * (places[rule.place] * style.textSize());
            const AcGePoint3d ends[] = {at + x * (rule.first == 0 ? 0.0 : width_of(rule.first)),
                                        at + x * width_of(rule.last)};
            out().lines(in_world(2, ends));
        }
        return false;
    }
    const AcGeVector3d slanted = y + x * std::tan(style.obliquingAngle());
    const AcGePoint3d start = position + slanted * box.bottom;
    const AcGeVector3d along = x * box.width;
    const AcGeVector3d up = slanted * (box.top - box.bottom);
    const AcGePoint3d corners[] = {start, start + along, start + along + up, start + up};
    std::vector<AcGePoint3d> figure = in_world(4, corners);
    out().area(figure);
    if (const AcGeVector3d lift = extrusion(&normal); !lift.isZeroLength()) {
        for (AcGePoint3d& corner : figure)
            corner += lift;
        out().area(figure);
    }
    return false;
}

Adesk::Boolean tracer::sink::pushClipBoundary(AcGiClipBoundary* boundary) {
    AcGeMatrix3d from_world;
    const AcGeMatrix3d& to_block = boundary != nullptr ? boundary->m_xInverseBlockRefXForm : from_world;
    if (boundary == nullptr || boundary->m_aptPoints.length() < 2 || stack_.back().isSingular() ||
        to_block.isSingular())
        return false;
    clip_boundary clip;
    clip.from_world = boundary->m_xToClipSpace * to_block.inverse() * stack_.back().inverse();
    for (const AcGePoint2d& corner : boundary->m_aptPoints)
        clip.polygon.push_back(corner);
    if (clip.polygon.size() == 2) {
        const AcGePoint2d first = clip.polygon[0];
        const AcGePoint2d last = clip.polygon[1];
        clip.polygon = {first, {last.x, first.y}, last, {first.x, last.y}};
    }
    if (boundary->m_bClippingFront)
        clip.most_z = boundary->m_dFrontClipZ;
    if (boundary->m_bClippingBack)
        clip.least_z = boundary->m_dBackClipZ;
    clips_.push_back(std::make_unique<clipped_canvas>(out(), std::move(clip)));
    return true;
}

Adesk::Boolean tracer::sink::draw(AcGiDrawable* drawable) const {
    const AcDbObject* const object = AcDbObject::cast(drawable);
    AcDbImpDatabase* const database = object != nullptr ? object->imp().database : nullptr;
    if (drawable != nullptr && depth_ >= deepest && database != nullptr)
        tell_too_deep(*database);
    if (drawable == nullptr || depth_ >= deepest)
        return false;
    if (depth_ == 0) {
        drawn_ = 0;
        most_drawn_ = most_repeated;
        entered_.clear();
    }
    if (database != nullptr)
        allow(*database);
    if (++drawn_ > most_drawn_ || owner_.regenAbort())
        return true;
    if (database != nullptr && AcDbBlockTableRecord::cast(object) != nullptr) {
        const place here{database, object->imp().record};
        if (std::find(blocks_.begin(), blocks_.end(), here) != blocks_.end())
            return false; // a block in itself
        if (!out().enter_block(extents_of_block(*database, here.record), stack_.back()))
            return false;
        blocks_.push_back(here);
        ++depth_;
        draw_block(*drawable, here);
        --depth_;
        blocks_.pop_back();
        return false;
    }
    draw_entity(*drawable, object, nullptr);
    return false;
}

void tracer::sink::draw_entity(AcGiDrawable& drawable, const AcDbObject* object, const part* known) const {
    AcDbImpDatabase* const database = object != nullptr ? object->imp().database : nullptr;
    if (database != nullptr && !out().enter({database, object->imp().record, stack_.back()}))
        return;
    const traits before = *owner_.traits_;
    const std::size_t pushed = stack_.size();
    const std::size_t clipped = clips_.size();
    ++depth_;
    bool is_invisible = false;
    if (known != nullptr) {
        *owner_.traits_ = known->attributes;
        is_invisible = known->is_invisible;
    } else {
        *owner_.traits_ = traits(before.read());
        is_invisible =
            (drawable.setAttributes(owner_.traits_.get()) & AcGiDrawable::kDrawableIsInvisible) != 0;
    }
    if (!is_invisible)
        drawable.worldDraw(&owner_);
    --depth_;
    // What a drawable pushed and did not pop.
    const_cast<sink*>(this)->stack_.resize(pushed);
    while (clips_.size() > clipped)
        clips_.pop_back();
    *owner_.traits_ = before;
    if (database != nullptr)
        out().leave();
}

std::vector<tracer::sink::part> tracer::sink::parts_of(const place& block) const {
    std::vector<part> parts;
    for (const dxf::record_id entity : db::drawn_in_order(*block.database, block.record)) {
        part made;
        made.view = block.database->objects().view(entity);
        if (made.view == nullptr)
            continue;
        made.is_invisible =
            (made.view->setAttributes(&made.attributes) & AcGiDrawable::kDrawableIsInvisible) != 0;
        parts.push_back(std::move(made));
    }
    return parts;
}

void tracer::sink::draw_block(AcGiDrawable& block, const place& here) const {
    if (!owner_.canvas_.sees_it_stand_still()) {
        block.worldDraw(&owner_);
        return;
    }
    const std::pair<const AcDbImpDatabase*, dxf::record_id> key(here.database, here.record);
    auto at = kept_.find(key);
    if (at == kept_.end()) {
        const auto [database, record] = here.database->references().place(here.record);
        if (parts_kept_ + database->blocks().entities(record).size() > most_kept) {
            block.worldDraw(&owner_);
            return;
        }
        at = kept_.emplace(key, parts_of({database, record})).first;
        parts_kept_ += at->second.size();
    }
    for (const part& each : at->second) {
        if (owner_.regenAbort())
            break;
        AcDbImpDatabase* const database = each.view->imp().database;
        if (depth_ >= deepest && database != nullptr)
            tell_too_deep(*database);
        if (depth_ >= deepest)
            break;
        if (database != nullptr)
            allow(*database);
        if (++drawn_ > most_drawn_)
            break;
        draw_entity(*each.view, each.view.get(), &each);
    }
}

tracer::tracer(canvas& target, AcGiRegenType purpose, const AcGeMatrix3d& to_world)
    : canvas_(target), purpose_(purpose), traits_(std::make_unique<traits>(target.reads_traits())),
      sink_(std::make_unique<sink>(*this, to_world)) {
}

tracer::~tracer() = default;

void tracer::draw(AcDbImpDatabase& database, dxf::record_id entity) {
    if (const std::unique_ptr<AcDbObject> view = database.objects().view(entity))
        draw(*view);
}

void tracer::draw(const AcGiDrawable& drawable) {
    sink_->draw(const_cast<AcGiDrawable*>(&drawable));
}

AcGiSubEntityTraits& tracer::subEntityTraits() const {
    return *traits_;
}

AcGiGeometry* tracer::rawGeometry() const {
    return sink_.get();
}

AcGiWorldGeometry& tracer::geometry() const {
    return *sink_;
}

bool tracer::wants(const AcDbExtents& extents) const {
    return sink_->wants(extents);
}

bool tracer::tells_apart(const AcGeVector3d& step) const {
    return sink_->tells_apart(step);
}

bool tracer::reads(const AcGiDrawableTraits* attributes) {
    const auto* const own = dynamic_cast<const traits*>(attributes);
    return attributes != nullptr && (own == nullptr || own->read());
}

double tracer::deviation(const AcGiDeviationType /*type*/, const AcGePoint3d& /*point*/) const {
    constexpr double fine = 0.1; // a tenth of a millimetre
    return fine;
}

} // namespace gi
