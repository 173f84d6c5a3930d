// What was typed at terminals, kept in the profile for the next session.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

class command_history {
public:
    // Kept in `file`, at most `most` lines of it from one session to the next.
    command_history(std::filesystem::path file, std::size_t most);

    // The lines of earlier sessions, the oldest first.
    const std::vector<std::wstring>& lines() const { return lines_; }
    // Adds a line, unless it is empty or the one before again. False then.
    bool add(const std::wstring& line);

private:
    std::filesystem::path file_;
    std::vector<std::wstring> lines_;
};
