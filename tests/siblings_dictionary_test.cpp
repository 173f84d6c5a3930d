// Dictionary files: what is set, what is kept, what is refused.
#include "base/utf.h"
#include "siblings/zef_kernal/TWDict.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

std::wstring wide(const std::filesystem::path& path) {
    return sys::from_path(path);
}

#define MARK "\xEF\xBB\xBF"

TEST(SiblingsDictionary, SettingAValueKeepsEverythingElse) {
    using namespace std::string_literals;
    const struct {
        std::string before;
        std::string after;
    } rows[] = {
        {"", "[a]\r\nk=9\r\n"},
        {MARK, MARK "[a]\r\nk=9\r\n"},
        {MARK "[a]\nk=1\n", MARK "[a]\nk=9\n"},
        {"[a]\n\t k =  1 \n", "[a]\n\t k =  9 \n"},
        {" [a] \r\nk=1 ; no comment\r\n", " [a] \r\nk=9\r\n"},
        {"[a]\nk=\n", "[a]\nk=9\n"},
        {"[a]\r\nx=1", "[a]\r\nx=1\r\nk=9\r\n"},
        {"[a]\nk=1", "[a]\nk=9"},
        {"no line of ours", "no line of ours\r\n[a]\r\nk=9\r\n"},
        {"[a]\nx=1\n\n; about b\n[b]\nk=2\n", "[a]\nx=1\nk=9\n\n; about b\n[b]\nk=2\n"},
        {"[a]\n;k=1\n#k=2\n", "[a]\nk=9\n;k=1\n#k=2\n"},
        {"[a]\nk=1\nk=2\n[a]\nk=3\n", "[a]\nk=9\nk=2\n[a]\nk=3\n"},
        {"k=1\n[A]\nk=2\n[a ]\nk=3\n", "k=1\n[A]\nk=2\n[a ]\nk=3\n[a]\nk=9\n"},
        {"[a]\nK=1\nk k=2\n", "[a]\nK=1\nk k=2\nk=9\n"},
        {"[\xB9\xDC]\r\n\xCF\xDF=\xB1\xED\r\n", "[\xB9\xDC]\r\n\xCF\xDF=\xB1\xED\r\n[a]\r\nk=9\r\n"},
        {"\xFE\xFF"
         "\0;\x7B\xA1\0\n"s,
         "\xFE\xFF"
         "\0;\x7B\xA1\0\n\0[\0a\0]\0\n\0k\0=\0"
         "9\0\n"s},
    };
    const test::folder folder;
    for (const auto& row : rows) {
        const std::wstring file = wide(folder.write("a.ini", row.before));
        TWDict dictionary;
        ASSERT_TRUE(dictionary.ReadFile(file.c_str()));
        ASSERT_TRUE(dictionary.WriteFile(file.c_str()));
        EXPECT_EQ(test::read(folder / "a.ini"), row.before);
        EXPECT_TRUE(dictionary.FindOrAddDict(L"a")->SetValue(L"k", 9));
        ASSERT_TRUE(dictionary.WriteFile(file.c_str()));
        EXPECT_EQ(test::read(folder / "a.ini"), row.after);
    }
}

TEST(SiblingsDictionary, ValuesComeBackAfterTheFile) {
    const test::folder folder;
    const std::wstring file = wide(folder / "a.ini");
    constexpr double reals[] = {0.0, -0.0, 0.1, 100.0, 1e300, std::numbers::pi, 5e-324};
    constexpr int lowest = std::numeric_limits<int>::min();
    {
        TWDict dictionary;
        TWDictSection& section = *dictionary.FindOrAddDict(L"管线设置");
        for (int i = 0; i < static_cast<int>(std::size(reals)); ++i)
            EXPECT_TRUE(section.SetValue(std::to_wstring(i).c_str(), reals[i]));
        EXPECT_TRUE(section.SetValue(L"弯头 [曲率]", lowest));
        EXPECT_TRUE(section.SetValue(L"text", L"a = b;#[c]"));
        ASSERT_TRUE(dictionary.WriteFile(file.c_str()));
    }
    TWDict dictionary;
    ASSERT_TRUE(dictionary.ReadFile(file.c_str()));
    const TWDictSection& section = *dictionary.FindOrAddDict(L"管线设置");
    for (int i = 0; i < static_cast<int>(std::size(reals)); ++i) {
        double value = 7;
        EXPECT_TRUE(section.GetValue(std::to_wstring(i).c_str(), value));
        EXPECT_EQ(value, reals[i]);
        EXPECT_EQ(std::signbit(value), std::signbit(reals[i]));
    }
    int number = 0;
    EXPECT_TRUE(section.GetValue(L"弯头 [曲率]", number));
    EXPECT_EQ(number, lowest);
    CString text;
    EXPECT_TRUE(section.GetValue(L"text", text));
    EXPECT_STREQ(text, L"a = b;#[c]");
}

TEST(SiblingsDictionary, ATextThatIsNoNumberLeavesTheVariable) {
    const struct {
        const char* text;
        bool is_integer;
        bool is_real;
    } rows[] = {
        {"5", true, true},           {" +5 ", true, true},
        {"5.0", false, true},        {"", false, false},
        {"five", false, false},      {"5 mm", false, false},
        {"0x5", false, false},       {"nan", false, false},
        {"2147483648", false, true}, {"-2147483649", false, true},
        {"1e999", false, false},
    };
    const test::folder folder;
    for (const auto& row : rows) {
        TWDict dictionary;
        ASSERT_TRUE(
            dictionary.ReadFile(wide(folder.write("a.ini", std::string("[a]\nk=") + row.text)).c_str()));
        int number = -1;
        double real = -1;
        EXPECT_EQ(dictionary.FindOrAddDict(L"a")->GetValue(L"k", number), row.is_integer) << row.text;
        EXPECT_EQ(number != -1, row.is_integer) << row.text;
        EXPECT_EQ(dictionary.FindOrAddDict(L"a")->GetValue(L"k", real), row.is_real) << row.text;
        EXPECT_EQ(real != -1, row.is_real) << row.text;
        EXPECT_FALSE(dictionary.FindOrAddDict(L"a")->GetValue(L"K", number));
    }
}

TEST(SiblingsDictionary, RefusesWhatItCouldNotReadBack) {
    const test::folder folder;
    const std::wstring file = wide(folder / "a.ini");
    TWDict dictionary;
    TWDictSection& section = *dictionary.FindOrAddDict(L"a");
    for (const wchar_t* const key : {L"", L" k", L"k ", L"k=", L";k", L"#k", L"[k", L"k\n"})
        EXPECT_FALSE(section.SetValue(key, 1)) << base::narrow(key);
    EXPECT_FALSE(section.SetValue(L"k", L"1\r2"));
    CString text = L"as it was";
    EXPECT_FALSE(section.GetValue(L"", text));
    EXPECT_STREQ(text, L"as it was");
    EXPECT_EQ(dictionary.FindOrAddDict(L"a\n[b]"), nullptr);
    EXPECT_FALSE(dictionary.ReadFile(file.c_str()));
    folder.write("a.ini", "[\xB9\xDC]\nk=\xFF\n"); // no GBK
    EXPECT_FALSE(dictionary.ReadFile(file.c_str()));
    EXPECT_EQ(dictionary.FindOrAddDict(L"a"), &section);
    {
        TWDict chinese;
        ASSERT_TRUE(chinese.ReadFile(wide(folder.write("b.ini", "[\xB9\xDC]\n")).c_str()));
        EXPECT_TRUE(chinese.FindOrAddDict(L"管")->SetValue(L"k", L"\U0001F6B0"));
        EXPECT_FALSE(chinese.WriteFile(wide(folder / "b.ini").c_str())) << "GBK has no such character";
        EXPECT_EQ(test::read(folder / "b.ini"), "[\xB9\xDC]\n");
    }
    EXPECT_FALSE(dictionary.WriteFile(wide(folder / "none/a.ini").c_str()));
    // The empty name is a section's like any other, not what stands in front of all sections.
    EXPECT_TRUE(dictionary.FindOrAddDict(L"")->SetValue(L"k", 1));
    ASSERT_TRUE(dictionary.WriteFile(file.c_str()));
    EXPECT_EQ(test::read(folder / "a.ini"), "[a]\r\n[]\r\nk=1\r\n");
}

} // namespace
