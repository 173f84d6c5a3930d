// Entities, table entries and dictionaries as chains of result buffers.
#include "acutmem.h"
#include "tests/ed_session.h"

namespace {

// "code value" pairs of a chain, which is freed; names of entities by their handles.
std::string shown(resbuf* chain) {
    std::string text;
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        text += (text.empty() ? "" : "|") + std::to_string(node->restype) + " ";
        const int code = node->restype;
        AcDbObjectId id;
        if (code == -1 || code == -2 || code == 330)
            text += acdbGetObjectId(id, node->resval.rlname) == Acad::eOk
                        ? test::digits(static_cast<Adesk::UInt64>(id.handle()))
                        : "none";
        else if (code == 10 || code == 11)
            text += std::to_string(static_cast<int>(node->resval.rpoint[0])) + "," +
                    std::to_string(static_cast<int>(node->resval.rpoint[1]));
        else if ((code >= 60 && code < 80) || code == 1070)
            text += std::to_string(node->resval.rint);
        else if (code >= 0 && (code < 10 || code == 100 || code == 1000 || code == 1001))
            text += base::narrow(node->resval.rstring);
    }
    acutRelRb(chain);
    return text;
}

std::string next_names(const wchar_t* table) {
    std::string names;
    int rewind = 1;
    while (resbuf* const entry = acdbTblNext(table, std::exchange(rewind, 0))) {
        for (const resbuf* node = entry; node != nullptr; node = node->rbnext)
            if (node->restype == 2)
                names += (names.empty() ? "" : " ") + base::narrow(node->resval.rstring);
        acutRelRb(entry);
    }
    return names;
}

} // namespace

TEST(EdEntityLists, EntitiesAreWalkedAndRead) {
    test::session session(test::drawing("r2018.dxf"));
    ads_name line;
    ASSERT_EQ(acdbHandEnt(L"102", line), RTNORM);
    EXPECT_EQ(shown(acdbEntGet(line)), "-1 102|0 LINE|5 102|330 28|100 AcDbEntity|8 PIPE-给水|62 1|100 "
                                       "AcDbLine|10 500,300|11 5500,300");
    resbuf* const applications = acutBuildList(RTSTR, L"ZEF_*", 0);
    const std::string extended = shown(acdbEntGetX(line, applications));
    EXPECT_EQ(extended.substr(extended.find("|-3")), "|-3 |1001 ZEF_TEST|1000 给水|1070 20");
    acutRelRb(applications);

    std::string walked;
    ads_name at;
    for (int found = acdbEntNext(nullptr, at); found == RTNORM; found = acdbEntNext(at, at)) {
        AcDbObjectId id;
        acdbGetObjectId(id, at);
        walked += test::digits(static_cast<Adesk::UInt64>(id.handle())) + " ";
    }
    EXPECT_NE(walked.find("104 105 106 107 108"), std::string::npos) << "attributes, too: " << walked;
    ads_name last;
    ASSERT_EQ(acdbEntLast(last), RTNORM);

    EXPECT_EQ(acdbEntDel(line), RTNORM);
    EXPECT_EQ(acdbEntGet(line), nullptr);
    EXPECT_EQ(test::error_number(), 17);
    EXPECT_EQ(acdbEntDel(line), RTNORM) << "it comes back";
    EXPECT_NE(shown(acdbEntGet(line)), "");
    ads_name nonsense = {12345, 678};
    EXPECT_EQ(acdbEntGet(nonsense), nullptr);
    EXPECT_EQ(test::error_number(), 2);
    EXPECT_EQ(acdbHandEnt(L"FFFFFF", line), RTERROR);
    EXPECT_EQ(test::error_number(), 13);
}

TEST(EdEntityLists, TablesAndDictionariesAreSearched) {
    test::session session(test::drawing("r2018.dxf"));
    const std::string layer = shown(acdbTblSearch(L"layer", L"pipe-给水", 0));
    EXPECT_TRUE(layer.starts_with("0 LAYER|2 PIPE-给水|70 0|62 ")) << layer;
    const std::string block = shown(acdbTblSearch(L"BLOCK", L"阀门", 0));
    EXPECT_TRUE(block.starts_with("0 BLOCK|")) << block;
    EXPECT_NE(block.find("-2 "), std::string::npos) << block;
    EXPECT_EQ(acdbTblSearch(L"LAYER", L"nowhere", 0), nullptr);
    EXPECT_EQ(acdbTblNext(L"COLOR", 1), nullptr);
    EXPECT_EQ(test::error_number(), 1);
    EXPECT_NE(next_names(L"LAYER").find("PIPE-给水"), std::string::npos);
    EXPECT_EQ(next_names(L"BLOCK").find('*'), std::string::npos) << "spaces are no blocks";
    acutRelRb(acdbTblSearch(L"LAYER", L"0", 1));
    EXPECT_EQ(next_names(L"LAYER").substr(0, 1), "0") << "rewound";

    ads_name name, root;
    EXPECT_EQ(acdbTblObjName(L"LAYER", L"0", name), RTNORM);
    EXPECT_EQ(acdbTblObjName(L"LAYER", L"nowhere", name), RTERROR);
    ASSERT_EQ(acdbNamedObjDict(root), RTNORM);
    EXPECT_NE(shown(acdbDictSearch(root, L"acad_layout", 0)).find("0 DICTIONARY"), std::string::npos);
    EXPECT_EQ(acdbDictSearch(root, L"nowhere", 0), nullptr);
}
