// Bytes that are compressed as they come, as PNG and PDF hold them.
#pragma once

#include <string>
#include <zlib.h>

namespace sys {

class packed_bytes {
public:
    packed_bytes();
    packed_bytes(const packed_bytes&) = delete;
    packed_bytes& operator=(const packed_bytes&) = delete;
    ~packed_bytes();

    // Where to write to; `settle` now and then takes what has come together there.
    std::string& buffer() { return waiting_; }
    void settle() {
        constexpr std::size_t enough = 1 << 16;
        if (waiting_.size() >= enough)
            pack(Z_NO_FLUSH);
    }
    // What all of it became; nothing can be added after that.
    std::string finish();

private:
    void pack(int flush);

    z_stream state_{};
    std::string waiting_;
    std::string packed_;
};

} // namespace sys
