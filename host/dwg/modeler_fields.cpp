// Regions and solids: a body, what it is drawn by, and since 2013 the number of its revision.
#include "host/dwg/modeler_text.h"
#include "host/dwg/object_reader.h"
#include "host/dwg/special_fields.h"

#include <algorithm>
#include <cstdio>

namespace dwg {

namespace {

void skip_reals(object_reader& in, int count) {
    for (; count != 0; --count)
        in.data.BD();
}

void skip_wires(object_reader& in) {
    for (std::size_t left = in.data.BL(); left != 0 && !in.data.bad(); --left) {
        in.data.RC();
        in.data.BL();
        in.data.BS();
        in.data.BL();
        for (std::size_t points = in.data.BL(); points != 0 && !in.data.bad(); --points)
            skip_reals(in, 3);
        if (in.data.B()) { // moved
            skip_reals(in, 13);
            in.data.take(3);
        }
    }
}

// What the body is drawn by is not kept: DXF has no place for it.
void skip_drawing(object_reader& in) {
    if (!in.data.B())
        return;
    if (in.data.B())
        skip_reals(in, 3);
    in.data.BL();
    if (!in.data.B())
        return;
    skip_wires(in);
    for (std::size_t views = in.data.BL(); views != 0 && !in.data.bad(); --views) {
        in.data.BL();
        skip_reals(in, 9);
        in.data.B();
        skip_wires(in);
    }
}

// Lines of text as DXF has them: disguised.
std::string body_of(object_reader& in) {
    std::string body;
    constexpr unsigned as_text = 1;
    constexpr unsigned as_binary = 2;
    if (in.data.B()) { // none
        in.fail();
        return body;
    }
    in.data.B();
    const unsigned form = in.data.BS();
    if (form == as_text) {
        for (std::size_t size = in.data.BL(); size != 0 && !in.data.bad(); size = in.data.BL())
            body += take_bytes(in.data, size);
    } else if (form == as_binary && in.since(r2004)) {
        constexpr int mirror = 0x9F;
        body = modeler_text(in.data);
        for (char& c : body)
            c = c > ' ' ? static_cast<char>(mirror - c) : c;
    } else {
        in.fail();
    }
    return body;
}

void revision(object_reader& in) {
    in.fields.add_integer(290, in.data.B() ? 1 : 0);
    const std::uint32_t first = in.data.BL();
    const unsigned second = in.data.BS();
    const unsigned third = in.data.BS();
    char text[40];
    int size = std::snprintf(text, sizeof text, "{%08x-%04x-%04x-", first, second, third);
    for (int i = 0; i < 8; ++i)
        size += std::snprintf(text + size, sizeof text - static_cast<std::size_t>(size),
                              i == 2 ? "-%02x" : "%02x", in.data.RC());
    text[size++] = '}';
    in.fields.add_text(2, std::string_view(text, static_cast<std::size_t>(size)));
    if (in.data.BL() != 0)
        in.fail();
}

// A line is a group, long ones go on in others.
void add_lines(object_reader& in, std::string_view left) {
    constexpr std::size_t longest = 255;
    while (!left.empty() && !in.data.bad()) {
        const std::size_t end = std::min(left.find('\n'), left.size());
        std::string_view line = left.substr(0, end);
        left.remove_prefix(std::min(left.size(), end + 1));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        in.fields.add_text(1, line.substr(0, longest));
        for (; line.size() > longest; line.remove_prefix(longest))
            in.fields.add_text(3, line.substr(longest, longest));
    }
}

} // namespace

void modeler_fields(object_reader& in) {
    // Since 2013 the body stands in the data store.
    const std::string body = in.since(r2013) ? std::string() : body_of(in);
    skip_drawing(in);
    if (!in.data.B() || (in.since(r2007) && in.data.BL() != 0))
        return in.fail(); // a second body
    if (in.since(r2013))
        revision(in);
    add_lines(in, body);
}

} // namespace dwg
