// What the standard is asked about entities: pipes and longitudinal sections.
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "tests/pipe_support.h"

namespace {

using PipeQueries = test::pipe_drawing;
using namespace PipeSystemTool;

} // namespace

TEST_F(PipeQueries, APipesSystemIsItsNameElseWhatItsCodeStandsFor) {
    auto* const named = test::pipe_between({0, 0, 0}, {1000, 0, 0}, L"自定");
    named->SetSystemType(GetSysType(L"给水"));
    auto* const coded = test::pipe_between({0, 0, 0}, {1000, 0, 0}, L"");
    coded->SetSystemType(GetSysType(L"给水"));
    auto* const none = test::pipe_between({0, 0, 0}, {1000, 0, 0}, L"");
    EXPECT_EQ(GetPipeSystemName(coded), L"给水");
    EXPECT_EQ(GetPipeSystemName(static_cast<const TDbPipe*>(nullptr)), L"");
    const AcDbObjectId ids[] = {append(none), append(coded), append(named)};
    EXPECT_EQ(GetPipeSystemName(ids[0]), L"");
    EXPECT_EQ(GetPipeSystemName(ids[1]), L"给水");
    EXPECT_EQ(GetPipeSystemName(ids[2]), L"自定");
    EXPECT_EQ(GetPipeSystemName(database->layerTableId()), L"") << "no pipe";
    EXPECT_EQ(GetPipeSystemName(AcDbObjectId::kNull), L"");

    TEntitySet set;
    EXPECT_EQ(GetPipeSystemName(set), L"");
    set.Add(database->layerTableId());
    for (const AcDbObjectId id : {ids[0], ids[2], ids[1]})
        set.Add(id);
    EXPECT_EQ(GetPipeSystemName(set), L"自定") << "the first that has one";
    // A pipe that somebody has open for writing can not be read.
    const AcDbObjectPointer<TDbPipe> writer(ids[2], AcDb::kForWrite);
    EXPECT_EQ(GetPipeSystemName(ids[2]), L"");
}

TEST_F(PipeQueries, ASectionGoesByTheNameThatWasSetElseByTheCode) {
    auto* const drain = new TDbVerticalSection;
    drain->SetShowCrossPipe(GetSysType(L"给水"), false);
    drain->SetShowCrossPipe(L"污水", false);
    auto* const feed = new TDbVerticalSectionFeed;
    feed->SetShowCrossPipe(GetSysType(L"给水"), false);
    feed->SetShowCrossPipe(L"污水", false);
    const AcDbObjectId ids[] = {append(drain), append(feed)};
    EXPECT_FALSE(IsShowCrossPipe(ids[0], L"给水")) << "by its code";
    EXPECT_FALSE(IsShowCrossPipe(ids[0], L"污水")) << "by its name";
    EXPECT_TRUE(IsShowCrossPipe(ids[0], L"雨水"));
    EXPECT_TRUE(IsShowCrossPipe(ids[1], L"给水")) << "the other kind goes by names alone";
    EXPECT_FALSE(IsShowCrossPipe(ids[1], L"污水"));
    {
        const AcDbObjectPointer<TDbVerticalSection> changed(ids[0], AcDb::kForWrite);
        changed->SetShowCrossPipe(L"给水", true);
    }
    EXPECT_TRUE(IsShowCrossPipe(ids[0], L"给水")) << "the name comes before the code";
    EXPECT_FALSE(IsShowCrossPipe(database->layerTableId(), L"给水"));
    EXPECT_FALSE(IsShowCrossPipe(static_cast<const TDbVerticalSection*>(nullptr), L"给水"));
}
