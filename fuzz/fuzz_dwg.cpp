// Any bytes as a DWG file, as the object that they would be with the right check sum, as a body, as a data
// store, or as a packed page. The first byte tells which. What can be read of them can be read again as DXF,
// and costs no more than it is long.
#include "host/dwg/bits.h"
#include "host/dwg/checksums.h"
#include "host/dwg/container.h"
#include "host/dwg/data_store.h"
#include "host/dwg/drawing_reader.h"
#include "host/dwg/modeler_text.h"
#include "host/dwg/record_writer.h"
#include "host/dxf/drawing.h"

#include <cstdlib>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

void read_file(const std::string& bytes) {
    const auto read = dwg::read_drawing(bytes);
    if (!read) {
        insist(!read.error().empty());
        return;
    }
    insist(!dwg::notes(*read).empty());
    static_cast<void>(dxf::drawing::from_bytes(bytes));
}

// All classes that have rows, in their order.
std::vector<dwg::class_entry> classes() {
    std::vector<dwg::class_entry> all;
    for (const dwg::object_type& type : dwg::object_types())
        if (!type.row->class_name.empty()) {
            dwg::class_entry& one = all.emplace_back();
            one.dxf_name = type.row->class_name;
            one.is_entity = type.row->role == dwg::role::entity;
        }
    return all;
}

void read_store(std::string_view bytes) {
    std::vector<std::wstring> damage;
    std::string out;
    const dwg::object_source source;
    dwg::record_writer write(out, source);
    dwg::write_data_store(write, dwg::read_data_store(bytes, damage));
    constexpr std::size_t schemas = 4000;
    insist(out.size() <= 20 * bytes.size() + schemas);
}

void read_body(std::string_view bytes) {
    dwg::bit_reader in(bytes);
    insist(dwg::modeler_text(in).size() <= 20 * bytes.size() + 100);
}

// The size in front and the check sum behind are put right, so that what is between is looked at.
void read_object(std::string_view body, int version) {
    if (body.size() < 8 || body.size() > 0x7FFF)
        return;
    dwg::bit_reader head(body);
    std::string bytes;
    bytes += static_cast<char>(body.size());
    bytes += static_cast<char>(body.size() >> 8);
    if (version >= dwg::r2010) { // the size of the handles follows
        bytes += static_cast<char>(body[0] & 0x7F);
        body.remove_prefix(1);
        head = dwg::bit_reader(body);
        const unsigned kind = head.BB();
        kind < 2 ? head.skip(8) : head.skip(16);
        bytes[0] = static_cast<char>(body.size());
        bytes[1] = static_cast<char>(body.size() >> 8);
    } else {
        head.BS();
        head.RL();
    }
    const std::uint64_t handle = head.H(0).handle;
    bytes += body;
    const std::uint16_t sum = dwg::crc16(bytes, dwg::crc_start);
    bytes += static_cast<char>(sum);
    bytes += static_cast<char>(sum >> 8);
    dwg::object_source source;
    source.objects = bytes;
    source.version = version;
    source.classes = classes();
    dwg::object_reader object(source);
    std::string out;
    dwg::record_writer write(out, source);
    if (!object.open(0, handle))
        return;
    object.read_extended_data();
    write.extended_data(object.extended);
    if (object.read_fields()) {
        write.fields(object, object.type->order);
    } else if (object.open(0, handle)) {
        write.proxy(object, object.data.at(), 500);
    }
    constexpr std::size_t longest = 600; // bytes of text that one byte of an object can become
    insist(out.size() <= longest * (bytes.size() + 10));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.empty())
        return 0;
    const auto kind = static_cast<unsigned char>(bytes.front());
    constexpr int versions[] = {dwg::r2000, dwg::r2004, dwg::r2007, dwg::r2010, dwg::r2013, dwg::r2018};
    constexpr std::size_t room = 0x7400;
    std::string out;
    if (kind == 'A') // as files begin
        read_file(std::string(bytes));
    else if (kind < std::size(versions))
        read_object(bytes.substr(1), versions[kind]);
    else if (kind == std::size(versions))
        read_store(bytes.substr(1));
    else if (kind == std::size(versions) + 1)
        read_body(bytes.substr(1));
    else if (kind % 2 == 0)
        static_cast<void>(dwg::unpack_2004(bytes.substr(1), room, out));
    else
        static_cast<void>(dwg::unpack_2007(bytes.substr(1), room, out));
    insist(out.size() <= room);
    return 0;
}
