#include "sys/registry.h"

#include "sys/posix/registry_text.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using sys::registry_read;
using sys::registry_value;

// The file's form of a text without characters above U+FFFF.
std::string utf16(std::wstring_view text, std::string bytes = "\xFF\xFE") {
    for (const wchar_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

bool write(std::wstring_view key, std::wstring name, registry_value value) {
    const std::pair<std::wstring, registry_value> values[] = {{std::move(name), std::move(value)}};
    return bool(sys::registry_write(key, values));
}

TEST(SysRegistry, WritesTheEditorsForm) {
    const test::profile profile;
    const std::pair<std::wstring, registry_value> values[] = {
        {L"Count", 10u},
        {L"Path \"x\"", L"C:\\a \"b\""},
        {L"", L"水"},
        {L"High", 0xFFFFFFFFu},
    };
    ASSERT_TRUE(sys::registry_write(L"Software\\X\\KOLConfig", values));
    EXPECT_EQ(test::read(profile / "registry.reg"), utf16(L"Windows Registry Editor Version 5.00\r\n"
                                                          L"\r\n"
                                                          L"[HKEY_CURRENT_USER\\Software\\X\\KOLConfig]\r\n"
                                                          L"\"Count\"=dword:0000000a\r\n"
                                                          L"\"Path \\\"x\\\"\"=\"C:\\\\a \\\"b\\\"\"\r\n"
                                                          L"@=\"水\"\r\n"
                                                          L"\"High\"=dword:ffffffff\r\n"));
    for (const auto& [name, value] : values)
        EXPECT_EQ(registry_read(L"\\software\\x\\kolCONFIG\\", name), value) << testing::PrintToString(name);
    EXPECT_EQ(registry_read(L"Software\\X", L"Count"), std::nullopt);
    EXPECT_EQ(registry_read(L"Software\\X\\KOLConfig", L"None"), std::nullopt);
    EXPECT_FALSE(write(L"", L"n", 1u));
    EXPECT_FALSE(write(L"a\nb", L"n", 1u));
    EXPECT_FALSE(write(L"a", L"n\n[b]", 1u));
    EXPECT_FALSE(write(L"a", L"n", L"1\r\n2"));
    EXPECT_EQ(registry_read(L"a", L"n"), std::nullopt);
}

TEST(SysRegistry, KeepsWhatItDoesNotUnderstand) {
    const test::profile profile;
    const std::wstring before = L"Windows Registry Editor Version 5.00\r\n"
                                L"; a remark\r\n"
                                L"\r\n"
                                L"[-HKEY_CURRENT_USER\\Old]\r\n"
                                L"[HKEY_CURRENT_USER\\A]\r\n"
                                L"@=\"default\"\r\n"
                                L"\"List\"=hex(7):61,00,\\\r\n"
                                L"  62,00,\\\r\n"
                                L"  \"Two\"=,63\r\n"
                                L"\"one\"=dword:1\r\n"
                                L"nonsense = \"\r\n"
                                L"\"Gone\"=-\r\n";
    const std::wstring after = L"\r\n"
                               L"[HKEY_CURRENT_USER\\B]\r\n"
                               L"\"One\"=\"other\"\r\n"
                               L"[HKEY_LOCAL_MACHINE\\A]\r\n"
                               L"\"One\"=dword:00000007\r\n";
    test::put(profile / "registry.reg", utf16(before + after));
    EXPECT_EQ(registry_read(L"a", L""), registry_value(L"default"));
    EXPECT_EQ(registry_read(L"A", L"ONE"), registry_value(1u));
    EXPECT_EQ(registry_read(L"A", L"List"), std::nullopt);
    EXPECT_EQ(registry_read(L"B", L"One"), registry_value(L"other"));

    // The same value again changes nothing, not even the way it is written.
    ASSERT_TRUE(write(L"A", L"One", 1u));
    EXPECT_EQ(test::read(profile / "registry.reg"), utf16(before + after));

    ASSERT_TRUE(write(L"A", L"Two", 2u));
    ASSERT_TRUE(write(L"A", L"ONE", 3u));
    ASSERT_TRUE(sys::registry_erase(L"b", L"one"));
    ASSERT_TRUE(sys::registry_erase(L"b", L"one"));
    std::wstring expected = before + L"\"Two\"=dword:00000002\r\n" + after;
    expected.replace(expected.find(L"\"one\"=dword:1"), 13, L"\"ONE\"=dword:00000003");
    expected.erase(expected.find(L"\"One\"=\"other\"\r\n"), 15);
    EXPECT_EQ(test::read(profile / "registry.reg"), utf16(expected));
    EXPECT_EQ(registry_read(L"B", L"One"), std::nullopt);
}

// A file that ends anywhere, or that is none at all: every byte that was there is there afterwards.
TEST(SysRegistry, DamageIsNotMadeWorse) {
    const std::string whole =
        utf16(L"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n"
              L"\"text\"=\"a \\\\ b \\\"\"\r\n\"list\"=hex(2):61,00,\\\r\n  62,00\r\n\"n\"=dword:00000005");
    for (std::size_t size = 2; size <= whole.size(); ++size) {
        std::string left = whole.substr(0, size);
        sys::registry_text text(left);
        ASSERT_TRUE(text.write(L"New\\Key", L"value", 7u)) << size;
        const std::string bytes = text.bytes();
        EXPECT_EQ(sys::registry_text(bytes).read(L"New\\Key", L"value"), registry_value(7u)) << size;
        while (left.size() > 2 && (left.back() == '\0' || left.back() == '\r' || left.back() == '\n'))
            left.pop_back();
        EXPECT_NE(bytes.find(left.substr(2)), std::string::npos) << size;
    }
    sys::registry_text text("\xEF\xBB\xBF[HKEY_CURRENT_USER\\K]\n\"n\"=dword:5\nbroken \xFF\n");
    EXPECT_EQ(text.read(L"K", L"n"), registry_value(5u));
    text.write(L"K", L"m", 6u);
    EXPECT_NE(text.bytes().find(utf16(L"broken \xDCFF\r\n", "")), std::string::npos);
}

TEST(SysRegistry, AnUnreadableFileIsNotReplaced) {
    const test::profile profile;
    std::filesystem::create_directory(profile / "registry.reg");
    const auto erased = sys::registry_erase(L"K", L"n");
    ASSERT_FALSE(erased);
    EXPECT_EQ(erased.error(),
              L"cannot read '" + sys::from_path(profile / "registry.reg") + L"': it is a folder");
    EXPECT_FALSE(write(L"K", L"n", 1u));
}

TEST(SysRegistry, AFileInAnotherEncodingIsLeftAlone) {
    const test::profile profile;
    const std::string gbk =
        "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n\"n\"=\"\xB8\xF8\xCB\xAE\"\r\n\"i\"=dword:00000007\r\n";
    test::put(profile / "registry.reg", gbk);
    EXPECT_EQ(sys::registry_read(L"K", L"i"), sys::registry_value(7u)) << "what can be read is used";
    const std::pair<std::wstring, sys::registry_value> values[] = {{L"x", 1u}};
    const auto written = sys::registry_write(L"K", values);
    ASSERT_FALSE(written);
    EXPECT_NE(written.error().find(L"UTF"), std::wstring::npos);
    EXPECT_EQ(test::read(profile / "registry.reg"), gbk);
}

// Files of one size and, as clocks go in steps, often of one time: only the file's identity tells them apart.
TEST(SysRegistry, NoticesAReplacedFile) {
    const test::profile profile;
    for (std::uint32_t i = 0; i < 200; ++i) {
        const pid_t child =
            test::start_child([&] { return !write(L"K", L"n", i + 1000) || !write(L"K", L"n", i); });
        ASSERT_EQ(test::wait_for(child), 0);
        ASSERT_EQ(registry_read(L"K", L"n"), registry_value(i));
    }
}

TEST(SysRegistry, ManyWritersLoseNothing) {
    const test::profile profile;
    const auto key = [](int writer) {
        return writer % 2 ? std::wstring(L"Shared") : L"Own\\" + std::to_wstring(writer);
    };
    const auto name = [](int writer, unsigned i) {
        return std::to_wstring(writer) + L"_" + std::to_wstring(i);
    };
    const auto write_hundred = [&](int writer) {
        bool good = true;
        for (unsigned i = 0; i < 100; ++i)
            good = write(key(writer), name(writer, i), i) && good;
        return good;
    };
    pid_t children[8] = {};
    for (int writer = 0; writer < 8; ++writer)
        children[writer] = test::start_child([&] { return !write_hundred(writer); });
    // Two threads of this process join in.
    std::thread thread([&] { EXPECT_TRUE(write_hundred(8)); });
    EXPECT_TRUE(write_hundred(9));
    thread.join();
    for (const pid_t child : children)
        EXPECT_EQ(test::wait_for(child), 0);
    for (int writer = 0; writer < 10; ++writer) {
        for (unsigned i = 0; i < 100; ++i)
            ASSERT_EQ(registry_read(key(writer), name(writer, i)), registry_value(i)) << writer << ' ' << i;
    }
}

} // namespace
