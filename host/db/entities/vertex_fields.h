// The groups of the vertices of old polylines and meshes.
#pragma once

#include "host/db/core/fields.h"

namespace db {

inline constexpr field flat_vertex_fields[] = {point(10, "0.0"),
                                               number(40, "0.0").not_negative(),
                                               number(41, "0.0").not_negative(),
                                               number(42, "0.0"),
                                               number(70, "0"),
                                               angle(50),
                                               number(91)};
inline constexpr auto flat_vertex = section_of<flat_vertex_fields>("AcDb2dVertex");
// The others differ by their kind.
inline constexpr field space_vertex_fields[] = {point(10, "0.0"), number(70, "32")};
inline constexpr auto space_vertex = section_of<space_vertex_fields>("AcDb3dPolylineVertex");
inline constexpr field mesh_vertex_fields[] = {point(10, "0.0"), number(70, "64")};
inline constexpr auto mesh_vertex = section_of<mesh_vertex_fields>("AcDbPolygonMeshVertex");
inline constexpr field polyface_vertex_fields[] = {point(10, "0.0"), number(70, "192")};
inline constexpr auto polyface_vertex = section_of<polyface_vertex_fields>("AcDbPolyFaceMeshVertex");

} // namespace db
