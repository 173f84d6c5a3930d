// What is known of every object of a file before any is written: where it stands, what it is, whose it is.
#pragma once

#include "host/dwg/object_reader.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace dwg {

// The numbers of types that are written otherwise than by their row alone.
inline constexpr int type_block = 4;
inline constexpr int type_endblk = 5;
inline constexpr int type_seqend = 6;
inline constexpr int type_vertex_2d = 10;
inline constexpr int type_polyline_2d = 15;
inline constexpr int type_dictionary = 42;
inline constexpr int type_block_control = 48;
inline constexpr int type_block_header = 49;
inline constexpr int type_linetype_control = 56;
inline constexpr int type_mline_style = 73;

struct entry {
    std::uint64_t handle = 0;
    std::size_t address = 0;
    const object_type* type = nullptr;
    std::uint64_t owner = 0;
    std::uint64_t next = 0; // in the chain of a block, up to 2000
    int number = 0;         // of its type
    bool is_entity = false, is_placed = false, is_damaged = false, has_children = false;
    std::uint8_t mode = 0;

    bool is_block_end() const { return number == type_block || number == type_endblk; }
};

class object_index {
public:
    // Reads the map of the objects.
    void read_map(std::string_view map, std::size_t file_size, std::vector<std::wstring>& damage);
    // Opens every object of `source` once; the names of table records and what objects there are come to it.
    // The handles of the two spaces are what the header says.
    void look_at_all(object_source& source, std::uint64_t model, std::uint64_t paper,
                     std::vector<std::wstring>& damage);

    std::vector<entry>& all() { return entries_; } // by handle
    // Those that are no entities, and are not damaged.
    const std::vector<entry*>& others() const { return others_; }
    entry* find(std::uint64_t handle);
    // The first object of a type that is no entity; null when there is none.
    const entry* first_of(int number) const;
    std::uint64_t owner_of(const entry& of) const {
        return of.mode == 1 ? paper_space : of.mode == 2 ? model_space : of.owner;
    }
    // Those of an owner's entities that stand nowhere yet, in their order: as its record lists them (up to
    // 2000 the first one), then all others.
    std::vector<entry*> members(std::uint64_t owner, const std::vector<std::uint64_t>& listed, int version);
    // All entities of an owner, by handle.
    const std::vector<entry*>& children_of(std::uint64_t owner) const;

    std::uint64_t model_space = 0, paper_space = 0;

private:
    std::vector<entry> entries_;
    std::vector<entry*> others_;
    std::unordered_map<std::uint64_t, std::vector<entry*>> children_; // entities by owner
};

// What to tell of an object that is not written.
std::wstring left_out(const entry& of, const std::wstring& why);
std::wstring hexadecimal(std::uint64_t handle);

} // namespace dwg
