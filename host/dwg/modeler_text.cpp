#include "host/dwg/modeler_text.h"

#include "host/dwg/object_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace dwg {

namespace {

// Each value begins with a byte that says what it is.
enum tag : std::uint8_t {
    tag_integer = 4,
    tag_real = 6,
    tag_text = 7,
    tag_long_text = 8,
    tag_true = 10,
    tag_false = 11,
    tag_pointer = 12,
    tag_name = 13,
    tag_part_of_name = 14,
    tag_end = 17,
    tag_position = 19,
    tag_vector = 20,
};

// The words for no and for yes, in the order in which they stand in a record; the last ones serve for all
// that follow. Source: bodies that the editor wrote in both forms. Cones, spheres, tori and ellipses stood in
// none of these: theirs are the words of the text form as it is commonly known.
struct words_of {
    std::string_view record;
    std::string_view words;
};
constexpr words_of all_words[] = {
    {"coedge", "forward reversed"},
    {"edge", "forward reversed"},
    {"face", "forward reversed single double out in"},
    {"plane-surface", "forward_v reverse_v I F"},
    {"straight-curve", "I F"},
    {"transform", "no_rotate rotate no_reflect reflect no_shear shear"},
    {"cone-surface", "I F I F forward reversed I F"},
    {"sphere-surface", "forward_v reverse_v I F"},
    {"torus-surface", "forward_v reverse_v I F"},
    {"ellipse-curve", "I F"},
};

std::string_view word_at(std::string_view words, std::size_t place) {
    std::size_t begin = 0;
    for (; place != 0 && begin != words.npos; --place)
        begin = words.find(' ', begin + 1);
    if (begin == words.npos)
        return {};
    begin += begin == 0 ? 0 : 1;
    return words.substr(begin, words.find(' ', begin) - begin);
}

std::string_view word_of(std::string_view record, std::size_t place, bool yes) {
    const auto* const found = std::find_if(std::begin(all_words), std::end(all_words),
                                           [&](const words_of& one) { return one.record == record; });
    if (found == std::end(all_words))
        return {};
    const auto known =
        static_cast<std::size_t>(std::count(found->words.begin(), found->words.end(), ' ') + 1);
    return word_at(found->words, std::min(2 * place, known - 2) + (yes ? 1 : 0));
}

class body_text {
public:
    explicit body_text(bit_reader& from) : in_(from) {}

    std::string whole() {
        constexpr std::string_view mark = "ACIS BinaryFile";
        if (take_bytes(in_, mark.size()) != mark)
            return fail();
        const std::uint32_t version = in_.RL();
        in_.RL(); // how many records, which is counted here
        const std::uint32_t bodies = in_.RL();
        const std::uint32_t flags = in_.RL();
        const std::string product = text_of(in_.RC());
        const std::string modeler = text_of(in_.RC());
        text_of(in_.RC()); // when it was made, which the editor leaves out
        std::string numbers;
        for (int i = 0; i < 3; ++i) {
            if (in_.RC() != tag_real)
                return fail();
            numbers += (i != 0 ? " " : "") + real();
        }
        while (!in_.bad() && record())
            ++count_;
        if (in_.bad())
            return {};
        return std::to_string(version) + ' ' + std::to_string(count_) + ' ' + std::to_string(bodies) + ' ' +
               std::to_string(flags) + '\n' + std::to_string(product.size()) + ' ' + product + ' ' +
               std::to_string(modeler.size()) + ' ' + modeler + " 0\n" + numbers + '\n' + out_;
    }

private:
    std::string fail() {
        in_.spoil();
        return {};
    }

    // The digits that the editor writes.
    std::string real() {
        const double value = in_.RD();
        if (!std::isfinite(value))
            return fail();
        constexpr int digits = 19;
        char text[40];
        return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits).ptr};
    }

    std::string text_of(unsigned kind) {
        if (kind != tag_text && kind != tag_long_text)
            return fail();
        std::string text = take_bytes(in_, kind == tag_text ? in_.RC() : in_.RS());
        // What is not plain could not be disguised as DXF wants it.
        if (std::any_of(text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }))
            return fail();
        return text;
    }

    // A name and its parts, of which the last one has a tag of its own.
    std::string name(unsigned kind) {
        std::string whole;
        for (;; kind = in_.RC()) {
            whole += text_of(kind == tag_name || kind == tag_part_of_name ? unsigned(tag_text) : kind);
            if (kind != tag_part_of_name || in_.bad())
                return whole;
            whole += '-';
        }
    }

    // The next record as a line; false at the end mark.
    bool record() {
        const unsigned first = in_.RC();
        if (first != tag_name && first != tag_part_of_name) {
            fail();
            return false;
        }
        const std::string kind = name(first);
        if (kind == "End-of-ACIS-data")
            return false;
        out_ += kind;
        for (std::size_t answers = 0; !in_.bad();) {
            const unsigned tag = in_.RC();
            out_ += ' ';
            switch (tag) {
            case tag_integer:
                out_ += std::to_string(static_cast<std::int32_t>(in_.RL()));
                break;
            case tag_pointer:
                out_ += '$' + std::to_string(static_cast<std::int32_t>(in_.RL()));
                break;
            case tag_real:
                out_ += real();
                break;
            case tag_position:
            case tag_vector:
                for (int i = 0; i < 3; ++i)
                    out_ += (i != 0 ? " " : "") + real();
                break;
            case tag_text:
            case tag_long_text: {
                const std::string text = text_of(tag);
                out_ += '@' + std::to_string(text.size()) + ' ' + text;
                break;
            }
            case tag_true:
            case tag_false: {
                const std::string_view word = word_of(kind, answers++, tag == tag_true);
                if (word.empty())
                    fail();
                out_ += word;
                break;
            }
            case tag_end:
                out_ += "#\n";
                return true;
            default:
                fail();
            }
        }
        return false;
    }

    bit_reader& in_;
    std::string out_;
    std::size_t count_ = 0;
};

} // namespace

std::string modeler_text(bit_reader& in) {
    return body_text(in).whole();
}

} // namespace dwg
