// What tests need to work as a user would: a folder of their own, the program, a script, its transcript.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace test {

// Everything takes many times as long under sanitizers: long rows of cases are cut down there.
#ifdef ZEF_SANITIZED
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

// A folder that is there for one test.
class folder {
public:
    folder();
    folder(const folder&) = delete;
    folder& operator=(const folder&) = delete;
    ~folder();

    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }
    // A file in it with the given bytes; its path.
    std::filesystem::path write(std::string_view name, std::string_view bytes) const;

private:
    std::filesystem::path path_;
};

std::string read(const std::filesystem::path& file);
// A drawing of tests/drawings.
std::filesystem::path drawing(std::string_view name);
// Whether a drawing of other programs is known to want repairs.
bool is_damaged(const std::filesystem::path& drawing);
// The drawings of other programs, when ZEF_CORPUS names their folder; those that are damaged are left out.
std::vector<std::filesystem::path> corpus();

struct run_result {
    int status = -1; // the exit status; -1 when it did not end by itself
    std::string out;
    std::string err;
};

// Runs zefhost with a profile of its own and `input` on standard input.
run_result zefhost(const std::vector<std::string>& arguments, std::string_view input = {});

// The lines in which two texts differ, as "- old" and "+ new", blanks around lines left out.
std::vector<std::string> differences(std::string_view before, std::string_view after);

} // namespace test
