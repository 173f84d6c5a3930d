#include "host/db/core/part_iterator.h"

#include "host/dxf/record_header.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObjectIterator, AcRxObject)

namespace db {

namespace {

class part_iterator final : public AcDbObjectIterator {
public:
    part_iterator(const AcDbImpDatabase& database, std::vector<dxf::record_id> records)
        : database_(&database), records_(std::move(records)) {
        skip(1, true);
    }
    explicit part_iterator(std::vector<AcDbEntity*> fresh) : fresh_(std::move(fresh)) {}

    AcDbEntity* entity() const override { return done() || database_ != nullptr ? nullptr : fresh_[here()]; }
    AcDbObjectId objectId() const override {
        return done() || database_ == nullptr ? AcDbObjectId::kNull : database_->id(records_[here()]);
    }
    bool done() const override { return at_ < 0 || here() >= size(); }
    void step(bool backwards, bool skipErased) override {
        if (done())
            return;
        const std::ptrdiff_t way = backwards ? -1 : 1;
        at_ += way;
        skip(way, skipErased);
    }
    Acad::ErrorStatus setPosition(AcDbObjectId id) override {
        for (std::size_t i = 0; i < records_.size(); ++i)
            if (database_->id(records_[i]) == id) {
                at_ = static_cast<std::ptrdiff_t>(i);
                return Acad::eOk;
            }
        return Acad::eKeyNotFound;
    }

private:
    std::size_t here() const { return static_cast<std::size_t>(at_); }
    std::size_t size() const { return database_ != nullptr ? records_.size() : fresh_.size(); }
    void skip(std::ptrdiff_t way, bool erased) {
        while (erased && !done() && database_ != nullptr && database_->records().gone(records_[here()]))
            at_ += way;
    }

    const AcDbImpDatabase* database_ = nullptr; // null: of a new entity
    std::vector<dxf::record_id> records_;
    std::vector<AcDbEntity*> fresh_;
    std::ptrdiff_t at_ = 0;
};

} // namespace

std::vector<dxf::record_id> parts_of(const AcDbImpObject& entity, std::string_view type) {
    std::vector<dxf::record_id> found;
    if (entity.database == nullptr)
        return found;
    const dxf::record_table& records = entity.database->records();
    for (dxf::record_id part = records.next(entity.record);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part))
        if (records.type_name(part) == type)
            found.push_back(part);
    return found;
}

std::unique_ptr<AcDbObjectIterator> iterate_parts(const AcDbImpObject& entity, std::string_view type) {
    if (entity.database != nullptr)
        return std::make_unique<part_iterator>(*entity.database, parts_of(entity, type));
    std::vector<AcDbEntity*> fresh;
    for (const std::unique_ptr<AcDbObject>& part : entity.parts)
        if (dxf::trimmed(part->imp().groups().groups().front().value) == type)
            fresh.push_back(static_cast<AcDbEntity*>(part.get()));
    return std::make_unique<part_iterator>(std::move(fresh));
}

} // namespace db
