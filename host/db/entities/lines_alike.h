// Many lines that differ in nothing but their ends, as a polyline falls into.
#pragma once

#include "dbents.h"

#include <memory>
#include <string>

namespace db {

// The groups of a line's ends, 10 to 31, at the end of a new record's text.
void append_ends(std::string& text, const AcGePoint3d& start, const AcGePoint3d& end);

class lines_alike {
public:
    // Like a line that is in no drawing.
    explicit lines_alike(const AcDbLine& line);

    std::unique_ptr<AcDbLine> make(const AcGePoint3d& start, const AcGePoint3d& end) const;

private:
    std::string before_; // the groups before those of the ends, and behind them
    std::string behind_;
    unsigned given_;
};

} // namespace db
