#include "base/case_fold.h"
#include "host/db/core/blocks.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/symbol_names.h"
#include "host/version/modern_plan.h"
#include "host/version/r12_pictures.h"
#include "host/version/r12_records.h"
#include "host/version/sections.h"

#include <algorithm>
#include <iterator>

namespace version {

namespace {

struct table_row {
    std::string_view name;
    db::table_kind kind;
};

// In the order in which R12 has them; blocks have no table.
constexpr table_row tables[] = {
    {"VPORT", db::table_kind::viewport}, {"LTYPE", db::table_kind::linetype},
    {"LAYER", db::table_kind::layer},    {"STYLE", db::table_kind::text_style},
    {"VIEW", db::table_kind::view},      {"UCS", db::table_kind::ucs},
    {"APPID", db::table_kind::regapp},   {"DIMSTYLE", db::table_kind::dim_style},
};

// Variables that name symbols.
constexpr table_row variables[] = {
    {"$CELTYPE", db::table_kind::linetype}, {"$CLAYER", db::table_kind::layer},
    {"$DIMBLK", db::table_kind::block},     {"$DIMBLK1", db::table_kind::block},
    {"$DIMBLK2", db::table_kind::block},    {"$DIMSTYLE", db::table_kind::dim_style},
    {"$PUCSNAME", db::table_kind::ucs},     {"$TEXTSTYLE", db::table_kind::text_style},
    {"$UCSNAME", db::table_kind::ucs},
};

// Objects that every later drawing has, of which nobody thinks as a part of it.
constexpr std::string_view settings[] = {"ACDBDETAILVIEWSTYLE",
                                         "ACDBSECTIONVIEWSTYLE",
                                         "CELLSTYLEMAP",
                                         "DBCOLOR",
                                         "DICTIONARYVAR",
                                         "MATERIAL",
                                         "MLEADERSTYLE",
                                         "MLINESTYLE",
                                         "PLOTSETTINGS",
                                         "RASTERVARIABLES",
                                         "SCALE",
                                         "SORTENTSTABLE",
                                         "SUN",
                                         "TABLESTYLE",
                                         "VISUALSTYLE",
                                         "WIPEOUTVARIABLES"};
// And those that hold others together, which are nothing by themselves.
constexpr std::string_view structure[] = {"ACDBDICTIONARYWDFLT", "ACDBPLACEHOLDER", "DICTIONARY", "LAYOUT"};

class r12_writer {
public:
    explicit r12_writer(conversion& job)
        : job_(job), names_(job), pictures_(job, names_), records_(job, names_, pictures_) {}

    void write() {
        find_spaces();
        ask_for_names();
        header();
        write_tables();
        blocks();
        entities();
        job_.out.group(0, "EOF");
        job_.out.flush();
        count_objects();
    }

private:
    void begin(std::string_view name) {
        job_.out.group(0, "SECTION");
        job_.out.group(2, name);
    }

    bool is_space(dxf::record_id begin) const {
        return db::blocks::is_space_name(
            job_.source.codec().decode(modern_block_name(dxf::value_of(job_.records.text(begin), 2))));
    }

    void find_spaces() {
        if (const dxf::record_id sheet = job_.database.blocks().find(L"*Paper_Space");
            sheet != dxf::no_record)
            paper_ = job_.records.handle(sheet);
    }

    // Tables give the best names to those who stand there; entities may name others.
    void ask_for_names() {
        for (const table_row& row : tables)
            for (const dxf::record_id id : job_.members(job_.source.table(row.name)))
                names_.of(row.kind, dxf::value_of(job_.records.text(id), 2));
        for (const dxf::record_id begin : job_.source.parts().block_begins)
            if (!is_space(begin))
                names_.of(db::table_kind::block, dxf::value_of(job_.records.text(begin), 2));
    }

    void header() {
        put_header(job_, [this](std::string_view name, int code, std::string_view value) {
            const auto row = std::find_if(std::begin(variables), std::end(variables),
                                          [&](const table_row& one) { return one.name == name; });
            if (row == std::end(variables))
                return false;
            job_.out.group(9, name);
            job_.out.group(code, value.empty() ? std::string() : names_.of(row->kind, value));
            return true;
        });
        job_.out.group(0, "ENDSEC");
    }

    void write_tables() {
        begin("TABLES");
        for (const table_row& row : tables) {
            const auto members = job_.members(job_.source.table(row.name));
            job_.out.group(0, "TABLE");
            job_.out.group(2, row.name);
            job_.out.group(70, std::to_string(members.size()));
            for (const dxf::record_id id : members)
                records_.entry(id);
            job_.out.group(0, "ENDTAB");
        }
        job_.out.group(0, "ENDSEC");
    }

    bool wants_picture(dxf::record_id id) const {
        return job_.records.kind(id) == dxf::record_kind::entity &&
               !r12_pictures::is_known(job_.records.type_name(id));
    }

    // What blocks of later kinds of entities need stands in front of them.
    void blocks() {
        begin("BLOCKS");
        const auto members = job_.members(job_.source.parts().blocks);
        const auto in_entities = job_.members(job_.source.parts().entities);
        for (const auto* const list : {&members, &in_entities})
            for (const dxf::record_id id : *list)
                if (wants_picture(id) && is_written(id))
                    pictures_.draw(id, job_.records.owner_handle(id) == paper_);
        std::size_t sheets = 0;
        std::size_t on_sheets = 0;
        enum { written, in_a_space, left_out } where = written;
        for (const dxf::record_id id : members) {
            const dxf::record_kind kind = job_.records.kind(id);
            if (kind == dxf::record_kind::block) {
                where = !is_space(id) ? written : is_written(id) ? in_a_space : left_out;
                sheets += where == left_out ? 1 : 0;
            }
            if (where == left_out)
                on_sheets += kind == dxf::record_kind::entity ? 1 : 0;
            else if (where == in_a_space && kind != dxf::record_kind::block &&
                     kind != dxf::record_kind::block_end)
                of_spaces_.push_back(id);
            else if (kind == dxf::record_kind::block || kind == dxf::record_kind::block_end) {
                if (where == written)
                    records_.block_end(id);
            } else
                records_.entity(id, false);
        }
        job_.out.group(0, "ENDSEC");
        job_.lost.add(L"sheet but the current one", L"left out", sheets);
        job_.lost.add(L"entity of other sheets", L"left out", on_sheets);
    }

    // Of the spaces only model space and the current sheet are; all that is no space is.
    bool is_written(dxf::record_id id) {
        const dxf::record_id owner = job_.records.find(job_.records.owner_handle(id));
        if (owner == dxf::no_record)
            return true;
        const auto [at, fresh] = written_owners_.try_emplace(owner, true);
        if (fresh) {
            const std::wstring name = job_.database.names().name_of(owner);
            at->second = !db::blocks::is_space_name(name) || base::equal_no_case(name, L"*Model_Space") ||
                         base::equal_no_case(name, L"*Paper_Space");
        }
        return at->second;
    }

    void entities() {
        begin("ENTITIES");
        for (const dxf::record_id id : of_spaces_)
            entity(id);
        for (const dxf::record_id id : job_.members(job_.source.parts().entities))
            entity(id);
        job_.out.group(0, "ENDSEC");
    }

    void entity(dxf::record_id id) {
        if (job_.records.kind(id) == dxf::record_kind::entity)
            on_paper_ = job_.records.owner_handle(id) == paper_;
        records_.entity(id, on_paper_);
    }

    void count_objects() {
        for (const dxf::record_id id : job_.members(job_.source.parts().objects)) {
            const std::string_view type = job_.records.type_name(id);
            if (std::find(std::begin(structure), std::end(structure), type) != std::end(structure))
                continue;
            if (std::find(std::begin(settings), std::end(settings), type) != std::end(settings))
                job_.lost.add(L"setting that R12 does not have");
            else
                job_.lost.add(job_.source.codec().decode(type));
        }
    }

    conversion& job_;
    r12_names names_;
    r12_pictures pictures_;
    r12_records records_;
    std::uint64_t paper_ = 0;
    bool on_paper_ = false;
    std::vector<dxf::record_id> of_spaces_; // what the file holds within the blocks of spaces
    std::unordered_map<dxf::record_id, bool> written_owners_;
};

} // namespace

void write_r12(conversion& job) {
    r12_writer(job).write();
}

} // namespace version
