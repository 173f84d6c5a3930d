// How what is drawn looks: colour, weight, pattern and opacity through layers, blocks and viewports.
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/layer_look.h"
#include "host/db/tables/properties.h"
#include "host/picture/painter.h"
#include "host/picture/viewport_looks.h"

#include <algorithm>
#include <cmath>

namespace picture {

namespace {

// How opaque something is, from a transparency as files write it: 0x020000NN, NN from 255 (opaque) to 0;
// others say nothing of their own.
std::optional<double> opacity_of_number(std::int64_t number) {
    constexpr std::int64_t of_its_own = 0x02000000;
    constexpr std::int64_t by_block = 0x01000000;
    if ((number & of_its_own) == 0 || (number & by_block) != 0)
        return std::nullopt;
    return static_cast<double>(number & 0xFF) / 255.0;
}

} // namespace

const painter::linetype& painter::linetype_of(const AcDbObjectId& id) {
    const auto [at, fresh] = linetypes_.try_emplace(id.asOldId());
    linetype& found = at->second;
    if (!fresh)
        return found;
    AcDbDatabase* const database = id.database();
    const std::unique_ptr<AcDbObject> view =
        database != nullptr ? database->imp().objects().view(database->imp().record(id)) : nullptr;
    const AcDbLinetypeTableRecord* const record = AcDbLinetypeTableRecord::cast(view.get());
    const ACHAR* name = nullptr;
    found.by_layer =
        record == nullptr || record->getName(name) != Acad::eOk || base::equal_no_case(name, L"ByLayer");
    found.by_block = !found.by_layer && base::equal_no_case(name, L"ByBlock");
    if (!found.by_layer && !found.by_block)
        found.pattern = pattern_of(*record);
    return found;
}

const painter::layer_look& painter::look_of_layer(dxf::record_id layer) {
    const auto [at, fresh] = layer_looks_.try_emplace(layer);
    if (!fresh)
        return at->second;
    layer_look& found = at->second;
    found.color.setColorIndex(AcCmEntityColor::kACIForeground);
    found.weight = default_weight;
    if (layer == dxf::no_record)
        return found;
    const db::layer_look shown = db::look_of(drawing_, layer);
    found.color = shown.color;
    found.weight = shown.weight >= 0 ? shown.weight : default_weight;
    found.pattern = linetype_of(shown.linetype).drawn();
    found.opacity = opacity_of_number(shown.transparency).value_or(1.0);
    found.plotted = (shown.flags & db::layer_plotted) != 0;
    const viewport_look here = look_in_viewport(drawing_, layer, manner_.viewport);
    found.color = here.color.value_or(found.color);
    found.weight =
        here.weight.value_or(found.weight) >= 0 ? here.weight.value_or(found.weight) : default_weight;
    if (here.linetype)
        found.pattern = linetype_of(drawing_.id(*here.linetype)).drawn();
    if (here.transparency)
        found.opacity = opacity_of_number(*here.transparency).value_or(1.0);
    found.name = drawing_.names().name_of(layer);
    return found;
}

sys::ink painter::ink_of(const AcCmEntityColor& color, double opacity) const {
    sys::ink ink{color.red(), color.green(), color.blue(), opacity};
    const auto brightness = [](const sys::ink& of) { return (of.red * 3 + of.green * 6 + of.blue) / 10; };
    constexpr int half = 128;
    const bool dark = brightness(manner_.background) < half;
    const auto foreground = static_cast<unsigned char>(dark ? 255 : 0);
    // Colour 7 is black on light ground and white on dark.
    if (manner_.drawn_in == colors::black ||
        (!color.isByColor() && (color.colorIndex() == AcCmEntityColor::kACIForeground ||
                                color.colorMethod() == AcCmEntityColor::kForeground)))
        ink.red = ink.green = ink.blue = foreground;
    else if (manner_.drawn_in == colors::greys)
        ink.red = ink.green = ink.blue = static_cast<unsigned char>(brightness(ink));
    return ink;
}

double painter::opacity_of(const frame& now, double of_layer) const {
    const dxf::padded_text text = now.entity.database->records().text(now.entity.entity);
    if (text.find("440") == text.npos) // nearly always
        return of_layer;
    dxf::group_reader groups(text);
    dxf::raw_group group;
    constexpr int transparency = 440;
    constexpr int first_of_programs = 1000;
    while (groups.next(group) && group.code < first_of_programs)
        if (group.code == transparency) {
            const auto number = static_cast<std::int64_t>(dxf::leading_real(group.value).value_or(0.0));
            constexpr std::int64_t by_block = 0x01000000;
            if ((number & by_block) != 0)
                return now.around.pen.color.opacity;
            return opacity_of_number(number).value_or(of_layer);
        }
    return of_layer;
}

// A part of an entity may stand on a layer of its own.
const layer_state& painter::state_of_layer(const frame& now) {
    if (now.layer.isNull())
        return now.state;
    const auto [at, fresh] = part_states_.try_emplace({now.layers, now.layer.asOldId()});
    if (AcDbDatabase* const home = now.layer.database(); fresh && home != nullptr) {
        const std::unique_ptr<AcDbObject> record = home->imp().objects().view(home->imp().record(now.layer));
        const AcDbLayerTableRecord* const layer = AcDbLayerTableRecord::cast(record.get());
        const ACHAR* name = nullptr;
        // What stands in a reference may name a layer of the drawing, too: the one that rules there.
        if (layer != nullptr && layer->getName(name) == Acad::eOk)
            at->second = states_.named(home == &drawing_.self() ? states_.own() : *now.layers, name);
    }
    return at->second.zero && frames_.size() > 1 ? now.state : at->second;
}

painter::look painter::resolve(frame& now) {
    look found;
    const layer_state& state = state_of_layer(now);
    const layer_look& layer = look_of_layer(state.layer);
    found.seen = !state.off && !state.frozen && (layer.plotted || !manner_.plotted_only);
    found.color = now.color.isByLayer() ? layer.color : now.color.isByBlock() ? now.around.color : now.color;
    if (now.weight == AcDb::kLnWtByLayer)
        found.weight = layer.weight;
    else if (now.weight == AcDb::kLnWtByBlock)
        found.weight = now.around.weight;
    else
        found.weight = now.weight >= 0 ? now.weight : default_weight;
    const linetype& named = linetype_of(now.linetype);
    found.pattern = named.by_layer ? layer.pattern : named.by_block ? now.around.pattern : named.drawn();
    found.linetype_scale = now.linetype_scale;
    found.layer = state.layer;
    constexpr double hundredths = 100.0;
    found.pen.color = ink_of(found.color, opacity_of(now, layer.opacity));
    found.pen.width = found.weight / hundredths * manner_.weight_scale;
    if (manner_.changed != nullptr)
        show_change(found, now);
    return found;
}

// What a reference did, all that it shows did.
void painter::show_change(look& found, const frame& now) const {
    found.mark = now.around.mark != change::none
                     ? now.around.mark
                     : manner_.changed->of(*now.entity.database, now.entity.entity);
    if (&drawing_ == &manner_.changed->before() && found.mark != change::went)
        found.seen = false;
    constexpr std::uint8_t colors[][3] = {{190, 190, 190}, {0, 150, 0}, {224, 0, 0}, {0, 90, 255}};
    const auto& color = colors[static_cast<std::size_t>(found.mark)];
    found.pen.color = {color[0], color[1], color[2], found.pen.color.opacity};
    constexpr double well_seen = 0.5; // millimetres
    if (found.mark != change::none)
        found.pen.width = std::max(found.pen.width, well_seen);
}

const painter::look& painter::current() {
    frame& now = frames_.back();
    const AcCmEntityColor color = traits_->trueColor();
    const AcDbObjectId layer = traits_->layerId();
    const AcDbObjectId pattern = traits_->lineTypeId();
    if (!now.known || !(now.color == color) || now.layer != layer || now.linetype != pattern ||
        now.weight != traits_->lineWeight() || now.linetype_scale != traits_->lineTypeScale()) {
        now.color = color;
        now.layer = layer;
        now.linetype = pattern;
        now.weight = traits_->lineWeight();
        now.linetype_scale = traits_->lineTypeScale();
        now.known = resolve(now);
    }
    return *now.known;
}

} // namespace picture
