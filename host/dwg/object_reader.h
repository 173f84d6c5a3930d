// One object of a DWG file, read: its frame, what all objects have, extended data, and its fields by the row
// of its type.
#pragma once

#include "host/dwg/bits.h"
#include "host/dwg/container.h"
#include "host/dwg/type_rows.h"
#include "host/dwg/value.h"

#include <array>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace dwg {

inline constexpr int entity_proxy = 0x1F2;
inline constexpr int object_proxy = 0x1F3;

// A class as the file names it.
struct class_entry {
    int number = 0;
    int proxy_flags = 0;
    bool was_proxy = false;
    bool is_entity = false;
    std::int64_t instances = -1;                   // -1: the file does not tell
    std::int32_t dwg_version = 0, maintenance = 0; // of the format in which its objects are written
    std::string dxf_name, cpp_name, application;
};

// What objects are read from. Outlives the readers.
struct object_source {
    std::string_view objects;
    int version = r2000;
    int maintenance = 0;
    bool two_byte_text = false; // up to 2004: characters of the code page may have two bytes
    std::vector<class_entry> classes;
    std::vector<std::uint64_t> linetypes; // in the order of their table
    // What handles are written as where DXF has names; in the drawing's characters.
    std::unordered_map<std::uint64_t, std::string> names;
    // Objects that there are, by handle: others are not told of as reactors.
    std::vector<std::uint64_t> known;
};

// What entities have in common.
struct common_data {
    unsigned mode = 2; // 0: the owner is stored, 1: paper space, 2: model space
    std::uint64_t owner = 0, dictionary = 0, next = 0;
    std::vector<std::uint64_t> reactors;
    std::uint64_t layer = 0, linetype = 0, color_book = 0, material = 0, plot_style = 0;
    std::array<std::uint64_t, 3> visual_styles{};
    unsigned linetype_flags = 0, shadow = 0, line_weight = 29;
    int color = 256;
    std::int64_t true_color = -1, transparency = -1; // -1: none
    double linetype_scale = 1;
    bool invisible = false;
    std::size_t graphics_at = 0, graphics_size = 0; // bit, bytes

    void clear() {
        std::vector<std::uint64_t> room = std::move(reactors); // is used again
        room.clear();
        *this = {};
        reactors = std::move(room);
    }
};

class object_reader {
public:
    explicit object_reader(const object_source& from) : source(from) {}

    // Opens the object that stands at an address: its frame and what it has in common with others. False when
    // it is damaged; why() says how. The check sum of one that was open before need not be looked at again.
    bool open(std::size_t address, std::uint64_t handle, bool looks_at_sum = true);
    const wchar_t* why() const { return why_; }
    // Reads the fields by the row of its type. False when the row does not end where the object's data ends:
    // then the fields are not to be used.
    bool read_fields();
    // The application data, as groups.
    void read_extended_data();

    // Fields of texts and handles, for special fields as well.
    std::string text();
    reference next_handle() { return handles.H(own); }
    // Colours of some objects have their true colour in files of 2000 as well.
    void read_color(int group, field_code code, bool is_long = false);
    void read_point(int group); // 3BD
    void read_common_entity();
    void fail() { data.spoil(); }
    // The steps [first, last) of a layout.
    void walk(const std::vector<field>& steps, std::size_t first, std::size_t last);
    std::int64_t& variable(char name) { return variables_[static_cast<std::size_t>(name - 'a') % 26]; }
    bool since(int version) const { return source.version >= version; }
    // Whether it was a proxy when the file was written; its class stands in its data.
    bool is_proxy() const { return number == entity_proxy || number == object_proxy; }
    // Where the strings end, and whether it has any.
    bool has_strings = false;

    const object_source& source;
    std::uint64_t own = 0;
    int number = 0; // of its type, as it stands
    const class_entry* of_class = nullptr;
    const object_type* type = nullptr; // null: no row for it
    bool is_entity = false;
    bit_reader data, strings, handles;
    common_data common;
    values fields;
    values extended;
    std::vector<std::uint64_t> owned; // objects that follow this one in the file

private:
    bool fail_with(const wchar_t* why) {
        why_ = why;
        return false;
    }
    void find_type();
    void read_common_object();
    void step(const field& one);
    bool test(const field& one);

    const wchar_t* why_ = L"";
    std::array<std::int64_t, 26> variables_{};
    struct application_data {
        std::uint64_t handle;
        std::size_t at, size;
    };
    std::vector<application_data> applications_;
    std::size_t reactor_count_ = 0;
};

// Parts the texts of 2007 and later from the data in front of them, which ends where handles begin. False
// when there are none.
bool take_string_stream(bit_reader& data, bit_reader& strings);
// The next bytes of a stream.
std::string take_bytes(bit_reader& from, std::size_t count);
// The bits [begin, end), as bytes of which the last is filled up with zeros.
std::string bits_as_bytes(bit_reader from, std::size_t begin, std::size_t end);
// UTF-8 of characters of 16 bits, low byte first.
std::string utf8_of(std::string_view utf16);
// The lineweight in hundredths of a millimetre that a code stands for.
int line_weight(unsigned code);
// The number of a colour as groups of class data hold it.
std::int32_t raw_color(int index);

} // namespace dwg
