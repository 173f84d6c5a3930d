// What a terminal shows of the bytes that it gets: as much of a VT100 as editing a line needs. Lines that are
// longer than the screen is wide go on in the next row; a new width does not break them anew.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

namespace test {

class screen {
public:
    screen(std::size_t columns, std::size_t rows) { resize(columns, rows); }

    void resize(std::size_t columns, std::size_t rows) {
        columns_ = columns;
        rows_.resize(rows);
        row_ = std::min(row_, rows - 1);
    }

    void take(char c) {
        if (!sequence_.empty()) {
            sequence_ += c;
            if (sequence_.size() > 2 && c >= '@')
                end_sequence(c);
            else if (sequence_.size() == 2 && c != '[')
                sequence_.clear();
        } else if (c == '\x1b') {
            sequence_ = c;
        } else if (c == '\r') {
            column_ = 0;
        } else if (c == '\b') {
            column_ -= std::min<std::size_t>(column_, 1);
        } else if (c == '\n') {
            feed();
        } else if (c >= ' ') {
            if (column_ == columns_) {
                column_ = 0;
                feed();
            }
            std::string& row = rows_[row_];
            row.resize(std::max(row.size(), column_ + 1), ' ');
            row[column_++] = c;
        }
    }

    // How many rows begin with a text.
    std::ptrdiff_t beginning_with(const std::string& text) const {
        return std::count_if(rows_.begin(), rows_.end(),
                             [&](const std::string& row) { return row.starts_with(text); });
    }
    // All rows, for the reader of a failure.
    std::string text() const {
        std::string all;
        for (const std::string& row : rows_)
            all += row + '\n';
        return all;
    }

private:
    void feed() {
        if (++row_ < rows_.size())
            return;
        rows_.erase(rows_.begin());
        rows_.emplace_back();
        --row_;
    }

    void end_sequence(char c) {
        const std::size_t number = std::strtoul(sequence_.c_str() + 2, nullptr, 10);
        const std::size_t count = std::max<std::size_t>(number, 1);
        sequence_.clear();
        if (c == 'A')
            row_ -= std::min(row_, count);
        else if (c == 'B')
            row_ = std::min(row_ + count, rows_.size() - 1);
        else if (c == 'C')
            column_ = std::min(column_ + count, columns_ - 1);
        else if (c == 'D')
            column_ -= std::min(column_, count);
        if ((c == 'J' || c == 'K') && number == 0) {
            rows_[row_].resize(std::min(rows_[row_].size(), column_));
            if (c == 'J')
                std::fill(rows_.begin() + static_cast<std::ptrdiff_t>(row_) + 1, rows_.end(), std::string());
        }
    }

    std::vector<std::string> rows_;
    std::size_t columns_ = 0;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::string sequence_; // a control sequence, as far as it came
};

} // namespace test
