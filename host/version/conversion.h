// What all steps of writing a drawing as another version share.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/version/losses.h"
#include "host/version/output.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace version {

struct conversion {
    conversion(AcDbImpDatabase& database, int to, output::taker put);

    AcDbImpDatabase& database;
    const dxf::drawing& source;
    const dxf::record_table& records;
    int from;
    int to;
    dxf::text_codec codec; // that the file is written in
    bool recodes;          // whether texts have other bytes in it than in the source
    output out;
    losses lost;

    std::uint64_t new_handle() { return next_handle_++; }
    // So many more will be given; and what $HANDSEED must be for that.
    void reserve(std::size_t handles) { reserved_ = handles; }
    std::uint64_t seed() const { return next_handle_ + reserved_; }

    // The bytes of a text of the source in the file.
    std::string text(std::string_view bytes) const {
        return needs_recoding(bytes) ? codec.encode(source.codec().decode(bytes)) : std::string(bytes);
    }
    bool needs_recoding(std::string_view bytes) const;
    // A group of the source.
    void put(const dxf::raw_group& group);
    void put(int code, std::string_view value);

    // The members of a container (a SECTION, TABLE or BLOCK) up to what ends it, as far as they are saved.
    std::vector<dxf::record_id> members(dxf::record_id container) const;

private:
    std::uint64_t next_handle_ = 1;
    std::uint64_t reserved_ = 0;
};

// The encoding of drawings of a version that are made of a source: UTF-8 from 2007 on, else the code page
// that the source is in; of a source in UTF-8 the one that it names, or where that lacks letters of its
// layers' names, the first one of the usual pages that has them all.
int encoding_of(const dxf::drawing& source, int version);
// What $DWGCODEPAGE says of a drawing in an encoding.
std::string code_page_name(const dxf::drawing& source, int encoding);

} // namespace version
