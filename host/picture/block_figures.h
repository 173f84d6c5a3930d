// What blocks draw, as figures in their own coordinates: found once, and drawn for every reference.
#pragma once

#include "acgi.h"
#include "dbmain.h"
#include "host/gi/canvas.h"
#include "host/gi/font.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class AcDbImpDatabase;

namespace picture {

struct block_figures {
    // What an entity sets before it draws.
    struct attributes {
        dxf::record_id entity = dxf::no_record;
        AcCmEntityColor color;
        AcDbObjectId layer;
        AcDbObjectId linetype;
        AcDb::LineWeight weight = AcDb::kLnWtByLayer;
        double linetype_scale = 1.0;
        std::size_t around = of_block; // number of those of the reference in the block that it stands in
        friend bool operator==(const attributes&, const attributes&) = default;
    };
    static constexpr std::size_t of_block = static_cast<std::size_t>(-1);

    // What a reference in the block shows follows on a `nested`, whose points are the corners of it all.
    enum class kind : std::uint8_t { lines, areas, curve, text, unbounded, point, nested };
    struct figure {
        kind what = kind::lines;
        bool both = false;                           // ways, of a line without end
        std::size_t look = 0;                        // number of its attributes
        std::size_t inside = 0;                      // how many figures a reference shows
        std::vector<std::vector<AcGePoint3d>> lists; // of points; of areas a rim each
        gi::arc arc;                                 // of a line without end center and u
        gi::text_line line;                          // looks on what follows
        std::wstring signs;
        gi::font font;
    };

    AcDbExtents extents;
    AcGePoint3d base;
    std::vector<attributes> looks;
    std::deque<figure> figures;
};

// The blocks of a drawing as far as they are plain: of entities of the drawing itself that only lines, areas,
// points and texts come from, references without rows and columns among them.
class plain_blocks {
public:
    explicit plain_blocks(AcDbImpDatabase& drawing) : drawing_(drawing) {}

    // By the bytes with which references name it; null for one that is not plain, and for none. Asks the
    // drawing: by one thread at a time. What it gives can be read by several.
    const block_figures* find(std::string_view name);

private:
    std::unique_ptr<block_figures> figures_of(dxf::record_id block);

    AcDbImpDatabase& drawing_;
    std::unordered_map<std::string_view, std::unique_ptr<block_figures>> known_;
    std::size_t kept_ = 0; // points and the like, of all
};

} // namespace picture
