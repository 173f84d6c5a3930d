#include "host/picture/drawn_images.h"

#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/xref/named_file.h"
#include "host/dxf/group_list.h"
#include "sys/folders.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace picture {

namespace {

constexpr dxf::group_place image_place{"AcDbRasterImage"};
constexpr int neutral = 50; // of brightness and contrast, in percent

int percents(const AcDbRasterImage& image, int code, int missing) {
    return static_cast<int>(
        std::clamp<std::int64_t>(image.imp().groups().integer(image_place, code).value_or(missing), 0, 100));
}

// Every value of a colour's part, brighter, with more contrast, and faded.
void adjust(sys::image_dots& dots, int brightness, int contrast, int fade, unsigned char background) {
    std::array<std::uint8_t, 256> become{};
    for (std::size_t value = 0; value < become.size(); ++value) {
        constexpr double most = 255.0;
        constexpr double all = 100.0;
        const double part = (static_cast<double>(value) / most - 0.5) * contrast / neutral + 0.5 +
                            static_cast<double>(brightness - neutral) / neutral;
        const double faded = std::clamp(part, 0.0, 1.0) * (1.0 - fade / all) + background / most * fade / all;
        become[value] = static_cast<std::uint8_t>(std::lround(faded * most));
    }
    for (std::size_t i = 0; i < dots.bytes.size(); ++i)
        if (i % 4 != 3)
            dots.bytes[i] = become[dots.bytes[i]];
}

} // namespace

std::wstring drawn_images::path_of(const AcDbRasterImage& image) {
    const AcDbImpDatabase* const drawing = image.imp().database;
    if (drawing == nullptr)
        return {};
    const dxf::record_id definition = drawing->records().find(image.imp().groups().handle(image_place, 340));
    if (definition == dxf::no_record || drawing->records().gone(definition))
        return {};
    const dxf::group_list groups(drawing->records().text(definition));
    return drawing->drawing().codec().decode(
        dxf::trimmed(groups.text({"AcDbRasterImageDef"}, 1).value_or("")));
}

std::shared_ptr<const sys::image_dots> drawn_images::of(const AcDbRasterImage& image,
                                                        unsigned char background) {
    AcDbImpDatabase* const drawing = image.imp().database;
    const std::wstring path = path_of(image);
    if (drawing == nullptr || path.empty())
        return nullptr;
    const int brightness = percents(image, 281, neutral);
    const int contrast = percents(image, 282, neutral);
    const int fade = percents(image, 283, 0);
    const bool plain = brightness == neutral && contrast == neutral && fade == 0;
    const auto [at, fresh] =
        known_.try_emplace({drawing, path, brightness, contrast, fade, plain ? 0 : background});
    if (!fresh)
        return at->second;
    if (plain) {
        at->second = read(*drawing, path);
        return at->second;
    }
    const auto [original, unread] = known_.try_emplace({drawing, path, neutral, neutral, 0, 0});
    if (unread)
        original->second = read(*drawing, path);
    if (original->second != nullptr) {
        auto changed = std::make_shared<sys::image_dots>(*original->second);
        adjust(*changed, brightness, contrast, fade, background);
        at->second = std::move(changed);
    }
    return at->second;
}

std::shared_ptr<const sys::image_dots> drawn_images::read(AcDbImpDatabase& drawing,
                                                          const std::wstring& path) {
    const bool is_name = std::none_of(path.begin(), path.end(), [](wchar_t c) { return c < 32; });
    const std::filesystem::path file =
        is_name ? db::find_beside(sys::to_path(drawing.file_name).parent_path(), path,
                                  [](const std::filesystem::path& name) { return std::vector{name}; })
                : std::filesystem::path();
    if (file.empty()) {
        lacking_.try_emplace(path, L"it is not here");
        return nullptr;
    }
    auto dots = sys::read_image(file);
    if (dots)
        return *std::move(dots);
    lacking_.try_emplace(path, dots.error());
    return nullptr;
}

std::vector<std::wstring> drawn_images::told() const {
    std::vector<std::wstring> lines;
    for (const auto& [path, why] : lacking_)
        lines.emplace_back(path).append(L": ").append(why);
    return lines;
}

} // namespace picture
