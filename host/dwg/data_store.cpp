#include "host/dwg/data_store.h"

#include "base/byte_order.h"
#include "host/dwg/record_writer.h"

#include <algorithm>
#include <iterator>

namespace dwg {

namespace {

using base::little_endian;

// The kinds of data that are known, with the names that DXF has for them.
struct kind {
    std::string_view schema, property;
};
constexpr kind kinds[] = {{"AcDb_Thumbnail_Schema", "Thumbnail_Data"}, {"AcDb3DSolid_ASM_Data", "ASM_Data"}};

// Source of the layout: Open Design Specification for .dwg files 5.4.1, chapter 24, checked on drawings: a
// head says where the list of segments is; a list of data says in which segment each has its head, which
// names its owner and its place; the names of schemas stand in a segment of their own.
class store {
public:
    store(std::string_view bytes, std::vector<std::wstring>& damage) : bytes_(bytes), damage_(damage) {}

    std::vector<stored_data> read() {
        constexpr std::size_t head = 56;
        if (bytes_.size() < head)
            return {};
        list_ = little_endian(bytes_, 24, 4);
        segments_ = little_endian(bytes_, 32, 4);
        const std::string_view schemas = segment(little_endian(bytes_, 36, 4), "schidx");
        const std::string_view data = segment(little_endian(bytes_, 40, 4), "datidx");
        read_names(schemas);
        std::vector<stored_data> all;
        constexpr std::size_t entry = 12;
        constexpr std::size_t entries = segment_head + 8;
        if (data.size() < entries)
            return tell(L"the list of the data store can not be read"), all;
        const std::size_t count = little_endian(data, segment_head, 4);
        if (count > (data.size() - entries) / entry)
            return tell(L"the list of the data store is longer than its place"), all;
        for (std::size_t i = 0; i < count; ++i)
            read_entry(data.substr(entries + i * entry, entry), all);
        return all;
    }

private:
    static constexpr std::size_t segment_head = 48;

    void tell(const wchar_t* what) { damage_.emplace_back(what); }

    // The bytes of a segment with its head; empty when it is not there.
    std::string_view segment(std::size_t number, std::string_view name) const {
        constexpr std::size_t entry = 12;
        const std::size_t at = list_ + segment_head + number * entry;
        if (number >= segments_ || at > bytes_.size() || bytes_.size() - at < entry)
            return {};
        const std::uint64_t begin =
            little_endian(bytes_, at, 4) | std::uint64_t(little_endian(bytes_, at + 4, 4)) << 32;
        const std::size_t size = little_endian(bytes_, at + 8, 4);
        if (begin > bytes_.size() || size > bytes_.size() - begin || size < segment_head)
            return {};
        const std::string_view found = bytes_.substr(static_cast<std::size_t>(begin), size);
        return little_endian(found, 0, 2) == 0xD5AC && found.substr(2, name.size()) == name
                   ? found
                   : std::string_view();
    }

    // Where a part of a segment begins, which its head counts in units of 16 bytes.
    static std::size_t part_of(std::string_view segment, std::size_t head_at) {
        constexpr std::size_t unit = 16;
        return std::min<std::size_t>(segment.size(), little_endian(segment, head_at, 4) * unit);
    }

    void read_names(std::string_view schemas) {
        if (schemas.empty())
            return tell(L"the schemas of the data store can not be read");
        std::string_view left = schemas.substr(part_of(schemas, 32));
        std::size_t count = left.size() < 4 ? 0 : little_endian(left, 0, 4);
        left.remove_prefix(std::min<std::size_t>(left.size(), 4));
        for (; count != 0 && !left.empty(); --count) {
            const std::size_t end = std::min(left.find('\0'), left.size());
            names_.push_back(left.substr(0, end));
            left.remove_prefix(std::min(left.size(), end + 1));
        }
    }

    void read_entry(std::string_view entry, std::vector<stored_data>& all) {
        const std::size_t number = little_endian(entry, 0, 4);
        if (number == 0)
            return; // it was deleted
        const std::size_t at = segment_head + little_endian(entry, 4, 4);
        const std::size_t schema = little_endian(entry, 8, 4);
        constexpr std::size_t head = 20;
        const std::string_view data = segment(number, "_data_");
        if (data.size() < head || at > data.size() - head || schema >= names_.size())
            return tell(L"a part of the data store can not be read");
        stored_data one;
        one.owner = little_endian(data, at + 8, 4) | std::uint64_t(little_endian(data, at + 12, 4)) << 32;
        one.schema = names_[schema];
        if (std::none_of(std::begin(kinds), std::end(kinds),
                         [&](const kind& known) { return known.schema == one.schema; }))
            return tell(L"data of an unknown kind in the data store is left out");
        const std::size_t begin = part_of(data, 36) + little_endian(data, at + 16, 4);
        if (begin > data.size() || data.size() - begin < 4)
            return tell(L"a part of the data store can not be read");
        const std::size_t size = little_endian(data, begin, 4);
        if (size > data.size() - begin - 4 || size > bytes_.size() - taken_)
            return tell(L"a part of the data store is too large to be read");
        taken_ += size; // parts that lie in one another do not make the drawing longer than the file
        one.bytes = data.substr(begin + 4, size);
        all.push_back(one);
    }

    std::string_view bytes_;
    std::vector<std::wstring>& damage_;
    std::size_t list_ = 0, segments_ = 0, taken_ = 0;
    std::vector<std::string_view> names_;
};

// What all schemas refer to, with the code of their one property.
struct attribute {
    std::string_view schema, property;
    int type;
};
constexpr attribute attributes[] = {{"AcDbDs::TreatedAsObjectDataSchema", "AcDbDs::TreatedAsObjectData", 1},
                                    {"AcDbDs::LegacySchema", "AcDbDs::Legacy", 1},
                                    {"AcDbDs::IndexedPropertySchema", "AcDs:Indexable", 1},
                                    {"AcDbDs::HandleAttributeSchema", "AcDbDs::HandleAttribute", 7}};
constexpr int type_handle = 10;
constexpr int type_bytes = 15;

void begin_schema(record_writer& write, std::size_t number, std::string_view name) {
    write.text(0, "ACDSSCHEMA");
    write.integer(90, static_cast<std::int64_t>(number));
    write.text(1, name);
}

// A schema has an owner and bytes; four attributes are set, two for the whole of it, two for the owner.
void write_schema(record_writer& write, std::size_t number, const kind& of, std::size_t known) {
    begin_schema(write, number, of.schema);
    write.text(2, "AcDbDs::ID");
    write.integer(280, type_handle);
    write.integer(91, 8);
    write.text(2, of.property);
    write.integer(280, type_bytes);
    write.integer(91, 0);
    for (std::size_t i = 0; i < std::size(attributes); ++i) {
        write.text(101, "ACDSRECORD");
        if (i < 2)
            write.integer(95, static_cast<std::int64_t>(number));
        else
            write.text(1, "AcDbDs::ID");
        write.integer(90, static_cast<std::int64_t>(known + i));
        write.text(2, attributes[i].property);
        write.integer(280, attributes[i].type);
        const bool is_handle = attributes[i].type != 1;
        write.integer(is_handle ? 282 : 291, 1);
    }
}

} // namespace

std::vector<stored_data> read_data_store(std::string_view section, std::vector<std::wstring>& damage) {
    return store(section, damage).read();
}

void write_data_store(record_writer& write, const std::vector<stored_data>& all) {
    std::vector<kind> used;
    for (const kind& one : kinds)
        if (std::any_of(all.begin(), all.end(),
                        [&](const stored_data& of) { return of.schema == one.schema; }))
            used.push_back(one);
    if (used.empty())
        return;
    write.text(0, "SECTION");
    write.text(2, "ACDSDATA");
    write.integer(70, 2);
    write.integer(71, 8);
    for (std::size_t i = 0; i < used.size(); ++i)
        write_schema(write, i, used[i], used.size());
    for (std::size_t i = 0; i < std::size(attributes); ++i) {
        const bool is_handle = attributes[i].type != 1;
        begin_schema(write, used.size() + i, attributes[i].schema);
        write.text(2, attributes[i].property);
        write.integer(280, attributes[i].type);
        write.integer(91, is_handle ? 1 : 0);
        if (is_handle)
            write.integer(284, 1);
    }
    for (const stored_data& one : all) {
        const auto of = std::find_if(used.begin(), used.end(),
                                     [&](const kind& known) { return known.schema == one.schema; });
        if (of == used.end())
            continue;
        write.text(0, "ACDSRECORD");
        write.integer(90, of - used.begin());
        write.text(2, "AcDbDs::ID");
        write.integer(280, type_handle);
        write.handle(320, one.owner);
        write.text(2, of->property);
        write.integer(280, type_bytes);
        write.integer(94, static_cast<std::int64_t>(one.bytes.size()));
        write.hexadecimal(310, one.bytes);
    }
    write.text(0, "ENDSEC");
}

} // namespace dwg
