// Groups of a record as chains of values, and back: extended data and the data of xrecords.
#pragma once

#include "acestext.h"
#include "adsdef.h"
#include "host/dxf/group_list.h"

#include <span>
#include <vector>

class AcDbImpObject;

namespace db {

// The extended data of one application, or of all when `application` is null; null for none. The caller frees
// it.
resbuf* read_extended_data(const AcDbImpObject& object, const ACHAR* application);
// Replaces the extended data of the applications that the chain names.
Acad::ErrorStatus write_extended_data(AcDbImpObject& object, const resbuf* chain);

// Fills in the value that begins with group `at`, of a kind without memory of its own: no text, no bytes.
void read_plain_value(const AcDbImpObject& object, std::span<const dxf::group> groups, std::size_t at,
                      resbuf& value);
// The bytes that hexadecimal digits stand for.
std::string bytes_of_digits(std::string_view digits);
// How many groups the value takes that begins with group `at`: three of a point make one value.
std::size_t groups_of_value(std::span<const dxf::group> groups, std::size_t at);
// The value that begins with group `at`, the last of a chain yet to be made; null when no chain can hold it.
// The caller frees it. Gives how many groups it takes: three of a point make one value.
std::size_t read_value(const AcDbImpObject& object, std::span<const dxf::group> groups, std::size_t at,
                       resbuf*& value);
// A chain with the values of groups; three groups of a point make one value. The caller frees it.
resbuf* chain_of(const AcDbImpObject& object, std::span<const dxf::group> groups);
// The groups of a chain; false at a value that its code can not hold, or a code for which `allowed` answers
// false.
bool groups_of(const AcDbImpObject& object, const resbuf* chain, bool (*allowed)(int code),
               std::vector<dxf::group_list::fresh_group>& groups);

} // namespace db
