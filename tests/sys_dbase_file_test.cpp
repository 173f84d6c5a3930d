#include "sys/dbase_file.h"

#include "base/utf.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

namespace {

using base::dbase_memo_form;
using base::dbase_table;

// A table with one row: the text in that page's bytes, and the memo when there is a form for one.
dbase_table one_row(int page, unsigned char language_driver, std::wstring_view text,
                    dbase_memo_form form = dbase_memo_form::none, std::wstring_view memo = {}) {
    std::vector<base::dbase_field> fields = {{L"NAME", 'C', 20}};
    if (form != dbase_memo_form::none)
        fields.push_back({L"NOTE", 'M', 10});
    const std::chrono::year_month_day today(std::chrono::year(2021), std::chrono::month(1),
                                            std::chrono::day(2));
    auto table = *dbase_table::create(fields, form, language_driver, today, *sys::dbase_encoding_of(page));
    EXPECT_EQ(*table.append_row(), 0u);
    EXPECT_TRUE(table.set_text(0, 0, text));
    if (form != dbase_memo_form::none) {
        EXPECT_TRUE(table.set_memo(0, 1, memo));
    }
    return table;
}

TEST(SysDbaseFile, CodePages) {
    const test::folder folder;
    const struct {
        int written;
        unsigned char language_driver;
        int told;
        std::wstring_view read;
    } rows[] = {
        {936, 0x00, 0, L"给水管"},   // the system's when nobody says
        {936, 0x57, 0, L"给水管"},   // "whatever this machine's is"
        {950, 0x78, 0, L"給水管"},   // the header says
        {950, 0x00, 950, L"給水管"}, // the caller says
        {936, 0x03, 936, L"给水管"}, // the caller knows better than the header
        {65001, 0x00, 65001, L"给水管"},
    };
    for (const auto& row : rows) {
        const auto path = folder / "t.dbf";
        ASSERT_TRUE(sys::write_dbase(one_row(row.written, row.language_driver, row.read), path));
        const auto table = sys::read_dbase(path, row.told);
        ASSERT_TRUE(table) << base::narrow(table.error());
        EXPECT_EQ(table->text(0, 0), row.read) << row.written << ' ' << int{row.language_driver};
    }
}

TEST(SysDbaseFile, FindsTheMemoFile) {
    const struct {
        dbase_memo_form form;
        const char* table;
        const char* written; // beside it, when nothing is there
        const char* found;   // in another case
    } rows[] = {
        {dbase_memo_form::dbase3, "pipe.dbf", "pipe.dbt", "Pipe.DBT"},
        {dbase_memo_form::dbase4, "PIPE.DBF", "PIPE.DBT", "PIPE.dbt"},
        {dbase_memo_form::foxpro, "管材.dbf", "管材.fpt", "管材.FPT"},
    };
    for (const auto& row : rows) {
        const test::folder folder;
        const auto path = folder / row.table;
        ASSERT_TRUE(sys::write_dbase(one_row(936, 0, L"a", row.form, L"第一"), path)) << row.table;
        std::filesystem::rename(folder / row.written, folder / row.found);
        auto table = sys::read_dbase(path);
        ASSERT_TRUE(table) << base::narrow(table.error());
        EXPECT_EQ(*table->memo(0, 1), L"第一") << row.found;
        ASSERT_TRUE(table->set_memo(0, 1, L"第二") && sys::write_dbase(*table, path));
        EXPECT_EQ(*sys::read_dbase(path)->memo(0, 1), L"第二") << row.found;
        EXPECT_EQ(test::count_entries(folder.path()), 2u) << row.found;

        // Reading and writing changes nothing; without its memo file the table is still good for the rest.
        const std::string bytes = test::read(path), memo = test::read(folder / row.found);
        ASSERT_TRUE(sys::write_dbase(*sys::read_dbase(path), path));
        EXPECT_TRUE(test::read(path) == bytes && test::read(folder / row.found) == memo) << row.found;
        std::filesystem::remove(folder / row.found);
        const auto alone = sys::read_dbase(path);
        ASSERT_TRUE(alone) << row.found;
        EXPECT_EQ(alone->text(0, 0), L"a");
        EXPECT_EQ(alone->memo(0, 1).error(), L"row 1, field 'NOTE': the table's memo file is missing");
    }
}

TEST(SysDbaseFile, Failures) {
    const test::folder folder;
    const std::wstring where = sys::from_path(folder.path());
    const auto error = [](const auto& result) { return result ? L"done" : result.error(); };
    const dbase_table table = one_row(936, 0, L"a", dbase_memo_form::foxpro, L"b");
    EXPECT_EQ(error(sys::read_dbase(folder / "no.dbf")),
              L"cannot read '" + where + L"/no.dbf': no such file");
    folder.write("short.dbf", "\x03");
    EXPECT_EQ(error(sys::read_dbase(folder / "short.dbf")),
              L"cannot read '" + where +
                  L"/short.dbf': a dBASE table's header has at least 32 bytes, here are 1");
    EXPECT_EQ(error(sys::read_dbase(folder / "short.dbf", 4711)),
              L"cannot read '" + where + L"/short.dbf': code page 4711 is not known here");
    ASSERT_TRUE(sys::write_dbase(table, folder / "m.dbf"));
    folder.write("m.fpt", "cut");
    EXPECT_EQ(error(sys::read_dbase(folder / "m.dbf")),
              L"cannot read '" + where + L"/m.dbf': the memo file ends at byte 3, inside its header of 512");

    // When the memo file cannot be written the table is not either.
    std::filesystem::remove(folder / "m.fpt");
    std::filesystem::create_directory(folder / "m.fpt");
    const std::string before = test::read(folder / "m.dbf");
    EXPECT_FALSE(sys::write_dbase(one_row(936, 0, L"c", dbase_memo_form::foxpro, L"d"), folder / "m.dbf"));
    EXPECT_EQ(test::read(folder / "m.dbf"), before);
}

} // namespace
