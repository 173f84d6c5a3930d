#include "host/gi/shape_font.h"

#include "base/byte_order.h"
#include "base/case_fold.h"
#include "host/gi/shape_pen.h"

#include <algorithm>

namespace gi {

namespace {

constexpr std::string_view signature = "AutoCAD-86 ";
constexpr char end_of_head = '\x1A';
constexpr std::size_t longest_head = 64;

} // namespace

base::result<std::shared_ptr<const shape_font>> shape_font::read(std::string bytes) {
    const std::size_t head = std::string_view(bytes).substr(0, longest_head).find(end_of_head);
    if (!bytes.starts_with(signature) || head == std::string::npos)
        return base::failure{L"it is no file of shapes"};
    const std::string_view what = std::string_view(bytes).substr(signature.size(), head - signature.size());
    const bool unicode = what.starts_with("unifont");
    const bool big = what.starts_with("bigfont");
    if (!unicode && !big && !what.starts_with("shapes"))
        return base::failure{L"it holds shapes of a kind that is not known"};
    std::shared_ptr<shape_font> font(new shape_font(std::move(bytes)));
    font->kind_ = unicode ? kind::unicode : big ? kind::big : kind::plain;
    const bool whole = unicode ? font->index_unicode(head + 1)
                       : big   ? font->index_big(head + 1)
                               : font->index_plain(head + 1);
    if (!whole)
        return base::failure{L"it ends before its shapes"};
    font->read_height();
    return std::shared_ptr<const shape_font>(std::move(font));
}

// A number of the file, the low byte first; 0 behind its end.
std::uint32_t shape_font::number_at(std::size_t at, std::size_t size) const {
    if (at > bytes_.size() || bytes_.size() - at < size)
        return 0;
    return static_cast<std::uint32_t>(base::little_endian(bytes_, at, size));
}

// First and last number and how many there are; the number and size of each; the shapes one behind the other.
bool shape_font::index_plain(std::size_t at) {
    constexpr std::size_t head = 6;
    constexpr std::size_t entry = 4;
    const std::size_t count = number_at(at + 4, 2);
    const std::size_t entries = at + head;
    std::size_t begin = entries + count * entry;
    if (begin > bytes_.size())
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t size = number_at(entries + i * entry + 2, 2);
        if (size > bytes_.size() - begin)
            break;
        places_[number_at(entries + i * entry, 2)] = {begin, size};
        begin += size;
    }
    return true;
}

// How many shapes, the size of what is told of the font, that, and for each shape its number, size and codes.
bool shape_font::index_unicode(std::size_t at) {
    constexpr std::size_t head = 6;
    const std::size_t size = number_at(at + 4, 2);
    std::size_t begin = at + head;
    if (begin > bytes_.size() || size > bytes_.size() - begin)
        return false;
    places_[0] = {begin, size};
    begin += size;
    constexpr std::size_t entry = 4;
    while (bytes_.size() - begin >= entry) {
        const unsigned number = number_at(begin, 2);
        const std::size_t length = number_at(begin + 2, 2);
        begin += entry;
        if (length > bytes_.size() - begin)
            break;
        if (number != 0)
            places_[number] = {begin, length};
        begin += length;
    }
    return true;
}

// The size of an entry, how many there are, which bytes begin a letter of two, and for each shape its number,
// its size and where it lies.
bool shape_font::index_big(std::size_t at) {
    const std::size_t count = number_at(at + 2, 2);
    const std::size_t ranges = number_at(at + 4, 2);
    constexpr std::size_t head = 6;
    constexpr std::size_t range = 4;
    constexpr std::size_t entry = 8;
    const std::size_t entries = at + head + ranges * range;
    if (entries > bytes_.size())
        return false;
    for (std::size_t i = 0; i < count && (i + 1) * entry <= bytes_.size() - entries; ++i) {
        const std::size_t here = entries + i * entry;
        const std::size_t size = number_at(here + 2, 2);
        const std::size_t begin = number_at(here + 4, 4);
        if (size != 0 && begin <= bytes_.size() && size <= bytes_.size() - begin)
            places_[number_at(here, 2)] = {begin, size};
    }
    return true;
}

std::string_view shape_font::name_at(const place& where) const {
    const std::string_view all = std::string_view(bytes_).substr(where.begin, where.size);
    return all.substr(0, all.find('\0'));
}

std::string_view shape_font::codes_at(const place& where) const {
    const std::string_view all = std::string_view(bytes_).substr(where.begin, where.size);
    const std::size_t end = all.find('\0');
    return all.substr(end == all.npos ? all.size() : end + 1);
}

// Number 0 tells of a font: how high capitals are and how deep tails, or the height alone and the width.
void shape_font::read_height() {
    const auto told = places_.find(0);
    if (told == places_.end())
        return;
    const std::string_view codes = codes_at(told->second);
    if (codes.empty())
        return;
    height_ = static_cast<unsigned char>(codes[0]);
    constexpr std::size_t with_width = 5;
    if (is_big() && codes.size() >= with_width && codes[1] == '\0')
        wide_ = static_cast<unsigned char>(codes[3]);
}

const shape* shape_font::find(unsigned number) const {
    const auto found = places_.find(number);
    if (found == places_.end() || (number == 0 && height_ > 0.0))
        return nullptr;
    const std::lock_guard alone(busy_);
    const auto [at, fresh] = drawn_.try_emplace(number);
    if (!fresh)
        return &at->second;
    shape_pen::source file;
    file.codes = [this](unsigned other) {
        const auto at_other = places_.find(other);
        return at_other != places_.end() ? codes_at(at_other->second) : std::string_view();
    };
    file.wide_numbers = kind_ == kind::unicode;
    file.is_big = kind_ == kind::big;
    file.height = height_;
    at->second = shape_pen(file).draw(codes_at(found->second));
    if (wide_ > 0.0 && at->second.end.x == 0.0)
        at->second.end.x = wide_;
    return &at->second;
}

std::optional<unsigned> shape_font::number_of(std::string_view name) const {
    const auto lower = [](std::string_view text) {
        std::string folded(text);
        std::transform(folded.begin(), folded.end(), folded.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        return folded;
    };
    const std::string wanted = lower(name);
    for (const auto& [number, where] : places_)
        if (number != 0 && !wanted.empty() && lower(name_at(where)) == wanted)
            return number;
    return std::nullopt;
}

} // namespace gi
