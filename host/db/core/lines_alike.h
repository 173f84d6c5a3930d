// Many lines that differ in nothing but their ends, as a polyline falls into: what they share is held, read
// and written once.
#pragma once

#include "dbents.h"
#include "host/db/core/imp_database.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace db {

// The groups of a line's ends, 10 to 31, at the end of a new record's text.
void append_ends(std::string& text, const dxf::group_style& style, const AcGePoint3d& start,
                 const AcGePoint3d& end);
// How the texts of new objects are written.
inline constexpr dxf::group_style plain_style{"\n", false, 0, 0};

class lines_alike : public std::enable_shared_from_this<lines_alike> {
public:
    // Like a line that is in no drawing.
    explicit lines_alike(const AcDbLine& line);

    std::unique_ptr<AcDbLine> make(const AcGePoint3d& start, const AcGePoint3d& end);
    // The groups of a line that was made, by its number.
    std::string text(std::size_t number) const;

    // Notes that one of them has just got its record at the end of a block.
    void added(const AcDbImpDatabase& database, dxf::record_id block, dxf::record_id record);
    // Gives the next its record behind that one, with the same text but for handle and ends. no_record, and
    // nothing is done, when the drawing changed in between, or the line is not like the others any more.
    dxf::record_id add(AcDbImpDatabase& database, dxf::record_id block, const AcDbImpObject& line);

private:
    void put_end(const dxf::group_style& style, std::size_t first_code, const AcGePoint3d& point);

    struct ends {
        AcGePoint3d start;
        AcGePoint3d end;
    };
    std::vector<ends> ends_;
    std::string before_; // the groups before those of the ends, and behind them
    std::string behind_;
    unsigned given_;

    // The last record that was added, in pieces.
    AcDbObjectId block_;
    std::size_t journal_ = 0; // its length then
    dxf::record_id last_ = dxf::no_record;
    std::string head_; // up to the handle; of drawings without handles up to the ends
    std::string middle_;
    std::string tail_;
    bool has_handle_ = false;
    std::array<std::string, 6> codes_;    // the lines of the codes of both ends
    AcGePoint3d end_;                     // where the last line that was added ends, and its coordinates as
    std::array<std::string, 3> end_text_; // text: the next one mostly begins there
    std::string text_;                    // room for the next
};

} // namespace db
