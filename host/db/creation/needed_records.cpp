#include "host/db/creation/needed_records.h"

#include "base/case_fold.h"
#include "host/db/core/blocks.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/name_references.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace db {

namespace {

// Dictionaries that every drawing has, with what the editor makes in them, and variables of the drawing.
constexpr std::string_view standing_dictionaries[] = {
    "ACAD_COLOR",        "ACAD_GROUP",       "ACAD_LAYOUT",        "ACAD_MATERIAL",
    "ACAD_MLEADERSTYLE", "ACAD_MLINESTYLE",  "ACAD_SCALELIST",     "ACAD_PLOTSETTINGS",
    "ACAD_TABLESTYLE",   "ACAD_VISUALSTYLE", "ACAD_PLOTSTYLENAME", "AcDbVariableDictionary",
};
constexpr std::string_view standing_entries[] = {"Standard", "ByLayer", "ByBlock", "Global", "Normal"};

bool is_dictionary(std::string_view type) {
    return type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT";
}

template<std::size_t Size>
bool is_one_of(const std::string_view (&names)[Size], std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

class search {
public:
    explicit search(AcDbImpDatabase& drawing) : drawing_(drawing), records_(drawing.records()) {
        found_.needed.resize(records_.size());
    }

    needed_records run(const std::vector<dxf::record_id>& entities) {
        need_standing();
        for (const dxf::record_id entity : entities)
            need(entity);
        settle();
        need_main_viewports(entities);
        settle();
        if (external_)
            need_dependents();
        need_applications_objects();
        need_shape_files();
        settle();
        drop_associations();
        return std::move(found_);
    }

private:
    // A dictionary that is needed as the owner of something, or since every drawing has it, is needed
    // without the rest of what it holds.
    void need(dxf::record_id id, bool with_entries = true) {
        if (id == dxf::no_record || id >= found_.needed.size() || records_.gone(id))
            return;
        const bool deep = with_entries && is_dictionary(records_.type_name(id));
        if (found_.needed[id] && (!deep || deep_.contains(id)))
            return;
        found_.needed[id] = true;
        if (deep)
            deep_.insert(id);
        waiting_.push_back(id);
    }

    void need_name(table_kind kind, std::string_view bytes) {
        const auto [at, added] = names_[static_cast<std::size_t>(kind)].try_emplace(bytes, dxf::no_record);
        if (added)
            at->second = drawing_.names().find(kind, drawing_.drawing().codec().decode(dxf::trimmed(bytes)));
        need(at->second);
    }

    void settle() {
        while (!waiting_.empty()) {
            const dxf::record_id id = waiting_.back();
            waiting_.pop_back();
            visit(id);
        }
    }

    void visit(dxf::record_id id) {
        const dxf::record_kind kind = records_.kind(id);
        if (kind == dxf::record_kind::entity)
            for (dxf::record_id part = records_.next(id);
                 part != dxf::no_record && records_.kind(part) == dxf::record_kind::part;
                 part = records_.next(part))
                need(part);
        table_kind table{};
        if (drawing_.names().is_entry(id, table) && table == table_kind::block)
            need_content(id);
        const dxf::group_list groups(records_.text(id));
        for_names(drawing_, id, groups, [&](table_kind named, std::size_t i) {
            if (kind != dxf::record_kind::block || named != table_kind::block) // which names itself
                need_name(named, groups.groups()[i].value);
        });
        if (is_dictionary(records_.type_name(id)) && !deep_.contains(id)) {
            found_.with_loose_ends.insert(id);
            need(records_.find(groups.handle({"AcDbDictionaryWithDefault"}, 340)));
        } else {
            follow_handles(id, groups);
        }
        if (kind == dxf::record_kind::entity || kind == dxf::record_kind::object)
            need(records_.find(records_.owner_handle(id)), false);
    }

    void follow_handles(dxf::record_id id, const dxf::group_list& list) {
        const std::uint64_t owner = records_.owner_handle(id);
        for (const dxf::group& group : list.groups()) {
            const link_kind link = link_of(group.code);
            if (link == link_kind::none)
                continue;
            const std::uint64_t handle = dxf::parse_handle(group.value);
            if (link == link_kind::hard)
                need(records_.find(handle));
            if (handle != 0 && handle != owner)
                found_.with_loose_ends.insert(id);
        }
    }

    // What stands in a block; of spaces only their begin and end.
    void need_content(dxf::record_id block) {
        const bool space = db::blocks::is_space_name(drawing_.names().name_of(block));
        const dxf::record_id begin = drawing_.blocks().begin_of(block);
        if (begin == dxf::no_record)
            return;
        constexpr int external = 4;
        external_ = external_ ||
                    (dxf::group_list(records_.text(begin)).integer({"*"}, 70).value_or(0) & external) != 0;
        for (dxf::record_id id = begin; id != dxf::no_record; id = records_.next(id)) {
            const dxf::record_kind kind = records_.kind(id);
            if (!space || kind == dxf::record_kind::block || kind == dxf::record_kind::block_end)
                need(id);
            if (kind == dxf::record_kind::block_end)
                break;
        }
    }

    void need_standing() {
        for (std::size_t kind = 0; kind < table_kinds; ++kind)
            for (const dxf::record_id entry : drawing_.names().entries(static_cast<table_kind>(kind))) {
                const std::wstring name = drawing_.names().name_of(entry);
                const bool block = static_cast<table_kind>(kind) == table_kind::block;
                const bool first_space =
                    base::equal_no_case(name, L"*Model_Space") || base::equal_no_case(name, L"*Paper_Space");
                if (block ? first_space
                          : is_fixed_name(static_cast<table_kind>(kind), name) ||
                                base::equal_no_case(name, L"Standard"))
                    need(entry);
            }
        for_header_names(drawing_, [this](table_kind kind, const std::string& /*variable*/, int /*code*/,
                                          const std::string& value) {
            const std::wstring usual = usual_name(kind);
            if (!usual.empty() && drawing_.names().find(kind, usual) == dxf::no_record)
                need(drawing_.names().find(kind, drawing_.drawing().codec().decode(value)));
        });
        need_standing_dictionaries();
        if (drawing_.drawing().parts().header == dxf::no_record)
            return;
        const dxf::group_list header(records_.text(drawing_.drawing().parts().header));
        for (const dxf::group& group : header.groups())
            if (link_of(group.code) == link_kind::hard)
                need(records_.find(dxf::parse_handle(group.value)));
    }

    void need_standing_dictionaries() {
        const dxf::record_id root = drawing_.drawing().ensure_root_dictionary();
        need(root, false);
        for_entries(root, [&](std::string_view name, dxf::record_id dictionary) {
            if (!is_one_of(standing_dictionaries, name))
                return;
            const bool variables = name == "AcDbVariableDictionary";
            need(dictionary, variables);
            for_entries(dictionary, [&](std::string_view entry, dxf::record_id object) {
                if (is_one_of(standing_entries, entry))
                    need(object);
            });
        });
    }

    template<class Found>
    void for_entries(dxf::record_id dictionary, Found found) {
        if (dictionary == dxf::no_record || !is_dictionary(records_.type_name(dictionary)))
            return;
        const dxf::group_list list(records_.text(dictionary));
        std::string_view name;
        for (const dxf::group& group : list.groups()) {
            if (group.code == 3)
                name = dxf::trimmed(group.value);
            else if ((group.code == 350 || group.code == 360) && !name.empty())
                found(std::exchange(name, {}), records_.find(dxf::parse_handle(group.value)));
        }
    }

    // A sheet that has something needs the viewport that it is itself.
    void need_main_viewports(const std::vector<dxf::record_id>& entities) {
        std::unordered_set<std::uint64_t> sheets;
        for (const dxf::record_id entity : entities)
            sheets.insert(records_.owner_handle(entity));
        for (const std::uint64_t sheet : sheets) {
            const dxf::record_id block = records_.find(sheet);
            if (block == dxf::no_record ||
                base::equal_no_case(drawing_.names().name_of(block), L"*Model_Space"))
                continue;
            for (const dxf::record_id entity : drawing_.blocks().entities(block))
                if (records_.type(entity) == dxf::type_viewport && !records_.gone(entity) &&
                    dxf::group_list(records_.text(entity)).integer({"AcDbViewport"}, 69) == 1)
                    need(entity);
        }
    }

    // The layers and styles by which an external reference is known here.
    void need_dependents() {
        std::unordered_set<std::wstring> blocks;
        for (const dxf::record_id block : drawing_.names().entries(table_kind::block))
            if (found_.has(block))
                blocks.insert(base::folded(drawing_.names().name_of(block)));
        for (const table_kind kind : {table_kind::layer, table_kind::text_style, table_kind::linetype})
            for (const dxf::record_id entry : drawing_.names().entries(kind)) {
                const std::wstring name = base::folded(drawing_.names().name_of(entry));
                const std::size_t bar = name.find(L'|');
                if (bar != name.npos && blocks.contains(name.substr(0, bar)))
                    need(entry);
            }
    }

    // What the applications of custom entities keep in the named-objects dictionary.
    void need_applications_objects() {
        const dxf::record_id classes = drawing_.drawing().parts().classes;
        if (classes == dxf::no_record)
            return;
        std::unordered_map<std::string_view, std::string_view> of_class; // by type
        for (dxf::record_id id = records_.next(classes);
             id != dxf::no_record && records_.type(id) == dxf::type_class; id = records_.next(id))
            of_class.emplace(dxf::value_of(records_.text(id), 1), dxf::value_of(records_.text(id), 3));
        std::unordered_set<std::string_view> applications;
        std::vector<bool> known(records_.type_names().size());
        for (dxf::record_id id = 0; id < found_.needed.size(); ++id)
            if (found_.needed[id] && records_.kind(id) == dxf::record_kind::entity &&
                !known[records_.type(id)]) {
                known[records_.type(id)] = true;
                if (const auto at = of_class.find(records_.type_name(id)); at != of_class.end())
                    applications.insert(at->second);
            }
        applications.erase("ObjectDBX Classes"); // the editor's own
        for_entries(drawing_.drawing().ensure_root_dictionary(),
                    [&](std::string_view /*name*/, dxf::record_id object) {
                        if (object == dxf::no_record)
                            return;
                        const auto at = of_class.find(records_.type_name(object));
                        if (at != of_class.end() && applications.contains(at->second))
                            need(object);
                    });
    }

    // A shape is in any of the shape files, which stand in the table of text styles.
    void need_shape_files() {
        bool shapes = false;
        for (dxf::record_id id = 0; id < found_.needed.size() && !shapes; ++id)
            shapes = found_.needed[id] && records_.type_name(id) == "SHAPE";
        if (!shapes)
            return;
        for (const dxf::record_id entry : drawing_.names().entries(table_kind::text_style))
            if ((dxf::group_list(records_.text(entry)).integer({"*"}, 70).value_or(0) & 1) != 0)
                need(entry);
    }

    // A dimension that follows something which is not there follows nothing.
    void drop_associations() {
        for (const dxf::record_id id : found_.with_loose_ends) {
            if (records_.type_name(id) != "DIMASSOC")
                continue;
            const dxf::group_list list(records_.text(id));
            for (const dxf::group& group : list.groups())
                if (group.code == 331 && !found_.has(records_.find(dxf::parse_handle(group.value))))
                    found_.needed[id] = false;
        }
    }

    AcDbImpDatabase& drawing_;
    const dxf::record_table& records_;
    needed_records found_;
    std::unordered_set<dxf::record_id> deep_; // dictionaries with all that they hold
    std::vector<dxf::record_id> waiting_;
    std::array<std::unordered_map<std::string_view, dxf::record_id>, table_kinds> names_; // by their bytes
    bool external_ = false;
};

} // namespace

const wchar_t* usual_name(table_kind kind) {
    switch (kind) {
    case table_kind::layer:
        return L"0";
    case table_kind::linetype:
        return L"ByLayer";
    case table_kind::text_style:
    case table_kind::dim_style:
        return L"Standard";
    default:
        return L"";
    }
}

link_kind link_of(int code) {
    if ((code >= 340 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481)
        return link_kind::hard;
    return (code >= 330 && code <= 339) || code == 1005 ? link_kind::soft : link_kind::none;
}

needed_records find_needed(AcDbImpDatabase& drawing, const std::vector<dxf::record_id>& entities) {
    return search(drawing).run(entities);
}

void free_from_boundary(dxf::group_list& hatch) {
    const auto& groups = hatch.groups();
    constexpr dxf::group_place place{"AcDbHatch"};
    if (hatch.find(place, 71) != dxf::group_list::npos)
        hatch.set_integer(place, 71, 0);
    for (std::size_t i = hatch.extent(place).first; i + 1 < groups.size(); ++i) {
        if (groups[i].code != 97 || groups[i + 1].code != 330)
            continue;
        std::size_t last = i + 1;
        while (last < groups.size() && groups[last].code == 330)
            ++last;
        hatch.splice(i + 1, last, {});
        hatch.set_integer_at(i, 0);
    }
}

} // namespace db
