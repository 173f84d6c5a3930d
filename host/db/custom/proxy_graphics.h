// Proxy graphics: what an entity drew when it was saved, kept in its groups for programs that do not know its
// kind.
//
// The data are two whole numbers (size of all, number of chunks) and the chunks: each its size in bytes and
// its type, as whole numbers of four bytes, and what the type asks for. Everything is little-endian; texts
// end with a nought and are filled up to a multiple of four bytes. Source: the published description of
// drawing files, held against the data of drawings that the editor saved.
#pragma once

#include "dbmain.h"
#include "host/gi/canvas.h"

#include <cstdint>
#include <string>
#include <string_view>

class AcGiWorldDraw;

namespace db {

// The data in an entity's groups (92 or 160, and 310); empty when it has none.
std::string read_proxy_graphics(const AcDbImpObject& entity);
// Replaces them; empty data take them away.
void write_proxy_graphics(AcDbImpObject& entity, std::string_view data);

// Draws what the data tell, chunk by chunk; what is unknown or damaged is passed over. Texts are in the
// encoding of the entity's drawing.
void draw_proxy_graphics(std::string_view data, const AcDbImpObject& entity, AcGiWorldDraw& draw);

// What the data hold, by the kinds of AcDbProxyEntity.
enum class metafile { none, bounding_box, graphics };
metafile kind_of_proxy_graphics(std::string_view data);

// The data for what a drawable draws. Texts are those of the interface when `database` is null or of version
// 2007 on, else in its code page.
std::string make_proxy_graphics(const AcGiDrawable& drawable, const AcDbImpDatabase* database);

} // namespace db
