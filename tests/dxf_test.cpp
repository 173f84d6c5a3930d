// Drawing files: what the index finds, what a change writes, what survives.
#include "host/dxf/drawing.h"
#include "host/dxf/record_header.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

std::unique_ptr<dxf::drawing> opened(std::string bytes) {
    auto drawing = dxf::drawing::from_bytes(std::move(bytes));
    EXPECT_TRUE(drawing) << (drawing ? "" : std::string(drawing.error().begin(), drawing.error().end()));
    return drawing ? std::move(*drawing) : nullptr;
}

std::string written(const dxf::drawing& drawing) {
    std::string bytes;
    drawing.write([&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    return bytes;
}

// "0 LINE|8 WALL" as a file of its own manner: codes as they stand, LF.
std::string groups(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t bar = std::min(text.find('|'), text.size());
        std::string group(text.substr(0, bar));
        text.remove_prefix(std::min(bar + 1, text.size()));
        group[group.find(' ')] = '\n';
        bytes += group + "\n";
    }
    return bytes;
}

std::string with_entities(std::string_view entities) {
    return groups("0 SECTION|2 ENTITIES|" + std::string(entities) + "|0 ENDSEC|0 EOF");
}

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

TEST(Dxf, WritesWhatItReadByteForByte) {
    for (const char* name : all_drawings)
        EXPECT_EQ(written(*opened(test::read(test::drawing(name)))), test::read(test::drawing(name))) << name;
    // Oddities of files in the wild: all of them survive.
    const std::string plain = with_entities("0 LINE|5 1F|8 WALL");
    for (const std::string& odd :
         {"\xEF\xBB\xBF" + plain, groups("999 a comment") + plain, plain + "trash\nbehind the end",
          plain.substr(0, plain.size() - 6), plain.substr(0, plain.size() - 1), plain + "\n\n",
          with_entities("0 TEXT|5 1F|8 WALL|1 first\nsecond line|7 STYLE"),
          with_entities("0 LINE|5 1f|8 \xB8\xF8\xCB\xAE"),
          with_entities("0 LINE|8 A|62 256QSW|40 1,5|70 none"), with_entities("  0 LINE|   8 A|  5  2A "),
          with_entities("0 LINE|5 1|8 A|0 LINE|5 1|8 B|0 LINE|5 0|8 C"),
          with_entities("0 TEXT|8 A|1 " + std::string(5000, 'x'))}) {
        const auto drawing = opened(odd);
        ASSERT_NE(drawing, nullptr) << odd;
        EXPECT_EQ(written(*drawing), odd);
    }
}

TEST(Dxf, EveryBeginningOfADrawingIsReadOrRefusedWithAReason) {
    const std::string whole = test::read(test::drawing("r12.dxf"));
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const auto drawing = dxf::drawing::from_bytes(whole.substr(0, length));
        if (drawing) {
            EXPECT_EQ(written(**drawing), whole.substr(0, length)) << length;
        } else {
            EXPECT_FALSE(drawing.error().empty());
        }
    }
}

TEST(Dxf, RefusesWhatIsNoDrawingAndSaysWhy) {
    struct row {
        std::string bytes;
        const wchar_t* word;
    };
    for (const row& row :
         {row{"", L"empty"}, row{"\n", L"line"}, row{"hello\nworld\n", L"line 1"},
          row{"AutoCAD Binary DXF\r\n\x1a", L"binary"}, row{std::string("AC1032\0\0\0\0", 10), L"DWG"},
          row{"  0\rSECTION\r  2\rENTITIES\r", L"carriage"}, row{"999\nonly a comment\n", L"section"}}) {
        const auto drawing = dxf::drawing::from_bytes(row.bytes);
        ASSERT_FALSE(drawing) << row.bytes;
        EXPECT_NE(drawing.error().find(row.word), std::wstring::npos);
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
        std::string text(row.record);
        const std::size_t size = text.size();
        text.append(64, '\0');
        dxf::group_list list(std::string_view(text).substr(0, size));
        list.set_integer({"AcDbEntity", order}, 62, 3);
        EXPECT_EQ(list.write({"\r\n", true, true}), row.expected);
        list.remove({"AcDbEntity", order}, 62);
        EXPECT_EQ(list.write({"\r\n", true, true}), row.record);
    }
}

TEST(Dxf, ReadsTextAsItsAuthorsWroteIt) {
    struct row {
        int version;
        const char* page;
        bool utf8;
        std::string bytes;
        std::wstring text;
        bool same_back; // escapes are written as characters where the encoding has them
    };
    for (const row& row : {row{1015, "ANSI_936", false, "\xB8\xF8\xCB\xAE", L"给水", true},
                           row{1015, "gb2312", false, "\xB8\xF8\xCB\xAE", L"给水", true},
                           row{1015, "ANSI_936", true, "给水", L"给水", true}, // the name of the page lies
                           row{1032, "ANSI_936", false, "给水", L"给水", true},
                           row{1015, "ANSI_932", false, "\x90\x85", L"水", true},
                           row{1015, "ANSI_1252", false, "\\U+7ED9\\U+6C34", L"给水", true},
                           row{1032, "ANSI_1252", false, "\\U+7ED9\\M+5CBAE", L"给水", false},
                           row{1015, "ANSI_1252", false, "a^Jb^ c", L"a\nb^c", true},
                           row{1032, "ANSI_1252", false, "a\xFFz", L"a\xDCFFz", true},
                           row{1015, "ANSI_936", false, "\\U+ZZZZ \\M+9 ^", L"\\U+ZZZZ \\M+9 ^", false},
                           row{1009, "", false, "\xE9", L"é", true}}) {
        const dxf::text_codec codec(row.version, row.page, row.utf8);
        EXPECT_EQ(codec.decode(row.bytes), row.text) << row.bytes;
        EXPECT_EQ(codec.decode(codec.encode(row.text)), row.text) << row.bytes;
        if (row.same_back) {
            EXPECT_EQ(codec.encode(row.text), row.bytes);
        }
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
