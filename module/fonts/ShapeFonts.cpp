#include "module/fonts/ShapeFonts.h"

#include "module/standard/Names.h"
#include "sys/file_reader.h"
#include "sys/folders.h"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace {

namespace fs = std::filesystem;

enum class Kind { kNone, kShapeFont, kBigFont };

// Told by the word that begins at offset 11 of the file's first line.
Kind KindOf(const fs::path& file) {
    constexpr std::size_t headSize = 16;
    constexpr std::size_t wordAt = 11;
    char head[headSize] = {};
    auto reader = sys::file_reader::open(file);
    const auto size = reader ? reader->read(head, headSize) : base::result<std::size_t>(std::size_t{0});
    if (!size || *size < headSize)
        return Kind::kNone;
    const std::wstring word(head + wordAt, head + headSize);
    if (IsSameName(std::wstring_view(word), L"shape") || IsSameName(std::wstring_view(word), L"unifo"))
        return Kind::kShapeFont;
    return IsSameName(std::wstring_view(word), L"bigfo") ? Kind::kBigFont : Kind::kNone;
}

// In the order of their names, so that the list does not depend on that of the folder.
std::vector<fs::path> FontFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (IsSameName(std::wstring_view(sys::from_path(at->path().extension())), L".shx"))
            files.push_back(at->path());
    std::ranges::sort(files);
    return files;
}

void AddFont(std::vector<CString>& fonts, const CString& fileName) {
    const bool isThere =
        std::ranges::any_of(fonts, [&](const CString& font) { return IsSameName(font, fileName); });
    if (!isThere)
        fonts.push_back(fileName);
}

void CutAndSort(std::vector<CString>& fonts) {
    for (CString& font : fonts)
        font = font.Left(font.Find(L'.'));
    std::ranges::sort(fonts, KeyOrder());
}

} // namespace

ShapeFonts ListShapeFonts(const std::vector<CString>& folders) {
    ShapeFonts fonts;
    for (const CString& folder : folders)
        for (const fs::path& file : FontFiles(sys::to_path(ViewOf(folder)))) {
            const CString name = sys::from_path(file.filename()).c_str();
            const Kind kind = KindOf(file);
            if (kind != Kind::kNone)
                AddFont(kind == Kind::kBigFont ? fonts.m_bigFonts : fonts.m_shapeFonts, name);
        }
    CutAndSort(fonts.m_shapeFonts);
    CutAndSort(fonts.m_bigFonts);
    return fonts;
}
