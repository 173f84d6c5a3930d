// Writes records as files of R12 hold them: without markers and owners, their names as R12 takes them.
#pragma once

#include "host/version/dropped_groups.h"
#include "host/version/r12_names.h"
#include "host/version/r12_pictures.h"
#include "host/version/record_groups.h"

namespace version {

class r12_records {
public:
    r12_records(conversion& job, r12_names& names, const r12_pictures& pictures)
        : job_(job), names_(names), pictures_(pictures), dropped_(job.to, job.records) {}

    // An entity or a part of one; `on_paper` for those of the sheet.
    void entity(dxf::record_id id, bool on_paper);
    // A BLOCK or an ENDBLK.
    void block_end(dxf::record_id id);
    // An entry of a symbol table; false for one that R12 has no need of.
    bool entry(dxf::record_id id);

private:
    void head(dxf::record_id id, std::string_view type, bool on_paper);
    void data(dxf::record_id id, std::string_view type);
    void extended_data();
    void named(int code, db::table_kind table, std::string_view name);
    void light_polyline(dxf::record_id id, bool on_paper);
    void viewport();

    conversion& job_;
    r12_names& names_;
    const r12_pictures& pictures_;
    dropped_groups dropped_;
    record_groups groups_;
    bool parts_follow_ = false; // of an entity that was written
};

} // namespace version
