// Looks over a long text in pieces, by several cores: each piece is read as if a record began where one seems
// to.
//
// Who reads the text from front to back takes what was found in a piece when he comes to exactly the place
// where its first record begins; what he does not meet so he reads himself. A piece ends in front of
// everything that wants care (lines that are no groups, values that are lost, handles that are none, the
// frame of sections and tables, the end of the file). So a wrong guess costs time, and nothing else.
#pragma once

#include "adesk.h"
#include "host/dxf/names.h"
#include "host/dxf/padded_text.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

namespace dxf {

// How a text is cut; tests take tiny pieces.
struct scan_manner {
    std::size_t piece_size = std::size_t(1) << 20; // bytes
    unsigned threads = 0;                          // 0: as many as the machine has cores, up to four
};

struct scanned_record {
    const char* begin;
    const char* end;
    std::uint64_t handle;
    std::uint64_t owner;
    std::uint32_t type;  // number among the piece's types
    std::uint32_t layer; // and among its layers
    bool paper;
};

struct scanned_piece {
    const char* from = nullptr; // what is looked over: [from, to)
    const char* to = nullptr;
    const char* begin = nullptr; // of the first record; null when nothing can be taken
    const char* end = nullptr;   // of the last one
    std::vector<scanned_record> records;
    name_set types;
    name_set layers;
    bool high_bytes = false; // whether any byte is above 127
    std::atomic<bool> done = false;
};

class ACDB_PORT piece_scan {
public:
    // How texts are looked over where nothing else is said; tests change it.
    static scan_manner& usual_manner();

    // The text must stay where it is.
    piece_scan(padded_text text, const scan_manner& manner);
    ~piece_scan();
    piece_scan(const piece_scan&) = delete;
    piece_scan& operator=(const piece_scan&) = delete;

    // The next piece with records that begins at a place or behind it; null when there is none. Valid until
    // the next call.
    const scanned_piece* from(const char* place);

private:
    bool scan_one(std::size_t limit);
    void work();

    std::unique_ptr<scanned_piece[]> pieces_;
    std::size_t count_ = 0;
    std::size_t current_ = 0;
    std::atomic<std::size_t> claimed_ = 0; // pieces that somebody has begun
    std::atomic<std::size_t> passed_ = 0;  // pieces that are not asked for any more
    std::atomic<bool> stop_ = false;
    std::vector<std::thread> workers_;
};

} // namespace dxf
