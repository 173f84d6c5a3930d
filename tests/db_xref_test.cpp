// External references: which file a path means, what is read once, told and cut, and the names that depend on
// them.
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/dependent_names.h"
#include "host/db/xref/loading.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::wstring>;
using Changes = std::vector<std::string>;

// A drawing with what it refers to.
struct Loaded {
    explicit Loaded(const std::filesystem::path& file) : database(false, true) {
        EXPECT_EQ(database.dxfIn(file.wstring().c_str()), Acad::eOk);
        told = db::load_references(database.imp());
    }
    AcDbDatabase database;
    Lines told;
};

std::filesystem::path host_file() {
    return test::drawing("xrefs/host.dxf");
}

std::string saved(AcDbDatabase& database) {
    const test::folder folder;
    EXPECT_EQ(database.dxfOut((folder / "out.dxf").wstring().c_str()), Acad::eOk);
    return test::read(folder / "out.dxf");
}

// What is read of the reference a of a drawing, whichever block of it stands for it.
AcDbDatabase* referenced(AcDbDatabase& database, const wchar_t* block) {
    const AcDbBlockTableRecordPointer record(block, &database);
    return record.openStatus() == Acad::eOk ? record->xrefDatabase() : nullptr;
}

AcDb::XrefStatus status_of(AcDbDatabase& database, const wchar_t* block) {
    const AcDbBlockTableRecordPointer record(block, &database);
    EXPECT_EQ(record.openStatus(), Acad::eOk);
    return record->xrefStatus();
}

std::vector<AcDbObjectId> entities_of(AcDbDatabase& database, const wchar_t* block) {
    const AcDbBlockTableRecordPointer record(block, &database);
    AcDbBlockTableRecordIterator* made = nullptr;
    EXPECT_EQ(record->newIterator(made), Acad::eOk);
    const std::unique_ptr<AcDbBlockTableRecordIterator> iterator(made);
    std::vector<AcDbObjectId> found;
    for (; !iterator->done(); iterator->step())
        iterator->getEntityId(found.emplace_back());
    return found;
}

std::wstring layer_names(AcDbDatabase& database) {
    const AcDbLayerTablePointer table(database.layerTableId());
    AcDbSymbolTableIterator* made = nullptr;
    table->newIterator(made);
    const std::unique_ptr<AcDbSymbolTableIterator> iterator(made);
    std::wstring names;
    for (; !iterator->done(); iterator->step()) {
        AcDbObjectId id;
        iterator->getRecordId(id);
        AcString name;
        AcDbObjectPointer<AcDbLayerTableRecord>(id)->getName(name);
        names += (names.empty() ? L"" : L" ") + std::wstring(name.kwszPtr());
    }
    return names;
}

void replace(std::string& text, std::string_view from, std::string_view to) {
    const auto at = text.find(from);
    ASSERT_NE(at, text.npos) << from;
    text.replace(at, from.size(), to);
}

} // namespace

TEST(DbXref, ReferencesAreReadOnceToldAndCutWhereTheyCircle) {
    Loaded host(host_file());
    const std::wstring folder = test::drawing("xrefs").wstring();
    EXPECT_EQ(
        host.told,
        (Lines{L"Resolve Xref \"一层\": D:\\项目\\XREF_A.DWG", //
               L"Resolve Xref \"二层\": xref_b.dxf",           //
               L"Resolve Xref \"A\": XREF_A.DXF",
               L"Breaking circular reference from \"xref_b.dxf\" to \"A\".", L"Resolve Xref \"BAD\": bad.dwg",
               L"'" + folder + L"/bad.dxf': line 1: no section of a drawing begins before here",
               L"Resolve Xref \"共用\": ..\\nowhere\\xref_b.dwg", L"Resolve Xref \"gone\": missing\\gone.dwg",
               L"\"missing\\gone.dwg\" cannot be found."}));
    AcDbDatabase* const first = referenced(host.database, L"一层");
    ASSERT_NE(first, nullptr);
    AcDbDatabase* const nested = referenced(*first, L"二层");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(referenced(host.database, L"共用"), nested) << "one file, however it is reached";

    EXPECT_EQ(status_of(host.database, L"一层"), AcDb::kXrfResolved);
    EXPECT_EQ(status_of(host.database, L"gone"), AcDb::kXrfFileNotFound);
    EXPECT_EQ(status_of(host.database, L"*Model_Space"), AcDb::kXrfNotAnXref);
    EXPECT_EQ(status_of(*first, L"ov"), AcDb::kXrfUnreferenced) << "an overlay inside a reference";
    EXPECT_EQ(status_of(*first, L"窗"), AcDb::kXrfNotAnXref);
    EXPECT_EQ(status_of(*nested, L"A"), AcDb::kXrfUnresolved);
    EXPECT_EQ(status_of(*nested, L"BAD"), AcDb::kXrfUnresolved);
    EXPECT_EQ(referenced(*nested, L"A"), nullptr);

    // What stands in a reference is what stands in its model space, by ids of that drawing.
    const auto inside = entities_of(host.database, L"一层");
    EXPECT_EQ(inside, entities_of(*first, L"*Model_Space"));
    ASSERT_EQ(inside.size(), 3u);
    EXPECT_EQ(inside[0].database(), first);
    EXPECT_EQ(entities_of(host.database, L"gone").size(), 0u);
    EXPECT_EQ(AcDbBlockTableRecordPointer(L"一层", &host.database)->origin(), AcGePoint3d(1.5, -2, 0))
        << "the base point of its drawing";
    EXPECT_EQ(entities_of(host.database, L"一层|窗"), entities_of(*first, L"窗"));

    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenObject(entity, inside[0], AcDb::kForWrite), Acad::eIsXRefObject);
    ASSERT_EQ(acdbOpenObject(entity, inside[0], AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(entity->upgradeOpen(), Acad::eIsXRefObject);
    EXPECT_EQ(host.database.imp().objects().close_all(), 1u)
        << "what is left open in a reference is the command's too";
    EXPECT_EQ(saved(host.database), test::read(host_file()));
}

TEST(DbXref, PathsOfOtherSystemsAreUnderstood) {
    const test::folder folder;
    std::filesystem::create_directories(folder / "plans/底图");
    std::filesystem::create_directories(folder / "plans/folder.dxf");
    const std::string drawing = test::read(test::drawing("r12.dxf"));
    for (const char* name : {"plans/base.dxf", "plans/底图/Wall.DXF", "up.dxf", "plans/plain"})
        folder.write(name, drawing);
    const struct {
        std::string path;
        const char* found; // empty: not
    } rows[] = {
        {"base.dwg", "plans/base.dxf"},
        {"BASE.DXF", "plans/base.dxf"},
        {"base", "plans/base.dxf"},
        {".\\base.dwg", "plans/base.dxf"},
        {"底图\\wall.dwg", "plans/底图/Wall.DXF"},
        {"E:\\底图\\WALL.dwg", "plans/底图/Wall.DXF"},
        {"\\\\server\\share\\base.dwg", "plans/base.dxf"},
        {"C:\\old\\place\\base.dwg", "plans/base.dxf"},
        {"..\\up.dwg", "up.dxf"},
        {"底图\\..\\..\\UP.dwg", "up.dxf"},
        {"plain", "plans/plain"},
        {(folder / "up.dxf").string(), "up.dxf"},
        {"up.dwg", ""}, // a folder above is looked into only when the path says so
        {"folder.dwg", ""},
        {"..\\plans", ""},
        {"", ""},
        {std::string("base.dwg\0.png", 13), ""},
        {"base\x01.dwg", ""},
    };
    const std::string text = test::read(host_file());
    for (const auto& row : rows) {
        std::string bytes = text;
        replace(bytes, "D:\\项目\\XREF_A.DWG", row.path);
        Loaded host(folder.write("plans/host.dxf", bytes));
        AcDbDatabase* const found = referenced(host.database, L"一层");
        if (*row.found == 0) {
            EXPECT_EQ(found, nullptr) << row.path;
            EXPECT_EQ(host.told[1].substr(host.told[1].find(L"\" ")), L"\" cannot be found.") << row.path;
        } else {
            ASSERT_NE(found, nullptr) << row.path;
            EXPECT_TRUE(std::filesystem::equivalent(sys::to_path(found->imp().file_name), folder / row.found))
                << row.path;
        }
    }
}

TEST(DbXref, DependentNamesAreSeenAndNotSaved) {
    Loaded host(host_file());
    EXPECT_EQ(layer_names(host.database), L"0 一层|墙 gone|墙 一层|门 二层|PIPE 共用|PIPE");
    {
        const AcDbLayerTableRecordPointer wall(L"一层|墙", &host.database);
        EXPECT_TRUE(wall->isOff() && wall->isLocked() && wall->color().colorIndex() == 5)
            << "as the host has it";
        EXPECT_TRUE(wall->isDependent() && wall->isResolved());
        const AcDbLayerTableRecordPointer gone(L"gone|墙", &host.database);
        EXPECT_TRUE(gone->isDependent() && !gone->isResolved()) << "whatever the file says";
        // In the reference: frozen, colour 2, a linetype with texts in a style of its own.
        const AcDbLayerTableRecordPointer door(L"一层|门", &host.database);
        EXPECT_TRUE(door->isDependent() && door->isResolved() && door->isFrozen() && !door->isPlottable());
        EXPECT_EQ(door->color().colorIndex(), 2);
        EXPECT_EQ(door->lineWeight(), AcDb::kLnWt050);
        const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(door->linetypeObjectId());
        ASSERT_EQ(linetype.openStatus(), Acad::eOk);
        AcString name;
        linetype->getName(name);
        EXPECT_EQ(std::wstring(name.kwszPtr()), L"一层|管线");
        EXPECT_EQ(linetype->patternLength(), 5.0);
        const AcDbLayerTableRecordPointer pipe(L"共用|PIPE", &host.database);
        EXPECT_TRUE(pipe->isOff() && pipe->isLocked()) << "of a drawing of R12";
    }
    for (const wchar_t* name : {L"一层|墙", L"一层|门"}) {
        const AcDbLayerTableRecordPointer layer(name, &host.database, AcDb::kForWrite);
        ASSERT_EQ(layer.openStatus(), Acad::eOk);
        EXPECT_EQ(layer->erase(), Acad::eCannotBeErasedByCaller);
        EXPECT_EQ(layer->setName(L"墙"), Acad::eInvalidInput);
        EXPECT_EQ(host.database.setClayer(layer->objectId()), Acad::eWasOpenForWrite);
        const AcDbObjectId id = layer->objectId();
        layer->downgradeOpen();
        EXPECT_EQ(host.database.setClayer(id), Acad::eInvalidLayer);
    }
    const AcDbBlockTableRecordPointer window(L"一层|窗", &host.database, AcDb::kForWrite);
    EXPECT_EQ(window.openStatus(), Acad::eIsXRefObject);
    EXPECT_EQ(saved(host.database), test::read(host_file()));
    EXPECT_EQ(host.database.imp().records().unsaved(), 0u);
}

TEST(DbXref, AChangedDependentNameIsTheDrawingsOwn) {
    Loaded host(host_file());
    const std::string before = test::read(host_file());
    const auto thaw = [&] {
        host.database.imp().history().begin_step("thaw");
        const AcDbLayerTableRecordPointer door(L"一层|门", &host.database, AcDb::kForWrite);
        EXPECT_EQ(door->setIsFrozen(false), Acad::eOk);
    };
    thaw();
    const std::string after = saved(host.database);
    // The layer comes with its linetype, and that with the style of its texts; nothing else does.
    const Changes added = test::differences(before, after);
    EXPECT_EQ(std::count(added.begin(), added.end(), "+ AcDbSymbolTableRecord"), 3);
    for (const char* name : {"+ 一层|门", "+ 一层|管线", "+ 一层|仿宋", "+ 水"})
        EXPECT_NE(std::find(added.begin(), added.end(), name), added.end()) << name;
    EXPECT_EQ(after.find("PIPE"), after.npos);
    EXPECT_EQ(host.database.imp().records().unsaved(), 3u);

    // What was saved is what is found when it is read again, and now the host's own state.
    const test::folder folder;
    const auto file = folder.write("again.dxf", after);
    for (const char* reference : {"xref_a.dxf", "xref_b.dxf"})
        folder.write(reference, test::read(test::drawing(std::string("xrefs/") + reference)));
    Loaded again(file);
    {
        const AcDbLayerTableRecordPointer door(L"一层|门", &again.database);
        EXPECT_TRUE(!door->isFrozen() && door->isDependent() && door->lineWeight() == AcDb::kLnWt050);
        AcString name;
        AcDbObjectPointer<AcDbLinetypeTableRecord>(door->linetypeObjectId())->getName(name);
        EXPECT_EQ(std::wstring(name.kwszPtr()), L"一层|管线");
    }
    host.database.imp().history().undo();
    EXPECT_EQ(saved(host.database), before);
    EXPECT_TRUE(AcDbLayerTableRecordPointer(L"一层|门", &host.database)->isFrozen()) << "seen as before";
    host.database.imp().history().redo();
    EXPECT_EQ(saved(host.database), after);
}

TEST(DbXref, WithoutRetainingTheReferencesStateIsSeen) {
    const test::folder folder;
    for (const char* reference : {"xref_a.dxf", "xref_b.dxf"})
        folder.write(reference, test::read(test::drawing(std::string("xrefs/") + reference)));
    std::string bytes = test::read(host_file());
    replace(bytes, "$VISRETAIN\r\n 70\r\n1", "$VISRETAIN\r\n 70\r\n0");
    Loaded host(folder.write("host.dxf", bytes));
    {
        const AcDbLayerTableRecordPointer wall(L"一层|墙", &host.database);
        EXPECT_TRUE(!wall->isOff() && !wall->isLocked() && wall->color().colorIndex() == 1);
        EXPECT_TRUE(wall->isDependent());
    }
    EXPECT_EQ(saved(host.database), bytes) << "seen, not changed";
    { AcDbLayerTableRecordPointer(L"一层|墙", &host.database, AcDb::kForWrite)->setIsLocked(true); }
    EXPECT_EQ(test::differences(bytes, saved(host.database)), (Changes{"- -5", "+ 1"}));
    host.database.imp().history().undo();
    EXPECT_EQ(saved(host.database), bytes);
}

TEST(DbXref, LayersOfReferencesAreRuledByTheHosts) {
    Loaded host(host_file());
    const struct {
        const wchar_t* reference;
        const wchar_t* layer;
        const wchar_t* ruled_by; // empty: no record
    } rows[] = {
        {L"一层", L"墙", L"一层|墙"},     {L"一层", L"门", L"一层|门"},
        {L"二层", L"PIPE", L"二层|PIPE"}, {L"一层", L"二层|PIPE", L"二层|PIPE"},
        {L"共用", L"pipe", L"共用|PIPE"}, {L"一层", L"0", L"0"},
        {L"一层", L"Defpoints", L""},     {L"一层", L"没有", L""},
    };
    AcDbImpDatabase& imp = host.database.imp();
    AcDbImpDatabase& first = referenced(host.database, L"一层")->imp();
    EXPECT_EQ(db::layer_seen(first, L"墙"), L"一层|墙");
    EXPECT_EQ(db::layer_seen(referenced(host.database, L"共用")->imp(), L"PIPE"), L"二层|PIPE")
        << "it was read for the first storey";
    EXPECT_EQ(db::layer_seen(imp, L"墙"), L"墙");
    for (const auto& row : rows) {
        const dxf::record_id layer = db::ruling_layer(imp, row.reference, row.layer);
        EXPECT_EQ(layer == dxf::no_record ? std::wstring() : imp.names().name_of(layer), row.ruled_by)
            << &row - rows;
    }
}

TEST(DbXref, TheProgramTellsAndGoesOn) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const auto result = test::zefhost({host_file().string(), "-c", "-LAYER LO * \\nU", "-o", out});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with("Resolve Xref \"一层\": D:\\项目\\XREF_A.DWG\n")) << result.out;
    EXPECT_NE(result.out.find("\n\"missing\\gone.dwg\" cannot be found.\nCommand: "), result.out.npos)
        << result.out;
    EXPECT_EQ(test::read(out), test::read(host_file())) << "all layers locked, and all of it taken back";
}
