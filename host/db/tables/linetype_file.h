// Files of linetypes. A text file (".lin") has two lines for each,
//
//   *NAME,description
//   A,12.7,-6.35,["GAS",STANDARD,S=2.5,R=0,X=-2,Y=-1],-10
//
// lines that begin with ; are comments. A table (".dbf") has the columns NAME, DESCR and PATTERN. Behind "A,"
// stand lengths of dashes (above nought), gaps (below) and dots (nought); behind a length may stand what is
// written in the line there: a text with its text style, or the shape of a shape file. S is its size, R its
// rotation against the line, A against the drawing, U against the line and never on its head, in degrees (or
// with r radians, g gon); X and Y move it.
#pragma once

#include "acadstrc.h"
#include "base/result.h"
#include "dbid.h"
#include "gevec2d.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

class AcDbDatabase;
class AcDbImpDatabase;

namespace db {

struct linetype_dash {
    double length = 0.0;
    std::wstring text;
    std::wstring shape;
    std::wstring style; // of a text its text style, of a shape the file that has it
    double scale = 1.0;
    double degrees = 0.0;
    bool oriented = false; // against the drawing
    AcGeVector2d offset;
};

struct linetype_definition {
    std::wstring name;
    std::wstring description;
    std::wstring pattern;
    std::size_t line = 0; // of the pattern, counted from 1; of a table its row
};

// The dashes of a pattern. On failure says what in it is none.
ACDB_PORT base::result<std::vector<linetype_dash>> parse_linetype_pattern(std::wstring_view pattern);

// What a file holds, in its order. On failure names the file and what is wrong: no such file, a table without
// these columns.
ACDB_PORT base::result<std::vector<linetype_definition>> read_linetypes(const std::filesystem::path& file);

// Makes a linetype as it is defined, or, when the drawing has it, gives it these dashes. A text style that
// the drawing lacks is replaced by "Standard". eInvalidInput for a pattern that is none; eUndefineShapeName
// where it needs a shape; what the symbol table answers.
ACDB_PORT Acad::ErrorStatus define_linetype(AcDbDatabase& drawing, const linetype_definition& definition,
                                            AcDbObjectId& id);

// Makes a linetype that the drawing lacks from the first file that defines it: the system folder's
// "linetype.dbf", then
// ".lin" files on the support path, the editor's own names first. Null when none does.
ACDB_PORT AcDbObjectId find_and_load_linetype(AcDbDatabase& drawing, std::wstring_view name);

} // namespace db
