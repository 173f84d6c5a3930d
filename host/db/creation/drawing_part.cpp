#include "host/db/creation/drawing_part.h"

#include "host/db/core/left_entries.h"
#include "host/db/core/object_links.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/needed_records.h"
#include "host/db/tables/name_references.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace db {

namespace {

constexpr dxf::group_place anywhere{"*"};

// Objects that list others: one that is not there leaves the list.
constexpr std::string_view types_with_lists[] = {"VIEWPORT", "GROUP",  "IDBUFFER",
                                                 "LAYOUT",   "LEADER", "TABLE"};
constexpr std::string_view braces_of_links[] = {dictionary_braces, reactor_braces, "{BLKREFS"};
// Sections that every drawing may have; others are of applications, or of pictures.
constexpr std::string_view sections[] = {"HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"};
// What keeps its shape in the section ACDSDATA.
constexpr std::string_view modeler_types[] = {
    "3DSOLID",         "BODY",         "REGION",       "SURFACE",    "EXTRUDEDSURFACE", "LOFTEDSURFACE",
    "REVOLVEDSURFACE", "SWEPTSURFACE", "PLANESURFACE", "NURBSURFACE"};

template<std::size_t Size>
bool is_one_of(const std::string_view (&names)[Size], std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

class composer {
public:
    composer(AcDbImpDatabase& drawing, const needed_records& needed)
        : drawing_(drawing), records_(drawing.records()), needed_(needed) {
        counts_.resize(records_.type_names().size());
        for (dxf::record_id id = 0; id < records_.size(); ++id)
            if (needed_.has(id)) {
                ++counts_[records_.type(id)];
                highest_ = std::max(highest_, records_.handle(id));
                bytes_ += records_.text(id).size();
            }
    }

    std::string text() {
        constexpr std::size_t room = 1 << 16; // for what every drawing has
        text_.reserve(bytes_ + room);
        bool in_section = true;
        for (dxf::record_id id = 0; id != dxf::no_record; id = records_.next(id)) {
            if (records_.type(id) == dxf::type_section)
                in_section = takes_section(dxf::value_of(records_.text(id), 2));
            if (in_section && takes(id))
                add(id);
            if (records_.type(id) == dxf::type_endsec)
                in_section = true;
        }
        return std::move(text_);
    }

private:
    bool takes_section(std::string_view name) const {
        if (is_one_of(sections, name))
            return true;
        if (name != "ACDSDATA")
            return false;
        for (std::uint32_t type = 0; type < counts_.size(); ++type)
            if (counts_[type] != 0 && is_one_of(modeler_types, records_.type_names()[type]))
                return true;
        return false;
    }

    bool takes(dxf::record_id id) const {
        if (!drawing_.drawing().is_saved(id))
            return false;
        switch (records_.kind(id)) {
        case dxf::record_kind::structure:
            return records_.type(id) != dxf::type_class || count_of_class(id) != 0;
        case dxf::record_kind::header:
        case dxf::record_kind::table:
            return true;
        default:
            return needed_.has(id);
        }
    }

    int count_of_class(dxf::record_id id) const {
        const std::string_view name = dxf::value_of(records_.text(id), 1);
        for (std::uint32_t type = 0; type < counts_.size(); ++type)
            if (records_.type_names()[type] == name)
                return counts_[type];
        return 0;
    }

    void add(dxf::record_id id) {
        if (records_.kind(id) == dxf::record_kind::header)
            put(id, [&](dxf::group_list& groups) { settle_header(groups); });
        else if (records_.type(id) == dxf::type_class)
            put(id, [&](dxf::group_list& groups) {
                if (groups.find(anywhere, 91) != dxf::group_list::npos)
                    groups.set_integer(anywhere, 91, count_of_class(id));
            });
        else if (records_.kind(id) == dxf::record_kind::table || needed_.with_loose_ends.contains(id))
            put(id, [&](dxf::group_list& groups) { tie_ends(id, groups); });
        else
            text_ += records_.text_to_save(id);
    }

    template<class Change>
    void put(dxf::record_id id, Change change) {
        dxf::group_list groups(records_.text_to_save(id));
        change(groups);
        if (groups.changed())
            text_ += groups.write(drawing_.drawing().style());
        else
            text_ += records_.text_to_save(id);
    }

    bool is_loose(const dxf::group& group) const {
        if (link_of(group.code) == link_kind::none)
            return false;
        const std::uint64_t handle = dxf::parse_handle(group.value);
        return handle != 0 && !needed_.has(records_.find(handle)) && !is_table(handle);
    }
    bool is_table(std::uint64_t handle) const {
        const dxf::record_id id = records_.find(handle);
        return id != dxf::no_record && records_.kind(id) == dxf::record_kind::table;
    }

    // Takes away, or sets to none, what names records that did not come along.
    void tie_ends(dxf::record_id id, dxf::group_list& list) {
        const std::string_view type = records_.type_name(id);
        tie_braces(list);
        const auto& groups = list.groups();
        if (type == "HATCH" &&
            std::any_of(groups.begin(), groups.end(), [&](const dxf::group& g) { return is_loose(g); }))
            free_from_boundary(list);
        const bool pairs_before = type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT";
        const bool pairs_behind = type == "SORTENTSTABLE";
        int dropped = 0;
        // From the end: what follows has been looked at.
        for (std::size_t i = groups.size(); i-- > 1;) {
            if (!is_loose(groups[i]))
                continue;
            const int code = groups[i].code;
            const dxf::group_list::fresh_group none[] = {{code, "0"}};
            if (pairs_before && groups[i - 1].code == 3)
                list.splice(i - 1, i + 1, {}), --i;
            else if (pairs_behind && code == 331 && i + 1 < groups.size() && groups[i + 1].code == 5)
                list.splice(i, i + 2, {});
            else if (is_one_of(types_with_lists, type) && code != 1005)
                list.splice(i, i + 1, {}), ++dropped;
            else
                list.splice(i, i + 1, none);
        }
        // The table of dimension styles counts them.
        constexpr dxf::group_place dimension_styles{"AcDbDimStyleTable"};
        if (type == "TABLE" && dropped != 0)
            list.set_integer(dimension_styles, 71,
                             list.integer(dimension_styles, 71).value_or(dropped) - dropped);
    }

    // Who wants to hear of it, its extension dictionary, references to a block. Of a table all, whose filters
    // and states stay behind.
    void tie_braces(dxf::group_list& list) {
        const auto& groups = list.groups();
        for (std::size_t i = 0; i < groups.size() && groups[i].code < 1000; ++i) {
            if (groups[i].code != 102 || !is_one_of(braces_of_links, groups[i].value))
                continue;
            std::size_t last = i + 1;
            for (; last < groups.size() && groups[last].code != 102; ++last)
                if (is_loose(groups[last]))
                    list.splice(last, last + 1, {}), --last;
            if (last == i + 1 && last < groups.size())
                list.splice(i, last + 1, {}), --i;
            else
                i = last;
        }
    }

    void settle_header(dxf::group_list& header) {
        for_header_names(
            drawing_, [&](table_kind kind, const std::string& variable, int code, const std::string& value) {
                const dxf::text_codec& codec = drawing_.drawing().codec();
                if (!value.empty() && !needed_.has(drawing_.names().find(kind, codec.decode(value))))
                    set(header, variable, code, codec.encode(usual_name(kind)));
            });
        const auto style = drawing_.drawing().header_value("$CMLSTYLE");
        if (style && !has_entry("ACAD_MLINESTYLE", *style))
            set(header, "$CMLSTYLE", 2, "Standard");
        const auto seed = drawing_.drawing().header_value("$HANDSEED");
        if (seed && dxf::parse_handle(*seed) <= highest_)
            set(header, "$HANDSEED", 5, handle_text(highest_ + 1));
    }

    bool has_entry(std::string_view dictionary, std::string_view name) const {
        const auto entry = [&](dxf::record_id in, std::string_view wanted) {
            if (in == dxf::no_record)
                return dxf::no_record;
            const dxf::group_list list(records_.text(in));
            for (std::size_t i = 0; i + 1 < list.groups().size(); ++i)
                if (list.groups()[i].code == 3 && dxf::trimmed(list.groups()[i].value) == wanted)
                    return records_.find(dxf::parse_handle(list.groups()[i + 1].value));
            return dxf::no_record;
        };
        return needed_.has(entry(entry(drawing_.drawing().ensure_root_dictionary(), dictionary), name));
    }

    static void set(dxf::group_list& header, std::string_view variable, int code, std::string_view value) {
        const auto& groups = header.groups();
        for (std::size_t i = 0; i + 1 < groups.size(); ++i)
            if (groups[i].code == 9 && dxf::trimmed(groups[i].value) == variable) {
                const dxf::group_list::fresh_group fresh[] = {{code, std::string(value)}};
                header.splice(i + 1, i + 2, fresh);
                return;
            }
    }

    AcDbImpDatabase& drawing_;
    const dxf::record_table& records_;
    const needed_records& needed_;
    std::vector<int> counts_; // of needed records, by type
    std::uint64_t highest_ = 0;
    std::size_t bytes_ = 0;
    std::string text_;
};

} // namespace

base::result<std::unique_ptr<dxf::drawing>> part_of_drawing(AcDbImpDatabase& drawing,
                                                            const std::vector<dxf::record_id>& entities) {
    db::settle_dictionaries(drawing);
    const needed_records needed = find_needed(drawing, entities);
    return dxf::drawing::from_bytes(composer(drawing, needed).text(), drawing.drawing().codec().number());
}

} // namespace db
