#include "host/ed/selection_set.h"

#include "acdbads.h"
#include "acedads.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/symbol_entry.h"
#include "host/ed/system_variables.h"

#include <algorithm>
#include <array>

namespace ed {

namespace {

constexpr std::size_t most_sets = 128;
constexpr std::int64_t set_mark = 0x5E7; // tells the name of a set from that of an entity

std::array<std::unique_ptr<selection_set>, most_sets>& sets() {
    static std::array<std::unique_ptr<selection_set>, most_sets> all;
    return all;
}

} // namespace

selection_set::index& selection_set::places() const {
    if (!indexed_) {
        places_.clear();
        for (std::size_t i = 0; i < ids_.size(); ++i)
            places_.emplace(ids_[i].asOldId(), i);
        indexed_ = true;
    }
    return places_;
}

bool selection_set::add(AcDbObjectId id) {
    if (!places().try_emplace(id.asOldId(), ids_.size()).second)
        return false;
    ids_.push_back(id);
    return true;
}

void selection_set::add_again(AcDbObjectId id) {
    doubles_ = doubles_ || contains(id);
    places().try_emplace(id.asOldId(), ids_.size());
    ids_.push_back(id);
}

bool selection_set::remove(AcDbObjectId id) {
    const auto at = places().find(id.asOldId());
    if (at == places().end())
        return false;
    if (doubles_) {
        std::erase(ids_, id);
        indexed_ = false;
        return true;
    }
    ids_[at->second].setNull();
    places().erase(at);
    ++holes_;
    return true;
}

const std::vector<AcDbObjectId>& selection_set::ids() const {
    if (holes_ != 0) {
        std::erase_if(ids_, [](AcDbObjectId id) { return id.isNull(); });
        holes_ = 0;
        indexed_ = false;
    }
    return ids_;
}

bool name_selection_set(selection_set set, ads_name name) {
    const auto free = std::find(sets().begin(), sets().end(), nullptr);
    if (free == sets().end()) {
        set_error_number(3);
        return false;
    }
    *free = std::make_unique<selection_set>(std::move(set));
    name[0] = free - sets().begin() + 1;
    name[1] = set_mark;
    return true;
}

selection_set* find_selection_set(const ads_name name) {
    if (name == nullptr || name[1] != set_mark || name[0] < 1 ||
        name[0] > static_cast<std::int64_t>(most_sets))
        return nullptr;
    return sets()[static_cast<std::size_t>(name[0] - 1)].get();
}

selection_set& previous_selection() {
    static selection_set previous;
    return previous;
}

} // namespace ed

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
    if (name == nullptr || name[1] != 0 || name[0] == 0)
        return Acad::eInvalidAdsName;
    AcDbObjectId named;
    named.setFromOldId(static_cast<Adesk::LongPtr>(name[0]));
    if (!named.isValid())
        return Acad::eInvalidAdsName;
    id = named;
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id) {
    if (id.isNull())
        return Acad::eNullObjectId;
    name[0] = id.asOldId();
    name[1] = 0;
    return Acad::eOk;
}

int acdbRegApp(const ACHAR* application) {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    if (application == nullptr || database == nullptr ||
        database->imp().names().find(db::table_kind::regapp, application) != dxf::no_record)
        return RTERROR;
    return db::register_application(database->imp(), application) ? RTNORM : RTERROR;
}

int acdbHandEnt(const ACHAR* handle, ads_name result) {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    AcDbObjectId id;
    if (handle != nullptr && database != nullptr &&
        database->getAcDbObjectId(id, false, AcDbHandle(handle)) == Acad::eOk && !id.isErased() &&
        acdbGetAdsName(*reinterpret_cast<ads_name*>(result), id) == Acad::eOk)
        return RTNORM;
    ed::set_error_number(13);
    return RTERROR;
}

int acedSSFree(const ads_name set) {
    ed::selection_set* const found = ed::find_selection_set(set);
    if (found == nullptr)
        return RTERROR;
    ed::sets()[static_cast<std::size_t>(set[0] - 1)].reset();
    return RTNORM;
}

int acedSSLength(const ads_name set, Adesk::Int32* length) {
    const ed::selection_set* const found = ed::find_selection_set(set);
    if (found == nullptr || length == nullptr)
        return RTERROR;
    *length = static_cast<Adesk::Int32>(found->ids().size());
    return RTNORM;
}

int acedSSName(const ads_name set, Adesk::Int32 index, ads_name entity) {
    const ed::selection_set* const found = ed::find_selection_set(set);
    if (found == nullptr || index < 0 || static_cast<std::size_t>(index) >= found->ids().size())
        return RTERROR;
    entity[0] = found->ids()[static_cast<std::size_t>(index)].asOldId();
    entity[1] = 0;
    return RTNORM;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
    AcDbObjectId id;
    if (entity != nullptr && acdbGetObjectId(id, entity) != Acad::eOk)
        return RTERROR;
    if (set == nullptr) {
        ed::selection_set made;
        if (!id.isNull())
            made.add(id);
        return ed::name_selection_set(std::move(made), result) ? RTNORM : RTERROR;
    }
    ed::selection_set* const found = ed::find_selection_set(set);
    if (found == nullptr || id.isNull())
        return RTERROR;
    found->add(id);
    ads_name_set(set, result);
    return RTNORM;
}

int acedSSDel(const ads_name entity, const ads_name set) {
    ed::selection_set* const found = ed::find_selection_set(set);
    AcDbObjectId id;
    return found != nullptr && acdbGetObjectId(id, entity) == Acad::eOk && found->remove(id) ? RTNORM
                                                                                             : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
    const ed::selection_set* const found = ed::find_selection_set(set);
    AcDbObjectId id;
    return found != nullptr && acdbGetObjectId(id, entity) == Acad::eOk && found->contains(id) ? RTNORM
                                                                                               : RTERROR;
}
