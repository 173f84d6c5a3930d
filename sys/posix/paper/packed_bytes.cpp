#include "sys/posix/paper/packed_bytes.h"

#include <new>
#include <system_error>
#include <utility>

namespace sys {

namespace {

constexpr int fast = 1; // lines pack hardly better when it takes three times as long

} // namespace

packed_bytes::packed_bytes() {
    deflateInit(&state_, fast);
}

packed_bytes::~packed_bytes() {
    stop();
    deflateEnd(&state_);
}

void packed_bytes::pack(std::string& bytes, int flush) {
    state_.next_in = reinterpret_cast<Bytef*>(bytes.data());
    state_.avail_in = static_cast<uInt>(bytes.size());
    char room[1 << 14];
    do {
        state_.next_out = reinterpret_cast<Bytef*>(room);
        state_.avail_out = sizeof room;
        deflate(&state_, flush);
        packed_.append(room, sizeof room - state_.avail_out);
    } while (state_.avail_out == 0);
    bytes.clear();
}

// The packer takes one text after the other, in their order: the result does not depend on who packs.
void packed_bytes::run() {
    std::string taken;
    std::unique_lock hold(lock_);
    while (true) {
        changed_.wait(hold, [this] { return full_ || ended_; });
        if (!full_)
            return;
        std::swap(taken, handed_);
        full_ = false;
        changed_.notify_all();
        hold.unlock();
        bool packed = true;
        try {
            pack(taken, Z_NO_FLUSH);
        } catch (const std::bad_alloc&) {
            packed = false;
            taken.clear();
        }
        hold.lock();
        failed_ = failed_ || !packed;
    }
}

void packed_bytes::hand_over() {
    if (!packer_.joinable() && !alone_) {
        try {
            packer_ = std::thread([this] { run(); });
        } catch (const std::system_error&) {
            alone_ = true;
        }
    }
    if (alone_) {
        pack(waiting_, Z_NO_FLUSH);
        return;
    }
    std::unique_lock hold(lock_);
    changed_.wait(hold, [this] { return !full_; });
    std::swap(waiting_, handed_);
    full_ = true;
    changed_.notify_all();
    hold.unlock();
    waiting_.clear();
}

void packed_bytes::stop() {
    if (!packer_.joinable())
        return;
    {
        const std::lock_guard hold(lock_);
        ended_ = true;
    }
    changed_.notify_all();
    packer_.join();
}

std::string packed_bytes::finish() {
    stop();
    if (failed_)
        throw std::bad_alloc();
    pack(waiting_, Z_FINISH);
    return std::move(packed_);
}

} // namespace sys
