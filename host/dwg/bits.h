// The bits of a DWG file: numbers, texts and handles as its bit codes write them.
//
// A reader never leaves its range. What would lie behind it reads as zero and makes the reader bad, and so
// does a code that the format does not use; who reads looks at bad() once, at the end of what belongs
// together. Source of the codes: Open Design Specification for .dwg files 5.4.1, chapter 2, checked on
// drawings.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace dwg {

// A reference to an object: how it is meant (2 and 3 own, 4 and 5 point; odd ones are hard) and to which.
struct reference {
    std::uint8_t code = 0;
    std::uint64_t handle = 0;
};

class bit_reader {
public:
    bit_reader() = default;
    // Reads the bits [begin, end) of `bytes`, which must outlive the reader.
    bit_reader(std::string_view bytes, std::size_t begin, std::size_t end)
        : bytes_(bytes), at_(begin), end_(end) {
        if (end_ > bytes.size() * 8 || at_ > end_) {
            at_ = end_ = 0;
            bad_ = true;
        }
    }
    explicit bit_reader(std::string_view bytes) : bit_reader(bytes, 0, bytes.size() * 8) {}

    bool bad() const { return bad_; }
    void spoil() { bad_ = true; }
    // Places are counted in bits from the first of `bytes`.
    std::size_t at() const { return at_; }
    std::size_t end() const { return end_; }
    std::size_t left() const { return end_ - at_; }
    std::string_view bytes() const { return bytes_; }
    void seek(std::size_t at) { at <= end_ ? void(at_ = at) : spoil(); }
    void skip(std::size_t bits) { bits <= left() ? void(at_ += bits) : spoil(); }
    // Lets the range end earlier.
    void end_at(std::size_t end) { end <= end_&& end >= at_ ? void(end_ = end) : spoil(); }

    // The next bits, at most 56, the first one highest.
    std::uint64_t take(unsigned count) {
        if (count > left()) {
            bad_ = true;
            at_ = end_;
            return 0;
        }
        if (count == 0)
            return 0;
        const std::size_t first = at_ / 8;
        std::uint64_t word = 0;
        if (first + 8 <= bytes_.size()) {
            std::memcpy(&word, bytes_.data() + first, 8);
            if constexpr (std::endian::native == std::endian::little)
                word = __builtin_bswap64(word);
        } else {
            for (std::size_t i = first; i < first + 8; ++i)
                word = word << 8 | (i < bytes_.size() ? static_cast<unsigned char>(bytes_[i]) : 0);
        }
        word <<= at_ % 8;
        at_ += count;
        return word >> (64 - count);
    }

    bool B() { return take(1) != 0; }
    unsigned BB() { return static_cast<unsigned>(take(2)); }
    std::uint8_t RC() { return static_cast<std::uint8_t>(take(8)); }
    std::uint16_t RS() { return __builtin_bswap16(static_cast<std::uint16_t>(take(16))); }
    std::uint32_t RL() { return __builtin_bswap32(static_cast<std::uint32_t>(take(32))); }
    std::uint64_t RLL() {
        const std::uint64_t low = RL();
        return low | static_cast<std::uint64_t>(RL()) << 32;
    }
    double RD() { return std::bit_cast<double>(RLL()); }

    std::uint16_t BS() {
        switch (BB()) {
        case 0:
            return RS();
        case 1:
            return RC();
        case 2:
            return 0;
        default:
            return 256;
        }
    }
    std::uint32_t BL() {
        switch (BB()) {
        case 0:
            return RL();
        case 1:
            return RC();
        case 2:
            return 0;
        default:
            spoil();
            return 0;
        }
    }
    std::uint64_t BLL() {
        std::uint64_t value = 0;
        const unsigned count = static_cast<unsigned>(take(3));
        for (unsigned i = 0; i < count; ++i)
            value |= static_cast<std::uint64_t>(RC()) << (8 * i);
        return value;
    }
    double BD() {
        switch (BB()) {
        case 0:
            return RD();
        case 1:
            return 1;
        case 2:
            return 0;
        default:
            spoil();
            return 0;
        }
    }
    // A double of which only the bytes that differ from another one are written.
    double DD(double usual) {
        auto bits = std::bit_cast<std::uint64_t>(usual);
        switch (BB()) {
        case 0:
            return usual;
        case 1:
            return std::bit_cast<double>((bits & 0xFFFFFFFF00000000) | RL());
        case 2: {
            const std::uint64_t middle = RS();
            bits = (bits & 0xFFFF000000000000) | middle << 32;
            return std::bit_cast<double>(bits | RL());
        }
        default:
            return RD();
        }
    }
    // Of seven bits a byte, the lowest first.
    std::uint64_t MC() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const std::uint8_t byte = RC();
            value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if ((byte & 0x80) == 0)
                return value;
        }
        spoil();
        return 0;
    }
    std::int64_t signed_MC() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 63; shift += 7) {
            const std::uint8_t byte = RC();
            if ((byte & 0x80) != 0) {
                value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
                continue;
            }
            value |= static_cast<std::uint64_t>(byte & 0x3F) << shift;
            return (byte & 0x40) != 0 ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
        }
        spoil();
        return 0;
    }
    std::uint32_t MS() {
        std::uint32_t value = 0;
        for (unsigned shift = 0; shift < 30; shift += 15) {
            const std::uint16_t word = RS();
            value |= static_cast<std::uint32_t>(word & 0x7FFF) << shift;
            if ((word & 0x8000) == 0)
                return value;
        }
        spoil();
        return 0;
    }
    // A reference as it stands in the object with the handle `own`, to which some codes relate.
    reference H(std::uint64_t own) {
        const auto code = static_cast<std::uint8_t>(take(4));
        const unsigned count = static_cast<unsigned>(take(4));
        constexpr unsigned most_at_once = 7; // bytes
        std::uint64_t value = 0;
        if (count > 8)
            spoil();
        else if (count > most_at_once)
            value = take(8 * (count - most_at_once)) << 8 * most_at_once | take(8 * most_at_once);
        else
            value = take(8 * count);
        switch (code) {
        case 6:
            return {4, own + 1};
        case 8:
            return {4, own - 1};
        case 10:
            return {4, own + value};
        case 12:
            return {4, own - value};
        default:
            return {code, value};
        }
    }

private:
    std::string_view bytes_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    bool bad_ = false;
};

} // namespace dwg
