// Filters of selections: a chain of group codes and values that an entity must fit.
#pragma once

#include "adsdef.h"
#include "host/db/core/imp_database.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ed {

// A filter made ready for one drawing.
//
// All values of the chain must be met. Texts are patterns, without regard to case; numbers and points are
// equal, or stand in the relation that a -4 in front of them names; for points there is one for each
// coordinate. Brackets of -4 group ("<OR" "OR>" and the like); behind -3 stand the names of applications.
// Where an entity has a group more than once, one that fits will do. What an entity leaves out counts with
// its default. Space, layout and owner (67, 410, 330) are judged by where an entity stands; handles and what
// no entity has are passed over.
//
// Types and layers are judged by their numbers in the index, so that a filter by these reads no entity.
class ACCORE_PORT selection_filter {
public:
    // Nothing for a chain whose groups do not balance or that holds what a filter can not.
    static std::optional<selection_filter> make(AcDbImpDatabase& database, const resbuf* chain);

    bool fits(dxf::record_id entity) const;
    // The layers outside of which nothing fits, by their numbers in the index; null when it tells none.
    // Asking this first passes over most of a large drawing at the price of a look at a column.
    const std::vector<bool>* layers() const;
    // Whether that is all that it asks.
    bool asks_layers_alone() const;

private:
    struct node;
    class reader;
    struct candidate;
    explicit selection_filter(AcDbImpDatabase& database) : database_(&database) {}
    bool fits(const node& tested, candidate& entity) const;
    bool fits_space(const node& tested, candidate& entity) const;
    bool fits_text(const node& tested, candidate& entity) const;
    bool fits_number(const node& tested, candidate& entity) const;
    bool fits_point(const node& tested, candidate& entity) const;
    bool fits_application(const node& tested, candidate& entity) const;

    AcDbImpDatabase* database_;
    std::shared_ptr<const node> root_;
};

} // namespace ed
