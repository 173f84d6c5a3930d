// Binary drawings: the same objects as their ASCII twins, the same bytes back, damage told by its byte.
#include "base/number_text.h"
#include "host/dxf/record_header.h"
#include "tests/binary_form.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <cstring>

namespace {

using test::as_binary;
using test::opened;
using test::written;

// Small drawings that twins are made of, each with values of many kinds.
std::vector<std::string> ascii_drawings() {
    return {
        test::read(test::drawing("r2018.dxf")), test::read(test::drawing("r2000_gbk.dxf")),
        test::read(test::drawing("r12.dxf")),
        test::groups("999 a comment|0 SECTION|2 ENTITIES|0 TEXT|8 A^ B|10 0.1|20 -0.0|40 1e-300|1 a^Jb^ c^I|"
                     "62 -7|90 -2147483648|160 -9007199254740993|290 1|310 00FF7F|310 |370 -3|420 16777215|"
                     "1001 APP|1000 |1004 0A0D00|1040 2.5|1070 -1|1071 70000|0 ENDSEC|0 EOF")};
}

// What a group says, whichever way it is written.
std::string meaning(const dxf::group& group) {
    switch (dxf::kind_of_code(group.code)) {
    case dxf::value_kind::real:
        return base::real_text(dxf::leading_real(group.value).value_or(0));
    case dxf::value_kind::text:
        return std::string(group.value);
    default:
        return std::string(dxf::trimmed(group.value));
    }
}

} // namespace

TEST(DxfBinary, TwinsHaveTheSameObjects) {
    for (const std::string& ascii : ascii_drawings())
        for (const bool wide : {true, false}) {
            const std::string bytes = as_binary(ascii, wide);
            const auto binary = opened(bytes);
            const auto twin = opened(ascii);
            ASSERT_TRUE(binary != nullptr && twin != nullptr);
            EXPECT_TRUE(binary->is_binary());
            EXPECT_EQ(test::messages(*binary), "");
            EXPECT_TRUE(written(*binary) == bytes);
            EXPECT_EQ(binary->version(), twin->version());
            EXPECT_EQ(binary->codec().number(), twin->codec().number());
            const dxf::record_table& one = binary->records();
            const dxf::record_table& other = twin->records();
            ASSERT_EQ(one.size(), other.size());
            for (dxf::record_id id = 0; id < one.size(); ++id) {
                EXPECT_EQ(one.kind(id), other.kind(id));
                EXPECT_EQ(one.handle(id), other.handle(id));
                EXPECT_EQ(one.owner_handle(id), other.owner_handle(id));
                EXPECT_EQ(one.layer_names()[one.layer(id)], other.layer_names()[other.layer(id)]);
                const dxf::group_list list(one.text(id));
                const dxf::group_list other_list(other.text(id));
                ASSERT_EQ(list.groups().size(), other_list.groups().size()) << one.text(id);
                for (std::size_t i = 0; i < list.groups().size(); ++i) {
                    EXPECT_EQ(list.groups()[i].code, other_list.groups()[i].code);
                    EXPECT_EQ(meaning(list.groups()[i]), meaning(other_list.groups()[i])) << one.text(id);
                }
            }
        }
}

// Drawings that an independent program wrote.
TEST(DxfBinary, DrawingsOfAnotherWriterAreRead) {
    for (const char* name : {"binary/r12.dxf", "binary/r2000.dxf"}) {
        const std::string bytes = test::read(test::drawing(name));
        const auto drawing = opened(bytes);
        ASSERT_NE(drawing, nullptr);
        EXPECT_TRUE(drawing->is_binary());
        EXPECT_EQ(test::messages(*drawing), "");
        EXPECT_TRUE(written(*drawing) == bytes);
        const dxf::record_table& records = drawing->records();
        const dxf::record_id line = records.next(drawing->parts().entities);
        EXPECT_EQ(records.type_name(line), "LINE");
        EXPECT_EQ(records.layer_names()[records.layer(line)], "WALL");
        const dxf::group_list list(records.text(line));
        EXPECT_EQ(list.real({"AcDbLine"}, 11), 1.5);
        EXPECT_EQ(list.real({"AcDbLine"}, 21), 2.0);
    }
    const auto drawing = opened(test::read(test::drawing("binary/r2000.dxf")));
    const std::string_view line = drawing->records().text(drawing->records().next(drawing->parts().entities));
    EXPECT_TRUE(line.ends_with("1001\nZEF\n1000\ntext\n1040\n2.5\n1070\n7\n1071\n70000\n1004\n0102\n"))
        << line;
}

// A change rewrites the bytes of its group and no other; a new record is written in the file's form.
TEST(DxfBinary, ChangesTouchTheirBytesAlone) {
    for (const bool wide : {true, false}) {
        const std::string before = as_binary(test::read(test::drawing("r2000_gbk.dxf")), wide);
        const auto drawing = opened(before);
        dxf::record_table& records = drawing->records();
        records.begin_step("change");
        const dxf::record_id layer = records.find(0x51);
        dxf::group_list list(records.text(layer));
        const auto color = list.integer({"AcDbLayerTableRecord"}, 62);
        list.set_integer({"AcDbLayerTableRecord"}, 62, *color + 256);
        list.set_text({"AcDbLayerTableRecord"}, 6, "a^J^ ");
        records.replace(layer, list.write(drawing->style()));
        std::string text;
        dxf::append_group(text, drawing->style(), 0, "LINE");
        dxf::append_group(text, drawing->style(), 5, "3FF");
        dxf::append_group(text, drawing->style(), 10, "0.5");
        dxf::append_group(text, drawing->style(), 62, "70000"); // more than the code holds
        dxf::append_group(text, drawing->style(), 310, std::string(400, 'A'));
        const std::string seed = std::string(*drawing->header_value("$HANDSEED"));
        records.insert_after(records.find(0x10B), text, dxf::record_kind::entity, 0x28);
        const auto again = opened(written(*drawing));
        EXPECT_EQ(test::messages(*again), "");
        const dxf::record_table& read = again->records();
        const dxf::group_list changed(read.text(read.find(0x51)));
        EXPECT_EQ(changed.integer({"AcDbLayerTableRecord"}, 62), *color + 256);
        EXPECT_EQ(changed.text({"AcDbLayerTableRecord"}, 6), "a^J^ ");
        const dxf::group_list added(read.text(read.find(0x3FF)));
        EXPECT_EQ(added.real({"*"}, 10), 0.5);
        EXPECT_EQ(added.groups().size(), 6u) << "the long chunk became two";
        EXPECT_EQ(added.groups()[4].value.size() + added.groups()[5].value.size(), 400u);
        // Besides the new record and the seed two values differ: two bytes, and a string's.
        const std::size_t added_bytes = written(*drawing).size() - before.size();
        EXPECT_LT(added_bytes, 300u);
        std::vector<dxf::record_id> touched;
        records.undo(touched);
        EXPECT_TRUE(written(*drawing) == before);
    }
}

// Values that text can not tell apart come back as they were beside a change.
TEST(DxfBinary, UnchangedGroupsOfAChangedRecordKeepTheirBytes) {
    std::string bytes =
        as_binary(test::groups("0 SECTION|2 ENTITIES|0 LINE|8 A|10 1.0|62 3|0 ENDSEC|0 EOF"), true);
    const std::string one("\x0A\x00\x00\x00\x00\x00\x00\x00\xF0\x3F", 10);
    const std::string not_a_number("\x0A\x00\x01\x02\x03\x04\x05\x06\xF8\xFF", 10);
    bytes.replace(bytes.find(one), one.size(), not_a_number);
    const auto drawing = opened(bytes);
    dxf::record_table& records = drawing->records();
    const dxf::record_id line = records.next(drawing->parts().entities);
    dxf::group_list list(records.text(line));
    list.set_integer({"*"}, 62, 4);
    records.replace(line, list.write(drawing->style()));
    std::string expected = bytes;
    expected.replace(expected.find(std::string("\x3E\x00\x03\x00", 4)), 4,
                     std::string("\x3E\x00\x04\x00", 4));
    EXPECT_TRUE(written(*drawing) == expected);
}

TEST(DxfBinary, EveryBeginningIsReadRepairedOrRefusedWithItsByte) {
    const std::string whole = as_binary(test::read(test::drawing("r12.dxf")), false);
    for (std::size_t length = 18; length <= whole.size(); ++length) {
        const auto drawing = dxf::drawing::from_bytes(whole.substr(0, length));
        if (!drawing) {
            EXPECT_NE(drawing.error().find(L"byte "), std::wstring::npos) << base::narrow(drawing.error());
            continue;
        }
        EXPECT_EQ((*drawing)->repairs().empty(), length == whole.size()) << length;
        const auto again = opened(written(**drawing));
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(test::messages(*again), "") << length;
    }
}

TEST(DxfBinary, DamageIsRefusedWithByteAndReason) {
    const std::string whole = as_binary(test::groups("0 SECTION|2 ENTITIES|0 LINE|8 A|0 ENDSEC|0 EOF"), true);
    struct row {
        std::size_t at;
        std::string instead;
        const wchar_t* word;
    };
    for (const row& row :
         {row{18, "\n\x1A", L"byte 18: the mark"}, row{50, "\x10\x27", L"byte 50: 10000 is no group code"},
          row{50, "\xFF\xFF", L"byte 50: -1 is no group code"}}) {
        std::string bytes = whole;
        bytes.replace(row.at, row.instead.size(), row.instead);
        const auto drawing = dxf::drawing::from_bytes(bytes);
        ASSERT_FALSE(drawing) << row.at;
        EXPECT_NE(drawing.error().find(row.word), std::wstring::npos) << base::narrow(drawing.error());
    }
    const auto cut = opened(whole.substr(0, whole.size() - 3));
    EXPECT_NE(test::messages(*cut).find("repair 1: byte 63: the file ends inside of this group"),
              std::string::npos)
        << test::messages(*cut);
    EXPECT_TRUE(written(*cut) == whole);
}
