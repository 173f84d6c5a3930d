// Who hears of changes to a drawing, in which order, and what may be done meanwhile.
#include "actrans.h"
#include "acutads.h"
#include "acutmem.h"
#include "adscodes.h"
#include "base/utf.h"
#include "dbdict.h"
#include "dbents.h"
#include "dbfiler.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "tchar.h"
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using lines = std::vector<std::string>;

std::string type_of(const AcDbObject* object) {
    return base::narrow(object->isA()->name()).substr(4);
}

// Writes down what it is told, with "undoing" where the object says so.
class database_log final : public AcDbDatabaseReactor {
public:
    explicit database_log(lines& log) : log_(log) {}
    void objectAppended(const AcDbDatabase*, const AcDbObject* o) override { note("db appended", o); }
    void objectUnAppended(const AcDbDatabase*, const AcDbObject* o) override { note("db unappended", o); }
    void objectReAppended(const AcDbDatabase*, const AcDbObject* o) override { note("db reappended", o); }
    void objectOpenedForModify(const AcDbDatabase*, const AcDbObject* o) override { note("db opened", o); }
    void objectModified(const AcDbDatabase*, const AcDbObject* o) override { note("db modified", o); }
    void objectErased(const AcDbDatabase*, const AcDbObject* o, Adesk::Boolean erased) override {
        note(erased ? "db erased" : "db revived", o);
    }
    void headerSysVarWillChange(const AcDbDatabase*, const ACHAR* name) override {
        log_.push_back("will change " + base::narrow(name));
    }
    void headerSysVarChanged(const AcDbDatabase*, const ACHAR* name, Adesk::Boolean success) override {
        log_.push_back("changed " + base::narrow(name) + (success ? "" : " not"));
    }
    void goodbye(const AcDbDatabase*) override { log_.emplace_back("db goodbye"); }

private:
    void note(std::string what, const AcDbObject* o) {
        log_.push_back(what + " " + type_of(o) + (o->isUndoing() ? " undoing" : ""));
    }
    lines& log_;
};

class object_log final : public AcDbEntityReactor {
public:
    explicit object_log(lines& log) : log_(log) {}
    void cancelled(const AcDbObject*) override { log_.emplace_back("cancelled"); }
    void copied(const AcDbObject*, const AcDbObject* copy) override {
        log_.push_back("copied to " + type_of(copy));
    }
    void erased(const AcDbObject*, Adesk::Boolean erased) override {
        log_.emplace_back(erased ? "erased" : "revived");
    }
    void goodbye(const AcDbObject*) override { log_.emplace_back("goodbye"); }
    void openedForModify(const AcDbObject* o) override {
        log_.emplace_back("opened");
        was = AcDbLine::cast(o)->endPoint().x;
    }
    void modified(const AcDbObject* o) override {
        log_.emplace_back("modified");
        is = AcDbLine::cast(o)->endPoint().x;
        if (meanwhile)
            meanwhile(o);
    }
    void modifyUndone(const AcDbObject*) override { log_.emplace_back("undone"); }
    void modifiedXData(const AcDbObject*) override { log_.emplace_back("xdata"); }
    void unappended(const AcDbObject*) override { log_.emplace_back("unappended"); }
    void reappended(const AcDbObject*) override { log_.emplace_back("reappended"); }
    void objectClosed(const AcDbObjectId id) override {
        log_.emplace_back("closed");
        if (at_end)
            at_end(id);
    }
    void modifiedGraphics(const AcDbEntity*) override { log_.emplace_back("graphics"); }

    std::function<void(const AcDbObject*)> meanwhile;
    std::function<void(AcDbObjectId)> at_end;
    double was = 0.0;
    double is = 0.0;

private:
    lines& log_;
};

// A drawing with one line, and those who hear of both.
struct DbReactor : testing::Test {
    void SetUp() override {
        database = std::make_unique<AcDbDatabase>();
        step("LINE");
        line = add(new AcDbLine({0, 0, 0}, {1, 0, 0}));
        of_database = std::make_unique<database_log>(log);
        of_line = std::make_unique<object_log>(log);
    }

    void TearDown() override { database.reset(); } // before those who hear of it

    void listen() {
        ASSERT_EQ(database->addReactor(of_database.get()), Acad::eOk);
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForRead, true);
        ASSERT_EQ(opened->addReactor(of_line.get()), Acad::eOk);
    }
    void step(const char* name) { database->imp().history().begin_step(name); }
    AcDbObjectId add(AcDbEntity* entity) {
        const AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }
    void stretch(double x) const {
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite);
        ASSERT_EQ(opened.openStatus(), Acad::eOk);
        opened->setEndPoint({x, 0, 0});
    }
    lines heard() { return std::exchange(log, {}); }

    std::unique_ptr<AcDbDatabase> database;
    AcDbObjectId line;
    lines log;
    std::unique_ptr<database_log> of_database;
    std::unique_ptr<object_log> of_line;
};

TEST_F(DbReactor, EachEventIsToldInItsOrder) {
    listen();
    step("C");
    stretch(2);
    EXPECT_EQ(heard(),
              (lines{"opened", "db opened Line", "modified", "graphics", "db modified Line", "closed"}));
    EXPECT_EQ(of_line->was, 1.0) << "told before the change";
    EXPECT_EQ(of_line->is, 2.0);

    stretch(2);
    EXPECT_EQ(heard(), (lines{"opened", "db opened Line", "closed"})) << "nothing was really changed";

    { const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite); }
    { const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForRead); }
    EXPECT_EQ(heard(), lines{}) << "opened for nothing";

    AcDbLine* opened = nullptr;
    acdbOpenObject(opened, line, AcDb::kForWrite);
    opened->setEndPoint({9, 0, 0});
    opened->cancel();
    EXPECT_EQ(heard(), (lines{"opened", "db opened Line", "cancelled", "closed"}));

    resbuf* const data = acutBuildList(1001, L"ACAD", 1000, L"note", 0);
    acdbOpenObject(opened, line, AcDb::kForWrite);
    opened->setXData(data);
    acutRelRb(data);
    opened->downgradeOpen();
    EXPECT_EQ(heard(), (lines{"opened", "db opened Line", "modified", "xdata", "db modified Line"}));
    EXPECT_EQ(opened->upgradeOpen(), Acad::eOk);
    opened->close();
    EXPECT_EQ(heard(), lines{});

    acdbOpenObject(opened, line, AcDb::kForWrite);
    opened->erase();
    EXPECT_EQ(heard(), (lines{"opened", "db opened Line"}));
    opened->close();
    EXPECT_EQ(heard(), (lines{"erased", "db erased Line", "closed"}));
    acdbOpenObject(opened, line, AcDb::kForWrite, true);
    opened->erase(false);
    opened->erase();
    opened->erase(false);
    opened->close();
    EXPECT_EQ(heard(), (lines{"opened", "db opened Line", "revived", "db revived Line", "closed"}));

    acdbOpenObject(opened, line, AcDb::kForRead);
    delete opened->clone();
    opened->close();
    EXPECT_EQ(heard(), (lines{"copied to Line"}));

    add(new AcDbCircle({0, 0, 0}, {0, 0, 1}, 1));
    EXPECT_EQ(heard(),
              (lines{"db opened BlockTableRecord", "db appended Circle", "db modified BlockTableRecord"}));
    {
        const AcDbObjectPointer<AcDbLayerTable> layers(database->layerTableId(), AcDb::kForWrite);
        AcDbLayerTableRecord* const layer = new AcDbLayerTableRecord;
        layer->setName(L"PIPE");
        layers->add(layer);
        layer->setIsFrozen(true);
        layer->close();
        database->setClayer(database->clayer());
    }
    EXPECT_EQ(heard(), (lines{"db opened LayerTable", "db appended LayerTableRecord",
                              "db opened LayerTableRecord", "db modified LayerTableRecord",
                              "will change CLAYER", "changed CLAYER", "db modified LayerTable"}));
    database.reset();
    EXPECT_EQ(heard(), (lines{"goodbye", "db goodbye"}));
}

TEST_F(DbReactor, WhatIsUndoneIsToldAsUndone) {
    step("STRETCH");
    stretch(2);
    step("CIRCLE");
    add(new AcDbCircle({0, 0, 0}, {0, 0, 1}, 1));
    step("ERASE");
    {
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite);
        opened->erase();
    }
    listen(); // of what was before it, too
    AcDbImpDatabase& imp = database->imp();
    const lines revived{"revived", "db revived Line undoing", "closed"};
    const lines erased{"erased", "db erased Line undoing", "closed"};
    const lines undone{"undone", "modified", "xdata", "graphics", "db modified Line undoing", "closed"};
    EXPECT_EQ(imp.history().undo(), "ERASE");
    EXPECT_EQ(heard(), revived);
    EXPECT_EQ(imp.history().undo(), "CIRCLE");
    EXPECT_EQ(heard(), (lines{"db unappended Circle undoing"}));
    EXPECT_EQ(imp.history().undo(), "STRETCH");
    EXPECT_EQ(heard(), undone);
    EXPECT_EQ(of_line->is, 1.0);
    EXPECT_EQ(imp.history().undo(), "LINE");
    EXPECT_EQ(heard(), (lines{"unappended", "db unappended Line undoing", "closed"}));
    EXPECT_EQ(imp.history().redo(), "LINE");
    EXPECT_EQ(heard(), (lines{"reappended", "db reappended Line undoing", "closed"}));
    EXPECT_EQ(imp.history().redo(), "STRETCH");
    EXPECT_EQ(heard(), undone);
    EXPECT_EQ(imp.history().redo(), "CIRCLE");
    EXPECT_EQ(heard(), (lines{"db reappended Circle undoing"}));
    EXPECT_EQ(imp.history().redo(), "ERASE");
    EXPECT_EQ(heard(), erased);
    EXPECT_EQ(imp.history().undo(), "ERASE");
    const AcDbObjectPointer<AcDbLine> opened(line);
    EXPECT_FALSE(opened->isUndoing());
}

TEST_F(DbReactor, WhileToldTheObjectIsReadOnly) {
    listen();
    of_line->meanwhile = [&](const AcDbObject* told) {
        AcDbLine* again = nullptr;
        EXPECT_TRUE(told->isNotifying());
        EXPECT_EQ(acdbOpenObject(again, line, AcDb::kForWrite), Acad::eWasNotifying);
        EXPECT_EQ(const_cast<AcDbObject*>(told)->upgradeOpen(), Acad::eWasNotifying);
        EXPECT_EQ(const_cast<AcDbObject*>(told)->close(), Acad::eCloseWasNotifying);
        ASSERT_EQ(acdbOpenObject(again, line, AcDb::kForRead), Acad::eOk);
        EXPECT_EQ(again->endPoint().x, 2.0);
        EXPECT_EQ(again->close(), Acad::eOk);
    };
    of_line->at_end = [&](AcDbObjectId id) {
        of_line->at_end = nullptr;
        of_line->meanwhile = nullptr;
        const AcDbObjectPointer<AcDbLine> again(id, AcDb::kForWrite);
        ASSERT_EQ(again.openStatus(), Acad::eOk);
        again->setEndPoint({3, 0, 0});
    };
    stretch(2);
    EXPECT_EQ(of_line->is, 3.0);
}

// Who has the line open for reading, by hand, while others hear that a change of it was taken back.
TEST_F(DbReactor, WhoReadsMeanwhileKeepsTheObject) {
    AcDbObject* read = nullptr;
    ASSERT_EQ(database->addReactor(of_database.get()), Acad::eOk);
    database->transactionManager()->startTransaction();
    stretch(2);
    ASSERT_EQ(acdbOpenObject(read, line, AcDb::kForRead), Acad::eOk);
    heard();
    database->transactionManager()->abortTransaction();
    EXPECT_EQ(heard(), (lines{"db modified Line undoing"}));
    EXPECT_EQ(database->imp().objects().open_object(database->imp().record(line)), read);
    EXPECT_EQ(read->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(AcDbLine::cast(read)->endPoint().x, 1.0);
    EXPECT_EQ(read->close(), Acad::eOk);
    EXPECT_FALSE(database->imp().objects().is_open(database->imp().record(line)));
}

// In objectAppended programs change the new object, and hang reactors on it.
class finishing final : public AcDbDatabaseReactor {
public:
    explicit finishing(AcDbObjectReactor& reactor) : reactor_(reactor) {}
    void objectAppended(const AcDbDatabase*, const AcDbObject* object) override {
        if (AcDbEntity* const entity = AcDbEntity::cast(object)) {
            EXPECT_EQ(entity->addReactor(&reactor_), Acad::eOk);
            EXPECT_EQ(entity->upgradeOpen(), Acad::eOk);
            EXPECT_EQ(entity->setColorIndex(1), Acad::eOk);
            EXPECT_EQ(entity->close(), Acad::eCloseWasNotifying);
            EXPECT_EQ(entity->cancel(), Acad::eCloseWasNotifying);
            EXPECT_EQ(entity->handOverTo(entity, true, true), Acad::eWasNotifying);
            if (downgrades) {
                EXPECT_EQ(entity->downgradeOpen(), Acad::eOk);
            }
        }
    }
    bool downgrades = false;

private:
    AcDbObjectReactor& reactor_;
};

TEST_F(DbReactor, ANewObjectCanBeChangedByWhoHearsOfIt) {
    for (const bool downgrades : {false, true}) {
        finishing reactor(*of_line);
        reactor.downgrades = downgrades;
        ASSERT_EQ(database->addReactor(&reactor), Acad::eOk);
        auto* const made = new AcDbLine({0, 0, 0}, {5, 0, 0});
        AcDbObjectId id;
        {
            const AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
            space->appendAcDbEntity(id, made);
        }
        EXPECT_EQ(made->setEndPoint({6, 0, 0}), Acad::eOk) << "its maker has it open still";
        EXPECT_EQ(made->close(), Acad::eOk);
        EXPECT_EQ(heard(), (lines{"opened", "modified", "graphics", "closed"}));
        const AcDbObjectPointer<AcDbLine> opened(id);
        EXPECT_EQ(opened->colorIndex(), 1);
        EXPECT_EQ(opened->endPoint().x, 6.0);
        database->removeReactor(&reactor);
    }
}

TEST_F(DbReactor, ReactorsComeAndGoWhileTheyAreTold) {
    struct leaving final : AcDbObjectReactor {
        explicit leaving(lines& log, std::string name) : log_(log), name_(std::move(name)) {}
        void modified(const AcDbObject* object) override {
            log_.push_back(name_);
            if (act)
                std::exchange(act, nullptr)(object);
        }
        std::function<void(const AcDbObject*)> act;
        lines& log_;
        std::string name_;
    };
    leaving first(log, "first");
    leaving second(log, "second");
    leaving third(log, "third");
    leaving fourth(log, "fourth");
    {
        const AcDbObjectPointer<AcDbLine> opened(line);
        for (leaving* const reactor : {&first, &second, &third})
            EXPECT_EQ(opened->addReactor(reactor), Acad::eOk);
        EXPECT_EQ(opened->addReactor(&first), Acad::eDuplicateKey);
        EXPECT_EQ(opened->addReactor(nullptr), Acad::eNullObjectPointer);
        EXPECT_EQ(opened->removeReactor(&fourth), Acad::eKeyNotFound);
    }
    first.act = [&](const AcDbObject* object) {
        object->removeReactor(&first);
        object->removeReactor(&second);
        object->addReactor(&fourth);
    };
    stretch(2);
    EXPECT_EQ(heard(), (lines{"first", "third"}));
    third.act = [&](const AcDbObject* object) {
        object->removeReactor(&third);
        object->removeReactor(&fourth);
    };
    stretch(3);
    EXPECT_EQ(heard(), (lines{"third"}));
    stretch(4);
    EXPECT_EQ(heard(), lines{});
}

TEST_F(DbReactor, OfANewObjectTheyFollowItIntoTheDrawing) {
    auto* made = new AcDbLine({0, 0, 0}, {1, 0, 0});
    made->addReactor(of_line.get());
    delete made;
    EXPECT_EQ(heard(), (lines{"goodbye"}));
    made = new AcDbLine({0, 0, 0}, {1, 0, 0});
    made->addReactor(of_line.get());
    line = add(made);
    EXPECT_EQ(heard(), (lines{"closed"}));
    stretch(7);
    EXPECT_EQ(heard(), (lines{"opened", "modified", "graphics", "closed"}));
}

// An object of an application that hears of those that name it.
lines* hearing_log = nullptr;
class HearingNote : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(HearingNote);
    void modified(const AcDbObject* object) override { note("modified", object->objectId()); }
    void erased(const AcDbObject* object, Adesk::Boolean) override { note("erased", object->objectId()); }
    void objectClosed(const AcDbObjectId id) override {
        note("closed", id);
        if (++m_heard; count) {
            Adesk::Boolean writable = false;
            EXPECT_EQ(upgradeFromNotify(writable), Acad::eOk);
            assertWriteEnabled();
            EXPECT_EQ(downgradeToNotify(writable), Acad::eOk);
        }
    }
    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override {
        AcDbObject::dxfInFields(filer);
        resbuf value;
        while (filer->atSubclassData(_T("HearingNote")) && filer->readResBuf(&value) == Acad::eOk)
            m_heard = value.resval.rint;
        return filer->filerStatus();
    }
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override {
        AcDbObject::dxfOutFields(filer);
        filer->writeItem(AcDb::kDxfSubclass, _T("HearingNote"));
        filer->writeItem(AcDb::kDxfInt16, static_cast<Adesk::Int16>(m_heard));
        return filer->filerStatus();
    }
    int times() const { return m_heard; }
    static inline bool count = false;

private:
    static void note(const std::string& what, AcDbObjectId id) {
        hearing_log->push_back(what + " " + base::narrow(id.objectClass()->name()).substr(4));
    }
    int m_heard = 0;
};
ACRX_DXF_DEFINE_MEMBERS(HearingNote, AcDbObject, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, HEARINGNOTE,
                        TEST)

} // namespace

TEST_F(DbReactor, ObjectsThatARecordNamesHearOfIt) {
    hearing_log = &log;
    HearingNote::rxInit();
    acrxBuildClassHierarchy();
    AcDbObjectId note;
    {
        AcDbDictionary* root = nullptr;
        ASSERT_EQ(database->getNamedObjectsDictionary(root, AcDb::kForWrite), Acad::eOk);
        auto* const made = new HearingNote;
        EXPECT_EQ(root->setAt(L"HEARING", made, note), Acad::eOk);
        made->close();
        root->close();
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite);
        EXPECT_EQ(opened->addPersistentReactor(note), Acad::eOk);
    }
    // It hears of its becoming one, too.
    EXPECT_EQ(heard(), (lines{"modified Line", "closed Line"}));
    HearingNote::count = true;
    stretch(2);
    HearingNote::count = false;
    EXPECT_EQ(heard(), (lines{"modified Line", "closed Line"}));
    {
        const AcDbObjectPointer<HearingNote> opened(note);
        EXPECT_EQ(opened->times(), 1) << "it was open for write for a moment";
    }
    {
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite);
        opened->erase();
    }
    EXPECT_EQ(heard(), (lines{"erased Line", "closed Line"}));
    {
        const AcDbObjectPointer<AcDbLine> opened(line, AcDb::kForWrite, true);
        EXPECT_EQ(opened->removePersistentReactor(note), Acad::eOk);
    }
    EXPECT_EQ(heard(), lines{}) << "it is one no more";
    database->imp().objects().close_all();
    deleteAcRxClass(HearingNote::desc());
}
