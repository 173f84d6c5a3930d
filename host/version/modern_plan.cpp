#include "host/version/modern_plan.h"

#include "base/case_fold.h"
#include "host/db/core/format_versions.h"
#include "host/version/record_groups.h"

#include <algorithm>
#include <unordered_set>

namespace version {

namespace {

std::string upper(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return result;
}

std::wstring folded_name(const conversion& job, std::string_view bytes) {
    return base::folded(job.source.codec().decode(dxf::trimmed(bytes)));
}

// The entry of a dictionary: the value behind the name (3) it has; empty when there is none.
std::uint64_t entry_of(const dxf::record_table& records, dxf::record_id dictionary, std::string_view name) {
    dxf::group_reader groups(records.text(dictionary));
    dxf::raw_group group;
    bool named = false;
    while (groups.next(group)) {
        if (named && (group.code == 350 || group.code == 360))
            return dxf::parse_handle(group.value);
        named = group.code == 3 && dxf::trimmed(group.value) == name;
    }
    return 0;
}

// The names that entities and entries use, by table.
class used_names {
public:
    explicit used_names(const modern_plan& plan) : plan_(plan) {}

    void read(const conversion& job, dxf::record_id id) {
        const std::string_view type = job.records.type_name(id);
        const bool has_style = type == "TEXT" || type == "ATTRIB" || type == "ATTDEF" || type == "MTEXT";
        dxf::group_reader groups(job.records.text(id));
        dxf::raw_group group;
        while (groups.next(group)) {
            switch (group.code) {
            case 6:
                add("LTYPE", group.value);
                break;
            case 7:
                if (has_style)
                    add("STYLE", group.value);
                break;
            case 3:
                if (type == "DIMENSION" || type == "LEADER" || type == "TOLERANCE")
                    add("DIMSTYLE", group.value);
                break;
            case 1001:
                add("APPID", group.value);
                break;
            default:
                break;
            }
        }
    }
    void add(std::string_view table, std::string_view bytes) {
        bytes = dxf::trimmed(bytes);
        if (!bytes.empty())
            names_[plan_.table(table)].insert(bytes);
    }
    const std::unordered_set<std::string_view>& of(std::size_t table) const { return names_[table]; }

private:
    const modern_plan& plan_;
    std::array<std::unordered_set<std::string_view>, table_names.size()> names_;
};

} // namespace

std::string_view modern_block_name(std::string_view name) {
    name = dxf::trimmed(name);
    const std::string big = upper(name);
    if (big == "$MODEL_SPACE" || big == "*MODEL_SPACE")
        return "*Model_Space";
    if (big == "$PAPER_SPACE" || big == "*PAPER_SPACE")
        return "*Paper_Space";
    return name;
}

modern_plan::modern_plan(conversion& job) {
    tables.fill(dxf::no_record);
    plan_tables(job);
    plan_blocks(job);
    if (job.from < db::release_2000 ||
        std::find(tables.begin(), tables.end(), dxf::no_record) != tables.end())
        plan_names(job);
    plan_objects(job);
    std::size_t to_come = 0; // entries, and the two ends of blocks of spaces
    for (const auto& names : missing)
        to_come += names.size();
    for (const space& one : spaces)
        to_come += one.begin == dxf::no_record ? 2 : 0;
    job.reserve(to_come);
}

std::size_t modern_plan::table(std::string_view name) const {
    return static_cast<std::size_t>(std::find(table_names.begin(), table_names.end(), name) -
                                    table_names.begin());
}

std::uint64_t modern_plan::layout_of(std::uint64_t block_record) const {
    for (const space& one : spaces)
        if (one.record == block_record)
            return one.layout;
    return 0;
}

void modern_plan::plan_tables(conversion& job) {
    for (const dxf::record_id head : job.source.parts().table_heads) {
        const std::size_t at = table(dxf::value_of(job.records.text(head), 2));
        if (at < tables.size() && tables[at] == dxf::no_record && job.source.is_saved(head))
            tables[at] = head;
    }
    for (std::size_t i = 0; i < tables.size(); ++i)
        table_handles[i] = tables[i] != dxf::no_record ? job.records.handle(tables[i]) : job.new_handle();
}

void modern_plan::plan_blocks(conversion& job) {
    const auto add_space = [&](std::string_view name, std::uint64_t record) -> space& {
        for (space& one : spaces)
            if (one.record == record)
                return one;
        spaces.push_back({std::string(name), record});
        return spaces.back();
    };
    // What stands for spaces that the file leaves out was made by the reader.
    for (dxf::record_id id = 0; id < job.records.size(); ++id)
        if (job.records.kind(id) == dxf::record_kind::implied &&
            job.records.type(id) == dxf::type_block_record)
            add_space(modern_block_name(dxf::value_of(job.records.text(id), 2)), job.records.handle(id));
    const auto is_space = [](std::string_view name) {
        const std::string big = upper(name);
        return big == "*MODEL_SPACE" || big.starts_with("*PAPER_SPACE");
    };
    if (const dxf::record_id head = tables[table("BLOCK_RECORD")]; head != dxf::no_record)
        for (const dxf::record_id id : job.members(head)) {
            const std::string_view name = modern_block_name(dxf::value_of(job.records.text(id), 2));
            block_records.try_emplace(folded_name(job, name), job.records.handle(id));
            if (is_space(name))
                add_space(name, job.records.handle(id)).has_record = true;
        }
    for (const dxf::record_id begin : job.source.parts().block_begins) {
        if (!job.source.is_saved(begin))
            continue;
        const std::string_view name = modern_block_name(dxf::value_of(job.records.text(begin), 2));
        const std::uint64_t record = job.records.owner_handle(begin);
        if (record == job.records.handle(begin)) {
            without_record.emplace(begin, job.new_handle());
            block_records.try_emplace(folded_name(job, name), record);
        }
        if (is_space(name))
            add_space(name, record).begin = begin;
    }
    std::stable_sort(spaces.begin(), spaces.end(), [](const space& a, const space& b) {
        return upper(a.name) == "*MODEL_SPACE" && upper(b.name) != "*MODEL_SPACE";
    });
}

// The editor makes layers that it meets and refuses other names that are not there; so all are made.
void modern_plan::plan_names(conversion& job) {
    used_names used(*this);
    for (const std::string_view name : {"ByBlock", "ByLayer", "Continuous"})
        used.add("LTYPE", name);
    used.add("LAYER", "0");
    used.add("STYLE", "Standard");
    used.add("APPID", "ACAD");
    used.add("DIMSTYLE", "Standard");
    used.add("VPORT", "*Active");
    for (std::uint32_t i = 0; i < job.records.layer_names().size(); ++i)
        used.add("LAYER", job.records.layer_names()[i]);
    for (dxf::record_id id = 0; id != dxf::no_record; id = job.records.next(id)) {
        const dxf::record_kind kind = job.records.kind(id);
        if ((kind == dxf::record_kind::entity || kind == dxf::record_kind::part ||
             kind == dxf::record_kind::entry) &&
            job.source.is_saved(id))
            used.read(job, id);
    }
    for (std::size_t i = 0; i < tables.size(); ++i) {
        std::unordered_set<std::wstring> have;
        if (tables[i] != dxf::no_record)
            for (const dxf::record_id id : job.members(tables[i])) {
                const std::wstring name = folded_name(job, dxf::value_of(job.records.text(id), 2));
                have.insert(name);
                if (table_names[i] == "STYLE")
                    text_styles.try_emplace(name, job.records.handle(id));
            }
        // The standard names first, so that "Standard" is spelled as they are.
        std::vector<std::string_view> wanted(used.of(i).begin(), used.of(i).end());
        std::sort(wanted.begin(), wanted.end());
        for (const std::string_view name : wanted)
            if (have.insert(folded_name(job, name)).second)
                missing[i].emplace_back(name);
    }
}

void modern_plan::plan_objects(conversion& job) {
    root = job.database.drawing().ensure_root_dictionary();
    if (root != dxf::no_record && !job.source.is_saved(root))
        root = dxf::no_record;
    root_handle = root != dxf::no_record ? job.records.handle(root) : job.new_handle();
    const auto lacks = [&](std::string_view name) {
        return root == dxf::no_record ||
               job.records.find(entry_of(job.records, root, name)) == dxf::no_record;
    };
    if (lacks("ACAD_GROUP"))
        groups = job.new_handle();
    if (lacks("ACAD_PLOTSTYLENAME")) {
        plot_styles = job.new_handle();
        normal_style = job.new_handle();
    }
    if (!lacks("ACAD_LAYOUT"))
        return;
    layouts = job.new_handle();
    for (space& one : spaces)
        one.layout = job.new_handle();
}

} // namespace version
