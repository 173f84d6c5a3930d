#include "host/version/modern_records.h"

#include "base/case_fold.h"
#include "host/db/core/format_versions.h"
#include "host/version/markers.h"
#include "host/version/viewport_forms.h"

#include <algorithm>

namespace version {

namespace {

constexpr int embedded_object = 101;
constexpr int first_data_code = 1000;

// The codes of a dimension style that name blocks before 2000, and those of the handles since.
int handle_code_of(int code) {
    switch (code) {
    case 5:
        return 342;
    case 6:
        return 343;
    case 7:
        return 344;
    default:
        return 0;
    }
}

} // namespace

modern_records::modern_records(conversion& job, const modern_plan& plan)
    : job_(job), plan_(plan), dropped_(job.to, job.records) {
}

void modern_records::put(std::size_t group) {
    job_.put(groups_[group]);
}

void modern_records::put_rest(std::size_t first) {
    for (std::size_t i = first; i < groups_.size(); ++i)
        put(i);
}

void modern_records::begin(std::string_view type, std::uint64_t handle, std::uint64_t owner) {
    job_.out.group(0, type);
    job_.out.handle(type == "DIMSTYLE" ? 105 : 5, handle);
    // What others keep here in braces goes in front of the owner.
    bool in_braces = false;
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        if (groups_[i].code == 102) {
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
            put(i);
        } else if (in_braces)
            put(i);
    }
    job_.out.handle(330, owner);
}

// ---- records with markers

void modern_records::marked(dxf::record_id id, std::uint64_t handle, std::uint64_t owner) {
    const std::uint32_t type = job_.records.type(id);
    const bool whole = groups_.handle() != 0 && groups_.owner() == owner;
    const bool all_known = !dropped_.any(type) && job_.to >= db::release_2018;
    if (whole && all_known && !job_.recodes) {
        job_.out.raw(job_.records.text(id));
        return;
    }
    put(0);
    if (groups_.handle() == 0)
        job_.out.handle(groups_.type() == "DIMSTYLE" ? 105 : 5, handle);
    bool in_braces = false;
    bool in_embedded = false;
    for (std::size_t i = 1; i < groups_.size(); ++i) {
        const dxf::raw_group& group = groups_[i];
        if (i == groups_.first_marker() && groups_.owner() != owner)
            job_.out.handle(330, owner);
        if (group.code >= first_data_code)
            in_embedded = false;
        else if (group.code == embedded_object && job_.to < db::release_2018) {
            in_embedded = true;
            job_.lost.add(L"columns or lines of " + job_.source.codec().decode(groups_.type()));
        } else if (group.code == 102)
            in_braces = group.value.find('{') != std::string_view::npos;
        if (in_embedded)
            continue;
        if (!in_braces && i < groups_.first_marker() && group.code == 330 && groups_.owner() != owner)
            continue;
        if (!in_braces && group.code < first_data_code && dropped_.has(type, group.code)) {
            dropped_groups::tell(groups_.type(), group.code, group.value, job_.lost);
            continue;
        }
        put(i);
    }
}

void modern_records::other(dxf::record_id id) {
    groups_.read(job_.records.text(id));
    if (groups_.size() == 0)
        return;
    const std::uint64_t owner = job_.records.owner_handle(id);
    if (groups_.has_markers()) {
        marked(id, job_.records.handle(id), owner);
    } else {
        // Some objects have no class of their own; they have no marker either.
        put(0);
        if (groups_.handle() == 0)
            job_.out.handle(5, job_.records.handle(id));
        put_rest(1);
    }
    job_.out.end_record();
}

// ---- entities

void modern_records::entity(dxf::record_id id) {
    groups_.read(job_.records.text(id));
    std::uint64_t handle = job_.records.handle(id);
    const std::uint64_t owner = job_.records.owner_handle(id);
    if (const auto moved = plan_.without_record.find(id); moved != plan_.without_record.end())
        handle = moved->second; // its own goes to the record
    const std::string_view type = groups_.type();
    if (type == "POLYLINE")
        polyline_flags_ = groups_.integer(70);
    if (type == "VIEWPORT" && job_.from < db::release_2000)
        viewport(id, owner);
    else if (groups_.has_markers())
        marked(id, handle, owner);
    else if (type == "REPEAT" || type == "ENDREP" || type == "LOAD")
        job_.lost.add(job_.source.codec().decode(type));
    else
        unmarked_entity(id, handle, owner);
    job_.out.end_record();
}

// Before R11 the height above the plane stood in a group of its own (38), and points could be without one.
void modern_records::put_at_elevation(std::size_t i, std::string_view elevation) {
    put(i);
    constexpr int first_y = 20;
    constexpr int last_y = 23;
    const int code = groups_[i].code;
    if (!elevation.empty() && code >= first_y && code <= last_y &&
        (i + 1 == groups_.size() || groups_[i + 1].code != code + 10))
        job_.out.group(code + 10, elevation);
}

void modern_records::unmarked_entity(dxf::record_id id, std::uint64_t handle, std::uint64_t owner) {
    std::string_view type = groups_.type();
    if (type == "3DLINE")
        type = "LINE";
    const bool old = job_.from < db::release_13 && type != "LWPOLYLINE";
    const std::string_view elevation = old ? groups_.value(38) : std::string_view();
    const std::vector<subclass> markers =
        markers_of_entity(type, {groups_.integer(70), groups_.integer(71), polyline_flags_});
    const auto place_of = [&](int code) {
        std::size_t rest = markers.size();
        for (std::size_t i = 0; i < markers.size(); ++i) {
            if (markers[i].codes.empty())
                rest = std::min(rest, i);
            for (const int own : markers[i].codes)
                if (own == code)
                    return i;
        }
        return rest;
    };
    begin(type, handle, owner);
    job_.out.group(100, "AcDbEntity");
    std::vector<std::size_t> data; // neither head nor what all entities have
    bool in_braces = false;
    bool has_layer = false;
    const std::uint32_t type_number = job_.records.type(id);
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        if (code == 102 || in_braces || code == 5 || (code == 330 && type != "HATCH") ||
            (old && code == 38) || dropped_.has(type_number, code))
            continue;
        has_layer = has_layer || code == 8;
        if (is_common(code))
            put(i);
        else
            data.push_back(i);
    }
    if (!has_layer)
        job_.out.group(8, "0");
    if (type == "POLYLINE" && !groups_.has(10)) {
        job_.out.group(100, markers.front().marker);
        job_.out.group(10, "0.0");
        job_.out.group(20, "0.0");
        job_.out.group(30, elevation.empty() ? "0.0" : elevation);
        for (const std::size_t i : data)
            put(i);
        data.clear();
    }
    if (markers.empty() || !data.empty() || type == "ENDBLK")
        for (std::size_t at = 0; at < std::max<std::size_t>(markers.size(), 1); ++at) {
            if (at < markers.size())
                job_.out.group(100, markers[at].marker);
            for (const std::size_t i : data) {
                if (!markers.empty() && place_of(groups_[i].code) != at)
                    continue;
                if (type == "BLOCK" && (groups_[i].code == 2 || groups_[i].code == 3))
                    job_.put(groups_[i].code, modern_block_name(groups_[i].value));
                else
                    put_at_elevation(i, elevation);
            }
        }
    if (type == "BLOCK" && !groups_.has(3))
        job_.put(3, modern_block_name(groups_.value(2)));
    if (type == "BLOCK" && !groups_.has(1))
        job_.out.group(1, "");
    put_rest(groups_.extended_data());
}

// ---- entries of symbol tables

void modern_records::entry(dxf::record_id id, std::uint64_t table) {
    groups_.read(job_.records.text(id));
    const std::string_view marker = marker_of_entry(groups_.type());
    if (marker.empty() || (groups_.has_markers() && job_.from >= db::release_2000))
        marked(id, job_.records.handle(id), table);
    else
        unmarked_entry(id, table, marker);
    job_.out.end_record();
}

void modern_records::unmarked_entry(dxf::record_id id, std::uint64_t table, std::string_view marker) {
    const std::string_view type = groups_.type();
    begin(type, job_.records.handle(id), table);
    job_.out.group(100, "AcDbSymbolTableRecord");
    job_.out.group(100, marker);
    entry_data(type, 1, groups_.extended_data());
    if (type == "LAYER" && plan_.normal_style != 0) {
        if (!groups_.has(370))
            job_.out.group(370, "-3");
        if (!groups_.has(390))
            job_.out.handle(390, plan_.normal_style);
    }
    if (const std::uint64_t layout = plan_.layout_of(job_.records.handle(id)); layout != 0)
        job_.out.handle(340, layout);
    put_rest(groups_.extended_data());
}

void modern_records::entry_data(std::string_view type, std::size_t first, std::size_t last) {
    const bool style = type == "DIMSTYLE";
    bool in_braces = false;
    for (std::size_t i = first; i < last; ++i) {
        const int code = groups_[i].code;
        if (code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        // In a dimension style 5 is the name of a block; 340 of a block's record is its layout.
        const bool head = code == 100 || code == 102 || in_braces || code == 105 || code == 330 ||
                          (code == 5 && !style) || (code == 340 && type == "BLOCK_RECORD");
        if (head)
            continue;
        if (style && handle_code_of(code) != 0) {
            dimension_style_name(handle_code_of(code), groups_[i].value);
            continue;
        }
        put(i);
        constexpr int dash = 49;
        constexpr int kind_of_dash = 74;
        if (type == "LTYPE" && code == dash && (i + 1 == last || groups_[i + 1].code != kind_of_dash))
            job_.out.group(kind_of_dash, "0");
    }
    if (style && !groups_.has(340)) {
        const auto standard = plan_.text_styles.find(L"standard");
        if (standard != plan_.text_styles.end())
            job_.out.handle(340, standard->second);
    }
}

void modern_records::dimension_style_name(int code, std::string_view name) {
    name = dxf::trimmed(name);
    if (name.empty())
        return;
    const auto record = plan_.block_records.find(base::folded(job_.source.codec().decode(name)));
    if (record != plan_.block_records.end())
        job_.out.handle(code, record->second);
    else
        job_.lost.add(L"arrow of a dimension style whose block is not there");
}

// ---- viewports

void modern_records::viewport(dxf::record_id id, std::uint64_t owner) {
    begin("VIEWPORT", job_.records.handle(id), owner);
    job_.out.group(100, "AcDbEntity");
    std::vector<std::size_t> data;
    bool in_braces = false;
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        if (code == 102 || in_braces || code == 5 || code == 330 || code == 100)
            continue;
        if (is_common(code))
            put(i);
        else
            data.push_back(i);
    }
    job_.out.group(100, "AcDbViewport");
    for (const std::size_t i : data)
        put(i);
    put_viewport_groups(job_, groups_);
}

} // namespace version
