#include "sys/plain_text.h"

#include "base/utf.h"
#include "sys/code_page.h"
#include "sys/text_stream.h"

#include <algorithm>
#include <vector>

namespace sys {

namespace {

constexpr std::pair<std::string_view, int> marks[] = {
    {"\xEF\xBB\xBF", text_form::utf8}, {"\xFF\xFE", 1200}, {"\xFE\xFF", 1201}};

text_form form_of(std::string_view bytes) {
    for (const auto& [mark, page] : marks)
        if (bytes.starts_with(mark))
            return {page, std::string(mark)};
    return {base::is_utf8(bytes) ? text_form::utf8 : ansi_code_page(), {}};
}

} // namespace

std::wstring plain_text(std::string_view bytes) {
    const text_form form = form_of(bytes);
    bytes.remove_prefix(form.mark.size());
    if (form.page == text_form::utf8)
        return base::widen(bytes);
    if (form.mark.empty()) {
        const code_page* const page = code_page::find(form.page);
        return page != nullptr ? page->decode(bytes) : base::widen(bytes);
    }
    std::wstring text(bytes.size(), L'\0');
    text.resize(text_stream::open(form.page)->decode(bytes, text.data()).units);
    return text;
}

bool next_line(std::wstring_view text, std::size_t& at, std::wstring_view& line) {
    if (at >= text.size())
        return false;
    const std::size_t end = std::min(text.find(L'\n', at), text.size());
    line = text.substr(at, end - at);
    at = end + 1;
    if (!line.empty() && line.back() == L'\r')
        line.remove_suffix(1);
    return true;
}

std::optional<std::string> utf8_of(std::string_view bytes, text_form& form) {
    form = form_of(bytes);
    bytes.remove_prefix(form.mark.size());
    if (form.page == text_form::utf8)
        return base::is_utf8(bytes) ? std::optional<std::string>(bytes) : std::nullopt;
    const auto stream = text_stream::open(form.page);
    if (stream == nullptr)
        return std::nullopt;
    std::wstring text(bytes.size(), L'\0');
    const auto done = stream->decode(bytes, text.data());
    if (done.bytes < bytes.size() || done.lost > 0)
        return std::nullopt;
    text.resize(done.units);
    return base::narrow(text);
}

std::optional<std::string> bytes_of(std::string_view utf8, const text_form& form) {
    if (form.page == text_form::utf8)
        return form.mark + std::string(utf8);
    const auto stream = text_stream::open(form.page);
    const std::wstring text = base::widen(utf8);
    if (stream == nullptr)
        return std::nullopt;
    std::vector<char> bytes((text.size() + 1) * text_stream::longest);
    const auto done = stream->encode(text, bytes.data());
    if (done.units < text.size())
        return std::nullopt;
    return form.mark + std::string(bytes.data(), done.bytes);
}

} // namespace sys
