// Bytes that are compressed as they come, as PNG and PDF hold them: by a thread of its own, when there are
// many of them, while others are being made.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
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
            hand_over();
    }
    // What all of it became; nothing can be added after that. Throws std::bad_alloc when there was no memory.
    std::string finish();

private:
    void hand_over();
    void run();
    void stop();
    void pack(std::string& bytes, int flush);

    z_stream state_{};
    std::string waiting_;
    std::string packed_;

    std::mutex lock_;
    std::condition_variable changed_;
    std::thread packer_;
    std::string handed_; // what the packer is to take next
    bool full_ = false;  // there is something
    bool ended_ = false; // nothing more will come
    bool failed_ = false;
    bool alone_ = false; // there is no other thread to be had
};

} // namespace sys
