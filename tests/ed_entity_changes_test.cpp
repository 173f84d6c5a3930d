// Changes by chains of result buffers: what they change, and what they refuse.
#include "acutmem.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_object.h"
#include "host/dxf/record_header.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

// The colour groups of a layer as they stand in the drawing: "62 -9|420 1|".
std::string colors_of(AcDbObjectId layer) {
    const AcDbObjectPointer<AcDbLayerTableRecord> record(layer);
    std::string text;
    for (const dxf::group& group : record->imp().groups().groups())
        if (group.code == 62 || group.code == 420 || group.code == 430)
            text += std::to_string(group.code) + " " +
                    base::narrow(record->imp().decode(dxf::trimmed(group.value))) + "|";
    return text;
}

} // namespace

TEST(EdEntityChanges, ALayersColourBecomesWhatTheChainSays) {
    test::session session(test::drawing("layer_states.dxf"));
    const AcDbObjectId layer = session.id(0x11);
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, layer), Acad::eOk);
    const struct {
        resbuf* chain;
        int answered;
        const char* after;
    } rows[] = {
        {acutBuildList(-1, name, 62, -9, 420, 0xFF8000, 430, L"RAL 经典$1000", 0), RTNORM,
         "62 -9|420 16744448|430 RAL 经典$1000|"},
        {acutBuildList(-1, name, 420, 1, 62, 9, 0), RTNORM, "62 9|420 1|"},
        // Refused as a whole.
        {acutBuildList(-1, name, 62, 4, 70, 1, 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 62, 4, 430, L"A$B", 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 62, 4, 420, 0x1000000, 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 62, 0, 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 62, -256, 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 420, 5, 0), RTERROR, "62 9|420 1|"},
        {acutBuildList(62, 4, -1, name, 0), RTERROR, "62 9|420 1|"},
        {nullptr, RTERROR, "62 9|420 1|"},
        {acutBuildList(-1, name, 62, 4, 0), RTNORM, "62 4|"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(acdbEntMod(row.chain), row.answered) << &row - rows;
        EXPECT_EQ(colors_of(layer), row.after) << &row - rows;
        acutRelRb(row.chain);
    }
    acdbGetAdsName(name, session.id(0x31));
    resbuf* const of_entity = acutBuildList(-1, name, 62, 4, 0);
    EXPECT_EQ(acdbEntMod(of_entity), RTERROR) << "entities are not supported";
    acutRelRb(of_entity);
}
