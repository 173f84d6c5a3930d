// Files of linetypes: what their patterns mean, and which file a linetype comes from.
#include "acutmem.h"
#include "base/utf.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/linetype_file.h"
#include "tests/db_entities.h"
#include "tests/ed_session.h"

namespace {

// Lengths, and what stands behind them: "12.7 -5 (GAS Standard 2.5 0 -2,-1)".
std::wstring described(const wchar_t* pattern) {
    const auto dashes = db::parse_linetype_pattern(pattern);
    if (!dashes)
        return L"refused";
    std::wostringstream text;
    for (const db::linetype_dash& dash : *dashes) {
        text << (text.tellp() > 0 ? L" " : L"") << dash.length;
        if (!dash.text.empty() || !dash.shape.empty())
            text << L" (" << dash.text << dash.shape << L" " << dash.style << L" " << dash.scale << L" "
                 << dash.degrees << (dash.oriented ? L" A " : L" ") << dash.offset.x << L"," << dash.offset.y
                 << L")";
    }
    return text.str();
}

constexpr std::string_view lines = ";; own linetypes\r\n"
                                   "*LONG,Long ____ ____, and more\r\n"
                                   "A,30,-5\r\n"
                                   "*Lost header\r\n"
                                   "\r\n"
                                   "* GAS-\xC6\xF8 , Gas\r\n" // GBK
                                   "a, 12.7 , -5, [\"GAS,1\",STANDARD,S=2.5,R=0.0,X=-2.0,Y=-1.0], -10,\r\n"
                                   "*FENCE,Fence\r\n"
                                   "A,6,[BOX,ltypeshp.shx,s=2.5],-6\r\n"
                                   "*BAD,Bad\r\n"
                                   "A,6,six\r\n";

} // namespace

TEST(DbLinetypeFile, PatternsAreReadAsTheyAreWritten) {
    for (const auto& [pattern, wanted] : std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>{
             {L"A,12.7,-6.35", L"12.7 -6.35"},
             {L"A,.5,-.25,0,-.25", L"0.5 -0.25 0 -0.25"},
             {L"A,1,-2,[\"A B\",my,s=2,r=45,x=-1,y=-.5],-3", L"1 -2 (A B my 2 45 -1,-0.5) -3"},
             {L"A,1,[\"N\",s,a=1.5707963267948966r],-3", L"1 (N s 1 90 A 0,0) -3"},
             {L"A,1,[\"N\",s,u=100g],-3", L"1 (N s 1 90 0,0) -3"},
             {L"A,1,[BOX,b.shx,S=.1],-3", L"1 (BOX b.shx 0.1 0 0,0) -3"},
             {L"A", L"refused"},
             {L"B,1,-1", L"refused"},
             {L"A,1,x", L"refused"},
             {L"A,[\"N\",s],1", L"refused"},
             {L"A,1,[\"N],1", L"refused"},
             {L"A,1,[\"N\"],1", L"refused"},
             {L"A,1,[\"N\",s,Q=1],1", L"refused"},
             {L"A,1,nan", L"refused"},
         })
        EXPECT_EQ(described(pattern), wanted) << base::narrow(pattern);
}

TEST(DbLinetypeFile, ADrawingGetsThemFromFilesBesideIt) {
    const test::folder folder;
    const auto file = folder.write("plan.dxf", test::read(test::drawing("r2018.dxf")));
    folder.write("Own.LIN", lines);
    test::session session(file);
    std::filesystem::create_directories(sys::system_folder());
    std::filesystem::copy(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share" / "linetype.dbf",
                          sys::system_folder() / "linetype.dbf");
    AcDbDatabase& drawing = session.database().self();
    const auto has = [&](std::wstring_view name) {
        return session.database().names().find(db::table_kind::linetype, name) != dxf::no_record;
    };
    struct row {
        const wchar_t* name;
        const wchar_t* file;
        Acad::ErrorStatus status;
    };
    for (const row& row : {
             row{L"long", L"own.lin", Acad::eOk},
             row{L"LONG", L"own.lin", Acad::eDuplicateRecordName},
             row{L"Lost header", L"own.lin", Acad::eUndefinedLineType},
             row{L"FENCE", L"own.lin", Acad::eUndefineShapeName},
             row{L"BAD", L"own.lin", Acad::eInvalidInput},
             row{L"LONG", L"none.lin", Acad::eFileNotFound},
             row{L"", L"own.lin", Acad::eInvalidInput},
             row{L"VR-R*", L"linetype.dbf", Acad::eOk},
         })
        EXPECT_EQ(acdbLoadLineTypeFile(row.name, row.file, &drawing), row.status) << base::narrow(row.name);
    EXPECT_TRUE(has(L"LONG") && has(L"VR-RJ") && has(L"VR-RH") && !has(L"VR-J") && !has(L"FENCE") &&
                !has(L"BAD"));
    // What is asked for by name is looked for in all of them.
    const AcDbObjectId gas = db::find_and_load_linetype(drawing, L"gas-气");
    EXPECT_FALSE(db::find_and_load_linetype(drawing, L"VR-J").isNull());
    EXPECT_TRUE(db::find_and_load_linetype(drawing, L"WAVY").isNull());
    const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(gas, AcDb::kForRead);
    ASSERT_EQ(linetype.openStatus(), Acad::eOk);
    ACHAR* text = nullptr;
    ASSERT_EQ(linetype->textAt(1, text), Acad::eOk);
    EXPECT_STREQ(text, L"GAS,1");
    acutDelString(text);
    EXPECT_EQ(linetype->numDashes(), 3);
    EXPECT_EQ(linetype->patternLength(), 27.7);
    EXPECT_EQ(linetype->shapeScaleAt(1), 2.5);
}

TEST(DbLinetypeFile, CommandsFindThemAndLoadThemAnew) {
    struct row {
        std::string script;
        std::vector<std::string_view> told;
        int status = 0;
    };
    const test::folder folder;
    const std::string plan = folder.write("plan.dxf", test::read(test::drawing("r2018.dxf"))).string();
    folder.write("own.lin", lines);
    for (const row& row : {
             row{"-LAYER L LONG 0 \n-LAYER ? 0 ", {"LONG"}},
             row{"-LAYER L VR-RJ 0 \n", {}},
             row{"-LAYER L WAVY 0 \n", {"no file of linetypes defines it"}, 4},
             row{"-LINETYPE L VR-J acadiso.lin\n\n",
                 {"acadiso.lin is not on the support path", "\"VR-J\" loaded"}},
             row{"LINETYPE Load LONG own\nLoad LONG own Y\nLoad LONG own N \n",
                 {"\"LONG\" loaded", "is already loaded. Reload it?", "\"LONG\" reloaded"}},
             row{"-LINETYPE Load LONG acad.lin \n", {"does not define linetype \"LONG\""}, 4},
             row{"-LINETYPE Load BAD own \n", {"\"six\" is neither a length"}, 4},
             row{"-LINETYPE S DASHED \nCELTYPE\n\n", {"<\"DASHED\">"}},
             row{"-LINETYPE ? own \n", {"LONG", "Long ____ ____, and more"}},
         }) {
        const auto result = test::zefhost({plan}, row.script);
        EXPECT_EQ(result.status, row.status) << row.script << result.out << result.err;
        for (const std::string_view part : row.told)
            EXPECT_NE((result.out + result.err).find(part), std::string::npos)
                << row.script << ": " << part << "\n"
                << result.out << result.err;
    }
}
