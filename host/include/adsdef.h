// The C types of input, selection and result buffers.
//
// Points and names are plain arrays, so that they can be handed on as such; geassign.h lays the geometry
// classes over them.
#pragma once

#include "AdAChar.h"
#include "adesk.h"

typedef double ads_real;
typedef ads_real ads_point[3];
typedef ads_real ads_matrix[4][4];

// Names an entity or a selection set.
typedef Adesk::IntPtr ads_name[2];

// Coordinates of an ads_point.
enum { X = 0, Y = 1, Z = 2 };

#define ads_name_equal(name1, name2) ((name1)[0] == (name2)[0] && (name1)[1] == (name2)[1])
#define ads_name_set(from, to) ((to)[0] = (from)[0], (to)[1] = (from)[1])
#define ads_name_clear(name) ((name)[0] = (name)[1] = 0)
#define ads_name_nil(name) ((name)[0] == 0 && (name)[1] == 0)
#define ads_point_set(from, to) ((to)[X] = (from)[X], (to)[Y] = (from)[Y], (to)[Z] = (from)[Z])
#define ads_point_clear(point) ((point)[X] = (point)[Y] = (point)[Z] = 0.0)

// Bytes of a value; whoever owns the value owns the buffer.
struct ads_binary {
    short clen;
    char* buf;
};

// One value; resbuf::restype says which member holds.
union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    Adesk::IntPtr rlname[2];
    Adesk::Int32 rlong;
    Adesk::Int64 mnInt64;
    ads_binary rbinary;
    unsigned char ihandle[8];
};

// A value in a chain of values. acutNewRb and acutBuildList make them, acutRelRb frees a whole chain.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};
