// Transactions: what is opened in them, what is kept and what is taken back, and what is told of it.
#include "actrans.h"
#include "base/utf.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/transactions.h"
#include "host/rx/reactor_list.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

struct DbTransaction : testing::Test {
    void SetUp() override {
        database = std::make_unique<AcDbDatabase>();
        step("LINE");
        line = append(new AcDbLine({0, 0, 0}, {1, 0, 0}));
        step("C");
    }
    void TearDown() override { EXPECT_EQ(manager.numActiveTransactions(), 0); }
    void step(const char* name) { database->imp().history().begin_step(name); }
    AcDbObjectId append(AcDbEntity* entity, bool in_transaction = false) {
        const AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        if (in_transaction) {
            EXPECT_EQ(manager.addNewlyCreatedDBRObject(entity), Acad::eOk);
        } else {
            entity->close();
        }
        return id;
    }
    AcDbLine* get(AcDbObjectId id, AcDb::OpenMode mode) {
        AcDbObject* object = nullptr;
        EXPECT_EQ(manager.getObject(object, id, mode), Acad::eOk);
        return AcDbLine::cast(object);
    }
    double length() const {
        const AcDbObjectPointer<AcDbLine> opened(line);
        return opened.openStatus() == Acad::eOk ? opened->endPoint().x : -1.0;
    }

    std::unique_ptr<AcDbDatabase> database;
    AcDbObjectId line;
    AcDbTransactionManager& manager = *actrTransactionManager;
};

TEST_F(DbTransaction, AnObjectIsGotAsOftenAsWanted) {
    AcDbObject* object = nullptr;
    EXPECT_EQ(manager.getObject(object, line, AcDb::kForRead), Acad::eNoActiveTransactions);
    EXPECT_EQ(manager.endTransaction(), Acad::eNoActiveTransactions);
    AcTransaction* const outer = manager.startTransaction();
    EXPECT_EQ(manager.topTransaction(), outer);
    AcDbLine* const first = get(line, AcDb::kForRead);
    EXPECT_TRUE(first->isTransactionResident());
    manager.startTransaction();
    EXPECT_EQ(get(line, AcDb::kForWrite), first);
    EXPECT_EQ(get(line, AcDb::kForRead), first);
    EXPECT_EQ(get(line, AcDb::kForWrite)->setEndPoint({2, 0, 0}), Acad::eOk);
    EXPECT_EQ(first->close(), Acad::eOk) << "tolerated";
    EXPECT_EQ(first->endPoint().x, 2.0) << "and open still";
    const AcDbObjectPointer<AcDbLine> by_hand(line, AcDb::kForWrite);
    EXPECT_EQ(by_hand.openStatus(), Acad::eWasOpenForWrite);
    EXPECT_EQ(manager.endTransaction(), Acad::eOk);
    EXPECT_EQ(manager.numOpenedObjects(), 1);
    EXPECT_EQ(manager.endTransaction(), Acad::eOk);
    EXPECT_EQ(length(), 2.0);
    EXPECT_FALSE(line.isResident());
}

// Each row says what the outer and the inner transaction end with, and how long the line and how many lines
// there are then.
TEST_F(DbTransaction, WhatIsAbortedIsAsItWas) {
    struct ending {
        bool keep_outer, keep_inner;
        double length;
        std::size_t lines;
    };
    for (const ending& row :
         {ending{true, true, 3, 3}, {true, false, 2, 2}, {false, true, 1, 1}, {false, false, 1, 1}}) {
        SetUp();
        const auto text = std::string(database->imp().records().text(database->imp().record(line)));
        manager.startTransaction();
        AcDbLine* const opened = get(line, AcDb::kForWrite);
        opened->setEndPoint({2, 0, 0});
        append(new AcDbLine({0, 0, 0}, {7, 0, 0}));
        manager.startTransaction();
        get(line, AcDb::kForWrite)->setEndPoint({3, 0, 0});
        append(new AcDbLine({0, 0, 0}, {8, 0, 0}), true);
        EXPECT_EQ(row.keep_inner ? manager.endTransaction() : manager.abortTransaction(), Acad::eOk);
        EXPECT_EQ(opened->endPoint().x, row.keep_inner ? 3.0 : 2.0) << "seen by who has it open";
        EXPECT_EQ(row.keep_outer ? manager.endTransaction() : manager.abortTransaction(), Acad::eOk);

        AcDbImpDatabase& imp = database->imp();
        const auto lines = [&] {
            const auto all = imp.blocks().entities(imp.blocks().find(ACDB_MODEL_SPACE));
            return static_cast<std::size_t>(
                std::count_if(all.begin(), all.end(), [&](auto id) { return !imp.records().gone(id); }));
        };
        EXPECT_EQ(length(), row.length);
        EXPECT_EQ(lines(), row.lines);
        EXPECT_EQ(imp.history().undo(), row.keep_outer ? "C" : "LINE")
            << "a step that is taken back whole is none";
        if (row.keep_outer) {
            EXPECT_EQ(length(), 1.0);
            EXPECT_EQ(imp.history().redo(), "C");
            EXPECT_EQ(length(), row.length);
            EXPECT_EQ(lines(), row.lines);
        } else {
            imp.history().redo();
            EXPECT_EQ(std::string(imp.records().text(imp.record(line))), text);
        }
    }
}

TEST_F(DbTransaction, ErasingAndCancellingAreTakenBackToo) {
    manager.startTransaction();
    get(line, AcDb::kForWrite)->erase();
    AcDbObject* object = nullptr;
    EXPECT_EQ(manager.getObject(object, line, AcDb::kForRead), Acad::eWasErased);
    EXPECT_EQ(manager.getObject(object, line, AcDb::kForRead, true), Acad::eOk);
    manager.abortTransaction();
    EXPECT_EQ(length(), 1.0);
    manager.startTransaction();
    get(line, AcDb::kForWrite)->setEndPoint({4, 0, 0});
    get(line, AcDb::kForWrite)->cancel();
    manager.endTransaction();
    EXPECT_EQ(length(), 1.0);
    manager.startTransaction();
    manager.startTransaction();
    append(new AcDbLine({0, 0, 0}, {7, 0, 0}), true);
    EXPECT_EQ(db::transactions::instance().abort_all(), 2u);
    EXPECT_EQ(database->imp().history().undo(), "LINE");
}

TEST_F(DbTransaction, AllIsToldWhenTheOutermostEnds) {
    using lines = std::vector<std::string>;
    struct trace final : AcDbDatabaseReactor, AcTransactionReactor {
        lines log;
        void objectModified(const AcDbDatabase*, const AcDbObject* object) override {
            log.push_back("modified " + std::to_string(AcDbLine::cast(object)->endPoint().x).substr(0, 1));
            EXPECT_EQ(actrTransactionManager->endTransaction(), Acad::eInProcessOfCommitting);
            EXPECT_NE(actrTransactionManager->startTransaction(), nullptr) << "of its own";
            EXPECT_EQ(actrTransactionManager->endTransaction(), Acad::eOk);
        }
        void objectUnAppended(const AcDbDatabase*, const AcDbObject* object) override {
            EXPECT_TRUE(object->isUndoing());
            log.emplace_back("unappended");
        }
        void transactionStarted(int& count, AcDbTransactionManager*) override { note("started", count); }
        void transactionEnded(int& count, AcDbTransactionManager*) override { note("ended", count); }
        void transactionAborted(int& count, AcDbTransactionManager*) override { note("aborted", count); }
        void transactionAboutToAbort(int& count, AcDbTransactionManager*) override {
            note("aborting", count);
        }
        void endCalledOnOutermostTransaction(int& count, AcDbTransactionManager*) override {
            note("outermost", count);
        }
        void note(const std::string& what, int count) {
            if (rx::reactors_running() == 1) // not its own
                log.push_back(what + " " + std::to_string(count));
        }
    } hears;
    const AcDbObjectId other = append(new AcDbLine({0, 0, 0}, {5, 0, 0}));
    database->addReactor(&hears);
    manager.addReactor(&hears);
    manager.startTransaction();
    get(line, AcDb::kForWrite)->setEndPoint({2, 0, 0});
    manager.startTransaction();
    get(line, AcDb::kForWrite)->setEndPoint({3, 0, 0});
    get(other, AcDb::kForWrite)->setEndPoint({6, 0, 0});
    manager.endTransaction();
    EXPECT_EQ(hears.log, (lines{"started 1", "started 2", "ended 1"}));
    hears.log.clear();
    manager.endTransaction();
    EXPECT_EQ(hears.log, (lines{"outermost 1", "modified 3", "modified 6", "ended 0"}));
    hears.log.clear();
    manager.startTransaction();
    AcDbObject* space = nullptr;
    manager.getObject(space, database->imp().id(database->imp().blocks().find(ACDB_MODEL_SPACE)),
                      AcDb::kForWrite);
    auto* const made = new AcDbLine({0, 0, 0}, {7, 0, 0});
    AcDbObjectId id;
    EXPECT_EQ(AcDbBlockTableRecord::cast(space)->appendAcDbEntity(id, made), Acad::eOk);
    EXPECT_EQ(manager.addNewlyCreatedDBRObject(made), Acad::eOk);
    manager.abortTransaction();
    EXPECT_EQ(hears.log, (lines{"started 1", "aborting 1", "unappended", "aborted 0"}));
    manager.removeReactor(&hears);
    database->removeReactor(&hears);
}

} // namespace
