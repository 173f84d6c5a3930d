#include "host/db/core/format_versions.h"
#include "host/db/core/record_text.h"
#include "host/version/sections.h"
#include "host/version/variables.h"

#include <algorithm>
#include <iterator>

namespace version {

namespace {

// What tells of the file itself, and $ACADMAINTVER, which means nothing in a file that another program wrote.
constexpr std::string_view of_file[] = {"$ACADVER", "$ACADMAINTVER", "$DWGCODEPAGE", "$HANDSEED",
                                        "$HANDLING"};

} // namespace

void put_header(conversion& job, const variable_editor& edit) {
    const auto variable = [&](std::string_view name, int code, std::string_view value) {
        job.out.group(9, name);
        job.out.group(code, value);
    };
    job.out.group(0, "SECTION");
    job.out.group(2, "HEADER");
    variable("$ACADVER", 1, "AC" + std::to_string(job.to));
    variable("$DWGCODEPAGE", 3, code_page_name(job.source, job.codec.number()));
    if (job.to < db::release_13)
        variable("$HANDLING", 70, "1");
    variable("$HANDSEED", 5, db::handle_text(job.seed()));
    if (job.source.parts().header == dxf::no_record)
        return;
    dxf::group_reader groups(job.records.text(job.source.parts().header));
    dxf::raw_group group;
    dxf::raw_group name;
    bool kept = false;
    bool named = false; // and its first value is to come
    while (groups.next(group)) {
        if (group.code == 9) {
            const std::string_view text = dxf::trimmed(group.value);
            kept = std::find(std::begin(of_file), std::end(of_file), text) == std::end(of_file) &&
                   knows_variable(job.to, text);
            name = group;
            named = kept;
            continue;
        }
        if (!kept)
            continue;
        if (named && edit(dxf::trimmed(name.value), group.code, dxf::trimmed(group.value))) {
            kept = false;
            continue;
        }
        if (named)
            job.put(name);
        named = false;
        job.put(group);
    }
}

} // namespace version
