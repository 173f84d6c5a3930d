#include "apps/zefhost/command_history.h"

#include "base/utf.h"
#include "sys/atomic_file.h"
#include "sys/file.h"

#include <fstream>

command_history::command_history(std::filesystem::path file, std::size_t most) : file_(std::move(file)) {
    const auto bytes = sys::read_file(file_);
    if (!bytes)
        return;
    std::string_view rest = bytes->view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        lines_.push_back(base::widen(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    // Lines are appended while people type, by several programs maybe; the file is cut now and then only.
    const bool too_long = lines_.size() > 2 * most;
    if (lines_.size() > most)
        lines_.erase(lines_.begin(), lines_.end() - static_cast<std::ptrdiff_t>(most));
    if (!too_long)
        return;
    std::string kept;
    for (const std::wstring& line : lines_)
        kept += base::narrow(line) + "\n";
    // A history that can not be cut is kept as it is.
    if (auto fresh = sys::atomic_file::create(file_); fresh && fresh->write(kept))
        static_cast<void>(fresh->commit());
}

bool command_history::add(const std::wstring& line) {
    if (line.find_first_not_of(L" \t") == line.npos || (!lines_.empty() && lines_.back() == line))
        return false;
    lines_.push_back(line);
    std::ofstream(file_, std::ios::app | std::ios::binary) << base::narrow(line) + "\n";
    return true;
}
