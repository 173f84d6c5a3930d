// A drawing that is read, changed, saved and read again: what was changed is there, nothing else is, and undo
// gives the bytes back. What is done to it, its last bytes say: behind the end of a drawing there is room for
// them.
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

std::string written(const dxf::drawing& drawing) {
    std::string bytes;
    drawing.write([&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    return bytes;
}

// The entities that are there, in the order of the file, by their type and layer.
std::vector<std::string> entities_of(const dxf::drawing& drawing) {
    std::vector<std::string> found;
    const dxf::record_table& records = drawing.records();
    for (dxf::record_id id = 0; id != dxf::no_record; id = records.next(id))
        if (!records.gone(id) && dxf::stands_on_layer(records.kind(id)))
            found.push_back(std::string(records.type_name(id)) + " " +
                            std::string(records.layer_names()[records.layer(id)]));
    return found;
}

class changer {
public:
    explicit changer(AcDbImpDatabase& database) : database_(database), records_(database.records()) {
        // A block's record may stand among entities in a damaged file; without it the block is repaired anew.
        for (dxf::record_id id = 0; id < records_.size(); ++id)
            if (records_.kind(id) == dxf::record_kind::entity && records_.type_name(id) != "BLOCK_RECORD")
                entities_.push_back(id);
        database_.history().begin_step("step");
    }

    void act(unsigned char what) {
        const unsigned which = what >> 3;
        switch (what & 7) {
        case 0:
            set_layer(which);
            break;
        case 1:
            erase(which);
            break;
        case 2:
            append();
            break;
        case 3:
            database_.history().undo();
            database_.history().begin_step(
                "step"); // an undo step without a name would look like the last one
            break;
        case 4:
            database_.history().redo();
            database_.history().begin_step("step");
            break;
        case 5:
            database_.drawing().set_header_value("$CLAYER", 8, which % 2 == 0 ? "0" : "FUZZ");
            break;
        default:
            database_.history().begin_step("step");
            break;
        }
    }

private:
    void set_layer(unsigned which) {
        if (entities_.empty())
            return;
        const dxf::record_id id = entities_[which % entities_.size()];
        dxf::group_list groups(records_.text(id));
        groups.set_text({"AcDbEntity"}, 8, which % 3 == 0 ? "0" : "FUZZ");
        records_.replace(id, groups.write(database_.drawing().style()));
    }
    void erase(unsigned which) {
        if (!entities_.empty())
            database_.objects().set_erased(entities_[which % entities_.size()], which % 4 != 0);
    }
    void append() {
        const dxf::record_id section = database_.drawing().parts().entities;
        const dxf::record_id last =
            section == dxf::no_record ? section : database_.drawing().last_in(section);
        if (last == dxf::no_record)
            return;
        std::string text;
        const auto add = [&](int code, std::string_view value) {
            dxf::append_group(text, database_.drawing().style(), code, value);
        };
        add(0, "LINE");
        add(8, "FUZZ");
        for (const int code : {10, 20, 11, 21})
            add(code, "0.5");
        entities_.push_back(records_.insert_after(last, text, dxf::record_kind::entity, 0));
    }

    AcDbImpDatabase& database_;
    dxf::record_table& records_;
    std::vector<dxf::record_id> entities_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    auto drawing = dxf::drawing::from_bytes(std::string(reinterpret_cast<const char*>(data), size));
    if (!drawing)
        return 0;
    const std::string before = written(**drawing);
    AcDbDatabase database(false, true);
    AcDbImpDatabase& imp = database.imp();
    imp.set_drawing(std::move(*drawing));
    changer changer(imp);
    constexpr std::size_t most_acts = 40;
    for (std::size_t i = 0; i < std::min(size, most_acts); ++i)
        changer.act(data[size - 1 - i]);

    const std::string changed = written(imp.drawing());
    const auto again = dxf::drawing::from_bytes(changed);
    insist(static_cast<bool>(again));
    insist(written(**again) == changed || !(*again)->repairs().empty());
    insist(entities_of(**again) == entities_of(imp.drawing()));
    while (!imp.history().undo().empty())
        continue;
    insist(written(imp.drawing()) == before);
    return 0;
}
