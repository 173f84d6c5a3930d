#include "sys/posix/paper/png_file.h"

#include "sys/posix/paper/run_packer.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>
#include <zlib.h>

namespace sys {

namespace {

constexpr int together = 32; // rows that are packed as a piece, whoever packs them

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

struct picture_dots {
    const std::uint8_t* dots;
    int width;
    int height;
    int row_bytes;

    const std::uint8_t* row(int at) const { return dots + std::ptrdiff_t{at} * row_bytes; }
    std::size_t length() const { return static_cast<std::size_t>(width) * 3 + 1; } // of a packed row
};

// Rows as they are, or as what differs from the row above.
void take_rows(const picture_dots& picture, int first, int last, bool differences,
               std::vector<std::uint8_t>& rows) {
    constexpr std::uint8_t as_they_are = 0;
    constexpr std::uint8_t from_above = 2;
    rows.resize(static_cast<std::size_t>(last - first) * picture.length());
    std::uint8_t* to = rows.data();
    for (int row = first; row < last; ++row) {
        const std::uint8_t* from = picture.row(row);
        *to++ = differences ? from_above : as_they_are;
        if (!differences || row == 0) {
            for (int column = 0; column < picture.width; ++column, from += 4, to += 3) {
                to[0] = from[2];
                to[1] = from[1];
                to[2] = from[0];
            }
            continue;
        }
        const std::uint8_t* above = picture.row(row - 1);
        constexpr int block = 16; // dots that are compared at a time: most are those above
        for (int column = 0; column < picture.width;) {
            if (column + block <= picture.width && std::memcmp(from, above, block * 4) == 0) {
                std::memset(to, 0, block * 3);
                column += block;
                from += block * 4;
                above += block * 4;
                to += block * 3;
                continue;
            }
            const int end = std::min(column + block, picture.width);
            for (; column < end; ++column, from += 4, above += 4, to += 3) {
                to[0] = static_cast<std::uint8_t>(from[2] - above[2]);
                to[1] = static_cast<std::uint8_t>(from[1] - above[1]);
                to[2] = static_cast<std::uint8_t>(from[0] - above[0]);
            }
        }
    }
}

packed_piece pack_by_zlib(std::vector<std::uint8_t>& rows) {
    constexpr int fast = 1;
    constexpr int no_header = -15;
    constexpr int usual_memory = 8;
    packed_piece made;
    z_stream state{};
    if (deflateInit2(&state, fast, Z_DEFLATED, no_header, usual_memory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    constexpr std::size_t marker = 16; // at the end of a piece
    try {
        made.bytes.resize(deflateBound(&state, static_cast<uLong>(rows.size())) + marker);
    } catch (...) {
        deflateEnd(&state);
        throw;
    }
    state.next_in = rows.data();
    state.avail_in = static_cast<uInt>(rows.size());
    state.next_out = reinterpret_cast<Bytef*>(made.bytes.data());
    state.avail_out = static_cast<uInt>(made.bytes.size());
    deflate(&state, Z_FULL_FLUSH);
    made.bytes.resize(state.total_out);
    deflateEnd(&state);
    made.check = static_cast<std::uint32_t>(adler32_z(1, rows.data(), rows.size()));
    return made;
}

packed_piece pack_rows(const picture_dots& picture, int first, std::vector<std::uint8_t>& rows) {
    const int last = std::min(first + together, picture.height);
    take_rows(picture, first, last, true, rows);
    if (auto made = pack_runs(rows))
        return std::move(*made);
    take_rows(picture, first, last, false, rows);
    return pack_by_zlib(rows);
}

// All pieces, packed by all cores.
std::vector<packed_piece> packed(const picture_dots& picture) {
    std::vector<packed_piece> pieces(static_cast<std::size_t>((picture.height + together - 1) / together));
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> failed = false;
    const auto work = [&] {
        try {
            std::vector<std::uint8_t> rows;
            for (std::size_t piece = next++; piece < pieces.size(); piece = next++)
                pieces[piece] = pack_rows(picture, static_cast<int>(piece) * together, rows);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
    };
    std::vector<std::thread> helpers;
    constexpr unsigned most_threads = 4;
    const std::size_t threads =
        std::min<std::size_t>({std::thread::hardware_concurrency(), most_threads, pieces.size()});
    try {
        while (helpers.size() + 1 < threads)
            helpers.emplace_back(work);
    } catch (const std::system_error&) { // those that there are do
    }
    work();
    for (std::thread& helper : helpers)
        helper.join();
    if (failed)
        throw std::bad_alloc();
    return pieces;
}

} // namespace

std::string png_file(const std::uint8_t* dots, int width, int height, int row_bytes) {
    std::string bytes = "\x89PNG\r\n\x1A\n";
    std::string header;
    append_number(header, static_cast<std::uint32_t>(width));
    append_number(header, static_cast<std::uint32_t>(height));
    header.append("\x08\x02\0\0\0", 5); // eight bits of red, green and blue
    append_chunk(bytes, "IHDR", header);
    const picture_dots picture{dots, width, height, row_bytes};
    std::string stream = "\x78\x01"; // a zlib stream
    std::uint32_t check = 1;
    int row = 0;
    for (const packed_piece& piece : packed(picture)) {
        const int rows = std::min(together, height - row);
        row += rows;
        stream += piece.bytes;
        check = static_cast<std::uint32_t>(
            adler32_combine(check, piece.check, static_cast<z_off_t>(picture.length()) * rows));
    }
    stream.append("\x03\0", 2); // the last block, with nothing in it
    append_number(stream, check);
    append_chunk(bytes, "IDAT", stream);
    append_chunk(bytes, "IEND", {});
    return bytes;
}

} // namespace sys
