// Shows dialogs on the command line.
//
// A dialog's title, fields and lines are printed, and answers are asked for like those of any prompt: "2",
// "1,3", "2-5" and "*" check lines, by numbers that count through the whole dialog, "PIPE-*" by what stands
// in their first column; the same behind "-" uncheck them; NAME=VALUE fills a field; OK or Enter accepts,
// CANCEL or Escape does not.
#pragma once

#include "adesk.h"
#include "ui/presenter.h"

namespace ed {

class ACCORE_PORT console_dialogs final : public ui::presenter {
public:
    // An answer that is none is refused as at a prompt; a run that stops there, or whose input ends, cancels.
    bool run(ui::dialog& shown) override;
    // Waits for nothing.
    void tell(std::wstring_view message) override;
    // host/ed/console_bars.h
    void show(ui::bar& shown) override;
    void hide(ui::bar& shown) override;
};

} // namespace ed
