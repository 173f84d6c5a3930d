#include "host/gi/font.h"

#include "sys/code_page.h"

namespace gi {

namespace {

// What older fonts have at numbers of their own: degrees, plus or minus, a diameter. Source: the editor's
// codes %%d, %%p and %%c, which mean the numbers 127 to 129.
constexpr std::pair<wchar_t, unsigned> own_numbers[] = {{L'\xB0', 127}, {L'\xB1', 128}, {L'\xD8', 129}};
constexpr wchar_t after_ascii = 128;

drawn_letter in_file(const std::shared_ptr<const shape_font>& file, unsigned number) {
    if (file == nullptr || !(file->height() > 0.0))
        return {};
    return {file->find(number), 1.0 / file->height()};
}

} // namespace

drawn_letter letter_of(const font& font, wchar_t sign) {
    const auto number = static_cast<char32_t>(sign);
    if (sign >= after_ascii && font.big_shapes != nullptr) {
        std::string bytes;
        const sys::code_page* const page = sys::code_page::find(font.big_page);
        if (page != nullptr && page->encode(static_cast<char32_t>(sign), bytes) && bytes.size() == 2) {
            const auto lead = static_cast<unsigned char>(bytes[0]);
            const auto trail = static_cast<unsigned char>(bytes[1]);
            if (const drawn_letter big = in_file(font.big_shapes, lead * 256U + trail);
                big.strokes != nullptr)
                return big;
        }
    }
    if (font.shapes == nullptr)
        return {};
    for (const auto& [own, at] : own_numbers)
        if (own == sign && !font.shapes->is_unicode())
            return in_file(font.shapes, at);
    if (sign >= after_ascii && !font.shapes->is_unicode())
        return {};
    return in_file(font.shapes, number);
}

} // namespace gi
