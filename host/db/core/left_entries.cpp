#include "host/db/core/left_entries.h"

#include "dbdict.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace db {

namespace {

struct left_entries {
    explicit left_entries(AcDbImpDatabase& /*database*/) {}

    std::unordered_map<dxf::record_id, std::unordered_set<std::uint64_t>> handles; // by dictionary
};

// Takes the entries with these handles out of a dictionary's groups.
void drop_entries(dxf::group_list& list, const std::unordered_set<std::uint64_t>& handles) {
    const auto& groups = list.groups();
    const auto goes = [&](std::size_t key) {
        return groups[key].code == 3 && (groups[key + 1].code == 350 || groups[key + 1].code == 360) &&
               handles.contains(dxf::parse_handle(groups[key + 1].value));
    };
    for (std::size_t end = groups.size(); end >= 2;) {
        std::size_t first = end;
        while (first >= 2 && goes(first - 2))
            first -= 2;
        if (first != end)
            list.splice(first, end, {});
        end = first == end ? end - 1 : first;
    }
}

} // namespace

void leave_dictionary(const AcDbImpDatabase& database, dxf::record_id object) {
    const dxf::record_table& records = database.records();
    const dxf::record_id owner = records.find(records.owner_handle(object));
    if (owner != dxf::no_record && class_of(database, owner) == AcDbDictionary::desc())
        database.part<left_entries>().handles[owner].insert(records.handle(object));
}

bool has_left(const AcDbImpDatabase& database, dxf::record_id dictionary, dxf::record_id object) {
    const auto& left = database.part<left_entries>().handles;
    const auto at = left.find(dictionary);
    return at != left.end() && at->second.contains(database.records().handle(object));
}

void settle_dictionary(AcDbImpObject& dictionary) {
    if (const auto left = dictionary.database->part<left_entries>().handles.extract(dictionary.record))
        drop_entries(dictionary.edit(), left.mapped());
}

void settle_dictionaries(const AcDbImpDatabase& database) {
    dxf::record_table& records = database.records();
    for (const auto& [dictionary, handles] : std::exchange(database.part<left_entries>().handles, {})) {
        AcDbImpObject* const opened = database.objects().opened(dictionary);
        if (opened != nullptr && opened->life.is_written()) {
            drop_entries(opened->edit(), handles);
            continue;
        }
        dxf::group_list groups(records.text(dictionary));
        drop_entries(groups, handles);
        if (groups.changed())
            records.replace(dictionary, groups.write(database.drawing().style()));
        if (opened != nullptr)
            opened->forget();
    }
}

} // namespace db
