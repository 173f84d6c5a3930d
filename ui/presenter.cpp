#include "ui/presenter.h"

#include <utility>

namespace ui {

namespace {

presenter* the_presenter = nullptr;

} // namespace

presenter::~presenter() = default;

presenter* set_presenter(presenter* shows) {
    return std::exchange(the_presenter, shows);
}

bool run(dialog& shown) {
    return the_presenter != nullptr && the_presenter->run(shown);
}

void tell(std::wstring_view message) {
    if (the_presenter != nullptr)
        the_presenter->tell(message);
}

} // namespace ui
