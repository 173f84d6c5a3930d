// One common group changed by its bytes: the same text as by all groups, or none.
#include "host/dxf/common_patch.h"

#include "host/db/tables/properties.h"
#include "tests/db_entities.h"

namespace {

struct row {
    const char* record;
    bool plain; // the change must be made by its bytes
};

constexpr const char* ends = "|10 1|20 2";
constexpr row records[] = {
    {"0 LINE|5 A0|330 1F|100 AcDbEntity|8 WALL|6 DASHED|62 3|100 AcDbLine", true},
    {"0 LINE|5 A0|330 1F|100 AcDbEntity|67 1|410 Layout1|8 WALL|60 1|370 25|100 AcDbLine", true},
    {"0 LINE|5 A0|102 {ACAD_REACTORS|330 8|102 }|330 1F|100 AcDbEntity|8 WALL|62 3|100 AcDbLine", true},
    {"0 LINE|8 WALL|62 3", false},
    {"0 LINE|5 A0|8 WALL|100 AcDbEntity|62 3|100 AcDbLine", false},
    {"0 LINE|5 A0|100 AcDbEntity|8 WALL|102 {OTHER|60 1|8 X|102 }|62 3|100 AcDbLine", false},
    {"0 LINE|5 A0|100 AcDbLine|8 WALL|100 AcDbEntity|62 3", false},
};

std::string by_groups(dxf::padded_text record, int code, const char* value) {
    dxf::group_list list(record);
    if (value != nullptr)
        list.set_text(db::entity_place, code, value);
    else
        list.remove(db::entity_place, code);
    return list.write({"\n", true, 6, 9});
}

std::optional<std::string> by_bytes(dxf::padded_text record, int code, const char* value) {
    return value != nullptr ? dxf::with_common(record, {"\n", true, 6, 9}, db::entity_place, code, value)
                            : dxf::without_common(record, db::entity_place, code);
}

} // namespace

TEST(DxfCommonPatch, WritesWhatTheGroupsWould) {
    struct change {
        int code;
        const char* value; // null: taken away
    };
    for (const auto& [record, plain] : records)
        for (const auto& [code, value] : {change{8, "DOOR"}, change{6, "HIDDEN"}, change{60, "1"},
                                          change{60, nullptr}, change{6, nullptr}}) {
            // What stands behind the common part: a group of its class, an application's, the same code
            // again.
            for (const std::string& behind :
                 {std::string(ends), std::string(ends) + "|1001 APP|1070 8|1000 60",
                  std::string(ends) + "|" + std::to_string(code) + " 0"}) {
                const dxf::padded_string text(test::groups(record + behind));
                const dxf::padded_text whole = text.view();
                const auto patched = by_bytes(whole, code, value);
                if (patched) {
                    EXPECT_EQ(*patched, by_groups(whole, code, value)) << whole << code;
                }
                const bool has = whole.find("\n" + std::to_string(code) + "\n") != whole.npos;
                const bool number = code == 60 && has; // whose columns are kept
                if (plain && behind == ends && (value != nullptr ? !number : has)) {
                    EXPECT_TRUE(patched) << whole << code;
                }
            }
        }
}

TEST(DxfCommonPatch, LayersNewToTheDrawingKeepTheirNames) {
    const auto drawing = test::opened(test::with_entities("0 LINE|8 WALL|10 1|20 2"));
    ASSERT_NE(drawing, nullptr);
    dxf::record_table& records = drawing->records();
    dxf::record_id line = 0;
    while (records.type(line) != dxf::type_line)
        line = records.next(line);
    std::string layer = "DOOR";
    std::string text = test::groups("0 LINE|8 DOOR|10 1|20 2");
    records.replace_look(line, text, layer);
    layer = text = "gone"; // whoever made the change
    EXPECT_EQ(records.layer_names()[records.layer(line)], "DOOR");
    EXPECT_EQ(records.text(line), test::groups("0 LINE|8 DOOR|10 1|20 2"));
}
