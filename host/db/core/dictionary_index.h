// The entries of a dictionary: pairs of groups, 3 the key, then 350 or, when it owns them hard, 360.
#pragma once

#include "base/case_fold.h"
#include "dbdict.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/left_entries.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace db {

struct dictionary_entry {
    std::size_t at; // the group of the key; that of the handle stands behind it
    std::wstring key;
    dxf::record_id object;
};

inline constexpr dxf::group_place dictionary_place{"AcDbDictionary"};

// Whether a program may give an entry this key. Names that the host gives begin with a star, and may end with
// one.
bool is_dictionary_key(const ACHAR* key);

} // namespace db

// The entries as they stand in the groups, made anew when those changed.
struct AcDbDictionary::Index {
    std::optional<std::size_t> revision;
    std::vector<db::dictionary_entry> all;
    std::unordered_map<std::wstring, std::size_t> by_key; // folded; of doubles the first
    const AcDbImpObject* object = nullptr;
    bool hard = false;

    bool is_live(const db::dictionary_entry& entry) const {
        return !object->database->records().gone(entry.object) &&
               !db::has_left(*object->database, object->record, entry.object);
    }

    const db::dictionary_entry* find(std::wstring_view key) const {
        const std::wstring folded = base::folded(key);
        const auto at = by_key.find(folded);
        if (at == by_key.end())
            return nullptr;
        if (is_live(all[at->second]))
            return &all[at->second];
        for (const db::dictionary_entry& entry : all) // a double of one that was erased
            if (is_live(entry) && base::folded(entry.key) == folded)
                return &entry;
        return nullptr;
    }

    void add(db::dictionary_entry entry) {
        by_key.try_emplace(base::folded(entry.key), all.size());
        all.push_back(std::move(entry));
    }
};
