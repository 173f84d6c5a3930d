#include "host/picture/layer_states.h"

#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/dependent_names.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/spaces.h"
#include "host/db/tables/viewport_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace picture {

layer_states::layer_states(AcDbImpDatabase& drawing) : layer_states(drawing, db::current_viewport(drawing)) {
}

layer_states::layer_states(AcDbImpDatabase& drawing, dxf::record_id viewport) : drawing_(drawing) {
    tables_.push_back(std::make_unique<table>(table{drawing, {}, {}}));
    own_ = tables_.front().get();
    if (viewport != dxf::no_record && drawing.records().type(viewport) == dxf::type_viewport)
        frozen_here_ = db::frozen_layers(drawing.objects().view(viewport)->imp());
}

layer_states::table& layer_states::of_reference(AcDbImpDatabase& database, const std::wstring& reference) {
    for (const auto& known : tables_)
        if (&known->database == &database && known->reference == reference)
            return *known;
    tables_.push_back(std::make_unique<table>(table{database, reference, {}}));
    return *tables_.back();
}

const layer_state& layer_states::of(table& layers, dxf::record_id entity) const {
    const std::uint32_t number = layers.database.records().layer(entity);
    if (number >= layers.known.size())
        layers.known.resize(layers.database.records().layer_names().size());
    std::optional<layer_state>& state = layers.known[number];
    if (!state)
        state = named(layers, layers.database.layers().name_of(entity));
    return *state;
}

layer_states::place layer_states::inside(const place* around, const gi::visit& entity) {
    place found{entity, own_, {}};
    if (around != nullptr && around->entity.database == entity.database) {
        found.layers = around->layers;
    } else if (around != nullptr) {
        const AcDbImpDatabase& outer = *around->entity.database;
        const std::string_view block = dxf::value_of(outer.records().text(around->entity.entity), 2);
        found.layers = &of_reference(*entity.database, outer.drawing().codec().decode(block));
    }
    found.state = of(*found.layers, entity.entity);
    const bool in_block = entity.database->records().kind(entity.entity) == dxf::record_kind::entity;
    if (found.state.zero && around != nullptr && in_block)
        found.state = around->state;
    return found;
}

layer_state layer_states::named(const table& layers, const std::wstring& name) const {
    layer_state state;
    state.zero = name == L"0";
    const dxf::record_id layer = layers.reference.empty()
                                     ? drawing_.names().find(db::table_kind::layer, name)
                                     : db::ruling_layer(drawing_, layers.reference, name);
    state.layer = layer;
    if (layer == dxf::no_record)
        return state;
    const dxf::group_list groups(drawing_.records().text(layer));
    const auto flags = groups.integer(db::layer_place, 70).value_or(0);
    state.off = groups.integer(db::layer_place, 62).value_or(7) < 0;
    state.frozen =
        (flags & 1) != 0 || std::find(frozen_here_.begin(), frozen_here_.end(), layer) != frozen_here_.end();
    state.locked = (flags & 4) != 0;
    return state;
}

} // namespace picture
