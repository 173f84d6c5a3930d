// Options in the registry by type, and the defaults of the pipe entities.
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "sys/folders.h"
#include "sys/registry.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

TEST(SiblingsRegistry, ValuesHaveTypes) {
    const test::folder profile;
    sys::set_profile_folder(profile.path());
    TRegProperty key(GetRegLocation(), L"KOLConfig");
    EXPECT_TRUE(key.SetValue(L"integer", -5));
    EXPECT_TRUE(key.SetValue(L"real", 0.1));
    EXPECT_TRUE(key.SetValue(L"text", CString(L"管线")));
    const std::wstring path = std::wstring(GetRegLocation()) + L"\\KOLConfig";
    EXPECT_EQ(sys::registry_read(path, L"integer"), sys::registry_value(0xFFFFFFFBu));
    EXPECT_EQ(sys::registry_read(path, L"real"), sys::registry_value(L"0.1"));
    EXPECT_EQ(sys::registry_read(path, L"text"), sys::registry_value(L"管线"));

    const struct {
        const wchar_t* name;
        bool integer, real, text;
    } rows[] = {{L"integer", true, false, false},
                {L"REAL", false, true, true},
                {L"text", false, false, true},
                {L"none", false, false, false}};
    for (const auto& row : rows) {
        int integer = 1;
        double real = 1;
        CString text = L"1";
        EXPECT_EQ(key.GetValue(row.name, integer), row.integer) << row.name;
        EXPECT_EQ(integer, row.integer ? -5 : 1) << row.name;
        EXPECT_EQ(key.GetValue(row.name, real), row.real) << row.name;
        EXPECT_EQ(real, row.real ? 0.1 : 1) << row.name;
        EXPECT_EQ(key.GetValue(row.name, text), row.text) << row.name;
        EXPECT_EQ(text != L"1", row.text) << row.name;
    }

    int integer = 1;
    key.SetTopRootKey(nullptr);
    EXPECT_FALSE(key.GetValue(L"integer", integer));
    EXPECT_FALSE(key.SetValue(L"integer", 6));
    key.SetTopRootKey(HKEY_CURRENT_USER);
    EXPECT_TRUE(key.GetValue(L"integer", integer));
    EXPECT_EQ(integer, -5);
}

TEST(SiblingsDefaults, AreSetByKindAndNumber) {
    bool flag = false;
    int integer = 0;
    double real = 0;
    EXPECT_TRUE(TDefaultCfg::GetDefaultValue(TDefaultCfg::kReal, 2, real));
    EXPECT_TRUE(TDefaultCfg::SetDefaultValue(TDefaultCfg::kReal, 2, 4.5));
    EXPECT_TRUE(TDefaultCfg::SetDefaultValue(TDefaultCfg::kBoolean, 2, true));
    EXPECT_EQ(GetPsBreakWidth(), 4.5);
    EXPECT_NE(GetPsPipeTextDis(), 4.5);
    EXPECT_TRUE(IsPsLineWeight());
    EXPECT_FALSE(TDefaultCfg::SetDefaultValue(TDefaultCfg::kBoolean, 2, 0));
    EXPECT_FALSE(TDefaultCfg::SetDefaultValue(TDefaultCfg::kReal, 6, 1.0));
    EXPECT_FALSE(TDefaultCfg::GetDefaultValue(TDefaultCfg::kBoolean, 0, flag));
    EXPECT_FALSE(TDefaultCfg::GetDefaultValue(TDefaultCfg::kReal, 1, integer));
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kReal, 2, real);
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kBoolean, 2, false);
}

} // namespace
