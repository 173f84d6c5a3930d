// Who shows dialogs, bars and messages to the user: a console, a window. The host says who it is; who has
// something to show does not know.
#pragma once

#include "ui/bar.h"
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
    // Nothing happens by default: who has no place for bars needs none of these.
    virtual void show(bar& shown);
    virtual void refresh(bar& shown);
    virtual void hide(bar& shown);
};

// Makes another one show everything, null for none. Gives the one before. It stays the caller's.
presenter* set_presenter(presenter* shows);

// Shows a dialog until the user ends it. True for OK: `shown` has what the user filled in and checked. False
// for Cancel and when nobody shows dialogs: then it is as it was.
bool run(dialog& shown);

// Shows a message in a box of its own.
void tell(std::wstring_view message);

// Shows a bar, which stays its owner's, until it is hidden; brings one that is there to the user's eyes.
void show(bar& shown);
// The bar's content has changed.
void refresh(bar& shown);
// Takes a bar away, also one that is not shown. Its owner does so before it goes.
void hide(bar& shown);

} // namespace ui
