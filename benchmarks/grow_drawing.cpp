// grow_drawing SOURCE TARGET MEGABYTES: writes a larger drawing by repeating the model-space entities of a
// small one, side by side. It stays a valid drawing: each copy has handles of its own, references inside a
// copy stay inside it, and $HANDSEED stands above them all. Everything else is copied byte by byte.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct group {
    std::string_view head; // the code's line, with its end
    std::string_view value;
    std::string_view tail; // the value's line end
    int code = 0;
};

// What a copy is made of: text that repeats as it is, and what differs from copy to copy.
struct piece {
    enum kinds { text, handle, x, y } kind = text;
    std::string_view words{};
    std::uint64_t number = 0; // of a handle: which of the copy's
    double place = 0;         // of a coordinate: where the original stands
};

// The points of an entity that move with it: X groups 10..18, Y groups 20..28. What is not listed stays in
// place.
const std::map<std::string_view, std::set<int>> moving_points{
    {"LINE", {10, 11}},
    {"POINT", {10}},
    {"CIRCLE", {10}},
    {"ARC", {10}},
    {"ELLIPSE", {10}},
    {"TEXT", {10, 11}},
    {"ATTRIB", {10, 11}},
    {"MTEXT", {10}},
    {"INSERT", {10}},
    {"LWPOLYLINE", {10}},
    {"VERTEX", {10}},
    {"SOLID", {10, 11, 12, 13}},
    {"3DFACE", {10, 11, 12, 13}},
    {"SPLINE", {10, 11}},
    {"LEADER", {10}},
    {"DIMENSION", {10, 11, 13, 14, 15, 16}},
};

bool is_reference(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481 ||
           code == 1005;
}

std::uint64_t parse_handle(std::string_view text) {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return value;
}

std::vector<group> split(std::string_view text) {
    std::vector<group> groups;
    std::size_t at = 0;
    const auto line_end = [&](std::size_t from) {
        const std::size_t end = text.find('\n', from);
        return end == text.npos ? text.size() : end + 1;
    };
    while (at < text.size()) {
        const std::size_t middle = line_end(at);
        const std::size_t end = line_end(middle);
        group next;
        next.head = text.substr(at, middle - at);
        std::string_view digits = next.head;
        digits.remove_prefix(std::min(digits.find_first_not_of(" \t"), digits.size()));
        std::from_chars(digits.data(), digits.data() + digits.size(), next.code);
        const std::string_view line = text.substr(middle, end - middle);
        const std::size_t length = line.find_last_not_of("\r\n") + 1;
        next.value = line.substr(0, length);
        next.tail = line.substr(length);
        groups.push_back(next);
        at = end;
    }
    return groups;
}

class drawing {
public:
    explicit drawing(std::string_view text) : size_(text.size()), groups_(split(text)) {}

    // Finds the seed, the entities and what to repeat of them. False when there is nothing to repeat.
    bool read();

    // Writes the drawing with as many copies as bring it to about `wanted` bytes. False when writing failed.
    bool write(std::FILE* out, std::size_t wanted) const;

private:
    void read_seed();
    void add_entity(std::size_t first, std::size_t last);
    void add_text(std::string_view text);
    void append_copy(std::string& out, std::uint64_t first_handle, double x, double y) const;

    std::size_t size_;
    std::vector<group> groups_;
    std::size_t seed_group_ = 0; // the value of $HANDSEED, 0 when there is none
    std::size_t end_of_entities_ = 0;
    std::uint64_t seed_ = 1;
    std::vector<piece> pattern_;
    std::map<std::uint64_t, std::uint64_t> renumbered_; // handle -> its place among the copy's handles
    double low_x_ = INFINITY, high_x_ = -INFINITY, low_y_ = INFINITY, high_y_ = -INFINITY;
};

void drawing::read_seed() {
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        if (groups_[i].code == 9 && groups_[i].value == "$HANDSEED" && i + 1 < groups_.size())
            seed_group_ = i + 1;
        if (groups_[i].code == 5 || groups_[i].code == 105)
            seed_ = std::max(seed_, parse_handle(groups_[i].value) + 1);
    }
    if (seed_group_ != 0)
        seed_ = std::max(seed_, parse_handle(groups_[seed_group_].value));
}

bool drawing::read() {
    read_seed();
    std::size_t i = 1;
    while (i < groups_.size() && !(groups_[i].value == "ENTITIES" && groups_[i - 1].value == "SECTION"))
        ++i;

    // Vertices, attributes and the end of their sequence share the fate of the entity before them.
    std::vector<std::pair<std::size_t, std::size_t>> entities;
    bool wanted = false;
    for (++i; i < groups_.size() && end_of_entities_ == 0;) {
        const std::size_t first = i;
        bool in_paper_space = false;
        for (++i; i < groups_.size() && groups_[i].code != 0; ++i)
            in_paper_space |= groups_[i].code == 67 && parse_handle(groups_[i].value) != 0;
        const std::string_view kind = groups_[first].value;
        if (kind == "ENDSEC")
            end_of_entities_ = first;
        else if (kind != "VERTEX" && kind != "ATTRIB" && kind != "SEQEND")
            wanted = kind != "VIEWPORT" && !in_paper_space;
        if (wanted && end_of_entities_ == 0)
            entities.emplace_back(first, i);
    }
    for (const auto& [first, last] : entities)
        for (std::size_t k = first; k < last; ++k)
            if (groups_[k].code == 5)
                renumbered_.emplace(parse_handle(groups_[k].value), renumbered_.size());
    for (const auto& [first, last] : entities)
        add_entity(first, last);
    return end_of_entities_ != 0 && !entities.empty();
}

void drawing::add_entity(std::size_t first, std::size_t last) {
    static const std::set<int> none;
    const auto found = moving_points.find(groups_[first].value);
    const std::set<int>& moving = found == moving_points.end() ? none : found->second;
    bool in_braces = false; // extension dictionary and reactors belong to the original alone
    for (std::size_t i = first; i < last; ++i) {
        const group& g = groups_[i];
        if (g.code == 102)
            in_braces = g.value.starts_with('{');
        if (in_braces || g.code == 102)
            continue;

        piece part{.words = g.value};
        const auto known = renumbered_.find(parse_handle(g.value));
        if ((g.code == 5 || is_reference(g.code)) && known != renumbered_.end()) {
            part.kind = piece::handle;
            part.number = known->second;
        } else if (moving.contains(g.code) || moving.contains(g.code - 10)) {
            part.kind = moving.contains(g.code) ? piece::x : piece::y;
            const char* digits = g.value.data() + std::min(g.value.find_first_not_of(' '), g.value.size());
            std::from_chars(digits, g.value.data() + g.value.size(), part.place);
            double& low = part.kind == piece::x ? low_x_ : low_y_;
            double& high = part.kind == piece::x ? high_x_ : high_y_;
            low = std::min(low, part.place);
            high = std::max(high, part.place);
        }
        add_text(g.head);
        if (part.kind == piece::text)
            add_text(g.value);
        else
            pattern_.push_back(part);
        add_text(g.tail);
    }
}

void drawing::add_text(std::string_view text) {
    if (!pattern_.empty() && pattern_.back().kind == piece::text) {
        std::string_view& words = pattern_.back().words;
        if (words.data() + words.size() == text.data()) {
            words = {words.data(), words.size() + text.size()};
            return;
        }
    }
    pattern_.push_back({.words = text});
}

void drawing::append_copy(std::string& out, std::uint64_t first_handle, double x, double y) const {
    char buffer[64];
    for (const piece& part : pattern_) {
        if (part.kind == piece::text) {
            out += part.words;
        } else if (part.kind == piece::handle) {
            const auto length = std::snprintf(buffer, sizeof buffer, "%llX",
                                              static_cast<unsigned long long>(first_handle + part.number));
            out.append(buffer, static_cast<std::size_t>(length));
        } else {
            const double moved = part.place + (part.kind == piece::x ? x : y);
            const auto end = std::to_chars(buffer, buffer + sizeof buffer, moved).ptr;
            const std::string_view digits(buffer, static_cast<std::size_t>(end - buffer));
            out += digits;
            if (digits.find_first_of(".e") == digits.npos)
                out += ".0";
        }
    }
}

bool drawing::write(std::FILE* out, std::size_t wanted) const {
    // A little room between the copies; a drawing of one point has no size of its own.
    const double width = std::max(1.0, (high_x_ - low_x_) * 1.1);
    const double height = std::max(1.0, (high_y_ - low_y_) * 1.1);
    std::string text;
    std::uint64_t copies = 0;
    std::uint64_t columns = 1;
    const auto place_copy = [&](std::uint64_t copy) {
        append_copy(text, seed_ + (copy - 1) * renumbered_.size(),
                    static_cast<double>(copy % columns) * width,
                    static_cast<double>(copy / columns) * height);
    };
    // How many it takes follows from the size of a copy, and that from how many there are, for far copies
    // have longer numbers: a second guess is close enough.
    for (int guess = 0; guess < 2 && wanted > size_; ++guess) {
        text.clear();
        place_copy(copies / 2 + 1);
        copies = (wanted - size_) / text.size() + 1;
        columns = static_cast<std::uint64_t>(std::ceil(std::sqrt(static_cast<double>(copies + 1))));
    }
    const std::uint64_t last_seed = seed_ + copies * renumbered_.size();

    const auto flush = [&] {
        const bool done = std::fwrite(text.data(), 1, text.size(), out) == text.size();
        text.clear();
        return done;
    };
    text.clear();
    bool done = true;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        if (i == end_of_entities_)
            for (std::uint64_t copy = 1; copy <= copies; ++copy) {
                place_copy(copy);
                if (text.size() > 1'000'000)
                    done = flush() && done;
            }
        const group& g = groups_[i];
        text += g.head;
        if (i == seed_group_ && i != 0) {
            char buffer[32];
            std::snprintf(buffer, sizeof buffer, "%llX", static_cast<unsigned long long>(last_seed));
            text += buffer;
        } else {
            text += g.value;
        }
        text += g.tail;
    }
    return flush() && done;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t megabytes = 0;
    if (argc == 4)
        std::from_chars(argv[3], argv[3] + std::string_view(argv[3]).size(), megabytes);
    if (megabytes == 0) {
        std::fprintf(stderr, "usage: grow_drawing SOURCE TARGET MEGABYTES\n");
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    drawing source(text);
    if (!source.read()) {
        std::fprintf(stderr, "grow_drawing: %s: no model-space entities to repeat\n", argv[1]);
        return 3;
    }
    std::FILE* out = std::fopen(argv[2], "wb");
    bool done = out != nullptr && source.write(out, megabytes * 1'000'000);
    if (out != nullptr)
        done = std::fclose(out) == 0 && done;
    if (!done)
        std::perror(argv[2]);
    return done ? 0 : 1;
}
