// A PDF as it is written: objects with numbers, streams that are compressed while they grow, and the table of
// where everything lies.
#pragma once

#include "sys/posix/paper/packed_bytes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sys {

class pdf_file {
public:
    pdf_file();

    // A number for an object that is written later.
    int reserve();
    // Writes an object: its dictionary or another value.
    void write(int number, std::string_view value);
    // Writes a stream. `more` goes into its dictionary; the bytes are packed already or are to be.
    void write_packed(int number, std::string_view more, std::string_view packed);
    void write_stream(int number, std::string_view more, std::string_view plain);
    // The whole file, with the object that leads to all others.
    std::string finish(int catalog);

private:
    std::string bytes_;
    std::vector<std::size_t> places_; // of the objects, by number
};

// A number as PDFs have it, with at most five places behind the point; infinite ones do not exist there.
void append_number(std::string& text, double value);
void append_whole(std::string& text, std::int64_t value);
// A text for readers of the file.
std::string pdf_text(std::wstring_view text);

} // namespace sys
