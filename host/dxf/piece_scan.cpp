#include "host/dxf/piece_scan.h"

#include "base/number_text.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/indexer.h"
#include "host/dxf/line_manner.h"
#include "host/dxf/type_name.h"

#include <algorithm>
#include <system_error>

namespace dxf {

namespace {

constexpr unsigned most_threads = 4;
constexpr std::size_t window = 16; // pieces whose records are held at a time

// Where a record seems to begin: a line with the code 0, one that begins as types do, and a line with a code.
// A value 0 is followed by a code, which begins with no letter. Null when there is none.
const char* find_record(const char* from, const char* to) {
    line_scanner lines(padded_text::promised({from, to}));
    const char* feed = lines.next();
    const char* zero = nullptr;  // the line before, where it is a 0
    const char* typed = nullptr; // the 0 before that, where a type follows it
    while (feed != to) {
        const char* const line = feed + 1;
        feed = lines.next();
        if (feed == to)
            return nullptr;
        const int code = parse_code(line, feed);
        if (typed != nullptr && code != no_code)
            return typed;
        typed = zero != nullptr && *line >= 'A' && *line <= 'Z' ? zero : nullptr;
        zero = code == 0 ? line : nullptr;
    }
    return nullptr;
}

// What ends a piece: the reader has more to do there than to take a record.
bool is_frame(std::string_view type) {
    return type == "SECTION" || type == "TABLE" || type == "EOF";
}

// Reads records from a place on, until the end of the piece or the first thing that wants care.
class reader {
public:
    reader(scanned_piece& piece, const char* begin)
        : piece_(piece), lines_(padded_text::promised({begin, piece.to})), at_(begin) {}

    void read() {
        constexpr std::size_t bytes_per_record = 128;
        piece_.records.reserve(static_cast<std::size_t>(piece_.to - at_) / bytes_per_record);
        raw_group group;
        while (next(group) && take(group))
            at_ = group.end;
        // Lines behind the type of the record that reading ended in would be damage of the one before, too.
        constexpr std::size_t unsure = 2;
        if (piece_.records.size() <= unsure || lines_.zero_bytes())
            return;
        piece_.begin = piece_.records.front().begin;
        piece_.end = piece_.records[piece_.records.size() - unsure].begin;
        piece_.records.resize(piece_.records.size() - unsure);
        piece_.high_bytes = lines_.high_bytes();
    }

private:
    // False at the end of the piece, and at lines that are no group.
    bool next(raw_group& group) {
        const char* const code_end = lines_.next();
        if (code_end == piece_.to)
            return false;
        group.code = parse_code(at_, code_end);
        const char* const value_end = lines_.next();
        if (group.code == no_code || value_end == piece_.to)
            return false;
        const char* const value = code_end + 1;
        const bool has_return = value_end != value && value_end[-1] == '\r';
        group.value = {value, static_cast<std::size_t>(value_end - value) - (has_return ? 1 : 0)};
        group.end = value_end + 1;
        return true;
    }

    bool take(const raw_group& group) {
        if ((group.value.empty() || group.value.back() == ' ') && is_blank(group.value) &&
            (must_have_value(group.code) || (group.code == 2 && is_block_)))
            return false;
        if (group.code == 0)
            return begin_record(group);
        in_header_ = in_header_ && taker_.take(group);
        in_entity_ = in_entity_ && scattered_.take(group, taker_.header);
        return true;
    }

    bool begin_record(const raw_group& group) {
        const std::string_view type = type_name_of(group.value);
        const bool is_name = !type.empty() && type.front() >= 'A' && type.front() <= 'Z';
        if (!is_name && (type.empty() || base::parse_real(type)))
            return false;
        if (!finish_record())
            return false;
        piece_.records.push_back({at_, nullptr, 0, 0, piece_.types.put(type), 0, false});
        taker_ = header_taker(type);
        scattered_ = scattered_taker(type);
        is_block_ = type == "BLOCK";
        in_header_ = in_entity_ = true;
        return !is_frame(type);
    }

    bool finish_record() {
        if (piece_.records.empty())
            return true;
        if (taker_.has_handle() && taker_.header.handle == 0)
            return false;
        scanned_record& record = piece_.records.back();
        record.end = at_;
        record.handle = taker_.header.handle;
        record.owner = taker_.header.owner;
        record.layer = piece_.layers.put(taker_.header.layer);
        record.paper = taker_.header.paper;
        return true;
    }

    scanned_piece& piece_;
    line_scanner lines_;
    const char* at_; // the group that is read
    header_taker taker_{std::string_view()};
    scattered_taker scattered_{std::string_view()};
    bool in_header_ = false;
    bool in_entity_ = false;
    bool is_block_ = false;
};

void scan(scanned_piece& piece) {
    if (const char* const begin = find_record(piece.from, piece.to))
        reader(piece, begin).read();
}

} // namespace

scan_manner& piece_scan::usual_manner() {
    static scan_manner manner;
    return manner;
}

piece_scan::piece_scan(padded_text text, const scan_manner& manner) {
    const std::size_t size = manner.piece_size;
    if (text.size() < 2 * size)
        return;
    count_ = (text.size() + size - 1) / size;
    pieces_ = std::make_unique<scanned_piece[]>(count_);
    for (std::size_t i = 0; i < count_; ++i) {
        pieces_[i].from = text.data() + i * size;
        pieces_[i].to = text.data() + std::min(text.size(), (i + 1) * size);
    }
    const unsigned threads =
        manner.threads != 0 ? manner.threads : std::min(std::thread::hardware_concurrency(), most_threads);
    try {
        for (unsigned i = 1; i < threads; ++i)
            workers_.emplace_back([this] { work(); });
    } catch (const std::system_error&) { // those that there are do, or the reader alone
    }
}

piece_scan::~piece_scan() {
    stop_ = true;
    passed_ = count_ + 1;
    passed_.notify_all();
    for (std::thread& worker : workers_)
        worker.join();
}

// Looks over the next piece below the limit that nobody has begun; false when there is none.
bool piece_scan::scan_one(std::size_t limit) {
    std::size_t mine = claimed_.load();
    do {
        if (mine >= std::min(limit, count_))
            return false;
    } while (!claimed_.compare_exchange_weak(mine, mine + 1));
    scan(pieces_[mine]);
    pieces_[mine].done = true;
    pieces_[mine].done.notify_all();
    return true;
}

void piece_scan::work() {
    while (!stop_ && claimed_ < count_) {
        const std::size_t passed = passed_;
        if (!scan_one(passed + window))
            passed_.wait(passed);
    }
}

const scanned_piece* piece_scan::from(const char* place) {
    for (; current_ < count_; ++current_) {
        scanned_piece& piece = pieces_[current_];
        while (!piece.done)
            if (!scan_one(current_ + (workers_.empty() ? 1 : 2)))
                piece.done.wait(false);
        if (piece.begin != nullptr && piece.begin >= place)
            return &piece;
        std::vector<scanned_record>().swap(piece.records);
        passed_ = current_ + 1;
        passed_.notify_all();
    }
    return nullptr;
}

} // namespace dxf
