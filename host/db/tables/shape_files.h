// The shape files that styles of a drawing name, where this machine has them.
#pragma once

#include "host/gi/font.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

class AcDbImpDatabase;
class AcGiTextStyle;

namespace db {

class shape_files {
public:
    explicit shape_files(AcDbImpDatabase& database) : database_(database) {}

    // A file by its name alone, whatever folder is written in front of it, with or without its ending: beside
    // the drawing, in the current folder, in the system folder and in "fonts" there. Null when it is not
    // there or holds no shapes; looked for once.
    std::shared_ptr<const gi::shape_font> of(std::wstring_view name);

    // Gives a style the files of its fonts.
    void complete(AcGiTextStyle& style);

private:
    AcDbImpDatabase& database_;
    std::map<std::wstring, std::shared_ptr<const gi::shape_font>> known_; // by folded names
};

// The same for a style of a drawing, which may be null.
void complete_fonts(AcDbImpDatabase* database, AcGiTextStyle& style);

} // namespace db
