#include "host/db/core/lines_alike.h"

#include "base/number_text.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"

#include <algorithm>

namespace db {

namespace {

constexpr int end_codes[] = {10, 20, 30, 11, 21, 31};

std::string coordinate_text(const AcGePoint3d& point, std::size_t axis) {
    return base::real_text(point[static_cast<unsigned>(axis)] + 0.0); // no zero with a sign
}

} // namespace

void append_ends(std::string& text, const dxf::group_style& style, const AcGePoint3d& start,
                 const AcGePoint3d& end) {
    for (std::size_t i = 0; i < std::size(end_codes); ++i)
        dxf::append_group(text, style, end_codes[i], coordinate_text(i < 3 ? start : end, i % 3));
}

lines_alike::lines_alike(const AcDbLine& line) : given_(line.imp().given) {
    const dxf::group_list& list = line.imp().groups();
    const std::size_t first = list.find({"AcDbLine"}, end_codes[0]);
    for (std::size_t i = 0; i < list.groups().size(); ++i)
        if (i < first || i >= first + std::size(end_codes))
            dxf::append_group(i < first ? before_ : behind_, plain_style, list.groups()[i].code,
                              list.groups()[i].value);
}

std::unique_ptr<AcDbLine> lines_alike::make(const AcGePoint3d& start, const AcGePoint3d& end) {
    auto line = std::make_unique<AcDbLine>();
    line->imp().begin_like(shared_from_this(), ends_.size());
    line->imp().given = given_;
    ends_.push_back({start, end});
    return line;
}

std::string lines_alike::text(std::size_t number) const {
    std::string text = before_;
    append_ends(text, plain_style, ends_[number].start, ends_[number].end);
    return text += behind_;
}

void lines_alike::added(const AcDbImpDatabase& database, dxf::record_id block, dxf::record_id record) {
    last_ = dxf::no_record;
    const dxf::padded_text text = database.records().text(record);
    const dxf::group_list list(text);
    const auto& groups = list.groups();
    const std::size_t first = list.find({"AcDbLine"}, end_codes[0]);
    if (first == dxf::group_list::npos || groups.size() - first < std::size(end_codes))
        return;
    for (std::size_t i = 0; i < std::size(end_codes); ++i)
        if (groups[first + i].code != end_codes[i])
            return;
    const auto place = [&](std::string_view piece) {
        return static_cast<std::size_t>(piece.data() - text.data());
    };
    const std::string_view last_end = groups[first + std::size(end_codes) - 1].source;
    const std::size_t middle = place(groups[first].source);
    has_handle_ = groups[1].code == 5;
    head_ = text.substr(0, has_handle_ ? place(groups[1].value) : middle);
    middle_.clear();
    if (has_handle_) {
        const std::size_t behind = place(groups[1].value) + groups[1].value.size();
        middle_ = text.substr(behind, middle - behind);
    }
    tail_ = text.substr(place(last_end) + last_end.size());
    const dxf::group_style& style = database.drawing().style();
    for (std::size_t i = 0; i < std::size(end_codes); ++i) {
        codes_[i].clear();
        dxf::append_group(codes_[i], style, end_codes[i], "");
        codes_[i].resize(codes_[i].size() - style.line_end.size()); // that of the value
    }
    end_text_.fill({});
    block_ = database.id(block);
    journal_ = database.records().journal().size();
    last_ = record;
}

void lines_alike::put_end(const dxf::group_style& style, std::size_t first_code, const AcGePoint3d& point) {
    const bool same = !end_text_[0].empty() && point.x == end_.x && point.y == end_.y && point.z == end_.z;
    for (std::size_t i = 0; i < end_text_.size(); ++i) {
        if (!same)
            end_text_[i] = coordinate_text(point, i);
        text_.append(codes_[first_code + i]).append(end_text_[i]).append(style.line_end);
    }
    end_ = point;
}

dxf::record_id lines_alike::add(AcDbImpDatabase& database, dxf::record_id block, const AcDbImpObject& line) {
    dxf::record_table& records = database.records();
    if (last_ == dxf::no_record || line.given != given_ || database.id(block) != block_ ||
        records.journal().size() != journal_)
        return dxf::no_record;
    const ends& own = ends_[line.number_alike()];
    const std::uint64_t handle = records.new_handle();
    text_ = head_;
    if (has_handle_)
        text_.append(handle_text(handle)).append(middle_);
    const dxf::group_style& style = database.drawing().style();
    put_end(style, 0, own.start);
    put_end(style, 3, own.end);
    text_ += tail_;
    last_ = records.insert_like(last_, text_, handle);
    journal_ = records.journal().size();
    return last_;
}

} // namespace db
