// What is read of an object, field by field, before it is written as groups.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dwg {

// A group code; +10000 and +20000 keep fields apart that have the same one in different places of a record.
inline constexpr int second_use = 10000;
constexpr int group_of(int code) {
    return code % second_use;
}

enum class value_type : std::uint8_t {
    integer,
    real,
    point2,
    point3,
    text,    // characters in the record's store
    chunk,   // bytes there, written as hexadecimal digits
    handle,  // a handle as it is
    name,    // a handle that the name of its object is written for
    nothing, // taken back
};

struct value {
    std::int16_t code = 0;
    value_type type = value_type::integer;
    std::uint8_t segment = 0; // runs of fields that are written elsewhere than they are read
    bool written = false;
    double x = 0, y = 0, z = 0;
    std::uint64_t number = 0; // an integer, a handle, or the place in the store
    std::uint32_t size = 0;   // in the store

    std::int64_t integer() const { return static_cast<std::int64_t>(number); }
};

// The fields of one object in the order in which they were read.
class values {
public:
    void clear() {
        all_.clear();
        store_.clear();
    }
    std::vector<value>& all() { return all_; }
    const std::vector<value>& all() const { return all_; }
    std::uint8_t segment = 0; // of what is added

    value& add(int code, value_type type) {
        value& fresh = all_.emplace_back();
        fresh.code = static_cast<std::int16_t>(code);
        fresh.type = type;
        fresh.segment = segment;
        return fresh;
    }
    void add_integer(int code, std::int64_t number) {
        add(code, value_type::integer).number = static_cast<std::uint64_t>(number);
    }
    void add_real(int code, double number) { add(code, value_type::real).x = number; }
    void add_point(int code, double x, double y, double z) {
        value& point = add(code, value_type::point3);
        point.x = x;
        point.y = y;
        point.z = z;
    }
    void add_point(int code, double x, double y) {
        value& point = add(code, value_type::point2);
        point.x = x;
        point.y = y;
    }
    void add_handle(int code, std::uint64_t handle) { add(code, value_type::handle).number = handle; }
    void add_name(int code, std::uint64_t handle) { add(code, value_type::name).number = handle; }
    void add_text(int code, std::string_view text) { add_stored(code, value_type::text, text); }
    void add_chunk(int code, std::string_view bytes) { add_stored(code, value_type::chunk, bytes); }

    std::string_view stored(const value& of) const {
        return std::string_view(store_).substr(static_cast<std::size_t>(of.number), of.size);
    }

    // The first field of a code; null when there is none.
    value* find(int code) {
        for (value& one : all_)
            if (one.code == code && one.type != value_type::nothing)
                return &one;
        return nullptr;
    }
    std::int64_t integer(int code, std::int64_t otherwise = 0) {
        const value* found = find(code);
        return found != nullptr ? found->integer() : otherwise;
    }
    double real(int code, double otherwise = 0) {
        const value* found = find(code);
        return found != nullptr ? found->x : otherwise;
    }
    // Sets the first field of a code, or adds one.
    void set_integer(int code, std::int64_t number) {
        if (value* found = find(code))
            found->number = static_cast<std::uint64_t>(number);
        else
            add_integer(code, number);
    }
    void drop(int code) {
        for (value& one : all_)
            if (one.code == code)
                one.type = value_type::nothing;
    }

private:
    void add_stored(int code, value_type type, std::string_view bytes) {
        value& fresh = add(code, type);
        fresh.number = store_.size();
        fresh.size = static_cast<std::uint32_t>(bytes.size());
        store_ += bytes;
    }

    std::vector<value> all_;
    std::string store_;
};

} // namespace dwg
