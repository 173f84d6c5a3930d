#include "host/version/viewport_forms.h"
#include "host/db/core/symbol_names.h"

#include <charconv>

namespace version {

namespace {

// The values of the list in their order, each with the group that holds it since 2000. Source: the DXF
// reference's tables of viewports and of their extended data.
struct value_row {
    int in_list; // code
    int group;   // 0: a bit of group 90
    std::uint32_t bit = 0;
    const char* missing = "0";
};

constexpr value_row values[] = {
    {1010, 17, 0, "0.0"},  {1020, 27, 0, "0.0"},   {1030, 37, 0, "0.0"}, // target
    {1010, 16, 0, "0.0"},  {1020, 26, 0, "0.0"},   {1030, 36, 0, "1.0"}, // direction
    {1040, 51, 0, "0.0"},  {1040, 45, 0, "1.0"},                         // twist, height
    {1040, 12, 0, "0.0"},  {1040, 22, 0, "0.0"},                         // centre
    {1040, 42, 0, "50.0"}, {1040, 43, 0, "0.0"},   {1040, 44, 0, "0.0"}, // lens, clipping
    {1070, 0, 31},         {1070, 72, 0, "100"},                         // mode, circle zoom
    {1070, 0, 128},        {1070, 0, 96},                                // fast zoom, icon
    {1070, 0, 256},        {1070, 0, 512},                               // snap, grid
    {1070, 0, 1024},       {1070, 0, 4096 | 8192},                       // style of snapping, pair
    {1040, 50, 0, "0.0"},  {1040, 13, 0, "0.0"},   {1040, 23, 0, "0.0"}, // snap angle, base
    {1040, 14, 0, "10.0"}, {1040, 24, 0, "10.0"},                        // snap distances
    {1040, 15, 0, "10.0"}, {1040, 25, 0, "10.0"},                        // grid distances
    {1070, 0, 2048},                                                     // whether lines are hidden
};

// How far the bits of a value are from the lowest one.
unsigned shift_of(std::uint32_t bits) {
    unsigned shift = 0;
    for (; bits != 0 && (bits & 1) == 0; bits >>= 1)
        ++shift;
    return shift;
}

std::uint32_t whole_number(std::string_view text) {
    std::uint32_t number = 0;
    text = dxf::trimmed(text);
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

bool is(const dxf::raw_group& group, int code, std::string_view value) {
    return group.code == code && dxf::trimmed(group.value) == value;
}

} // namespace

void put_viewport_groups(conversion& job, const record_groups& viewport) {
    // Where the list is: "MVIEW", an opening brace, the values, the layers in braces, a closing one.
    std::size_t name = viewport.size();
    for (std::size_t i = viewport.extended_data(); i + 1 < viewport.size() && name == viewport.size(); ++i)
        if (is(viewport[i], 1000, "MVIEW") && is(viewport[i + 1], 1002, "{"))
            name = i;
    std::size_t end = name;
    if (name != viewport.size()) {
        std::size_t at = name + 2;
        std::uint32_t status = 0;
        if (at < viewport.size() && viewport[at].code == 1070)
            ++at; // the version of the list
        for (const value_row& row : values) {
            if (at >= viewport.size() || viewport[at].code != row.in_list)
                break; // the list is short
            if (row.group != 0)
                job.out.group(row.group, dxf::trimmed(viewport[at].value));
            else
                status |= (whole_number(viewport[at].value) << shift_of(row.bit)) & row.bit;
            ++at;
        }
        int depth = 1;
        for (end = at; end < viewport.size() && viewport[end].code != 1001 && depth > 0; ++end) {
            if (viewport[end].code == 1002)
                depth += is(viewport[end], 1002, "{") ? 1 : -1;
            if (viewport[end].code != 1003)
                continue;
            const std::wstring layer = job.source.codec().decode(dxf::trimmed(viewport[end].value));
            const dxf::record_id record = job.database.names().find(db::table_kind::layer, layer);
            if (record != dxf::no_record)
                job.out.handle(331, job.records.handle(record));
            else
                job.lost.add(L"layer frozen in a viewport that is not there");
        }
        job.out.group(90, std::to_string(status));
    }
    // An application's name without data is none.
    for (std::size_t i = viewport.extended_data(); i < viewport.size(); ++i) {
        const bool alone = viewport[i].code == 1001 && i + 1 == name &&
                           (end == viewport.size() || viewport[end].code == 1001);
        if (!alone && (i < name || i >= end))
            job.put(viewport[i]);
    }
}

void put_viewport_list(conversion& job, const record_groups& viewport,
                       const std::function<std::string(std::uint64_t)>& layer) {
    job.out.group(1001, "ACAD");
    job.out.group(1000, "MVIEW");
    job.out.group(1002, "{");
    job.out.group(1070, "16");
    const std::uint32_t status = whole_number(viewport.value(90));
    for (const value_row& row : values) {
        if (row.group == 0)
            job.out.group(row.in_list, std::to_string((status & row.bit) >> shift_of(row.bit)));
        else
            job.out.group(row.in_list, viewport.value(row.group, row.missing));
    }
    job.out.group(1002, "{");
    for (std::size_t i = 1; i < viewport.extended_data(); ++i)
        if (viewport[i].code == 331 || viewport[i].code == 341)
            if (const std::string name = layer(dxf::parse_handle(viewport[i].value)); !name.empty())
                job.out.group(1003, name);
    job.out.group(1002, "}");
    job.out.group(1002, "}");
}

} // namespace version
