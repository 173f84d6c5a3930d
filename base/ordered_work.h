// Work in parts that do not depend on each other, done by several cores, and taken in its order.
#pragma once

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace base {

// Does the parts [0, parts). Every thread asks make() for a worker of its own, and calls worker(part, result)
// with a result that was used before; take(part, result) is called for one part after the other, by the
// caller's thread. What a worker throws is thrown here.
template<class Result, class Make, class Take>
class ordered_work {
public:
    ordered_work(std::size_t parts, Make make, Take take) : parts_(parts), make_(make), take_(take) {
        constexpr unsigned most_threads = 4;
        const std::size_t threads =
            std::min<std::size_t>({std::thread::hardware_concurrency(), most_threads, parts});
        try {
            for (std::size_t i = 1; i < threads; ++i)
                helpers_.emplace_back([this] { help(); });
        } catch (const std::system_error&) { // those that there are do, or the caller's alone
        }
    }
    ~ordered_work() {
        {
            const std::lock_guard hold(lock_);
            stopped_ = true;
        }
        changed_.notify_all();
        for (std::thread& helper : helpers_)
            helper.join();
    }
    ordered_work(const ordered_work&) = delete;
    ordered_work& operator=(const ordered_work&) = delete;

    void run() {
        auto worker = make_();
        std::unique_lock hold(lock_);
        while (taken_ < parts_ && thrown_ == nullptr) {
            if (slot& next = slots_[taken_ % window]; next.done) {
                hold.unlock();
                take_(taken_, next.result);
                hold.lock();
                next.done = false;
                ++taken_;
                changed_.notify_all();
            } else if (!work(worker, hold)) {
                changed_.wait(hold);
            }
        }
        if (thrown_ != nullptr)
            std::rethrow_exception(thrown_);
    }

private:
    static constexpr std::size_t window = 8; // results that are held at a time
    struct slot {
        Result result{};
        bool done = false;
    };

    // Does the next part that nobody has begun; false when there is none yet.
    template<class Worker>
    bool work(Worker& worker, std::unique_lock<std::mutex>& hold) {
        if (stopped_ || begun_ >= std::min(parts_, taken_ + window))
            return false;
        const std::size_t part = begun_++;
        slot& mine = slots_[part % window];
        hold.unlock();
        worker(part, mine.result);
        hold.lock();
        mine.done = true;
        changed_.notify_all();
        return true;
    }
    void help() {
        try {
            auto worker = make_();
            std::unique_lock hold(lock_);
            while (!stopped_ && begun_ < parts_)
                if (!work(worker, hold))
                    changed_.wait(hold);
        } catch (...) {
            const std::lock_guard hold(lock_);
            thrown_ = std::current_exception();
            changed_.notify_all();
        }
    }

    const std::size_t parts_;
    Make make_;
    Take take_;
    std::array<slot, window> slots_;
    std::size_t begun_ = 0, taken_ = 0;
    bool stopped_ = false;
    std::exception_ptr thrown_;
    std::mutex lock_;
    std::condition_variable changed_;
    std::vector<std::thread> helpers_;
};

// The same as a call; a work of one part is done without further threads.
template<class Result, class Make, class Take>
void work_in_order(std::size_t parts, Make make, Take take) {
    if (parts != 0)
        ordered_work<Result, Make, Take>(parts, make, take).run();
}

} // namespace base
