#include "host/dxf/entry_repair.h"

#include "base/utf.h"
#include "host/dxf/handle_text.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace dxf {

namespace {

constexpr int name_code = 3;
bool is_reference(int code) {
    return code == 350 || code == 360;
}

// The object that a dictionary owns and does not name; no_record when there is none, or several.
record_id unnamed_object(const record_table& records, const drawing_parts& parts, record_id dictionary,
                         const group_list& groups) {
    record_id found = no_record;
    for (record_id id = records.next(parts.objects); id != no_record && records.type(id) != type_endsec;
         id = records.next(id)) {
        const std::uint64_t handle = records.handle(id);
        const bool named =
            std::any_of(groups.groups().begin(), groups.groups().end(), [handle](const group& one) {
                return is_reference(one.code) && parse_handle(one.value) == handle;
            });
        if (handle == 0 || named || records.owner_handle(id) != records.handle(dictionary))
            continue;
        if (found != no_record)
            return no_record;
        found = id;
    }
    return found;
}

} // namespace

void repair_entries(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                    placed_repairs& repairs, file_places& places) {
    if (parts.objects == no_record)
        return;
    for (record_id id = records.next(parts.objects); id != no_record && records.type(id) != type_endsec;
         id = records.next(id)) {
        if (records.type(id) != type_dictionary || records.handle(id) == 0)
            continue;
        group_list groups(records.text(id));
        for (std::size_t i = 1; i < groups.groups().size(); ++i) {
            const group& name = groups.groups()[i - 1];
            if (name.code != name_code || !is_reference(groups.groups()[i].code) ||
                parse_handle(groups.groups()[i].value) != 0)
                continue;
            const std::wstring what = L"the entry " + manner.codec.decode(trimmed(name.value)) +
                                      L" of a DICTIONARY names no object";
            const record_id object = unnamed_object(records, parts, id, groups);
            std::wstring done = L"left out";
            if (object == no_record) {
                groups.splice(i - 1, i + 1, {});
                --i;
            } else {
                groups.put_fresh(i, handle_text(records.handle(object)));
                done = L"given the " + base::widen(records.type_name(object)) + L" " +
                       base::widen(handle_text(records.handle(object))) + L", which is in it";
            }
            repairs.push_back({place_of(id, records, places), repair_kind::lost_code, what, done});
        }
        if (!groups.changed())
            continue;
        places.try_emplace(id, records.text(id).data());
        records.rewrite(id, groups.write(manner.style));
    }
}

} // namespace dxf
