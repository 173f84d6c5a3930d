// What packs the pages of 2004 and of 2010 to 2018: runs of literal bytes, and copies of what stands before.
#include "host/dwg/container.h"

namespace dwg {

namespace {

class unpacker {
public:
    unpacker(std::string_view packed, std::size_t room, std::string& out)
        : packed_(packed), room_(room), out_(out) {}

    bool run() {
        literals(literal_length());
        while (!bad_) {
            const unsigned op = next();
            if (op == 0x11)
                return !bad_;
            if (op < 0x10)
                return false;
            std::size_t count = 0;
            std::size_t offset = 0;
            unsigned literal = 0;
            const auto two_bytes = [&] {
                const unsigned low = next();
                offset += low >> 2 | next() << 6;
                literal = low & 3;
            };
            if (op < 0x20) {
                count = (op & 7) == 0 ? long_length() + 9 : (op & 7) + 2;
                offset = ((op & 8) << 11) + 0x3FFF;
                two_bytes();
            } else if (op < 0x40) {
                count = (op & 0x1F) == 0 ? long_length() + 0x21 : (op & 0x1F) + 2;
                two_bytes();
            } else {
                count = (op >> 4) - 1;
                offset = next() << 2 | (op & 0x0C) >> 2;
                literal = op & 3;
            }
            copy(count, offset);
            literals(literal == 0 ? literal_length() : literal);
        }
        return false;
    }

private:
    unsigned next() {
        if (at_ >= packed_.size()) {
            bad_ = true;
            return 0x11;
        }
        return static_cast<unsigned char>(packed_[at_++]);
    }
    std::size_t long_length() {
        std::size_t total = 0;
        unsigned byte = next();
        for (; byte == 0 && !bad_; byte = next())
            total += 0xFF;
        return total + byte;
    }
    std::size_t literal_length() {
        if (at_ >= packed_.size() || (static_cast<unsigned char>(packed_[at_]) & 0xF0) != 0)
            return 0;
        const unsigned byte = next();
        return byte != 0 ? byte + 3 : long_length() + 0x0F + 3;
    }
    void literals(std::size_t count) {
        if (bad_ || count > packed_.size() - at_ || count > room_ - out_.size()) {
            bad_ = true;
            return;
        }
        out_.append(packed_.substr(at_, count));
        at_ += count;
    }
    void copy(std::size_t count, std::size_t offset) {
        if (bad_ || offset >= out_.size() || count > room_ - out_.size()) {
            bad_ = true;
            return;
        }
        for (std::size_t from = out_.size() - offset - 1; count != 0; --count)
            out_ += out_[from++];
    }

    std::string_view packed_;
    std::size_t room_;
    std::string& out_;
    std::size_t at_ = 0;
    bool bad_ = false;
};

} // namespace

bool unpack_2004(std::string_view packed, std::size_t room, std::string& out) {
    out.clear();
    return unpacker(packed, room, out).run();
}

} // namespace dwg
