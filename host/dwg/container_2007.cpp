// The container of 2007: pages that are interleaved as Reed-Solomon code words of 255 bytes and packed in a
// way of their own. A sound file is read without correcting it. Source: Open Design Specification for .dwg
// files 5.4.1, chapter 5, checked on drawings.
#include "base/byte_order.h"
#include "base/utf.h"
#include "host/dwg/container.h"

#include <unordered_map>

namespace dwg {

namespace {

constexpr std::size_t word_size = 255;
constexpr std::size_t first_page = 0x480;
constexpr std::size_t largest_page = 1 << 24;

std::uint64_t wide(std::string_view bytes, std::size_t index) {
    return base::little_endian(bytes, index * 8, 4) |
           static_cast<std::uint64_t>(base::little_endian(bytes, index * 8 + 4, 4)) << 32;
}

// The first `used` bytes of each of the code words that are interleaved in `bytes`.
std::string code_words(std::string_view bytes, std::size_t used) {
    const std::size_t words = bytes.size() / word_size;
    std::string out;
    out.reserve(words * used);
    for (std::size_t word = 0; word < words; ++word)
        for (std::size_t i = 0; i < used; ++i)
            out += bytes[word + i * words];
    return out;
}

struct page {
    std::size_t at = 0;
    std::size_t size = 0;
};

class reader {
public:
    reader(std::string_view bytes, container& out) : bytes_(bytes), out_(out) {}

    base::result<void> run() {
        constexpr std::size_t head_at = 0x80;
        constexpr std::size_t head_words = 3;
        constexpr std::size_t plain_size = 0x110;
        constexpr std::size_t data_bytes = 239;
        if (bytes_.size() < first_page)
            return base::failure{L"this DWG file ends inside of its head"};
        const std::string coded = code_words(bytes_.substr(head_at, head_words * word_size), data_bytes);
        const auto size = static_cast<std::int32_t>(base::little_endian(coded, 0x18, 4));
        std::string head;
        if (size < 0)
            head = coded.substr(0x20, plain_size);
        else
            unpack_2007(std::string_view(coded).substr(0x20, static_cast<std::size_t>(size)), plain_size,
                        head);
        if (head.size() < plain_size)
            return base::failure{L"byte 128: the second head of this DWG file is damaged"};
        std::string map;
        if (!system_page(wide(head, 7), wide(head, 10), wide(head, 11), wide(head, 3), map))
            return base::failure{L"the map of the pages of this DWG file is damaged"};
        find_pages(map);
        const auto sections = pages_.find(wide(head, 24));
        if (sections == pages_.end() || !system_page(sections->second.at - first_page, wide(head, 22),
                                                     wide(head, 25), wide(head, 27), map))
            return base::failure{L"the map of the sections of this DWG file is damaged"};
        return read_sections(map);
    }

private:
    bool system_page(std::uint64_t offset, std::uint64_t packed, std::uint64_t room, std::uint64_t factor,
                     std::string& out) {
        constexpr std::size_t data_bytes = 239;
        if (packed > bytes_.size() || room > largest_page || factor > bytes_.size() || packed == 0 ||
            offset > bytes_.size() - first_page)
            return false;
        const std::size_t words = (((packed + 7) & ~std::uint64_t(7)) * factor + data_bytes - 1) / data_bytes;
        if (words > (bytes_.size() - first_page - offset) / word_size)
            return false;
        std::string data = code_words(bytes_.substr(first_page + offset, words * word_size), data_bytes);
        if (data.size() < packed)
            return false;
        data.resize(packed);
        if (packed >= room) {
            out = std::move(data);
            return true;
        }
        return unpack_2007(data, room, out) && out.size() == room;
    }

    void find_pages(std::string_view map) {
        std::size_t at = first_page;
        for (std::size_t i = 0; i + 2 <= map.size() / 8; i += 2) {
            const std::uint64_t size = wide(map, i);
            const auto id = static_cast<std::int64_t>(wide(map, i + 1));
            if (size > bytes_.size())
                return;
            pages_[id < 0 ? ~static_cast<std::uint64_t>(id) + 1 : static_cast<std::uint64_t>(id)] = {
                at, static_cast<std::size_t>(size)};
            at += size;
        }
    }

    base::result<void> read_sections(std::string_view map) {
        constexpr std::size_t head = 8 * 8;
        constexpr std::size_t entry = 7 * 8;
        while (map.size() >= head) {
            const std::uint64_t size = wide(map, 0);
            const std::uint64_t encrypted = wide(map, 2);
            const std::uint64_t name_size = wide(map, 4);
            const std::uint64_t encoding = wide(map, 6);
            const std::uint64_t pages = wide(map, 7);
            map.remove_prefix(head);
            if (name_size > map.size() || pages > (map.size() - name_size) / entry)
                return base::failure{L"the map of the sections of this DWG file is damaged"};
            std::string name;
            for (std::size_t i = 0; i + 1 < name_size && map[i] != '\0'; i += 2)
                name += map[i];
            map.remove_prefix(name_size);
            const std::string_view list = map.substr(0, pages * entry);
            map.remove_prefix(list.size());
            if (!is_wanted(name))
                continue;
            if (encrypted == 1)
                return base::failure{L"this DWG file is encrypted with a password"};
            read_section(name, size, encoding, list);
        }
        return {};
    }

    void read_section(const std::string& name, std::uint64_t size, std::uint64_t encoding,
                      std::string_view list) {
        constexpr std::size_t numbers = 7;
        constexpr std::size_t densest = 4096; // bytes of a section that one of the file stands for, at most
        if (size / densest > bytes_.size()) {
            out_.damage.push_back(L"the size of section " + base::widen(name) + L" is wrong");
            return;
        }
        std::string whole(static_cast<std::size_t>(size), '\0');
        std::string plain;
        for (std::size_t i = 0; i < list.size() / 8; i += numbers) {
            const std::uint64_t offset = wide(list, i);
            const std::uint64_t id = wide(list, i + 2);
            if (!read_page(id, wide(list, i + 4), wide(list, i + 3), encoding, plain))
                out_.damage.push_back(L"page " + std::to_wstring(id) + L" of section " + base::widen(name) +
                                      L" is damaged");
            if (offset < whole.size())
                whole.replace(offset, std::min<std::size_t>(plain.size(), whole.size() - offset), plain, 0,
                              whole.size() - offset);
        }
        keep_section(out_, name, std::move(whole));
    }

    bool read_page(std::uint64_t id, std::uint64_t packed, std::uint64_t room, std::uint64_t encoding,
                   std::string& out) {
        constexpr std::size_t data_bytes = 251;
        out.clear();
        const auto found = pages_.find(id);
        if (found == pages_.end() || packed > bytes_.size() || room > largest_page)
            return false;
        const std::size_t words = (((packed + 7) & ~std::uint64_t(7)) + data_bytes - 1) / data_bytes;
        const std::size_t at = found->second.at;
        if (at > bytes_.size() || words > (bytes_.size() - at) / word_size)
            return false;
        const std::string_view coded = bytes_.substr(at, words * word_size);
        std::string data;
        if (encoding == 4)
            data = code_words(coded, data_bytes);
        else
            for (std::size_t word = 0; word < words; ++word)
                data.append(coded.substr(word * word_size, data_bytes));
        if (data.size() < packed)
            return false;
        data.resize(packed);
        if (packed < room)
            return unpack_2007(data, room, out) && out.size() == room;
        out = std::move(data);
        return true;
    }

    std::string_view bytes_;
    container& out_;
    std::unordered_map<std::uint64_t, page> pages_;
};

} // namespace

base::result<void> open_2007(std::string_view bytes, container& out) {
    return reader(bytes, out).run();
}

} // namespace dwg
