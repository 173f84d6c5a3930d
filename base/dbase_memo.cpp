#include "base/dbase_memo.h"

#include "base/byte_order.h"

#include <limits>

namespace base {

namespace {

constexpr std::size_t header_size = 512;
constexpr std::size_t text_header_size = 8; // of dBASE IV and FoxPro
constexpr std::string_view dbase4_mark("\xFF\xFF\x08\x00", 4);
constexpr char text_end = '\x1A'; // of dBASE III
constexpr std::uint32_t foxpro_text = 1;

std::wstring in_block(std::uint64_t block) {
    return L"memo block " + std::to_wstring(block);
}

} // namespace

dbase_memo dbase_memo::create(dbase_memo_form form) {
    dbase_memo made(form, std::string(header_size, '\0'));
    if (form == dbase_memo_form::foxpro) {
        made.block_size_ = 64;
        put_big_endian(made.bytes_, 0, 4, header_size / 64);
        put_big_endian(made.bytes_, 6, 2, 64);
        return made;
    }
    put_little_endian(made.bytes_, 0, 4, 1);
    if (form == dbase_memo_form::dbase3) {
        made.bytes_[16] = 3;
    } else {
        put_little_endian(made.bytes_, 18, 2, 0x0102);
        put_little_endian(made.bytes_, 20, 2, header_size);
    }
    return made;
}

result<dbase_memo> dbase_memo::parse(dbase_memo_form form, std::string bytes) {
    if (bytes.size() < header_size)
        return failure{L"the memo file ends at byte " + std::to_wstring(bytes.size()) +
                       L", inside its header of 512"};
    dbase_memo read(form, std::move(bytes));
    if (form == dbase_memo_form::foxpro)
        read.block_size_ = big_endian(read.bytes_, 6, 2);
    else if (const auto size = little_endian(read.bytes_, 20, 2);
             form == dbase_memo_form::dbase4 && size != 0)
        read.block_size_ = size;
    if (read.block_size_ == 0)
        return failure{L"the memo file's header (byte 6) tells blocks of 0 bytes"};
    return read;
}

result<std::string_view> dbase_memo::text(std::uint64_t block) const {
    const std::string_view bytes = bytes_;
    // Division, because a broken block number times its size may be more than 64 bits.
    if (block > bytes.size() / block_size_ || block * block_size_ < header_size)
        return failure{in_block(block) + L" is not in the memo file, which has " +
                       std::to_wstring(bytes.size()) + L" bytes in blocks of " +
                       std::to_wstring(block_size_)};
    const auto begin = static_cast<std::size_t>(block * block_size_);
    if (form_ == dbase_memo_form::dbase3) {
        const std::size_t end = bytes.find(text_end, begin);
        if (end == bytes.npos)
            return failure{in_block(block) + L" has no end before the memo file's end at byte " +
                           std::to_wstring(bytes.size())};
        return bytes.substr(begin, end - begin);
    }
    if (bytes.size() - begin < text_header_size)
        return failure{in_block(block) + L" ends inside its header"};
    std::uint64_t length = 0;
    if (form_ == dbase_memo_form::foxpro) {
        length = big_endian(bytes, begin + 4, 4);
    } else {
        // Here the length counts the header too.
        length = little_endian(bytes, begin + 4, 4);
        if (bytes.substr(begin, dbase4_mark.size()) != dbase4_mark || length < text_header_size)
            return failure{in_block(block) + L" is not the beginning of a memo"};
        length -= text_header_size;
    }
    if (length > bytes.size() - begin - text_header_size)
        return failure{in_block(block) + L" should have " + std::to_wstring(length) +
                       L" bytes, more than the memo file has"};
    return bytes.substr(begin + text_header_size, static_cast<std::size_t>(length));
}

result<std::uint32_t> dbase_memo::append(std::string_view text) {
    const bool is_foxpro = form_ == dbase_memo_form::foxpro;
    const std::uint64_t block = (bytes_.size() + block_size_ - 1) / block_size_;
    const std::uint32_t next = is_foxpro ? big_endian(bytes_, 0, 4) : little_endian(bytes_, 0, 4);
    if (next > block)
        return failure{L"the memo file is cut: it has " + std::to_wstring(block) +
                       L" blocks and should have " + std::to_wstring(next)};
    if (form_ == dbase_memo_form::dbase3 && text.find(text_end) != text.npos)
        return failure{L"a dBASE III memo cannot hold the character 0x1A"};
    const std::uint64_t end = block + (text_header_size + text.size() + block_size_ - 1) / block_size_;
    if (end > std::numeric_limits<std::uint32_t>::max() || text.size() > 0x7FFF'0000)
        return failure{L"the memo file would get too big"};

    bytes_.resize(static_cast<std::size_t>(block) * block_size_);
    if (form_ == dbase_memo_form::dbase3) {
        bytes_.append(text).append(2, text_end);
    } else {
        const std::size_t begin = bytes_.size();
        bytes_.append(text_header_size, '\0');
        const auto length = static_cast<std::uint32_t>(text.size());
        if (is_foxpro) {
            put_big_endian(bytes_, begin, 4, foxpro_text);
            put_big_endian(bytes_, begin + 4, 4, length);
        } else {
            bytes_.replace(begin, dbase4_mark.size(), dbase4_mark);
            put_little_endian(bytes_, begin + 4, 4, length + static_cast<std::uint32_t>(text_header_size));
        }
        bytes_.append(text);
    }
    bytes_.resize(static_cast<std::size_t>(end) * block_size_);
    // A list of free blocks that dBASE IV may have begun here is forgotten, not lost into a text of ours.
    const auto after = static_cast<std::uint32_t>(end);
    if (is_foxpro)
        put_big_endian(bytes_, 0, 4, after);
    else
        put_little_endian(bytes_, 0, 4, after);
    return static_cast<std::uint32_t>(block);
}

} // namespace base
