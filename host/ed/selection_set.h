// Selection sets: ordered, as a rule without doubles, known by a name that programs hold.
#pragma once

#include "adsdef.h"
#include "dbid.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace ed {

class selection_set {
public:
    selection_set() = default;
    // Of ids without doubles.
    explicit selection_set(std::vector<AcDbObjectId> ids) : ids_(std::move(ids)) {}

    // False when it was in the set already.
    bool add(AcDbObjectId id);
    // Once more, whether it is in it or not.
    void add_again(AcDbObjectId id);
    // Takes it out, however often it is there.
    bool remove(AcDbObjectId id);
    bool contains(AcDbObjectId id) const { return places().contains(id.asOldId()); }
    const std::vector<AcDbObjectId>& ids() const;

private:
    using index = std::unordered_map<Adesk::LongPtr, std::size_t>;
    index& places() const;

    // What was removed leaves a null id until somebody reads them; where each stands is indexed when first
    // asked, since most sets are only read.
    mutable std::vector<AcDbObjectId> ids_;
    mutable std::size_t holes_ = 0;
    mutable index places_;
    mutable bool indexed_ = false;
    bool doubles_ = false;
};

// Gives a set a name. False, ERRNO 3, when 128 sets are in use.
bool name_selection_set(selection_set set, ads_name name);
// The set of a name; null when there is none.
selection_set* find_selection_set(const ads_name name);

// The set that was selected last, for "P".
selection_set& previous_selection();

} // namespace ed
