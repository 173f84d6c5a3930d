// A file read from its beginning in pieces, for those that need not hold all of its bytes at once.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace sys {

class file_reader {
public:
    // Fails with words that name the path and the reason: "cannot read 'a.xml': no such file".
    static base::result<file_reader> open(const std::filesystem::path& path);

    file_reader(file_reader&& other) noexcept;
    file_reader& operator=(file_reader&&) = delete;
    ~file_reader();

    // How many bytes the file had when it was opened; 0 of a pipe, and of files that the system makes up.
    std::uint64_t size() const { return size_; }

    // The next bytes, as many as asked for; fewer, or none, at the end.
    base::result<std::size_t> read(char* out, std::size_t size);

    // Goes back to the beginning. Fails for a pipe.
    base::result<void> rewind();

private:
    file_reader(int file, std::uint64_t size, std::filesystem::path path)
        : file_(file), size_(size), path_(std::move(path)) {}

    int file_;
    std::uint64_t size_;
    std::filesystem::path path_;
};

} // namespace sys
