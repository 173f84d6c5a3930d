#include "sys/text_stream.h"

#include "base/utf.h"
#include "sys/wide_blocks.h"

#include <cstring>
#include <string>

namespace sys {

namespace {

class page_stream : public text_stream {
public:
    explicit page_stream(const code_page& page) : page_(page) {}

    decoded decode(std::string_view block, wchar_t* out) override { return page_.decode_block(block, out); }

    encoded encode(std::wstring_view text, char* out) override {
        encoded done;
        while (done.units < text.size()) {
            const std::size_t ascii =
                narrow_ascii(text.data() + done.units, text.data() + text.size(), out + done.bytes);
            done.units += ascii;
            done.bytes += ascii;
            for (std::size_t next = done.units; next < text.size() && !is_ascii(text[next]);
                 done.units = next) {
                bytes_.clear();
                if (!page_.encode(base::take_code_point(text, next), bytes_))
                    return done;
                std::memcpy(out + done.bytes, bytes_.data(), bytes_.size());
                done.bytes += bytes_.size();
            }
        }
        return done;
    }

private:
    static bool is_ascii(wchar_t unit) { return static_cast<char32_t>(unit) < 0x80; }

    const code_page& page_;
    std::string bytes_;
};

// UTF-16 and UTF-32: numbers of some bytes, in either order.
template<std::size_t width>
class number_stream : public text_stream {
public:
    explicit number_stream(bool big_endian) : big_endian_(big_endian) {}

    decoded decode(std::string_view block, wchar_t* out) override {
        decoded done;
        wchar_t* to = out;
        for (; block.size() - done.bytes >= width; done.bytes += width) {
            char32_t c = number(block, done.bytes);
            if (width == 2 && sizeof(wchar_t) > 2 && (c & ~0x3FFu) == 0xD800) {
                if (block.size() - done.bytes < 2 * width)
                    break;
                if (const char32_t low = number(block, done.bytes + width); (low & ~0x3FFu) == 0xDC00) {
                    c = 0x10000 + ((c & 0x3FF) << 10) + (low & 0x3FF);
                    done.bytes += width;
                }
            } else if (c > 0x10FFFF) {
                c = base::replacement_character;
                done.lost += width;
            }
            if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
                *to++ = static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
                c = 0xDC00 + (c & 0x3FF);
            }
            *to++ = static_cast<wchar_t>(c);
        }
        done.units = static_cast<std::size_t>(to - out);
        return done;
    }

    encoded encode(std::wstring_view text, char* out) override {
        encoded done;
        while (done.units < text.size()) {
            std::size_t next = done.units + 1;
            auto c = static_cast<char32_t>(text[done.units]);
            if (width == 4)
                c = base::take_code_point(text, next = done.units);
            if (c > 0x10FFFF)
                break;
            if (width == 2 && c > 0xFFFF) {
                put(out + done.bytes, 0xD800 + ((c - 0x10000) >> 10));
                done.bytes += width;
                c = 0xDC00 + (c & 0x3FF);
            }
            put(out + done.bytes, c);
            done.bytes += width;
            done.units = next;
        }
        return done;
    }

private:
    std::size_t shift(std::size_t byte) const { return 8 * (big_endian_ ? width - 1 - byte : byte); }

    char32_t number(std::string_view block, std::size_t at) const {
        char32_t value = 0;
        for (std::size_t i = 0; i < width; ++i)
            value |= static_cast<char32_t>(static_cast<unsigned char>(block[at + i])) << shift(i);
        return value;
    }

    void put(char* out, char32_t value) const {
        for (std::size_t i = 0; i < width; ++i)
            out[i] = static_cast<char>(value >> shift(i) & 0xFF);
    }

    bool big_endian_;
};

} // namespace

std::size_t text_stream::finish(char*) {
    return 0;
}

std::unique_ptr<text_stream> text_stream::open(int number) {
    switch (number) {
    case 1200:
    case 1201:
        return std::make_unique<number_stream<2>>(number == 1201);
    case 12000:
    case 12001:
        return std::make_unique<number_stream<4>>(number == 12001);
    default:
        if (const code_page* const page = code_page::find(number); page != nullptr)
            return std::make_unique<page_stream>(*page);
        return open_system_stream(number);
    }
}

} // namespace sys
