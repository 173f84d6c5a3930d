// What stands in front of an object's data: its owner, its extension dictionary, and who wants to hear of it.
#pragma once

#include "dbmain.h"
#include "host/dxf/group_list.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace db {

// Groups in braces: 102 "{NAME", some handles, 102 "}".
inline constexpr std::string_view dictionary_braces = "{ACAD_XDICTIONARY";
inline constexpr std::string_view reactor_braces = "{ACAD_REACTORS";

// The handles in such braces in front of the first marker.
std::vector<std::uint64_t> links(const dxf::group_list& groups, std::string_view braces);
// Whether a handle stands in such braces in front of the first marker.
bool has_link(const dxf::group_list& groups, std::string_view braces, std::uint64_t handle);
// Adds it, with the braces where there are none. The handle must not stand there.
void add_link(dxf::group_list& groups, std::string_view braces, int code, std::uint64_t handle);
// Takes it away, with the braces where they hold nothing else. False when it does not stand there.
bool remove_link(dxf::group_list& groups, std::string_view braces, std::uint64_t handle);

// Whether an object that is open may get such links; files of R12 have no place for them.
Acad::ErrorStatus may_link(const AcDbObject& object);

// Sets the owner (330).
void set_owner(dxf::group_list& groups, std::uint64_t handle);

} // namespace db
