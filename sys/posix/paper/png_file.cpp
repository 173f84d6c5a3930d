#include "sys/posix/paper/png_file.h"

#include "sys/posix/paper/packed_bytes.h"

#include <cstddef>
#include <string_view>
#include <zlib.h>

namespace sys {

namespace {

void append_number(std::string& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>((number >> shift) & 0xFF);
}

void append_chunk(std::string& bytes, std::string_view kind, std::string_view data) {
    append_number(bytes, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = bytes.size();
    bytes += kind;
    bytes += data;
    append_number(bytes, static_cast<std::uint32_t>(crc32_z(
                             0, reinterpret_cast<const Bytef*>(bytes.data() + start), bytes.size() - start)));
}

} // namespace

std::string png_file(const std::uint8_t* dots, int width, int height, int row_bytes) {
    std::string bytes = "\x89PNG\r\n\x1A\n";
    std::string header;
    append_number(header, static_cast<std::uint32_t>(width));
    append_number(header, static_cast<std::uint32_t>(height));
    header.append("\x08\x02\0\0\0", 5); // eight bits of red, green and blue
    append_chunk(bytes, "IHDR", header);
    packed_bytes packed;
    constexpr std::size_t parts = 3;
    const std::size_t length = static_cast<std::size_t>(width) * parts;
    for (int row = 0; row < height; ++row) {
        const std::uint8_t* from = dots + std::ptrdiff_t{row} * row_bytes;
        std::string& out = packed.buffer();
        out += '\0'; // as they are
        const std::size_t start = out.size();
        out.resize(start + length);
        auto* to = reinterpret_cast<std::uint8_t*>(out.data() + start);
        for (int column = 0; column < width; ++column, from += 4, to += parts) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
        }
        packed.settle();
    }
    append_chunk(bytes, "IDAT", packed.finish());
    append_chunk(bytes, "IEND", {});
    return bytes;
}

} // namespace sys
