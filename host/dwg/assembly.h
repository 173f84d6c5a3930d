// The objects of a DWG file, put into the sections of a DXF drawing.
#pragma once

#include "host/dwg/drawing_reader.h"
#include "host/dwg/header.h"
#include "host/dwg/object_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace dwg {

class assembly {
public:
    static constexpr int first_class = 500; // their numbers begin here

    assembly(const container& file, drawing_text& out);
    void run();

private:
    // A place in a section of entities: an entity, or where a block begins or ends.
    struct place {
        const block* of = nullptr;
        entry* what = nullptr;
        bool is_end = false;
    };

    void read_classes();
    void find_linetypes();
    void name_blocks();
    void read_block(std::uint64_t handle);
    void take(object_writer& from, std::string& text);

    void write_class(const class_entry& one);
    void write_tables();
    void write_table(std::string_view name, int control_number);
    void write_entry(entry& of, std::string_view name, std::uint64_t owner);
    void write_blocks();
    void add_members(const block& of, std::vector<place>& places);
    void make_room(std::size_t size);
    void write_places(const std::vector<place>& places);
    void write_objects();
    void write_object(entry& of, std::vector<std::uint64_t>& children);
    void section(std::string_view name);

    const container& file_;
    drawing_text& out_;
    object_source source_;
    object_index index_;
    object_writer main_; // what is written one by one
    header header_;
    std::size_t ready_ = 0;                 // bytes of the text whose memory was made ready
    std::vector<block> blocks_;             // in the order of their table
    std::vector<std::string> more_classes_; // kinds of proxies whose class the file does not list
};

} // namespace dwg
