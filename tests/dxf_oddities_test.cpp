// Oddities of drawings in the wild: none is damage, all survive byte for byte, and what they say is
// understood.
#include "host/db/tables/properties.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

namespace {

using test::groups;
using test::opened;
using test::with_entities;
using test::written;

std::string odd(std::string_view name) {
    return test::read(test::drawing(std::string("odd/") + std::string(name)));
}

// The drawing comes back, unchanged and after every record was changed and that was taken back.
void expect_survives(const std::string& bytes) {
    const auto drawing = opened(bytes);
    ASSERT_NE(drawing, nullptr) << bytes.substr(0, 200);
    EXPECT_EQ(test::messages(*drawing), "");
    EXPECT_EQ(written(*drawing), bytes);
    dxf::record_table& records = drawing->records();
    for (dxf::record_id id = 1; id < records.size(); ++id) {
        dxf::group_list list(records.text(id));
        if (records.kind(id) == dxf::record_kind::implied || list.empty())
            continue;
        list.set_integer({"*"}, 62, 77);
        records.replace(id, list.write(drawing->style()));
    }
    EXPECT_NE(written(*drawing), bytes);
    std::vector<dxf::record_id> touched;
    records.undo(touched);
    EXPECT_EQ(written(*drawing), bytes);
}

} // namespace

TEST(DxfOddities, DrawingsSurviveByteForByte) {
    for (const char* name : {"foreign.dxf", "handles.dxf", "names.dxf", "numbers.dxf", "returns.dxf"})
        expect_survives(odd(name));
    for (const char* name : {"r12.dxf", "r2000_gbk.dxf", "r2018.dxf"})
        expect_survives(test::read(test::drawing(name)));
    const std::string plain = with_entities("0 LINE|5 1F|8 WALL");
    for (const std::string& bytes :
         {"\xEF\xBB\xBF" + plain, groups("999 a comment") + plain, plain + "trash\nbehind the end",
          plain.substr(0, plain.size() - 1), plain + "\n\n", plain + std::string(100, '\0'), plain + "\x1A",
          with_entities("0 TEXT|5 1F|8 WALL|1 first\nsecond line|7 STYLE"),
          with_entities("0 LINE|5 1f|8 \xE9t\xE9"),
          groups("0 SECTION|2 ENTITIES") + "  0\nLINE\n    8\nA\n  5 \n  2A \n" + groups("0 ENDSEC|0 EOF"),
          with_entities("0 TEXT|8 A|1 " + std::string(5000, 'x')), with_entities("0 LINE|5 1|8 A|0 LINE|8 B"),
          groups("0 SECTION|2 NOBODY KNOWS|0 THIS|8 A|0 ENDSEC") + plain})
        expect_survives(bytes);
}

TEST(DxfOddities, LinesThatEndWithReturnsAreReadAndWrittenSo) {
    const std::string before = odd("returns.dxf");
    ASSERT_EQ(before.find('\n'), before.npos);
    const auto drawing = opened(before);
    dxf::record_table& records = drawing->records();
    const dxf::record_id layer = records.next(drawing->table("LAYER"));
    dxf::group_list list(records.text(layer));
    list.set_integer({"AcDbLayerTableRecord"}, 62, 5);
    records.replace(layer, list.write(drawing->style()));
    std::string expected = before;
    expected.replace(expected.find(" 62\r3\r"), 6, " 62\r5\r");
    EXPECT_EQ(written(*drawing), expected);
    list.set_integer({"*"}, 290, 0);
    records.replace(layer, list.write(drawing->style()));
    EXPECT_NE(written(*drawing).find("\r290\r0\r"), std::string::npos);
    EXPECT_EQ(written(*drawing).find('\n'), before.npos);
}

TEST(DxfOddities, NumbersReadAsFarAsTheyAreNumbers) {
    const auto drawing = opened(odd("numbers.dxf"));
    const dxf::record_table& records = drawing->records();
    struct row {
        const char* type;
        int code;
        std::optional<double> real;
        std::optional<std::int64_t> integer;
    };
    for (const row& row : {row{"LINE", 10, 1.5, 1}, row{"LINE", 20, -0.25, {}}, row{"LINE", 11, 2.5, 2},
                           row{"LINE", 21, 150.0, 1}, row{"LINE", 62, 256.0, 256}, row{"CIRCLE", 62, {}, {}},
                           row{"CIRCLE", 10, 7.5, 7}, row{"CIRCLE", 20, -0.0, 0},
                           row{"CIRCLE", 40, 1000.0, 1}, row{"TEXT", 40, {}, {}}}) {
        for (dxf::record_id id = 0; id < records.size(); ++id) {
            if (records.type_name(id) != row.type)
                continue;
            const dxf::group_list list(records.text(id));
            EXPECT_EQ(list.real({"*"}, row.code), row.real) << row.type << row.code;
            EXPECT_EQ(list.integer({"*"}, row.code), row.integer) << row.type << row.code;
        }
    }
    dxf::group_list line(records.text(records.next(drawing->parts().entities)));
    line.set_real({"*"}, 10, 1.5);
    EXPECT_FALSE(line.changed()) << "the comma stays while the value does";
}

TEST(DxfOddities, HandlesOfEveryKindAreFoundAndNewOnesAreFree) {
    const auto drawing = opened(odd("handles.dxf"));
    dxf::record_table& records = drawing->records();
    struct row {
        std::uint64_t handle;
        const char* type;
    };
    for (const row& row : {row{0x1B, "LAYER"}, row{0xD, "DIMSTYLE"}, row{0xFFFFFFFFFFFFFFFFu, "LINE"},
                           row{0x2F, "FOREIGN"}, row{0x11, "XRECORD"}}) {
        ASSERT_NE(records.find(row.handle), dxf::no_record) << row.type;
        EXPECT_EQ(records.type_name(records.find(row.handle)), row.type);
    }
    for (int i = 0; i < 3; ++i) {
        const std::uint64_t handle = records.new_handle();
        EXPECT_NE(handle, 0u);
        EXPECT_EQ(records.find(handle), dxf::no_record);
    }
}

// Layers are found by what their names say, however an entity spells them.
TEST(DxfOddities, EscapesInLayerNamesAreReadAndStay) {
    const test::folder folder;
    const std::string file = folder.write("names.dxf", odd("names.dxf")).string();
    const std::string out = (folder / "out.dxf").string();
    const auto result =
        test::zefhost({file, "-c", R"(LIST ALL \nSETVAR CLAYER\n\n-LAYER OFF A^Bé \n)", "-o", out});
    EXPECT_EQ(result.status, 0) << result.err << result.out;
    EXPECT_NE(result.out.find("Layer: \"给水\""), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("<\"给水\">"), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find("\\U+"), std::string::npos) << result.out;
    EXPECT_EQ(test::differences(odd("names.dxf"), test::read(out)),
              (std::vector<std::string>{"- 4", "+ -4"}));
}

TEST(DxfOddities, WhatOnlyOthersUnderstandIsNotTakenForOurs) {
    const auto drawing = opened(odd("foreign.dxf"));
    const dxf::record_table& records = drawing->records();
    EXPECT_EQ(records.type_name(records.find(0x32)), "MTEXT");
    EXPECT_EQ(records.layer_names()[records.layer(records.find(0x32))], "0") << "8 of an embedded object";
    EXPECT_EQ(records.kind(records.find(0x30)), dxf::record_kind::entity);
    std::size_t in_unknown_sections = 0;
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.type_name(id) == "ACDSRECORD" || records.type_name(id) == "ACDSSCHEMA") {
            EXPECT_EQ(records.kind(id), dxf::record_kind::structure);
            ++in_unknown_sections;
        }
    EXPECT_EQ(in_unknown_sections, 2u);
}

// Group 8, 62 and 67 wherever a program put them: what the index and the object see, and where a change goes.
// Of each entity what it becomes with the layer NEW and without a colour.
TEST(DxfOddities, WhatEntitiesHaveInCommonIsTheirsWhereverItStands) {
    const std::string head = "0 SECTION|2 ENTITIES|";
    const std::string tail = "|0 ENDSEC|0 EOF";
    struct row {
        const char* entity;
        const char* layer;
        int color;
        bool paper;
        const char* changed;
    };
    const row rows[] = {
        {"0 LINE|5 A|100 AcDbEntity|8 WALL|62 3|100 AcDbLine|10 1", "WALL", 3, false,
         "0 LINE|5 A|100 AcDbEntity|8 NEW|100 AcDbLine|10 1"},
        {"0 LINE|5 A|100 AcDbEntity|100 AcDbLine|10 1|62 3|20 2|67 1|8 WALL", "WALL", 3, true,
         "0 LINE|5 A|100 AcDbEntity|100 AcDbLine|10 1|20 2|67 1|8 NEW"},
        {"0 LINE|5 A|100 AcDbLine|8 WALL|10 1|100 AcDbEntity|62 3", "WALL", 3, false,
         "0 LINE|5 A|100 AcDbLine|8 NEW|10 1|100 AcDbEntity"},
        {"0 LINE|5 A|8 WALL|62 3|100 AcDbEntity|100 AcDbLine|10 1", "WALL", 3, false,
         "0 LINE|5 A|8 NEW|100 AcDbEntity|100 AcDbLine|10 1"},
        {"0 ARC|5 A|100 AcDbEntity|100 AcDbCircle|62 3|40 1|100 AcDbArc|8 WALL|50 1", "WALL", 3, false,
         "0 ARC|5 A|100 AcDbEntity|100 AcDbCircle|40 1|100 AcDbArc|8 NEW|50 1"},
        // The first one counts, and is the only one once it was set.
        {"0 LINE|5 A|100 AcDbEntity|8 WALL|62 3|100 AcDbLine|8 OTHER|62 4", "WALL", 3, false,
         "0 LINE|5 A|100 AcDbEntity|8 NEW|100 AcDbLine"},
        // In braces, in extended data and in an embedded object it is none.
        {"0 LINE|5 A|100 AcDbEntity|100 AcDbLine|102 {X|8 NO|62 1|102 }|8 WALL|1001 X|62 1", "WALL", 256,
         false, "0 LINE|5 A|100 AcDbEntity|100 AcDbLine|102 {X|8 NO|62 1|102 }|8 NEW|1001 X|62 1"},
        {"0 MTEXT|5 A|100 AcDbEntity|100 AcDbMText|8 WALL|101 Embedded Object|8 NO|62 1", "WALL", 256, false,
         "0 MTEXT|5 A|100 AcDbEntity|100 AcDbMText|8 NEW|101 Embedded Object|8 NO|62 1"},
        // What a class uses for something else is the class's.
        {"0 ACAD_TABLE|5 A|100 AcDbEntity|100 AcDbTable|62 3|8 WALL", "WALL", 256, false,
         "0 ACAD_TABLE|5 A|100 AcDbEntity|100 AcDbTable|62 3|8 NEW"},
        {"0 MINE|5 A|100 AcDbEntity|8 WALL|100 Mine|8 NO|62 3|67 1", "WALL", 256, false,
         "0 MINE|5 A|100 AcDbEntity|8 NEW|100 Mine|8 NO|62 3|67 1"},
        {"0 LINE|5 A|8 WALL|10 1|62 3", "WALL", 3, false, "0 LINE|5 A|8 NEW|10 1"},
    };
    for (const row& row : rows) {
        const auto drawing = opened(groups(head + row.entity + tail));
        dxf::record_table& records = drawing->records();
        const dxf::record_id id = records.find(0xA);
        const auto layer_of = [&] { return std::string(records.layer_names()[records.layer(id)]); };
        EXPECT_EQ(layer_of(), row.layer) << row.entity;
        EXPECT_EQ(dxf::read_entity_header(records.text(id)).paper, row.paper) << row.entity;
        dxf::group_list list(records.text(id));
        EXPECT_EQ(list.text(db::entity_place, 8).value_or(""), row.layer) << row.entity;
        EXPECT_EQ(list.integer(db::entity_place, 62).value_or(256), row.color) << row.entity;
        list.set_text(db::entity_place, 8, "NEW");
        list.remove(db::entity_place, 62);
        records.replace(id, list.write({"\n", false, 0, 0}));
        EXPECT_EQ(written(*drawing), groups(head + row.changed + tail)) << row.entity;
        EXPECT_EQ(layer_of(), "NEW") << row.entity;
    }
    // A group that is new stands with the others of its kind, also when these are scattered.
    const dxf::padded_string line{"0\nLINE\n5\nA\n100\nAcDbEntity\n100\nAcDbLine\n8\nWALL\n10\n1\n"};
    dxf::group_list list(line.view());
    list.set_integer(db::entity_place, 62, 3);
    EXPECT_EQ(list.write({"\n", false, 0, 0}),
              "0\nLINE\n5\nA\n100\nAcDbEntity\n62\n3\n100\nAcDbLine\n8\nWALL\n10\n1\n");
}
