// ZOOM and PAN: which part of the drawing fills the view. It is saved in the drawing, and decides how large
// the pick box is.
#include "acedads.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbmain.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"
#include "host/ed/view.h"
#include "host/view/quick_box.h"
#include "host/view/space_index.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ed {

namespace {

AcDbImpDatabase& drawing() {
    return current_drawing()->imp();
}

// The view that shows all between two corners, with `room` times as much around it.
std::optional<view> view_of_box(const gi::flat_box& box, double room) {
    const double height = std::max(box.most_y - box.least_y, (box.most_x - box.least_x) / width_to_height);
    if (box.is_empty() || !std::isfinite(height))
        return std::nullopt;
    constexpr double nothing = 1e-6; // a single point is seen from near by
    return view{{(box.least_x + box.most_x) / 2.0, (box.least_y + box.most_y) / 2.0},
                std::max(height * room, nothing)};
}

std::optional<view> view_of_extents() {
    constexpr double room = 1.01;
    return view_of_box(gi::flat_extents(drawing(), drawing().record(drawing().self().currentSpaceId())),
                       room);
}

std::optional<view> ask_window(const AcGePoint3d& first) {
    AcGePoint3d second;
    if (ask_point(L"\nSpecify opposite corner: ", second, &first) != RTNORM)
        return std::nullopt;
    const auto window = view_of_window(first, second);
    if (!window)
        acutPrintf(L"\nThe window is empty.\n");
    return window;
}

std::optional<view> view_of_objects() {
    gi::flat_box box;
    for (const AcDbObjectId id : ask_objects(false)) {
        const AcDbObjectPointer<AcDbEntity> entity(id);
        AcDbExtents extents;
        if (entity.openStatus() != Acad::eOk || entity->getGeomExtents(extents) != Acad::eOk)
            continue;
        box.add(extents.minPoint().x, extents.minPoint().y);
        box.add(extents.maxPoint().x, extents.maxPoint().y);
    }
    return view_of_box(box, 1.0);
}

// "2x": so many times as large as now; a number alone counts from the whole drawing. Nothing for what is
// none.
std::optional<view> view_at_scale(std::wstring text) {
    const bool from_now = !text.empty() && (text.back() == L'x' || text.back() == L'X');
    if (from_now)
        text.pop_back();
    const auto factor = base::parse_real(base::narrow(text));
    if (!factor || !(*factor > 0.0) || !std::isfinite(*factor))
        return std::nullopt;
    const view now = current_view(drawing());
    if (from_now)
        return view{now.center, now.height / *factor};
    const auto all = view_of_extents();
    return view{now.center, (all ? all->height : now.height) / *factor};
}

std::optional<view> ask_scale() {
    std::wstring text;
    std::optional<view> wanted;
    const int answered = ask_name(L"\nEnter a scale factor (nX): ", text, [&](const std::wstring& given) {
        wanted = view_at_scale(given);
        return wanted ? std::wstring() : L"'" + given + L"' is no scale factor; 2 or 0.5x would be one.";
    });
    return answered == RTNORM ? wanted : std::nullopt;
}

std::optional<view> ask_center() {
    const view now = current_view(drawing());
    AcGePoint3d center;
    double height = now.height;
    if (ask_point(L"\nSpecify center point: ", center) != RTNORM)
        return std::nullopt;
    const int answered = ask_distance(L"\nEnter height <" + shown_number(height) + L">: ", height);
    if (answered == RTCAN)
        return std::nullopt;
    return view{{center.x, center.y}, height};
}

void show(const std::optional<view>& wanted) {
    if (!wanted)
        return;
    if (!set_current_view(drawing(), *wanted))
        acutPrintf(L"\nThis drawing has no place for a view.\n");
}

} // namespace

void zoom_command() {
    AcGePoint3d corner;
    const int answered =
        ask_point(L"\nSpecify corner of window, enter a scale factor (nX), or "
                  L"[All/Center/Extents/Previous/Scale/Window/Object] <Extents>: ",
                  corner, nullptr, L"All Center Extents Previous Scale Window Object", RSG_OTHER);
    if (answered == RTCAN)
        return;
    if (answered == RTNORM) {
        show(ask_window(corner));
        return;
    }
    const std::wstring word = answered == RTKWORD ? taken_keyword() : L"Extents";
    if (word == L"Window") {
        if (ask_point(L"\nSpecify first corner: ", corner) == RTNORM)
            show(ask_window(corner));
    } else if (word == L"Center") {
        show(ask_center());
    } else if (word == L"Scale") {
        show(ask_scale());
    } else if (word == L"Object") {
        show(view_of_objects());
    } else if (word == L"Previous") {
        if (!take_back_view(drawing()))
            acutPrintf(L"\nNo previous view saved.\n");
    } else if (word == L"Extents" || word == L"All") {
        show(view_of_extents());
    } else if (const auto scaled = view_at_scale(word)) {
        show(scaled);
    } else {
        acutPrintf(L"\n'%ls' is no scale factor; 2 or 0.5x would be one.\n", word.c_str());
    }
}

void pan_command() {
    AcGePoint3d from;
    AcGePoint3d to;
    if (ask_point(L"\nSpecify base point or displacement: ", from) != RTNORM)
        return;
    const int answered = ask_point(L"\nSpecify second point: ", to, &from);
    if (answered == RTCAN)
        return;
    const AcGeVector3d moved = answered == RTNORM ? to - from : from.asVector();
    view now = current_view(drawing());
    now.center = {now.center.x - moved.x, now.center.y - moved.y};
    show(now);
}

} // namespace ed
