// Selection sets: ordered, without doubles, known by a name that programs hold.
#pragma once

#include "adsdef.h"
#include "dbid.h"

#include <memory>
#include <unordered_set>
#include <vector>

namespace ed {

class selection_set {
public:
    // False when it was in the set already.
    bool add(AcDbObjectId id);
    bool remove(AcDbObjectId id);
    bool contains(AcDbObjectId id) const { return members_.contains(id.asOldId()); }
    const std::vector<AcDbObjectId>& ids() const { return ids_; }

private:
    std::vector<AcDbObjectId> ids_;
    std::unordered_set<Adesk::LongPtr> members_;
};

// Gives a set a name. False, ERRNO 3, when 128 sets are in use.
bool name_selection_set(selection_set set, ads_name name);
// The set of a name; null when there is none.
selection_set* find_selection_set(const ads_name name);

// The set that was selected last, for "P".
selection_set& previous_selection();

} // namespace ed
