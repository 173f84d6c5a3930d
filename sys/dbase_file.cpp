#include "sys/dbase_file.h"

#include "base/case_fold.h"
#include "sys/atomic_file.h"
#include "sys/code_page.h"
#include "sys/file.h"
#include "sys/folders.h"

#include <system_error>

namespace sys {

namespace fs = std::filesystem;

namespace {

// The memo file that lies beside the table, or the name that it would have.
fs::path memo_path(const fs::path& table, base::dbase_memo_form form) {
    const std::wstring suffix = from_path(table.extension());
    const bool upper = suffix.find(L'D') != suffix.npos;
    fs::path path = table;
    if (form == base::dbase_memo_form::foxpro)
        path.replace_extension(upper ? "FPT" : "fpt");
    else
        path.replace_extension(upper ? "DBT" : "dbt");
    std::error_code error;
    if (fs::exists(path, error))
        return path;
    const std::wstring name = from_path(path.filename());
    const fs::path folder = table.has_parent_path() ? table.parent_path() : fs::path(".");
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        if (base::equal_no_case(from_path(at->path().filename()), name))
            return at->path();
    }
    return path;
}

base::result<void> write_whole(const fs::path& path, std::string_view bytes) {
    auto file = atomic_file::create(path);
    if (!file)
        return file.why();
    if (auto written = file->write(bytes); !written)
        return written;
    return file->commit();
}

} // namespace

base::result<base::dbase_encoding> dbase_encoding_of(int number) {
    const code_page* const page = code_page::find(number);
    if (page == nullptr)
        return base::failure{L"code page " + std::to_wstring(number) + L" is not known here"};
    return base::dbase_encoding{[page](std::string_view bytes) { return page->decode(bytes); },
                                [page](char32_t c, std::string& out) { return page->encode(c, out); }};
}

base::result<base::dbase_table> read_dbase(const fs::path& path, int page) {
    const auto cannot_read = [&path](const std::wstring& why) {
        return base::failure{L"cannot read '" + from_path(path) + L"': " + why};
    };
    const auto table = read_file(path);
    if (!table)
        return table.why();
    if (page == 0)
        page = base::code_page_of_dbase(table->view());
    auto encoding = dbase_encoding_of(page != 0 ? page : ansi_code_page());
    if (!encoding)
        return cannot_read(encoding.error());
    std::optional<std::string> memo;
    if (const auto form = base::memo_form_of_dbase(table->view()); form != base::dbase_memo_form::none) {
        const fs::path beside = memo_path(path, form);
        std::error_code error;
        if (fs::exists(beside, error)) {
            const auto bytes = read_file(beside);
            if (!bytes)
                return bytes.why();
            memo = std::string(bytes->view());
        }
    }
    auto parsed = base::dbase_table::parse(std::string(table->view()), std::move(memo), *std::move(encoding));
    if (!parsed)
        return cannot_read(parsed.error());
    return parsed;
}

base::result<void> write_dbase(const base::dbase_table& table, const fs::path& path) {
    if (const std::string* const memo = table.memo_bytes()) {
        if (auto written = write_whole(memo_path(path, table.memo_form()), *memo); !written)
            return written;
    }
    return write_whole(path, table.bytes());
}

} // namespace sys
