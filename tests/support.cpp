#include "tests/support.h"

#include "dbmain.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

namespace {

// The whole profile of a test run: made once, so that each start need not copy the system folder.
const folder& profile() {
    static const folder made;
    return made;
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    std::istringstream in{std::string(text)};
    for (std::string line; std::getline(in, line);) {
        const auto first = line.find_first_not_of(" \r");
        const auto last = line.find_last_not_of(" \r");
        lines.push_back(first == line.npos ? std::string() : line.substr(first, last - first + 1));
    }
    return lines;
}

// An application is loaded when the host's classes are there: so they are for every test, in whatever order.
class host_classes : public testing::Environment {
    void SetUp() override { const AcDbDatabase first(false, true); }
};
[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new host_classes);

} // namespace

folder::folder() {
    static std::atomic<int> number = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("zef-test-" + std::to_string(getpid()) + "-" + std::to_string(number++));
    std::filesystem::create_directories(path_);
}

folder::~folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path folder::write(std::string_view name, std::string_view bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return path_ / name;
}

std::string read(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::filesystem::path drawing(std::string_view name) {
    return std::filesystem::path(ZEF_SOURCE_FOLDER) / "tests" / "drawings" / name;
}

bool is_damaged(const std::filesystem::path& drawing) {
    // The model space of this one has lost its name.
    return drawing.parent_path().filename() == "broken" || drawing.filename() == "libredwg__example_r14.dxf";
}

std::vector<std::filesystem::path> corpus() {
    std::vector<std::filesystem::path> found;
    const char* const root = std::getenv("ZEF_CORPUS");
    if (root == nullptr)
        return found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.path().extension() == ".dxf" && !is_damaged(entry.path()) &&
            entry.path().parent_path().filename() != "binary")
            found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
}

run_result zefhost(const std::vector<std::string>& arguments, std::string_view input) {
    const folder work;
    work.write("in", input);
    std::string command =
        quoted(ZEF_BINARY_FOLDER "/zefhost") + " --profile " + quoted(profile().path().string());
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    command += " <" + quoted((work / "in").string()) + " >" + quoted((work / "out").string()) + " 2>" +
               quoted((work / "err").string());
    const int ended = std::system(command.c_str());
    run_result result;
    result.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    result.out = read(work / "out");
    result.err = read(work / "err");
    return result;
}

std::vector<std::string> differences(std::string_view before, std::string_view after) {
    // Both share what stands in front of and behind a change; in between the longest common run of lines is
    // found by looking ahead, which serves drawings in which single groups changed.
    const auto old_lines = lines_of(before);
    const auto new_lines = lines_of(after);
    std::vector<std::string> found;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < old_lines.size() || j < new_lines.size()) {
        if (i < old_lines.size() && j < new_lines.size() && old_lines[i] == new_lines[j]) {
            ++i;
            ++j;
            continue;
        }
        const auto agrees = [&](std::size_t a, std::size_t b) {
            for (std::size_t k = 0; k < 3; ++k)
                if ((a + k < old_lines.size()) != (b + k < new_lines.size()) ||
                    (a + k < old_lines.size() && old_lines[a + k] != new_lines[b + k]))
                    return false;
            return true;
        };
        std::size_t skip_old = 0;
        std::size_t skip_new = 0;
        for (std::size_t total = 1, done = 0; done == 0 && total < 200; ++total)
            for (std::size_t a = 0; a <= total; ++a)
                if (agrees(i + a, j + total - a)) {
                    skip_old = a;
                    skip_new = total - a;
                    done = 1;
                    break;
                }
        if (skip_old == 0 && skip_new == 0)
            skip_old = skip_new = 1;
        for (std::size_t a = 0; a < skip_old && i < old_lines.size(); ++a)
            found.push_back("- " + old_lines[i++]);
        for (std::size_t a = 0; a < skip_new && j < new_lines.size(); ++a)
            found.push_back("+ " + new_lines[j++]);
    }
    return found;
}

} // namespace test
