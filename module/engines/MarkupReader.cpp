#include "module/engines/MarkupReader.h"

#include "module/engines/DeclaredEncoding.h"
#include "module/engines/EncodingNames.h"
#include "sys/memory.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

namespace {

// The wide page that a text in markup is in, by where the noughts are around its first `<`; 0 when there are
// none.
int GetWidePage(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\0\0\0<"sv))
        return MarkupEncoding::utf32Big;
    if (bytes.starts_with("<\0\0\0"sv))
        return MarkupEncoding::utf32;
    if (bytes.starts_with("\0<"sv))
        return MarkupEncoding::utf16Big;
    return bytes.starts_with("<\0"sv) ? MarkupEncoding::utf16 : 0;
}

// What the front of the bytes declares. A wide page counts only where the bytes are wide: who could read the
// declaration without that knows better.
MarkupEncoding FindDeclared(std::string_view bytes) {
    WideText front;
    wchar_t* const units = front.Extend(bytes.size());
    std::size_t size = 0;
    for (const char byte : bytes)
        if (byte != '\0')
            units[size++] = static_cast<wchar_t>(static_cast<unsigned char>(byte));
    front.SetSize(size);
    MarkupEncoding declared;
    declared.name = GetDeclaredEncoding(front.GetView());
    declared.page = GetCodePageOfName(declared.name);
    if (declared.IsWide())
        declared.page = GetWidePage(bytes);
    return declared;
}

} // namespace

MarkupReader::MarkupReader(sys::file_reader file) : m_file(std::move(file)) {
    const std::string_view front = GetBlock();
    for (const MarkupMark& mark : markupMarks) {
        if (front.starts_with(mark.bytes)) {
            m_first = mark.bytes.size();
            m_encoding = {mark.name, mark.page};
            m_hasMark = true;
            break;
        }
    }
    if (!m_hasMark)
        m_encoding = FindDeclared(front);
    if (m_encoding.page != 0)
        m_stream = sys::text_stream::open(m_encoding.page);
    if (m_stream == nullptr) {
        m_encoding = {L"UTF-8", MarkupEncoding::utf8};
        m_stream = sys::text_stream::open(m_encoding.page);
        m_isGuess = true;
    }
}

// Bytes that are not decoded yet, a block of them if there are as many; none at the end, or when reading
// failed.
std::string_view MarkupReader::GetBlock() {
    if (!m_isAtEnd) {
        std::memmove(m_bytes.data(), m_bytes.data() + m_first, m_end - m_first);
        m_end -= m_first;
        m_first = 0;
        const std::size_t wanted = markupBlockSize - m_end;
        const auto count = m_file.read(m_bytes.data() + m_end, wanted);
        m_hasFailed = !count;
        m_isAtEnd = !count || *count < wanted;
        m_end += count ? *count : 0;
        m_length += count ? *count : 0;
    }
    return {m_bytes.data() + m_first, m_end - m_first};
}

bool MarkupReader::Read(WideText& text) {
    const std::string_view block = GetBlock();
    if (block.empty() || (m_isGuess && (m_lost > 0 || m_isCut)))
        return false;
    const std::size_t size = text.GetSize();
    wchar_t* const to = text.Extend(block.size());
    // A text of megabytes is written into new memory; less is likely to be had from what was used before.
    constexpr std::size_t largeText = std::size_t(1) << 22;
    constexpr std::size_t readyAtOnce = std::size_t(1) << 17;
    if (size + block.size() > m_ready && m_file.size() >= largeText) {
        m_ready = std::min(size + readyAtOnce, GetExpectedSize());
        if (m_ready > size)
            sys::expect_writes(to, (m_ready - size) * sizeof(wchar_t));
    }

    auto taken = m_stream->decode(block, to);
    if (taken.bytes == 0) {
        // Nothing comes that could end the character.
        const auto byte = static_cast<unsigned char>(block[0]);
        *to = static_cast<wchar_t>(byte >= 0x80 ? 0xDC00 + byte : 0xFFFD);
        taken = {1, 1, 1};
        m_isCut = true;
    }
    m_first += taken.bytes;
    m_lost += taken.lost;
    // No encoding has noughts in its text where there are none in its bytes.
    if (std::memchr(block.data(), '\0', taken.bytes) != nullptr &&
        std::wmemchr(to, L'\0', taken.units) != nullptr) {
        const auto kept = static_cast<std::size_t>(std::remove(to, to + taken.units, L'\0') - to);
        m_nulls += taken.units - kept;
        taken.units = kept;
    }
    text.SetSize(size + taken.units);
    return true;
}

bool MarkupReader::BeginsAnew() {
    if (!m_isGuess || (m_lost == 0 && !m_isCut))
        return false;
    m_isGuess = false;
    m_encoding = {L"ANSI", sys::ansi_code_page()};
    m_stream = sys::text_stream::open(m_encoding.page);
    m_hasFailed = !m_file.rewind();
    m_isAtEnd = m_hasFailed;
    m_first = 0;
    m_end = 0;
    m_length = 0;
    m_nulls = 0;
    m_lost = 0;
    m_isCut = false;
    m_ready = 0;
    return !m_hasFailed;
}

void MarkupReader::Tell(MarkupResult& result) const {
    if (m_hasMark)
        result.Add(MarkupEvent::ByteOrderMark);
    result.Add(MarkupEvent::Read, m_encoding.name, m_length);
    if (m_isGuess)
        result.Add(MarkupEvent::Utf8Detection);
    if (m_encoding.IsBigEndian())
        result.Add(MarkupEvent::EndianSwap);
    if (!m_encoding.IsWide())
        result.Add(MarkupEvent::ConvertedFrom, m_encoding.name);
    if (m_nulls > 0)
        result.Add(MarkupEvent::NullsRemoved, m_nulls);
    if (m_lost > 0)
        result.Add(MarkupEvent::ConversionLoss);
    if (m_isCut)
        result.Add(MarkupEvent::TruncationError, m_encoding.name);
}
