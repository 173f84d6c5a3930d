// An application as tutorials teach it, from its loading to the drawing that it leaves behind.
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != text.npos;
}

} // namespace

TEST(ProgramValves, WorksSavesAndFindsItsObjectsAgain) {
    const test::folder folder;
    const std::string app = ZEF_BINARY_FOLDER "/valves.arx";
    const std::string plan = test::drawing("r2018.dxf").string();
    const std::string out = (folder / "out.dxf").string();
    auto run = test::zefhost(
        {plan, "--no-module", "--load", app, "-c",
         "ADDVALVE 1000,2000 Ball\\n_ADDVALVE 3000,2000 \\nADDVALVE 5000,0 C\\nU\\nCOUNTVALVES", "-o", out});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "a Gate valve\na Ball valve\n2 valves, 3 of them since the program began."))
        << run.out;

    // What a program that does not know the class sees, keeps.
    const std::string again = (folder / "again.dxf").string();
    run = test::zefhost({out, "--no-module", "-c", "ERASE L \\nU", "-o", again});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(test::read(again) == test::read(out));

    run = test::zefhost({again, "--no-module", "--load", app, "-c",
                         "LIST 1000,2000 \\nCOUNTVALVES\\nERASE 3000,2000 \\nCOUNTVALVES"});
    ASSERT_EQ(run.status, 0) << run.err;
    for (const char* part : {"VALVE    Layer: \"VALVES\"", "a Ball valve\n2 valves, 0 of them",
                             "a Ball valve\n1 valves, 0 of them"})
        EXPECT_TRUE(contains(run.out, part)) << part << "\n" << run.out;
}
