// What the values of result buffers hold.
#pragma once

#include "adsdef.h"

#include <cstdarg>

namespace rx {

// Which member of the union holds the value.
enum class value_kind {
    none,    // the type tells all
    real,    // rreal
    point2d, // rpoint, z nought
    point3d, // rpoint
    int16,   // rint
    int32,   // rlong
    int64,   // mnInt64
    text,    // rstring, owned by the chain
    name,    // rlname
    binary,  // rbinary, owned by the chain
    unknown, // no type of a value
};

// The kind of a result type (RTSTR...) or group code.
value_kind kind_of(int type);

// acutBuildList with what follows its first argument.
resbuf* build_list(int type, va_list& arguments);

} // namespace rx
