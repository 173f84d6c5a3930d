#include "host/db/tables/shape_files.h"

#include "acgi.h"
#include "base/case_fold.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/support_path.h"
#include "sys/file.h"
#include "sys/folders.h"

namespace db {

namespace {

constexpr std::uintmax_t largest = 64U << 20; // of a file that is read

std::filesystem::path found_file(const std::wstring& name, const AcDbImpDatabase& database) {
    std::filesystem::path file = find_support_file(name, &database);
    if (file.empty())
        file = sys::find_without_case(sys::system_folder() / "fonts", sys::to_path(name));
    return file;
}

// The code page of a big font: Japanese, traditional Chinese and Korean ones have names of their own.
int page_of(std::wstring_view file) {
    constexpr std::pair<std::wstring_view, int> pages[] = {
        {L"extfont", 932}, {L"bigfont", 932}, {L"@extfont", 932}, {L"chineset", 950},
        {L"whg", 949},     {L"whtgtxt", 949}, {L"whtmtxt", 949},
    };
    const std::wstring name = base::folded(file);
    for (const auto& [begin, page] : pages)
        if (name.starts_with(begin))
            return page;
    constexpr int simplified_chinese = 936;
    return simplified_chinese;
}

} // namespace

std::shared_ptr<const gi::shape_font> shape_files::of(std::wstring_view name) {
    const std::size_t folder = name.find_last_of(L"/\\:");
    std::wstring file(name.substr(folder == name.npos ? 0 : folder + 1));
    if (file.empty())
        return nullptr;
    if (!base::folded(file).ends_with(L".shx"))
        file += L".shx";
    const auto [at, fresh] = known_.try_emplace(base::folded(file));
    if (!fresh)
        return at->second;
    const std::filesystem::path path = found_file(file, database_);
    std::error_code error;
    if (path.empty() || std::filesystem::file_size(path, error) > largest || error)
        return nullptr;
    if (const auto bytes = sys::read_file(path))
        if (auto font = gi::shape_font::read(std::string(bytes->view())))
            at->second = *std::move(font);
    return at->second;
}

void shape_files::complete(AcGiTextStyle& style) {
    const gi::font& font = style.imp();
    if (font.hand == gi::font_hand::outline || font.shapes != nullptr || font.big_shapes != nullptr)
        return;
    auto shapes = of(font.file);
    auto big = of(font.big_font);
    if (shapes == nullptr && big == nullptr)
        return;
    auto complete = std::make_shared<gi::font>(font);
    complete->shapes = std::move(shapes);
    complete->big_shapes = std::move(big);
    complete->big_page = page_of(font.big_font);
    style.setImp(std::move(complete));
}

void complete_fonts(AcDbImpDatabase* database, AcGiTextStyle& style) {
    if (database != nullptr)
        database->part<shape_files>().complete(style);
}

} // namespace db
