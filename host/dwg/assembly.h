// The objects of a DWG file, put into the sections of a DXF drawing.
#pragma once

#include "host/dwg/drawing_reader.h"
#include "host/dwg/header.h"
#include "host/dwg/object_reader.h"
#include "host/dwg/record_writer.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace dwg {

class assembly {
public:
    assembly(const container& file, drawing_text& out);
    void run();

private:
    // What is known of each object before any is written.
    struct entry {
        std::uint64_t handle = 0;
        std::size_t address = 0;
        const object_type* type = nullptr;
        std::uint64_t owner = 0;
        std::uint64_t next = 0; // in the chain of a block, up to 2000
        int number = 0;
        bool is_entity = false, is_placed = false, is_damaged = false;
        std::uint8_t mode = 0;
    };
    // A block: its record's fields that other records need, and what it holds.
    struct block {
        std::uint64_t handle = 0, begin = 0, end = 0;
        std::vector<std::uint64_t> owned;
        std::string path, description;
        double base[3] = {};
        std::int64_t flags = 0;
        bool is_paper = false;
    };

    void read_map();
    void read_classes();
    void look_at_all();
    void find_linetypes();
    void name_blocks();
    std::uint64_t owner_of(const entry& of) const;
    entry* find(std::uint64_t handle);
    entry* control(int number);
    // Reads an object and its fields anew. False when it is damaged; `known` says whether its fields are
    // understood.
    bool reopen(const entry& of, bool& known);
    // Those of an owner's entities that stand nowhere yet, in their order.
    std::vector<entry*> members(std::uint64_t owner, const std::vector<std::uint64_t>& listed);
    int proxy_class();
    std::string kind_of_object() const;

    void write_classes();
    void write_tables();
    void write_table(std::string_view name, int control_number);
    void write_entry(entry& of, std::string_view name, std::uint64_t owner);
    void read_block(std::uint64_t handle);
    void write_blocks();
    void write_block_end(const block& of, bool is_end);
    void write_members(std::uint64_t owner, const std::vector<std::uint64_t>& listed, bool in_paper_space);
    void write_entity(entry& of, bool in_paper_space);
    void write_objects();
    void write_object(entry& of, std::vector<std::uint64_t>& children);
    void end_record();
    void section(std::string_view name);
    void left_out(const entry& of, const std::wstring& why);

    const container& file_;
    drawing_text& out_;
    object_source source_;
    record_writer write_;
    object_reader object_;
    header header_;
    std::vector<entry> entries_;                                             // by handle
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> children_; // entities by owner
    std::vector<block> blocks_;                                              // in the order of their table
    std::vector<std::string> more_classes_;                                  // for types that have no class
    std::uint64_t model_space_ = 0, paper_space_ = 0;
    double elevation_ = 0; // of the polyline whose vertices are written
};

} // namespace dwg
