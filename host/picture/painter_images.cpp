// Images and what covers others, within their frames.
#include "dbwipe.h"
#include "host/db/core/open_objects.h"
#include "host/picture/painter.h"

#include <algorithm>
#include <cmath>

namespace picture {

// The frame of an image or a wipeout was drawn: its inside. False for other entities.
bool painter::draw_inside(std::span<const AcGePoint3d> corners, const look& now) {
    const std::string_view type = type_now();
    const bool covers = type == "WIPEOUT";
    if (!covers && type != "IMAGE")
        return false;
    const gi::visit& entity = frames_.back().entity;
    const std::unique_ptr<AcDbObject> view = entity.database->objects().view(entity.entity);
    const AcDbRasterImage* const image = AcDbRasterImage::cast(view.get());
    if (image == nullptr || corners.size() < 3)
        return false;
    if (covers) {
        look blank = now;
        blank.pen.color = manner_.background;
        const std::vector<AcGePoint3d> rims[] = {{corners.begin(), corners.end()}};
        fill(rims, blank);
        return true;
    }
    if (!image->isSetDisplayOpt(AcDbRasterImage::kShow))
        return false;
    const auto dots = shared_.images.of(*image, manner_.background.red);
    if (dots == nullptr) {
        write_path(drawn_images::path_of(*image), corners, now);
        return false;
    }
    AcGePoint3d origin;
    AcGeVector3d u;
    AcGeVector3d v;
    image->getOrientation(origin, u, v);
    const AcGeVector3d right = entity.to_world * u;
    const AcGeVector3d up = entity.to_world * v;
    std::vector<sys::sheet_point> rim;
    for (const AcGePoint3d& point : corners)
        rim.push_back(view_.at(point));
    rim = view_.near_area(std::move(rim));
    if (rim.size() < 3)
        return false;
    const sys::sheet_point down = view_.along(-up);
    put_on_layer(now);
    paper_.push_clip(rim);
    paper_.image(dots, {view_.at(entity.to_world * origin + up), view_.along(right), down});
    paper_.pop_clip();
    layer_.reset(); // a clip ends what the paper knew
    return false;   // its frame is drawn, too
}

// In the middle of the frame, as large as it fits there.
void painter::write_path(const std::wstring& path, std::span<const AcGePoint3d> corners, const look& now) {
    AcGePoint3d least = corners.front();
    AcGePoint3d most = corners.front();
    for (const AcGePoint3d& point : corners) {
        least = {std::min(least.x, point.x), std::min(least.y, point.y), least.z};
        most = {std::max(most.x, point.x), std::max(most.y, point.y), least.z};
    }
    static const gi::font plain = [] {
        gi::font made;
        made.typeface = L"Arial";
        made.hand = gi::font_hand::outline;
        return made;
    }();
    const double width = gi::measure_text(path, plain, 1.0).width;
    constexpr double share = 0.9;      // of the width
    constexpr double most_share = 0.1; // of the height
    const double height = std::min((most.x - least.x) * share / width, (most.y - least.y) * most_share);
    if (!(width > 0.0) || !(height > 0.0) || !std::isfinite(height))
        return;
    gi::text_line line;
    line.text = path;
    line.written_with = &plain;
    line.length = width;
    line.x = {height, 0.0, 0.0};
    line.y = {0.0, height, 0.0};
    line.position = {(least.x + most.x - width * height) / 2.0, (least.y + most.y - height) / 2.0, least.z};
    draw_text(line, now);
}

} // namespace picture
