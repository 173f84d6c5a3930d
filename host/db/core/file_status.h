// What programs are answered when a file could not be read.
#pragma once

#include "acadstrc.h"
#include "base/result.h"

namespace db {

// The status of a failure; `otherwise` when the file is there and may be read, but what it holds is wrong.
inline Acad::ErrorStatus status_of(const base::failure& why, Acad::ErrorStatus otherwise) {
    switch (why.kind) {
    case base::failure_kind::not_found:
        return Acad::eFileNotFound;
    case base::failure_kind::no_access:
        return Acad::eFileAccessErr;
    case base::failure_kind::other:
        break;
    }
    return otherwise;
}

} // namespace db
