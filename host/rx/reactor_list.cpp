#include "host/rx/reactor_list.h"

namespace rx {

int& reactors_running() {
    static int running = 0;
    return running;
}

std::function<void(std::string_view)>& on_reactor_failure() {
    static std::function<void(std::string_view)> hears;
    return hears;
}

} // namespace rx
