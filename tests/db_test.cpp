// The database through its interface: opening, tables, layers, entities, dictionaries, extended data.
#include "acutmem.h"
#include "adscodes.h"
#include "dbobjptr.h"
#include "tests/support.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

std::unique_ptr<AcDbDatabase> opened(std::string_view name) {
    auto database = std::make_unique<AcDbDatabase>(false, true);
    EXPECT_EQ(database->dxfIn(test::drawing(name).wstring().c_str()), Acad::eOk);
    return database;
}

AcDbObjectId at(AcDbDatabase& database, Adesk::UInt64 handle) {
    AcDbObjectId id;
    EXPECT_EQ(database.getAcDbObjectId(id, false, AcDbHandle(handle)), Acad::eOk);
    return id;
}

std::string saved(AcDbDatabase& database) {
    const test::folder folder;
    EXPECT_EQ(database.dxfOut((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    return test::read(folder / "out.dxf");
}

using Changes = std::vector<std::string>;

Changes changes(AcDbDatabase& database, std::string_view name) {
    return test::differences(test::read(test::drawing(name)), saved(database));
}

AcDbLayerTableRecordPointer layer(AcDbDatabase& database, const wchar_t* name, AcDb::OpenMode mode) {
    return AcDbLayerTableRecordPointer(name, &database, mode);
}

std::wstring text_of(ACHAR* text) {
    std::wstring copy(text);
    acutDelString(text);
    return copy;
}

// More extended data than an object may have.
resbuf* too_much() {
    resbuf* const chain = acutBuildList(1001, L"ACAD", 0);
    for (int i = 0; i < 70; ++i) {
        resbuf* const text = acutBuildList(1000, std::wstring(250, L'x').c_str(), 0);
        text->rbnext = chain->rbnext;
        chain->rbnext = text;
    }
    return chain;
}

} // namespace

TEST(Db, OpeningKeepsReadersAndWritersApart) {
    const auto database = opened("r2018.dxf");
    const AcDbObjectId id = at(*database, 0x102);
    AcDbEntity* first = nullptr;
    AcDbEntity* second = nullptr;
    ASSERT_EQ(acdbOpenObject(first, id, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenObject(second, id, AcDb::kForRead), Acad::eOk);
    AcDbEntity* third = first;
    EXPECT_EQ(acdbOpenObject(third, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(third, nullptr) << "a failed opening leaves no pointer";
    EXPECT_EQ(first->upgradeOpen(), Acad::eHadMultipleReaders);
    EXPECT_EQ(first->setColorIndex(1), Acad::eNotOpenForWrite);
    EXPECT_EQ(second->close(), Acad::eOk);
    EXPECT_EQ(first->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(acdbOpenObject(third, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(first->downgradeOpen(), Acad::eOk);
    EXPECT_EQ(first->cancel(), Acad::eNotOpenForWrite);
    EXPECT_EQ(first->close(), Acad::eOk);

    AcDbDictionary* dictionary = nullptr;
    EXPECT_EQ(acdbOpenObject(dictionary, id, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(acdbOpenObject(dictionary, AcDbObjectId::kNull, AcDb::kForRead), Acad::eNullObjectId);
    EXPECT_EQ(acdbOpenAcDbEntity(third, database->layerTableId(), AcDb::kForRead), Acad::eNotAnEntity);
    AcDbObjectId missing;
    EXPECT_EQ(database->getAcDbObjectId(missing, false, AcDbHandle(L"7777")), Acad::eUnknownHandle);
    EXPECT_EQ(changes(*database, "r2018.dxf"), Changes{}) << "reading changes nothing";
}

TEST(Db, AnIdOutlivesItsDatabaseAsInvalid) {
    auto database = opened("r2018.dxf");
    const AcDbObjectId id = at(*database, 0x102);
    EXPECT_TRUE(id.isValid());
    EXPECT_EQ(id.handle(), AcDbHandle(L"102"));
    EXPECT_EQ(id.database(), database.get());
    database.reset();
    EXPECT_FALSE(id.isValid());
    EXPECT_TRUE(id.isErased());
    AcDbObject* object = nullptr;
    EXPECT_EQ(acdbOpenObject(object, id, AcDb::kForRead), Acad::eNullObjectId);
}

TEST(Db, LayerPropertiesChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        void (*change)(AcDbLayerTableRecord&);
        Changes expected;
    };
    const row rows[] = {
        {"off", [](AcDbLayerTableRecord& l) { l.setIsOff(true); }, {"- 3", "+ -3"}},
        {"off and on",
         [](AcDbLayerTableRecord& l) {
             l.setIsOff(true);
             l.setIsOff(false);
         },
         {}},
        {"frozen",
         [](AcDbLayerTableRecord& l) { EXPECT_EQ(l.setIsFrozen(true), Acad::eOk); },
         {"- 0", "+ 1"}},
        {"locked", [](AcDbLayerTableRecord& l) { l.setIsLocked(true); }, {"- 0", "+ 4"}},
        {"locked and frozen in new viewports",
         [](AcDbLayerTableRecord& l) {
             l.setIsLocked(true);
             l.setVPDFLT(true);
         },
         {"- 0", "+ 6"}},
        {"colour",
         [](AcDbLayerTableRecord& l) {
             AcCmColor c;
             c.setColorIndex(5);
             l.setColor(c);
         },
         {"- 3", "+ 5"}},
        {"colour while off",
         [](AcDbLayerTableRecord& l) {
             AcCmColor c;
             c.setColorIndex(5);
             l.setIsOff(true);
             l.setColor(c);
         },
         {"- 3", "+ -5"}},
        {"no colour of a layer",
         [](AcDbLayerTableRecord& l) {
             AcCmColor c;
             c.setColorIndex(256);
             l.setColor(c);
         },
         {}},
        {"true colour",
         [](AcDbLayerTableRecord& l) {
             AcCmColor c;
             c.setRGB(255, 0, 0);
             l.setColor(c);
         },
         {"- 3", "+ 1", "+ 420", "+ 16711680"}},
        {"plot",
         [](AcDbLayerTableRecord& l) { EXPECT_EQ(l.setIsPlottable(false), Acad::eOk); },
         {"+ 290", "+ 0"}},
        {"weight",
         [](AcDbLayerTableRecord& l) { EXPECT_EQ(l.setLineWeight(AcDb::kLnWt070), Acad::eOk); },
         {"- 50", "+ 70"}},
        {"no weight",
         [](AcDbLayerTableRecord& l) {
             EXPECT_EQ(l.setLineWeight(static_cast<AcDb::LineWeight>(51)), Acad::eBadLineWeightValue);
             EXPECT_EQ(l.setLineWeight(AcDb::kLnWtByLayer), Acad::eBadLineWeightValue);
         },
         {}},
    };
    for (const row& row : rows) {
        const auto database = opened("r2018.dxf");
        {
            AcDbLayerTableRecordPointer pipe(L"pipe-给水", database.get(), AcDb::kForWrite);
            ASSERT_EQ(pipe.openStatus(), Acad::eOk);
            row.change(*pipe.object());
        }
        EXPECT_EQ(changes(*database, "r2018.dxf"), row.expected) << row.what;
    }
}

TEST(Db, LayersKeepTheirRules) {
    const auto database = opened("r2018.dxf");
    EXPECT_EQ(AcDbLayerTableRecordPointer(L"0", database.get(), AcDb::kForWrite)->setIsFrozen(true),
              Acad::eInvalidLayer)
        << "the current layer";
    AcDbLayerTablePointer table(database->layerTableId(), AcDb::kForRead);
    AcDbObjectId frame;
    AcDbObjectId old;
    AcDbObjectId dependent;
    AcDbObjectId unknown;
    EXPECT_EQ(table->getAt(L"图框", frame), Acad::eOk);
    EXPECT_EQ(table->getAt(L"旧底图", old), Acad::eOk);
    EXPECT_EQ(table->getAt(L"底图|轴线", dependent), Acad::eOk);
    EXPECT_EQ(table->getAt(L"没有", unknown), Acad::eKeyNotFound);
    EXPECT_EQ(database->setClayer(old), Acad::eInvalidLayer) << "frozen";
    EXPECT_EQ(database->setClayer(dependent), Acad::eInvalidLayer);
    EXPECT_EQ(database->setClayer(database->layerTableId()), Acad::eWrongObjectType);
    EXPECT_EQ(database->setClayer(frame), Acad::eOk) << "locked is allowed";
    EXPECT_EQ(database->clayer(), frame);

    // Entities of a locked layer are read, not changed.
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenObject(entity, at(*database, 0x10B), AcDb::kForWrite), Acad::eOnLockedLayer);
    EXPECT_EQ(acdbOpenObject(entity, at(*database, 0x10B), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(entity->upgradeOpen(), Acad::eOnLockedLayer);
    entity->close();
    { AcDbLayerTableRecordPointer(L"图框", database.get(), AcDb::kForWrite)->setIsLocked(false); }
    EXPECT_EQ(acdbOpenObject(entity, at(*database, 0x10B), AcDb::kForWrite), Acad::eOk);
    entity->close();
}

TEST(Db, NewLayersStandInTheirTableInTheMannerOfTheVersion) {
    for (const char* name : {"r2018.dxf", "r2000_gbk.dxf", "r12.dxf"}) {
        const auto database = opened(name);
        AcDbLayerTablePointer table(database->layerTableId(), AcDb::kForWrite);
        for (const wchar_t* bad : {L"", L"a|b|c", L"a*b", L"a<b", L"x\ny"}) {
            AcDbLayerTableRecord nameless;
            EXPECT_EQ(nameless.setName(bad), Acad::eInvalidInput);
        }
        auto* added = new AcDbLayerTableRecord;
        EXPECT_EQ(added->close(), Acad::eNoDatabase);
        added->setName(L"PIPE-污水");
        added->setIsLocked(true);
        AcDbObjectId id;
        ASSERT_EQ(table->add(id, added), Acad::eOk);
        EXPECT_EQ(table->add(added), Acad::eAlreadyInDb);
        AcDbObjectId found;
        EXPECT_EQ(table->getAt(L"pipe-污水", found), Acad::eOk);
        EXPECT_EQ(found, id);
        added->close();
        AcDbLayerTableRecord twin;
        twin.setName(L"pipe-污水");
        EXPECT_EQ(table->add(&twin), Acad::eDuplicateRecordName);
        table.close();

        const std::string bytes = saved(*database);
        const test::folder folder;
        AcDbDatabase again(false, true);
        ASSERT_EQ(again.dxfIn(folder.write("again.dxf", bytes).wstring().c_str()), Acad::eOk);
        const AcDbLayerTableRecordPointer read_back(L"PIPE-污水", &again, AcDb::kForRead);
        ASSERT_EQ(read_back.openStatus(), Acad::eOk) << name;
        EXPECT_TRUE(read_back->isLocked());
        EXPECT_EQ(read_back->color().colorIndex(), 7);
        EXPECT_EQ(bytes.find("AcDbLayerTableRecord") != std::string::npos,
                  std::string_view(name) != "r12.dxf");
    }
}

TEST(Db, ARenamedLayerKeepsItsEntities) {
    const auto database = opened("r2000_gbk.dxf");
    {
        EXPECT_EQ(
            AcDbLayerTableRecordPointer(L"PIPE-给水", database.get(), AcDb::kForWrite)->setName(L"墙体"),
            Acad::eDuplicateRecordName);
    }
    {
        EXPECT_EQ(
            AcDbLayerTableRecordPointer(L"PIPE-给水", database.get(), AcDb::kForWrite)->setName(L"J-给水"),
            Acad::eOk);
    }
    for (const Adesk::UInt64 handle : {0x102u, 0x103u, 0x105u, 0x106u})
        EXPECT_EQ(text_of(AcDbEntityPointer(at(*database, handle))->layer()), L"J-给水") << handle;
    EXPECT_EQ(layer(*database, L"PIPE-给水", AcDb::kForRead).openStatus(), Acad::eKeyNotFound);
    for (const wchar_t* name : {L"0", L"底图|轴线"})
        EXPECT_EQ(AcDbLayerTableRecordPointer(name, database.get(), AcDb::kForWrite)->setName(L"其它"),
                  Acad::eInvalidInput)
            << name;
    EXPECT_EQ(AcDbLayerTableRecordPointer(L"0", database.get(), AcDb::kForWrite)->erase(),
              Acad::eCannotBeErasedByCaller);
}

TEST(Db, ALayersNewNameReachesOpenEntitiesAndExtendedData) {
    const auto database = opened("r2018.dxf");
    {
        AcDbEntityPointer text(at(*database, 0x10A), AcDb::kForWrite);
        resbuf* const data = acutBuildList(1001, L"ZEF_TEST", 1003, L"PIPE-给水", 0);
        EXPECT_EQ(text->setXData(data), Acad::eOk);
        acutRelRb(data);
    }
    AcDbEntityPointer read(at(*database, 0x102), AcDb::kForRead);
    AcDbEntityPointer changed(at(*database, 0x103), AcDb::kForWrite);
    EXPECT_EQ(text_of(read->layer()), L"PIPE-给水");
    changed->setColorIndex(3);
    {
        EXPECT_EQ(AcDbLayerTableRecordPointer(L"PIPE-给水", database.get(), AcDb::kForWrite)->setName(L"J"),
                  Acad::eOk);
    }
    EXPECT_EQ(read->upgradeOpen(), Acad::eOk);
    read->setColorIndex(4);
    read.close();
    changed.close();
    for (const Adesk::UInt64 handle : {0x102u, 0x103u})
        EXPECT_EQ(text_of(AcDbEntityPointer(at(*database, handle))->layer()), L"J");
    resbuf* const data = AcDbEntityPointer(at(*database, 0x10A))->xData(L"ZEF_TEST");
    EXPECT_STREQ(data->rbnext->resval.rstring, L"J");
    acutRelRb(data);
    EXPECT_EQ(saved(*database).find("PIPE-给水"), std::string::npos);
}

TEST(Db, EntityPropertiesChangeTheirGroupsAlone) {
    struct row {
        Adesk::UInt64 handle;
        void (*change)(AcDbEntity&);
        Changes expected;
    };
    const row rows[] = {
        {0x102,
         [](AcDbEntity& e) { EXPECT_EQ(e.setLayer(L"pipe-热给水"), Acad::eOk); },
         {"- PIPE-给水", "+ PIPE-热给水"}},
        {0x102, [](AcDbEntity& e) { EXPECT_EQ(e.setLayer(L"PIPE-给水"), Acad::eOk); }, {}},
        {0x102, [](AcDbEntity& e) { EXPECT_EQ(e.setLayer(L"没有"), Acad::eKeyNotFound); }, {}},
        {0x102, [](AcDbEntity& e) { e.setColorIndex(256); }, {"- 1", "+ 256"}},
        {0x103, [](AcDbEntity& e) { e.setColorIndex(256); }, {}},
        {0x103, [](AcDbEntity& e) { e.setColorIndex(5); }, {"+ 62", "+ 5"}},
        {0x103, [](AcDbEntity& e) { e.setVisibility(AcDb::kInvisible); }, {"+ 60", "+ 1"}},
        {0x109, [](AcDbEntity& e) { e.setVisibility(AcDb::kVisible); }, {"- 60", "- 1"}},
        {0x103, [](AcDbEntity& e) { e.setLineWeight(AcDb::kLnWt050); }, {"+ 370", "+ 50"}},
        {0x103, [](AcDbEntity& e) { e.setLinetypeScale(0.5); }, {"+ 48", "+ 0.5"}},
        {0x103,
         [](AcDbEntity& e) { EXPECT_EQ(e.setLinetype(L"continuous"), Acad::eOk); },
         {"+ 6", "+ Continuous"}},
        // An insert's attribute and the end of their sequence follow it.
        {0x105,
         [](AcDbEntity& e) { e.setLayer(L"墙体"); },
         {"- PIPE-给水", "+ 墙体", "- PIPE-给水", "+ 墙体", "- PIPE-给水", "+ 墙体"}},
        {0x105, [](AcDbEntity& e) { e.setLayer(L"墙体", false); }, {"- PIPE-给水", "+ 墙体"}},
    };
    for (const row& row : rows) {
        const auto database = opened("r2018.dxf");
        {
            AcDbEntityPointer entity(at(*database, row.handle), AcDb::kForWrite);
            ASSERT_EQ(entity.openStatus(), Acad::eOk);
            row.change(*entity.object());
        }
        EXPECT_EQ(changes(*database, "r2018.dxf"), row.expected) << std::hex << row.handle;
    }
}

TEST(Db, ErasedObjectsCanComeBack) {
    const auto database = opened("r2018.dxf");
    const AcDbObjectId id = at(*database, 0x105);
    {
        AcDbEntityPointer entity(id, AcDb::kForWrite);
        EXPECT_EQ(entity->erase(), Acad::eOk);
        EXPECT_EQ(entity->erase(), Acad::eWasErased);
    }
    EXPECT_TRUE(at(*database, 0x106).isErased()) << "attributes go with their block reference";
    AcDbEntityPointer gone(id, AcDb::kForRead);
    EXPECT_EQ(gone.openStatus(), Acad::eWasErased);
    EXPECT_EQ(saved(*database).find("INSERT"), std::string::npos);
    {
        AcDbEntityPointer back(id, AcDb::kForWrite, true);
        ASSERT_EQ(back.openStatus(), Acad::eOk);
        EXPECT_EQ(back->erase(false), Acad::eOk);
        EXPECT_EQ(back->erase(false), Acad::eWasNotErased);
    }
    EXPECT_EQ(changes(*database, "r2018.dxf"), Changes{});

    // An erased layer can not come back when another one has taken its name.
    AcDbObjectId old;
    { AcDbLayerTablePointer(database->layerTableId())->getAt(L"家具", old); }
    { EXPECT_EQ(AcDbObjectPointer<AcDbLayerTableRecord>(old, AcDb::kForWrite)->erase(), Acad::eOk); }
    auto* twin = new AcDbLayerTableRecord;
    twin->setName(L"家具");
    { EXPECT_EQ(AcDbLayerTablePointer(database->layerTableId(), AcDb::kForWrite)->add(twin), Acad::eOk); }
    twin->close();
    EXPECT_EQ(AcDbObjectPointer<AcDbLayerTableRecord>(old, AcDb::kForWrite, true)->erase(false),
              Acad::eDuplicateRecordName);
}

TEST(Db, BlocksGiveTheirEntitiesInOrder) {
    struct row {
        const char* drawing;
        const wchar_t* block;
        std::vector<Adesk::UInt64> handles; // empty: only their number counts
        int count;
    };
    for (const row& row :
         {row{"r2018.dxf",
              L"*MODEL_SPACE",
              {0x100, 0x101, 0x102, 0x103, 0x104, 0x105, 0x108, 0x109, 0x10A},
              9},
          row{"r2018.dxf", L"*Paper_Space", {0x10B}, 1}, row{"r2018.dxf", L"阀门", {0x5B, 0x5C, 0x5D}, 3},
          row{"r12.dxf", L"*Model_Space", {}, 2}, row{"r12.dxf", L"*Paper_Space", {}, 1},
          row{"r12.dxf", L"DOOR", {}, 1}}) {
        const auto database = opened(row.drawing);
        const AcDbBlockTableRecordPointer block(row.block, database.get(), AcDb::kForRead);
        ASSERT_EQ(block.openStatus(), Acad::eOk) << row.drawing;
        AcDbBlockTableRecordIterator* raw = nullptr;
        ASSERT_EQ(block->newIterator(raw), Acad::eOk);
        const std::unique_ptr<AcDbBlockTableRecordIterator> iterator(raw);
        std::vector<Adesk::UInt64> found;
        for (; !iterator->done(); iterator->step()) {
            AcDbEntity* entity = nullptr;
            ASSERT_EQ(iterator->getEntity(entity), Acad::eOk);
            EXPECT_EQ(entity->blockId(), block->objectId());
            found.push_back(entity->objectId().handle());
            entity->close();
        }
        EXPECT_EQ(static_cast<int>(found.size()), row.count) << row.drawing;
        if (!row.handles.empty()) {
            EXPECT_EQ(found, row.handles);
        }
    }
}

TEST(Db, DictionariesHoldXrecords) {
    const auto database = opened("r2018.dxf");
    AcDbDictionaryPointer root(database->namedObjectsDictionaryId(), AcDb::kForWrite);
    ASSERT_EQ(root.openStatus(), Acad::eOk);
    AcDbXrecord* record = nullptr;
    ASSERT_EQ(root->getAt(L"zef_数据", record, AcDb::kForRead), Acad::eOk) << "keys are found without case";
    resbuf* chain = nullptr;
    ASSERT_EQ(record->rbChain(&chain), Acad::eOk);
    record->close();
    ASSERT_NE(chain, nullptr);
    EXPECT_STREQ(chain->resval.rstring, L"给水");
    EXPECT_EQ(chain->rbnext->resval.rlong, 7);
    EXPECT_EQ(chain->rbnext->rbnext->resval.rpoint[2], 3.0);
    EXPECT_EQ(chain->rbnext->rbnext->rbnext->resval.rint, -1);
    acutRelRb(chain);

    auto* added = new AcDbXrecord;
    AcDbObjectId id;
    EXPECT_EQ(root->setAt(L"", added, id), Acad::eInvalidKey);
    ASSERT_EQ(root->setAt(L"TuCeng", added, id), Acad::eOk);
    resbuf* const data = acutBuildList(1, L"墙体", 90, 8, 1, L"PIPE-给水", 90, 3, 0);
    EXPECT_EQ(added->setFromRbChain(*data), Acad::eOk);
    acutRelRb(data);
    resbuf* const bad = acutBuildList(1000, L"x", 0);
    EXPECT_EQ(added->setFromRbChain(*bad), Acad::eInvalidResBuf);
    acutRelRb(bad);
    added->close();
    EXPECT_EQ(root->numEntries(), 5u);
    std::unique_ptr<AcDbDictionaryIterator> iterator(root->newIterator());
    std::vector<std::wstring> keys;
    for (; !iterator->done(); iterator->next())
        keys.push_back(iterator->name());
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"ACAD_GROUP", L"ACAD_LAYOUT", L"ACAD_PLOTSTYLENAME",
                                               L"TuCeng", L"ZEF_数据"}));
    EXPECT_EQ(root->remove(L"ZEF_数据"), Acad::eOk);
    EXPECT_EQ(root->remove(L"ZEF_数据"), Acad::eKeyNotFound);
    root.close();
    const std::string bytes = saved(*database);
    EXPECT_NE(bytes.find("  1\r\n墙体\r\n 90\r\n        8\r\n  1\r\nPIPE-给水"), std::string::npos);
    EXPECT_EQ(opened("r12.dxf")->namedObjectsDictionaryId(), AcDbObjectId::kNull);
    // An erased object leaves its dictionary, and so the file does not name what it does not hold.
    { EXPECT_EQ(AcDbXrecordPointer(id, AcDb::kForWrite)->erase(), Acad::eOk); }
    EXPECT_EQ(saved(*database).find("TuCeng"), std::string::npos);
}

TEST(Db, ExtendedDataIsReplacedPerApplication) {
    const auto database = opened("r2018.dxf");
    {
        AcDbEntityPointer line(at(*database, 0x102), AcDb::kForWrite);
        resbuf* const read = line->xData(L"zef_test");
        ASSERT_NE(read, nullptr);
        EXPECT_STREQ(read->rbnext->resval.rstring, L"给水");
        acutRelRb(read);
        EXPECT_EQ(line->xData(L"OTHER"), nullptr);
        struct row {
            resbuf* chain;
            Acad::ErrorStatus status;
        };
        for (const row& row : {row{acutBuildList(1000, L"x", 0), Acad::eInvalidResBuf},
                               row{acutBuildList(1001, L"UNKNOWN", 1000, L"x", 0), Acad::eRegappIdNotFound},
                               row{acutBuildList(1001, L"ACAD", 1002, L"{", 0), Acad::eInvalidResBuf},
                               row{too_much(), Acad::eXdataSizeExceeded},
                               row{acutBuildList(1001, L"ACAD", 1040, HUGE_VAL, 0), Acad::eInvalidResBuf},
                               row{acutBuildList(1001, L"ACAD", 1000, std::wstring(256, L'x').c_str(), 0),
                                   Acad::eInvalidResBuf},
                               row{acutBuildList(1001, L"ACAD", 1070, 5, 0), Acad::eOk}}) {
            EXPECT_EQ(line->setXData(row.chain), row.status);
            acutRelRb(row.chain);
        }
    }
    EXPECT_EQ(changes(*database, "r2018.dxf"), (Changes{"+ 1001", "+ ACAD", "+ 1070", "+ 5"}));
    {
        AcDbEntityPointer line(at(*database, 0x102), AcDb::kForWrite);
        resbuf* const clear = acutBuildList(1001, L"ACAD", 0);
        EXPECT_EQ(line->setXData(clear), Acad::eOk);
        acutRelRb(clear);
    }
    EXPECT_EQ(changes(*database, "r2018.dxf"), Changes{});
}

TEST(Db, CancelAndMembersOfClosedObjects) {
    const auto database = opened("r2018.dxf");
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, at(*database, 0x100), AcDb::kForWrite), Acad::eOk);
    entity->setColorIndex(5);
    EXPECT_TRUE(entity->isModified());
    EXPECT_EQ(entity->cancel(), Acad::eOk);
    EXPECT_EQ(changes(*database, "r2018.dxf"), Changes{});
    const AcDbLayerTableRecordPointer read_only(L"0", database.get(), AcDb::kForRead);
    EXPECT_ANY_THROW(read_only->setIsOff(true)) << "a member that can not report ends the command";
}

TEST(Db, CommonPropertiesChangeOneAfterTheOther) {
    const auto database = opened("r2018.dxf");
    const AcDbObjectId id = at(*database, 0x102);
    for (const bool keep : {false, true}) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenObject(entity, id, AcDb::kForWrite), Acad::eOk);
        EXPECT_EQ(entity->setLayer(L"墙体"), Acad::eOk);
        EXPECT_EQ(entity->setVisibility(AcDb::kInvisible), Acad::eOk);
        EXPECT_TRUE(entity->isModified());
        EXPECT_EQ(text_of(entity->layer()), L"墙体") << "as it will be";
        EXPECT_EQ(entity->visibility(), AcDb::kInvisible);
        EXPECT_EQ(entity->setLinetype(L"Continuous"), Acad::eOk) << "whose groups were read meanwhile";
        EXPECT_EQ(keep ? entity->close() : entity->cancel(), Acad::eOk);
        const AcDbEntityPointer seen(id, AcDb::kForRead);
        EXPECT_EQ(text_of(seen->layer()), keep ? L"墙体" : L"PIPE-给水");
        EXPECT_EQ(seen->visibility(), keep ? AcDb::kInvisible : AcDb::kVisible);
        EXPECT_EQ(text_of(seen->linetype()), keep ? L"Continuous" : L"ByLayer");
    }
    {
        AcDbEntityPointer entity(id, AcDb::kForWrite);
        EXPECT_EQ(entity->setVisibility(AcDb::kVisible), Acad::eOk);
        EXPECT_EQ(entity->setLinetype(L"ByLayer"), Acad::eOk);
        EXPECT_EQ(entity->setLayer(L"PIPE-给水"), Acad::eOk);
    }
    EXPECT_EQ(changes(*database, "r2018.dxf"), Changes{});

    // Each change is handed over while the object stays open, the second one with its groups in memory.
    {
        AcDbEntityPointer entity(id, AcDb::kForWrite);
        EXPECT_EQ(entity->setLayer(L"墙体"), Acad::eOk);
        EXPECT_EQ(entity->downgradeOpen(), Acad::eOk);
        EXPECT_EQ(text_of(entity->layer()), L"墙体");
        EXPECT_EQ(entity->lineWeight(), AcDb::kLnWtByLayer);
        EXPECT_EQ(entity->upgradeOpen(), Acad::eOk);
        EXPECT_EQ(entity->setLayer(L"0"), Acad::eOk);
        EXPECT_EQ(entity->downgradeOpen(), Acad::eOk);
        EXPECT_EQ(entity->upgradeOpen(), Acad::eOk);
        EXPECT_EQ(entity->setVisibility(AcDb::kInvisible), Acad::eOk);
    }
    EXPECT_EQ(text_of(AcDbEntityPointer(id, AcDb::kForRead)->layer()), L"0");
}

TEST(Db, ColoursKnowTheirPalette) {
    AcCmColor color;
    struct row {
        int index, red, green, blue;
    };
    // Worked out by hand from the palette's rule: hue by tens, value and saturation by the last digit.
    for (const row& row :
         {row{1, 255, 0, 0}, row{7, 255, 255, 255}, row{10, 255, 0, 0}, row{11, 255, 127, 127},
          row{30, 255, 127, 0}, row{90, 0, 255, 0}, row{170, 0, 0, 255}, row{14, 127, 0, 0}}) {
        EXPECT_EQ(color.setColorIndex(static_cast<Adesk::UInt16>(row.index)), Acad::eOk);
        EXPECT_EQ(color.red(), row.red) << row.index;
        EXPECT_EQ(color.green(), row.green) << row.index;
        EXPECT_EQ(color.blue(), row.blue) << row.index;
    }
    EXPECT_EQ(color.setColorIndex(258), Acad::eInvalidInput);
    color.setRGB(254, 1, 1);
    EXPECT_EQ(color.colorIndex(), 1) << "the nearest";
    EXPECT_EQ(color.colorMethod(), AcCmColor::kByColor);
    color.setColorIndex(192);
    EXPECT_TRUE(color.isByACI()) << "the number of a method is an ordinary index";
}

TEST(Db, NamesOfSymbols) {
    for (const wchar_t* good : {L"0", L"PIPE-给水", L"*U1", L"a b", L"a$0$b"})
        EXPECT_EQ(acdbSNValid(good, 0), RTNORM) << good;
    for (const wchar_t* bad :
         {L"", L"a*", L"*", L"a|b", L"a/b", L"a\\b", L"a:b", L"a;b", L"a?b", L"a,b", L"a=b", L"a`b"})
        EXPECT_EQ(acdbSNValid(bad, 0), RTERROR) << bad;
    EXPECT_EQ(acdbSNValid(L"底图|轴线", 1), RTNORM);
    EXPECT_EQ(acdbSNValid(L"a|b|c", 1), RTERROR);
    EXPECT_EQ(acdbSNValid(std::wstring(256, L'x').c_str(), 0), RTERROR);
    EXPECT_EQ(text_of(AcDbEntityPointer(at(*opened("r2018.dxf"), 0x103))->linetype()), L"ByLayer");
}
