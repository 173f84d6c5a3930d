// Documents in files: encodings both ways, and saving that never harms the old file.
#include "base/utf.h"
#include "sys/code_page.h"
#include "sys/folders.h"
#include "tests/module_markup_support.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <iconv.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using namespace std::string_literals;

std::string converted(const std::string& to, std::string utf8) {
    const iconv_t handle = ::iconv_open(to.c_str(), "UTF-8");
    EXPECT_NE(handle, reinterpret_cast<iconv_t>(-1)) << to;
    std::string out(4 * utf8.size() + 16, '\0');
    char* in_at = utf8.data();
    char* out_at = out.data();
    std::size_t in_left = utf8.size();
    std::size_t out_left = out.size();
    EXPECT_EQ(::iconv(handle, &in_at, &in_left, &out_at, &out_left), 0u) << to;
    EXPECT_EQ(::iconv(handle, nullptr, nullptr, &out_at, &out_left), 0u) << to;
    ::iconv_close(handle);
    out.resize(out.size() - out_left);
    return out;
}

// The text with a number where its # stands.
std::wstring with_number(std::wstring text, std::size_t number) {
    return text.replace(text.find(L'#'), 1, std::to_wstring(number));
}

struct File {
    test::folder folder;
    std::filesystem::path path = folder / "f.xml";
    std::wstring name = sys::from_path(path);

    bool load(MarkupDoc& doc, std::string_view bytes) {
        folder.write("f.xml", bytes);
        return doc.LoadFile(name.c_str());
    }
};

TEST(MarkupFile, EncodingsBothWays) {
    const struct {
        std::string encoding; // as iconv and the document call it
        std::string mark;
        std::string sample;
        std::wstring result; // # is the length
    } rows[] = {
        {"UTF-8", "", "给水 €\U0001F4A7",
         L"<read encoding=\"UTF-8\" length=\"#\"/><converted_from encoding=\"UTF-8\"/>"},
        {"UTF-8", "\xEF\xBB\xBF", "给水",
         L"<bom/><read encoding=\"UTF-8\" length=\"#\"/><converted_from encoding=\"UTF-8\"/>"},
        {"UTF-16LE", "\xFF\xFE", "给水\U0001F4A7", L"<bom/><read encoding=\"UTF-16LE\" length=\"#\"/>"},
        {"UTF-16BE", "\xFE\xFF", "给水\U0001F4A7",
         L"<bom/><read encoding=\"UTF-16BE\" length=\"#\"/><endian_swap/>"},
        {"UTF-16LE", "", "给水", L"<read encoding=\"UTF-16LE\" length=\"#\"/>"},
        {"UTF-16BE", "", "给水", L"<read encoding=\"UTF-16BE\" length=\"#\"/><endian_swap/>"},
        {"UTF-32LE", "", "给水\U0001F4A7", L"<read encoding=\"UTF-32LE\" length=\"#\"/>"},
        {"UTF-32BE", "", "给水\U0001F4A7", L"<read encoding=\"UTF-32BE\" length=\"#\"/><endian_swap/>"},
        {"GBK", "", "给水管—朰", L"<read encoding=\"GBK\" length=\"#\"/><converted_from encoding=\"GBK\"/>"},
        {"GB2312", "", "给水管", {}},
        {"GB18030", "", "给水\U00020000ä̈", {}},
        {"BIG5", "", "給水功能", {}},
        {"Shift_JIS", "", "日本語ｱｲｳ表", {}},
        {"EUC-JP", "", "日本語丂", {}},
        {"ISO-2022-JP", "", "日本語", {}},
        {"EUC-KR", "", "한글", {}},
        {"KOI8-R", "", "Привет", {}},
        {"ISO-8859-1", "", "é§", {}},
        {"ISO-8859-2", "", "łą", {}},
        {"ISO-8859-3", "", "ħ", {}},
        {"ISO-8859-4", "", "ņ", {}},
        {"ISO-8859-5", "", "Привет", {}},
        {"ISO-8859-6", "", "سلام", {}},
        {"ISO-8859-7", "", "Γειά", {}},
        {"ISO-8859-8", "", "שלום", {}},
        {"ISO-8859-9", "", "ğış", {}},
        {"ISO-8859-10", "", "ðŋ", {}},
        {"ISO-8859-13", "", "ūž", {}},
        {"ISO-8859-14", "", "ŵḃ", {}},
        {"ISO-8859-15", "", "€œ", {}},
        {"ISO-8859-16", "", "șț", {}},
        {"windows-1250", "", "€łą", {}},
        {"windows-1251", "", "Привет№", {}},
        {"windows-1252", "", "€éœ", {}},
        {"windows-1253", "", "Γειά", {}},
        {"windows-1254", "", "ğış€", {}},
        {"windows-1255", "", "שלום", {}},
        {"windows-1256", "", "سلام", {}},
        {"windows-1257", "", "ūž", {}},
        {"windows-1258", "", "đơ", {}},
        {"IBM437", "", "é█", {}},
        {"TIS-620", "", "ภาษา", {}},
        {"us-ascii", "", "plain", {}},
    };
    File file;
    for (const auto& row : rows) {
        // The samples run over the borders of blocks in every phase.
        for (std::size_t phase = 0; phase < 5; ++phase) {
            std::string text =
                "<?xml version='1.0' encoding='" + row.encoding + "'?><a x='" + std::string(phase, '-');
            while (text.size() < 40'000)
                text += row.sample;
            text += "'/>\r\n";
            const std::string bytes = row.mark + converted(row.encoding, text);
            MarkupDoc doc;
            ASSERT_TRUE(file.load(doc, bytes)) << row.encoding;
            ASSERT_TRUE(doc.GetDocumentText() == base::widen(text)) << row.encoding << phase;
            if (!row.result.empty()) {
                EXPECT_EQ(doc.GetResult(), with_number(row.result, bytes.size()));
            }
            // Saving waits for the disk: once is enough.
            if (phase == 1) {
                ASSERT_TRUE(doc.SaveFile(file.name.c_str()));
                ASSERT_TRUE(test::read(file.path) == bytes) << row.encoding;
            }
        }
    }
}

TEST(MarkupFile, WhatTellsTheEncoding) {
    const std::string gbk = "\xB8\xF8\xCB\xAE"; // 给水
    const std::string meta = "content='text/html; charset=";
    const struct {
        std::string bytes;
        std::wstring_view data;
        const wchar_t* words; // # is the length
    } rows[] = {
        {"<a>给水</a>", L"给水", L"UTF-8 length # (used UTF-8 detection) converted from UTF-8"},
        {"<a>" + gbk + "</a>", L"给水", L"ANSI length # converted from ANSI"},
        {"\xEF\xBB\xBF<?xml version='1.0' encoding='gbk'?><a>给水</a>", L"给水",
         L"BOM + UTF-8 length # converted from UTF-8"},
        {"\r\n<?xml version='1.0' encoding = \"Shifft_JIS-ms\"?><a>\x93\xFA</a>", L"日",
         L"Shifft_JIS-ms length # converted from Shifft_JIS-ms"},
        {"<?xml version='1.0' encoding='no such'?><a>" + gbk + "</a>", L"给水",
         L"ANSI length # converted from ANSI"},
        {"<?xml version='1.0' encoding='utf-16'?><a>给水</a>", L"给水",
         L"UTF-8 length # (used UTF-8 detection) converted from UTF-8"},
        {"<HTML><!-- <head> --><Head><META Http-Equiv=content-TYPE " + meta + "gb2312'></Head><a>" + gbk +
             "</a></HTML>",
         L"", nullptr},
        {"\xFE\xFF\0<\0a\0>\x6C\x34\0<\0/\0a\0>"s, L"水", L"BOM + UTF-16BE length # endian swap"},
        {"<a>\0x\0</a>\0"s, L"x",
         L"UTF-8 length # (used UTF-8 detection) converted from UTF-8 removed 3 nulls"},
        {"<?xml version='1.0' encoding='utf-8'?><a>" + gbk + "x</a>", L"\xDCB8\xDCF8\x02EEx",
         L"utf-8 length # converted from utf-8 (chars lost in conversion!)"},
        {"<?xml version='1.0' encoding='utf-8'?><a/>\xE6\xB0", L"",
         L"utf-8 length # converted from utf-8 (chars lost in conversion!) encoding utf-8 adjustment error"},
    };
    File file;
    for (const auto& row : rows) {
        MarkupDoc doc;
        file.load(doc, row.bytes);
        if (row.words != nullptr) {
            EXPECT_EQ(doc.GetErrorText(), with_number(row.words, row.bytes.size()));
            ASSERT_TRUE(doc.FindElement());
            EXPECT_EQ(doc.GetElementData(), row.data);
        } else {
            EXPECT_NE(doc.GetErrorText().find(L"gb2312"), std::wstring::npos);
            EXPECT_NE(doc.GetDocumentText().find(L"给水"), std::wstring_view::npos);
        }
    }

    for (const char* const name :
         {"utf8", "UTF-8", "GB2312", "cp936", "big5", "csShiftJIS", "shifft_jis-ms", "euc-jp", "euc-kr",
          "koi8-r", "ISO_646.irv:1991", "latin1", "cp1252", "x-mac-cyrillic"}) {
        MarkupDoc doc;
        ASSERT_TRUE(file.load(doc, "<?xml encoding='"s + name + "'?><a/>"));
        EXPECT_NE(doc.GetErrorText().find(L"converted from " + base::widen(name)), std::wstring::npos)
            << name;
    }

    // A Content-Type counts only in an HTML head.
    for (const std::string& front : {"<html><body><meta http-equiv='Content-Type' " + meta + "gbk'></body>",
                                     "<htm><head><meta http-equiv='Content-Type' " + meta + "gbk'></head>",
                                     "<html><head></head><meta http-equiv='Content-Type' " + meta + "gbk'>",
                                     "<html><head><meta name='Content-Type' " + meta + "gbk'></head>"}) {
        MarkupDoc doc;
        file.load(doc, front + "水");
        EXPECT_NE(doc.GetErrorText().find(L"UTF-8 detection"), std::wstring::npos) << front;
    }

    ASSERT_TRUE(sys::set_ansi_code_page(1251) && !sys::set_ansi_code_page(7));
    MarkupDoc doc;
    EXPECT_TRUE(file.load(doc, "<a>\xCF\xF0</a>") && doc.FindElement());
    EXPECT_EQ(doc.GetElementData(), L"Пр");
    ASSERT_TRUE(sys::set_ansi_code_page(936));
}

TEST(MarkupFile, Saving) {
    const struct {
        const wchar_t* text;
        std::string bytes;
        const wchar_t* words;
    } rows[] = {
        {L"<a>水</a>", "<a>水</a>", L"UTF-8 length 10 converted to UTF-8"},
        {L"<?xml encoding='gbk'?><水>é\x4E00ö</水>",
         "<?xml encoding='gbk'?><\xCB\xAE>\xA8\xA6\xD2\xBB&#246;</\xCB\xAE>",
         L"gbk length 41 converted to gbk (chars lost in conversion!)"},
        {L"<?xml encoding='us-ascii'?><a>\U0001F4A7\xDCFF</a>",
         "<?xml encoding='us-ascii'?><a>&#128167;\xFF</a>",
         L"us-ascii length 44 converted to us-ascii (chars lost in conversion!)"},
        {L"<?xml encoding='x-nobody'?><a>水</a>", "<?xml encoding='x-nobody'?><a>水</a>",
         L"UTF-8 length 37 converted to UTF-8"},
        {L"<?xml encoding='UTF-16'?>\xD83D\xDCA7",
         "\xFF\xFE" + converted("UTF-16LE", "<?xml encoding='UTF-16'?>💧"), L"BOM + UTF-16 length 56"},
        {L"<?xml encoding='utf-16be'?>", converted("UTF-16BE", "<?xml encoding='utf-16be'?>"),
         L"utf-16be length 54 endian swap"},
        {L"", "", L"UTF-8 length 0 converted to UTF-8"},
    };
    const File file;
    for (const auto& row : rows) {
        MarkupDoc doc;
        doc.SetDocumentText(row.text);
        ASSERT_TRUE(doc.SaveFile(file.name.c_str()));
        EXPECT_EQ(test::read(file.path), row.bytes);
        EXPECT_EQ(doc.GetErrorText(), row.words);
    }
}

// Files that no encoding explains come back as they were, too.
TEST(MarkupFile, EveryByteComesBack) {
    File file;
    for (const char* const encoding : {"utf-8", "gbk", "euc-kr", "windows-1252", "shift_jis"}) {
        std::string bytes = "<?xml encoding='"s + encoding + "'?><a>";
        for (unsigned i = 0; i < 40'000; ++i)
            bytes += static_cast<char>(i * i / 7 % 127 + 129);
        bytes += "</a>";
        MarkupDoc doc;
        file.load(doc, bytes);
        EXPECT_NE(doc.GetResult().find(L"<conversion_loss/>"), std::wstring::npos) << encoding;
        const bool has_doubles = encoding == "shift_jis"s;
        EXPECT_TRUE(doc.SaveFile(file.name.c_str()));
        EXPECT_TRUE(test::read(file.path) == bytes || has_doubles) << encoding;
    }
}

TEST(MarkupFile, WhatCannotBeReadOrWritten) {
    const test::folder folder;
    folder.write("old", "<old/>");
    std::filesystem::create_directory(folder / "sub");
    const std::wstring old = sys::from_path(folder / "old");
    MarkupDoc doc;
    ASSERT_TRUE(doc.SetDocumentText((L"<a>" + std::wstring(2'000'000, L'x') + L"</a>").c_str()) &&
                doc.FindElement());
    const auto refused = [&](bool done) {
        return !done && doc.GetErrorText() == L"file error" && doc.GetResult() == L"<file_error/>" &&
               doc.GetTagName() == L"a";
    };
    for (const char* const name : {"none", "sub", "none/x"})
        EXPECT_TRUE(refused(doc.LoadFile(sys::from_path(folder / name).c_str()))) << name;
    EXPECT_TRUE(refused(doc.LoadFile(nullptr)) && refused(doc.SaveFile(nullptr)));
    for (const char* const name : {"sub", "none/x"})
        EXPECT_TRUE(refused(doc.SaveFile(sys::from_path(folder / name).c_str()))) << name;

    // While a file is read or written nothing else may be done with the document.
    for (const unsigned flag : {MarkupDoc::FileReadInProgress, MarkupDoc::FileWriteInProgress}) {
        doc.SetDocumentFlags(flag);
        EXPECT_FALSE(doc.SetDocumentText(L"<b/>") || doc.LoadFile(old.c_str()) || doc.SaveFile(old.c_str()));
        EXPECT_TRUE(doc.GetTagName() == L"a" && doc.GetDocumentFlags() == flag);
    }
    doc.SetDocumentFlags(0);

    // A limit of a file's size stands for a full disk, a folder without the right to write for a read-only
    // one.
    const auto in_child = [&](auto prepare) {
        return test::wait_for(
            test::start_child([&] { return prepare() && refused(doc.SaveFile(old.c_str())) ? 0 : 1; }));
    };
    EXPECT_EQ(in_child([] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit = {500'000, 500'000};
                  return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
              }),
              0);
    EXPECT_EQ(in_child([&] { return ::chmod(folder.path().c_str(), 0555) == 0 && test::give_up_rights(); }),
              0);
    ::chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(test::read(folder / "old"), "<old/>");
    EXPECT_EQ(test::count_entries(folder.path()), 2u);

    // Replaced by another program after it was read: what is saved is whole, and the other's file is its own.
    ASSERT_TRUE(doc.LoadFile(old.c_str()) && doc.FindElement());
    std::filesystem::rename(folder / "old", folder / "elsewhere");
    folder.write("old", "<other><one/></other>");
    EXPECT_TRUE(doc.SetElementData(L"new") && doc.SaveFile(old.c_str()));
    EXPECT_EQ(test::read(folder / "old"), "<old>new</old>");
    EXPECT_EQ(test::read(folder / "elsewhere"), "<old/>");
}

} // namespace
