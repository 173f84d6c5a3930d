// The container of 2004 and of 2010 to 2018: pages that are packed, disguised and have check sums, and
// sections that are made of pages. Source: Open Design Specification for .dwg files 5.4.1, chapter 4, checked
// on drawings.
#include "base/byte_order.h"
#include "base/utf.h"
#include "host/dwg/checksums.h"
#include "host/dwg/container.h"

#include <unordered_map>

namespace dwg {

namespace {

using base::little_endian;

constexpr std::size_t head_at = 0x80;
constexpr std::size_t head_size = 0x6C;
constexpr std::size_t first_page = 0x100;

std::uint64_t wide(std::string_view bytes, std::size_t at) {
    return little_endian(bytes, at, 4) | static_cast<std::uint64_t>(little_endian(bytes, at + 4, 4)) << 32;
}

std::string plain_head(std::string_view bytes) {
    std::string head(bytes.substr(head_at, head_size));
    std::uint32_t mask = 1;
    for (char& byte : head) {
        mask = mask * 0x343FD + 0x269EC3;
        byte = static_cast<char>(byte ^ static_cast<char>(mask >> 16));
    }
    return head;
}

struct page {
    std::size_t at = 0;
    std::size_t size = 0;
};

class reader {
public:
    reader(std::string_view bytes, container& out) : bytes_(bytes), out_(out) {}

    base::result<void> run() {
        constexpr std::size_t map_address = 0x54;
        constexpr std::size_t section_map_page = 0x5C;
        constexpr std::size_t sum_at = 0x68;
        std::string head = plain_head(bytes_);
        if (!head.starts_with("AcFssFcAJMB"))
            return base::failure{L"byte 128: the second head of this DWG file is damaged"};
        const std::uint32_t sum = little_endian(head, sum_at, 4);
        base::put_little_endian(head, sum_at, 4, 0);
        if (crc32(head) != sum)
            out_.damage.emplace_back(L"the check sum of the file's second head is wrong");
        std::string map;
        if (!system_page(wide(head, map_address) + first_page, 0x41630E3B, map))
            return base::failure{L"the map of the pages of this DWG file is damaged"};
        find_pages(map);
        const auto sections = pages_.find(little_endian(head, section_map_page, 4));
        if (sections == pages_.end() || !system_page(sections->second.at, 0x4163003B, map))
            return base::failure{L"the map of the sections of this DWG file is damaged"};
        return read_sections(map);
    }

private:
    // A page that tells of the others. A wrong check sum is damage that is told of; the page is read all the
    // same.
    bool system_page(std::uint64_t at, std::uint32_t type, std::string& unpacked) {
        constexpr std::size_t size = 20;
        if (at > bytes_.size() || bytes_.size() - at < size)
            return false;
        std::string head(bytes_.substr(at, size));
        const std::size_t room = little_endian(head, 4, 4);
        const std::size_t packed = little_endian(head, 8, 4);
        const std::uint32_t sum = little_endian(head, 16, 4);
        constexpr std::size_t densest = 512; // bytes that one packed byte can stand for, more or less
        if (little_endian(head, 0, 4) != type || packed > bytes_.size() - at - size ||
            room / densest > packed)
            return false;
        const std::string_view data = bytes_.substr(at + size, packed);
        base::put_little_endian(head, 16, 4, 0);
        if (page_sum(data, page_sum(head, 0)) != sum)
            out_.damage.emplace_back(L"the check sum of a page of the file's maps is wrong");
        return unpack_2004(data, room + first_page, unpacked);
    }

    void find_pages(std::string_view map) {
        std::size_t at = first_page;
        for (std::size_t i = 0; i + 8 <= map.size(); i += 8) {
            const auto number = static_cast<std::int32_t>(little_endian(map, i, 4));
            const std::size_t size = little_endian(map, i + 4, 4);
            if (number > 0)
                pages_[static_cast<std::uint32_t>(number)] = {at, size};
            else
                i += 16;
            at += size;
        }
    }

    base::result<void> read_sections(std::string_view map) {
        constexpr std::size_t head = 20;
        constexpr std::size_t section_size = 96;
        constexpr std::size_t page_size = 16;
        if (map.size() < head)
            return base::failure{L"the map of the sections of this DWG file is empty"};
        std::size_t at = head;
        for (std::uint32_t left = little_endian(map, 0, 4); left != 0 && map.size() - at >= section_size;
             --left) {
            const std::string_view about = map.substr(at, section_size);
            const std::size_t pages = little_endian(about, 8, 4);
            at += section_size;
            if (pages > (map.size() - at) / page_size)
                return base::failure{L"the map of the sections of this DWG file is damaged"};
            const std::string_view list = map.substr(at, pages * page_size);
            at += list.size();
            std::string_view name = about.substr(32);
            name = name.substr(0, name.find('\0'));
            if (!is_wanted(name))
                continue;
            if (little_endian(about, 28, 4) == 1)
                return base::failure{L"this DWG file is encrypted with a password"};
            read_section(about, name, list);
        }
        return {};
    }

    void read_section(std::string_view about, std::string_view name, std::string_view list) {
        const std::uint64_t size = wide(about, 0);
        const std::size_t page_room = little_endian(about, 12, 4);
        const bool packed = little_endian(about, 20, 4) == 2;
        constexpr std::size_t largest_page = 1 << 24;
        if (page_room > largest_page || size > (list.size() / 16 + 1) * std::uint64_t(page_room)) {
            out_.damage.push_back(L"the size of section " + base::widen(name) + L" is wrong");
            return;
        }
        std::string whole(static_cast<std::size_t>(size), '\0');
        std::string plain;
        for (std::size_t i = 0; i < list.size(); i += 16) {
            const std::uint64_t offset = wide(list, i + 8);
            const std::uint32_t number = little_endian(list, i, 4);
            if (!read_page(number, packed, page_room, plain))
                out_.damage.push_back(L"page " + std::to_wstring(number) + L" of section " +
                                      base::widen(name) + L" is damaged");
            if (offset < whole.size())
                whole.replace(offset, std::min<std::size_t>(plain.size(), whole.size() - offset), plain, 0,
                              whole.size() - offset);
        }
        keep_section(out_, name, std::move(whole));
    }

    bool read_page(std::uint32_t number, bool packed, std::size_t room, std::string& plain) {
        constexpr std::size_t size = 32;
        plain.clear();
        const auto found = pages_.find(number);
        if (found == pages_.end() || found->second.at > bytes_.size() ||
            bytes_.size() - found->second.at < size)
            return false;
        const std::size_t at = found->second.at;
        std::string head(bytes_.substr(at, size));
        const std::uint32_t mask = 0x4164536B ^ static_cast<std::uint32_t>(at);
        for (std::size_t i = 0; i < size; i += 4)
            base::put_little_endian(head, i, 4, little_endian(head, i, 4) ^ mask);
        const std::size_t count = little_endian(head, 8, 4);
        if (little_endian(head, 0, 4) != 0x4163043B || count > bytes_.size() - at - size)
            return false;
        const std::string_view data = bytes_.substr(at + size, count);
        const std::uint32_t data_sum = page_sum(data, 0);
        const std::uint32_t head_sum = little_endian(head, 24, 4);
        base::put_little_endian(head, 24, 4, 0);
        bool sound = data_sum == little_endian(head, 28, 4) && page_sum(head, data_sum) == head_sum;
        if (!packed)
            plain = data.substr(0, room);
        else
            sound = unpack_2004(data, room, plain) && sound;
        return sound;
    }

    std::string_view bytes_;
    container& out_;
    std::unordered_map<std::uint32_t, page> pages_;
};

} // namespace

base::result<void> open_2004(std::string_view bytes, container& out) {
    return reader(bytes, out).run();
}

} // namespace dwg
