// Drawing files: what the index finds, what a change writes, what survives.
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

using test::groups;
using test::opened;
using test::with_entities;
using test::written;

constexpr const char* all_drawings[] = {"r2018.dxf", "r2000_gbk.dxf", "r12.dxf"};

} // namespace

TEST(Dxf, FindsEveryRecordWithHandleOwnerAndLayer) {
    for (const char* name : {"r2018.dxf", "r2000_gbk.dxf"}) {
        const auto drawing = opened(test::read(test::drawing(name)));
        ASSERT_NE(drawing, nullptr) << name;
        const dxf::record_table& records = drawing->records();
        struct row {
            std::uint64_t handle;
            const char* type;
            dxf::record_kind kind;
            std::uint64_t owner;
            const wchar_t* layer;
        };
        for (const row& row : {row{0x51, "LAYER", dxf::record_kind::entry, 3, L""},
                               row{0x102, "LINE", dxf::record_kind::entity, 0x28, L"PIPE-给水"},
                               row{0x105, "INSERT", dxf::record_kind::entity, 0x28, L"PIPE-给水"},
                               row{0x106, "ATTRIB", dxf::record_kind::part, 0x105, L"PIPE-给水"},
                               row{0x5B, "LINE", dxf::record_kind::entity, 0x59, L"0"},
                               row{0x5D, "ATTDEF", dxf::record_kind::entity, 0x59, L"0"},
                               row{0x10B, "LINE", dxf::record_kind::entity, 0x29, L"图框"},
                               row{0x110, "XRECORD", dxf::record_kind::object, 0x40, L""},
                               row{0x27, "DIMSTYLE", dxf::record_kind::entry, 8, L""}}) {
            const dxf::record_id id = records.find(row.handle);
            ASSERT_NE(id, dxf::no_record) << name << " " << row.handle;
            EXPECT_EQ(records.type_name(id), row.type);
            EXPECT_EQ(records.kind(id), row.kind) << row.handle;
            EXPECT_EQ(records.owner_handle(id), row.owner) << row.handle;
            EXPECT_EQ(drawing->codec().decode(records.layer_names()[records.layer(id)]), row.layer)
                << row.handle;
        }
        EXPECT_EQ(records.find(0xABC), dxf::no_record);
    }
}

TEST(Dxf, OldDrawingsWithoutHandlesGetOnesInMemoryOnly) {
    const std::string bytes = test::read(test::drawing("r12.dxf"));
    const auto drawing = opened(bytes);
    ASSERT_NE(drawing, nullptr);
    EXPECT_EQ(drawing->version(), 1009);
    const dxf::record_table& records = drawing->records();
    std::size_t entities = 0;
    for (dxf::record_id id = 0; id < records.size(); ++id) {
        if (records.kind(id) != dxf::record_kind::entity && records.kind(id) != dxf::record_kind::part)
            continue;
        ++entities;
        EXPECT_EQ(records.find(records.handle(id)), id);
        EXPECT_NE(records.find(records.owner_handle(id)), dxf::no_record);
    }
    EXPECT_EQ(entities, 7u);
    EXPECT_EQ(written(*drawing), bytes);
}

TEST(Dxf, EveryBeginningOfADrawingIsReadRepairedOrRefusedWithAReason) {
    for (const char* name : {"r12.dxf", "r2018.dxf"}) {
        const std::string whole = test::read(test::drawing(name));
        std::size_t refused = 0;
        const std::size_t step = test::sanitized ? 7 : 1;
        for (std::size_t length = whole.size() % step; length <= whole.size(); length += step) {
            const auto drawing = dxf::drawing::from_bytes(whole.substr(0, length));
            if (!drawing) {
                EXPECT_FALSE(drawing.error().empty());
                ++refused;
                continue;
            }
            const std::string again = written(**drawing);
            if ((*drawing)->repairs().empty()) {
                EXPECT_EQ(again, whole.substr(0, length)) << length;
            } else {
                const auto repaired = opened(again);
                ASSERT_NE(repaired, nullptr) << length;
                EXPECT_EQ(test::messages(*repaired), "") << length;
                EXPECT_EQ(written(*repaired), again) << length;
            }
        }
        EXPECT_LE(refused * step, whole.find("BLOCKS") + 10 + step)
            << "from the first block on there is something to save";
    }
}

TEST(Dxf, RefusesWhatIsNoDrawingAndSaysWhy) {
    struct row {
        std::string bytes;
        const wchar_t* word;
    };
    for (const row& row :
         {row{"", L"empty"}, row{"\n", L"line"}, row{"hello\nworld\n", L"line 1"},
          row{std::string("AC1032\0\0\0\0", 10), L"DWG"}, row{"999\nonly a comment\n", L"line 3"},
          row{"\xFF\xFE\x30\x00\x0A\x00", L"UTF-16"}, row{std::string("0\0\n\0S\0", 6), L"UTF-16"},
          row{groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE"),
              L"line 17"}}) {
        const auto drawing = dxf::drawing::from_bytes(row.bytes);
        ASSERT_FALSE(drawing) << row.bytes;
        EXPECT_NE(drawing.error().find(row.word), std::wstring::npos) << base::narrow(drawing.error());
    }
}

TEST(Dxf, AChangeTouchesItsGroupAloneAndUndoGivesTheBytesBack) {
    for (const char* name : all_drawings) {
        const std::string before = test::read(test::drawing(name));
        const auto drawing = opened(before);
        dxf::record_table& records = drawing->records();
        const dxf::record_id layer = records.next(drawing->table("LAYER"));
        records.begin_step("off");
        dxf::group_list list(records.text(layer));
        list.set_integer({"AcDbLayerTableRecord"}, 62, -7);
        ASSERT_TRUE(records.replace(layer, list.write(drawing->style())));
        EXPECT_FALSE(records.replace(layer, list.write(drawing->style()))) << "the same text is no change";
        EXPECT_EQ(test::differences(before, written(*drawing)), (std::vector<std::string>{"- 7", "+ -7"}))
            << name;
        // A number that stands in columns keeps them; one that does not gets none.
        const bool in_columns = std::string_view(name) == "r2018.dxf";
        EXPECT_EQ(written(*drawing).size(), before.size() + (in_columns ? 0 : 1)) << name;
        EXPECT_EQ(records.unsaved(), 1u);

        std::vector<dxf::record_id> touched;
        EXPECT_EQ(records.undo(touched), "off");
        EXPECT_EQ(written(*drawing), before);
        EXPECT_EQ(records.unsaved(), 0u);
        EXPECT_EQ(records.undo(touched), "") << "nothing is left";
        EXPECT_EQ(records.redo(touched), "off");
        EXPECT_EQ(records.unsaved(), 1u);
        EXPECT_EQ(touched, (std::vector<dxf::record_id>{layer, layer}));
    }
}

// One more group, or one less, of any code at any place: the index knows what one made anew would know.
TEST(Dxf, TheIndexFollowsEveryChangeOfARecord) {
    const std::string line =
        "0 LINE|5 A1|102 {X|330 7|102 }|330 1F|100 AcDbEntity|8 walls|62 8|100 AcDbLine|10 8";
    const auto drawing = opened(with_entities(line));
    dxf::record_table& records = drawing->records();
    const dxf::record_id id = records.find(0xA1);
    ASSERT_NE(id, dxf::no_record);
    std::uint64_t owner = 0x1F; // as the record says: an index made by place has the space until it changes
    ASSERT_TRUE(records.replace(id, groups(line + "|39 1")));
    for (const std::string group : {"60 1", "8 roof", "330 20", "62 8", "6 8", "100 AcDbLine", "102 {A"})
        for (std::size_t at = line.find('|'); at != line.npos; at = line.find('|', at + 1))
            for (const std::string& said : {line.substr(0, at + 1) + group + line.substr(at), line}) {
                const dxf::padded_string text(groups(said));
                ASSERT_TRUE(records.replace(id, text.view())) << said;
                const auto header = dxf::read_entity_header(text.view());
                owner = header.owner != 0 ? header.owner : owner;
                EXPECT_EQ(records.layer_names()[records.layer(id)], header.layer) << said;
                EXPECT_EQ(records.owner_handle(id), owner) << said;
            }
}

TEST(Dxf, StepsKeepTheirOrderAndAnEmptyOneIsNone) {
    const auto drawing = opened(with_entities("0 LINE|5 1|8 A|0 LINE|5 2|8 B"));
    dxf::record_table& records = drawing->records();
    const std::string before = written(*drawing);
    records.begin_step("first");
    records.set_gone(records.find(1), true);
    records.begin_step("nothing");
    records.begin_step("second");
    records.insert_after(records.find(2), groups("0 LINE|5 7|8 C"), dxf::record_kind::entity, 0);
    records.set_gone(records.find(2), true);
    const std::string after = written(*drawing);
    EXPECT_EQ(after, with_entities("0 LINE|5 7|8 C"));
    std::vector<dxf::record_id> touched;
    EXPECT_EQ(records.undo(touched), "second");
    EXPECT_EQ(records.undo(touched), "first");
    EXPECT_EQ(written(*drawing), before);
    EXPECT_EQ(records.redo(touched), "first");
    EXPECT_EQ(records.redo(touched), "second");
    EXPECT_EQ(written(*drawing), after);
    records.undo(touched);
    records.begin_step("nothing again");
    EXPECT_TRUE(records.can_redo()) << "a step without a change leaves redo alone";
    records.begin_step("third");
    records.set_gone(records.find(2), true);
    EXPECT_FALSE(records.can_redo());
}

TEST(Dxf, NewGroupsFollowTheMannerOfTheFile) {
    struct row {
        const char* record;
        const char* expected; // with colour 3 added behind the layer and before the geometry
    };
    for (const row& row :
         {row{"  0\r\nLINE\r\n  5\r\n1\r\n  8\r\nA\r\n 10\r\n1.0\r\n",
              "  0\r\nLINE\r\n  5\r\n1\r\n  8\r\nA\r\n 62\r\n     3\r\n 10\r\n1.0\r\n"},
          row{"  0\r\nLINE\r\n  5\r\n1\r\n100\r\nAcDbEntity\r\n  8\r\nA\r\n100\r\nAcDbLine\r\n",
              "  0\r\nLINE\r\n  5\r\n1\r\n100\r\nAcDbEntity\r\n  8\r\nA\r\n 62\r\n     "
              "3\r\n100\r\nAcDbLine\r\n"},
          row{"  0\r\nLINE\r\n  5\r\n1\r\n102\r\n{A\r\n 62\r\n     9\r\n102\r\n}\r\n  8\r\nA\r\n",
              "  0\r\nLINE\r\n  5\r\n1\r\n102\r\n{A\r\n 62\r\n     9\r\n102\r\n}\r\n  8\r\nA\r\n 62\r\n     "
              "3\r\n"}}) {
        static constexpr int order[] = {8, 6, 62};
        const dxf::padded_string text(row.record);
        dxf::group_list list(text.view());
        list.set_integer({"AcDbEntity", order}, 62, 3);
        EXPECT_EQ(list.write({"\r\n", true}), row.expected);
        list.remove({"AcDbEntity", order}, 62);
        EXPECT_EQ(list.write({"\r\n", true}), row.record);
    }
}

TEST(Dxf, WholeNumbersStandInTheColumnsOfTheFile) {
    struct row {
        const char* shorts; // as the file writes them
        const char* longs;
        std::size_t short_columns;
        std::size_t long_columns;
    };
    for (const row& row : {row{"     1", "        1", 6, 9}, row{"    1", "    1", 5, 5},
                           row{"    1", "32896", 5, 5}, row{"     1", "", 6, 9}, row{"     1", "1", 6, 0},
                           row{"1", "        1", 0, 9}, row{"1", "1", 0, 0}, row{"  1", "", 3, 3}}) {
        std::string longs = row.longs;
        if (!longs.empty())
            longs = " 90\n" + longs + "\n";
        const auto drawing =
            opened("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  9\n$ATTMODE\n 70\n" +
                   std::string(row.shorts) +
                   "\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n"
                   "  0\nX\n  5\n10\n" +
                   longs + "  0\nENDSEC\n  0\nEOF\n");
        EXPECT_EQ(drawing->style().short_columns, row.short_columns) << row.shorts << "|" << row.longs;
        EXPECT_EQ(drawing->style().long_columns, row.long_columns) << row.shorts << "|" << row.longs;
    }
}

TEST(Dxf, HandSeedFollowsNewObjectsAndTheirUndoing) {
    const std::string before = test::read(test::drawing("r2018.dxf"));
    const auto drawing = opened(before);
    dxf::record_table& records = drawing->records();
    records.begin_step("new");
    records.insert_after(records.find(0x10B), "  0\r\nLINE\r\n  5\r\n3FF\r\n330\r\n28\r\n  8\r\n0\r\n",
                         dxf::record_kind::entity, 0x28);
    const auto changes = test::differences(before, written(*drawing));
    EXPECT_NE(std::find(changes.begin(), changes.end(), "+ 400"), changes.end());
    std::vector<dxf::record_id> touched;
    records.undo(touched);
    EXPECT_EQ(written(*drawing), before);
}

TEST(Dxf, SavesWholeFilesOrNothing) {
    const test::folder folder;
    const auto file = folder.write("a.dxf", test::read(test::drawing("r2018.dxf")));
    auto drawing = std::move(*dxf::drawing::open(file));
    drawing->records().begin_step("erase");
    drawing->records().set_gone(drawing->records().find(0x100), true);
    EXPECT_EQ(drawing->records().unsaved(), 1u);
    EXPECT_FALSE(drawing->write_file(folder / "missing" / "a.dxf"));
    EXPECT_FALSE(drawing->write_file(folder.path()));
    EXPECT_EQ(drawing->records().unsaved(), 1u) << "what was not written is still unsaved";
    ASSERT_TRUE(drawing->write_file(file));
    EXPECT_EQ(drawing->records().unsaved(), 1u) << "a copy may be anybody's";
    drawing->records().mark_saved();
    EXPECT_EQ(drawing->records().unsaved(), 0u);
    EXPECT_EQ(test::read(file), written(*drawing));
    std::vector<dxf::record_id> touched;
    drawing->records().undo(touched);
    EXPECT_EQ(drawing->records().unsaved(), 1u) << "taking back what was saved is a change again";
}
