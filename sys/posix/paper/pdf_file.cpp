#include "sys/posix/paper/pdf_file.h"

#include "base/utf.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace sys {

pdf_file::pdf_file() : bytes_("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n") {
}

int pdf_file::reserve() {
    places_.push_back(0);
    return static_cast<int>(places_.size());
}

void pdf_file::write(int number, std::string_view value) {
    places_[static_cast<std::size_t>(number) - 1] = bytes_.size();
    append_whole(bytes_, number);
    bytes_ += " 0 obj\n";
    bytes_ += value;
    bytes_ += "\nendobj\n";
}

void pdf_file::write_packed(int number, std::string_view more, std::string_view packed) {
    std::string value = "<</Filter/FlateDecode/Length ";
    append_whole(value, static_cast<std::int64_t>(packed.size()));
    value += more;
    value += ">>\nstream\n";
    value += packed;
    value += "\nendstream";
    write(number, value);
}

void pdf_file::write_stream(int number, std::string_view more, std::string_view plain) {
    packed_bytes packed;
    packed.buffer() = plain;
    write_packed(number, more, packed.finish());
}

std::string pdf_file::finish(int catalog) {
    const std::size_t table = bytes_.size();
    bytes_ += "xref\n0 ";
    append_whole(bytes_, static_cast<std::int64_t>(places_.size() + 1));
    bytes_ += "\n0000000000 65535 f \n";
    for (const std::size_t place : places_) {
        const std::string number = std::to_string(place);
        constexpr std::size_t digits = 10;
        bytes_.append(digits - std::min(number.size(), digits), '0');
        bytes_ += number + " 00000 n \n";
    }
    bytes_ += "trailer\n<</Size " + std::to_string(places_.size() + 1) + "/Root " + std::to_string(catalog) +
              " 0 R>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    return std::move(bytes_);
}

void append_whole(std::string& text, std::int64_t value) {
    char digits[24];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void append_number(std::string& text, double value) {
    constexpr double most = 1e9;
    constexpr int places = 5;
    constexpr double parts = 1e5;
    if (!std::isfinite(value))
        value = 0.0;
    const auto whole = static_cast<std::int64_t>(std::llround(std::clamp(value, -most, most) * parts));
    if (whole % static_cast<std::int64_t>(parts) == 0) {
        append_whole(text, whole / static_cast<std::int64_t>(parts));
        return;
    }
    if (whole < 0)
        text += '-';
    const std::int64_t size = std::abs(whole);
    append_whole(text, size / static_cast<std::int64_t>(parts));
    std::string rest = std::to_string(size % static_cast<std::int64_t>(parts));
    rest.insert(0, places - rest.size(), '0');
    rest.erase(rest.find_last_not_of('0') + 1);
    text += '.';
    text += rest;
}

std::string pdf_text(std::wstring_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string hex = "<FEFF";
    const auto unit = [&](char32_t value) {
        for (int shift = 12; shift >= 0; shift -= 4)
            hex += digits[(value >> shift) & 0xF];
    };
    for (const wchar_t sign : text) {
        const auto value = static_cast<char32_t>(sign);
        constexpr char32_t beyond = 0x10000;
        if (value < beyond) {
            unit(value);
        } else {
            unit(0xD800 + ((value - beyond) >> 10));
            unit(0xDC00 + ((value - beyond) & 0x3FF));
        }
    }
    return hex + '>';
}

} // namespace sys
