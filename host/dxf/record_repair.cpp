#include "host/dxf/record_repair.h"

#include "host/dxf/block_repair.h"
#include "host/dxf/double_handles.h"
#include "host/dxf/record_header.h"
#include "host/dxf/record_tools.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace dxf {

namespace {

// Ends and order of records, and handles.
class record_mender {
public:
    record_mender(record_tools& tools, const drawing_damage& damage) : tools_(tools), damage_(damage) {}

    void run() {
        for (const drawing_damage::missing_end& end : damage_.ends)
            tools_.places.emplace(end.id, end.at);
        put_in_order();
        write_ends();
        mend_handles();
        if (tools_.modern())
            repair_blocks(tools_);
        if (tools_.highest_given != 0)
            mend_seed();
    }

private:
    // A part that follows no entity. Where it stands it does no harm; behind another entity it would be that
    // one's.
    bool is_orphan(record_id id) const {
        const std::uint32_t type = tools_.records.type(id);
        return tools_.records.kind(id) == record_kind::entity &&
               (type == type_vertex || type == type_attrib || type == type_seqend);
    }
    std::ptrdiff_t markers_in(record_id id) const {
        const group_list list(tools_.records.text(id));
        return std::count_if(list.groups().begin(), list.groups().end(),
                             [](const group& one) { return one.code == 100; });
    }
    void put_in_order();
    record_id section_of_entities();
    void write_ends();
    void drop_half_point(record_id last);
    void drop_beginning(record_id last);

    void mend_handles();
    void give_handle(record_id id, std::uint64_t handle);
    void mend_seed();

    record_tools& tools_;
    const drawing_damage& damage_;
};

// ---- ends

// What stands in the wrong place goes to the end of the section that it belongs to.
void record_mender::put_in_order() {
    if (damage_.outside.empty() && damage_.repeated.empty() && damage_.needless_ends.empty())
        return;
    const auto set_of = [](const std::vector<record_id>& ids) {
        return std::unordered_set<record_id>(ids.begin(), ids.end());
    };
    const auto outside = set_of(damage_.outside);
    const auto repeated = set_of(damage_.repeated);
    const auto needless = set_of(damage_.needless_ends);
    std::vector<std::pair<record_id, record_id>> moved; // and the sections where they go
    record_id first = no_record; // section of the kind of the one that is passed, when that is a repeated one
    for (record_id id = 0; tools_.records.next(id) != no_record;) {
        const record_id next = tools_.records.next(id);
        if (repeated.contains(next)) {
            const std::string_view name = value_of(tools_.records.text(next), 2);
            first = name == "BLOCKS"     ? tools_.parts.blocks
                    : name == "ENTITIES" ? tools_.parts.entities
                                         : tools_.parts.objects;
            tools_.tell(next, repair_kind::repeated_section, L"another " + base::widen(name) + L" section",
                        L"what it holds is put at the end of the first one");
        } else if (needless.contains(next)) {
            tools_.tell(next, repair_kind::needless_end, L"an ENDSEC ends no section", L"left out");
        } else if (first != no_record && tools_.records.type(next) == type_endsec) {
            first = no_record;
        } else if ((first != no_record || outside.contains(next)) && is_orphan(next)) {
            tools_.tell(next, repair_kind::outside_of_sections,
                        L"a " + tools_.type_of(next) + L" belongs to no entity", L"left out");
        } else if (first != no_record) {
            moved.emplace_back(next, first);
        } else if (outside.contains(next)) {
            tools_.tell(next, repair_kind::outside_of_sections,
                        L"a " + tools_.type_of(next) + L" stands in no section",
                        L"put at the end of the ENTITIES section");
            moved.emplace_back(next, section_of_entities());
        } else {
            id = next;
            continue;
        }
        tools_.records.unlink_behind(id);
    }
    std::unordered_map<record_id, record_id> lasts;
    for (const auto& [id, section] : moved) {
        record_id& last = lasts.try_emplace(section, no_record).first->second;
        if (last == no_record)
            last = tools_.last_in(section, type_endsec);
        tools_.records.link_behind(last, id);
        last = id;
    }
}

// The ENTITIES section; an empty one at the end when there is none.
record_id record_mender::section_of_entities() {
    if (tools_.parts.entities != no_record)
        return tools_.parts.entities;
    record_id last = 0;
    while (tools_.records.next(last) != tools_.parts.end_of_file)
        last = tools_.records.next(last);
    tools_.parts.entities = tools_.insert(last, record_kind::structure, type_section,
                                          tools_.begin("SECTION").add(2, "ENTITIES").bytes());
    tools_.insert(tools_.parts.entities, record_kind::structure, type_endsec, tools_.begin("ENDSEC").bytes());
    return tools_.parts.entities;
}

// The records that the index put in for missing ends get their text.
void record_mender::write_ends() {
    if (damage_.open_line) { // a blank one that is open says nothing
        const padded_text lines = tools_.records.text(damage_.last);
        const std::size_t whole = lines.rfind('\n') + 1;
        const group_list groups(lines);
        const bool is_more = !groups.empty() && groups.groups().back().value.find('\n') != lines.npos;
        tools_.rewrite(damage_.last, is_more && is_blank(lines.substr(whole))
                                         ? std::string(lines.substr(0, whole))
                                         : std::string(lines) + std::string(tools_.manner.style.line_end));
    }
    if (damage_.last != no_record) {
        drop_half_point(damage_.last);
        drop_beginning(damage_.last);
    }
    for (const drawing_damage::missing_end& end : damage_.ends) {
        const std::uint32_t type = tools_.records.type(end.id);
        record_tools::text made = tools_.begin(tools_.records.type_name(end.id));
        std::wstring what = L"the end of a " +
                            (end.of == no_record ? std::wstring() : tools_.type_of(end.of)) + L" is missing";
        if (type == type_endblk || type == type_seqend) {
            if (tools_.records.handle(end.of) != 0)
                made.handle(5, tools_.new_handle());
            if (tools_.modern()) {
                const std::uint64_t owner =
                    type == type_seqend ? tools_.records.handle(end.of) : tools_.records.owner_handle(end.of);
                if (owner != 0)
                    made.handle(330, owner);
                made.add(100, "AcDbEntity");
            }
            const std::string_view layer = tools_.records.layer_names()[tools_.records.layer(end.of)];
            made.add(8, layer.empty() ? "0" : layer);
            if (tools_.modern() && type == type_endblk)
                made.add(100, "AcDbBlockEnd");
        } else if (type == type_eof) {
            what = L"the end of the file is missing";
        }
        tools_.records.rewrite(end.id, made.bytes());
        tools_.tell(end.id, repair_kind::missing_end, std::move(what), tools_.type_of(end.id) + L" added");
    }
}

// A point of which the file's end left nothing but its first coordinate is none.
void record_mender::drop_half_point(record_id last) {
    group_list groups(tools_.records.text(last));
    const auto in = [code = groups.empty() ? 0 : groups.groups().back().code](int first, int end) {
        return code >= first && code <= end;
    };
    if (!in(10, 18) && !in(110, 112) && !in(210, 219) && !in(1010, 1013))
        return;
    groups.splice(groups.groups().size() - 1, groups.groups().size(), {});
    tools_.rewrite(last, groups);
    tools_.tell(last, repair_kind::cut_end,
                L"the file ends inside of a point of this " + tools_.type_of(last), L"the point is left out");
}

// An entity of which the file's end left nothing but what all entities have is none.
void record_mender::drop_beginning(record_id last) {
    const record_kind kind = tools_.records.kind(last);
    if (!tools_.modern() || (kind != record_kind::entity && kind != record_kind::part) ||
        tools_.records.type(last) == type_seqend || markers_in(last) > 1)
        return;
    record_id previous = 0;
    while (previous != no_record && tools_.records.next(previous) != last)
        previous = tools_.records.next(previous);
    if (previous == no_record) // it stood in the wrong place and is out already
        return;
    if (markers_in(previous) < 2 && tools_.records.kind(previous) == kind) // it is the manner of the file
        return;
    tools_.tell(last, repair_kind::cut_end, L"the file ends inside of this " + tools_.type_of(last),
                L"it is left out");
    tools_.records.unlink_behind(previous);
}

// ---- handles

void record_mender::give_handle(record_id id, std::uint64_t handle) {
    const int code = tools_.records.type(id) == type_dimstyle ? 105 : 5;
    group_list groups(tools_.records.text(id));
    groups.set_text(head_place, code, handle_text(handle));
    tools_.rewrite(id, groups);
}

void record_mender::mend_handles() {
    const std::vector<record_id> doubles = tools_.records.doubles();
    const std::vector<reference_to_double> references = references_to(doubles, tools_.records);
    std::unordered_map<record_id, std::size_t> following;
    for (const reference_to_double& one : references)
        ++following[one.meant];
    for (const record_id id : doubles) {
        const std::uint64_t before = tools_.records.handle(id);
        const std::uint64_t handle = tools_.new_handle();
        tools_.tell(id, repair_kind::duplicate_handle,
                    L"duplicate handle " + wide_handle(before) + L" of a " + tools_.type_of(id),
                    L"given the handle " + wide_handle(handle) +
                        (following.contains(id)
                             ? L", also in " + std::to_wstring(following[id]) + L" groups that mean it"
                             : std::wstring()));
        give_handle(id, handle);
    }
    for (auto at = references.begin(); at != references.end();) {
        const record_id holder = at->holder;
        group_list groups(tools_.records.text(holder));
        for (; at != references.end() && at->holder == holder; ++at) {
            const group_list::fresh_group fresh[] = {
                {groups.groups()[at->group].code, handle_text(tools_.records.handle(at->meant))}};
            groups.splice(at->group, at->group + 1, fresh);
        }
        tools_.rewrite(holder, groups);
    }

    std::vector<record_id> without = damage_.empty_handles;
    std::erase_if(without, [&](record_id id) { return tools_.records.handle(id) != 0; });
    if (tools_.modern()) {
        const std::unordered_set<record_id> known(without.begin(), without.end());
        std::vector<record_id> missing;
        std::size_t with = known.size();
        for (record_id id = 0; id < tools_.records.size(); ++id) {
            const record_kind kind = tools_.records.kind(id);
            if (kind == record_kind::structure || kind == record_kind::header)
                continue;
            if (tools_.records.handle(id) != 0)
                ++with;
            else if (!known.contains(id))
                missing.push_back(id);
        }
        tools_.has_handles = with > missing.size();
        if (tools_.has_handles) // else it is the manner of the file to have none
            without.insert(without.end(), missing.begin(), missing.end());
    }
    for (const record_id id : without) {
        const std::uint64_t handle = tools_.new_handle();
        tools_.tell(id, repair_kind::missing_handle, L"a " + tools_.type_of(id) + L" has no handle",
                    L"given the handle " + wide_handle(handle));
        give_handle(id, handle);
    }
}

// New handles are above the seed, so the seed must follow.
void record_mender::mend_seed() {
    if (tools_.parts.header == no_record)
        return;
    group_list header(tools_.records.text(tools_.parts.header));
    const auto& groups = header.groups();
    for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
        if (groups[i].code != 9 || trimmed(groups[i].value) != "$HANDSEED" || groups[i + 1].code == 9)
            continue;
        const std::uint64_t seed = parse_handle(groups[i + 1].value);
        if (seed > tools_.highest_given)
            return;
        const std::uint64_t next = tools_.records.new_handle();
        const group_list::fresh_group fresh[] = {{groups[i + 1].code, handle_text(next)}};
        // The first new handle is the seed itself, unless others were above it.
        if (tools_.first_new != seed)
            tools_.repairs.push_back({groups[i + 1].source.data(), repair_kind::low_handle_seed,
                                      L"$HANDSEED is " + wide_handle(seed) + L", not above the handles",
                                      L"raised to " + wide_handle(next)});
        header.splice(i + 1, i + 2, fresh);
        tools_.rewrite(tools_.parts.header, header);
        return;
    }
}

} // namespace

void repair_records(record_table& records, drawing_parts& parts, const drawing_damage& damage,
                    const drawing_manner& manner, placed_repairs& repairs, file_places& places) {
    record_tools tools(records, parts, manner, repairs, places);
    record_mender(tools, damage).run();
}

} // namespace dxf
