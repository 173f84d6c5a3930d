#include "module/engines/MarkupWriter.h"

#include "base/utf.h"
#include "module/engines/DeclaredEncoding.h"
#include "module/engines/EncodingNames.h"
#include "sys/atomic_file.h"
#include "sys/folders.h"
#include "sys/text_stream.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

// A text that is written piece by piece.
class Writer {
public:
    Writer(sys::text_stream& stream, sys::atomic_file& file)
        : m_stream(stream), m_file(file), m_bytes((markupBlockSize + 2) * sys::text_stream::longest) {}

    bool WriteBytes(std::string_view bytes) {
        m_length += bytes.size();
        return bool(m_file.write(bytes));
    }

    bool WriteText(std::wstring_view text) {
        while (!text.empty()) {
            std::size_t size = std::min(text.size(), markupBlockSize);
            // A pair of surrogates stays together.
            if (size < text.size() && (static_cast<char32_t>(text[size - 1]) & ~0x3FFu) == 0xD800)
                ++size;
            const auto done = m_stream.encode(text.substr(0, size), m_bytes.data());
            text.remove_prefix(done.units);
            if (!WriteBytes({m_bytes.data(), done.bytes}) || (done.units < size && !WriteReference(text)))
                return false;
        }
        return WriteBytes({m_bytes.data(), m_stream.finish(m_bytes.data())});
    }

    std::size_t GetLength() const { return m_length; }
    bool HasLost() const { return m_hasLost; }

private:
    // Writes the character at the front, which the encoding lacks, as a reference.
    bool WriteReference(std::wstring_view& text) {
        m_hasLost = true;
        std::size_t size = 0;
        const char32_t character = base::take_code_point(text, size);
        text.remove_prefix(size);
        const std::wstring reference = L"&#" + std::to_wstring(static_cast<std::uint32_t>(character)) + L";";
        const auto done = m_stream.encode(reference, m_bytes.data());
        return WriteBytes({m_bytes.data(), done.bytes});
    }

    sys::text_stream& m_stream;
    sys::atomic_file& m_file;
    std::vector<char> m_bytes;
    std::size_t m_length = 0;
    bool m_hasLost = false;
};

// The mark that a file in this encoding begins with; empty when it has none. By their definition the names
// that tell the order do without.
std::string_view GetMark(const MarkupEncoding& declared, bool hadMark) {
    const bool tellsOrder = declared.name.ends_with(L"LE") || declared.name.ends_with(L"le") ||
                            declared.name.ends_with(L"BE") || declared.name.ends_with(L"be");
    if (!hadMark && (!declared.IsWide() || tellsOrder))
        return {};
    for (const MarkupMark& mark : markupMarks)
        if (mark.page == declared.page)
            return mark.bytes;
    return {};
}

} // namespace

bool WriteMarkupFile(std::wstring_view path, std::wstring_view text, MarkupFileForm form,
                     MarkupResult& result) {
    MarkupEncoding encoding;
    encoding.name = GetDeclaredEncoding(text.substr(0, markupBlockSize));
    encoding.page = GetCodePageOfName(encoding.name);
    if (form.isBigEndian && encoding.page == MarkupEncoding::utf16)
        encoding.page = MarkupEncoding::utf16Big;
    if (form.isBigEndian && encoding.page == MarkupEncoding::utf32)
        encoding.page = MarkupEncoding::utf32Big;
    auto stream = encoding.page != 0 ? sys::text_stream::open(encoding.page) : nullptr;
    if (stream == nullptr) {
        encoding = {L"UTF-8", MarkupEncoding::utf8};
        stream = sys::text_stream::open(encoding.page);
    }

    auto file = sys::atomic_file::create(sys::to_path(path));
    if (!file) {
        result.Add(MarkupEvent::FileError);
        return false;
    }
    Writer writer(*stream, *file);
    const std::string_view mark = GetMark(encoding, form.hasMark);
    if (!writer.WriteBytes(mark) || !writer.WriteText(text) || !file->commit()) {
        result.Add(MarkupEvent::FileError);
        return false;
    }
    if (!mark.empty())
        result.Add(MarkupEvent::ByteOrderMark);
    result.Add(MarkupEvent::Write, encoding.name, writer.GetLength());
    if (encoding.IsBigEndian())
        result.Add(MarkupEvent::EndianSwap);
    if (!encoding.IsWide())
        result.Add(MarkupEvent::ConvertedTo, encoding.name);
    if (writer.HasLost())
        result.Add(MarkupEvent::ConversionLoss);
    return true;
}
