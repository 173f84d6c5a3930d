#include "host/db/core/transactions.h"

#include "host/db/core/history.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/rules.h"

#include <algorithm>
#include <utility>

ACRX_NO_CONS_DEFINE_MEMBERS(AcTransaction, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcTransactionReactor, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbTransactionManager, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcTransactionManager, AcDbTransactionManager)

AcTransaction::~AcTransaction() = default;
AcDbTransactionManager::~AcDbTransactionManager() = default;
AcTransactionManager::~AcTransactionManager() = default;

AcTransactionReactor::~AcTransactionReactor() = default;
void AcTransactionReactor::transactionAboutToStart(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::transactionAboutToEnd(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::transactionAboutToAbort(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::transactionStarted(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::transactionEnded(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::transactionAborted(int& /*count*/, AcDbTransactionManager* /*manager*/) {
}
void AcTransactionReactor::endCalledOnOutermostTransaction(int& /*count*/,
                                                           AcDbTransactionManager* /*manager*/) {
}

namespace db {

class transactions::transaction final : public AcTransaction {
public:
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                bool openErased) override {
        return instance().getObject(object, id, mode, openErased);
    }

    std::vector<AcDbObjectId> opened;        // in the order in which they were
    std::vector<AcDbImpDatabase*> databases; // whose changes are noted since it started
};

transactions& transactions::instance() {
    static transactions the_transactions;
    return the_transactions;
}

transactions::transactions() {
    AcTransaction::rxInit();
    AcTransactionReactor::rxInit();
    AcDbTransactionManager::rxInit();
    AcTransactionManager::rxInit();
}
transactions::~transactions() = default;

namespace {

bool is_alive(const AcDbImpDatabase* database) {
    const std::vector<AcDbImpDatabase*> all = AcDbImpDatabase::all();
    return std::find(all.begin(), all.end(), database) != all.end();
}

// The object that a transaction has open; null when it is gone or not a transaction's.
AcDbObject* held(AcDbObjectId id) {
    dxf::record_id record = dxf::no_record;
    AcDbImpDatabase* const database = AcDbImpDatabase::find(id, record);
    AcDbObject* const object = database != nullptr ? database->objects().open_object(record) : nullptr;
    return object != nullptr && object->imp().life.is_kept() ? object : nullptr;
}

} // namespace

void transactions::tell(void (AcTransactionReactor::*news)(int&, AcDbTransactionManager*)) {
    int count = numActiveTransactions();
    reactors_.tell([&](AcTransactionReactor& reactor) { (reactor.*news)(count, this); });
}

// What the objects of all transactions hold now is in their records, so that a part begins with it.
void transactions::commit_all() {
    for (const auto& one : open_)
        for (const AcDbObjectId id : one->opened)
            if (AcDbObject* const object = held(id); object != nullptr && object->imp().life.is_written())
                object->imp().database->objects().commit(*object);
}

AcTransaction* transactions::startTransaction() {
    for (AcDbImpDatabase* const database : AcDbImpDatabase::all())
        if (database->history().is_replaying())
            return nullptr;
    tell(&AcTransactionReactor::transactionAboutToStart);
    commit_all();
    auto started = std::make_unique<transaction>();
    for (AcDbImpDatabase* const database : AcDbImpDatabase::all())
        if (database->has_drawing()) {
            database->records().begin_part();
            started->databases.push_back(database);
        }
    open_.push_back(std::move(started));
    tell(&AcTransactionReactor::transactionStarted);
    return open_.back().get();
}

AcTransaction* transactions::topTransaction() {
    return open_.empty() ? nullptr : open_.back().get();
}

int transactions::numOpenedObjects() {
    std::size_t count = 0;
    for (const auto& one : open_)
        count += one->opened.size();
    return static_cast<int>(count);
}

Acad::ErrorStatus transactions::getObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                          bool openErased) {
    object = nullptr;
    if (open_.empty())
        return Acad::eNoActiveTransactions;
    if (AcDbObject* const known = held(id)) {
        if (known->isErased() && !openErased)
            return Acad::eWasErased;
        if (mode == AcDb::kForWrite && !known->imp().life.is_written())
            if (const Acad::ErrorStatus status = known->upgradeOpen(); status != Acad::eOk)
                return status;
        object = known;
        return Acad::eOk;
    }
    if (const Acad::ErrorStatus status = acdbOpenObject(object, id, mode, openErased); status != Acad::eOk)
        return status;
    object->imp().life.keep(true);
    open_.back()->opened.push_back(id);
    return Acad::eOk;
}

Acad::ErrorStatus transactions::addNewlyCreatedDBRObject(AcDbObject* object, bool add) {
    if (object == nullptr)
        return Acad::eNullObjectPointer;
    if (object->isNewObject())
        return Acad::eNoDatabase;
    if (!add || object->imp().life.is_kept())
        return Acad::eOk;
    if (open_.empty())
        return Acad::eNoActiveTransactions;
    if (const Acad::ErrorStatus status = object->imp().life.ask(object_change::modify); status != Acad::eOk)
        return status;
    object->imp().life.keep(true);
    open_.back()->opened.push_back(object->objectId());
    return Acad::eOk;
}

Acad::ErrorStatus transactions::endTransaction() {
    if (open_.empty())
        return ending_ ? Acad::eInProcessOfCommitting : Acad::eNoActiveTransactions;
    if (open_.size() == 1)
        tell(&AcTransactionReactor::endCalledOnOutermostTransaction);
    tell(&AcTransactionReactor::transactionAboutToEnd);
    const std::unique_ptr<transaction> ended = std::move(open_.back());
    open_.pop_back();
    if (!open_.empty()) {
        auto& outer = open_.back()->opened;
        outer.insert(outer.end(), ended->opened.begin(), ended->opened.end());
    }
    for (AcDbImpDatabase* const database : ended->databases)
        if (is_alive(database))
            database->records().keep_part();
    if (open_.empty()) {
        const bool was_ending = std::exchange(ending_, true); // who is told may have one of his own
        // All of it is in the drawings before anybody is told of any.
        for (const AcDbObjectId id : ended->opened)
            if (AcDbObject* const object = held(id); object != nullptr && object->imp().life.is_written())
                object->imp().database->objects().commit(*object);
        for (const AcDbObjectId id : ended->opened)
            if (AcDbObject* const object = held(id)) {
                object->imp().life.keep(false);
                object->close();
            }
        ending_ = was_ending;
    }
    tell(&AcTransactionReactor::transactionEnded);
    return Acad::eOk;
}

Acad::ErrorStatus transactions::abortTransaction() {
    if (open_.empty())
        return ending_ ? Acad::eInProcessOfCommitting : Acad::eNoActiveTransactions;
    tell(&AcTransactionReactor::transactionAboutToAbort);
    const std::unique_ptr<transaction> aborted = std::move(open_.back());
    open_.pop_back();
    for (const AcDbObjectId id : aborted->opened)
        if (AcDbObject* const object = held(id)) {
            object->imp().life.keep(false);
            if (object->imp().life.is_written())
                object->cancel();
            else
                object->close();
        }
    for (AcDbImpDatabase* const database : aborted->databases)
        if (is_alive(database))
            database->history().take_back_part();
    // What the transactions around it have open was put into its record when this one started.
    for (const auto& one : open_)
        for (const AcDbObjectId id : one->opened)
            if (AcDbObject* const object = held(id); object != nullptr && object->imp().life.is_written()) {
                object->imp().forget();
                if (!is_host_class(object->isA()))
                    read_own_sections(*object);
                object->imp().forget(); // reading changes nothing
            }
    tell(&AcTransactionReactor::transactionAborted);
    return Acad::eOk;
}

std::size_t transactions::abort_all() {
    const std::size_t count = open_.size();
    while (!open_.empty())
        abortTransaction();
    return count;
}

} // namespace db

AcDbTransactionManager* acdbTransactionManagerPtr() {
    return &db::transactions::instance();
}

AcTransactionManager* acTransactionManagerPtr() {
    return &db::transactions::instance();
}

AcDbTransactionManager* AcDbDatabase::transactionManager() const {
    return acdbTransactionManagerPtr();
}
