// What users say of pictures: formats, papers, scales.
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/picture/picture.h"

namespace picture {

namespace {

struct named_paper {
    std::wstring_view name;
    double width;
    double height;
};

// Source: ISO 216.
constexpr named_paper papers[] = {
    {L"a4", 297.0, 210.0}, {L"a3", 420.0, 297.0},  {L"a2", 594.0, 420.0},
    {L"a1", 841.0, 594.0}, {L"a0", 1189.0, 841.0},
};

// A number above nought that is all of a text.
std::optional<double> size_in(std::wstring_view text) {
    const auto number = base::parse_real(base::narrow(text));
    return number && *number > 0.0 ? number : std::nullopt;
}

} // namespace

base::result<sys::paper_format> format_of_file(std::wstring_view file) {
    const std::wstring name = base::folded(file);
    if (name.ends_with(L".png"))
        return sys::paper_format::png;
    if (name.ends_with(L".svg"))
        return sys::paper_format::svg;
    if (name.ends_with(L".pdf"))
        return sys::paper_format::pdf;
    return base::failure{L"'" + std::wstring(file) +
                         L"' is no name of a picture: pictures end with .png, .svg or .pdf"};
}

std::optional<std::pair<double, double>> paper_named(std::wstring_view text) {
    std::wstring name = base::folded(text);
    const bool upright = name.size() > 2 && name.back() == L'v';
    if (upright)
        name.pop_back();
    for (const named_paper& paper : papers)
        if (name == paper.name)
            return upright ? std::pair(paper.height, paper.width) : std::pair(paper.width, paper.height);
    const std::size_t middle = name.find(L'x');
    if (upright || middle == name.npos)
        return std::nullopt;
    const auto width = size_in(std::wstring_view(name).substr(0, middle));
    const auto height = size_in(std::wstring_view(name).substr(middle + 1));
    constexpr double most = 10'000.0; // ten metres
    if (!width || !height || *width > most || *height > most)
        return std::nullopt;
    return std::pair(*width, *height);
}

std::optional<double> scale_named(std::wstring_view text) {
    const std::size_t middle = text.find(L':');
    if (middle == text.npos)
        return size_in(text);
    const auto paper = size_in(text.substr(0, middle));
    const auto drawing = size_in(text.substr(middle + 1));
    if (!paper || !drawing)
        return std::nullopt;
    return *paper / *drawing;
}

} // namespace picture
