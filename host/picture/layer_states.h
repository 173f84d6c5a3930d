// What the layers of a drawing and of its references show, asked once for each while something is drawn or
// selected.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/gi/canvas.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace picture {

struct layer_state {
    bool zero = false; // layer 0: in a block its entities follow the reference
    bool off = false;
    bool frozen = false; // everywhere, or in the current viewport
    bool locked = false;
    dxf::record_id layer = dxf::no_record; // of the drawing
};

class layer_states {
public:
    // The states as the drawing rules them, for what is seen in its current viewport.
    explicit layer_states(AcDbImpDatabase& drawing);
    // For what is seen in a viewport of a sheet; no_record for what is seen outside of viewports.
    layer_states(AcDbImpDatabase& drawing, dxf::record_id viewport);

    // The states of a database's layers where it is seen through a reference of the drawing, by numbers of
    // layer names; of the drawing itself the reference has no name.
    struct table {
        AcDbImpDatabase& database;
        std::wstring reference;
        std::vector<std::optional<layer_state>> known;
    };
    table& own() { return *own_; }
    table& of_reference(AcDbImpDatabase& database, const std::wstring& reference);

    // The state of the layer that an entity stands on, of the drawing or as seen through a reference.
    const layer_state& of(table& layers, dxf::record_id entity) const;
    const layer_state& of(dxf::record_id entity) const { return of(*own_, entity); }
    // An entity on the way from the drawing into what it holds, with the layer that rules there.
    struct place {
        gi::visit entity;
        table* layers = nullptr;
        layer_state state;
    };
    // The place of an entity within the one around it; null around what stands in the drawing itself. Where
    // one drawing leads into another, the block between them names the layers of the other; in a block, layer
    // 0 is the layer of its reference.
    place inside(const place* around, const gi::visit& entity);
    // The state of a layer by its name in its own drawing; looked up at every call.
    layer_state named(const table& layers, const std::wstring& name) const;

private:
    AcDbImpDatabase& drawing_;
    std::vector<dxf::record_id> frozen_here_; // in the current viewport
    std::vector<std::unique_ptr<table>> tables_;
    table* own_;
};

} // namespace picture
