// Takes the groups of a drawing that is written, and hands them on in large pieces.
#pragma once

#include "host/dxf/group_list.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace version {

class output {
public:
    using taker = std::function<bool(std::string_view)>;

    output(taker put, dxf::group_style style) : put_(std::move(put)), style_(style) {}

    void group(int code, std::string_view value) { dxf::append_group(buffer_, style_, code, value); }
    void handle(int code, std::uint64_t handle);
    // Groups as they stand in a file; both lines of each are whole.
    void raw(std::string_view groups) { buffer_ += groups; }
    // At the end of a record: gives away what has gathered.
    void end_record() {
        constexpr std::size_t enough = std::size_t(1) << 20;
        if (buffer_.size() > enough)
            flush();
    }
    void flush() {
        ok_ = ok_ && put_(buffer_);
        buffer_.clear();
    }
    // False as soon as the taker refused a piece.
    bool ok() const { return ok_; }
    const dxf::group_style& style() const { return style_; }

private:
    taker put_;
    dxf::group_style style_;
    std::string buffer_;
    bool ok_ = true;
};

} // namespace version
