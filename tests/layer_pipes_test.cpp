// The layer commands where there are pipes: what belongs to a pipe, systems that are hidden.
#include "siblings/zef_pipewire/PipeSystems.h"
#include "tests/layer_support.h"
#include "tests/pipe_support.h"

#include <gtest/gtest.h>

namespace {

using test::texts;

class LayersOfPipes : public test::pipe_drawing {
protected:
    void SetUp() override {
        pipe_drawing::SetUp();
        database = holding(test::read(test::drawing("layer_tools/pipes.dxf")));
    }

    template<class Entity>
    AcDbObjectId add(const wchar_t* layer, Entity* entity = new Entity) {
        const AcDbObjectId id = append(entity);
        EXPECT_EQ(AcDbEntityPointer(id, AcDb::kForWrite)->setLayer(layer), Acad::eOk);
        return id;
    }
    // The drawing as a file, beside the plan that it refers to.
    std::filesystem::path file(std::string_view name) const {
        folder.write("plan.dxf", test::read(test::drawing("layer_tools/plan.dxf")));
        return folder.write(name, saved(*database));
    }

    const test::folder folder;
};

std::string handle_of(AcDbObjectId id) {
    ACHAR text[AcDbHandle::kStrSiz];
    id.handle().getIntoAsciiBuffer(text);
    return base::narrow(text);
}

TEST_F(LayersOfPipes, SfxcKeepsWhatBelongsToAPipeUnlocked) {
    auto* const pipe = test::pipe_between({0, 0, 0}, {1000, 0, 0});
    pipe->AddAttachment(add<TDbPipeAttachment>(L"VPIPE-给水"));
    pipe->SetNodes(add<TDbPipeNode>(L"DIM_消防"), add<TDbPipeNode>(L"说明"));
    const std::string handle = handle_of(add(L"PIPE-给水", pipe));
    const auto found = test::run_on_layers(file("pipes.dxf"), "sfxc\n" + test::picks({handle}) + "\n");
    EXPECT_NE(found.ran.out.find("PIPE-给水 层打开\nVPIPE-给水 层打开\nDIM_消防 层打开\n说明 层打开\n"),
              std::string::npos)
        << found.ran.out;
    texts unlocked, locked;
    for (const std::string& change : found.changed) {
        if (change.ends_with(": 70 0"))
            unlocked.push_back(change);
        if (change.ends_with(": 70 4"))
            locked.push_back(change);
    }
    EXPECT_EQ(unlocked, (texts{"VPIPE-给水: 70 0"}));
    EXPECT_EQ(locked, (texts{"0: 70 4", "DIM_给水: 70 4"}));
}

TEST_F(LayersOfPipes, SetAllPipeLayOpenShowsTheSystemsOfTheStandard) {
    // A system that the user added, and one that he gave another name.
    std::string standard = test::read(std::filesystem::path(ZEF_SOURCE_FOLDER) / "share/kol.vrsl");
    for (const auto& [from, to] : {std::pair(">水炮</PipeName>", ">灭火</PipeName>"),
                                   std::pair(">其它</PipeOriginalName>", ">空调</PipeOriginalName>"),
                                   std::pair(">其它</PipeName>", ">空调</PipeName>")}) {
        const auto at = standard.find(from);
        ASSERT_NE(at, standard.npos) << from;
        standard.replace(at, std::string_view(from).size(), to);
    }
    std::filesystem::create_directories(folder / "profile/sys");
    folder.write("profile/sys/kol.vrsl", standard);

    auto* const joint = new TDbPipeNode;
    joint->setVisibility(AcDb::kInvisible);
    const AcDbHandle hidden = add(L"0", joint).handle();
    TDbPsConfig* config = nullptr;
    ASSERT_EQ(InitDwgPsGlobal(config, database.get()), Acad::eOk);
    for (const wchar_t* const system : {L"给水", L"水炮", L"其它"})
        config->ShowSystem(GetSysType(system), false);
    for (const wchar_t* const system : {L"灭火", L"空调", L"别家"})
        config->ShowCustomPipeSystem(system, false);
    config->close();

    const std::string out = (folder / "out.dxf").string();
    const auto ran =
        test::zefhost({file("pipes.dxf").string(), "-o", out, "--profile", (folder / "profile").string()},
                      "SetAllPipeLayOpen\n");
    ASSERT_EQ(ran.status, 0) << ran.err;
    const auto after = holding(test::read(out));
    ASSERT_EQ(GetDwgPsGlobal(config, AcDb::kForRead, after.get()), Acad::eOk);
    for (const wchar_t* const system : {L"给水", L"水炮"})
        EXPECT_TRUE(config->IsSystemShown(GetSysType(system))) << system;
    for (const wchar_t* const system : {L"灭火", L"空调"})
        EXPECT_TRUE(config->IsCustomPipeSystemShown(system)) << system;
    EXPECT_FALSE(config->IsSystemShown(GetSysType(L"其它"))) << "the standard does not have it";
    EXPECT_FALSE(config->IsCustomPipeSystemShown(L"别家"));
    config->close();
    AcDbObjectId id;
    ASSERT_EQ(after->getAcDbObjectId(id, false, hidden), Acad::eOk);
    EXPECT_EQ(AcDbEntityPointer(id, AcDb::kForRead)->visibility(), AcDb::kVisible);
}

} // namespace
