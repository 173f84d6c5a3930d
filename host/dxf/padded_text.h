// Texts that may be read a little behind their end. group_reader looks for line ends in blocks of 64 bytes
// and does not ask where the text ends, so a text must be followed by that many readable ones. What they are
// makes no difference.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace dxf {

class padded_text : public std::string_view {
public:
    static constexpr std::size_t padding = 64;

    padded_text() : std::string_view(nothing) {}

    // The word of who holds the bytes that `padding` readable ones follow them: the file, the arena, and
    // padded_string; and of who goes through parts of theirs by pointers.
    static padded_text promised(std::string_view text) { return padded_text(text); }

    // A part of a text: what follows it is the rest, or what follows that.
    padded_text substr(std::size_t at, std::size_t count = npos) const {
        return padded_text(std::string_view::substr(at, count));
    }

private:
    explicit padded_text(std::string_view text) : std::string_view(text) {}

    static constexpr char nothing[padding] = {};
};

// A string with such bytes behind it.
class padded_string {
public:
    padded_string() = default;
    explicit padded_string(std::string text) : bytes_(std::move(text)) {
        bytes_.append(padded_text::padding, '\0');
    }

    bool empty() const { return bytes_.size() <= padded_text::padding; }
    // Valid until the string changes or moves.
    padded_text view() const {
        return empty() ? padded_text()
                       : padded_text::promised(
                             std::string_view(bytes_).substr(0, bytes_.size() - padded_text::padding));
    }

private:
    std::string bytes_;
};

} // namespace dxf
