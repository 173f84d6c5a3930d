#include "host/db/core/history.h"

#include "host/db/core/left_entries.h"
#include "host/db/core/notifier.h"
#include "host/db/core/open_objects.h"

db::history& AcDbImpDatabase::history() const {
    return part<db::history>();
}

namespace db {

void history::begin_step(std::string name) {
    settle_dictionaries(database_);
    database_.records().begin_step(std::move(name));
}

std::string history::undo() {
    database_.objects().close_all();
    std::vector<dxf::replay> changes;
    std::string name = database_.records().undo(changes);
    tell(changes);
    return name;
}

std::string history::redo() {
    database_.objects().close_all();
    std::vector<dxf::replay> changes;
    std::string name = database_.records().redo(changes);
    tell(changes);
    return name;
}

void history::take_back_part() {
    settle_dictionaries(database_);
    std::vector<dxf::replay> changes;
    database_.records().take_back_part(changes);
    tell(changes);
}

void history::tell(std::span<const dxf::replay> changes) {
    replaying_ = true;
    database_.notifier().replayed(changes);
    replaying_ = false;
}

} // namespace db
