#include "module/engines/MarkupFile.h"

#include "base/utf.h"
#include "module/engines/DeclaredEncoding.h"
#include "module/engines/EncodingNames.h"
#include "sys/atomic_file.h"
#include "sys/file_reader.h"
#include "sys/folders.h"
#include "sys/memory.h"
#include "sys/text_stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t blockSize = 16384;

constexpr int utf8 = 65001;
constexpr int utf16 = 1200;
constexpr int utf16Big = 1201;
constexpr int utf32 = 12000;
constexpr int utf32Big = 12001;

struct ByteOrderMark {
    std::string_view bytes;
    int page;
    const wchar_t* name;
};

constexpr ByteOrderMark marks[] = {
    {"\xEF\xBB\xBF", utf8, L"UTF-8"}, {"\xFF\xFE", utf16, L"UTF-16LE"}, {"\xFE\xFF", utf16Big, L"UTF-16BE"}};

// An encoding by its name, and the page that is meant; 0 when it is none that is known.
struct Encoding {
    std::wstring name;
    int page = 0;
};

bool IsBigEndian(int page) {
    return page == utf16Big || page == utf32Big;
}

// Whether characters have two or four bytes throughout.
bool IsWide(int page) {
    return page == utf16 || page == utf16Big || page == utf32 || page == utf32Big;
}

// The wide page that a text in markup is in, by where the noughts are around its first `<`; 0 when there are
// none.
int GetWidePage(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\0\0\0<"sv))
        return utf32Big;
    if (bytes.starts_with("<\0\0\0"sv))
        return utf32;
    if (bytes.starts_with("\0<"sv))
        return utf16Big;
    return bytes.starts_with("<\0"sv) ? utf16 : 0;
}

// What the front of the bytes declares. A wide page counts only where the bytes are wide: who could read the
// declaration without that knows better.
Encoding FindDeclared(std::string_view bytes) {
    WideText front;
    wchar_t* to = front.Extend(blockSize);
    std::size_t size = 0;
    for (const char byte : bytes.substr(0, blockSize))
        if (byte != '\0')
            to[size++] = static_cast<wchar_t>(static_cast<unsigned char>(byte));
    front.SetSize(size);
    Encoding declared;
    declared.name = GetDeclaredEncoding(front.GetView());
    declared.page = GetCodePageOfName(declared.name);
    if (IsWide(declared.page))
        declared.page = GetWidePage(bytes);
    return declared;
}

// The bytes of a file in blocks. What is not taken of a block begins the next one.
class Source {
public:
    explicit Source(sys::file_reader& file) : m_file(file) {}

    // Bytes of the file, a block of them if there are as many; none at the end and when reading failed.
    std::string_view GetBlock() {
        if (m_end - m_begin < blockSize && !m_isAtEnd) {
            std::memmove(m_bytes.data(), m_bytes.data() + m_begin, m_end - m_begin);
            m_end -= m_begin;
            m_begin = 0;
            const std::size_t wanted = blockSize - m_end;
            const auto count = m_file.read(m_bytes.data() + m_end, wanted);
            m_hasFailed = !count;
            m_isAtEnd = !count || *count < wanted;
            m_end += count ? *count : 0;
            m_length += count ? *count : 0;
        }
        return {m_bytes.data() + m_begin, std::min(m_end - m_begin, blockSize)};
    }

    void Take(std::size_t size) { m_begin += size; }

    // Begins anew; false when that cannot be.
    bool Rewind() {
        m_begin = 0;
        m_end = 0;
        m_length = 0;
        m_isAtEnd = false;
        m_hasFailed = !m_file.rewind();
        return !m_hasFailed;
    }

    bool HasFailed() const { return m_hasFailed; }
    std::size_t GetLength() const { return m_length; }
    std::size_t GetExpectedLength() const { return static_cast<std::size_t>(m_file.size()); }

private:
    sys::file_reader& m_file;
    std::array<char, blockSize> m_bytes;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_length = 0;
    bool m_isAtEnd = false;
    bool m_hasFailed = false;
};

struct Decoded {
    WideText text;
    std::size_t nulls = 0;
    std::size_t lost = 0;
    bool isCut = false; // in the middle of a character
};

// With `mustFit` it ends as soon as something cannot be decoded.
Decoded Decode(sys::text_stream& stream, Source& source, bool mustFit) {
    // A text of megabytes is written into new memory; less is likely to be had from what was used before.
    constexpr std::size_t largeText = std::size_t(1) << 22;
    constexpr std::size_t readyUnits = std::size_t(1) << 17;
    Decoded done;
    wchar_t* ready = done.text.Extend(source.GetExpectedLength());
    wchar_t* const end =
        source.GetExpectedLength() >= largeText ? ready + source.GetExpectedLength() : nullptr;
    for (;;) {
        const std::string_view block = source.GetBlock();
        if (block.empty() || (mustFit && (done.lost > 0 || done.isCut)))
            break;
        const std::size_t size = done.text.GetSize();
        wchar_t* const to = done.text.Extend(block.size());
        if (to + block.size() > ready && to + block.size() <= end) {
            ready = std::min(to + readyUnits, end);
            sys::expect_writes(to, static_cast<std::size_t>(ready - to) * sizeof(wchar_t));
        }
        auto taken = stream.decode(block, to);
        if (taken.bytes == 0) {
            // Nothing comes that could end the character.
            const auto byte = static_cast<unsigned char>(block[0]);
            *to = static_cast<wchar_t>(byte >= 0x80 ? 0xDC00 + byte : 0xFFFD);
            taken = {1, 1, 1};
            done.isCut = true;
        }
        source.Take(taken.bytes);
        done.lost += taken.lost;
        if (std::wmemchr(to, L'\0', taken.units) != nullptr) {
            const auto kept = static_cast<std::size_t>(std::remove(to, to + taken.units, L'\0') - to);
            done.nulls += taken.units - kept;
            taken.units = kept;
        }
        done.text.SetSize(size + taken.units);
    }
    done.text.Trim();
    return done;
}

std::unique_ptr<sys::text_stream> Open(const Encoding& encoding) {
    return encoding.page != 0 ? sys::text_stream::open(encoding.page) : nullptr;
}

} // namespace

std::optional<WideText> ReadMarkupFile(std::wstring_view path, MarkupFileForm& form, MarkupResult& result) {
    auto file = sys::file_reader::open(sys::to_path(path));
    const auto fail = [&result] {
        result.Add(MarkupEvent::FileError);
        return std::nullopt;
    };
    if (!file)
        return fail();
    const auto source = std::make_unique<Source>(*file);
    form = {};
    Encoding encoding;
    for (const ByteOrderMark& mark : marks) {
        if (source->GetBlock().starts_with(mark.bytes)) {
            source->Take(mark.bytes.size());
            encoding = {mark.name, mark.page};
            form.hasMark = true;
            break;
        }
    }
    if (!form.hasMark)
        encoding = FindDeclared(source->GetBlock());

    Decoded decoded;
    bool isDetected = false;
    if (auto stream = Open(encoding); stream != nullptr) {
        decoded = Decode(*stream, *source, false);
    } else {
        encoding = {L"UTF-8", utf8};
        decoded = Decode(*Open(encoding), *source, true);
        isDetected = decoded.lost == 0 && !decoded.isCut;
        if (!isDetected && source->Rewind()) {
            encoding = {L"ANSI", sys::ansi_code_page()};
            decoded = Decode(*Open(encoding), *source, false);
        }
    }
    if (source->HasFailed())
        return fail();
    form.isBigEndian = IsBigEndian(encoding.page);

    if (form.hasMark)
        result.Add(MarkupEvent::ByteOrderMark);
    result.Add(MarkupEvent::Read, encoding.name, source->GetLength());
    if (isDetected)
        result.Add(MarkupEvent::Utf8Detection);
    if (form.isBigEndian)
        result.Add(MarkupEvent::EndianSwap);
    if (!IsWide(encoding.page))
        result.Add(MarkupEvent::ConvertedFrom, encoding.name);
    if (decoded.nulls > 0)
        result.Add(MarkupEvent::NullsRemoved, decoded.nulls);
    if (decoded.lost > 0)
        result.Add(MarkupEvent::ConversionLoss);
    if (decoded.isCut)
        result.Add(MarkupEvent::TruncationError, encoding.name);
    return std::move(decoded.text);
}

namespace {

// A text that is written piece by piece.
class Writer {
public:
    Writer(sys::text_stream& stream, sys::atomic_file& file)
        : m_stream(stream), m_file(file), m_bytes((blockSize + 2) * sys::text_stream::longest) {}

    bool WriteBytes(std::string_view bytes) {
        m_length += bytes.size();
        return bool(m_file.write(bytes));
    }

    bool WriteText(std::wstring_view text) {
        while (!text.empty()) {
            std::size_t size = std::min(text.size(), blockSize);
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
std::string_view GetMark(const Encoding& declared, bool hadMark) {
    const bool tellsOrder = declared.name.ends_with(L"LE") || declared.name.ends_with(L"le") ||
                            declared.name.ends_with(L"BE") || declared.name.ends_with(L"be");
    if (!hadMark && (!IsWide(declared.page) || tellsOrder))
        return {};
    for (const ByteOrderMark& mark : marks)
        if (mark.page == declared.page)
            return mark.bytes;
    return {};
}

} // namespace

bool WriteMarkupFile(std::wstring_view path, std::wstring_view text, MarkupFileForm form,
                     MarkupResult& result) {
    Encoding encoding;
    encoding.name = GetDeclaredEncoding(text.substr(0, blockSize));
    encoding.page = GetCodePageOfName(encoding.name);
    if (form.isBigEndian && encoding.page == utf16)
        encoding.page = utf16Big;
    if (form.isBigEndian && encoding.page == utf32)
        encoding.page = utf32Big;
    auto stream = Open(encoding);
    if (stream == nullptr) {
        encoding = {L"UTF-8", utf8};
        stream = Open(encoding);
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
    if (IsBigEndian(encoding.page))
        result.Add(MarkupEvent::EndianSwap);
    if (!IsWide(encoding.page))
        result.Add(MarkupEvent::ConvertedTo, encoding.name);
    if (writer.HasLost())
        result.Add(MarkupEvent::ConversionLoss);
    return true;
}
