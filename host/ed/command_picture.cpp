// PICTURE: the drawing, or sheets of it, as a PNG, SVG or PDF.
#include "acedads.h"
#include "base/case_fold.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/creation/new_layout.h"
#include "host/db/tables/spaces.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/picture_file.h"
#include "host/ed/questions.h"
#include "host/ed/view.h"
#include "sys/atomic_file.h"
#include "sys/folders.h"

#include <set>

namespace ed {

namespace {

// The sheets of a drawing by their tabs, without model space.
std::vector<dxf::record_id> all_sheets(AcDbImpDatabase& drawing) {
    std::vector<dxf::record_id> sheets;
    for (const dxf::record_id layout : db::layouts_by_tab(drawing)) {
        const AcDbObjectPointer<AcDbLayout> opened(drawing.id(layout));
        if (opened.openStatus() != Acad::eOk)
            continue;
        const AcDbObjectId space = opened->getBlockTableRecordId();
        if (space.isValid() && drawing.record(space) != drawing.blocks().find(ACDB_MODEL_SPACE))
            sheets.push_back(drawing.record(space));
    }
    return sheets;
}

// What is to be drawn; false when the user ended it.
bool ask_what(AcDbImpDatabase& drawing, sys::paper_format format, picture::request& wanted) {
    std::wstring word = L"Current";
    const bool several = format == sys::paper_format::pdf;
    const int answered =
        ask_keyword(several ? L"\nEnter what to draw [Current/Model/Sheets/Window/View] <Current>: "
                            : L"\nEnter what to draw [Current/Model/Window/View] <Current>: ",
                    several ? L"Current Model Sheets Window View" : L"Current Model Window View", word);
    if (answered == RTCAN)
        return false;
    const dxf::record_id model = drawing.blocks().find(ACDB_MODEL_SPACE);
    wanted.spaces = {word == L"Model" ? model : db::current_tab(drawing)};
    if (word == L"Sheets") {
        wanted.spaces = all_sheets(drawing);
        if (wanted.spaces.empty())
            wanted.spaces = {model};
    }
    if (word == L"View") {
        const view seen = current_view(drawing);
        const AcGePoint2d center = seen.center;
        wanted.window.emplace(AcGePoint2d(center.x - seen.width() / 2.0, center.y - seen.height / 2.0),
                              AcGePoint2d(center.x + seen.width() / 2.0, center.y + seen.height / 2.0));
    }
    if (word != L"Window")
        return true;
    AcGePoint3d first;
    AcGePoint3d second;
    if (ask_point(L"\nSpecify first corner: ", first) != RTNORM ||
        ask_point(L"\nSpecify opposite corner: ", second, &first) != RTNORM)
        return false;
    wanted.window.emplace(AcGePoint2d(first.x, first.y), AcGePoint2d(second.x, second.y));
    return true;
}

bool ask_paper(picture::request& wanted) {
    std::wstring paper;
    std::wstring scale;
    const int sized = ask_name(
        L"\nEnter paper (A4 to A0, A4V to A0V upright, or WIDTHxHEIGHT) <its own, or A3>: ", paper,
        [&](const std::wstring& given) -> std::wstring {
            wanted.paper = picture::paper_named(given);
            return wanted.paper ? L"" : L"'" + given + L"' is no paper; A3, or 600x400, would be one.";
        });
    if (sized == RTCAN)
        return false;
    const int scaled = ask_name(L"\nEnter scale (1:100, or millimetres to a unit) <Fit>: ", scale,
                                [&](const std::wstring& given) -> std::wstring {
                                    wanted.scale = picture::scale_named(given);
                                    return wanted.scale || base::equal_no_case(given, L"Fit")
                                               ? L""
                                               : L"'" + given + L"' is no scale; 1:100 would be one.";
                                });
    if (scaled == RTCAN)
        return false;
    std::wstring word = L"Colors";
    if (ask_keyword(L"\nEnter colors [Colors/Greys/Black/Screen] <Colors>: ", L"Colors Greys Black Screen",
                    word) == RTCAN)
        return false;
    wanted.drawn_in = word == L"Greys"   ? picture::colors::greys
                      : word == L"Black" ? picture::colors::black
                                         : picture::colors::as_drawn;
    wanted.dark = word == L"Screen";
    return true;
}

// What users were told that a drawing's pictures lack.
struct told_lacking {
    explicit told_lacking(AcDbImpDatabase& /*drawing*/) {}
    std::set<std::wstring> lines;
};

void tell_lacking(AcDbImpDatabase& drawing, const wchar_t* what, const std::vector<std::wstring>& lacking) {
    std::wstring told;
    for (const std::wstring& line : lacking)
        if (drawing.part<told_lacking>().lines.insert(line).second)
            told += (told.empty() ? L"" : L"; ") + line;
    if (!told.empty())
        acutPrintf(L"\n%ls: %ls.\n", what, told.c_str());
}

} // namespace

base::result<void> write_picture(AcDbImpDatabase& drawing, const std::wstring& file,
                                 const picture::request& request) {
    const auto format = picture::format_of_file(file);
    if (!format)
        return format.why();
    const auto drawn = picture::draw(drawing, request, *format);
    if (!drawn)
        return drawn.why();
    auto target = sys::atomic_file::create(sys::to_path(file));
    if (!target)
        return target.why();
    if (auto written = target->write(drawn->bytes); !written)
        return written;
    auto done = target->commit();
    if (done) {
        tell_lacking(drawing, L"Fonts that are not here, and what stands in", drawn->lacking);
        tell_lacking(drawing, L"Images that are not shown", drawn->images);
    }
    return done;
}

base::result<void> write_picture(AcDbImpDatabase& drawing, const std::wstring& file) {
    picture::request request;
    request.spaces = {db::current_tab(drawing)};
    return write_picture(drawing, file, request);
}

base::result<void> write_changes(AcDbImpDatabase& drawing, const std::wstring& before,
                                 const std::wstring& file) {
    AcDbDatabase old(false, true);
    if (auto read = old.imp().read(before); !read)
        return read;
    picture::request request;
    request.spaces = {db::current_tab(drawing)};
    request.before = &old.imp();
    return write_picture(drawing, file, request);
}

void picture_command() {
    AcDbImpDatabase& drawing = current_drawing()->imp();
    std::wstring file;
    const int answered =
        ask_name(L"\nEnter name of picture (.png, .svg or .pdf): ", file, [](const std::wstring& given) {
            const auto format = picture::format_of_file(given);
            return format ? std::wstring() : format.error() + L".";
        });
    if (answered != RTNORM)
        return;
    const auto format = picture::format_of_file(file);
    picture::request wanted;
    if (!format || !ask_what(drawing, *format, wanted) || !ask_paper(wanted))
        return;
    if (auto written = write_picture(drawing, file, wanted); !written)
        editor::instance().fail(run_status::not_saved, written.error());
    else
        acutPrintf(L"\n%ls written.\n", file.c_str());
}

} // namespace ed
