#include "host/ed/message_filters.h"

#include "host/ed/coordinates.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"
#include "host/ed/view.h"
#include "rxmfcapi.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ed {

namespace {

constexpr UINT left_button_down = 513;
constexpr UINT left_button_up = 514;

std::vector<AcedFilterWinMsgFn>& filters() {
    static std::vector<AcedFilterWinMsgFn> all;
    return all;
}

// The newest filter first. It may take itself or others away meanwhile.
bool passes(MSG message) {
    const std::vector<AcedFilterWinMsgFn> present = filters();
    for (auto filter = present.rbegin(); filter != present.rend(); ++filter)
        if (std::find(filters().begin(), filters().end(), *filter) != filters().end() && (*filter)(&message))
            return false;
    return true;
}

} // namespace

bool click(const AcGePoint3d& point) {
    if (filters().empty())
        return true;
    MSG message{};
    // Where on a screen of the size that SCREENSIZE has the view would show it, from the upper left corner.
    if (AcDbImpDatabase* const database = selected_drawing()) {
        const AcGePoint3d size = variable<AcGePoint3d>(L"SCREENSIZE");
        const view seen = current_view(*database);
        const AcGePoint3d at = to_world(point);
        const double scale = size.y / seen.height;
        const auto pixel = [](double value) {
            return static_cast<LONG>(std::lround(std::clamp(value, -32768.0, 32767.0)));
        };
        message.pt.x = pixel(size.x / 2.0 + (at.x - seen.center.x) * scale);
        message.pt.y = pixel(size.y / 2.0 - (at.y - seen.center.y) * scale);
        message.lParam = static_cast<LPARAM>((static_cast<DWORD>(message.pt.y) & 0xFFFFu) << 16 |
                                             (static_cast<DWORD>(message.pt.x) & 0xFFFFu));
    }
    message.message = left_button_down;
    if (!passes(message))
        return false;
    message.message = left_button_up;
    passes(message);
    return true;
}

} // namespace ed

BOOL acedRegisterFilterWinMsg(const AcedFilterWinMsgFn filter) {
    auto& all = ed::filters();
    if (filter == nullptr || std::find(all.begin(), all.end(), filter) != all.end())
        return FALSE;
    all.push_back(filter);
    return TRUE;
}

BOOL acedRemoveFilterWinMsg(const AcedFilterWinMsgFn filter) {
    return std::erase(ed::filters(), filter) != 0 ? TRUE : FALSE;
}
