#include "host/dwg/container.h"

#include "base/byte_order.h"
#include "base/utf.h"
#include "host/dwg/checksums.h"

#include <algorithm>

namespace dwg {

namespace {

using base::little_endian;

constexpr std::string_view wanted[] = {"AcDb:Header",          "AcDb:Classes",  "AcDb:Handles",
                                       "AcDb:AcDbObjects",     "AcDb:Template", "AcDb:SummaryInfo",
                                       "AcDb:AcDsPrototype_1b"};

// What can not be read, by the first six bytes.
std::wstring unknown_version(std::string_view bytes) {
    const std::string_view name = bytes.substr(0, 6);
    const bool older = name < "AC1015";
    return L"this is a DWG file of a version that can not be read (" + base::widen(name) + L", " +
           (older ? L"before AutoCAD 2000" : L"unknown") +
           L"); save it as DXF or as DWG of 2000 to 2018 first";
}

} // namespace

base::result<container> open_container(std::string_view bytes) {
    constexpr std::size_t least = 0x100;
    if (bytes.size() < least)
        return base::failure{L"this DWG file ends inside of its head"};
    container out;
    for (int digit = 2; digit < 6; ++digit)
        out.version = out.version * 10 + (bytes[static_cast<std::size_t>(digit)] - '0');
    out.maintenance = static_cast<unsigned char>(bytes[0x0B]);
    out.code_page = static_cast<int>(little_endian(bytes, 0x13, 2));
    base::result<void> opened;
    switch (out.version) {
    case r2000:
        opened = open_2000(bytes, out);
        break;
    case r2007:
        opened = open_2007(bytes, out);
        break;
    case r2004:
    case r2010:
    case r2013:
    case r2018:
        opened = open_2004(bytes, out);
        break;
    default:
        return base::failure{unknown_version(bytes)};
    }
    if (!opened)
        return opened.why();
    if (out.handles.empty() || out.objects.empty())
        return base::failure{L"this DWG file holds no map of its objects"};
    return out;
}

bool is_wanted(std::string_view name) {
    return std::find(std::begin(wanted), std::end(wanted), name) != std::end(wanted);
}

void keep_section(container& out, std::string_view name, std::string bytes) {
    out.unpacked.push_back(std::move(bytes));
    const std::string_view view = out.unpacked.back();
    const auto at = std::find(std::begin(wanted), std::end(wanted), name) - std::begin(wanted);
    std::string_view* const views[] = {&out.header,      &out.classes, &out.handles,   &out.objects,
                                       &out.measurement, &out.summary, &out.data_store};
    *views[at] = view;
}

base::result<void> open_2000(std::string_view bytes, container& out) {
    constexpr std::size_t records = 0x19;
    constexpr std::size_t record_size = 9;
    const std::uint32_t count = little_endian(bytes, 0x15, 4);
    constexpr std::uint32_t most = 24;
    if (count > most)
        return base::failure{L"byte 21: the list of sections of this DWG file can not be so long"};
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = records + i * record_size;
        const std::size_t begin = little_endian(bytes, at + 1, 4);
        const std::size_t size = little_endian(bytes, at + 5, 4);
        if (begin > bytes.size() || size > bytes.size() - begin) {
            out.damage.push_back(L"section " + std::to_wstring(bytes[at]) + L" lies outside of the file");
            continue;
        }
        const std::string_view section = bytes.substr(begin, size);
        switch (bytes[at]) {
        case 0:
            out.header = section;
            break;
        case 1:
            out.classes = section;
            break;
        case 2:
            out.handles = section;
            break;
        case 4:
            out.measurement = section;
            break;
        default:
            break;
        }
    }
    constexpr std::uint16_t masks[] = {0xA598, 0x8101, 0x3CC4, 0x8461};
    const std::size_t end = records + count * record_size;
    if (count >= 3 && count <= 6 &&
        (crc16(bytes.substr(0, end), 0) ^ masks[count - 3]) != little_endian(bytes, end, 2))
        out.damage.emplace_back(L"the check sum of the file's head is wrong");
    out.objects = bytes;
    return {};
}

} // namespace dwg
