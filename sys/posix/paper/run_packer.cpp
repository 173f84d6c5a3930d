#include "sys/posix/paper/run_packer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <zlib.h>

namespace sys {

namespace {

constexpr std::size_t step = 3; // bytes of a dot
constexpr unsigned longest = 258;
constexpr unsigned shortest = 3;
constexpr unsigned end_of_block = 256;
constexpr unsigned symbols = 286;

// Lengths of the codes, fixed: one bit for the longest run, which is by far the most common symbol, 7 for
// other runs, 9 or 10 for single bytes. Together they leave no code unused, as readers want it.
constexpr std::array<std::uint8_t, symbols> code_lengths = [] {
    std::array<std::uint8_t, symbols> lengths{};
    for (unsigned symbol = 0; symbol < symbols; ++symbol) {
        constexpr unsigned common = 31; // bytes that get shorter codes
        lengths[symbol] = symbol == symbols - 1 ? 1 : symbol > end_of_block ? 7 : symbol < common ? 9 : 10;
    }
    return lengths;
}();

// Codes go into the stream from their highest bit on, all else from the lowest.
constexpr unsigned reversed(unsigned code, unsigned length) {
    unsigned turned = 0;
    for (unsigned bit = 0; bit < length; ++bit)
        turned |= ((code >> bit) & 1u) << (length - 1 - bit);
    return turned;
}

// Source: RFC 1951, 3.2.2: codes of one length follow each other, behind all shorter ones.
constexpr std::array<std::uint16_t, symbols> codes = [] {
    std::array<std::uint16_t, symbols> made{};
    unsigned code = 0;
    for (unsigned length = 1; length <= 10; ++length) {
        code <<= 1;
        for (unsigned symbol = 0; symbol < symbols; ++symbol)
            if (code_lengths[symbol] == length)
                made[symbol] = static_cast<std::uint16_t>(reversed(code++, length));
    }
    return made;
}();

class bit_writer {
public:
    explicit bit_writer(std::string& bytes) : bytes_(bytes) {}

    void put(std::uint32_t value, unsigned count) {
        held_ |= std::uint64_t{value} << held_count_;
        held_count_ += count;
        while (held_count_ >= 8) {
            bytes_ += static_cast<char>(held_ & 0xFF);
            held_ >>= 8;
            held_count_ -= 8;
        }
    }
    void symbol(unsigned which) { put(codes[which], code_lengths[which]); }
    void fill_byte() { put(0, (8 - held_count_ % 8) % 8); }

private:
    std::string& bytes_;
    std::uint64_t held_ = 0;
    unsigned held_count_ = 0;
};

// Source: RFC 1951, 3.2.7: the lengths of the codes, themselves in a code.
void write_header(bit_writer& out) {
    constexpr unsigned distances = 3; // of which only the third, of three bytes, is used
    constexpr unsigned order[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1};
    struct length_code {
        unsigned length;
        unsigned code;
        unsigned bits;
    };
    // Shorter first, and by the lengths that they mean.
    constexpr length_code known[] = {
        {10, 0b0, 1}, {9, 0b10, 2}, {7, 0b110, 3}, {0, 0b1110, 4}, {1, 0b1111, 4}};
    out.put(0b100, 3); // not the last block, codes of its own
    out.put(symbols - 257, 5);
    out.put(distances - 1, 5);
    out.put(static_cast<std::uint32_t>(std::size(order)) - 4, 4);
    for (const unsigned length : order) {
        const auto* const at = std::find_if(std::begin(known), std::end(known),
                                            [&](const length_code& each) { return each.length == length; });
        out.put(at != std::end(known) ? at->bits : 0, 3);
    }
    const auto put_length = [&](unsigned length) {
        for (const length_code& each : known)
            if (each.length == length)
                out.put(reversed(each.code, each.bits), each.bits);
    };
    for (const std::uint8_t length : code_lengths)
        put_length(length);
    for (const unsigned length : {0u, 0u, 1u})
        put_length(length);
}

// Source: RFC 1951, 3.2.5: the symbols of lengths and the bits behind them.
void write_run(bit_writer& out, unsigned length) {
    constexpr unsigned first_symbol = 257;
    if (length == longest) {
        out.symbol(symbols - 1);
    } else if (length < shortest + 8) {
        out.symbol(first_symbol + length - shortest);
    } else {
        const unsigned beyond = length - shortest;
        const auto more = static_cast<unsigned>(std::bit_width(beyond)) - 3;
        out.symbol(first_symbol + 4 * more + (beyond >> more));
        out.put(beyond & ((1u << more) - 1), more);
    }
    out.put(0, 1); // three bytes back
}

// How many bytes from `at` on are those three before them.
std::size_t run_at(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::size_t end = at;
    while (end + sizeof(std::uint64_t) <= bytes.size()) {
        std::uint64_t here = 0;
        std::uint64_t before = 0;
        std::memcpy(&here, bytes.data() + end, sizeof here);
        std::memcpy(&before, bytes.data() + end - step, sizeof before);
        if (here != before)
            break;
        end += sizeof here;
    }
    while (end < bytes.size() && bytes[end] == bytes[end - step])
        ++end;
    return end - at;
}

std::uint32_t check_behind(std::uint32_t check, std::span<const std::uint8_t> bytes, bool noughts) {
    if (!noughts)
        return static_cast<std::uint32_t>(adler32_z(check, bytes.data(), bytes.size()));
    constexpr std::uint32_t base = 65521;
    const std::uint64_t low = check & 0xFFFF;
    const std::uint64_t high = (check >> 16) + low * (bytes.size() % base);
    return static_cast<std::uint32_t>((high % base) << 16 | low);
}

} // namespace

std::optional<packed_piece> pack_runs(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t most_left = 16; // of so many bytes one
    packed_piece made;
    bit_writer out(made.bytes);
    write_header(out);
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t run = at >= step ? run_at(bytes, at) : 0;
        constexpr std::size_t worth_it = 4;
        if (run < worth_it) {
            out.symbol(bytes[at]);
            made.check = check_behind(made.check, bytes.subspan(at, 1), false);
            ++at;
            if (made.bytes.size() > bytes.size() / most_left)
                return std::nullopt;
            continue;
        }
        std::size_t left = run;
        while (left >= shortest) {
            const auto length = static_cast<unsigned>(std::min<std::size_t>(left, longest));
            write_run(out, length);
            left -= length;
        }
        const std::span<const std::uint8_t> same = bytes.subspan(at, run - left);
        made.check = check_behind(made.check, same, same[0] == 0 && same[1] == 0 && same[2] == 0);
        at += same.size();
    }
    out.symbol(end_of_block);
    out.put(0, 3); // a stored block with nothing in it, which begins at a whole byte
    out.fill_byte();
    made.bytes.append("\0\0\xFF\xFF", 4);
    return made;
}

} // namespace sys
