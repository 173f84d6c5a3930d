// What stands in R12's files for entities of later kinds: figures in their place, or a block of figures.
#pragma once

#include "host/version/conversion.h"
#include "host/version/r12_names.h"
#include "host/version/record_groups.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace version {

class r12_pictures {
public:
    r12_pictures(conversion& job, r12_names& names);

    // Whether R12 has entities of a type.
    static bool is_known(std::string_view type);

    // Draws an entity of another type. Writes the block with its figures, where they are many or it has
    // extended data; call it while the blocks are written. `on_paper` for entities of the sheet.
    void draw(dxf::record_id id, bool on_paper);

    // How an entity that was drawn is written.
    struct picture {
        std::string block;   // inserted at the origin; empty: none
        std::string figures; // else these stand there; empty: nothing was to be seen
    };
    const picture* of(dxf::record_id id) const;

private:
    std::string next_block();

    conversion& job_;
    r12_names& names_;
    std::unordered_map<dxf::record_id, picture> pictures_;
    std::size_t number_ = 0; // of the last block
    double reach_ = 1.0;
};

// The groups that an entity of the source has in common with all others (layer, linetype, colour and the
// rest), as R12 has them. Counts what they lose.
std::string r12_common(conversion& job, r12_names& names, const record_groups& groups, bool tell);

} // namespace version
