#include "host/dxf/drawing.h"

#include "base/utf.h"
#include "host/dxf/record_header.h"
#include "sys/atomic_file.h"
#include "sys/folders.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace dxf {

namespace {

constexpr std::string_view binary_mark = "AutoCAD Binary DXF";

// Files that people take for drawings that can be read; why they can not.
std::wstring other_format(std::string_view bytes) {
    if (bytes.starts_with(binary_mark))
        return L"this is a binary DXF file; only ASCII DXF is read so far";
    if (bytes.starts_with("AC10") && bytes.find('\n') > 6)
        return L"this is a DWG file; save it as DXF first";
    const std::string_view start = bytes.substr(0, 4096);
    if (start.find('\n') == start.npos && start.find('\r') != start.npos)
        return L"its lines end with carriage returns alone";
    return {};
}

// Judged by the first groups of the file's own records; comments in front may be somebody else's.
group_style style_of(std::string_view bytes, const record_table& records) {
    group_style style;
    const std::size_t feed = bytes.find('\n');
    style.line_end = feed != bytes.npos && feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
    constexpr record_id first = 1; // behind what stands in front of the first record
    style.padded_codes = style.padded_numbers = records.has(first) && records.text(first).starts_with(' ');
    constexpr record_id enough = 100; // the header and the heads of the first tables hold whole numbers
    for (record_id id = first; id < records.size() && id < enough; ++id) {
        group_reader groups(records.text(id));
        raw_group group;
        while (groups.next(group))
            if (group.code == 70) {
                style.padded_numbers = group.value.starts_with(' ');
                return style;
            }
    }
    return style;
}

} // namespace

base::result<std::unique_ptr<drawing>> drawing::open(const std::filesystem::path& file) {
    auto bytes = sys::read_file(file);
    if (!bytes)
        return base::failure{bytes.error()};
    std::unique_ptr<drawing> opened(new drawing);
    opened->file_ = std::move(*bytes);
    if (auto read = opened->read(opened->file_.view()); !read)
        return base::failure{L"'" + sys::from_path(file) + L"': " + read.error()};
    return opened;
}

base::result<std::unique_ptr<drawing>> drawing::from_bytes(std::string bytes) {
    std::unique_ptr<drawing> opened(new drawing);
    opened->memory_ = std::move(bytes);
    const std::size_t size = opened->memory_.size();
    opened->memory_.append(sys::file_bytes::padding, '\0');
    if (auto read = opened->read(std::string_view(opened->memory_).substr(0, size)); !read)
        return base::failure{read.error()};
    return opened;
}

base::result<void> drawing::read(std::string_view bytes) {
    bytes_ = bytes;
    if (std::wstring why = other_format(bytes); !why.empty())
        return base::failure{std::move(why)};
    // A byte-order mark is no part of the first group code; it is kept with what stands before the first
    // record.
    const bool marked = bytes.starts_with("\xEF\xBB\xBF");
    auto parts = index_records(bytes.substr(marked ? 3 : 0), records_);
    if (!parts)
        return base::failure{parts.error()};
    parts_ = std::move(*parts);
    in_file_ = records_.size();
    style_ = style_of(bytes, records_);
    if (const auto version = header_value("$ACADVER"); version && version->size() > 2)
        std::from_chars(version->data() + 2, version->data() + version->size(), version_);
    // A seed beyond all reason would leave no handles.
    constexpr std::uint64_t highest_seed = std::uint64_t(1) << 48;
    if (const std::uint64_t seed = parse_handle(header_value("$HANDSEED").value_or(""));
        seed > 1 && seed < highest_seed)
        records_.set_handle_floor(seed - 1);
    codec_ = text_codec(version_, header_value("$DWGCODEPAGE").value_or(""),
                        parts_.high_bytes && version_ < 1021 && base::is_utf8(bytes));
    return {};
}

record_id drawing::table(std::string_view name) const {
    for (const record_id head : parts_.table_heads)
        if (value_of(records_.text(head), 2) == name)
            return head;
    return no_record;
}

std::optional<std::string_view> drawing::header_value(std::string_view variable) const {
    if (parts_.header == no_record)
        return std::nullopt;
    group_reader groups(records_.text(parts_.header));
    raw_group group;
    while (groups.next(group))
        if (group.code == 9 && trimmed(group.value) == variable && groups.next(group) && group.code != 9)
            return trimmed(group.value);
    return std::nullopt;
}

bool drawing::set_header_value(std::string_view variable, int code, std::string_view value) {
    if (parts_.header == no_record)
        return false;
    group_list header(records_.text(parts_.header));
    const auto& groups = header.groups();
    std::size_t at = 0;
    while (at < groups.size() && (groups[at].code != 9 || trimmed(groups[at].value) != variable))
        ++at;
    if (at + 1 < groups.size() && groups[at + 1].code != 9) {
        if (trimmed(groups[at + 1].value) == value)
            return true;
        const group_list::fresh_group fresh[] = {{groups[at + 1].code, std::string(value)}};
        header.splice(at + 1, at + 2, fresh);
    } else {
        const std::size_t end = groups.size();
        const group_list::fresh_group fresh[] = {{9, std::string(variable)}, {code, std::string(value)}};
        header.splice(at < end ? at : end, end, fresh);
    }
    records_.replace(parts_.header, header.write(style_));
    return true;
}

record_id drawing::last_in(record_id container) const {
    const record_kind kind = records_.kind(container);
    const std::uint32_t closing = kind == record_kind::table   ? type_endtab
                                  : kind == record_kind::block ? type_endblk
                                                               : type_endsec;
    record_id& last = last_.try_emplace(container, container).first->second;
    for (record_id next = records_.next(last); next != no_record; next = records_.next(last)) {
        if (records_.type(next) == closing)
            return last;
        last = next;
    }
    last = container;
    return no_record;
}

// The header with a $HANDSEED above every handle that was given since the file was read; empty when the one
// that stands there will do. Only what is saved counts: what was undone took no handle.
std::string drawing::header_with_seed() const {
    const auto seed = header_value("$HANDSEED");
    if (!seed)
        return {};
    std::uint64_t needed = 0;
    for (record_id id = in_file_; id < records_.size(); ++id)
        if (!records_.gone(id) && records_.kind(id) != record_kind::implied)
            needed = std::max(needed, records_.handle(id) + 1);
    if (needed <= parse_handle(*seed))
        return {};
    char digits[20];
    std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(needed));
    group_list header(records_.text(parts_.header));
    for (std::size_t i = 0; i + 1 < header.groups().size(); ++i)
        if (header.groups()[i].code == 9 && trimmed(header.groups()[i].value) == "$HANDSEED") {
            const group_list::fresh_group fresh[] = {{5, digits}};
            header.splice(i + 1, i + 2, fresh);
            break;
        }
    return header.write(style_);
}

bool drawing::write(const std::function<bool(std::string_view)>& put) const {
    const std::string header = header_with_seed();
    // What stands before the first record, a byte-order mark, is not in the table. Neighbours that lie side
    // by side are given as one.
    std::string_view run =
        bytes_.substr(0, static_cast<std::size_t>(records_.text(0).data() - bytes_.data()));
    for (record_id id = 0; id != no_record; id = records_.next(id)) {
        if (records_.gone(id) || records_.kind(id) == record_kind::implied)
            continue;
        const std::string_view text = id == parts_.header && !header.empty() ? header : records_.text(id);
        if (run.data() + run.size() == text.data()) {
            run = {run.data(), run.size() + text.size()};
            continue;
        }
        if (!run.empty() && !put(run))
            return false;
        run = text;
    }
    return run.empty() || put(run);
}

base::result<void> drawing::write_file(const std::filesystem::path& file) const {
    auto target = sys::atomic_file::create(file);
    if (!target)
        return base::failure{target.error()};
    base::result<void> written;
    write([&](std::string_view piece) {
        written = target->write(piece);
        return static_cast<bool>(written);
    });
    if (!written)
        return written;
    return target->commit();
}

} // namespace dxf
