#include "host/version/conversion.h"

#include "host/db/core/format_versions.h"
#include "host/db/core/record_text.h"
#include "host/dxf/encoding_guess.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace version {

namespace {

// Whether an encoding has the letters of all names of layers.
bool has_all_layers(const dxf::drawing& source, int encoding) {
    const dxf::text_codec codec(encoding);
    const dxf::name_set& names = source.records().layer_names();
    for (std::uint32_t i = 0; i < names.size(); ++i)
        if (codec.encode(source.codec().decode(names[i])).find("\\U+") != std::string::npos)
            return false;
    return true;
}

} // namespace

int encoding_of(const dxf::drawing& source, int version) {
    if (version >= db::release_2007)
        return dxf::utf8_page;
    const int own = source.codec().number();
    if (own != dxf::utf8_page)
        return own;
    const int named = dxf::code_page_number(source.header_value("$DWGCODEPAGE").value_or(""));
    const int usual = named != 0 && named != dxf::utf8_page ? dxf::text_codec(named).number() : 1252;
    for (const int page : {usual, 936, 950, 932, 949, 1251, 1250, 1253, 1254})
        if (has_all_layers(source, page))
            return page;
    return usual;
}

std::string code_page_name(const dxf::drawing& source, int encoding) {
    const std::string_view named = source.header_value("$DWGCODEPAGE").value_or("");
    const int number = dxf::code_page_number(named);
    if (number != 0 && (number == encoding || encoding == dxf::utf8_page) && number != dxf::utf8_page)
        return std::string(named);
    if (encoding == dxf::utf8_page)
        return source.codec().number() == dxf::utf8_page ? "ANSI_1252"
                                                         : code_page_name(source, source.codec().number());
    constexpr int first_iso = 28591;
    constexpr int last_iso = 28605;
    if (encoding >= first_iso && encoding <= last_iso)
        return "ISO8859-" + std::to_string(encoding - first_iso + 1);
    constexpr int dos[] = {437, 850, 852, 855, 857, 860, 861, 863, 864, 865, 866, 869};
    return (std::find(std::begin(dos), std::end(dos), encoding) != std::end(dos) ? "DOS" : "ANSI_") +
           std::to_string(encoding);
}

conversion::conversion(AcDbImpDatabase& given, int version, output::taker put)
    : database(given), source(given.drawing()), records(given.records()), from(source.version()), to(version),
      codec(encoding_of(source, version)), recodes(codec.number() != source.codec().number()),
      out(std::move(put), source.style()) {
    std::uint64_t highest = 0;
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.handle(id) < dxf::absurd_handle)
            highest = std::max(highest, records.handle(id));
    const std::uint64_t named = dxf::parse_handle(source.header_value("$HANDSEED").value_or(""));
    next_handle_ = std::max(highest + 1, named < dxf::absurd_handle ? named : 0);
}

bool conversion::needs_recoding(std::string_view bytes) const {
    return recodes && std::any_of(bytes.begin(), bytes.end(),
                                  [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

void conversion::put(const dxf::raw_group& group) {
    if (!recodes || !needs_recoding(group.value) || dxf::kind_of_code(group.code) != dxf::value_kind::text)
        out.raw({group.begin, static_cast<std::size_t>(group.end - group.begin)});
    else
        out.group(group.code, text(group.value));
}

void conversion::put(int code, std::string_view value) {
    if (needs_recoding(value))
        out.group(code, text(value));
    else
        out.group(code, value);
}

std::vector<dxf::record_id> conversion::members(dxf::record_id container) const {
    std::vector<dxf::record_id> all;
    if (container == dxf::no_record)
        return all;
    const std::uint32_t closing = records.kind(container) == dxf::record_kind::table   ? dxf::type_endtab
                                  : records.kind(container) == dxf::record_kind::block ? dxf::type_endblk
                                                                                       : dxf::type_endsec;
    for (dxf::record_id id = records.next(container); id != dxf::no_record; id = records.next(id)) {
        if (records.type(id) == closing && records.kind(id) != dxf::record_kind::entity)
            break;
        if (source.is_saved(id))
            all.push_back(id);
    }
    return all;
}

void output::handle(int code, std::uint64_t handle) {
    group(code, db::handle_text(handle));
}

} // namespace version
