// Damaged drawings: what can be repaired is, each repair has its line and its words, and the repaired drawing
// needs none any more. What can not be repaired is refused with its line.
#include "host/dxf/record_header.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <cstdlib>
#include <ctime>
#include <regex>

namespace {

using test::groups;
using test::opened;
using test::written;

// A small drawing of R2000 in which nothing is wrong; pieces of it are damaged below.
const std::string header = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $HANDSEED|5 40|0 ENDSEC";
const std::string layers =
    "0 TABLE|2 LAYER|5 2|330 0|100 AcDbSymbolTable|70 1|0 LAYER|5 10|330 2|"
    "100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 Continuous|0 ENDTAB";
const std::string block_records =
    "0 TABLE|2 BLOCK_RECORD|5 1|330 0|100 AcDbSymbolTable|70 1|0 BLOCK_RECORD|5 1F|330 1|100 "
    "AcDbSymbolTableRecord|"
    "100 AcDbBlockTableRecord|2 *Model_Space|0 BLOCK_RECORD|5 22|330 1|100 AcDbSymbolTableRecord|"
    "100 AcDbBlockTableRecord|2 DOOR|0 ENDTAB";
const std::string tables = "0 SECTION|2 TABLES|" + layers + "|" + block_records + "|0 ENDSEC";
const std::string model = "0 BLOCK|5 20|330 1F|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *Model_Space|70 0|"
                          "0 ENDBLK|5 21|330 1F|100 AcDbEntity|8 0|100 AcDbBlockEnd";
const std::string door = "0 BLOCK|5 23|330 22|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 DOOR|70 0|"
                         "0 LINE|5 24|330 22|100 AcDbEntity|8 0|100 AcDbLine|10 0.0|20 0.0|11 1.0|21 0.0|"
                         "0 ENDBLK|5 25|330 22|100 AcDbEntity|8 0|100 AcDbBlockEnd";
const std::string blocks = "0 SECTION|2 BLOCKS|" + model + "|" + door + "|0 ENDSEC";
const std::string line = "0 LINE|5 30|330 1F|100 AcDbEntity|8 0|100 AcDbLine|10 0.0|20 0.0|11 1.0|21 0.0";
const std::string entities = "0 SECTION|2 ENTITIES|" + line + "|0 ENDSEC";
const std::string layout =
    "0 LAYOUT|5 1A|330 C|100 AcDbPlotSettings|1 |100 AcDbLayout|1 Sheet|70 1|71 1|330 2A";
const std::string objects = "0 SECTION|2 OBJECTS|0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|0 ENDSEC";
const std::string end = "0 EOF";

std::string whole() {
    return groups(header + "|" + tables + "|" + blocks + "|" + entities + "|" + objects + "|" + end);
}

// The drawing with one piece in another's place.
std::string with(const std::string& before, const std::string& after) {
    std::string bytes = whole();
    const std::string piece = groups(before);
    bytes.replace(bytes.find(piece), piece.size(), after);
    return bytes;
}

std::string without(const std::string& piece) {
    return with(piece, {});
}

// What repairs did to the lines.
std::string changes(const std::string& before, const std::string& after) {
    std::string all;
    for (const std::string& change : test::differences(before, after))
        all += (all.empty() ? "" : "|") + change;
    return all;
}

struct damaged {
    std::string bytes;
    std::string told;    // all messages, with # for the numbers of lines
    std::string changed; // lines that differ; "?" where only the words matter
    std::vector<std::string>
        places; // the groups that stand in these lines, where they are met last; "": the end
};

// The messages with the numbers of their lines.
std::string expected_words(const damaged& row) {
    std::string words = row.told;
    for (const std::string& place : row.places) {
        const std::size_t at = place.empty() ? row.bytes.size() : row.bytes.rfind(groups(place));
        const auto feeds =
            std::count(row.bytes.begin(), row.bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n');
        words.replace(words.find('#'), 1, std::to_string(feeds + 1));
    }
    return words;
}

void expect_repaired(const damaged& row) {
    const auto drawing = opened(row.bytes);
    ASSERT_NE(drawing, nullptr) << row.told;
    EXPECT_EQ(test::messages(*drawing), expected_words(row));
    EXPECT_EQ(drawing->records().unsaved(), 0u);
    const std::string repaired = written(*drawing);
    if (row.changed != "?") {
        EXPECT_EQ(changes(row.bytes, repaired), row.changed) << row.told;
    }
    std::vector<dxf::record_id> touched;
    EXPECT_EQ(drawing->records().undo(touched), "");
    const auto again = opened(repaired);
    ASSERT_NE(again, nullptr) << row.told;
    EXPECT_EQ(test::messages(*again), "") << row.told;
    EXPECT_EQ(written(*again), repaired);
}

} // namespace

TEST(DxfRepair, AWholeDrawingIsLeftAlone) {
    const auto drawing = opened(whole());
    EXPECT_EQ(test::messages(*drawing), "");
    EXPECT_EQ(written(*drawing), whole());
}

TEST(DxfRepair, EndsThatAreMissing) {
    const std::string end_of_model = "0 ENDBLK|5 21|330 1F|100 AcDbEntity|8 0|100 AcDbBlockEnd";
    const std::string start = "0 SECTION|2 ENTITIES|0 LINE|8 0";
    for (const damaged& row : std::vector<damaged>{
             {without("0 EOF"),
              "repair 1: line #: the end of the file is missing: EOF added\n",
              "+ 0|+ EOF",
              {""}},
             {groups(start),
              "repair 1: line #: the end of a SECTION is missing: ENDSEC added\n"
              "repair 2: line #: the end of the file is missing: EOF added\n",
              "+ 0|+ ENDSEC|+ 0|+ EOF",
              {"", ""}},
             {with(layers, groups(layers.substr(0, layers.size() - 9))),
              "repair 1: line #: the end of a TABLE is missing: ENDTAB added\n",
              "?",
              {"0 TABLE|2 BLOCK_RECORD"}},
             {with(entities, groups(entities.substr(0, entities.size() - 9))),
              "repair 1: line #: the end of a SECTION is missing: ENDSEC added\n",
              "?",
              {"0 SECTION|2 OBJECTS"}},
             {without(end_of_model),
              "repair 1: line #: the end of a BLOCK is missing: ENDBLK added\n",
              "?",
              {"0 BLOCK|5 23"}},
             {with(
                  line,
                  groups("0 POLYLINE|5 30|330 1F|100 AcDbEntity|8 A|66 1|0 VERTEX|5 31|8 0|0 LINE|5 32|8 0")),
              "repair 1: line #: the end of a POLYLINE is missing: SEQEND added\n",
              "?",
              {"0 LINE|5 32"}},
             {groups(start + "|10 1.0") + " 20\n",
              "repair 1: line 11: the file ends inside of this group: the group is left out\n"
              "repair 2: line 5: the file ends inside of a point of this LINE: the point is left out\n"
              "repair 3: line 12: the end of a SECTION is missing: ENDSEC added\n"
              "repair 4: line 12: the end of the file is missing: EOF added\n",
              "?",
              {}},
             {groups(start + "|10 1.0") + " 20\n1.",
              "repair 1: line 11: the file ends inside of this group: the group is left out\n"
              "repair 2: line 5: the file ends inside of a point of this LINE: the point is left out\n"
              "repair 3: line 12: the end of a SECTION is missing: ENDSEC added\n"
              "repair 4: line 12: the end of the file is missing: EOF added\n",
              "?",
              {}},
             {with("0 LINE|5 30|330 1F|100 AcDbEntity|8 0|100 AcDbLine|10 0.0|20 0.0|11 1.0|21 0.0|0 "
                   "ENDSEC|0 SECTION|"
                   "2 OBJECTS|0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|0 ENDSEC|0 EOF",
                   groups(line + "|0 CIRCLE|5 31|100 AcDbEntity|8 0")),
              "repair 1: line #: the file ends inside of this CIRCLE: it is left out\n"
              "repair 2: line #: the end of a SECTION is missing: ENDSEC added\n"
              "repair 3: line #: the end of the file is missing: EOF added\n",
              "?",
              {"0 CIRCLE|5 31", "", ""}},
             {groups(start + "|0 ENDSEC") + "   ",
              "repair 1: line 11: a blank line belongs to no group: left out\n"
              "repair 2: line 11: the end of the file is missing: EOF added\n",
              "?",
              {}},
         })
        expect_repaired(row);
    // What ends a block or an entity's parts is written as the drawing writes such records.
    struct ending {
        std::string bytes;
        std::string ended;
    };
    for (const ending& row :
         {ending{without(end_of_model), "0 ENDBLK|5 40|330 1F|100 AcDbEntity|8 0|100 AcDbBlockEnd"},
          ending{with(line, groups("0 POLYLINE|5 30|330 1F|100 AcDbEntity|8 A|66 1|0 VERTEX|5 31")),
                 "0 SEQEND|5 40|330 30|100 AcDbEntity|8 A"},
          ending{groups("0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 A|0 ENDSEC|0 EOF"), "0 ENDBLK|8 0"}})
        EXPECT_NE(written(*opened(row.bytes)).find(groups(row.ended)), std::string::npos) << row.ended;
}

TEST(DxfRepair, WhatStandsInTheWrongPlace) {
    const std::string second = "0 SECTION|2 ENTITIES|0 POINT|5 31|8 0|0 ENDSEC";
    for (const damaged& row : std::vector<damaged>{
             {with(entities, groups("0 SECTION|2 ENTITIES|0 ENDSEC|" + line)),
              "repair 1: line #: a LINE stands in no section: put at the end of the ENTITIES section\n",
              "?",
              {"0 LINE|5 30"}},
             {with(entities, groups(line)),
              "repair 1: line #: a LINE stands in no section: put at the end of the ENTITIES section\n",
              "?",
              {"0 LINE|5 30"}},
             {with(line, groups("0 LINE|5 30|330 22|100 AcDbEntity|8 0|0 LINE|5 31|330 22|8 0|67 1")),
              "repair 1: line #: a LINE of model space names the block DOOR as its owner: put in model "
              "space\n",
              "- 22|+ 1F",
              {"0 LINE|5 30"}},
             {with(entities, groups("0 VERTEX|5 30|8 0|" + entities)),
              "repair 1: line #: a VERTEX belongs to no entity: left out\n"
              "repair 2: line #: duplicate handle 30 of a LINE: given the handle 40\n",
              "?",
              {"0 VERTEX|5 30", "0 LINE|5 30"}},
             {with(entities, groups(entities + "|" + second)),
              "repair 1: line #: another ENTITIES section: what it holds is put at the end of the first "
              "one\n",
              "?",
              {"0 SECTION|2 ENTITIES"}},
             {with(entities, groups(entities + "|0 ENDSEC")),
              "repair 1: line #: an ENDSEC ends no section: left out\n",
              "- ENDSEC|- 0",
              {"0 ENDSEC|0 SECTION|2 OBJECTS"}},
         })
        expect_repaired(row);
    const auto merged = opened(with(entities, groups("0 POINT|5 32|8 0|" + entities + "|" + second)));
    std::string order;
    const dxf::record_table& records = merged->records();
    for (dxf::record_id id = records.next(merged->parts().entities); records.type(id) != dxf::type_endsec;
         id = records.next(id))
        order += std::to_string(records.handle(id)) + " ";
    EXPECT_EQ(order, "48 50 49 ") << "in the order of the file, but for the first section";
}

TEST(DxfRepair, LinesThatLostTheirCodes) {
    const auto drawing = [](const std::string& middle) {
        return groups("0 SECTION|2 ENTITIES|0 LINE|8 0") + middle + groups("0 ENDSEC|0 EOF");
    };
    for (const damaged& row : std::vector<damaged>{
             {drawing("39\n2\n 0\n-1.5\n 20\n2.5\n 11\n3\n 21\n4\n"),
              "repair 1: line 11: the number '-1.5' stands where a type should: read as group 10\n",
              "- 0|+ 10",
              {}},
             {drawing("39\n2\n-1.5\n 20\n2.5\n"),
              "repair 1: line 11: the number '-1.5' has no group code: read as group 10\n",
              "+ 10",
              {}},
             {drawing("10\n1.5\n2.5\n11\n3\n21\n4\n"),
              "repair 1: line 11: the number '2.5' has no group code: read as group 20\n",
              "+ 20",
              {}},
             {drawing("10\n1.5\n20\n2.5\n0.5\n11\n3\n21\n4\n"),
              "repair 1: line 13: the number '0.5' has no group code: read as group 30\n",
              "+ 30",
              {}},
             {drawing("62\n3\n2.5\n6\nDASHED\n"),
              "repair 1: line 11: the line '2.5' belongs to no group: left out\n",
              "- 2.5",
              {}},
             {drawing("62\n3\nwhat\never\n6\nDASHED\n"),
              "repair 1: line 11: the line 'what' belongs to no group: left out\n"
              "repair 2: line 12: the line 'ever' belongs to no group: left out\n",
              "- what|- ever",
              {}},
             // What another record says as a text is one here too, not a further line of the one before.
             {drawing(
                  "0\nLINE\n8\nA\n1001\nB\n1000\nhot\n1000\nDe25\n0\nLINE\n8\nA\n1001\nB\n1000\nhot\nDe25\n"),
              "repair 1: line 27: the text 'De25' has no group code: read as group 1000\n",
              "+ 1000",
              {}},
             {groups(
                  "0 SECTION|2 HEADER|9 $ACADVER|1 |9 $CLAYER|8 0|0 ENDSEC|0 SECTION|2 ENTITIES|0 LINE|8 0|0 "
                  "ENDSEC|0 EOF"),
              "repair 1: line 7: the value of group 1 is missing: read as 'AC1009'\n",
              "- |+ AC1009",
              {}},
             // A table without entries is one that the drawing lacks.
             {groups("0 SECTION|2 TABLES|0 TABLE|2 VIEW|70 0|0 ENDTAB|0 TABLE|2 |70 0|0 ENDTAB|0 ENDSEC|"
                     "0 SECTION|2 ENTITIES|0 LINE|8 0|0 ENDSEC|0 EOF"),
              "repair 1: line 15: the value of group 2 is missing: read as 'UCS'\n",
              "- |+ UCS",
              {}},
             // What follows a reference tells that something does.
             {drawing("0\nINSERT\n8\nB\n\n1\n2\nDOOR\n10\n1.5\n20\n2."
                      "5\n0\nATTRIB\n8\nB\n1\nw\n0\nSEQEND\n8\nB\n"),
              "repair 1: line 13: the number '1' has a blank line for its group code: read as group 66\n",
              "- |+ 66",
              {}},
             {drawing(
                  "0\nINSERT\n8\nB\n66\n2\nDOOR\n10\n1.5\n20\n2.5\n0\nATTRIB\n8\nB\n1\nw\n0\nSEQEND\n8\nB\n"),
              "repair 1: line 13: the value of group 66 is missing: read as '1'\n",
              "+ 1",
              {}},
             // Parts tell what they are parts of.
             {drawing("0\n\n8\nB\n66\n1\n0\nVERTEX\n8\nB\n10\n1.5\n20\n2.5\n0\nSEQEND\n8\nB\n"),
              "repair 1: line 9: the value of group 0 is missing: read as 'POLYLINE'\n",
              "- |+ POLYLINE",
              {}},
             {groups("0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 A|3 A|1 |0 ENDBLK|8 0|0 BLOCK|8 0|2 B|3 B|1 |0 "
                     "ENDBLK|8 0|"
                     "0 BLOCK|8 0|2 C|3 C") +
                  "\n" + groups("0 ENDBLK|8 0|0 ENDSEC|0 EOF"),
              "repair 1: line 41: an empty text has no group code: read as group 1\n",
              "+ 1",
              {}},
             {drawing("62\n3\n0\n7.5\n6\nDASHED\n"),
              "repair 1: line 12: the line '7.5' belongs to no group: left out\n",
              "- 0|- 7.5",
              {}},
             {drawing(std::string("62\n3\n6\nDA\0SH\0\0ED\n", 17)),
              "repair 1: line 12: 3 zero bytes from here on: left out\n",
              "?",
              {}},
             {drawing("62\n3\nPOINT\n8\nB\n"),
              "repair 1: line 11: the type 'POINT' has no group code: read as group 0\n",
              "+ 0",
              {}},
             {drawing("1\ntext\nLINE\n5\n2F\n8\nB\n"),
              "repair 1: line 11: the type 'LINE' has no group code: read as group 0\n",
              "+ 0",
              {}},
             {drawing("1\ntext\n\n7\nA\n").replace(0, 0, "\n"),
              "repair 1: line 1: a blank line belongs to no group: left out\n",
              "- ",
              {}},
             {drawing("62\n\n10\n\n20\n2.0\n"),
              "repair 1: line 9: the value of group 62 is missing: the group is left out\n"
              "repair 2: line 11: the value of group 10 is missing: read as '0.0'\n",
              "?",
              {}},
             // Lines are counted in the file, not in what was made of it.
             {groups("0 SECTION|2 ENTITIES|0 LINE|10 1.0") + "what\n" + groups("8 0|0 LINE|8 0|0 POINT|8 0"),
              "repair 1: line 9: the line 'what' belongs to no group: left out\n"
              "repair 2: line #: the end of a SECTION is missing: ENDSEC added\n"
              "repair 3: line #: the end of the file is missing: EOF added\n",
              "?",
              {"", ""}},
         })
        expect_repaired(row);
}

// Each line of a record and of a header is lost, stands twice, or is blank: what its neighbours tell comes
// back.
TEST(DxfRepair, ADamagedLineIsFoundWhereItIs) {
    const std::string head =
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $INSBASE|10 0.5|20 1.5|9 $CLAYER|8 WALL|"
        "9 $LTSCALE|40 1.0|9 $PDMODE|70 3|0 ENDSEC|0 SECTION|2 ENTITIES";
    std::string sound;
    for (int i = 0; i < 6; ++i)
        sound += "|0 INSERT|5 A" + std::to_string(i) +
                 "|100 AcDbEntity|8 WALL|62 7|100 AcDbBlockReference|2 DOOR|10 " + std::to_string(i) +
                 ".5|20 2.5|41 2.0|0 TEXT|5 B" + std::to_string(i) +
                 "|100 AcDbEntity|8 WALL|100 AcDbText|10 1.5|20 2.5|40 3.5|1 sign|7 NOTES|100 AcDbText|73 2";
    const std::string bytes =
        groups(head + sound + "|0 LINE|5 1F|8 WALL|10 0.0|20 0.0|11 1.0|21 2.0|0 ENDSEC|0 EOF");
    const std::size_t first = bytes.find("0\nINSERT\n5\nA3");
    const std::size_t last = bytes.find("0\nINSERT\n5\nA4");
    std::size_t number = 1;
    for (std::size_t at = 0; at < bytes.size(); ++number) {
        const std::size_t next = bytes.find('\n', at) + 1;
        const std::string text = bytes.substr(at, next - at);
        const bool tried =
            (at >= first && at < last) || (number > 4 && at < bytes.find("0\nENDSEC") &&
                                           (text == "9\n" || text == "20\n" || text[0] == '$'));
        for (const std::string& instead : {std::string(), text + text, std::string("\n")}) {
            std::string damaged = bytes;
            damaged.replace(at, text.size(), instead);
            const bool is_code = number % 2 == 1;
            const bool is_text =
                text == "sign\n" || text == "DOOR\n" || text == "WALL\n" || text == "NOTES\n";
            const bool may_be = instead == "\n" && (is_text || bytes.substr(0, at).ends_with("\n5\n"));
            if (!tried || may_be) // a blank text is one
                continue;
            const auto drawing = opened(damaged);
            ASSERT_NE(drawing, nullptr) << number << instead;
            const std::string where =
                std::to_string(number) + " '" + text + "' -> '" + instead + "'\n" + test::messages(*drawing);
            ASSERT_FALSE(drawing->repairs().empty()) << where;
            const std::size_t told = drawing->repairs().front().line;
            EXPECT_TRUE(told + 3 > number && told < number + 3) << where;
            const std::string repaired = written(*drawing);
            if (is_code || instead.size() > text.size()) {
                EXPECT_EQ(changes(bytes, repaired), "") << where;
            } else {
                EXPECT_EQ(std::count(repaired.begin(), repaired.end(), '\n') % 2, 0) << where;
                EXPECT_GE(repaired.size() + 40, bytes.size()) << where;
            }
        }
        at = next;
    }
}

TEST(DxfRepair, Handles) {
    const std::string window_record = "0 BLOCK_RECORD|5 22|330 1|100 AcDbSymbolTableRecord|100 "
                                      "AcDbBlockTableRecord|2 WINDOW";
    const std::string window = "0 BLOCK|5 26|330 22|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 WINDOW|70 0|"
                               "0 POINT|5 27|330 22|8 0|0 ENDBLK|5 28|330 22|8 0";
    for (const damaged& row : std::vector<damaged>{
             {with(line, groups(line + "|" + line)),
              "repair 1: line #: duplicate handle 30 of a LINE: given the handle 40\n",
              "- 40|+ 41|- 30|+ 40",
              {"0 LINE|5 30"}},
             {with(line, groups("0 LINE|330 1F|100 AcDbEntity|8 0")),
              "repair 1: line #: a LINE has no handle: given the handle 40\n",
              "- 40|+ 41|+ 5|+ 40",
              {"0 LINE|330 1F"}},
             {with(line, groups("0 LINE|5 |330 1F|8 0|0 LINE|5 0|330 1F|8 0|0 LINE|5 GGG|330 1F|8 0")),
              "repair 1: line #: a LINE has no handle: given the handle 40\n"
              "repair 2: line #: a LINE has no handle: given the handle 41\n"
              "repair 3: line #: a LINE has no handle: given the handle 42\n",
              "- 40|+ 43|- |+ 40|- 0|+ 41|- GGG|+ 42",
              {"0 LINE|5 ", "0 LINE|5 0", "0 LINE|5 GGG"}},
             {with(line, groups("0 LINE|5 50|330 1F|8 0|0 LINE|5 50|330 1F|8 0")),
              "repair 1: line #: duplicate handle 50 of a LINE: given the handle 51\n"
              "repair 2: line #: $HANDSEED is 40, not above the handles: raised to 52\n",
              "- 40|+ 52|- 50|+ 51",
              {"0 LINE|5 50", "5 40"}},
             // Two repairs of one entity stand in one line.
             {with(line, groups("0 LINE|5 30|330 1F|8 0|0 LINE|5 30|330 22|8 0")),
              "repair 1: line #: a LINE of model space names the block DOOR as its owner: put in model "
              "space\n"
              "repair 2: line #: duplicate handle 30 of a LINE: given the handle 40\n",
              "?",
              {"0 LINE|5 30|330 22", "0 LINE|5 30|330 22"}},
             // Parts follow the entity that they stand behind.
             {with(line,
                   groups("0 POLYLINE|5 30|330 1F|8 0|0 SEQEND|5 33|330 30|8 0|0 POLYLINE|5 30|330 1F|8 0|"
                          "0 VERTEX|5 31|330 30|8 0|0 SEQEND|5 32|330 30|8 0")),
              "repair 1: line #: duplicate handle 30 of a POLYLINE: given the handle 40, also in 2 groups "
              "that "
              "mean it\n",
              "- 40|+ 41|- 30|+ 40|- 30|+ 40|- 30|+ 40",
              {"0 POLYLINE|5 30"}},
             // So does what stands in a block.
             {groups(header + "|" + std::regex_replace(tables, std::regex("DOOR"), "DOOR|" + window_record) +
                     "|" +
                     std::regex_replace(blocks, std::regex("(.*)\\|0 ENDSEC"), "$1|" + window + "|0 ENDSEC") +
                     "|" + entities + "|" + objects + "|" + end),
              "repair 1: line #: duplicate handle 22 of a BLOCK_RECORD: given the handle 40, also in 3 "
              "groups that "
              "mean it\n",
              "- 40|+ 41|- 22|+ 40|- 22|+ 40|- 22|+ 40|- 22|+ 40",
              {"0 BLOCK_RECORD|5 22"}},
             // A dictionary, what names it as its own and what it holds; what points at an entity means the
             // entity.
             {groups(
                  header + "|" + tables + "|" + blocks +
                  "|0 SECTION|2 ENTITIES|0 LINE|5 31|330 1F|8 0|0 LINE|5 30|102 {ACAD_XDICTIONARY|360 31|102 "
                  "}|330 "
                  "1F|8 0|0 ENDSEC|0 SECTION|2 OBJECTS|0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|3 "
                  "G|350 "
                  "34|0 DICTIONARY|5 31|330 30|100 AcDbDictionary|3 K|360 33|0 XRECORD|5 33|102 "
                  "{ACAD_REACTORS|330 "
                  "31|102 }|330 31|100 AcDbXrecord|0 GROUP|5 34|330 C|100 AcDbGroup|340 31|0 ENDSEC|0 EOF"),
              "repair 1: line #: duplicate handle 31 of a DICTIONARY: given the handle 40, also in 3 groups "
              "that "
              "mean it\n",
              "- 40|+ 41|- 31|+ 40|- 31|+ 40|- 31|+ 40|- 31|+ 40",
              {"0 DICTIONARY|5 31"}},
             // Old drawings may have none, but what is there must be right.
             {groups("0 SECTION|2 ENTITIES|0 LINE|5 1|8 A|0 LINE|8 A|0 LINE|5 1|8 B|0 LINE|5 0|8 C|0 "
                     "ENDSEC|0 EOF"),
              "repair 1: line #: a LINE has no handle: given the handle 3\n"
              "repair 2: line #: duplicate handle 1 of a LINE: given the handle 2\n",
              "- 1|+ 2|- 0|+ 3",
              {"0 LINE|5 0", "0 LINE|5 1"}},
         })
        expect_repaired(row);
}

TEST(DxfRepair, BlocksTheirRecordsAndLayouts) {
    const std::string record =
        "0 BLOCK_RECORD|5 22|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 DOOR";
    const auto with_layout = [](const std::string& extra) {
        return with(objects, groups(objects.substr(0, objects.size() - 9) + "|" + extra + "|0 ENDSEC"));
    };
    for (const damaged& row : std::vector<damaged>{
             {without(record),
              "repair 1: line #: the block DOOR has no block record: one added with the handle 22\n",
              "?",
              {"0 BLOCK|5 23"}},
             {with(record, groups(record.substr(0, record.size() - 4))),
              "repair 1: line #: a block record has no name: named DOOR as its block\n",
              "- |+ DOOR",
              {"0 BLOCK_RECORD|5 22"}},
             {without(door),
              "repair 1: line #: the block record DOOR has no block: an empty one added\n",
              "?",
              {"0 BLOCK_RECORD|5 22"}},
             {without(blocks),
              "repair 1: line #: the block record *Model_Space has no block: an empty one added\n"
              "repair 2: line #: the block record DOOR has no block: an empty one added\n",
              "?",
              {"0 BLOCK_RECORD|5 1F", "0 BLOCK_RECORD|5 22"}},
             {with_layout(layout),
              "repair 1: line #: the block of the layout Sheet is missing: an empty *Paper_Space added\n",
              "?",
              {"0 LAYOUT"}},
             // The handle that the layout names is that of something else.
             {with_layout(layout.substr(0, layout.size() - 2) + "30"),
              "repair 1: line #: the block of the layout Sheet is missing: an empty *Paper_Space added\n",
              "?",
              {"0 LAYOUT"}},
         })
        expect_repaired(row);
    // What the block holds is the new record's; and so the layout's sheet.
    const auto drawing = opened(without(record));
    const dxf::record_table& records = drawing->records();
    EXPECT_EQ(records.type(records.find(0x22)), dxf::type_block_record);
    EXPECT_EQ(records.owner_handle(records.find(0x24)), 0x22u);
    const auto sheets = opened(with_layout(layout));
    EXPECT_EQ(sheets->records().type(sheets->records().find(0x2A)), dxf::type_block_record);
    // Before R13, and where the table itself is not there, nothing is missing.
    for (const std::string& bytes : {without(block_records), groups(blocks + "|" + end)})
        EXPECT_EQ(test::messages(*opened(bytes)), "");
}

TEST(DxfRepair, ManyOfAKindAreCounted) {
    std::string many = "0 SECTION|2 ENTITIES";
    for (int i = 0; i < 30; ++i)
        many += "|0 LINE|5 1|8 0";
    const auto drawing = opened(groups(many + "|0 ENDSEC"));
    const std::string messages = test::messages(*drawing);
    EXPECT_EQ(drawing->repairs().size(), 30u);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 22);
    EXPECT_NE(messages.find("repair 21: line "), std::string::npos) << messages;
    EXPECT_EQ(messages.find("repair 22: line "), std::string::npos) << messages;
    EXPECT_NE(messages.find("\n... and 9 more of this kind\n"), std::string::npos) << messages;
}

TEST(DxfRepair, TheProgramTellsEachRepairAndSavesThem) {
    const test::folder folder;
    const damaged twice = {with(line, groups(line + "|" + line)),
                           "repair 1: line #: duplicate handle 30 of a LINE: given the handle 40\n",
                           "- 40|+ 41|- 30|+ 40",
                           {"0 LINE|5 30"}};
    const std::string file = folder.write("plan.dxf", twice.bytes).string();
    const std::string out = (folder / "out.dxf").string();
    auto result = test::zefhost({file, "-c", "-LAYER OFF 0 Y \nU\nU", "-o", out, "--keep-going"});
    EXPECT_EQ(result.err, file + ": " + expected_words(twice)) << "and nothing is unsaved";
    const std::string repaired = test::read(out);
    EXPECT_EQ(changes(twice.bytes, repaired), twice.changed);
    result = test::zefhost({out, "-c", "LIST (handent \"40\") \n"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Handle = 40"), std::string::npos) << result.out;

    std::string returns = twice.bytes;
    std::replace(returns.begin(), returns.end(), '\n', '\r');
    const auto drawing = opened(returns);
    EXPECT_EQ(test::messages(*drawing), expected_words(twice));
    EXPECT_EQ(written(*drawing).find('\n'), std::string::npos);
}

// Damage without end costs no more than its size.
TEST(DxfRepair, MuchDamageTakesTimeByItsSizeAlone) {
    struct row {
        const char* begin;
        const char* repeated;
    };
    for (const row& row :
         {row{"0 SECTION|2 BLOCKS", "0 BLOCK|8 0|2 A"},
          row{"0 SECTION|2 ENTITIES|0 ENDSEC", "0 LINE|5 1|8 0"},
          row{"", "0 SECTION|2 ENTITIES|0 VERTEX|8 0"}, row{"0 SECTION|2 ENTITIES|0 LINE", "0 1.5|20 2|62 3"},
          row{"0 SECTION|2 ENTITIES", "0 POLYLINE|5 1|8 0|0 VERTEX|5 2|8 0"}}) {
        const auto seconds = [&](int times) {
            std::string bytes = groups(row.begin);
            const std::string piece = groups(row.repeated);
            for (int i = 0; i < times; ++i)
                bytes += piece;
            const std::clock_t begin = std::clock();
            const auto drawing = opened(bytes);
            EXPECT_GE(drawing->repairs().size(), static_cast<std::size_t>(times) - 1);
            const std::string repaired = written(*drawing);
            const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
            EXPECT_EQ(test::messages(*opened(repaired)), "") << row.repeated;
            return taken;
        };
        const int times = test::sanitized ? 500 : 5000;
        const double few = seconds(times);
        EXPECT_LT(seconds(6 * times), 15 * few + 0.1) << row.repeated;
    }
}

// Drawings of other programs: the damaged ones are repaired or refused, the others need nothing.
TEST(DxfRepair, DrawingsOfOtherProgramsNeedNoneUnlessTheyAreDamaged) {
    const char* const corpus = std::getenv("ZEF_CORPUS");
    if (corpus == nullptr)
        return;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (!entry.path().extension().string().starts_with(".dxf"))
            continue;
        const auto drawing = dxf::drawing::open(entry.path());
        if (!test::is_damaged(entry.path())) {
            ASSERT_TRUE(drawing) << entry.path() << base::narrow(drawing.error());
            EXPECT_TRUE((*drawing)->repairs().empty()) << entry.path() << test::messages(**drawing);
            EXPECT_TRUE(written(**drawing) == test::read(entry.path())) << entry.path();
        } else if (drawing) {
            EXPECT_FALSE((*drawing)->repairs().empty()) << entry.path();
            EXPECT_TRUE(opened(written(**drawing))->repairs().empty()) << entry.path();
        } else {
            EXPECT_NE(drawing.error().find(L": line "), std::wstring::npos) << base::narrow(drawing.error());
        }
    }
}
