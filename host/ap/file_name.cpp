#include "host/ap/file_name.h"

#include "base/case_fold.h"

#include <algorithm>

namespace ap {

namespace {

bool is_letter(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool is_ending(std::wstring_view text) {
    return text.size() >= 2 && text.size() <= 4 && is_letter(text.front()) &&
           std::all_of(text.begin(), text.end(),
                       [](wchar_t c) { return is_letter(c) || (c >= L'0' && c <= L'9'); });
}

} // namespace

base::result<std::wstring> drawing_file_name(const std::wstring& typed) {
    const std::wstring_view name = std::wstring_view(typed).substr(typed.find_last_of(L"/\\") + 1);
    const std::size_t point = name.rfind(L'.');
    const std::wstring_view ending =
        point != name.npos && point != 0 ? name.substr(point + 1) : std::wstring_view();
    if (name.empty() || name == L"." || name == L"..")
        return base::failure{L"'" + typed + L"' is no name of a file"};
    if (base::equal_no_case(ending, L"dxf"))
        return typed;
    if (is_ending(ending))
        return base::failure{L"'" + typed + L"': files ." + std::wstring(ending) +
                             L" are not written here; drawings are saved as .dxf"};
    return typed + L".dxf";
}

} // namespace ap
