// What repairs of records have in common: how they write records, give handles, and tell what they did.
#pragma once

#include "base/utf.h"
#include "host/dxf/handle_text.h"
#include "host/dxf/record_repair.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace dxf {

inline std::wstring wide_handle(std::uint64_t handle) {
    return base::widen(handle_text(handle));
}

// What stands before the first class of a record, since no class is called so.
inline constexpr group_place head_place = {"\n"};

class record_tools {
public:
    record_tools(record_table& table, drawing_parts& of_drawing, const drawing_manner& how,
                 placed_repairs& done, file_places& moved)
        : records(table), parts(of_drawing), manner(how), repairs(done), places(moved) {}

    record_table& records;
    drawing_parts& parts;
    const drawing_manner& manner;
    placed_repairs& repairs;
    file_places& places;
    bool has_handles = false;    // whether the drawing is one whose records have handles
    std::uint64_t first_new = 0; // of the handles that were given; 0: none
    std::uint64_t highest_given = 0;

    // A record's text in the making.
    class text {
    public:
        explicit text(const group_style& style) : style_(style) {}
        text& add(int code, std::string_view value) {
            append_group(bytes_, style_, code, value);
            return *this;
        }
        text& handle(int code, std::uint64_t handle) { return add(code, handle_text(handle)); }
        const std::string& bytes() const { return bytes_; }

    private:
        const group_style& style_;
        std::string bytes_;
    };
    text begin(std::string_view type) const {
        text made(manner.style);
        made.add(0, type);
        return made;
    }

    // From R13 on records have handles, and blocks have records.
    bool modern() const { return manner.version >= 1012; }

    void tell(record_id at, repair_kind kind, std::wstring what, std::wstring done) {
        repairs.push_back({place_of(at, records, places), kind, std::move(what), std::move(done)});
    }
    std::wstring type_of(record_id id) const { return base::widen(records.type_name(id)); }

    void rewrite(record_id id, std::string_view bytes) {
        places.try_emplace(id, records.text(id).data());
        records.rewrite(id, bytes);
    }
    void rewrite(record_id id, const group_list& groups) { rewrite(id, groups.write(manner.style)); }

    // A record that the file does not have, behind another.
    record_id insert(record_id previous, record_kind kind, std::uint32_t type, std::string_view bytes) {
        const record_id id = records.append_own({}, kind, type);
        records.unlink_behind(parts.end_of_file); // it was the last one before
        records.link_behind(previous, id);
        places.emplace(id, place_of(previous, records, places));
        records.rewrite(id, bytes);
        return id;
    }

    std::uint64_t give(std::uint64_t handle) {
        highest_given = std::max(highest_given, handle);
        return handle;
    }
    std::uint64_t new_handle() {
        const std::uint64_t handle = give(records.new_handle());
        first_new = first_new == 0 ? handle : first_new;
        return handle;
    }

    // The last record of a container before the one that ends it.
    record_id last_in(record_id container, std::uint32_t closing) const {
        record_id last = container;
        for (record_id next = records.next(last); next != no_record && records.type(next) != closing;
             next = records.next(last))
            last = next;
        return last;
    }
};

} // namespace dxf
