#include "sys/text_stream.h"

#include "base/utf.h"

#include <cerrno>
#include <iconv.h>
#include <string>

namespace sys {

namespace {

struct system_page {
    int number;
    const char* name;
};

constexpr system_page system_pages[] = {
    {20932, "EUC-JP"},      {50220, "ISO-2022-JP"}, {50221, "ISO-2022-JP"}, {50225, "ISO-2022-KR"},
    {50227, "ISO-2022-CN"}, {51932, "EUC-JP"},      {51950, "EUC-TW"},      {54936, "GB18030"},
};

class iconv_handle {
public:
    iconv_handle(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
    ~iconv_handle() {
        if (is_open())
            ::iconv_close(handle_);
    }
    iconv_handle(const iconv_handle&) = delete;
    iconv_handle& operator=(const iconv_handle&) = delete;

    bool is_open() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // Converts until something stands in the way; the answer is 0 or the system's error.
    int convert(char*& in, std::size_t& in_size, char*& out, std::size_t out_size) {
        return ::iconv(handle_, &in, &in_size, &out, &out_size) == static_cast<std::size_t>(-1) ? errno : 0;
    }

    // The bytes that bring the state back to the beginning.
    void reset(char*& out, std::size_t out_size) { ::iconv(handle_, nullptr, nullptr, &out, &out_size); }

private:
    iconv_t handle_;
};

class system_stream : public text_stream {
public:
    explicit system_stream(const char* name) : decoder_("WCHAR_T", name), encoder_(name, "WCHAR_T") {}

    bool is_open() const { return decoder_.is_open() && encoder_.is_open(); }

    decoded decode(std::string_view block, wchar_t* out) override {
        bytes_ = block;
        char* in = bytes_.data();
        std::size_t left = bytes_.size();
        // Some pages hold a character back to join it with the next: then it needs room that no byte pays
        // for.
        auto* to = reinterpret_cast<char*>(out);
        decoded done;
        while (left > 0) {
            const std::size_t room =
                block.size() * sizeof(wchar_t) - static_cast<std::size_t>(to - reinterpret_cast<char*>(out));
            const int error = decoder_.convert(in, left, to, room);
            if (error != EILSEQ)
                break;
            ++done.lost;
            const auto byte = static_cast<unsigned char>(*in++);
            --left;
            *reinterpret_cast<wchar_t*>(to) =
                static_cast<wchar_t>(byte >= 0x80 ? 0xDC00 + byte : base::replacement_character);
            to += sizeof(wchar_t);
        }
        done.bytes = block.size() - left;
        done.units = static_cast<std::size_t>(reinterpret_cast<wchar_t*>(to) - out);
        return done;
    }

    encoded encode(std::wstring_view text, char* out) override {
        units_ = text;
        char* in = reinterpret_cast<char*>(units_.data());
        std::size_t left = units_.size() * sizeof(wchar_t);
        char* to = out;
        while (left > 0) {
            const std::size_t room = (text.size() + 1) * longest - static_cast<std::size_t>(to - out);
            if (encoder_.convert(in, left, to, room) == 0)
                break;
            const auto unit = static_cast<char32_t>(*reinterpret_cast<wchar_t*>(in));
            if (!base::is_escaped_byte(unit))
                break;
            *to++ = static_cast<char>(unit - 0xDC00);
            in += sizeof(wchar_t);
            left -= sizeof(wchar_t);
        }
        return {text.size() - left / sizeof(wchar_t), static_cast<std::size_t>(to - out)};
    }

    std::size_t finish(char* out) override {
        char* to = out;
        encoder_.reset(to, longest);
        return static_cast<std::size_t>(to - out);
    }

private:
    iconv_handle decoder_;
    iconv_handle encoder_;
    std::string bytes_;
    std::wstring units_;
};

} // namespace

std::unique_ptr<text_stream> open_system_stream(int number) {
    for (const system_page& page : system_pages) {
        if (page.number != number)
            continue;
        auto stream = std::make_unique<system_stream>(page.name);
        if (stream->is_open())
            return stream;
    }
    return nullptr;
}

} // namespace sys
