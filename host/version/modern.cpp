#include "host/db/core/format_versions.h"
#include "host/version/modern_objects.h"
#include "host/version/modern_plan.h"
#include "host/version/modern_records.h"
#include "host/version/sections.h"

#include <unordered_set>

namespace version {

namespace {

class modern_writer {
public:
    explicit modern_writer(conversion& job) : job_(job), plan_(job), records_(job, plan_) {}

    void write() {
        if (job_.records.size() > 0 && job_.records.kind(0) == dxf::record_kind::structure &&
            job_.records.type(0) != dxf::type_section)
            other_text(0); // comments in front
        header();
        put_classes(job_, plan_);
        tables();
        blocks();
        entities();
        put_objects(job_, plan_, records_);
        other_sections();
        job_.out.group(0, "EOF");
        job_.out.flush();
    }

private:
    void section(std::string_view name) {
        job_.out.group(0, "SECTION");
        job_.out.group(2, name);
    }

    void header() {
        put_header(job_, [this](std::string_view name, int code, std::string_view value) {
            // The name of the style that is current when it is none of the table's.
            if (name != "$DIMSTYLE" || value != "*UNNAMED")
                return false;
            job_.out.group(9, name);
            job_.out.group(code, "Standard");
            return true;
        });
        job_.out.group(0, "ENDSEC");
    }

    // ---- tables

    void tables() {
        section("TABLES");
        for (std::size_t i = 0; i < table_names.size(); ++i) {
            head(i);
            if (plan_.tables[i] != dxf::no_record)
                for (const dxf::record_id id : job_.members(plan_.tables[i]))
                    records_.entry(id, plan_.table_handles[i]);
            for (const std::string& name : plan_.missing[i])
                put_entry(job_, plan_, table_names[i], name);
            if (table_names[i] == "BLOCK_RECORD")
                block_records();
            job_.out.group(0, "ENDTAB");
        }
        job_.out.group(0, "ENDSEC");
    }

    void head(std::size_t i) {
        const dxf::record_id source = plan_.tables[i];
        if (source != dxf::no_record && job_.from >= db::release_2000) {
            records_.other(source);
            return;
        }
        std::size_t entries = plan_.missing[i].size();
        if (source != dxf::no_record)
            entries += job_.members(source).size();
        job_.out.group(0, "TABLE");
        job_.out.group(2, table_names[i]);
        job_.out.handle(5, plan_.table_handles[i]);
        job_.out.group(330, "0");
        job_.out.group(100, "AcDbSymbolTable");
        job_.out.group(70, std::to_string(entries));
        if (table_names[i] == "DIMSTYLE")
            job_.out.group(100, "AcDbDimStyleTable");
    }

    void block_record(std::string_view name, std::uint64_t handle) {
        job_.out.group(0, "BLOCK_RECORD");
        job_.out.handle(5, handle);
        job_.out.handle(330, plan_.table_handles[plan_.table("BLOCK_RECORD")]);
        job_.out.group(100, "AcDbSymbolTableRecord");
        job_.out.group(100, "AcDbBlockTableRecord");
        job_.put(2, name);
        job_.out.handle(340, plan_.layout_of(handle));
    }

    void block_records() {
        for (const modern_plan::space& space : plan_.spaces)
            if (!space.has_record)
                block_record(space.name, space.record);
        for (const dxf::record_id begin : job_.source.parts().block_begins) {
            const std::uint64_t record = job_.records.owner_handle(begin);
            bool is_space = false;
            for (const modern_plan::space& space : plan_.spaces)
                is_space = is_space || space.record == record;
            if (!is_space && plan_.without_record.contains(begin))
                block_record(dxf::value_of(job_.records.text(begin), 2), record);
        }
    }

    // ---- blocks and entities

    void blocks() {
        section("BLOCKS");
        for (const modern_plan::space& space : plan_.spaces)
            if (space.begin == dxf::no_record)
                empty_block(space);
        for (const dxf::record_id id : job_.members(job_.source.parts().blocks))
            records_.entity(id);
        job_.out.group(0, "ENDSEC");
    }

    void empty_block(const modern_plan::space& space) {
        const auto begin = [&](std::string_view type) {
            job_.out.group(0, type);
            job_.out.handle(5, job_.new_handle());
            job_.out.handle(330, space.record);
            job_.out.group(100, "AcDbEntity");
            job_.out.group(8, "0");
        };
        begin("BLOCK");
        job_.out.group(100, "AcDbBlockBegin");
        job_.put(2, space.name);
        job_.out.group(70, "0");
        for (const int code : {10, 20, 30})
            job_.out.group(code, "0.0");
        job_.put(3, space.name);
        job_.out.group(1, "");
        begin("ENDBLK");
        job_.out.group(100, "AcDbBlockEnd");
    }

    void entities() {
        section("ENTITIES");
        for (const dxf::record_id id : job_.members(job_.source.parts().entities))
            records_.entity(id);
        job_.out.group(0, "ENDSEC");
    }

    // ---- what else there is

    void other_text(dxf::record_id id) {
        dxf::group_reader groups(job_.records.text(id));
        dxf::raw_group group;
        while (groups.next(group))
            job_.put(group);
    }

    void other_sections() {
        const dxf::drawing_parts& parts = job_.source.parts();
        const std::unordered_set<dxf::record_id> done = {parts.header, parts.classes,  parts.tables,
                                                         parts.blocks, parts.entities, parts.objects};
        for (dxf::record_id id = 0; id != dxf::no_record; id = job_.records.next(id)) {
            if (job_.records.type(id) != dxf::type_section || done.contains(id))
                continue;
            const auto members = job_.members(id);
            // Bodies are in a section of their own since 2013; what stands there nobody else can read.
            if (job_.to < db::release_2013 && dxf::value_of(job_.records.text(id), 2) == "ACDSDATA") {
                std::size_t bodies = 0;
                for (const dxf::record_id member : members)
                    bodies += job_.records.type_name(member) == "ACDSRECORD" ? 1 : 0;
                job_.lost.add(L"shape of a body", L"left out", bodies);
                continue;
            }
            other_text(id);
            for (const dxf::record_id member : members)
                other_text(member);
            job_.out.group(0, "ENDSEC");
        }
    }

    conversion& job_;
    modern_plan plan_;
    modern_records records_;
};

} // namespace

void write_modern(conversion& job) {
    modern_writer(job).write();
}

} // namespace version
