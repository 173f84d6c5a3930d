// Those who want to hear of something. They come and go at any time, also while they are being told: who
// comes then hears the next news, who goes hears nothing more.
#pragma once

#include "acadstrc.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <string_view>
#include <vector>

namespace rx {

// How many calls to reactors are under way: input and commands are out of place then.
ACBASE_PORT int& reactors_running();
// Hears of a reactor that threw. Nothing thrown by one reaches whoever told it.
ACBASE_PORT std::function<void(std::string_view what)>& on_reactor_failure();

// Calls a reactor and keeps to itself what it throws.
template<class Call>
void call_reactor(Call call) {
    ++reactors_running();
    try {
        call();
    } catch (const std::exception& error) {
        if (on_reactor_failure())
            on_reactor_failure()(error.what());
    } catch (...) {
        if (on_reactor_failure())
            on_reactor_failure()("an unknown exception");
    }
    --reactors_running();
}

// Owns none of them.
template<class Reactor>
class reactor_list {
public:
    // False for null, and for one that is there already.
    bool add(Reactor* reactor) {
        if (reactor == nullptr || has(reactor))
            return false;
        all_.push_back(reactor);
        return true;
    }
    // False when it is not there.
    bool remove(Reactor* reactor) {
        const auto at = std::find(all_.begin(), all_.end(), reactor);
        if (reactor == nullptr || at == all_.end())
            return false;
        *at = nullptr;
        if (telling_ == 0)
            std::erase(all_, nullptr);
        return true;
    }
    bool has(const Reactor* reactor) const {
        return std::find(all_.begin(), all_.end(), reactor) != all_.end();
    }
    bool empty() const { return all_.empty(); }
    // Takes over those of another list.
    void take(const reactor_list& other) {
        for (Reactor* const reactor : other.all_)
            add(reactor);
    }

    // Calls news(reactor) for each, in the order in which they came.
    template<class News>
    void tell(News news) {
        if (all_.empty())
            return;
        ++telling_;
        const std::size_t count = all_.size();
        for (std::size_t i = 0; i < count; ++i)
            if (Reactor* const reactor = all_[i]; reactor != nullptr)
                call_reactor([&] { news(*reactor); });
        if (--telling_ == 0)
            std::erase(all_, nullptr);
    }

private:
    std::vector<Reactor*> all_; // null: gone while they are being told
    int telling_ = 0;
};

} // namespace rx
