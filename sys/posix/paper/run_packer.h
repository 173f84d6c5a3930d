// Rows of dots compressed as what they mostly are: runs of dots that are all alike.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace sys {

// A piece of a deflate stream and the check sum of what it stands for. It ends at a whole byte and leans on
// nothing before it, so that pieces can be put behind each other.
struct packed_piece {
    std::string bytes;
    std::uint32_t check = 1; // Adler-32
};

// Packs bytes whose runs repeat every third byte; nothing when they have so few of them that more than a
// sixteenth is left: then zlib does better.
std::optional<packed_piece> pack_runs(std::span<const std::uint8_t> bytes);

} // namespace sys
