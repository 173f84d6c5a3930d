// Drawings in binary form, made by another way than the host's.
#pragma once

#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"
#include "sys/file.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace test {

inline void append_bits(std::string& out, std::uint64_t bits, int size) {
    for (int i = 0; i < size; ++i)
        out += static_cast<char>(bits >> (8 * i) & 0xFF);
}

// An ASCII drawing as a binary one, by the tables of the DXF reference: with group codes of two bytes, or as
// before R13 of one.
inline std::string as_binary(std::string_view ascii, bool wide) {
    std::string out("AutoCAD Binary DXF\r\n\x1A\0", 22);
    const dxf::padded_string padded{std::string(ascii)};
    dxf::group_reader groups(padded.view());
    dxf::raw_group group;
    while (groups.next(group)) {
        if (wide) {
            append_bits(out, static_cast<std::uint64_t>(group.code), 2);
        } else if (group.code < 255) {
            out += static_cast<char>(group.code);
        } else {
            out += '\xFF';
            append_bits(out, static_cast<std::uint64_t>(group.code), 2);
        }
        const int code = group.code;
        const std::string value(dxf::trimmed(group.value));
        const auto in = [code](int first, int last) { return code >= first && code <= last; };
        if (in(10, 59) || in(110, 149) || in(210, 239) || in(460, 469) || in(1010, 1059)) {
            const double real = std::strtod(value.c_str(), nullptr);
            std::uint64_t bits = 0;
            std::memcpy(&bits, &real, 8);
            append_bits(out, bits, 8);
        } else if (in(290, 299)) {
            append_bits(out, std::strtoull(value.c_str(), nullptr, 10), 1);
        } else if (in(60, 79) || in(170, 179) || in(270, 289) || in(370, 389) || in(400, 409) ||
                   in(1060, 1070)) {
            append_bits(out, static_cast<std::uint64_t>(std::strtoll(value.c_str(), nullptr, 10)), 2);
        } else if (in(90, 99) || in(420, 429) || in(440, 459) || code == 1071) {
            append_bits(out, static_cast<std::uint64_t>(std::strtoll(value.c_str(), nullptr, 10)), 4);
        } else if (in(160, 169)) {
            append_bits(out, static_cast<std::uint64_t>(std::strtoll(value.c_str(), nullptr, 10)), 8);
        } else if (in(310, 319) || code == 1004) {
            out += static_cast<char>(value.size() / 2);
            for (std::size_t i = 0; i + 1 < value.size(); i += 2)
                out += static_cast<char>(std::stoi(value.substr(i, 2), nullptr, 16));
        } else {
            std::string text(group.value);
            for (std::size_t at = 0; (at = text.find('^', at)) != text.npos; ++at) // raw in binary
                text.replace(at, 2, 1, text[at + 1] == ' ' ? '^' : static_cast<char>(text[at + 1] - '@'));
            out += text + '\0';
        }
        if (code == 0 && group.value == "EOF")
            break;
    }
    return out;
}

} // namespace test
