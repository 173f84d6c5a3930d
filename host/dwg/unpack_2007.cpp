// What packs the pages of 2007: as before, but literal bytes stand in an order of their own.
#include "host/dwg/container.h"

#include <algorithm>
#include <array>

namespace dwg {

namespace {

// A run of literal bytes is written in pieces. Those of 2 and 3 bytes are reversed, of 16 the halves are
// exchanged.
struct piece {
    std::uint8_t size, from;
};
constexpr std::array<std::array<piece, 6>, 33> pieces_of = {{{},
                                                             {{{1, 0}}},
                                                             {{{1, 1}, {1, 0}}},
                                                             {{{1, 2}, {1, 1}, {1, 0}}},
                                                             {{{4, 0}}},
                                                             {{{1, 4}, {4, 0}}},
                                                             {{{1, 5}, {4, 1}, {1, 0}}},
                                                             {{{2, 5}, {4, 1}, {1, 0}}},
                                                             {{{8, 0}}},
                                                             {{{1, 8}, {8, 0}}},
                                                             {{{1, 9}, {8, 1}, {1, 0}}},
                                                             {{{2, 9}, {8, 1}, {1, 0}}},
                                                             {{{4, 8}, {8, 0}}},
                                                             {{{1, 12}, {4, 8}, {8, 0}}},
                                                             {{{1, 13}, {4, 9}, {8, 1}, {1, 0}}},
                                                             {{{2, 13}, {4, 9}, {8, 1}, {1, 0}}},
                                                             {{{8, 8}, {8, 0}}},
                                                             {{{8, 9}, {1, 8}, {8, 0}}},
                                                             {{{1, 17}, {16, 1}, {1, 0}}},
                                                             {{{3, 16}, {16, 0}}},
                                                             {{{4, 16}, {16, 0}}},
                                                             {{{1, 20}, {4, 16}, {16, 0}}},
                                                             {{{2, 20}, {4, 16}, {16, 0}}},
                                                             {{{3, 20}, {4, 16}, {16, 0}}},
                                                             {{{8, 16}, {16, 0}}},
                                                             {{{8, 17}, {1, 16}, {16, 0}}},
                                                             {{{1, 25}, {8, 17}, {1, 16}, {16, 0}}},
                                                             {{{2, 25}, {8, 17}, {1, 16}, {16, 0}}},
                                                             {{{4, 24}, {8, 16}, {16, 0}}},
                                                             {{{1, 28}, {4, 24}, {8, 16}, {16, 0}}},
                                                             {{{2, 28}, {4, 24}, {8, 16}, {16, 0}}},
                                                             {{{1, 30}, {4, 26}, {8, 18}, {16, 2}, {2, 0}}},
                                                             {{{16, 16}, {16, 0}}}}};

class unpacker {
public:
    unpacker(std::string_view packed, std::size_t room, std::string& out)
        : packed_(packed), room_(room), out_(out) {}

    bool run() {
        op_ = next();
        std::size_t literal = 0;
        if (op_ >> 4 == 2) {
            at_ += 2;
            literal = next() & 7;
        }
        while (at_ < packed_.size() && !bad_ && out_.size() < room_) {
            if (literal == 0)
                literal = literal_length();
            literals(literal);
            if (at_ >= packed_.size() || out_.size() >= room_)
                break;
            literal = 0;
            op_ = next();
            while (!bad_) {
                copy();
                literal = op_ & 7;
                if (literal != 0 || at_ >= packed_.size())
                    break;
                op_ = next();
                if (op_ >> 4 == 0)
                    break;
                if (op_ >> 4 == 15)
                    op_ &= 15;
            }
        }
        return !bad_;
    }

private:
    unsigned next() {
        if (at_ >= packed_.size()) {
            bad_ = true;
            return 0;
        }
        return static_cast<unsigned char>(packed_[at_++]);
    }
    unsigned word() {
        const unsigned low = next();
        return low | next() << 8;
    }
    std::size_t literal_length() {
        constexpr std::size_t longest = 0x17;
        std::size_t length = op_ + 8;
        if (length != longest)
            return length;
        unsigned more = next();
        length += more;
        if (more == 0xFF)
            do {
                more = word();
                length += more;
            } while (more == 0xFFFF && !bad_);
        return length;
    }
    void literals(std::size_t count) {
        if (bad_ || count > packed_.size() - at_ || count > room_ - out_.size()) {
            bad_ = true;
            return;
        }
        constexpr std::size_t widest = 32;
        while (count != 0) {
            const std::size_t run = std::min(count, widest);
            for (const piece& one : pieces_of[run]) {
                const std::string_view from = packed_.substr(at_ + one.from, one.size);
                if (one.size == 16)
                    out_.append(from.substr(8)).append(from.substr(0, 8));
                else if (one.size == 2 || one.size == 3)
                    out_.append(from.rbegin(), from.rend());
                else
                    out_.append(from);
            }
            at_ += run;
            count -= run;
        }
    }
    void copy() {
        std::size_t length = 0;
        std::size_t offset = 0;
        const auto far_offset = [&](std::size_t least) {
            length = (op_ & 15) + least;
            offset = next();
            op_ = next();
        };
        switch (op_ >> 4) {
        case 0:
            far_offset(0x13);
            length += (op_ >> 3) & 0x10;
            offset += ((op_ & 0x78) << 5) + 1;
            break;
        case 1:
            far_offset(3);
            offset += ((op_ & 0xF8) << 5) + 1;
            break;
        case 2:
            offset = word();
            length = op_ & 7;
            if ((op_ & 8) == 0) {
                op_ = next();
                length += op_ & 0xF8;
            } else {
                ++offset;
                length += static_cast<std::size_t>(next()) << 3;
                op_ = next();
                length += ((op_ & 0xF8) << 8) + 0x100;
            }
            break;
        default:
            length = op_ >> 4;
            offset = op_ & 15;
            op_ = next();
            offset += ((op_ & 0xF8) << 1) + 1;
            break;
        }
        if (bad_ || offset == 0 || offset > out_.size() || length > room_ - out_.size()) {
            bad_ = true;
            return;
        }
        for (std::size_t from = out_.size() - offset; length != 0; --length)
            out_ += out_[from++];
    }

    std::string_view packed_;
    std::size_t room_;
    std::string& out_;
    std::size_t at_ = 0;
    unsigned op_ = 0;
    bool bad_ = false;
};

} // namespace

bool unpack_2007(std::string_view packed, std::size_t room, std::string& out) {
    out.clear();
    return unpacker(packed, room, out).run();
}

} // namespace dwg
