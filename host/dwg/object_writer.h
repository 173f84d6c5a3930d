// Writes single objects of a file as records: entities with what belongs to them, blocks' begins and ends,
// and, of what has no row, proxies. Each thread has one of its own.
#pragma once

#include "host/dwg/object_index.h"
#include "host/dwg/record_writer.h"

#include <map>
#include <string>
#include <vector>

namespace dwg {

// A block: its record's fields that other records need, and what it holds.
struct block {
    std::uint64_t handle = 0, begin = 0, end = 0;
    std::vector<std::uint64_t> owned;
    std::string path, description;
    double base[3] = {};
    std::int64_t flags = 0;
    bool is_paper = false;
};

class object_writer {
public:
    // Records come behind what `out` holds.
    object_writer(std::string& out, object_index& index, const object_source& source)
        : object(source), write(out, source), out_(out), index_(index), source_(source) {}

    // Reads an object and its fields anew. False when it is damaged; `known` says whether its fields are
    // understood.
    bool reopen(const entry& of, bool& known);
    // The groups of the object that is open which its type does not know, and application data: the end.
    void proxy();
    void end_record();
    void block_end(const block& of, bool is_end);
    void entity(entry& of, bool in_paper_space);

    object_reader object;
    record_writer write;
    std::map<std::string, std::size_t> proxies; // how many there are of a kind
    // Proxies of kinds without a class: where in the text the nine columns of its number stand.
    struct without_class {
        std::size_t at;
        std::string kind;
    };
    std::vector<without_class> classless;

private:
    std::string kind_of_object() const;

    std::string& out_;
    object_index& index_;
    const object_source& source_;
    double elevation_ = 0; // of the polyline whose vertices are written
    int depth_ = 0;        // of entities in entities
};

// The class in the editor of a kind that has neither row nor class in the file.
std::string_view class_without_row(std::string_view kind);

} // namespace dwg
