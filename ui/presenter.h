// Who shows dialogs and messages to the user: a console, a window. The host says who it is; who has something
// to show does not know.
#pragma once

#include "ui/dialog.h"

#include <string_view>

namespace ui {

class presenter {
public:
    presenter() = default;
    presenter(const presenter&) = delete;
    presenter& operator=(const presenter&) = delete;
    virtual ~presenter();

    // As the functions below.
    virtual bool run(dialog& shown) = 0;
    virtual void tell(std::wstring_view message) = 0;
};

// Makes another one show everything, null for none. Gives the one before. It stays the caller's.
presenter* set_presenter(presenter* shows);

// Shows a dialog until the user ends it. True for OK: `shown` has what the user filled in and checked. False
// for Cancel and when nobody shows dialogs: then it is as it was.
bool run(dialog& shown);

// Shows a message in a box of its own.
void tell(std::wstring_view message);

} // namespace ui
