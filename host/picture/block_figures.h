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
        friend bool operator==(const attributes&, const attributes&) = default;
    };
    enum class kind : std::uint8_t { lines, areas, curve, text, unbounded };
    struct figure {
        kind what = kind::lines;
        bool both = false;                           // ways, of a line without end
        std::size_t look = 0;                        // number of its attributes
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

// The blocks of a drawing as far as they are plain: of entities of the drawing itself, without references,
// that only lines, areas and texts come from.
class plain_blocks {
public:
    explicit plain_blocks(AcDbImpDatabase& drawing) : drawing_(drawing) {}

    // By the bytes with which references name it; null for one that is not plain, and for none. Asks the
    // drawing: by one thread at a time. What it gives can be read by several.
    const block_figures* find(std::string_view name);

private:
    std::unique_ptr<block_figures> figures_of(dxf::record_id block) const;

    AcDbImpDatabase& drawing_;
    std::unordered_map<std::string_view, std::unique_ptr<block_figures>> known_;
};

} // namespace picture
