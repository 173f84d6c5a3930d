// What a function that can fail gives back: the value, or a failure: its kind, and words that may be shown to
// the user. Asking a failed result for its value, or a good one for its error, is a mistake of the caller and
// ends the program in every build.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace base {

// What a failure is to who goes another way then.
enum class failure_kind : std::uint8_t {
    other,
    not_found, // there is no such file or folder
    no_access, // it is there, but not for this user
};

// Why something failed: what and where, in plain words, without a final full stop, and its kind.
struct failure {
    std::wstring what;
    failure_kind kind = failure_kind::other;

    // The same failure, with words in front that say where it was met.
    failure behind(std::wstring_view where) const { return {std::wstring(where) + what, kind}; }
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

    // The failure, to be handed on; and its words.
    const failure& why() const noexcept { return std::get<1>(held_); }
    const std::wstring& error() const noexcept { return why().what; }
    // Whether it failed in that way.
    bool failed(failure_kind kind) const noexcept { return !*this && why().kind == kind; }

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

    // The failure, to be handed on; and its words.
    const failure& why() const noexcept { return why_.value(); }
    const std::wstring& error() const noexcept { return why().what; }
    // Whether it failed in that way.
    bool failed(failure_kind kind) const noexcept { return why_ && why_->kind == kind; }

private:
    std::optional<failure> why_;
};

} // namespace base
