// What a function that can fail gives back: the value, or a failure in words that may be shown to the user.
// Asking a failed result for its value, or a good one for its error, is a mistake of the caller and ends the
// program in every build.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace base {

// Why something failed: what and where, in plain words, without a final full stop.
struct failure {
    std::wstring what;
};

template<class T>
class [[nodiscard]] result {
public:
    result(T value) : held_(std::in_place_index<0>, std::move(value)) {}
    result(failure why) : held_(std::in_place_index<1>, std::move(why)) {}

    // True when there is a value.
    explicit operator bool() const noexcept { return held_.index() == 0; }

    // The value, owned by this object.
    T& operator*() & noexcept { return std::get<0>(held_); }
    const T& operator*() const& noexcept { return std::get<0>(held_); }
    T&& operator*() && noexcept { return std::get<0>(std::move(held_)); }
    T* operator->() noexcept { return &std::get<0>(held_); }
    const T* operator->() const noexcept { return &std::get<0>(held_); }

    // The failure's words.
    const std::wstring& error() const noexcept { return std::get<1>(held_).what; }

private:
    std::variant<T, failure> held_;
};

template<>
class [[nodiscard]] result<void> {
public:
    result() = default;
    result(failure why) : why_(std::move(why)) {}

    // True when all went well.
    explicit operator bool() const noexcept { return !why_; }

    // The failure's words.
    const std::wstring& error() const noexcept { return why_.value().what; }

private:
    std::optional<failure> why_;
};

} // namespace base
