#include "host/view/tracer.h"

#include "dbents.h"
#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/tables/draw_order.h"
#include "host/view/extents.h"
#include "host/view/tracer_sink.h"

#include <algorithm>

ACRX_NO_CONS_DEFINE_MEMBERS(AcGiSubEntityTraits, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiDrawableTraits, AcGiSubEntityTraits)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiGeometry, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiWorldGeometry, AcGiGeometry)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiCommonDraw, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcGiWorldDraw, AcGiCommonDraw)

namespace gi {

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
