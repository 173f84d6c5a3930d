// Whole files in memory that is ours: what another program does to the file later changes nothing here.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <utility>

namespace sys {

// Owner of a file's bytes. At least `padding` zero bytes that may be read follow the last one, so that a
// scanner may look ahead without asking for the end. Empty when made without a file or moved from.
class file_bytes {
public:
    static constexpr std::size_t padding = 64;

    file_bytes() = default;
    file_bytes(file_bytes&& other) noexcept;
    file_bytes& operator=(file_bytes&& other) noexcept;
    ~file_bytes();

    // Never null. Valid as long as this object, also after it was moved to another.
    const char* data() const;
    std::size_t size() const { return size_; }
    std::string_view view() const { return {data(), size_}; }

private:
    friend base::result<file_bytes> read_file(const std::filesystem::path& path);

    // Makes room for `size` bytes and the padding, keeping those that are held; false when memory is short.
    bool reserve(std::size_t size);

    char* memory_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

// Reads a file, a pipe or a device to its end, also one that grows or shrinks meanwhile. Fails with words
// that name the path and the reason: "cannot read 'a.dxf': no such file".
base::result<file_bytes> read_file(const std::filesystem::path& path);

} // namespace sys
