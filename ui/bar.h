// A dockable bar as data: buttons, and rows of buttons in pages, for whoever shows it. It stays while the
// user works, and what it does is done at a press.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ui {

struct bar_button {
    int id = 0; // one of its kind on the bar
    std::wstring label = {};
    std::wstring icon = {};  // its name among the application's pictures; empty for none
    std::wstring state = {}; // what the picture tells, in words; empty for a button that has no state
};

// One column of buttons in the rows: what stands above it, and the word that means it in an answer as the
// name does.
struct bar_column {
    std::wstring name;
    std::wstring word;
};

struct bar_row {
    bar_button name; // which can be pressed, too
    std::vector<bar_button> buttons;
};

struct bar_content {
    std::wstring title;
    bool enabled = true;                         // whether anything of it can be pressed
    std::vector<std::vector<bar_button>> groups; // what belongs together stands in a line
    bar_column row_names;                        // what stands above the rows' names
    std::vector<bar_column> columns;
    std::vector<bar_row> rows;  // of all pages
    std::size_t first_row = 0;  // of the page that is shown
    std::size_t rows_shown = 0; // on it
    std::size_t page = 1;
    std::size_t pages = 1;
    std::vector<bar_button> paging;
};

// What an application has shown. It may not know who shows it.
class bar {
public:
    bar() = default;
    bar(const bar&) = delete;
    bar& operator=(const bar&) = delete;
    virtual ~bar();

    // All of it as it is now.
    virtual bar_content content() const = 0;
    // The user presses a button, also one of a row on another page. An identifier that no button has is
    // passed over.
    virtual void press(int id) = 0;
};

} // namespace ui
