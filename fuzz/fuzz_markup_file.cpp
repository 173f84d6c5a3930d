// Any bytes as a document's file, which is loaded, saved and loaded again: what nothing was lost of comes
// back as it was.
#include "module/engines/MarkupDoc.h"
#include "sys/folders.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

void read_as_file(std::string_view bytes) {
    static const std::string place = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
    static const std::filesystem::path file = place + "/zef-fuzz-markup-" + std::to_string(::getpid());
    const std::wstring name = sys::from_path(file);
    std::ofstream(file, std::ios::binary) << bytes;
    MarkupDoc doc;
    doc.LoadFile(name.c_str());
    insist(!doc.GetErrorText().empty());
    const std::wstring loaded = doc.GetResult();
    const std::wstring text(doc.GetDocumentText());
    insist(text.find(L'\0') == text.npos);
    insist(doc.SaveFile(name.c_str()));
    const std::wstring saved = doc.GetResult();
    MarkupDoc again;
    again.LoadFile(name.c_str());
    std::filesystem::remove(file);
    const auto has = [](const std::wstring& result, const wchar_t* record) {
        return result.find(record) != result.npos;
    };
    // Characters that steer a page's own state, and marks that are text, do not come back as they went.
    const bool is_plain = text.find_first_of(L"\x0E\x0F\x1B\xFEFF+~") == text.npos;
    if (is_plain && !has(loaded, L"conversion_loss") && !has(saved, L"conversion_loss"))
        insist(again.GetDocumentText() == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    read_as_file({reinterpret_cast<const char*>(data), size});
    return 0;
}
