#include "host/version/modern_objects.h"

#include "host/db/core/format_versions.h"
#include "host/version/markers.h"

#include <algorithm>
#include <charconv>

namespace version {

namespace {

// Writes groups of a literal text: code, blank, value, bar.
void put_literal(conversion& job, std::string_view groups) {
    while (!groups.empty()) {
        const std::size_t bar = groups.find('|');
        const std::string_view group = groups.substr(0, bar);
        groups.remove_prefix(bar + 1);
        int code = 0;
        const auto end = std::from_chars(group.data(), group.data() + group.size(), code).ptr;
        job.out.group(code, group.substr(static_cast<std::size_t>(end - group.data()) + 1));
    }
}

struct entry_row {
    std::string_view table;
    std::string_view groups; // behind the name
};

// Source: the values of the editor's own new drawings.
constexpr entry_row entries[] = {
    {"VPORT",
     "70 0|10 0.0|20 0.0|11 1.0|21 1.0|12 210.0|22 148.5|13 0.0|23 0.0|14 10.0|24 10.0|15 10.0|25 10.0|"
     "16 0.0|26 0.0|36 1.0|17 0.0|27 0.0|37 0.0|40 297.0|41 1.6|42 50.0|43 0.0|44 0.0|50 0.0|51 0.0|"
     "71 0|72 1000|73 1|74 3|75 0|76 0|77 0|78 0|"},
    {"LTYPE", "70 0|3 |72 65|73 0|40 0.0|"},
    {"LAYER", "70 0|62 7|6 Continuous|370 -3|"},
    {"STYLE", "70 0|40 0.0|41 1.0|50 0.0|71 0|42 2.5|3 txt|4 |"},
    {"APPID", "70 0|"},
    {"DIMSTYLE", "70 0|"},
};

struct class_row {
    std::string_view record;
    std::string_view name;
};

constexpr class_row classes[] = {{"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault"},
                                 {"ACDBPLACEHOLDER", "AcDbPlaceHolder"},
                                 {"LAYOUT", "AcDbLayout"}};

// Three numbers of a header variable, as they stand in the source; `missing` where it has none.
void put_point(conversion& job, int code, std::string_view variable, int numbers, std::string_view missing) {
    std::vector<std::string> found;
    if (job.source.parts().header != dxf::no_record) {
        dxf::group_reader groups(job.records.text(job.source.parts().header));
        dxf::raw_group group;
        bool named = false;
        while (groups.next(group)) {
            if (group.code == 9) {
                if (named)
                    break;
                named = dxf::trimmed(group.value) == variable;
            } else if (named)
                found.emplace_back(dxf::trimmed(group.value));
        }
    }
    for (int i = 0; i < numbers; ++i) {
        const auto at = static_cast<std::size_t>(i);
        job.out.group(code + 10 * i, at < found.size() ? std::string_view(found[at]) : missing);
    }
}

void put_layout(conversion& job, const modern_plan& plan, const modern_plan::space& space,
                const std::string& tab, int order) {
    const bool model = order == 0;
    job.out.group(0, "LAYOUT");
    job.out.handle(5, space.layout);
    job.out.handle(330, plan.layouts);
    put_literal(
        job, "100 AcDbPlotSettings|1 |2 none_device|4 ISO_A3_(420.00_x_297.00_MM)|6 |40 7.5|41 20.0|42 7.5|"
             "43 20.0|44 420.0|45 297.0|46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|");
    job.out.group(70, model ? "1712" : "688");
    put_literal(job, "72 1|73 0|");
    job.out.group(74, model ? "0" : "5");
    job.out.group(7, "");
    job.out.group(75, model ? "0" : "16");
    if (job.to >= db::release_2004)
        put_literal(job, "76 0|77 2|78 300|");
    put_literal(job, "147 1.0|148 0.0|149 0.0|100 AcDbLayout|");
    job.out.group(1, tab);
    job.out.group(70, "1");
    job.out.group(71, std::to_string(order));
    // The limits and extents of R12 are those of its two spaces.
    const std::string_view paper = model ? "" : "P";
    const auto variable = [&](std::string_view name) { return "$" + std::string(paper).append(name); };
    put_point(job, 10, variable("LIMMIN"), 2, "0.0");
    put_point(job, 11, variable("LIMMAX"), 2, "297.0");
    put_point(job, 12, model ? "$INSBASE" : "$PINSBASE", 3, "0.0");
    put_point(job, 14, variable("EXTMIN"), 3, "1e+20");
    put_point(job, 15, variable("EXTMAX"), 3, "-1e+20");
    put_literal(job, "146 0.0|13 0.0|23 0.0|33 0.0|16 1.0|26 0.0|36 0.0|17 0.0|27 1.0|37 0.0|76 0|");
    job.out.handle(330, space.record);
}

std::string tab_of(std::size_t space) {
    if (space == 0)
        return "Model";
    return "Layout" + std::to_string(space);
}

void put_dictionary(conversion& job, const modern_plan& plan, std::uint64_t handle) {
    job.out.group(0, "DICTIONARY");
    job.out.handle(5, handle);
    job.out.handle(330, handle == plan.root_handle ? 0 : plan.root_handle);
    put_literal(job, "100 AcDbDictionary|281 1|");
}

void put_root_entries(conversion& job, const modern_plan& plan) {
    const auto entry = [&](std::string_view name, std::uint64_t handle) {
        if (handle == 0)
            return;
        job.out.group(3, name);
        job.out.handle(350, handle);
    };
    entry("ACAD_GROUP", plan.groups);
    entry("ACAD_LAYOUT", plan.layouts);
    entry("ACAD_PLOTSTYLENAME", plan.plot_styles);
}

// The root dictionary of the source, with what is made: entries of one name would shadow each other.
void put_root(conversion& job, const modern_plan& plan) {
    record_groups root;
    root.read(job.records.text(plan.root));
    const auto is_made = [&](std::string_view name) {
        return (name == "ACAD_GROUP" && plan.groups != 0) || (name == "ACAD_LAYOUT" && plan.layouts != 0) ||
               (name == "ACAD_PLOTSTYLENAME" && plan.plot_styles != 0);
    };
    for (std::size_t i = 0; i < root.extended_data(); ++i) {
        if (root[i].code == 3 && is_made(dxf::trimmed(root[i].value))) {
            if (i + 1 < root.size() && (root[i + 1].code == 350 || root[i + 1].code == 360))
                ++i;
            continue;
        }
        job.put(root[i]);
        if (root[i].code == 100 && !root.has(281))
            job.out.group(281, "1");
    }
    put_root_entries(job, plan);
    for (std::size_t i = root.extended_data(); i < root.size(); ++i)
        job.put(root[i]);
}

} // namespace

void put_entry(conversion& job, const modern_plan& plan, std::string_view table, std::string_view name) {
    for (const entry_row& row : entries)
        if (row.table == table) {
            job.out.group(0, table);
            job.out.handle(table == "DIMSTYLE" ? 105 : 5, job.new_handle());
            job.out.handle(330, plan.table_handles[plan.table(table)]);
            job.out.group(100, "AcDbSymbolTableRecord");
            job.out.group(100, marker_of_entry(table));
            job.put(2, name);
            put_literal(job, row.groups);
            if (table == "LAYER" && plan.normal_style != 0)
                job.out.handle(390, plan.normal_style);
            return;
        }
}

void put_classes(conversion& job, const modern_plan& plan) {
    // How many objects there are of each type; groups 91 tell it since 2004.
    std::vector<std::size_t> counts(job.records.type_names().size());
    for (dxf::record_id id = 0; id < job.records.size(); ++id)
        if (job.source.is_saved(id))
            ++counts[job.records.type(id)];
    const auto count = [&](std::string_view type) {
        for (std::uint32_t i = 0; i < counts.size(); ++i)
            if (job.records.type_names()[i] == type)
                return counts[i];
        return std::size_t(0);
    };
    job.out.group(0, "SECTION");
    job.out.group(2, "CLASSES");
    std::vector<std::string_view> known;
    for (const dxf::record_id id : job.members(job.source.parts().classes)) {
        record_groups groups;
        groups.read(job.records.text(id));
        known.push_back(groups.value(1));
        for (std::size_t i = 0; i < groups.size(); ++i) {
            if (groups[i].code != 91)
                job.put(groups[i]);
            if (groups[i].code == 90 && job.to >= db::release_2004)
                job.out.group(91, std::to_string(count(groups.value(1))));
        }
    }
    for (const class_row& row : classes) {
        const std::size_t made = row.record == "LAYOUT" ? (plan.layouts != 0 ? plan.spaces.size() : 0)
                                                        : (plan.plot_styles != 0 ? 1 : 0);
        if (made == 0 || std::find(known.begin(), known.end(), row.record) != known.end())
            continue;
        job.out.group(0, "CLASS");
        job.out.group(1, row.record);
        job.out.group(2, row.name);
        job.out.group(3, "ObjectDBX Classes");
        job.out.group(90, "0");
        if (job.to >= db::release_2004)
            job.out.group(91, std::to_string(made));
        put_literal(job, "280 0|281 0|");
    }
    job.out.group(0, "ENDSEC");
}

void put_objects(conversion& job, const modern_plan& plan, modern_records& records) {
    job.out.group(0, "SECTION");
    job.out.group(2, "OBJECTS");
    if (plan.root == dxf::no_record) {
        put_dictionary(job, plan, plan.root_handle);
        put_root_entries(job, plan);
    }
    for (const dxf::record_id id : job.members(job.source.parts().objects))
        if (id == plan.root)
            put_root(job, plan);
        else
            records.other(id);
    if (plan.groups != 0)
        put_dictionary(job, plan, plan.groups);
    if (plan.layouts != 0) {
        put_dictionary(job, plan, plan.layouts);
        for (std::size_t i = 0; i < plan.spaces.size(); ++i) {
            job.out.group(3, tab_of(i));
            job.out.handle(350, plan.spaces[i].layout);
        }
        for (std::size_t i = 0; i < plan.spaces.size(); ++i)
            put_layout(job, plan, plan.spaces[i], tab_of(i), static_cast<int>(i));
    }
    if (plan.plot_styles != 0) {
        job.out.group(0, "ACDBDICTIONARYWDFLT");
        job.out.handle(5, plan.plot_styles);
        job.out.handle(330, plan.root_handle);
        put_literal(job, "100 AcDbDictionary|281 1|3 Normal|");
        job.out.handle(350, plan.normal_style);
        job.out.group(100, "AcDbDictionaryWithDefault");
        job.out.handle(340, plan.normal_style);
        job.out.group(0, "ACDBPLACEHOLDER");
        job.out.handle(5, plan.normal_style);
        job.out.handle(330, plan.plot_styles);
    }
    job.out.group(0, "ENDSEC");
}

} // namespace version
