// Which standard counts when the module comes, what is left of it in files and registry, and what is wrong in
// a file that somebody wrote by hand.
#include "base/utf.h"
#include "module/standard/StandardCheck.h"
#include "module/standard/StandardFile.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "sys/code_page.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// A profile as the first start leaves it, and no manager.
class StandardManager : public testing::Test {
protected:
    StandardManager() {
        sys::set_profile_folder(m_folder.path());
        EXPECT_TRUE(sys::prepare_profile(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share"));
        CStandardManager::Release();
    }
    ~StandardManager() override { CStandardManager::Release(); }

    static TRegProperty Setting() { return {GetRegLocation(), L"PipeSystemSetting"}; }
    static CString Remembered() {
        CString value;
        Setting().GetValue(L"StandardFile", value);
        return value;
    }
    static CString InSystemFolder(std::string_view name) {
        return (sys::system_folder() / name).wstring().c_str();
    }
    // The manager after the module's start; the first layer definition is named after the file.
    static const CStandardManager& Started() {
        CStandardManager::Release();
        CStandardManager::Create().ChooseAndLoad();
        return *CStandardManager::Current();
    }
    void WriteStandard(std::string_view name) const {
        std::filesystem::copy_file(sys::system_folder() / "kol.vrsl", sys::system_folder() / name);
    }

    test::folder m_folder;
};

std::string Gbk(std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text)
        EXPECT_TRUE(sys::code_page::find(936)->encode(static_cast<char32_t>(c), bytes));
    return bytes;
}

} // namespace

TEST_F(StandardManager, TheFileOfTheRegistryCountsElseTheSystemFolders) {
    EXPECT_EQ(Started().FileName(), InSystemFolder("kol.vrsl"));
    EXPECT_EQ(Remembered(), InSystemFolder("kol.vrsl"));

    WriteStandard("my.vrsl");
    ASSERT_TRUE(Setting().SetValue(L"StandardFile", L"my.vrsl")); // a bare name
    EXPECT_EQ(Started().FileName(), InSystemFolder("my.vrsl"));
    EXPECT_EQ(Remembered(), InSystemFolder("my.vrsl"));

    for (const wchar_t* name : {L"none.vrsl", L"/nowhere/none.vrsl", L"D:\\std\\none.vrsl", L""}) {
        ASSERT_TRUE(Setting().SetValue(L"StandardFile", name));
        EXPECT_EQ(Started().FileName(), InSystemFolder("kol.vrsl")) << base::narrow(name);
    }
    ASSERT_TRUE(Setting().SetValue(L"StandardFile", 7)); // no text
    EXPECT_EQ(Started().FileName(), InSystemFolder("kol.vrsl"));
    // A folder is no file.
    ASSERT_TRUE(Setting().SetValue(L"StandardFile", m_folder.path().wstring().c_str()));
    EXPECT_EQ(Started().FileName(), InSystemFolder("kol.vrsl"));
}

TEST_F(StandardManager, WithoutAFileTheBuiltInStandardCounts) {
    ASSERT_TRUE(Setting().SetValue(L"StandardFile", L""));
    for (const std::string& bytes : {std::string("<Vantrel><PipeSystem>"), std::string()}) {
        m_folder.write("sys/kol.vrsl", bytes);
        const CStandardManager& manager = Started();
        EXPECT_TRUE(manager.IsLoaded());
        EXPECT_EQ(manager.FileName(), L"");
        EXPECT_EQ(manager.Standard().m_groups.size(), 6U);
        EXPECT_EQ(Remembered(), L"") << "what could not be read is not remembered";
    }
}

TEST_F(StandardManager, LayerDefinitionsAreWrittenForOlderPrograms) {
    Started();
    const auto path = sys::system_folder() / "LAYERDEF.DAT";
    const std::string written = test::read(path);
    const std::string first = Gbk(L"给水 管线 3 PIPE-给水 Continuous\r\n");
    EXPECT_EQ(written.substr(0, first.size()), first);
    const auto before = std::filesystem::last_write_time(path) - std::chrono::hours(1);
    std::filesystem::last_write_time(path, before);
    Started();
    EXPECT_EQ(std::filesystem::last_write_time(path), before) << "it was so already";

    // Brought up to date: lines of others stay.
    const std::string foreign = "OLD TYPE 5 L C\r\n";
    const std::string wrong = Gbk(L"给水 管线 9 X Y\r\n");
    m_folder.write("sys/LAYERDEF.DAT", foreign + wrong + written.substr(first.size()));
    CStandardManager::Release();
    CStandardManager::Create().SetKeepLayerDefinitions(true);
    CStandardManager::Create().ChooseAndLoad();
    EXPECT_EQ(test::read(path), foreign + written);
    Started();
    EXPECT_EQ(test::read(path), written);
}

TEST(StandardCheck, TellsWhatIsWrongAndWhere) {
    const test::folder folder;
    const auto path = folder.write("hand.vrsl", R"(<Vantrel>
<PipeSystem><PipeGroup Name="">
<Pipe><BaseInfo><PipeName>a</PipeName><Material>wood</Material></BaseInfo>
<SysMap><MapItem><SrcItem>x</SrcItem>
<DesItem>none</DesItem></MapItem></SysMap>
<Layer LayerType="P"><LayerName>L</LayerName><LayerColor>300</LayerColor><LineStyle>WAVY</LineStyle></Layer>
<Layer LayerType="P"><LayerName/><LineWeight>0.3</LineWeight><LayerColor>1,2</LayerColor></Layer></Pipe>
<Pipe><BaseInfo><PipeName>a</PipeName></BaseInfo></Pipe>
<Pipe><BaseInfo><PipeName>b</PipeName></BaseInfo>
<Layer LayerType="P"><LayerName>l</LayerName><LayerColor>256</LayerColor><LineStyle>continuous</LineStyle></Layer></Pipe>
</PipeGroup></PipeSystem></Vantrel>)");
    std::vector<StandardFault> faults;
    EXPECT_TRUE(CheckStandardFile(path.wstring().c_str(), {{L"Continuous"}, {L"PP-R"}}, faults));
    std::string told;
    for (const StandardFault& fault : faults)
        told += std::to_string(fault.line) + " " + base::narrow(fault.element.GetString()) + " " +
                base::narrow(fault.what.GetString()) + "\n";
    EXPECT_EQ(told, "2 PipeGroup 系统组没有名称\n"
                    "3 Material 管材 \"wood\" 没有管径表\n"
                    "5 DesItem 映射目标 \"none\" 不存在\n"
                    "6 LayerColor 颜色 \"300\" 无效\n"
                    "6 LineStyle 线型 \"WAVY\" 未知\n"
                    "7 Layer 系统 \"a\" 有两个图层类型 \"P\"\n"
                    "7 LayerName 图层没有名称\n"
                    "7 LineWeight 线宽 \"0.3\" 无效\n"
                    "7 LayerColor 颜色 \"1,2\" 无效\n"
                    "8 PipeName 系统名称 \"a\" 已经使用\n"
                    "10 LayerName 图层 \"l\" 已经用于 \"a\"\n");

    // The one that is shipped has nothing wrong; what is no document is told as that.
    faults.clear();
    const auto shipped = std::filesystem::path(ZEF_SOURCE_FOLDER) / "share/kol.vrsl";
    const StandardKnowledge known = {{L"Continuous", L"DASHED", L"CENTER"},
                                     {L"PP-R", L"PE100", L"PVC-U", L"镀锌钢管", L"球墨铸铁管"}};
    EXPECT_TRUE(CheckStandardFile(shipped.wstring().c_str(), known, faults));
    EXPECT_TRUE(faults.empty());
    EXPECT_FALSE(CheckStandardFile(folder.write("no.vrsl", "<a>").wstring().c_str(), known, faults));
    EXPECT_EQ(faults.size(), 1U);
}
