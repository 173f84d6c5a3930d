#include "host/db/core/imp_database.h"

#include "host/db/core/rules.h"
#include "sys/folders.h"

#include <algorithm>

namespace {

// Every database that lives, by the number in its ids; numbers are never given twice.
std::vector<AcDbImpDatabase*>& living() {
    static std::vector<AcDbImpDatabase*> databases;
    return databases;
}

} // namespace

AcDbImpDatabase::AcDbImpDatabase(AcDbDatabase& self) : self_(self) {
    living().push_back(this);
    serial_ = static_cast<std::uint32_t>(living().size());
}

AcDbImpDatabase::~AcDbImpDatabase() {
    living()[serial_ - 1] = nullptr;
    while (!parts_.empty())
        parts_.pop_back(); // they may look at the drawing to the end
}

std::vector<AcDbImpDatabase*> AcDbImpDatabase::all() {
    std::vector<AcDbImpDatabase*> there = living();
    std::erase(there, nullptr);
    return there;
}

std::size_t AcDbImpDatabase::next_part() {
    static std::size_t next = 0;
    return next++;
}

AcDbImpDatabase::reading& AcDbImpDatabase::how_to_read() {
    static reading manner;
    return manner;
}

void AcDbImpDatabase::tell_of_file(const std::wstring& path, const std::vector<std::wstring>& messages) {
    if (!how_to_read().tell)
        return;
    for (const std::wstring& message : messages) {
        std::wstring line = path;
        line.append(L": ").append(message);
        how_to_read().tell(line);
    }
}

base::result<void> AcDbImpDatabase::read(const std::wstring& path) {
    auto opened = dxf::drawing::open(sys::to_path(path), how_to_read().encoding);
    if (!opened)
        return opened.why();
    set_drawing(std::move(*opened));
    file_name = path;
    tell_of_file(path, drawing_->messages());
    return {};
}

void AcDbImpDatabase::set_drawing(std::unique_ptr<dxf::drawing> drawing) {
    drawing_ = std::move(drawing);
    db::drawing_came(*this);
}

// ---- ids: the database's number above, the record's number plus one below

AcDbObjectId AcDbImpDatabase::id(dxf::record_id record) const {
    AcDbObjectId id;
    if (record != dxf::no_record)
        id.setFromOldId(
            static_cast<Adesk::LongPtr>(static_cast<Adesk::UInt64>(serial_) << 32 | (record + 1)));
    return id;
}

AcDbImpDatabase* AcDbImpDatabase::find(AcDbObjectId id, dxf::record_id& record) {
    const auto number = static_cast<Adesk::UInt64>(id.asOldId());
    const std::size_t serial = number >> 32;
    record = static_cast<dxf::record_id>(number) - 1;
    if (serial == 0 || serial > living().size())
        return nullptr;
    AcDbImpDatabase* const database = living()[serial - 1];
    return database != nullptr && database->has_drawing() && database->records().has(record) ? database
                                                                                             : nullptr;
}

dxf::record_id AcDbImpDatabase::record(AcDbObjectId id) const {
    dxf::record_id record = dxf::no_record;
    return find(id, record) == this ? record : dxf::no_record;
}
