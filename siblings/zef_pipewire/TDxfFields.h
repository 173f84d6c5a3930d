// What one of the pipe classes files in drawings, as a list of group codes and the members that hold the
// values: one list serves reading and writing.
//
// A class has one function that gives its list, of pointers to its members; to write an object that is open
// for reading alone it casts the object's constness away, for writing changes nothing.
//
// A section is its marker (100), the version of what follows (70) and the values. Lists are their elements
// one by one under the same code; a value that may be absent has no group then. Groups that are not listed
// are passed over.
#pragma once

#include "afx.h"
#include "dbfiler.h"
#include "dbidar.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <variant>
#include <vector>

class TDxfFields {
public:
    using Target =
        std::variant<int*, bool*, double*, CString*, AcGePoint3d*, AcDbObjectId*, std::vector<int>*,
                     std::vector<double>*, std::vector<CString>*, AcDbObjectIdArray*, std::optional<int>*,
                     std::optional<bool>*, std::optional<double>*>;
    struct Field {
        int code;
        Target target;
    };

    TDxfFields(LPCTSTR marker, Adesk::Int16 version, std::initializer_list<Field> fields)
        : m_marker(marker), m_version(version), m_fields(fields) {}

    Acad::ErrorStatus Write(AcDbDxfFiler* filer) const;
    // Without the section everything stays as it is. eMakeMeProxy for one of a newer version.
    Acad::ErrorStatus Read(AcDbDxfFiler* filer) const;

private:
    LPCTSTR m_marker;
    Adesk::Int16 m_version;
    std::vector<Field> m_fields;
};

// Gives a size that was read its usual value when it is not above nought, or not finite: nothing can be
// divided by it, nor drawn.
inline void KeepPositive(double& size, double usual) {
    if (!(size > 0.0) || !std::isfinite(size))
        size = usual;
}

// Makes lists that belong together as long as the shortest of them: a file may hold less than was written.
template<class First, class... Others>
void CutToShortest(First& first, Others&... others) {
    const std::size_t length = std::min({first.size(), others.size()...});
    first.resize(length);
    (others.resize(length), ...);
}
