// The transactions that are under way, behind the managers of the interface.
#pragma once

#include "actrans.h"
#include "host/rx/reactor_list.h"

#include <memory>
#include <vector>

namespace db {

class transactions final : public AcTransactionManager {
public:
    // The one that the process has.
    ACDB_PORT static transactions& instance();

    AcTransaction* startTransaction() override;
    Acad::ErrorStatus endTransaction() override;
    Acad::ErrorStatus abortTransaction() override;
    int numActiveTransactions() override { return static_cast<int>(open_.size()); }
    int numOpenedObjects() override;
    AcTransaction* topTransaction() override;
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                bool openErased) override;
    Acad::ErrorStatus addNewlyCreatedDBRObject(AcDbObject* object, bool add) override;
    Acad::ErrorStatus queueForGraphicsFlush() override { return Acad::eOk; }
    void flushGraphics() override {}
    void addReactor(AcTransactionReactor* reactor) override { reactors_.add(reactor); }
    void removeReactor(AcTransactionReactor* reactor) override { reactors_.remove(reactor); }

    // Aborts what a command left. Returns how many there were.
    ACDB_PORT std::size_t abort_all();

private:
    class transaction;

    transactions();
    ~transactions() override;

    void tell(void (AcTransactionReactor::*news)(int&, AcDbTransactionManager*));
    void commit_all();

    std::vector<std::unique_ptr<transaction>> open_;
    rx::reactor_list<AcTransactionReactor> reactors_;
    bool ending_ = false;
};

} // namespace db
