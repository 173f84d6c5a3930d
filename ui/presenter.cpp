#include "ui/presenter.h"

#include <utility>

namespace ui {

namespace {

presenter* the_presenter = nullptr;

} // namespace

presenter::~presenter() = default;

void presenter::show(bar&) {
}

void presenter::refresh(bar&) {
}

void presenter::hide(bar&) {
}

bar::~bar() = default;

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

void show(bar& shown) {
    if (the_presenter != nullptr)
        the_presenter->show(shown);
}

void refresh(bar& shown) {
    if (the_presenter != nullptr)
        the_presenter->refresh(shown);
}

void hide(bar& shown) {
    if (the_presenter != nullptr)
        the_presenter->hide(shown);
}

} // namespace ui
