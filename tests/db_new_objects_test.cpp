// New entities, blocks, table records and objects: what drawings of each version hold of them, and where.
#include "acutmem.h"
#include "adscodes.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "host/db/core/blocks.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

using test::groups;

const std::string only_entities = groups("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");
const std::string only_a_header = groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 EOF");
const std::string r12_with_handles = groups(
    "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $HANDLING|70 1|9 $HANDSEED|5 20|9 $CECOLOR|62 3|0 ENDSEC|"
    "0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 TAP|70 0|10 0.0|20 0.0|3 TAP|0 CIRCLE|5 11|8 0|10 0.0|20 0.0|40 1.0|"
    "0 ENDBLK|8 0|0 ENDSEC|"
    "0 SECTION|2 ENTITIES|0 POINT|5 12|8 0|10 0.0|20 0.0|0 ENDSEC|0 EOF");
const std::string minimal_2000 = groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $HANDSEED|5 10|0 ENDSEC|"
                                        "0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");

std::unique_ptr<AcDbDatabase> holding(std::string bytes) {
    auto database = std::make_unique<AcDbDatabase>(false, true);
    if (auto drawing = test::opened(std::move(bytes)))
        database->imp().set_drawing(std::move(drawing));
    return database;
}

std::string written(const AcDbDatabase& database) {
    return test::written(database.imp().drawing());
}

AcDbObjectId at(AcDbDatabase& database, Adesk::UInt64 handle) {
    AcDbObjectId id;
    EXPECT_EQ(database.getAcDbObjectId(id, false, AcDbHandle(handle)), Acad::eOk) << handle;
    return id;
}

// A record as "0 LINE|8 WALL".
std::string record_groups(const AcDbDatabase& database, AcDbObjectId id) {
    std::string text;
    dxf::group_reader reader(database.imp().records().text(database.imp().record(id)));
    dxf::raw_group group;
    while (reader.next(group)) {
        text += text.empty() ? "" : "|";
        text += std::to_string(group.code) + " " + std::string(dxf::trimmed(group.value));
    }
    return text;
}

template<class Record>
AcDbObjectId add_record(AcDbDatabase& database, const wchar_t* name) {
    AcDbObjectId id;
    typename Record::TableType* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
    auto* const record = new Record;
    EXPECT_EQ(record->setName(name), Acad::eOk);
    EXPECT_EQ(table->add(id, record), Acad::eOk);
    record->close();
    table->close();
    return id;
}

Acad::ErrorStatus append(AcDbDatabase& database, const wchar_t* block, AcDbEntity* entity, AcDbObjectId& id) {
    AcDbBlockTableRecordPointer record(block, &database, AcDb::kForWrite);
    if (record.openStatus() != Acad::eOk)
        return record.openStatus();
    const Acad::ErrorStatus status = record->appendAcDbEntity(id, entity);
    if (status == Acad::eOk)
        entity->close();
    return status;
}

// What the saved drawing is, read anew: nothing to be repaired in it that was well before.
std::unique_ptr<AcDbDatabase> saved_and_read(const AcDbDatabase& database, const std::string& before) {
    auto again = holding(written(database));
    EXPECT_EQ(test::messages(again->imp().drawing()), test::messages(*test::opened(before)));
    EXPECT_EQ(written(*again), written(database));
    return again;
}

std::size_t live(AcDbDatabase& database, const wchar_t* block) {
    std::size_t count = 0;
    for (const dxf::record_id entity : database.imp().blocks().entities(database.imp().blocks().find(block)))
        count += database.imp().records().gone(entity) ? 0 : 1;
    return count;
}

} // namespace

TEST(DbNewObjects, AnEntityStandsInItsContainerInTheMannerOfTheVersion) {
    struct row {
        const char* what;
        std::string bytes;
        const wchar_t* block;
        const char* head; // of its record, with $ for the handle
    };
    const std::string r2018 = test::read(test::drawing("r2018.dxf"));
    const std::string gbk = test::read(test::drawing("r2000_gbk.dxf"));
    const std::string r12 = test::read(test::drawing("r12.dxf"));
    const row rows[] = {
        {"2018, model", r2018, L"*Model_Space",
         "0 LINE|5 $|330 28|100 AcDbEntity|8 0|420 255|100 AcDbLine|10 1"},
        {"2018, sheet", r2018, L"*Paper_Space",
         "0 LINE|5 $|330 29|100 AcDbEntity|67 1|8 0|420 255|100 AcDbLine|10 1"},
        {"2018, block", r2018, L"阀门", "0 LINE|5 $|330 59|100 AcDbEntity|8 0|420 255|100 AcDbLine|10 1"},
        {"2000, model", gbk, L"*Model_Space", "0 LINE|5 $|330 28|100 AcDbEntity|8 0|100 AcDbLine|10 1"},
        {"R12, model", r12, L"*Model_Space", "0 LINE|8 0|10 1"},
        {"R12, sheet", r12, L"*Paper_Space", "0 LINE|67 1|8 0|10 1"},
        {"R12 with handles, model", r12_with_handles, L"*Model_Space", "0 LINE|5 $|8 0|10 1"},
        {"R12 with handles, block", r12_with_handles, L"TAP", "0 LINE|5 $|8 0|10 1"},
        {"nothing but entities", only_entities, L"*Model_Space", "0 LINE|8 0|10 1"},
        {"nothing but entities, sheet", only_entities, L"*Paper_Space", "0 LINE|67 1|8 0|10 1"},
        {"nothing but a header", only_a_header, L"*Model_Space", "0 LINE|8 0|10 1"},
        {"2000 without tables", minimal_2000, L"*Model_Space",
         "0 LINE|5 $|100 AcDbEntity|8 0|100 AcDbLine|10 1"},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto database = holding(row.bytes);
        const std::size_t before = live(*database, row.block);
        auto* const line = new AcDbLine(AcGePoint3d(1, 2, 3), AcGePoint3d(4, 5, 6));
        AcCmColor blue;
        blue.setRGB(0, 0, 255);
        line->setColor(blue);
        line->setLinetypeScale(1.0);
        AcDbObjectId id;
        ASSERT_EQ(append(*database, row.block, line, id), Acad::eOk);
        std::string text = record_groups(*database, id);
        std::string head = row.head;
        if (const std::size_t dollar = head.find('$'); dollar != head.npos) {
            ACHAR digits[AcDbHandle::kStrSiz];
            id.handle().getIntoAsciiBuffer(digits);
            head.replace(dollar, 1, base::narrow(digits));
        }
        // The nearest index of the blue.
        for (const char* index : {"|62 5"})
            if (const std::size_t color = text.find(index); color != text.npos)
                text.erase(color, std::string_view(index).size());
        EXPECT_EQ(text.substr(0, head.size()), head);

        const auto again = saved_and_read(*database, row.bytes);
        EXPECT_EQ(live(*again, row.block), before + 1);
        const auto entities = again->imp().blocks().entities(again->imp().blocks().find(row.block));
        EXPECT_EQ(again->imp().records().type_name(entities.back()), "LINE") << "the last of its container";
        if (const auto seed = again->imp().drawing().header_value("$HANDSEED")) {
            EXPECT_GT(dxf::parse_handle(*seed), static_cast<Adesk::UInt64>(id.handle()));
        }

        database->imp().history().undo();
        EXPECT_EQ(written(*database), row.bytes);
        database->imp().history().redo();
        EXPECT_EQ(written(*database), written(*again));
    }
}

// A polyline's lines share what they have in common until one is changed, or the drawing is: what stands
// there must be what lines that know nothing of each other leave.
TEST(DbNewObjects, LinesThatAPolylineFellIntoAreLikeOthers) {
    const auto fill = [](const std::string& bytes, bool alike) {
        auto database = holding(bytes);
        const AcDbObjectId layer = add_record<AcDbLayerTableRecord>(*database, L"管线");
        add_record<AcDbBlockTableRecord>(*database, L"块");
        AcDbPolyline polyline;
        for (unsigned i = 0; i < 12; ++i)
            polyline.addVertexAt(i, {i / 3.0, i * i * 1e-5}, i == 5 ? 1.0 : 0.0);
        polyline.setLayer(L"管线");
        polyline.setColorIndex(3);
        AcDbVoidPtrArray parts;
        EXPECT_EQ(polyline.explode(parts), Acad::eOk);
        std::vector<AcDbEntity*> lines;
        for (void* const part : parts) {
            std::unique_ptr<AcDbEntity> line(static_cast<AcDbEntity*>(part));
            if (!alike)
                line.reset(static_cast<AcDbEntity*>(line->clone()));
            lines.push_back(line.release());
        }
        AcDbObjectId id;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (i == 3)
                AcDbLine::cast(lines[i])->setEndPoint({7, 7, -0.0});
            if (i == 4)
                lines[i]->setColorIndex(1);
            if (i == 7) {
                EXPECT_EQ(AcDbLayerTableRecordPointer(layer, AcDb::kForWrite)->setName(L"水"), Acad::eOk);
            }
            const wchar_t* const block = i == 9 ? L"块" : ACDB_MODEL_SPACE;
            EXPECT_EQ(append(*database, block, lines[i], id), Acad::eOk);
        }
        EXPECT_EQ(AcDbObjectPointer<AcDbLine>(id)->startPoint(), AcGePoint3d(10 / 3.0, 1e-3, 0));
        return written(*database);
    };
    for (const std::string& bytes :
         {test::read(test::drawing("r2018.dxf")), test::read(test::drawing("r2000_gbk.dxf")),
          test::read(test::drawing("r12.dxf")), only_entities, r12_with_handles}) {
        const std::string found = fill(bytes, true);
        EXPECT_EQ(test::differences(fill(bytes, false), found), (std::vector<std::string>{}));
        EXPECT_EQ(written(*holding(found)), found);
    }
}

TEST(DbNewObjects, WhatAnEntityWasNotGivenItTakesFromTheDrawing) {
    std::string bytes = test::read(test::drawing("r2018.dxf"));
    const auto database = holding(bytes);
    dxf::drawing& drawing = database->imp().drawing();
    drawing.set_header_value("$CLAYER", 8, drawing.codec().encode(L"图框"));
    drawing.set_header_value("$CECOLOR", 62, "4");
    drawing.set_header_value("$CELTYPE", 6, "ByBlock");
    drawing.set_header_value("$CELTSCALE", 40, "2.5");
    drawing.set_header_value("$CELWEIGHT", 370, "30");

    auto* const plain = new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, 2.0);
    EXPECT_TRUE(plain->layerId().isNull());
    EXPECT_EQ(plain->colorIndex(), 257);
    EXPECT_EQ(plain->setLayer(L"图框"), Acad::eNoDatabase) << "no drawing is worked with";
    auto* const given = new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, 2.0);
    EXPECT_EQ(given->setLayer(at(*database, 0x24)), Acad::eOk); // layer 0
    EXPECT_EQ(given->setColorIndex(256), Acad::eOk);
    EXPECT_EQ(given->setLinetype(at(*database, 0x22)), Acad::eOk); // ByLayer
    EXPECT_EQ(given->setLinetypeScale(1.0), Acad::eOk);
    EXPECT_EQ(given->setLineWeight(AcDb::kLnWtByLayer), Acad::eOk);
    AcDbObjectId ids[3];
    EXPECT_EQ(append(*database, ACDB_MODEL_SPACE, plain, ids[0]), Acad::eOk);
    EXPECT_EQ(append(*database, ACDB_MODEL_SPACE, given, ids[1]), Acad::eOk);
    AcDbEntity* copied = nullptr;
    ASSERT_EQ(acdbOpenObject(copied, ids[1]), Acad::eOk);
    auto* const copy = static_cast<AcDbEntity*>(copied->clone());
    copied->close();
    EXPECT_EQ(append(*database, ACDB_MODEL_SPACE, copy, ids[2]), Acad::eOk);
    for (int i = 0; i < 3; ++i) {
        AcDbObjectPointer<AcDbEntity> entity(ids[i]);
        AcString layer;
        entity->layer(layer);
        EXPECT_STREQ(layer.kwszPtr(), i == 0 ? L"图框" : L"0") << i;
        EXPECT_EQ(entity->colorIndex(), i == 0 ? 4 : 256) << i;
        EXPECT_EQ(entity->linetypeId(), at(*database, i == 0 ? 0x21 : 0x22)) << i;
        EXPECT_EQ(entity->linetypeScale(), i == 0 ? 2.5 : 1.0) << i;
        EXPECT_EQ(entity->lineWeight(), i == 0 ? AcDb::kLnWt030 : AcDb::kLnWtByLayer) << i;
    }
}

TEST(DbNewObjects, ARefusedEntityStaysTheCallers) {
    const auto database = holding(r12_with_handles);
    AcDbObjectId id;
    AcDbBlockTableRecordPointer model(ACDB_MODEL_SPACE, database.get(), AcDb::kForRead);
    auto line = std::make_unique<AcDbLine>();
    EXPECT_EQ(model->appendAcDbEntity(line.get()), Acad::eNotOpenForWrite);
    model.close();
    model.open(ACDB_MODEL_SPACE, database.get(), AcDb::kForWrite);
    EXPECT_EQ(model->appendAcDbEntity(nullptr), Acad::eNullObjectPointer);
    const auto light = std::make_unique<AcDbPolyline>();
    EXPECT_EQ(model->appendAcDbEntity(light.get()), Acad::eIllegalEntityType) << "R12 has none";
    EXPECT_EQ(AcDbBlockTableRecord().appendAcDbEntity(line.get()), Acad::eNoDatabase);
    EXPECT_EQ(written(*database), r12_with_handles);
    EXPECT_EQ(model->appendAcDbEntity(id, line.get()), Acad::eOk);
    EXPECT_EQ(model->appendAcDbEntity(line.get()), Acad::eAlreadyInDb);
    EXPECT_EQ(line.release()->close(), Acad::eOk);
}

TEST(DbNewObjects, ABlockComesWithAllThatItNeeds) {
    struct row {
        const char* what;
        std::string bytes;
        std::vector<std::string> added; // in the order of the file, $ for handles
    };
    const row rows[] = {
        {"nothing but entities",
         only_entities,
         {"0 SECTION|2 BLOCKS", "0 BLOCK|8 0|2 VALVE|70 0|10 1.0|20 2.0|30 0.0|3 VALVE|1 ", "0 ENDBLK|8 0",
          "0 ENDSEC"}},
        {"R12 with handles",
         r12_with_handles,
         {"0 BLOCK|5 $|8 0|2 VALVE|70 0|10 1.0|20 2.0|30 0.0|3 VALVE|1 ", "0 ENDBLK|5 $|8 0"}},
        {"2000 without tables",
         minimal_2000,
         {"0 SECTION|2 TABLES", "0 TABLE|2 BLOCK_RECORD|5 $|330 0|100 AcDbSymbolTable|70 1",
          "0 BLOCK_RECORD|5 $|330 $|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 VALVE|340 0",
          "0 ENDTAB", "0 ENDSEC", "0 SECTION|2 BLOCKS",
          "0 BLOCK|5 $|330 $|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 VALVE|70 0|10 1.0|20 2.0|30 0.0|3 "
          "VALVE|1 ",
          "0 ENDBLK|5 $|330 $|100 AcDbEntity|8 0|100 AcDbBlockEnd", "0 ENDSEC"}},
        {"2018",
         test::read(test::drawing("r2018.dxf")),
         {"0 BLOCK_RECORD|5 $|330 $|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 VALVE|340 0|70 "
          "0|280 1|281 0",
          "0 BLOCK|5 $|330 $|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 VALVE|70 0|10 1.0|20 2.0|30 0.0|3 "
          "VALVE|1 ",
          "0 ENDBLK|5 $|330 $|100 AcDbEntity|8 0|100 AcDbBlockEnd"}},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto database = holding(row.bytes);
        AcDbBlockTable* table = nullptr;
        ASSERT_EQ(database->getBlockTable(table, AcDb::kForWrite), Acad::eOk);
        auto* const block = new AcDbBlockTableRecord;
        EXPECT_EQ(block->setName(L"VALVE"), Acad::eOk);
        EXPECT_EQ(block->setOrigin(AcGePoint3d(1, 2, 0)), Acad::eOk);
        EXPECT_EQ(block->origin(), AcGePoint3d(1, 2, 0));
        AcDbObjectId id;
        ASSERT_EQ(table->add(id, block), Acad::eOk);
        EXPECT_EQ(block->origin(), AcGePoint3d(1, 2, 0));
        block->close();
        AcDbBlockTableRecord double_name;
        double_name.setName(L"valve");
        EXPECT_EQ(table->add(&double_name), Acad::eDuplicateRecordName);
        AcDbBlockTableRecord space;
        space.setName(L"*Paper_Space7");
        EXPECT_EQ(table->add(&space), Acad::eInvalidInput);
        table->close();

        const auto before = test::opened(row.bytes);
        std::vector<std::string> had;
        const auto records_of = [](const dxf::drawing& drawing) {
            std::vector<std::string> found;
            for (dxf::record_id record = 0; record != dxf::no_record;
                 record = drawing.records().next(record)) {
                if (drawing.records().kind(record) == dxf::record_kind::implied)
                    continue;
                std::string text;
                dxf::group_reader reader(drawing.records().text(record));
                dxf::raw_group group;
                while (reader.next(group)) {
                    const bool handle = group.code == 5 || group.code == 330;
                    text += (text.empty() ? "" : "|") + std::to_string(group.code) + " " +
                            (handle && group.value != "0" ? "$" : std::string(dxf::trimmed(group.value)));
                }
                found.push_back(text);
            }
            return found;
        };
        saved_and_read(*database, row.bytes);
        const auto old_records = records_of(*before);
        std::vector<std::string> added;
        std::size_t i = 0;
        for (const std::string& record : records_of(*test::opened(written(*database)))) {
            if (i < old_records.size() &&
                (record == old_records[i] || record.starts_with("0 SECTION|2 HEADER")))
                ++i;
            else
                added.push_back(record);
        }
        EXPECT_EQ(added, row.added);
        EXPECT_EQ(i, old_records.size());

        AcDbObjectId line;
        EXPECT_EQ(append(*database, L"Valve", new AcDbLine, line), Acad::eOk);
        EXPECT_EQ(line.objectClass(), AcDbLine::desc());
        EXPECT_EQ(live(*saved_and_read(*database, row.bytes), L"VALVE"), 1u);
        database->imp().history().begin_step("erase");
        AcDbBlockTableRecordPointer erased(id, AcDb::kForWrite);
        EXPECT_EQ(erased->erase(), Acad::eOk);
        EXPECT_TRUE(line.isErased());
        EXPECT_EQ(erased->erase(false), Acad::eOk);
        EXPECT_FALSE(line.isErased());
        EXPECT_EQ(erased->erase(), Acad::eOk);
        erased.close();
        EXPECT_EQ(written(*database).find("VALVE"), std::string::npos);
        database->imp().history().undo();
        database->imp().history().undo();
        EXPECT_EQ(written(*database), row.bytes);
    }
}

TEST(DbNewObjects, AnonymousBlocksGetTheNextNumber) {
    const auto database = holding(only_entities);
    for (const wchar_t* expected : {L"*U1", L"*U2", L"*U3"}) {
        AcDbBlockTableRecordPointer block(add_record<AcDbBlockTableRecord>(*database, L"*U"));
        AcString name;
        block->getName(name);
        EXPECT_STREQ(name.kwszPtr(), expected);
        EXPECT_TRUE(block->isAnonymous());
        EXPECT_FALSE(block->isLayout());
    }
}

TEST(DbNewObjects, AMissingTableIsMadeWithItsFirstRecord) {
    struct row {
        const char* what;
        std::string bytes;
        const char* expected; // in the file, blanks and line ends left out
    };
    const row rows[] = {
        {"nothing but entities", only_entities,
         "0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 1|0 LAYER|2 0|70 0|62 7|6 Continuous|0 LAYER|2 PIPE|70 0|62 "
         "7|6 "
         "Continuous|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES"},
        {"2000 without tables", minimal_2000,
         "0 SECTION|2 TABLES|0 TABLE|2 LAYER|5 12|330 0|100 AcDbSymbolTable|70 1|"
         "0 LAYER|5 13|330 12|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 "
         "Continuous|370 -3|"
         "0 LAYER|5 14|330 12|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 PIPE|70 0|62 7|6 "
         "Continuous|370 "
         "-3|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES"},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto database = holding(row.bytes);
        AcDbLayerTable* table = nullptr;
        ASSERT_EQ(database->getLayerTable(table, AcDb::kForWrite), Acad::eOk);
        table->close();
        EXPECT_EQ(written(*database), row.bytes) << "a table that nothing stands in is not saved";
        const AcDbObjectId layer = add_record<AcDbLayerTableRecord>(*database, L"PIPE");
        EXPECT_NE(written(*database).find(groups(row.expected)), std::string::npos) << written(*database);
        EXPECT_EQ(database->setClayer(layer), Acad::eOk);
        const auto again = saved_and_read(*database, row.bytes);
        EXPECT_EQ(again->imp().names().name_of(again->imp().layers().current()), L"PIPE");
        database->imp().history().undo();
        EXPECT_EQ(written(*database), row.bytes);
    }
    // As a user has it: the drawing had no table of layers.
    const test::folder folder;
    const auto out = folder / "out.dxf";
    const auto run = test::zefhost({folder.write("in.dxf", only_entities).string(), "--no-module", "-c",
                                    "-LAYER\\nM\\nPIPE\\n\\n", "-o", out.string()});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(test::read(out).find("PIPE"), std::string::npos);
}

TEST(DbNewObjects, ExtendedDataBringsItsApplication) {
    for (const std::string& bytes : {only_entities, minimal_2000, test::read(test::drawing("r2018.dxf"))}) {
        const auto database = holding(bytes);
        auto* const line = new AcDbLine;
        resbuf* const data = acutBuildList(1001, L"ZEF_TEST", 1000, L"管", 0);
        EXPECT_EQ(line->setXData(data), Acad::eOk);
        acutRelRb(data);
        AcDbObjectId id;
        ASSERT_EQ(append(*database, ACDB_MODEL_SPACE, line, id), Acad::eOk);
        const auto again = saved_and_read(*database, bytes);
        EXPECT_NE(again->imp().names().find(db::table_kind::regapp, L"ZEF_TEST"), dxf::no_record);
        AcDbObjectPointer<AcDbLine> there(id);
        resbuf* const read = there->xData(L"ZEF_TEST");
        ASSERT_NE(read, nullptr);
        EXPECT_STREQ(read->rbnext->resval.rstring, L"管");
        acutRelRb(read);
    }
}

TEST(DbNewObjects, WhatNamesARecordFollowsItsNewName) {
    struct row {
        const char* what;
        std::string bytes; // OLD stands for the name, kept where it means something else
        db::table_kind kind;
    };
    const row rows[] = {
        {"linetype",
         groups(
             "0 SECTION|2 HEADER|9 $CELTYPE|6 OLD|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LTYPE|0 LTYPE|2 "
             "OLD|70 0|3 "
             "old|72 65|73 0|40 0|0 ENDTAB|0 TABLE|2 LAYER|0 LAYER|2 old|70 0|62 7|6 Old|0 ENDTAB|0 ENDSEC|"
             "0 SECTION|2 ENTITIES|0 LINE|8 old|6 OLD|10 0|20 0|0 TEXT|8 0|6 oLD|1 old|7 old|0 ENDSEC|0 EOF"),
         db::table_kind::linetype},
        {"style",
         groups("0 SECTION|2 TABLES|0 TABLE|2 STYLE|0 STYLE|2 OLD|70 0|3 old|0 ENDTAB|0 ENDSEC|0 SECTION|2 "
                "ENTITIES|0 TEXT|8 0|6 old|1 old|7 OLD|0 SHAPE|8 0|2 old|0 INSERT|8 0|66 1|2 old|0 ATTRIB|8 "
                "0|1 old|2 "
                "old|7 OLD|0 SEQEND|8 0|0 ENDSEC|0 EOF"),
         db::table_kind::text_style},
        {"block",
         groups("0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 OLD|70 0|10 0|20 0|3 OLD|0 ATTDEF|8 0|2 old|3 old|0 "
                "ENDBLK|8 0|"
                "0 ENDSEC|0 SECTION|2 ENTITIES|0 INSERT|8 0|66 1|2 OLD|0 ATTRIB|8 0|2 old|1 old|0 SEQEND|8 0|"
                "0 DIMENSION|8 0|2 OLD|3 old|0 ENDSEC|0 EOF"),
         db::table_kind::block},
        {"dimension style",
         groups("0 SECTION|2 HEADER|9 $DIMSTYLE|2 OLD|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 DIMSTYLE|0 "
                "DIMSTYLE|2 "
                "OLD|70 0|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|0 DIMENSION|8 0|2 old|3 OLD|0 ENDSEC|0 EOF"),
         db::table_kind::dim_style},
        {"layer",
         groups(
             "0 SECTION|2 HEADER|9 $CLAYER|8 OLD|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 "
             "OLD|70 "
             "0|62 7|6 old|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|0 LINE|8 OLD|6 old|10 0|20 0|1001 ZEF|1000 "
             "old|1003 OLD|0 LINE|8 0|10 0|20 0|1001 ZEF|1003 Old|0 ENDSEC|0 EOF"),
         db::table_kind::layer},
        {"application",
         groups(
             "0 SECTION|2 TABLES|0 TABLE|2 APPID|0 APPID|2 OLD|70 0|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|0 "
             "LINE|8 old|10 0|20 0|1001 OLD|1000 old|0 ENDSEC|0 EOF"),
         db::table_kind::regapp},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto database = holding(row.bytes);
        AcDbObjectPointer<AcDbSymbolTableRecord> record(
            database->imp().id(database->imp().names().find(row.kind, L"old")), AcDb::kForWrite);
        ASSERT_EQ(record.openStatus(), Acad::eOk);
        EXPECT_EQ(record->setName(L"a*b"), Acad::eInvalidInput);
        EXPECT_EQ(record->setName(L"管NEW"), Acad::eOk);
        record.close();
        // References spell it as they like, other texts are all in small letters.
        std::string expected = row.bytes;
        const std::string name = database->imp().drawing().codec().encode(L"管NEW");
        for (const char* old : {"OLD", "Old", "oLD"})
            for (std::size_t at = expected.find(old); at != expected.npos; at = expected.find(old))
                expected.replace(at, 3, name);
        EXPECT_EQ(written(*database), expected);
        EXPECT_NE(database->imp().names().find(row.kind, L"管new"), dxf::no_record);
        EXPECT_EQ(database->imp().names().find(row.kind, L"OLD"), dxf::no_record);
        database->imp().history().undo();
        EXPECT_EQ(written(*database), row.bytes);
        EXPECT_NE(database->imp().names().find(row.kind, L"OLD"), dxf::no_record);
    }
}

TEST(DbNewObjects, PurgeLeavesInTheListWhatNothingUses) {
    const auto database = holding(groups(
        "0 SECTION|2 HEADER|9 $CLAYER|8 CURRENT|0 ENDSEC|0 SECTION|2 TABLES|"
        "0 TABLE|2 LTYPE|0 LTYPE|2 DASHED|70 0|0 LTYPE|2 CONTINUOUS|70 0|0 LTYPE|2 DOTTED|70 0|0 ENDTAB|"
        "0 TABLE|2 LAYER|0 LAYER|2 0|70 0|62 7|6 CONTINUOUS|0 LAYER|2 CURRENT|70 0|62 7|6 Dashed|"
        "0 LAYER|2 IN_BLOCK|70 0|62 7|6 CONTINUOUS|0 LAYER|2 FREE|70 0|62 7|6 CONTINUOUS|0 ENDTAB|0 ENDSEC|"
        "0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 USED|70 0|10 0|20 0|3 USED|0 LINE|8 in_block|10 0|20 0|"
        "0 ENDBLK|8 0|0 BLOCK|8 0|2 UNUSED|70 0|10 0|20 0|3 UNUSED|0 ENDBLK|8 0|0 ENDSEC|"
        "0 SECTION|2 ENTITIES|0 INSERT|8 0|2 used|10 0|20 0|0 ENDSEC|0 EOF"));
    AcDbObjectIdArray ids;
    for (const db::table_kind kind : {db::table_kind::linetype, db::table_kind::layer, db::table_kind::block})
        for (const dxf::record_id entry : database->imp().names().entries(kind))
            ids.append(database->imp().id(entry));
    EXPECT_EQ(ids.length(), 3 + 4 + 4);
    ASSERT_EQ(database->purge(ids), Acad::eOk);
    std::vector<std::wstring> names;
    for (const AcDbObjectId& id : ids)
        names.push_back(database->imp().names().name_of(database->imp().record(id)));
    EXPECT_EQ(names, (std::vector<std::wstring>{L"DOTTED", L"FREE", L"UNUSED"}));
}

TEST(DbNewObjects, ObjectsStandInDictionariesAndKnowWhoWantsToHearOfThem) {
    for (const std::string& bytes : {minimal_2000, test::read(test::drawing("r2018.dxf"))}) {
        const auto database = holding(bytes);
        AcDbDictionary* root = nullptr;
        ASSERT_EQ(database->getNamedObjectsDictionary(root, AcDb::kForWrite), Acad::eOk);
        EXPECT_EQ(written(*database), bytes);
        AcDbObjectId first;
        for (const wchar_t* key : {L"ZEF_A", L"ZEF_B", L"zef_a"}) {
            auto* const data = new AcDbXrecord;
            AcDbObjectId id;
            EXPECT_EQ(root->setAt(key, data, id), Acad::eOk);
            EXPECT_EQ(root->setAt(L"ZEF_C", data, id), Acad::eAlreadyInDb);
            data->close();
            first = first.isNull() ? id : first;
        }
        EXPECT_TRUE(first.isErased()) << "another one took its key";
        root->close();
        auto again = saved_and_read(*database, bytes);
        ASSERT_EQ(again->getNamedObjectsDictionary(root), Acad::eOk);
        EXPECT_TRUE(root->has(L"ZEF_A") && root->has(L"zef_b"));
        root->close();

        // An entity with a dictionary of its own, and with an object that it owns and that hears of it.
        AcDbObjectId line_id;
        ASSERT_EQ(append(*database, ACDB_MODEL_SPACE, new AcDbLine, line_id), Acad::eOk);
        AcDbObjectId owned_id;
        auto* const owned = new AcDbXrecord;
        ASSERT_EQ(database->addAcDbObject(owned_id, owned), Acad::eOk);
        const std::string unowned = written(*database);
        EXPECT_EQ(owned->setOwnerId(line_id), Acad::eOk);
        owned->close();
        EXPECT_NE(written(*database), unowned) << "what nobody owns is not saved";
        EXPECT_EQ(AcDbXrecordPointer(owned_id)->ownerId(), line_id);

        AcDbObjectPointer<AcDbLine> line(line_id, AcDb::kForWrite);
        const std::string before = record_groups(*database, line_id);
        EXPECT_EQ(line->addPersistentReactor(owned_id), Acad::eOk);
        EXPECT_EQ(line->addPersistentReactor(owned_id), Acad::eOk) << "once";
        EXPECT_EQ(line->createExtensionDictionary(), Acad::eOk);
        EXPECT_EQ(line->createExtensionDictionary(), Acad::eAlreadyInDb);
        const AcDbObjectId extension = line->extensionDictionary();
        line.close();
        const auto digits = [](AcDbObjectId id) {
            ACHAR text[AcDbHandle::kStrSiz];
            id.handle().getIntoAsciiBuffer(text);
            return base::narrow(text);
        };
        EXPECT_TRUE(record_groups(*database, line_id)
                        .starts_with("0 LINE|5 " + digits(line_id) + "|102 {ACAD_XDICTIONARY|360 " +
                                     digits(extension) + "|102 }|102 {ACAD_REACTORS|330 " + digits(owned_id) +
                                     "|102 }|"))
            << record_groups(*database, line_id);
        again = saved_and_read(*database, bytes);
        EXPECT_EQ(AcDbDictionaryPointer(at(*again, extension.handle()))->ownerId().handle(),
                  line_id.handle());

        line.open(line_id, AcDb::kForWrite);
        EXPECT_EQ(line->erase(), Acad::eOk);
        EXPECT_EQ(written(*database).find("\n" + digits(extension) + "\n"), std::string::npos)
            << "what it owns goes with it";
        EXPECT_EQ(line->erase(false), Acad::eOk);
        AcDbDictionaryPointer dictionary(extension, AcDb::kForWrite);
        auto* const entry = new AcDbXrecord;
        AcDbObjectId entry_id;
        EXPECT_EQ(dictionary->setAt(L"DATA", entry, entry_id), Acad::eOk);
        entry->close();
        dictionary.close();
        EXPECT_EQ(line->releaseExtensionDictionary(), Acad::eContainerNotEmpty);
        AcDbXrecordPointer(entry_id, AcDb::kForWrite)->erase();
        EXPECT_EQ(line->releaseExtensionDictionary(), Acad::eOk);
        EXPECT_EQ(line->releaseExtensionDictionary(), Acad::eKeyNotFound);
        EXPECT_EQ(line->removePersistentReactor(owned_id), Acad::eOk);
        EXPECT_EQ(line->removePersistentReactor(owned_id), Acad::eKeyNotFound);
        line.close();
        EXPECT_EQ(record_groups(*database, line_id), before);
        database->imp().history().undo();
        EXPECT_EQ(written(*database), bytes);
    }
    AcDbDictionary* none = nullptr;
    EXPECT_EQ(holding(only_entities)->getNamedObjectsDictionary(none), Acad::eKeyNotFound) << "R12 has none";
}

TEST(DbNewObjects, AnotherObjectTakesOverIdHandleAndPlace) {
    const std::string bytes = test::read(test::drawing("r2018.dxf"));
    const auto database = holding(bytes);
    const AcDbObjectId id = at(*database, 0x102); // a line, with extended data
    AcDbObjectPointer<AcDbLine> line(id, AcDb::kForWrite);
    auto* const circle = new AcDbCircle(AcGePoint3d(1, 2, 3), AcGeVector3d::kZAxis, 4.0);
    AcDbXrecord data;
    EXPECT_EQ(line->handOverTo(&data), Acad::eIllegalEntityType);
    ASSERT_EQ(line->handOverTo(circle), Acad::eOk);
    std::unique_ptr<AcDbLine> old;
    AcDbLine* released = nullptr;
    line.release(released);
    old.reset(released);
    EXPECT_TRUE(old->isNewObject());
    EXPECT_EQ(circle->objectId(), id);
    circle->close();
    const auto again = saved_and_read(*database, bytes);
    AcDbObjectPointer<AcDbCircle> there(at(*again, 0x102));
    ASSERT_EQ(there.openStatus(), Acad::eOk);
    EXPECT_EQ(there->radius(), 4.0);
    database->imp().history().undo();
    EXPECT_EQ(written(*database), bytes);
    EXPECT_EQ(id.objectClass(), AcDbLine::desc());
}

TEST(DbNewObjects, VerticesAndAttributesFollowTheirEntity) {
    struct row {
        const char* what;
        std::string bytes;
        const wchar_t* block;
        std::vector<std::string> expected; // records, $ for the entity's handle and # for others
    };
    const std::string sheets = groups(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $HANDSEED|5 100|0 ENDSEC|0 SECTION|2 TABLES|"
        "0 TABLE|2 BLOCK_RECORD|5 1|330 0|100 AcDbSymbolTable|70 3|"
        "0 BLOCK_RECORD|5 20|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Model_Space|"
        "0 BLOCK_RECORD|5 21|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Paper_Space|"
        "0 BLOCK_RECORD|5 22|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Paper_Space0|"
        "0 ENDTAB|0 ENDSEC|0 SECTION|2 BLOCKS|"
        "0 BLOCK|5 30|330 20|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *Model_Space|70 0|10 0|20 0|30 0|"
        "0 ENDBLK|5 31|330 20|100 AcDbEntity|8 0|100 AcDbBlockEnd|"
        "0 BLOCK|5 34|330 21|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *Paper_Space|70 0|10 0|20 0|30 0|"
        "0 ENDBLK|5 35|330 21|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd|"
        "0 BLOCK|5 32|330 22|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *Paper_Space0|70 0|10 0|20 0|30 0|"
        "0 ENDBLK|5 33|330 22|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd|0 ENDSEC|"
        "0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");
    const row rows[] = {
        {"R12",
         r12_with_handles,
         ACDB_MODEL_SPACE,
         {"0 INSERT|5 $|8 0|62 3|66 1|2 TAP", "0 ATTRIB|5 #|8 0|62 3", "0 SEQEND|5 #|8 0",
          "0 POLYLINE|5 $|8 0|62 3|66 1", "0 VERTEX|5 #|8 0|62 3", "0 VERTEX|5 #|8 0|62 3",
          "0 SEQEND|5 #|8 0"}},
        {"a sheet that is not current",
         sheets,
         L"*Paper_Space0",
         {"0 POLYLINE|5 $|330 22|100 AcDbEntity|67 1|8 0|100 AcDb2dPolyline|66 1",
          "0 VERTEX|5 #|330 $|100 AcDbEntity|67 1|8 0|100 AcDbVertex",
          "0 VERTEX|5 #|330 $|100 AcDbEntity|67 1|8 0|100 AcDbVertex",
          "0 SEQEND|5 #|330 $|100 AcDbEntity|67 1|8 0"}},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto database = holding(row.bytes);
        AcDbImpDatabase& imp = database->imp();
        std::vector<AcDbObjectId> entities(1);
        if (const dxf::record_id tap = imp.blocks().find(L"TAP"); tap != dxf::no_record) {
            auto* const reference = new AcDbBlockReference(AcGePoint3d::kOrigin, imp.id(tap));
            auto* const attribute = new AcDbAttribute;
            EXPECT_EQ(attribute->setTag(L"BORE"), Acad::eOk);
            EXPECT_EQ(reference->appendAttribute(attribute), Acad::eOk);
            EXPECT_EQ(append(*database, row.block, reference, entities[0]), Acad::eOk);
            entities.emplace_back();
        }
        auto* const polyline = new AcDb2dPolyline;
        for (const double x : {0.0, 5.0})
            EXPECT_EQ(polyline->appendVertex(new AcDb2dVertex(AcGePoint3d(x, 1, 0))), Acad::eOk);
        EXPECT_EQ(append(*database, row.block, polyline, entities.back()), Acad::eOk);

        const auto again = saved_and_read(*database, row.bytes);
        std::vector<std::string> found;
        for (const AcDbObjectId& entity : entities)
            for (dxf::record_id id = again->imp().record(at(*again, entity.handle())); id != dxf::no_record;
                 id = again->imp().records().next(id)) {
                const dxf::record_table& records = again->imp().records();
                if (records.handle(id) != entity.handle() && records.kind(id) != dxf::record_kind::part)
                    break;
                const std::size_t number = found.size();
                std::string text = record_groups(*again, again->imp().id(id));
                const auto put = [&](std::uint64_t handle, const char* sign) {
                    char digits[20];
                    std::snprintf(digits, sizeof digits, " %llX|", static_cast<unsigned long long>(handle));
                    if (const std::size_t place = text.find(digits); place != text.npos)
                        text.replace(place + 1, std::string_view(digits).size() - 2, sign);
                };
                if (records.handle(id) != entity.handle())
                    put(records.handle(id), "#");
                put(entity.handle(), "$");
                found.push_back(number < row.expected.size() ? text.substr(0, row.expected[number].size())
                                                             : text);
            }
        EXPECT_EQ(found, row.expected);
        const dxf::record_id block = again->imp().blocks().find(row.block);
        EXPECT_EQ(again->imp().blocks().entities(block).back(),
                  again->imp().record(at(*again, entities.back().handle())));
        imp.history().undo();
        EXPECT_EQ(written(*database), row.bytes);
    }
}
