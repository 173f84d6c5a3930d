// Pictures of a drawing: its spaces and sheets on paper, as the bytes of a PNG, an SVG or a PDF.
#pragma once

#include "base/result.h"
#include "gepnt2d.h"
#include "host/db/core/imp_database.h"
#include "host/picture/painter.h"
#include "sys/paper.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace picture {

// What a picture is to show, and how. Without a size of paper a sheet has its own, and everything else A3, as
// it lies best.
struct request {
    std::vector<dxf::record_id> spaces;                        // block records; several only for a PDF
    std::optional<std::pair<AcGePoint2d, AcGePoint2d>> window; // two corners; nothing: all that is drawn
    std::optional<std::pair<double, double>> paper;            // millimetres
    std::optional<double>
        scale; // millimetres of the paper to a unit of the drawing; nothing: as large as fits
    colors drawn_in = colors::as_drawn;
    // With an earlier form of the drawing: what went is red, what came green, what changed blue, the rest
    // grey.
    AcDbImpDatabase* before = nullptr;
    bool dark = false;        // on black ground, as on the screen
    double dots_per_mm = 8.0; // of a PNG: about 200 to an inch
};

struct drawn {
    std::string bytes;
    std::vector<std::wstring> lacking; // fonts that are not here, each with what stood in
    std::vector<std::wstring> images;  // that are not shown, each with the reason
};

// The bytes of a picture. Fails when the libraries that draw are missing, and for pictures that are too
// large.
ACCORE_PORT base::result<drawn> draw(AcDbImpDatabase& drawing, const request& request,
                                     sys::paper_format format);

// ---- what users say

// By the ending of a file's name. Fails, with words for the user, for other endings.
ACCORE_PORT base::result<sys::paper_format> format_of_file(std::wstring_view file);
// "A4" to "A0", lying; "A4V" upright; or width and height in millimetres, "600x400". Nothing for what is
// none.
ACCORE_PORT std::optional<std::pair<double, double>> paper_named(std::wstring_view text);
// "1:100", "2:1" or the millimetres to a unit, "0.01", as millimetres to a unit. Nothing for what is none.
ACCORE_PORT std::optional<double> scale_named(std::wstring_view text);

} // namespace picture
