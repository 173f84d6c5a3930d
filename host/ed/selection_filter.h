// Filters of selections: a chain of group codes and values that an entity must fit.
#pragma once

#include "adsdef.h"
#include "host/db/imp_database.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ed {

// A filter made ready for one drawing. Names and texts are patterns without regard to case; what an entity
// leaves out counts with its default. Types and layers are judged by their numbers in the index, so that a
// filter by these reads no entity.
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
    explicit selection_filter(AcDbImpDatabase& database) : database_(&database) {}
    static std::shared_ptr<node> parse(const resbuf*& at, const wchar_t* until,
                                       const AcDbImpDatabase& database);
    bool fits(const node& tested, dxf::record_id entity, std::optional<dxf::group_list>& groups) const;

    AcDbImpDatabase* database_;
    std::shared_ptr<const node> root_;
};

} // namespace ed
