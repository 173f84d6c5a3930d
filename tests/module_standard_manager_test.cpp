// Which standard counts when the module comes, what is left of it in files and registry, and what is wrong in
// a file that somebody wrote by hand.
#include "base/utf.h"
#include "host/ed/editor.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/StandardCheck.h"
#include "module/standard/StandardFile.h"
#include "module/standard/StandardManager.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/code_page.h"
#include "sys/folders.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST_F(StandardManager, AHalfWrittenFileLeavesEverythingAsItWas) {
    CStandardManager& manager = CStandardManager::Create();
    manager.ChooseAndLoad();
    const std::string whole = test::read(sys::system_folder() / "kol.vrsl");
    const std::size_t groups = manager.Standard().m_groups.size();
    std::string told;
    ed::command_line::instance().set_error_sink([&](std::string_view text) { told += text; });
    ed::command_line::instance().set_sink([&](std::string_view text) { told += text; });
    for (std::size_t length = 0; length < whole.size() - 2; length += 4999) {
        const auto path = m_folder.write("half.vrsl", std::string_view(whole).substr(0, length));
        told.clear();
        EXPECT_FALSE(manager.Load(path.wstring().c_str(), length % 2 == 0)) << length;
        EXPECT_EQ(told.find("加载标准文件失败！") != told.npos, length % 2 == 0) << length;
        EXPECT_EQ(manager.FileName(), InSystemFolder("kol.vrsl"));
        EXPECT_EQ(manager.Standard().m_groups.size(), groups);
    }
    const auto whole_path = m_folder.write("half.vrsl", whole);
    EXPECT_TRUE(manager.Load(std::filesystem::relative(whole_path).wstring().c_str(), false));
    EXPECT_TRUE(std::filesystem::path(manager.FileName().GetString()).is_absolute());
    EXPECT_TRUE(manager.Load(InSystemFolder("kol.vrsl"), false));
    ed::command_line::instance().set_error_sink({});
    ed::command_line::instance().set_sink({});
    EXPECT_EQ(Remembered(), InSystemFolder("kol.vrsl"));
    // Saving where nothing can be written.
    EXPECT_FALSE(manager.Save((m_folder.path() / "none" / "x.vrsl").wstring().c_str()));
    EXPECT_FALSE(manager.Save(m_folder.path().wstring().c_str()));
    EXPECT_EQ(manager.FileName(), InSystemFolder("kol.vrsl"));
}

TEST_F(StandardManager, ValuesOfTheRegistryThatAreNoTextAreNone) {
    for (const char* value :
         {"dword:00000007", "hex:6d,00,79,00", "hex(2):6d,00", "hex(7):6d,00,00,00", "-", "x"}) {
        m_folder.write("registry.reg", "Windows Registry Editor Version 5.00\r\n\r\n"
                                       "[HKEY_CURRENT_USER\\Software\\ZEF\\KOL\\PipeSystemSetting]\r\n"
                                       "\"StandardFile\"=" +
                                           std::string(value) + "\r\n");
        EXPECT_EQ(Started().FileName(), InSystemFolder("kol.vrsl")) << value;
        EXPECT_EQ(Remembered(), InSystemFolder("kol.vrsl")) << value;
    }
}

TEST(StandardCommand, ShowsOpensSavesAndChecks) {
    const test::folder profile;
    const auto run = [&](const std::string& script) {
        return test::zefhost({"--profile", profile.path().string(), "-c", script});
    };
    const auto shown = run("gxsz\\nB\\n\\n");
    EXPECT_EQ(shown.status, 0) << shown.err;
    // Of each kind of table one line.
    for (const char* part : {"管道系统标准: ", "kol.vrsl", "给水系统", "PIPE-给水", "Continuous", "PP-R",
                             "打开(O)/保存(S)/检查(C)/退出(Q) 或 路径=值] <退出>:"})
        EXPECT_NE(shown.out.find(part), std::string::npos) << part << "\n" << shown.out.substr(0, 2000);

    const std::string copy = (profile.path() / "copy.vrsl").string();
    const auto saved = run("gxsz\\nS\\n" + copy + "\\nC\\n" + copy + "\\nO\\n" + copy + "\\n\\n");
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_NE(saved.out.find("已保存标准文件 " + copy), std::string::npos) << saved.out;
    EXPECT_NE(saved.out.find("0 个问题"), std::string::npos);
    EXPECT_NE(saved.out.find("已打开标准文件 " + copy), std::string::npos);
    EXPECT_EQ(test::read(copy), test::read(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share/kol.vrsl"));

    // What was opened is the choice from then on; what is there is replaced only when that is wanted.
    const auto again = run("gxsz\\nS\\n" + copy + "\\nN\\nS\\n" + copy + "\\nY\\n\\n");
    EXPECT_NE(again.out.find("管道系统标准: " + copy), std::string::npos) << again.out.substr(0, 200);
    EXPECT_NE(again.out.find("\n文件已存在，是否替换[是(Y)/否(N)] <否>:"), std::string::npos);
    const std::size_t first = again.out.find("已保存标准文件");
    EXPECT_NE(first, std::string::npos) << again.err;
    EXPECT_EQ(again.out.find("已保存标准文件", first + 1), std::string::npos);

    // A file that is none: the message, why, and the standard stays.
    const auto broken = run("gxsz\\nO\\nnothing\\n\\ngxsz\\n\\n");
    EXPECT_EQ(broken.status, 4);
    EXPECT_NE((broken.out + broken.err).find("加载标准文件失败！"), std::string::npos) << broken.err;
    EXPECT_NE((broken.out + broken.err).find("sys/nothing.vrsl: 文件无法读取"), std::string::npos)
        << broken.err;
    EXPECT_NE(broken.out.find("管线系统 44 个"), std::string::npos);
    // Nor is a file without systems remembered.
    const auto page = profile.write("page.vrsl", "<html/>").string();
    EXPECT_NE(run("gxsz\\nO\\n" + page + "\\n\\n").out.find("其中没有管线系统！"), std::string::npos);
    EXPECT_NE(run("gxsz\\n\\n").out.find("管道系统标准: " + copy), std::string::npos);
    // Escape ends the command wherever it is pressed.
    for (const char* script : {"gxsz ^C", "gxsz O ^C", "gxsz S ^C", "gxsz C ^C"})
        EXPECT_EQ(run(script).out.find("个问题"), std::string::npos) << script;
    // The choice that can not be read: one line tells why, the built-in standard counts, the run is no good
    // one.
    profile.write("copy.vrsl", "<Vantrel>\n<PipeSystem></Vantrel>");
    const auto started = run("gxsz\\n\\n");
    EXPECT_EQ(started.status, 1);
    const std::string why =
        "标准文件 " + copy +
        ": 第 2 行: 不是合式的 XML: start tag 'PipeSystem' at offset 10 expecting end tag ";
    EXPECT_NE(started.err.find("zefhost: " + why), std::string::npos) << started.err;
    EXPECT_EQ(std::ranges::count(started.err, '\n'), 1) << started.err;
    EXPECT_NE(started.out.find("管道系统标准: 内置"), std::string::npos) << started.out.substr(0, 400);
    // Bytes that are none of the encoding that the file declares: told at opening, at every start and by the
    // check.
    profile.write("copy.vrsl",
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Vantrel><PipeSystem><PipeGroup Name=\"g\">\n"
                  "<Pipe><BaseInfo><PipeName>" +
                      Gbk(L"给水") + "</PipeName></BaseInfo></Pipe></PipeGroup></PipeSystem></Vantrel>");
    const std::string garbled = "第 3 行: 文件内容不符合编码 utf-8，文字可能是错的";
    const auto opened = run("gxsz\\nO\\n" + copy + "\\nC\\n\\n\\n");
    EXPECT_EQ(opened.status, 1);
    EXPECT_NE(opened.err.find("zefhost: 标准文件 " + copy + ": " + garbled), std::string::npos) << opened.err;
    EXPECT_NE(opened.out.find("已打开标准文件 " + copy + "\n标准文件 " + copy + ": " + garbled),
              std::string::npos)
        << opened.out;
    EXPECT_NE(opened.out.find("\n" + garbled + "\n" + copy + ": 1 个问题"), std::string::npos) << opened.out;
    // Faults by line and element.
    profile.write("bad.vrsl", "<Vantrel><PipeSystem>\n<PipeGroup Name=\"\"/></PipeSystem></Vantrel>");
    const auto checked = run("gxsz\\nC\\n" + (profile.path() / "bad.vrsl").string() + "\\n\\n");
    EXPECT_NE(checked.out.find("第 2 行 PipeGroup: 系统组没有名称"), std::string::npos) << checked.out;
}

TEST_F(StandardManager, LayerDefinitionsAreWrittenForOlderPrograms) {
    Started();
    const auto path = sys::system_folder() / "LAYERDEF.DAT";
    const std::string written = test::read(path);
    const std::string first = Gbk(L"给水 管线 3 PIPE-给水 VR-J\r\n");
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
<Pipe><BaseInfo><PipeName>a</PipeName><Material>wood</Material><OutdoorMaterial>PP-R</OutdoorMaterial></BaseInfo>
<SysMap><MapItem><SrcItem>x</SrcItem>
<DesItem>none</DesItem></MapItem></SysMap>
<Layer LayerType="P"><LayerName>L</LayerName><LayerColor>300</LayerColor><LineStyle>WAVY</LineStyle></Layer>
<Layer LayerType="P"><LayerName/><LineWeight>0.3</LineWeight><LayerColor>1,2</LayerColor></Layer></Pipe>
<Pipe><BaseInfo><PipeName>a</PipeName></BaseInfo></Pipe>
<Pipe><BaseInfo><PipeName>b</PipeName><LineWidth>1e999</LineWidth><VPipeRaidus>0.5 </VPipeRaidus></BaseInfo>
<Layer LayerType="P"><LayerName>l</LayerName><LayerColor>256</LayerColor><LineStyle>continuous</LineStyle></Layer>
<Layer LayerType="Q"><CanPlot>yes</CanPlot><CanDel>1</CanDel></Layer></Pipe>
</PipeGroup></PipeSystem><OtherLayer><LayerGroup LayerType="g"><Layer><LayerName>a*b</LayerName></Layer></LayerGroup>
</OtherLayer><TextStyleSetting><TextStyleSet><TextStyle><WinFont>0</WinFont><Bold>2</Bold></TextStyle></TextStyleSet>
</TextStyleSetting><ObjectColorSetting><ObjectColor>
<Color>1,2,256</Color></ObjectColor></ObjectColorSetting></Vantrel>)");
    std::vector<StandardFault> faults;
    EXPECT_TRUE(CheckStandardFile(path.wstring().c_str(),
                                  {{L"Continuous"}, {{L"PP-R", L"", true, false, L"", {}}}}, faults));
    std::string told;
    for (const StandardFault& fault : faults)
        told += std::to_string(fault.line) + " " + base::narrow(fault.element.GetString()) + " " +
                base::narrow(fault.what.GetString()) + "\n";
    EXPECT_EQ(told, "2 PipeGroup 系统组没有名称\n"
                    "3 Material 管材 \"wood\" 没有管径表\n"
                    "3 OutdoorMaterial 管材 \"PP-R\" 不用于室外\n"
                    "5 DesItem 映射目标 \"none\" 不存在\n"
                    "6 LayerColor 颜色 \"300\" 无效\n"
                    "6 LineStyle 线型 \"WAVY\" 未知\n"
                    "7 Layer 系统 \"a\" 有两个图层类型 \"P\"\n"
                    "7 LayerName 图层没有名称\n"
                    "7 LineWeight 线宽 \"0.3\" 无效\n"
                    "7 LayerColor 颜色 \"1,2\" 无效\n"
                    "8 PipeName 系统名称 \"a\" 已经使用\n"
                    "9 LineWidth 数值 \"1e999\" 无效\n"
                    "10 LayerName 图层 \"l\" 已经用于 \"a\"\n"
                    "11 CanPlot 标志 \"yes\" 应为 0 或 1\n"
                    "11 Layer 图层没有名称\n"
                    "12 LayerName 图层名 \"a*b\" 含有不允许的字符\n"
                    "13 Bold 标志 \"2\" 应为 0 或 1\n"
                    "15 Color 颜色 \"1,2,256\" 无效\n");

    // Well-formed, and something else.
    faults.clear();
    EXPECT_TRUE(CheckStandardFile(folder.write("page.vrsl", "<html/>").wstring().c_str(), {}, faults));
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(faults[0].what, L"根元素不是 \"Vantrel\"");
    EXPECT_EQ(faults[1].what, L"没有管线系统");

    // The one that is shipped has nothing wrong; what is no document is told as that.
    faults.clear();
    const auto shipped = std::filesystem::path(ZEF_SOURCE_FOLDER) / "share/kol.vrsl";
    const test::profile profile;
    ASSERT_TRUE(sys::prepare_profile(shipped.parent_path()));
    ReloadLinetypes();
    ReloadPipeMaterials();
    StandardKnowledge known = {{L"Continuous"}, {}};
    GetLinetypeNames(known.linetypes);
    known.materials = GetPipeMaterials();
    EXPECT_TRUE(CheckStandardFile(shipped.wstring().c_str(), known, faults));
    EXPECT_TRUE(faults.empty());
    EXPECT_FALSE(
        CheckStandardFile(folder.write("no.vrsl", "<a>\n<b>\n</a>").wstring().c_str(), known, faults));
    EXPECT_FALSE(CheckStandardFile((folder / "none.vrsl").wstring().c_str(), known, faults));
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(faults[0].line, 2);
    EXPECT_EQ(faults[0].what, L"不是合式的 XML: start tag 'b' at offset 4 expecting end tag at offset 8");
    EXPECT_EQ(faults[1].line, 0);
    EXPECT_EQ(faults[1].what, L"文件无法读取: file error");
}
