// Whether the host follows what commands do to the states of layers (host/db/tables/layer_history.h);
// LAYERPMODE says so.
#pragma once

namespace db {

inline bool& follows_layers() {
    static bool follows = true;
    return follows;
}

} // namespace db
