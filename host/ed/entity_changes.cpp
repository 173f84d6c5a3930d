// Changes of objects by chains of result buffers.
#include "acdbads.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_object.h"
#include "host/db/tables/properties.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace ed {

namespace {

struct color_groups {
    std::optional<int> index;
    std::optional<Adesk::Int32> rgb;
    std::optional<std::wstring> names;
};

// False for groups that are not those of a layer's colour.
bool read_color_groups(const resbuf* chain, color_groups& read) {
    for (; chain != nullptr; chain = chain->rbnext) {
        switch (chain->restype) {
        case 62:
            read.index = chain->resval.rint;
            break;
        case 420:
            read.rgb = chain->resval.rlong;
            break;
        case 430:
            if (chain->resval.rstring == nullptr)
                return false;
            read.names = chain->resval.rstring;
            break;
        default:
            return false;
        }
    }
    return read.index && *read.index != 0 && std::abs(*read.index) <= AcCmColor::kACImaximum &&
           (!read.rgb || (*read.rgb >= 0 && *read.rgb <= 0xFFFFFF)) && (read.rgb || !read.names);
}

} // namespace

} // namespace ed

int acdbEntMod(const resbuf* chain) {
    constexpr int entity_name = -1;
    AcDbObjectId id;
    ed::color_groups color;
    if (chain == nullptr || chain->restype != entity_name ||
        acdbGetObjectId(id, chain->resval.rlname) != Acad::eOk ||
        !ed::read_color_groups(chain->rbnext, color))
        return RTERROR;
    const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
    if (layer.openStatus() != Acad::eOk)
        return RTERROR;
    layer->assertWriteEnabled();
    dxf::group_list& groups = layer->imp().edit();
    groups.set_integer(db::layer_place, 62, *color.index);
    if (color.rgb)
        groups.set_integer(db::layer_place, 420, *color.rgb);
    else
        groups.remove(db::layer_place, 420);
    if (color.names)
        groups.set_text(db::layer_place, 430, layer->imp().encode(*color.names));
    else
        groups.remove(db::layer_place, 430);
    return RTNORM;
}
