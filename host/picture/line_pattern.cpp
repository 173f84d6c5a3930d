#include "host/picture/line_pattern.h"

#include "acgi.h"
#include "acgiutil.h"
#include "acutmem.h"
#include "dbmain.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/tables/shape_files.h"

#include <cmath>
#include <memory>

namespace picture {

namespace {

constexpr double most_dashes = 20'000.0; // of one line

// Walks along a line by lengths.
class walker {
public:
    explicit walker(std::span<const AcGePoint3d> line) : line_(line) {}

    const AcGePoint3d& place() const { return place_; }
    AcGeVector3d direction() const {
        const std::size_t next = std::min(at_ + 1, line_.size() - 1);
        return (line_[next] - line_[next - 1]).normal();
    }
    // Goes on by a length; what is passed goes behind `passed` where it is wanted.
    void go(double length, std::vector<AcGePoint3d>* passed) {
        if (passed != nullptr)
            passed->push_back(place_);
        while (at_ + 1 < line_.size()) {
            const AcGeVector3d left = line_[at_ + 1] - place_;
            const double room = left.length();
            if (length < room) {
                place_ = place_ + left * (length / room);
                break;
            }
            length -= room;
            place_ = line_[++at_];
            if (passed != nullptr && at_ + 1 < line_.size() && length > 0.0)
                passed->push_back(place_);
        }
        if (passed != nullptr)
            passed->push_back(place_);
    }

private:
    std::span<const AcGePoint3d> line_;
    std::size_t at_ = 0; // the corner behind the place
    AcGePoint3d place_ = line_.front();
};

// What stands behind a dash, and the size that its style gives; false for nothing.
bool read_sign(const AcDbLinetypeTableRecord& linetype, int dash, line_sign& sign, double& size) {
    ACHAR* text = nullptr;
    const bool is_text = linetype.textAt(dash, text) == Acad::eOk;
    sign.behind = static_cast<std::size_t>(dash);
    sign.shape_number = is_text ? 0 : linetype.shapeNumberAt(dash);
    if (!is_text && sign.shape_number == 0)
        return false;
    sign.text = is_text ? text : L"";
    acutDelString(text);
    const AcDbObjectId id = linetype.shapeStyleAt(dash);
    if (!id.isValid())
        return is_text;
    AcDbImpDatabase& database = id.database()->imp();
    const std::unique_ptr<AcDbObject> style = database.objects().view(database.record(id));
    const auto* const found = AcDbTextStyleTableRecord::cast(style.get());
    if (found == nullptr)
        return is_text;
    if (is_text) {
        size = found->textSize() > 0.0 ? found->textSize() : size;
        sign.width_factor = found->xScale();
        AcGiTextStyle written;
        fromAcDbTextStyle(written, id);
        sign.font = std::make_shared<gi::font>(written.imp());
    } else {
        AcString file;
        found->fileName(file);
        sign.shape_file = file.kwszPtr();
        sign.shapes = database.part<db::shape_files>().of(sign.shape_file);
    }
    return true;
}

} // namespace

line_pattern pattern_of(const AcDbLinetypeTableRecord& linetype) {
    line_pattern pattern;
    bool drawn = false;
    for (int i = 0; i < linetype.numDashes(); ++i) {
        const double dash = linetype.dashLengthAt(i);
        pattern.dashes.push_back(dash);
        pattern.length += std::fabs(dash);
        drawn = drawn || dash >= 0.0;
        line_sign sign;
        double size = 1.0; // of a style without a size
        if (!read_sign(linetype, i, sign, size))
            continue;
        sign.height = linetype.shapeScaleAt(i) * size;
        sign.angle = linetype.shapeRotationAt(i);
        sign.oriented = linetype.shapeIsUcsOrientedAt(i);
        sign.x = linetype.shapeOffsetAt(i).x;
        sign.y = linetype.shapeOffsetAt(i).y;
        pattern.signs.push_back(std::move(sign));
    }
    if (!drawn || !(pattern.length > 0.0) || !std::isfinite(pattern.length))
        return {};
    return pattern;
}

patterned_line patterned(std::span<const AcGePoint3d> line, const line_pattern& pattern, double scale) {
    patterned_line made;
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i)
        length += (line[i + 1] - line[i]).length();
    const double period = pattern.length * scale;
    const double repeats = std::floor(length / period);
    const double dashes = repeats * static_cast<double>(pattern.dashes.size());
    if (!(repeats >= 1.0) || !(dashes <= most_dashes)) {
        made.dashes.emplace_back(line.begin(), line.end());
        return made;
    }
    walker at(line);
    // What is left over lengthens the first dash and the last one, which is the rest of the first.
    const double first = pattern.dashes.front() > 0.0 ? pattern.dashes.front() * scale : 0.0;
    const double end = (first + length - repeats * period) / 2.0;
    const auto signs_behind = [&](std::size_t dash) {
        for (const line_sign& sign : pattern.signs)
            if (sign.behind == dash)
                made.signs.push_back({&sign, at.place(), at.direction()});
    };
    for (double repeat = 0.0; repeat < repeats; repeat += 1.0) {
        for (std::size_t i = 0; i < pattern.dashes.size(); ++i) {
            const double dash = pattern.dashes[i] * scale;
            if (i == 0) {
                at.go(repeat == 0.0 ? end : first,
                      dash >= 0.0 || repeat == 0.0 ? &made.dashes.emplace_back() : nullptr);
                if (dash < 0.0)
                    at.go(-dash, nullptr);
            } else if (dash < 0.0) {
                at.go(-dash, nullptr);
            } else {
                at.go(dash, &made.dashes.emplace_back());
            }
            signs_behind(i);
        }
    }
    at.go(length, &made.dashes.emplace_back());
    return made;
}

} // namespace picture
