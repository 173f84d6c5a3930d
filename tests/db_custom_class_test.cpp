// Objects of classes that an application brings: how they stand in drawings, are opened, changed, copied, and
// what becomes of them without the application.
#include "acutmem.h"
#include "adscodes.h"
#include "dbfiler.h"
#include "dbobjptr.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/custom/group_filers.h"
#include "host/db/custom/memory_filer.h"
#include "host/dxf/record_header.h"
#include "host/rx/applications.h"
#include "rxregsvc.h"
#include "tests/custom_classes.h"
#include "tests/dxf_support.h"
#include "tests/record_sections.h"
#include "tests/support.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using test::groups;

class DbCustomClass : public testing::Test {
protected:
    void SetUp() override {
        database = holding(test::read(test::drawing("r2018.dxf")));
        ASSERT_TRUE(rx::applications::instance().load(L"custom_classes"));
    }
    void TearDown() override {
        database->imp().objects().close_all();
        static_cast<void>(rx::applications::instance().unload(L"custom_classes")); // it may be gone
    }

    static std::unique_ptr<AcDbDatabase> holding(std::string bytes) {
        auto made = std::make_unique<AcDbDatabase>(false, true);
        if (auto drawing = test::opened(std::move(bytes)))
            made->imp().set_drawing(std::move(drawing));
        return made;
    }
    static std::string written(const AcDbDatabase& database) {
        return test::written(database.imp().drawing());
    }

    template<class Object>
    static Object* made(const wchar_t* name) {
        auto* const type = static_cast<AcRxClass*>(acrxClassDictionary->at(name));
        return static_cast<Object*>(type->create());
    }
    static AcRxClass* type(const wchar_t* name) {
        return static_cast<AcRxClass*>(acrxClassDictionary->at(name));
    }

    // Puts an entity into model space and closes it.
    AcDbObjectId append(AcDbEntity* entity) const {
        AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }
    AcDbObjectId append_pipe() const {
        auto* const pipe = made<TestPipe>(L"TestPipe");
        pipe->setEnds(AcGePoint3d(0, 0, 0), AcGePoint3d(30, 40, 0));
        pipe->setBore(32.0);
        pipe->setMedium(L"给水");
        return append(pipe);
    }
    template<class Object>
    static Object* open(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead) {
        AcDbObject* object = nullptr;
        EXPECT_EQ(acdbOpenObject(object, id, mode), Acad::eOk);
        return static_cast<Object*>(object);
    }
    std::string text(AcDbObjectId id) const {
        return std::string(database->imp().records().text(database->imp().record(id)));
    }
    std::string class_entry(const AcDbDatabase& of, const char* name) const {
        const dxf::record_table& records = of.imp().records();
        for (dxf::record_id id = 0; id != dxf::no_record; id = records.next(id))
            if (records.type(id) == dxf::type_class && dxf::value_of(records.text(id), 1) == name &&
                !records.gone(id)) {
                std::string entry;
                for (const int code : {2, 3, 90, 91, 280, 281})
                    entry += std::string(dxf::value_of(records.text(id), code)) + " ";
                return entry;
            }
        return {};
    }

    std::unique_ptr<AcDbDatabase> database;
};

} // namespace

TEST_F(DbCustomClass, AnEntityFilesItselfAndItsClass) {
    const std::string before = written(*database);
    const AcDbObjectId id = append_pipe();
    EXPECT_EQ(id.objectClass(), type(L"TestPipe"));
    EXPECT_EQ(test::section(id, "TestPipe"),
              "70 1|10 0.0|20 0.0|30 0.0|11 30.0|21 40.0|31 0.0|40 32.0|1 给水");
    EXPECT_NE(test::section(id, "AcDbEntity").find("|310 "), std::string::npos)
        << "what it draws is saved with it";
    EXPECT_EQ(test::section(id, "AcDbEntity").substr(0, 8), "8 0|62 3");

    const auto again = holding(written(*database));
    EXPECT_EQ(test::messages(again->imp().drawing()), "");
    EXPECT_EQ(class_entry(*again, "TESTPIPE"), "TestPipe CustomClasses|a test 1 1 0 1 ");
    AcDbObjectId read_id;
    ASSERT_EQ(again->getAcDbObjectId(read_id, false, id.handle()), Acad::eOk);
    auto* const pipe = open<TestPipe>(read_id);
    EXPECT_EQ(pipe->isA(), type(L"TestPipe"));
    EXPECT_EQ(pipe->end(), AcGePoint3d(30, 40, 0));
    EXPECT_EQ(pipe->medium(), L"给水");
    EXPECT_EQ(pipe->colorIndex(), 3);
    AcDbExtents extents;
    EXPECT_EQ(pipe->getGeomExtents(extents), Acad::eOk);
    EXPECT_EQ(extents.maxPoint(), AcGePoint3d(30, 40, 0));
    pipe->close();
    EXPECT_EQ(written(*again), written(*database)) << "reading changes nothing";

    append_pipe();
    EXPECT_EQ(class_entry(*holding(written(*database)), "TESTPIPE"),
              "TestPipe CustomClasses|a test 1 2 0 1 ");
    auto* const erased = open<TestPipe>(id, AcDb::kForWrite);
    EXPECT_EQ(erased->erase(), Acad::eOk);
    erased->close();
    EXPECT_EQ(class_entry(*holding(written(*database)), "TESTPIPE"),
              "TestPipe CustomClasses|a test 1 1 0 1 ");
    database->imp().history().undo();
    EXPECT_EQ(written(*database), before);
}

TEST_F(DbCustomClass, AChangeWritesWhatChangedAlone) {
    // As another program wrote it: other digits, blanks, a group that the class does not know.
    const auto other =
        holding(groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|0 ENDSEC|0 SECTION|2 ENTITIES|"
                       "0 TESTPIPE|5 A1|100 AcDbEntity|8 0|62   3|100 TestPipe|70   1|10 00.50|20 1e0|30 0|"
                       "11 2.50|21 0|31 0|40 1.500|1 air|1001 ACAD|1000 kept|0 ENDSEC|0 EOF"));
    const std::string bytes = written(*other);
    struct row {
        const char* what;
        void (*change)(TestPipe&);
        std::vector<std::string> expected;
    };
    const row rows[] = {
        {"nothing", [](TestPipe&) {}, {}},
        {"the same again", [](TestPipe& pipe) { pipe.setBore(1.5); }, {}},
        {"the bore", [](TestPipe& pipe) { pipe.setBore(2.0); }, {"- 1.500", "+ 2.0"}},
        {"the medium", [](TestPipe& pipe) { pipe.setMedium(L"水"); }, {"- air", "+ 水"}},
        {"a property of all entities", [](TestPipe& pipe) { pipe.setColorIndex(1); }, {"- 3", "+ 1"}},
        {"a group more", [](TestPipe& pipe) { pipe.setFeed(pipe.objectId()); }, {"+ 330", "+ A1"}},
        {"moved",
         [](TestPipe& pipe) {
             AcGeMatrix3d by;
             EXPECT_EQ(pipe.transformBy(by.setToTranslation(AcGeVector3d(0, 1, 0))), Acad::eOk);
         },
         {"- 1e0", "+ 2.0", "- 0", "+ 1.0"}},
        {"taken back",
         [](TestPipe& pipe) {
             pipe.setBore(7.0);
             EXPECT_EQ(pipe.cancel(), Acad::eOk);
         },
         {}},
    };
    for (const row& row : rows) {
        other->imp().history().begin_step("change");
        AcDbObjectId id;
        ASSERT_EQ(other->getAcDbObjectId(id, false, AcDbHandle(0xA1)), Acad::eOk);
        auto* const pipe = open<TestPipe>(id, AcDb::kForWrite);
        row.change(*pipe);
        other->imp().objects().close_all();
        std::vector<std::string> differences;
        for (const std::string& line : test::differences(bytes, written(*other)))
            differences.push_back(line);
        // The graphics come first; they are new to this drawing.
        if (!row.expected.empty()) {
            ASSERT_GT(differences.size(), row.expected.size()) << row.what;
            EXPECT_TRUE(std::equal(row.expected.begin(), row.expected.end(),
                                   differences.end() - static_cast<std::ptrdiff_t>(row.expected.size())) ||
                        std::equal(row.expected.begin(), row.expected.end(), differences.begin()))
                << row.what << testing::PrintToString(differences);
        } else {
            EXPECT_EQ(differences, row.expected) << row.what;
        }
        if (written(*other) != bytes)
            other->imp().history().undo();
        EXPECT_EQ(written(*other), bytes) << row.what;
    }
}

TEST_F(DbCustomClass, ItStandsOnTheHostsClasses) {
    auto* const line = made<TestNotedLine>(L"TestNotedLine");
    line->setStartPoint(AcGePoint3d(1, 2, 0));
    line->setEndPoint(AcGePoint3d(5, 2, 0));
    line->setNote(L"vent");
    const AcDbObjectId id = append(line);
    EXPECT_EQ(test::section(id, "TestNotedLine"), "1 vent");
    auto* there = open<TestNotedLine>(id, AcDb::kForWrite);
    EXPECT_EQ(there->endPoint(), AcGePoint3d(5, 2, 0));
    EXPECT_TRUE(there->isKindOf(AcDbLine::desc()));
    AcGeMatrix3d up;
    EXPECT_EQ(there->transformBy(up.setToTranslation(AcGeVector3d(0, 0, 7))), Acad::eOk);
    there->setNote(L"drain");
    AcDbExtents extents;
    EXPECT_EQ(there->getGeomExtents(extents), Acad::eOk);
    EXPECT_EQ(extents.minPoint(), AcGePoint3d(1, 2, 7));
    there->close();
    EXPECT_EQ(test::section(id, "AcDbLine"),
              "10 1.0|20 2.0|30 7.0|11 5.0|21 2.0|31 7.0|100 TestNotedLine|1 drain");
    there = open<TestNotedLine>(id);
    EXPECT_EQ(there->note(), L"drain");
    there->close();
}

TEST_F(DbCustomClass, ObjectsThatAreNoEntitiesToo) {
    AcDbDictionary* root = nullptr;
    ASSERT_EQ(database->getNamedObjectsDictionary(root, AcDb::kForWrite), Acad::eOk);
    auto* const names = made<TestNames>(L"TestNames");
    names->setNames({L"一", L"two"});
    AcDbObjectId id;
    ASSERT_EQ(root->setAt(L"ZEF_NAMES", names, id), Acad::eOk);
    names->close();
    const std::string good = written(*database);
    for (const wchar_t* bad : {L"bad", L"throw"}) {
        std::unique_ptr<TestNames> refused(made<TestNames>(L"TestNames"));
        refused->setNames({bad});
        AcDbObjectId none;
        EXPECT_EQ(root->setAt(L"ZEF_BAD", refused.get(), none), Acad::eFilerError);
    }
    root->close();
    EXPECT_EQ(test::section(id, "TestNames"), "300 一|300 two");
    auto* there = open<TestNames>(id, AcDb::kForWrite);
    EXPECT_EQ(there->names(), (std::vector<std::wstring>{L"一", L"two"}));
    there->setNames({L"一", L"between", L"two"});
    there->close();
    EXPECT_EQ(test::section(id, "TestNames"), "300 一|300 between|300 two");
    there = open<TestNames>(id, AcDb::kForWrite);
    there->setNames({L"bad"});
    there->close();
    EXPECT_EQ(test::section(id, "TestNames"), "300 一|300 between|300 two")
        << "what can not be filed changes nothing";
    EXPECT_EQ(class_entry(*holding(written(*database)), "TESTNAMES"), "TestNames CUSTOMCLASSES 0 1 0 0 ");
}

TEST_F(DbCustomClass, WithoutTheApplicationItIsKeptAsItStands) {
    const AcDbObjectId id = append_pipe();
    auto* const open_pipe = open<TestPipe>(id, AcDb::kForWrite);
    open_pipe->setBore(50.0);
    // What is open is filed while its class is still there.
    ASSERT_TRUE(rx::applications::instance().unload(L"custom_classes"));
    EXPECT_FALSE(id.isResident());
    EXPECT_NE(test::section(id, "TestPipe").find("|40 50.0|"), std::string::npos);
    const std::string bytes = written(*database);
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->isA()->dxfName() == nullptr ||
                  std::wstring(entity->isA()->name()).find(L"Test") == std::wstring::npos,
              true);
    entity->close();
    EXPECT_EQ(written(*database), bytes);
    AcDbExtents extents;
    entity = open<AcDbEntity>(id);
    EXPECT_EQ(entity->getGeomExtents(extents), Acad::eOk) << "it is seen by what was saved with it";
    EXPECT_TRUE(extents.maxPoint().isEqualTo(AcGePoint3d(30, 40, 0)));
    entity->close();

    ASSERT_TRUE(rx::applications::instance().load(L"custom_classes"));
    auto* const pipe = open<TestPipe>(id);
    EXPECT_EQ(pipe->isA(), type(L"TestPipe"));
    EXPECT_EQ(pipe->bore(), 50.0);
    pipe->close();
}

TEST_F(DbCustomClass, DataOfANewerVersionIsLeftAlone) {
    const auto newer = holding(groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|0 ENDSEC|0 SECTION|2 ENTITIES|"
                                      "0 TESTPIPE|5 A1|100 AcDbEntity|8 0|100 TestPipe|70 2|40 7.0|"
                                      "0 TESTPIPE|5 A2|100 AcDbEntity|8 0|0 ENDSEC|0 EOF"));
    const std::string bytes = written(*newer);
    AcDbObjectId id;
    ASSERT_EQ(newer->getAcDbObjectId(id, false, AcDbHandle(0xA1)), Acad::eOk);
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_NE(entity->isA(), type(L"TestPipe"));
    entity->close();
    ASSERT_EQ(newer->getAcDbObjectId(id, false, AcDbHandle(0xA2)), Acad::eOk);
    auto* const pipe = open<TestPipe>(id);
    EXPECT_EQ(pipe->isA(), type(L"TestPipe")) << "one without data has what its constructor gave it";
    EXPECT_EQ(pipe->bore(), 15.0);
    pipe->close();
    EXPECT_EQ(written(*newer), bytes);
}

TEST_F(DbCustomClass, CopiesHaveWhatTheOriginalHasNow) {
    const AcDbObjectId id = append_pipe();
    auto* const pipe = open<TestPipe>(id, AcDb::kForWrite);
    pipe->setBore(99.0); // not yet in the record
    const std::unique_ptr<TestPipe> copy(static_cast<TestPipe*>(pipe->clone()));
    pipe->close();
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->isNewObject());
    EXPECT_EQ(copy->bore(), 99.0);
    EXPECT_EQ(copy->medium(), L"给水");
    EXPECT_EQ(copy->colorIndex(), 3);

    const std::unique_ptr<TestCounter> counter(made<TestCounter>(L"TestCounter"));
    counter->setCount(42);
    const std::unique_ptr<TestCounter> counted(static_cast<TestCounter*>(counter->clone()));
    EXPECT_EQ(counted->count(), 42) << "by what it files in memory";

    db::memory_filer values;
    EXPECT_EQ(copy->dwgOut(&values), Acad::eOk);
    EXPECT_EQ(values.seek(0, 0), Acad::eOk);
    const std::unique_ptr<TestPipe> third(made<TestPipe>(L"TestPipe"));
    EXPECT_EQ(third->dwgIn(&values), Acad::eOk);
    EXPECT_EQ(third->medium(), L"给水");
    EXPECT_EQ(third->colorIndex(), 3);
}

TEST_F(DbCustomClass, OldFilesHoldNone) {
    const std::string bytes = groups("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");
    const auto old = holding(bytes);
    AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, old.get(), AcDb::kForWrite);
    const std::unique_ptr<TestPipe> pipe(made<TestPipe>(L"TestPipe"));
    EXPECT_EQ(model->appendAcDbEntity(pipe.get()), Acad::eIllegalEntityType);
    EXPECT_EQ(written(*old), bytes);
}

TEST(DbFiler, GroupsOfEveryKind) {
    struct row {
        const char* what;
        Acad::ErrorStatus (*write)(AcDbDxfFiler&);
        const char* expected; // "code value|..."; empty for a refusal
    };
    static const char bytes[] = {0x01, char(0xFE)};
    const row rows[] = {
        {"text", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfText, L"管"); }, "1 管"},
        {"AcString", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfXTextString, AcString(L"a")); },
         "300 a"},
        {"no text",
         [](AcDbDxfFiler& f) { return f.writeString(AcDb::kDxfText, static_cast<const ACHAR*>(nullptr)); },
         "1 "},
        {"int 16", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfInt16, Adesk::Int16(-7)); }, "70 -7"},
        {"int 32", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfInt32, Adesk::Int32(-70000)); },
         "90 -70000"},
        {"int 64", [](AcDbDxfFiler& f) { return f.writeInt64(AcDb::kDxfInt64, Adesk::Int64(1) << 40); },
         "160 1099511627776"},
        {"int 8", [](AcDbDxfFiler& f) { return f.writeInt8(AcDb::kDxfInt8, 5); }, "280 5"},
        {"bool", [](AcDbDxfFiler& f) { return f.writeBool(AcDb::kDxfBool, true); }, "290 1"},
        {"whole number as a text", [](AcDbDxfFiler& f) { return f.writeInt16(AcDb::kDxfText, 5); }, ""},
        {"real", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfReal, 0.1); }, "40 0.1"},
        {"real, rounded", [](AcDbDxfFiler& f) { return f.writeDouble(AcDb::kDxfReal, 2.0 / 3.0, 3); },
         "40 0.667"},
        {"no number",
         [](AcDbDxfFiler& f) {
             return f.writeDouble(AcDb::kDxfReal, std::numeric_limits<double>::quiet_NaN());
         },
         ""},
        {"point", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfXCoord, AcGePoint3d(1, 2, 3)); },
         "10 1.0|20 2.0|30 3.0"},
        {"point of the plane",
         [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfXCoord, AcGePoint2d(1, 2)); }, "10 1.0|20 2.0"},
        {"vector", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfNormalX, AcGeVector3d::kZAxis); },
         "210 0.0|220 0.0|230 1.0"},
        {"scale", [](AcDbDxfFiler& f) { return f.writeScale3d(AcDb::kDxfReal, AcGeScale3d(1, 2, 3)); },
         "40 1.0|50 2.0|60 3.0"},
        {"no object",
         [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfHardPointerId, AcDbObjectId::kNull); }, "340 0"},
        {"handle", [](AcDbDxfFiler& f) { return f.writeItem(AcDb::kDxfArbHandle, AcDbHandle(0x1F)); },
         "320 1F"},
        {"bytes",
         [](AcDbDxfFiler& f) {
             return f.writeItem(AcDb::kDxfBinaryChunk, ads_binary{2, const_cast<char*>(bytes)});
         },
         "310 01FE"},
        {"no code", [](AcDbDxfFiler& f) { return f.writeString(AcDb::kDxfStart, L"LINE"); }, ""},
    };
    const AcDbImpObject object;
    for (const row& row : rows) {
        db::group_output filer(object);
        const bool good = *row.expected != 0;
        EXPECT_EQ(row.write(filer) == Acad::eOk, good) << row.what;
        EXPECT_EQ(filer.filerStatus() == Acad::eOk, good) << row.what;
        std::string text;
        for (const auto& group : filer.groups())
            text += (text.empty() ? "" : "|") + std::to_string(group.code) + " " + group.value;
        EXPECT_EQ(text, row.expected) << row.what;
    }
}

TEST(DbFiler, ReadingGoesOnWhereItWasPushedBack) {
    AcDbImpObject object;
    object.begin_new(groups("100 AcDbA|70 1|10 1.0|20 2.0|40 3.0|100 AcDbB|1 管|1001 ACAD"));
    db::group_input filer(object, object.groups().groups());
    resbuf value;
    EXPECT_FALSE(filer.atSubclassData(L"AcDbB"));
    ASSERT_TRUE(filer.atSubclassData(L"AcDbA"));
    EXPECT_EQ(filer.readResBuf(&value), Acad::eOk);
    EXPECT_EQ(value.restype, 70);
    EXPECT_EQ(filer.readResBuf(&value), Acad::eOk);
    EXPECT_EQ(value.resval.rpoint[Y], 2.0);
    EXPECT_EQ(value.resval.rpoint[Z], 0.0);
    filer.pushBackItem();
    EXPECT_EQ(filer.readItem(&value), Acad::eOk);
    EXPECT_EQ(value.restype, 10) << "a point is one item";
    EXPECT_EQ(filer.readResBuf(&value), Acad::eOk);
    ASSERT_TRUE(filer.atSubclassData(L"AcDbB"));
    EXPECT_EQ(filer.readResBuf(&value), Acad::eOk);
    EXPECT_STREQ(value.resval.rstring, L"管");
    EXPECT_TRUE(filer.atExtendedData());
    EXPECT_TRUE(filer.atEndOfObject());
    EXPECT_EQ(filer.readResBuf(&value), Acad::eEndOfFile);
    EXPECT_EQ(filer.filerStatus(), Acad::eOk) << "the end is no error";
    EXPECT_EQ(filer.setError(Acad::eMakeMeProxy, L"version %d", 2), Acad::eMakeMeProxy);
    EXPECT_STREQ(filer.errorMessage(), L"version 2");
    EXPECT_EQ(filer.rewindFiler(), RTNORM);
    EXPECT_TRUE(filer.atSubclassData(L"AcDbA"));
}

TEST(DbFiler, ValuesComeBackAsTheyWentOut) {
    db::memory_filer filer;
    filer.writeItem(L"管");
    filer.writeItem(Adesk::Int64(-1) << 40);
    filer.writeItem(Adesk::UInt16(65535));
    filer.writeBool(true);
    filer.writeItem(0.1);
    filer.writeItem(AcGePoint3d(1, 2, 3));
    filer.writeItem(AcGeScale3d(4, 5, 6));
    filer.writeItem(AcDbHandle(0x1F));
    char bytes[] = {1, 0, 2};
    filer.writeItem(ads_binary{3, bytes});
    const Adesk::Int64 end = filer.tell();
    EXPECT_EQ(filer.seek(1, 2), Acad::eOutOfRange);
    EXPECT_EQ(filer.seek(0, 0), Acad::eOk);
    ACHAR* text = nullptr;
    EXPECT_EQ(filer.readItem(&text), Acad::eOk);
    EXPECT_STREQ(text, L"管");
    acutDelString(text);
    Adesk::Int64 wide = 0;
    filer.readItem(&wide);
    EXPECT_EQ(wide, Adesk::Int64(-1) << 40);
    Adesk::UInt16 small = 0;
    filer.readItem(&small);
    EXPECT_EQ(small, 65535);
    bool yes = false;
    filer.readBool(&yes);
    EXPECT_TRUE(yes);
    double real = 0.0;
    filer.readItem(&real);
    EXPECT_EQ(real, 0.1);
    AcGePoint3d point;
    filer.readItem(&point);
    EXPECT_EQ(point, AcGePoint3d(1, 2, 3));
    AcGeScale3d scale;
    filer.readItem(&scale);
    EXPECT_EQ(scale.sz, 6.0);
    AcDbHandle handle;
    filer.readItem(&handle);
    EXPECT_EQ(handle, AcDbHandle(0x1F));
    ads_binary chunk{};
    EXPECT_EQ(filer.readItem(&chunk), Acad::eOk);
    EXPECT_EQ(std::string(chunk.buf, 3), std::string(bytes, 3));
    delete[] chunk.buf;
    EXPECT_EQ(filer.tell(), end);
    EXPECT_EQ(filer.readItem(&real), Acad::eEndOfFile);
    EXPECT_EQ(filer.readItem(&small), Acad::eEndOfFile) << "and stays so";
    filer.resetFilerStatus();
    EXPECT_EQ(filer.seek(0, 0), Acad::eOk);
    EXPECT_EQ(filer.readItem(&small), Acad::eOk);
}
