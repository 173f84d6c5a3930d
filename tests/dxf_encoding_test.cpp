// The encoding of a drawing's text: bytes first, then what the header says, then a guess; and new text goes
// out as the file has it. The bytes of the samples were made by an independent converter.
#include "host/dxf/encoding_guess.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

namespace {

struct sample {
    int number;
    const char* title;
    std::string_view bytes; // one text a line
    std::wstring_view text;
};

constexpr sample samples[] = {
    {936, "GBK (code page 936)",
     "\xB8\xF8\xCB\xAE\xC1\xA2\xB9\xDC "
     "JL-1\n\xCF\xFB\xB7\xC0\xC5\xE7\xC1\xDC\xC6\xBD\xC3\xE6\xCD\xBC\n\xC5\xC5\xCE\xDB\xB9\xDC\xB5\xC0 "
     "DN100\n\xB5\xD8\xCF\xC2\xD2\xBB\xB2\xE3\xB8\xF8\xC5\xC5\xCB\xAE\n\xCD\xBC\xB2\xE3\xCB\xB5\xC3\xF7",
     L"给水立管 JL-1\n消防喷淋平面图\n排污管道 DN100\n地下一层给排水\n图层说明"},
    {950, "Big5 (code page 950)",
     "\xB5\xB9\xA4\xF4\xA5\xDF\xBA\xDE "
     "JL-1\n\xAE\xF8\xA8\xBE\xBCQ\xB2O\xA5\xAD\xAD\xB1\xB9\xCF\n\xA6\xC3\xA4\xF4\xBA\xDE\xBDu DN100\n\xA6"
     "a\xA4U\xA4@\xBCh\xB5\xB9\xB1\xC6\xA4\xF4\n\xB9\xCF\xBCh\xBB\xA1\xA9\xFA",
     L"給水立管 JL-1\n消防噴淋平面圖\n污水管線 DN100\n地下一層給排水\n圖層說明"},
    {932, "Shift-JIS (code page 932)",
     "\x8B\x8B\x90\x85\x8A\xC7 20A\n\x83\x8C\x83"
     "C\x83"
     "A\x83"
     "E\x83g1\n\x95\xBD\x96\xCA\x90}"
     "\n\x89\x98\x90\x85\x82\xDC\x82\xB7\n\x95\x94\x95i\x96\xBC\x8F\xCC\x82\xC6\x8D\xDE\x8E\xBF",
     L"給水管 20A\nレイアウト1\n平面図\n汚水ます\n部品名称と材質"},
    {949, "EUC-KR (code page 949)",
     "\xB1\xDE\xBC\xF6\xB0\xFC 20A\n\xB9\xE8\xC4\xA1"
     "1\n\xC6\xF2\xB8\xE9\xB5\xB5\n\xBF\xC0\xBC\xF6 \xB9\xE8\xB0\xFC\n\xC1\xF6\xC7\xCF 1\xC3\xFE "
     "\xBC\xD2\xC8\xAD\xC0\xFC",
     L"급수관 20A\n배치1\n평면도\n오수 배관\n지하 1층 소화전"},
    {1251, "Cyrillic (code page 1251)",
     "\xC2\xEE\xE4\xEE\xEF\xF0\xEE\xE2\xEE\xE4\n\xCA\xE0\xED\xE0\xEB\xE8\xE7\xE0\xF6\xE8\xFF "
     "\xE1\xFB\xF2\xEE\xE2\xE0\xFF\n\xCF\xCB\xC0\xCD 1-\xC3\xCE \xDD\xD2\xC0\xC6\xC0\n\xD2\xF0\xF3\xE1\xE0 "
     "d=100\n\xC8\xE3\xEE\xF0\xFC",
     L"Водопровод\nКанализация бытовая\nПЛАН 1-ГО ЭТАЖА\nТруба d=100\nИгорь"},
    {1252, "Western European (code page 1252)",
     "Eau chaude sanitaire, r\xE9seau\n\xC9l\xE9vation\nFu\xDF"
     "boden \xFC"
     "ber Erdgescho\xDF\nWC \xF8"
     "100\nTuber\xED"
     "a enterrada - a\xF1o",
     L"Eau chaude sanitaire, réseau\nÉlévation\nFußboden über Erdgeschoß\nWC ø100\nTubería enterrada - año"},
    {1250, "Central European (code page 1250)",
     "Kanalizace de\x9A\x9Dov\xE1, p\xF8\xEDpojka\n\xA3"
     "azienka \x9C"
     "cieki g\xB3\xF3wne\nv\xEDz h\xE1l\xF3zat t\xFBziv\xEDz\nP\xF9"
     "dorys p\xF8\xEDzem\xED",
     L"Kanalizace dešťová, přípojka\nŁazienka ścieki główne\nvíz hálózat tűzivíz\nPůdorys přízemí"},
    {1253, "Greek (code page 1253)",
     "\xC1\xF0\xEF\xF7\xDD\xF4\xE5\xF5\xF3\xE7 "
     "\xE1\xEA\xE1\xE8\xDC\xF1\xF4\xF9\xED\n\xBE\xE4\xF1\xE5\xF5\xF3\xE7 \xEA\xF1\xFD\xEF "
     "\xED\xE5\xF1\xFC\n\xEA\xDC\xF4\xEF\xF8\xE7 \xEF\xF1\xFC\xF6\xEF\xF5",
     L"Αποχέτευση ακαθάρτων\nΎδρευση κρύο νερό\nκάτοψη ορόφου"},
    {65001, "UTF-8",
     "\xE7\xBB\x99\xE6\xB0\xB4\xE7\xAB\x8B\xE7\xAE\xA1\nr\xC3\xA9seau\n\xD0\x9F\xD0\x9B\xD0\x90\xD0\x9D",
     L"给水立管\nréseau\nПЛАН"},
};

// A drawing with a layer and a TEXT for each line of the sample. An empty page: the header names none.
std::string drawing_of(std::string_view version, std::string_view page, std::string_view bytes) {
    std::string text = "0 SECTION|2 HEADER|9 $ACADVER|1 " + std::string(version);
    if (!page.empty())
        text += "|9 $DWGCODEPAGE|3 " + std::string(page);
    text += "|0 ENDSEC|0 SECTION|2 ENTITIES";
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
        text += "|0 TEXT|8 0|10 0.0|20 0.0|40 2.5|1 " + std::string(bytes.substr(at, end - at));
        at = end + 1;
    }
    return test::groups(text + "|0 ENDSEC|0 EOF");
}

// All texts of a drawing, one a line.
std::wstring texts_of(const dxf::drawing& drawing) {
    std::wstring all;
    for (dxf::record_id id = 0; id < drawing.records().size(); ++id)
        if (drawing.records().type_name(id) == "TEXT")
            all += drawing.codec().decode(
                       dxf::group_list(drawing.records().text(id)).text({"*"}, 1).value_or("")) +
                   L"\n";
    all.pop_back();
    return all;
}

} // namespace

TEST(DxfEncoding, TextReadsAsWrittenWhateverTheHeaderSays) {
    constexpr const char* pages[] = {"ANSI_936",  "ANSI_950",  "ANSI_932",  "ANSI_949",
                                     "ANSI_1251", "ANSI_1252", "ANSI_1250", "ANSI_1253",
                                     "dos850",    "nonsense",  ""};
    for (const sample& sample : samples)
        for (const char* version : {"AC1009", "AC1015", "AC1032"})
            for (const char* page : pages) {
                const auto drawing = test::opened(drawing_of(version, page, sample.bytes));
                ASSERT_NE(drawing, nullptr);
                const std::string row = std::string(sample.title) + ", " + version + " " + page;
                EXPECT_EQ(drawing->codec().number(), sample.number) << row;
                EXPECT_TRUE(texts_of(*drawing) == sample.text) << row;
                // Told is what contradicts the file, and what was guessed; not what most programs write.
                const bool modern = std::string_view(version) == "AC1032";
                const int named = modern ? 65001 : dxf::encoding_number(page);
                const bool told =
                    named != 0 ? named != sample.number : sample.number != 1252 && sample.number != 65001;
                EXPECT_EQ(test::messages(*drawing).find(sample.title) != std::string::npos, told)
                    << row << "\n"
                    << test::messages(*drawing);
            }
}

// A few bytes prove nothing against the header; many do.
TEST(DxfEncoding, LittleTextIsReadAsTheHeaderSays) {
    struct row {
        const char* version;
        const char* page;
        const char* bytes;
        std::wstring_view text;
    };
    for (const row& row :
         {row{"AC1015", "ANSI_1252", "108\xB0", L"108°"}, row{"AC1009", "", "\\A1;135\xB0", L"\\A1;135°"},
          row{"AC1015", "ANSI_1252", "\xCB\xAE", L"Ë®"}, row{"AC1015", "ANSI_936", "\xCB\xAE", L"水"},
          row{"AC1015", "ANSI_1252", "\xC3\xA9", L"Ã©"}, // two bytes may be UTF-8 by chance,
          row{"AC1015", "ANSI_1252", "\xE6\xB0\xB4\xE6\xB0\xB4", L"水水"}, // six are not
          row{"AC1015", "ANSI_1252", "\xB8\xF8\xCB\xAE", L"给水"},
          row{"AC1009", "", "ABC\xC4\xDC\xD6\\U+03B1", L"ABCÄÜÖα"},
          row{"AC1015", "ANSI_1251", "\xC8\xE3\xEE\xF0\xFC", L"Игорь"},
          row{"AC1032", "ANSI_936", "caf\xC3\xA9\n\xE9", L"café\n\xDCE9"}, // one bad byte
          row{"AC1015", "gb2312", "\xB8\xF8\xFF", L"给\xDCFF"},
          // Where programs for DOS may have written, one word or sign tells.
          row{"AC1009", "",
              "K\x81"
              "che",
              L"Küche"},
          row{"AC1009", "",
              "K\xFC"
              "che",
              L"Küche"},
          row{"AC1009", "", "H\x94he", L"Höhe"}, row{"AC1009", "", "H\xF6he", L"Höhe"},
          row{"AC1009", "", "45\xF8", L"45°"}, row{"AC1015", "", "45\xF8", L"45ø"},
          row{"AC1009", "", "\xF8 100", L"ø 100"}, row{"AC1009", "", "\xF8 25", L"ø 25"},
          row{"AC1009", "",
              "\xF1"
              "0.00",
              L"±0.00"},
          row{"AC1009", "",
              "\xB1"
              "0.00",
              L"±0.00"}}) {
        const auto drawing = test::opened(drawing_of(row.version, row.page, row.bytes));
        ASSERT_NE(drawing, nullptr);
        EXPECT_TRUE(texts_of(*drawing) == row.text)
            << row.version << " " << row.page << ": " << base::narrow(texts_of(*drawing));
    }
}

// Drawings without a header, of programs for DOS; solids, whose texts are disguised; rare characters.
TEST(DxfEncoding, WhatIsEvidenceAndWhatIsNot) {
    const std::string chinese = "\xB8\xF8\xCB\xAE\xC1\xA2\xB9\xDC"; // what also could be read there
    const auto text = [](const std::string& bytes) { return "0 TEXT|8 0|1 " + bytes + "|"; };
    struct row {
        std::string page;
        std::string entities;
        int number;
    };
    for (const row& row :
         {row{"",
              text("K\x81"
                   "che") +
                  text("G\x84"
                       "ste-WC") +
                  text("Erdgescho\xE1"),
              437},
          row{"",
              text("\xED"
                   "100") +
                  text("\xE0 = 30\xF8") + text("12 \xF1 0.5") +
                  text("\xED"
                       "12 c/20") +
                  text("\xF2 30"),
              437},
          row{"", text("R\xE9seau") + text("135\xB0"), 1252},
          row{"ANSI_1252",
              text("R\xE9seau") + "0 3DSOLID|8 0|100 AcDbModelerGeometry|1 " + chinese + "|3 " + chinese +
                  "|",
              1252},
          row{"ANSI_1252", text("R\xE9seau") + "0 BODY|8 0|1 " + chinese + "|", 1252},
          row{"ANSI_1252", text("R\xE9seau") + "0 3DSOLID|8 " + chinese + "|100 AcDbModelerGeometry|1 x|",
              936},
          row{"ANSI_1252", text("\x95\x34\xB2\x35\x81\x39\xEF\x31"), 936}}) {
        const std::string header =
            row.page.empty() ? "" : "0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 " + row.page + "|0 ENDSEC|";
        const auto drawing =
            test::opened(test::groups(header + "0 SECTION|2 ENTITIES|" + row.entities + "0 ENDSEC|0 EOF"));
        ASSERT_NE(drawing, nullptr);
        EXPECT_EQ(drawing->codec().number(), row.number) << row.entities;
    }
}

TEST(DxfEncoding, CodecsGiveBytesBack) {
    struct row {
        int number;
        std::string bytes;
        std::wstring text;
        bool same_back; // escapes are written as characters where the encoding has them
    };
    for (const row& row :
         {row{936, "\xB8\xF8\xCB\xAE", L"给水", true}, row{65001, "给水", L"给水", true},
          row{932, "\x90\x85", L"水", true}, row{1252, "\\U+7ED9\\U+6C34", L"给水", true},
          row{65001, "\\U+7ED9\\M+5CBAE", L"给水", false}, row{1252, "a^Jb^ c", L"a\nb^c", true},
          row{65001, "a\xFFz", L"a\xDCFFz", true}, row{936, "\\U+ZZZZ \\M+9 ^", L"\\U+ZZZZ \\M+9 ^", false},
          row{4711, "\xE9", L"é", true}}) {
        const dxf::text_codec codec(row.number);
        EXPECT_EQ(codec.decode(row.bytes), row.text) << row.bytes;
        EXPECT_EQ(codec.decode(codec.encode(row.text)), row.text) << row.bytes;
        if (row.same_back) {
            EXPECT_EQ(codec.encode(row.text), row.bytes);
        }
    }
}

TEST(DxfEncoding, NamesOfEncodings) {
    struct row {
        const char* name;
        int number;
    };
    for (const row& row :
         {row{"gbk", 936}, row{"GB2312", 936}, row{"ANSI_936", 936}, row{"cp936", 936}, row{"936", 936},
          row{"Big5", 950}, row{"shift-jis", 932}, row{"Shift_JIS", 932}, row{"EUC-KR", 949},
          row{"windows-1251", 1251}, row{"dos850", 850}, row{"iso8859-1", 28591}, row{"UTF-8", 65001},
          row{"utf8", 65001}, row{"foo", 0}, row{"", 0}, row{"123456789", 0}, row{"1", 0}, row{"cp", 0}})
        EXPECT_EQ(dxf::encoding_number(row.name), row.number) << row.name;
}

TEST(DxfEncoding, TheProgramTellsAndObeys) {
    const test::folder folder;
    const std::string bytes = drawing_of("AC1015", "ANSI_1252", samples[0].bytes);
    const std::string file = folder.write("plan.dxf", bytes).string();
    const std::string out = (folder / "out.dxf").string();
    auto result = test::zefhost({file, "-c", "QUIT", "-o", out});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              file + ": its text is read as GBK (code page 936), not ANSI_1252 as its header says\n");
    EXPECT_EQ(test::read(out), bytes);
    result = test::zefhost({file, "--encoding", "big5", "-c", "QUIT"});
    EXPECT_EQ(result.err, "");
    result = test::zefhost({file, "--encoding", "klingon", "-c", "QUIT"});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("klingon"), std::string::npos) << result.err;
}
