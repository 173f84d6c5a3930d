// A small DWG file of 2000, written bit by bit: what it takes to be a drawing, layers, lines and a text.
#pragma once

#include "host/dwg/checksums.h"

#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class dwg_bits {
public:
    dwg_bits& bits(std::uint64_t value, unsigned count) {
        for (unsigned i = count; i-- > 0; ++size_) {
            if (size_ % 8 == 0)
                bytes_ += '\0';
            bytes_.back() = static_cast<char>(static_cast<unsigned char>(bytes_.back()) |
                                              (value >> i & 1) << (7 - size_ % 8));
        }
        return *this;
    }
    dwg_bits& raw(std::uint64_t value, unsigned bytes) { // lowest byte first
        for (unsigned i = 0; i < bytes; ++i, value >>= 8)
            bits(value & 0xFF, 8);
        return *this;
    }
    dwg_bits& BS(std::uint16_t value) { return bits(0, 2).raw(value, 2); }
    dwg_bits& BL(std::uint32_t value) { return bits(0, 2).raw(value, 4); }
    dwg_bits& RD(double value) { return raw(std::bit_cast<std::uint64_t>(value), 8); }
    dwg_bits& BD(double value) { return bits(0, 2).RD(value); }
    dwg_bits& H(unsigned code, std::uint64_t handle) { return bits(code, 4).bits(2, 4).bits(handle, 16); }
    dwg_bits& T(std::string_view text) {
        BS(static_cast<std::uint16_t>(text.size()));
        for (const char c : text)
            bits(static_cast<unsigned char>(c), 8);
        return *this;
    }
    dwg_bits& all_of(const dwg_bits& other) {
        for (std::size_t i = 0; i < other.size_; ++i)
            bits(static_cast<unsigned char>(other.bytes_[i / 8]) >> (7 - i % 8) & 1, 1);
        return *this;
    }
    std::size_t size() const { return size_; }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
    std::size_t size_ = 0;
};

class dwg_maker {
public:
    using bits = dwg_bits;

    dwg_maker() {
        const auto table = [&](std::uint64_t handle, std::uint16_t type, std::vector<std::uint64_t> entries,
                               std::uint32_t others = 0) {
            bits data, handles;
            data.BL(static_cast<std::uint32_t>(entries.size()) - others);
            if (type == 68)
                data.raw(0, 1);
            for (const std::uint64_t entry : entries)
                handles.H(2, entry);
            object(handle, type, 0, data, handles);
        };
        table(1, 48, {0x1F, 0x1B}, 2);
        table(2, 50, {});
        table(3, 52, {0x11});
        table(5, 56, {0x16, 0x14, 0x15}, 2);
        table(6, 60, {});
        table(7, 62, {});
        table(8, 64, {});
        table(9, 66, {0x12});
        table(0xA, 68, {});
        object(0xC, 42, 0, bits().BL(0).BS(1).raw(0, 1), {});
        object(0x11, 53, 3, head("Standard").bits(0, 2).BD(0).BD(1).BD(0).raw(0, 1).BD(2.5).T("txt").T(""),
               bits().H(5, 0));
        object(0x12, 67, 9, head("ACAD").raw(0, 1), bits().H(5, 0));
        for (const auto& [handle, name] :
             std::map<std::uint64_t, const char*>{{0x14, "ByBlock"}, {0x15, "ByLayer"}, {0x16, "Continuous"}})
            object(handle, 57, 5, head(name).T("").BD(0).raw('A', 1).raw(0, 1).all_of(area()),
                   bits().H(5, 0));
        layer(0x10, "0", 0x3F0);
        block(0x1F, "*Model_Space", 0x20, 2);
        block(0x1B, "*Paper_Space", 0x1C, 1);
    }

    // Flags as the file has them: 1 frozen, 2 off, 8 locked, 0x10 plotted.
    void layer(std::uint64_t handle, std::string_view name, std::uint16_t flags) {
        object(handle, 51, 2, head(name).BS(flags).BS(3), bits().H(5, 0).H(5, 0).H(5, 0x16));
    }
    void line(std::uint64_t handle, std::uint64_t on_layer, double x1, double y1, double x2, double y2) {
        const bits data =
            entity(2).bits(1, 1).RD(x1).bits(3, 2).RD(x2).RD(y1).bits(3, 2).RD(y2).bits(1, 1).bits(1, 1);
        add(handle, 19, data, bits().H(3, 0).H(5, on_layer));
    }
    void text(std::uint64_t handle, std::uint64_t on_layer, std::string_view words) {
        const bits data = entity(2).raw(0xFF, 1).RD(1).RD(2).bits(1, 1).bits(1, 1).RD(2.5).T(words);
        add(handle, 1, data, bits().H(3, 0).H(5, on_layer).H(5, 0x11));
    }
    // An entity of any type, on layer 0, with the fields of that type.
    void entity_of(std::uint64_t handle, std::uint16_t type, const bits& fields) {
        add(handle, type, entity(2).all_of(fields), bits().H(3, 0).H(5, 0x10));
    }
    // Where an object stands in the file.
    std::size_t address(std::uint64_t handle) const { return first_object + places_.at(handle); }

    std::string file(std::uint16_t code_page = 30) const {
        bits head;
        for (const char c : std::string_view("AC1015\0\0\0\0\0\0\x01", 13))
            head.raw(static_cast<unsigned char>(c), 1);
        head.raw(0, 6).raw(code_page, 2);
        const std::string map = object_map();
        head.raw(3, 4);
        head.raw(0, 1).raw(0, 8).raw(1, 1).raw(0, 8);
        head.raw(2, 1).raw(first_object + objects_.size(), 4).raw(map.size(), 4);
        const std::uint16_t sum = dwg::crc16(head.bytes(), 0) ^ 0xA598;
        head.raw(sum, 2);
        std::string bytes = head.bytes();
        bytes.resize(first_object);
        return bytes + objects_ + map;
    }

private:
    static constexpr std::size_t first_object = 0x100;

    static bits head(std::string_view name) { return bits().T(name).bits(0, 1).BS(0).bits(0, 1); }
    static bits area() {
        bits empty;
        for (int i = 0; i < 256; ++i)
            empty.raw(0, 1);
        return empty;
    }
    // Without graphics; in a space; no reactors; no links; by layer in all.
    static bits entity(unsigned mode) {
        return bits().bits(0, 1).bits(mode, 2).BL(0).bits(1, 1).BS(256).BD(1).bits(0, 4).BS(0).raw(29, 1);
    }
    void block(std::uint64_t handle, std::string_view name, std::uint64_t begin, unsigned mode) {
        bits data = head(name);
        data.bits(0, 5).BD(0).BD(0).BD(0).T("").raw(0, 1).T("").BL(0);
        object(handle, 49, 1, data, bits().H(5, 0).H(3, begin).H(4, 0).H(4, 0).H(3, begin + 1).H(5, 0));
        add(begin, 4, entity(mode).T(name), bits().H(3, 0).H(5, 0x10));
        add(begin + 1, 5, entity(mode), bits().H(3, 0).H(5, 0x10));
    }
    void object(std::uint64_t handle, std::uint16_t type, std::uint64_t owner, const bits& data,
                const bits& handles) {
        add(handle, type, bits().BL(0).all_of(data), bits().H(4, owner).H(3, 0).all_of(handles));
    }
    void add(std::uint64_t handle, std::uint16_t type, const bits& data, const bits& handles) {
        const bits body = bits().H(0, handle).BS(0).all_of(data);
        bits whole;
        whole.BS(type);
        whole.raw(whole.size() + 32 + body.size(), 4).all_of(body).all_of(handles);
        bits framed;
        framed.raw(whole.bytes().size(), 2);
        std::string bytes = framed.bytes() + whole.bytes();
        const std::uint16_t sum = dwg::crc16(bytes, dwg::crc_start);
        bytes += static_cast<char>(sum);
        bytes += static_cast<char>(sum >> 8);
        places_[handle] = objects_.size();
        objects_ += bytes;
    }
    std::string object_map() const {
        std::string pairs;
        std::uint64_t last = 0;
        std::size_t at = 0;
        const auto signed_number = [&](std::int64_t value) { // the sign is bit 6 of the last byte
            std::uint64_t size = static_cast<std::uint64_t>(value < 0 ? -value : value);
            for (; size > 0x3F; size >>= 7)
                pairs += static_cast<char>((size & 0x7F) | 0x80);
            pairs += static_cast<char>(size | (value < 0 ? 0x40 : 0));
        };
        for (const auto& [handle, place] : places_) {
            pairs += static_cast<char>(handle - last);
            signed_number(static_cast<std::int64_t>(place + first_object) - static_cast<std::int64_t>(at));
            last = handle;
            at = place + first_object;
        }
        std::string map;
        for (const std::string& page : {pairs, std::string()}) {
            const std::size_t size = page.size() + 2;
            const std::string bytes =
                std::string{static_cast<char>(size >> 8), static_cast<char>(size)} + page;
            const std::uint16_t sum = dwg::crc16(bytes, dwg::crc_start);
            map += bytes + static_cast<char>(sum >> 8) + static_cast<char>(sum);
        }
        return map;
    }

    std::string objects_;
    std::map<std::uint64_t, std::size_t> places_;
};

} // namespace test
