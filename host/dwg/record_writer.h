// Records of a drawing, written as the editor writes them: codes in three columns, CRLF.
#pragma once

#include "host/dwg/object_reader.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace dwg {

class record_writer {
public:
    record_writer(std::string& out, const object_source& from) : out_(out), source_(from) {}

    // The name of the object with a handle; null when it has none.
    const std::string* name_if_any(std::uint64_t handle) const;
    std::string_view name_of(std::uint64_t handle, std::string_view otherwise = {}) const {
        const std::string* const name = name_if_any(handle);
        return name != nullptr ? std::string_view(*name) : otherwise;
    }

    void code(int group);
    void text(int group, std::string_view value);
    void integer(int group, std::int64_t value);
    void real(int group, double value);
    void handle(int group, std::uint64_t value);
    void hexadecimal(int group, std::string_view bytes);
    // One field, whatever it is.
    void field(const values& of, const value& one);

    // Begins a record: type, handle, what points to it, its owner.
    void begin(std::string_view type, const object_reader& object, std::uint64_t owner, int handle_group = 5);
    // What entities have in common.
    void entity(const object_reader& object, bool in_paper_space, std::string_view graphics);
    // The fields in the order of the type; then they count as written.
    void fields(object_reader& object, const std::vector<order_step>& order);
    void segment(values& of, int number);
    void extended_data(const values& of);
    // An object of which no row is known, or whose row does not fit: what it holds, as it stands. `owned`
    // says behind which bit its own data begins.
    void proxy(object_reader& object, std::size_t begin, int class_number);

private:
    void finish(char* line, char* end);
    bool is_known(std::uint64_t handle) const {
        return std::binary_search(source_.known.begin(), source_.known.end(), handle);
    }
    bool is_left_out(const values& of, const value& one, const order_step& step) const;
    std::size_t step(object_reader& object, const std::vector<order_step>& order, std::size_t at);

    std::string& out_;
    const object_source& source_;
    std::size_t first_free_ = 0; // in front of it all fields of the object are written
    // The name that was asked for last: many entities in a row lie on one layer.
    mutable std::uint64_t last_named_ = 0;
    mutable const std::string* last_name_ = nullptr;
};

} // namespace dwg
