// In what order the module comes and goes, as an application between it and the host sees it.
#include "tests/support.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

// The application's lines; of those that follow each other with the same beginning the first and the last.
std::vector<std::string> told(const std::string& out) {
    std::vector<std::string> lines;
    std::istringstream all(out);
    const auto beginning = [](const std::string& line) {
        return line.substr(0, line.rfind(' ', line.find('|') - 2));
    };
    for (std::string line; std::getline(all, line);) {
        if (!line.starts_with("~ "))
            continue;
        line.erase(0, 2);
        const std::size_t count = lines.size();
        if (count > 1 && beginning(lines[count - 1]) == beginning(line) &&
            beginning(lines[count - 2]) == beginning(line))
            lines.back() = line;
        else
            lines.push_back(line);
    }
    return lines;
}

TEST(ProgramFrame, TheModuleComesAndGoesInItsOrder) {
    const auto run =
        test::zefhost({"--no-module", "--load", "zef_kernal", "--load", "zef_pipewire", "--load",
                       "zef_public", "--load", "frame_tracing"},
                      "ARX L zef_pipeSystem\nLINE 0,0 1,1 \nARX U zef_pipeSystem\nARX U frame_tracing\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(told(run.out), (std::vector<std::string>{
                                 "no command of others tcgj |",
                                 "no command of others drsz |",
                                 "command gxsz |",
                                 "command xxyh2 |",
                                 "registry | standard",                  // the file is chosen
                                 "registry | standard loaded documents", // and remembered
                                 "registry | standard loaded documents", // the module's own option
                                 "drawing default | standard loaded documents",
                                 "drawing default | standard loaded documents",
                                 "hears of commands | standard loaded documents flanges",
                                 "no group ZEF_PIPESTSTEM | standard loaded documents flanges",
                                 "registry | flanges",
                                 "hears no more of commands |",
                             }))
        << run.out;
}

} // namespace
