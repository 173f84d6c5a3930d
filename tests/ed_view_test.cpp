// ZOOM, PAN and -VIEW: which part of the drawing is seen, what the drawing keeps of it.
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

std::string shown(const std::string& file, const std::string& script) {
    const auto result =
        test::zefhost({file, "--keep-going", "-c", script + "\\nSETVAR VIEWCTR\\nSETVAR VIEWSIZE"});
    const std::size_t at = result.out.find("VIEWCTR = ");
    const std::size_t height = result.out.find("VIEWSIZE = ");
    if (at == std::string::npos || height == std::string::npos)
        return result.out + result.err;
    const auto value = [&](std::size_t from) {
        return result.out.substr(from, result.out.find(" (", from) - from);
    };
    return value(at + 10) + " " + value(height + 11);
}

} // namespace

TEST(EdView, IsWhatWasAskedFor) {
    const std::string file = test::drawing("r2018.dxf").string();
    const std::string start = "ZOOM W 0,0 320,90\\n"; // as wide as it says: 320 by 180
    struct row {
        const char* script;
        const char* seen; // center and height
    };
    for (const row& row : {
             row{"", "160.0,45.0,0.0 180.0"},
             row{"ZOOM 2x", "160.0,45.0,0.0 90.0"},
             row{"ZOOM S 0.5x", "160.0,45.0,0.0 360.0"},
             row{"ZOOM -1x", "160.0,45.0,0.0 180.0"},
             row{"ZOOM C 5,6 7", "5.0,6.0,0.0 7.0"},
             row{"ZOOM W 5,5 5,5", "160.0,45.0,0.0 180.0"},
             row{"PAN 10,10 30,5", "140.0,50.0,0.0 180.0"},
             row{"PAN 10,10\\n", "150.0,35.0,0.0 180.0"},
             row{"ZOOM 2x\\nPAN 0,0 1,1\\nZOOM P", "160.0,45.0,0.0 90.0"},
             row{"ZOOM 2x\\nZOOM 2x\\nZOOM P\\nZOOM P", "160.0,45.0,0.0 180.0"},
             row{"ZOOM 2x\\nU", "160.0,45.0,0.0 180.0"},
             row{"-VIEW S one\\nZOOM 2x\\n-VIEW R ONE", "160.0,45.0,0.0 180.0"},
             row{"-VIEW W one 0,0 32,18\\n-VIEW R one", "16.0,9.0,0.0 18.0"},
             row{"-VIEW S one\\nZOOM 2x\\n-VIEW S one\\nZOOM 2x\\n-VIEW R one", "160.0,45.0,0.0 90.0"},
             row{"-VIEW S one\\n-VIEW S two\\n-VIEW D o*\\nZOOM 2x\\n-VIEW R one two",
                 "160.0,45.0,0.0 180.0"},
         })
        EXPECT_EQ(shown(file, start + row.script), row.seen) << row.script;
    EXPECT_EQ(shown(file, start + "ZOOM E\\nZOOM W 0,0 1,1\\nZOOM\\n"), shown(file, "ZOOM A"));
}

TEST(EdView, StaysInTheDrawing) {
    const test::folder folder;
    for (const char* name : {"r2018.dxf", "r12.dxf"}) {
        const std::string saved = (folder / name).string();
        const std::string script = "ZOOM C 5,6 7\\n-VIEW S 楼层\\n-VIEW W x 0,0 16,9";
        EXPECT_EQ(test::zefhost({test::drawing(name).string(), "-c", script, "-o", saved}).status, 0) << name;
        EXPECT_NE(test::zefhost({saved, "-c", "-VIEW ? *"}).out.find("楼层  M"), std::string::npos) << name;
    }
    const std::string modern = (folder / "r2018.dxf").string();
    EXPECT_EQ(shown(modern, "-VIEW R x"), "8.0,4.5,0.0 9.0");
    EXPECT_EQ(shown(modern, "-VIEW R x\\n-VIEW R 楼层"), "5.0,6.0,0.0 7.0");
    const auto old = test::zefhost({(folder / "r12.dxf").string(), "-c", "-VIEW R x"}); // it has no viewports
    EXPECT_NE(old.out.find("no place for a view"), std::string::npos) << old.out;
}
