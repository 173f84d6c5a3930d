// The standard as a manager edits it: what is told, what is saved, what is refused, and that nothing happens
// where the asking is ended.
#include "module/settings/StandardChanges.h"
#include "module/settings/StandardComparison.h"
#include "module/standard/DefaultStandard.h"
#include "sys/folders.h"
#include "tests/layer_support.h"
#include "tests/support.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// Sessions with one profile, on the sample's plan.
class StandardSessions : public testing::Test {
protected:
    test::run_result Run(const std::string& script) {
        return test::zefhost({m_plan.string(), "--readonly", "--profile", m_folder.path().string()},
                             script + "\n");
    }
    std::string File(std::string_view name = "kol.vrsl") {
        return test::read(m_folder.path() / "sys" / name);
    }

    test::folder m_folder;
    const std::filesystem::path m_plan =
        m_folder.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
};

std::string Text(const std::vector<StandardDifference>& differences) {
    std::string text;
    for (const StandardDifference& one : differences)
        text += base::narrow(one.GetText().GetString()) + "\n";
    return text;
}

} // namespace

TEST_F(StandardSessions, EachEditIsToldAndSavedWhenWanted) {
    const struct {
        const char* script;
        const char* told;
        const char* saved; // a part of the file, or behind a minus one that it lacks then
    } rows[] = {
        {"gxsz G N 特殊系统 Q Y", "已新建系统组\"特殊系统\"。", "Name=\"特殊系统\""},
        {"gxsz X N 给水系统 四区给水 无此规则 Q", "标准中没有创建规则\"无此规则\"", "-四区给水"},
        {"gxsz X N 给水系统 四区给水 新建系统 Q Y", "已新建管线系统\"四区给水\"，图层 8 个：PIPE-四区给水,",
         ">VPIPE-四区给水<"},
        {"gxsz X C 消防 高区消防 Q Y", "图形中的图层在第一次用到时创建。", ">PIPE-高区消防<"},
        {"gxsz X R 四区给水 高区给水 Y Q Y", "图层名已随之修改。", ">PIPE-高区给水<"},
        {"gxsz X M 高区给水 G 特殊系统 Q Y", "已移到系统组\"特殊系统\"", nullptr},
        {"gxsz X M 给水2 U Q Y", "已上移一位", nullptr},
        {"gxsz X E 给水2 标注=JZ 线宽=0.6 OK Q Y", "已修改管线系统\"给水2\"", ">JZ<"},
        {"gxsz L N 给水2 保温 \"\" Q Y", "图层名\"保温-给水2\"", ">保温-给水2<"},
        {"gxsz 给水2/保温/图层名=BW-给水2 给水2/保温/颜色=30 Q Y", "已设置 给水2/保温/颜色=30", ">BW-给水2<"},
        {"gxsz L E 给水2 保温 线宽=0.30 可打印=否 OK Q Y", "已修改\"给水2\"的图层\"保温\"。", ">0.30<"},
        {"gxsz A 给水2 N 保温文字 管径文字 Q Y", "现在使用\"管径文字\"的图层", ">保温文字<"},
        {"gxsz A 给水2 D 保温文字 Q Y", "已删除\"给水2\"的映射", "-保温文字"},
        {"gxsz E 标注 R 标注层 Q Y", "已改名为\"标注层\"", "-归属\">标注<"},
        {"gxsz E 保温层 A 给水2 保温 Q Y", "已加入归属集合\"保温层\"", ">保温层<"},
        {"gxsz L D 给水2 保温 Y Q Y", "已删除\"给水2\"的图层\"保温\"", "-BW-给水2"},
        {"gxsz R N 管线 前缀=P- OK Q Y", "今后命名为\"P-系统名\"", ">P-<"},
        {"gxsz R C 简单 图层类型=管线，立管 OK X N 特殊系统 简单水 简单 Q Y", "图层 2 个：P-简单水",
         ">P-简单水<"},
        {"gxsz R D 简单 Y Q Y", "已删除创建规则", "-\"简单\""},
        {"gxsz T 管径标注 字高=4 OK 文字样式/立管标注/宽高比=0.75 Q Y", "已修改文字样式\"管径标注\"",
         ">4.000000<"},
        {"gxsz Y 新对象 颜色=255,0,128 OK Q Y", "\"新对象\"的颜色为255,0,128", ">新对象<"},
        {"gxsz X D 简单水 Y X D 高区给水 Y G D 特殊系统 Y Q Y", "已删除系统组\"特殊系统\"", "-特殊系统"},
    };
    for (const auto& row : rows) {
        const auto ran = Run(row.script);
        EXPECT_TRUE(test::says(ran, row.told) || ran.err.find(row.told) != ran.err.npos)
            << row.script << "\n"
            << ran.out << ran.err;
        if (row.saved == nullptr)
            continue;
        const bool lacks = *row.saved == '-';
        EXPECT_EQ(File().find(row.saved + (lacks ? 1 : 0)) == std::string::npos, lacks) << row.script;
    }
    // All of it is a good standard still; the next start has it.
    EXPECT_TRUE(test::says(Run("gxsz C \nQ"), "kol.vrsl: 0 个问题"));
    EXPECT_TRUE(test::says(Run("gxsz D * Q"), "+ 系统 高区消防"));
}

TEST_F(StandardSessions, WhatBreaksARuleIsRefusedAndNothingIsWritten) {
    const auto before = (Run("gxsz Q"), File());
    const struct {
        const char* script;
        const char* why;
    } rows[] = {
        {"gxsz X D 给水 Y Q", "管线系统\"给水\"不能删除！"},
        {"gxsz G R 给水系统 水 Q", "系统组\"给水系统\"不能改名！"},
        {"gxsz G D 给水系统 Y Q", "中还有管线系统，不能删除！"},
        {"gxsz X N 没有 新 只有管线 Q", "标准中没有系统组\"没有\"！"},
        {"gxsz X N 给水系统 给水 只有管线 Q", "管线系统\"给水\"已经存在！"},
        {"gxsz X N 给水系统 a*b 只有管线 Q", "不能作为图层名！"},
        {"gxsz X C 给水 给水2 Q", "已经存在！"},
        {"gxsz X M 给水 U Q", "已经在最前！"},
        {"gxsz 给水/管线/颜色=300 Q", "不是颜色"},
        {"gxsz 给水/管线/线宽=0.3 Q", "不是线宽"},
        {"gxsz 给水/管线/图层名=PIPE-给水2 Q", "图层名\"PIPE-给水2\"已用于系统\"给水2\"！"},
        {"gxsz 给水/高度=3 Q", "没有属性\"高度\"！"},
        {"gxsz 没有/管线/颜色=3 Q", "标准中没有管线系统或图层组\"没有\"！"},
        {"gxsz A 给水 N 管线 阀门 Q", "有自己的图层，不能映射！"},
        {"gxsz L D 给水 管线 Y Q", "不能删除！"},
        {"gxsz M X PP-R Y Q", "只能删除最后一种管材！"},
    };
    for (const auto& row : rows) {
        const auto ran = Run(row.script);
        EXPECT_NE(ran.err.find(row.why), std::string::npos) << row.script << "\n" << ran.out << ran.err;
        EXPECT_EQ(ran.status, 4) << row.script;
        EXPECT_EQ(File(), before) << row.script;
    }
}

TEST_F(StandardSessions, EscapeAndEnterLeaveEverythingAsItIs) {
    const auto before = (Run("gxsz Q"), File());
    const auto table = File("pipe.dbf");
    std::size_t cases = 0;
    for (const std::string asked : {"",
                                    "G",
                                    "G N",
                                    "G R",
                                    "G R 给水系统",
                                    "G M 给水系统",
                                    "G D 给水系统",
                                    "X",
                                    "X N",
                                    "X N 给水系统",
                                    "X C",
                                    "X C 给水",
                                    "X R",
                                    "X R 给水",
                                    "X M",
                                    "X M 给水",
                                    "X M 给水 G",
                                    "X D",
                                    "X D 给水",
                                    "X E",
                                    "L",
                                    "L E",
                                    "L E 给水",
                                    "L N 给水",
                                    "L D 给水",
                                    "L G",
                                    "A",
                                    "A 给水",
                                    "A 给水 N",
                                    "A 给水 N 甲",
                                    "E",
                                    "E 标注",
                                    "E 标注 R",
                                    "E 标注 D",
                                    "E 标注 A",
                                    "E 标注 A 给水",
                                    "R",
                                    "R N",
                                    "R C",
                                    "R D",
                                    "T",
                                    "Y",
                                    "M",
                                    "M D",
                                    "M D PP-R",
                                    "M D PP-R 20 OK",
                                    "M N",
                                    "M E",
                                    "M R",
                                    "M R PP-R",
                                    "M X",
                                    "I",
                                    "D ^C",
                                    "O",
                                    "S",
                                    "C ^C"})
        for (const char* const end : {" ^C", "\n\nQ"}) {
            if (test::sanitized && ++cases % 5 != 0)
                continue;
            const auto ran = Run("gxsz " + asked + end);
            EXPECT_EQ(ran.out.find("已修改"), std::string::npos) << asked << ran.out;
            EXPECT_EQ(ran.out.find("没有保存"), std::string::npos) << asked << ran.out;
        }
    EXPECT_EQ(File(), before);
    EXPECT_EQ(File("pipe.dbf"), table);
    // What was changed and is not to be saved stays in memory.
    const auto kept = Run("gxsz 给水/标注=JJ Q N\ngxsz Q N");
    EXPECT_TRUE(test::says(kept, "标准有 1 处修改没有保存")) << kept.out;
    EXPECT_EQ(File(), before);
}

TEST_F(StandardSessions, MaterialsAreWrittenToTheirTable) {
    const auto ran =
        Run("gxsz M D PP-R 20 外径=26 壁厚=3 OK Y M D PP-R 22 OK Y M N 新管 50 外径=60 壁厚=4 OK Y\n"
            "M E 新管 标注前缀=De 用途=I OK Y M R PP-R 22 Y Q\n"
            "gxsz B Q");
    EXPECT_TRUE(test::says(ran, "PP-R DN20：外径 26，壁厚 3。")) << ran.out << ran.err;
    const auto shown = Run("gxsz M D PP-R ? CANCEL M D ? CANCEL Q");
    EXPECT_NE(shown.out.find("20       26   20"), std::string::npos) << shown.out;
    EXPECT_EQ(shown.out.find("] 22 "), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find("新管"), std::string::npos);
    EXPECT_TRUE(test::says(Run("gxsz M X 新管 Y Q"), "已删除管材\"新管\"。"));
}

TEST_F(StandardSessions, ImportsAreProposals) {
    // LAYERDEF.DAT as the start wrote it is in line; a changed line and foreign ones are proposals.
    const auto same = Run("gxsz I L \nQ");
    EXPECT_TRUE(test::says(same, "与标准一致，没有建议。")) << same.out << same.err;
    m_folder.write("other.dat", "\xB8\xF8\xCB\xAE \xB9\xDC\xCF\xDF 5 PIPE-\xB8\xF8\xCB\xAE VR-J\r\n"
                                "\xD0\xC2\xCB\xAE \xB9\xDC\xCF\xDF 6 PIPE-NEW Continuous\r\nbad line\r\n");
    const auto taken = Run("gxsz I L " + (m_folder / "other.dat").string() + " * OK 给水系统\nQ Y");
    EXPECT_TRUE(test::says(taken, "有 1 行不是图层定义")) << taken.out;
    EXPECT_TRUE(test::says(taken, "颜色 3 → 5")) << taken.out;
    EXPECT_TRUE(test::says(taken, "建议 2 条，采用 2 条，未能采用 0 条。")) << taken.out << taken.err;
    EXPECT_NE(File().find(">PIPE-NEW<"), std::string::npos);
    // Of a drawing what it uses, other layers too.
    const auto drawn = Run("gxsz I D \n* OK\nQ Y");
    EXPECT_TRUE(test::says(drawn, "导入图层/")) << drawn.out << drawn.err;
    EXPECT_TRUE(test::says(Run("gxsz I D " + m_plan.string() + "\nQ"), "与标准一致，没有建议。"));
    EXPECT_NE(Run("gxsz I D none.dxf\nQ").err.find("无法读取"), std::string::npos);
}

TEST(StandardComparison, TellsRecordsAndValues) {
    PipeStandard before = MakeDefaultStandard();
    PipeStandard after = MakeDefaultStandard();
    EXPECT_EQ(Text(CompareStandards(before, after)), "");
    bool found = false;
    after.m_groups.front()->MovePipeSystem(L"给水2", true, found);
    after.m_groups.front()->DeletePipeSystem(L"给水3");
    after.m_groups.front()->FindPipeSystem(L"给水")->FindLayerNode(L"管线", false)->m_lineWeight = 25;
    after.m_groups.front()->FindPipeSystem(L"给水")->RemoveMapping(L"附件");
    after.m_groups.front()->AddPipeSystem(std::make_unique<PipeNode>(L"新").release());
    after.m_textStyles.front().m_name = L"S";
    EXPECT_EQ(Text(CompareStandards(before, after)),
              "- 映射 给水/附件\n- 系统 给水3\n"
              "  系统组 给水系统 顺序: 给水,给水2,直饮水,中水,中水2,中水3,循环给水,循环回水,屋顶水箱给水 → "
              "给水2,给水,直饮水,中水,中水2,中水3,循环给水,循环回水,屋顶水箱给水\n"
              "  图层 给水/管线 线宽: 0.50 → 0.25\n+ 系统 新\n"
              "  文字样式 管径标注 样式名: _KOL_PIPEDN → S\n");
}
