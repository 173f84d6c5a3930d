#include "host/version/r12_records.h"

#include "base/case_fold.h"
#include "host/db/core/format_versions.h"
#include "host/version/viewport_forms.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace version {

namespace {

// R12 has groups up to 79, from 140 to 239 and the extended data. Source: the DXF reference of R12.
bool in_r12(int code) {
    return (code >= 0 && code < 80 && code != 48) || (code >= 140 && code < 180) ||
           (code >= 210 && code < 240) || code == 999 || code >= 1000;
}

constexpr int of_viewport_entry[] = {2,  10, 11, 12, 13, 14, 15, 16, 17, 20, 21, 22, 23,
                                     24, 25, 26, 27, 36, 37, 40, 41, 42, 43, 44, 50, 51,
                                     68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78};
constexpr int of_linetype[] = {2, 3, 40, 49, 70, 72, 73};
constexpr int of_layer[] = {2, 6, 62, 70};
constexpr int of_style[] = {2, 3, 4, 40, 41, 42, 50, 70, 71};
constexpr int of_view[] = {2, 10, 11, 12, 20, 21, 22, 31, 32, 40, 41, 42, 43, 44, 50, 70, 71};
constexpr int of_ucs[] = {2, 10, 11, 12, 20, 21, 22, 30, 31, 32, 70};
constexpr int of_application[] = {2, 70};
constexpr int of_dimension_style[] = {2,   3,   4,   5,   6,   7,   40,  41,  42,  43,  44,  45,  46,  47,
                                      48,  70,  71,  72,  73,  74,  75,  76,  77,  78,  140, 141, 142, 143,
                                      144, 145, 146, 147, 170, 171, 172, 173, 174, 175, 176, 177, 178};

struct entry_row {
    std::string_view type;
    db::table_kind table;
    std::span<const int> codes; // sorted
};

constexpr entry_row entries[] = {
    {"VPORT", db::table_kind::viewport, of_viewport_entry},
    {"LTYPE", db::table_kind::linetype, of_linetype},
    {"LAYER", db::table_kind::layer, of_layer},
    {"STYLE", db::table_kind::text_style, of_style},
    {"VIEW", db::table_kind::view, of_view},
    {"UCS", db::table_kind::ucs, of_ucs},
    {"APPID", db::table_kind::regapp, of_application},
    {"DIMSTYLE", db::table_kind::dim_style, of_dimension_style},
};

constexpr int block_code = 5;     // of a dimension style: the first of three names of blocks,
constexpr int block_handle = 342; // and the first of the handles that stand for them since 2000
constexpr int block_codes = 3;

bool is_text_with_style(std::string_view type) {
    return type == "TEXT" || type == "ATTRIB" || type == "ATTDEF";
}

} // namespace

void r12_records::named(int code, db::table_kind table, std::string_view name) {
    job_.out.group(code, names_.of(table, name));
}

void r12_records::extended_data() {
    for (std::size_t i = groups_.extended_data(); i < groups_.size(); ++i) {
        constexpr int application = 1001;
        constexpr int layer = 1003;
        if (groups_[i].code == application)
            named(application, db::table_kind::regapp, groups_[i].value);
        else if (groups_[i].code == layer)
            named(layer, db::table_kind::layer, groups_[i].value);
        else
            job_.put(groups_[i]);
    }
}

// ---- entities

void r12_records::head(dxf::record_id id, std::string_view type, bool on_paper) {
    job_.out.group(0, type);
    job_.out.handle(5, job_.records.handle(id));
    if (on_paper)
        job_.out.group(67, "1");
    job_.out.raw(r12_common(job_, names_, groups_, true));
}

// What R12 knows of the groups of a class, in the order in which they stand.
void r12_records::data(dxf::record_id id, std::string_view type) {
    const std::uint32_t number = job_.records.type(id);
    bool in_braces = false;
    constexpr int common[] = {5, 6, 8, 60, 62, 67};
    bool seen[std::size(common)] = {};
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (code == 101)
            break;
        if (code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        // The first of a common group was written; a second one is of the class.
        const auto at = std::find(std::begin(common), std::end(common), code);
        if (at != std::end(common) && !std::exchange(seen[at - std::begin(common)], true))
            continue;
        if (in_braces || !in_r12(code) || dropped_.has(number, code))
            continue;
        if (code == 7 && is_text_with_style(type))
            named(code, db::table_kind::text_style, groups_[i].value);
        else if (code == 2 && (type == "INSERT" || type == "DIMENSION"))
            named(code, db::table_kind::block, groups_[i].value);
        else if (code == 3 && type == "DIMENSION")
            named(code, db::table_kind::dim_style, groups_[i].value);
        else
            job_.put(groups_[i]);
    }
}

void r12_records::entity(dxf::record_id id, bool on_paper) {
    groups_.read(job_.records.text(id));
    std::string_view type = groups_.type();
    const bool part = job_.records.kind(id) == dxf::record_kind::part;
    if (part && !parts_follow_)
        return;
    if (!part)
        parts_follow_ = type == "INSERT" || type == "POLYLINE";
    if (const r12_pictures::picture* const picture = pictures_.of(id); picture != nullptr) {
        if (!picture->block.empty()) {
            head(id, "INSERT", on_paper);
            job_.out.group(2, picture->block);
            for (const int code : {10, 20, 30})
                job_.out.group(code, "0.0");
            extended_data();
        } else {
            job_.out.raw(picture->figures);
        }
        job_.out.end_record();
        return;
    }
    if (type == "LWPOLYLINE") {
        light_polyline(id, on_paper);
        job_.out.end_record();
        return;
    }
    if (type == "3DLINE")
        type = "LINE";
    head(id, type, on_paper);
    if (type == "POLYLINE" && !groups_.has(66))
        job_.out.group(66, "1");
    if (type == "VIEWPORT" && job_.from >= db::release_2000)
        viewport();
    else {
        data(id, type);
        extended_data();
    }
    job_.out.end_record();
}

void r12_records::light_polyline(dxf::record_id id, bool on_paper) {
    const std::string layer = names_.of(db::table_kind::layer, groups_.value(8, "0"));
    const std::string_view elevation = groups_.value(38, "0.0");
    head(id, "POLYLINE", on_paper);
    job_.out.group(66, "1");
    job_.out.group(10, "0.0");
    job_.out.group(20, "0.0");
    job_.out.group(30, elevation);
    for (const int code : {70, 39, 210, 220, 230})
        if (groups_.has(code))
            job_.out.group(code, groups_.value(code));
    if (groups_.has(43))
        for (const int code : {40, 41})
            job_.out.group(code, groups_.value(43));
    extended_data();
    bool open = false; // a vertex, whose height is to be written
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (code == 10) {
            job_.out.group(0, "VERTEX");
            if (on_paper)
                job_.out.group(67, "1");
            job_.out.group(8, layer);
            open = true;
        }
        if (!open || (code != 10 && code != 20 && (code < 40 || code > 42)))
            continue;
        job_.put(groups_[i]);
        if (code == 20)
            job_.out.group(30, elevation);
    }
    job_.out.group(0, "SEQEND");
    if (on_paper)
        job_.out.group(67, "1");
    job_.out.group(8, layer);
}

void r12_records::viewport() {
    constexpr int codes[] = {10, 20, 30, 40, 41, 68, 69};
    for (const int code : codes)
        if (groups_.has(code))
            job_.out.group(code, groups_.value(code));
    put_viewport_list(job_, groups_, [this](std::uint64_t handle) {
        const dxf::record_id layer = job_.records.find(handle);
        if (layer == dxf::no_record || job_.records.type(layer) != dxf::type_layer ||
            job_.records.gone(layer))
            return std::string();
        return names_.of(db::table_kind::layer, dxf::value_of(job_.records.text(layer), 2));
    });
    extended_data();
}

void r12_records::block_end(dxf::record_id id) {
    groups_.read(job_.records.text(id));
    const std::string_view type = groups_.type();
    job_.out.group(0, type);
    job_.out.raw(r12_common(job_, names_, groups_, false));
    constexpr int of_block[] = {1, 2, 3, 10, 20, 30, 70};
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (!std::binary_search(std::begin(of_block), std::end(of_block), code))
            continue;
        if (code == 2 || code == 3)
            named(code, db::table_kind::block, groups_[i].value);
        else
            job_.put(groups_[i]);
    }
    extended_data();
    job_.out.end_record();
}

// ---- entries of symbol tables

bool r12_records::entry(dxf::record_id id) {
    groups_.read(job_.records.text(id));
    const std::string_view type = groups_.type();
    const auto row = std::find_if(std::begin(entries), std::end(entries),
                                  [&](const entry_row& one) { return one.type == type; });
    if (row == std::end(entries))
        return false;
    if (row->table == db::table_kind::linetype) {
        const std::wstring name = base::folded(job_.source.codec().decode(groups_.value(2)));
        if (name == base::folded(L"ByLayer") || name == base::folded(L"ByBlock"))
            return false; // these need no record
    }
    job_.out.group(0, type);
    bool in_braces = false;
    for (std::size_t i = 1; i < groups_.extended_data(); ++i) {
        const int code = groups_[i].code;
        if (code == 102)
            in_braces = groups_[i].value.find('{') != std::string_view::npos;
        const bool style = row->table == db::table_kind::dim_style;
        if (style && !in_braces && code >= block_handle && code < block_handle + block_codes) {
            const dxf::record_id record = job_.records.find(dxf::parse_handle(groups_[i].value));
            if (record != dxf::no_record && job_.records.type(record) == dxf::type_block_record)
                named(block_code + code - block_handle, db::table_kind::block,
                      dxf::value_of(job_.records.text(record), 2));
            continue;
        }
        if (in_braces || !std::binary_search(row->codes.begin(), row->codes.end(), code)) {
            if (code == 420 || code == 370)
                dropped_groups::tell(type, code, groups_[i].value, job_.lost);
            else if (type == "LTYPE" && code == 74 && groups_.integer(74) != 0)
                job_.lost.add(L"text or shape in a linetype");
            continue;
        }
        if (code == 2)
            named(code, row->table, groups_[i].value);
        else if (code == 6 && type == "LAYER")
            named(code, db::table_kind::linetype, groups_[i].value);
        else if (style && code >= block_code && code < block_code + block_codes)
            named(code, db::table_kind::block, groups_[i].value);
        else
            job_.put(groups_[i]);
    }
    if (type == "DIMSTYLE") // no blocks are names that are empty
        for (int i = 0; i < block_codes; ++i)
            if (!groups_.has(block_code + i) && !groups_.has(block_handle + i))
                job_.out.group(block_code + i, "");
    extended_data();
    job_.out.end_record();
    return true;
}

} // namespace version
