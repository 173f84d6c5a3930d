#include "host/db/entities/lines_alike.h"

#include "base/number_text.h"
#include "host/db/core/imp_object.h"

namespace db {

namespace {

constexpr dxf::group_style plain{"\n", false, 0, 0};

} // namespace

void append_ends(std::string& text, const AcGePoint3d& start, const AcGePoint3d& end) {
    for (const auto& [code, point] : {std::pair(10, start), std::pair(11, end)})
        for (const unsigned axis : {0u, 1u, 2u})
            dxf::append_group(text, plain, code + 10 * static_cast<int>(axis),
                              base::real_text(point[axis] + 0.0)); // no zero with a sign
}

lines_alike::lines_alike(const AcDbLine& line) : given_(line.imp().given) {
    constexpr std::size_t groups_of_ends = 6;
    const dxf::group_list& list = line.imp().groups();
    const std::size_t ends = list.find({"AcDbLine"}, 10);
    for (std::size_t i = 0; i < list.groups().size(); ++i)
        if (i < ends || i >= ends + groups_of_ends)
            dxf::append_group(i < ends ? before_ : behind_, plain, list.groups()[i].code,
                              list.groups()[i].value);
}

std::unique_ptr<AcDbLine> lines_alike::make(const AcGePoint3d& start, const AcGePoint3d& end) const {
    constexpr std::size_t enough = 256; // for the ends, and what begin_new() adds
    std::string text;
    text.reserve(before_.size() + behind_.size() + enough);
    text += before_;
    append_ends(text, start, end);
    text += behind_;
    auto line = std::make_unique<AcDbLine>();
    line->imp().begin_new(std::move(text));
    line->imp().given = given_;
    return line;
}

} // namespace db
