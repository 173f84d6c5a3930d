#include "host/db/core/extended_data.h"

#include "acutmem.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "dbid.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "host/rx/result_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace db {

namespace {

constexpr int application_code = 1001;
constexpr std::size_t most_extended_data = 16 * 1024; // bytes per object, all applications together

// Where the y and z of a point stand, relative to its x.
constexpr int next_coordinate = 10;

// Whether the group `step` behind a point's x is its y (1) or z (2).
bool is_coordinate(std::span<const dxf::group> groups, std::size_t x, std::size_t step) {
    return groups[x + step].code == groups[x].code + static_cast<int>(step) * next_coordinate;
}

ACHAR* text_copy(const std::wstring& text) {
    ACHAR* copy = nullptr;
    acutNewString(text.c_str(), copy);
    return copy;
}

// The groups of one application: [first, last).
struct extent {
    std::size_t first, last;
};

std::vector<extent> applications(const dxf::group_list& list) {
    std::vector<extent> found;
    const auto& groups = list.groups();
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code == application_code)
            found.push_back({i, i + 1});
        else if (groups[i].code > application_code - 2 && !found.empty())
            found.back().last = i + 1;
    }
    return found;
}

} // namespace

std::string bytes_of_digits(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(dxf::parse_handle(digits.substr(i, 2)));
    return bytes;
}

void read_plain_value(const AcDbImpObject& object, std::span<const dxf::group> groups, std::size_t at,
                      resbuf& out) {
    const dxf::group& group = groups[at];
    const auto real = [&](std::size_t i) { return dxf::leading_real(groups[i].value).value_or(0.0); };
    const auto whole = [&] { return base::parse_integer(group.value).value_or(0); };
    switch (rx::kind_of(group.code)) {
    case rx::value_kind::real:
        out.resval.rreal = real(at);
        break;
    case rx::value_kind::point2d:
    case rx::value_kind::point3d:
        for (std::size_t i = 0; i < 3; ++i)
            out.resval.rpoint[i] =
                at + i < groups.size() && is_coordinate(groups, at, i) ? real(at + i) : 0.0;
        break;
    case rx::value_kind::int16:
        out.resval.rint = static_cast<short>(whole());
        break;
    case rx::value_kind::int32:
        out.resval.rlong = static_cast<Adesk::Int32>(whole());
        break;
    case rx::value_kind::int64:
        out.resval.mnInt64 = whole();
        break;
    case rx::value_kind::name:
        if (object.database != nullptr)
            out.resval.rlname[0] =
                object.database->id(object.database->records().find(dxf::parse_handle(group.value)))
                    .asOldId();
        break;
    case rx::value_kind::text:
    case rx::value_kind::binary:
    case rx::value_kind::none:
    case rx::value_kind::unknown:
        break;
    }
}

std::size_t groups_of_value(std::span<const dxf::group> groups, std::size_t at) {
    std::size_t taken = 1;
    if (rx::kind_of(groups[at].code) == rx::value_kind::point3d)
        while (taken < 3 && at + taken < groups.size() && is_coordinate(groups, at, taken))
            ++taken;
    return taken;
}

std::size_t read_value(const AcDbImpObject& object, std::span<const dxf::group> groups, std::size_t at,
                       resbuf*& value) {
    value = nullptr;
    const rx::value_kind kind = rx::kind_of(groups[at].code);
    if (kind == rx::value_kind::unknown || kind == rx::value_kind::none)
        return 1;
    value = acutNewRb(groups[at].code);
    if (kind == rx::value_kind::text) {
        value->resval.rstring = text_copy(object.decode(groups[at].value));
    } else if (kind == rx::value_kind::binary) {
        const std::string bytes = bytes_of_digits(dxf::trimmed(groups[at].value));
        ads_binary& binary = value->resval.rbinary;
        binary.clen = static_cast<short>(bytes.size());
        binary.buf = new char[bytes.size() + 1]; // acutRelRb frees it
        std::memcpy(binary.buf, bytes.data(), bytes.size());
    } else {
        read_plain_value(object, groups, at, *value);
    }
    return groups_of_value(groups, at);
}

resbuf* chain_of(const AcDbImpObject& object, std::span<const dxf::group> groups) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (std::size_t i = 0; i < groups.size();) {
        i += read_value(object, groups, i, *tail); // what no chain can hold the file does
        if (*tail != nullptr)
            tail = &(*tail)->rbnext;
    }
    return head;
}

bool groups_of(const AcDbImpObject& object, const resbuf* chain, bool (*allowed)(int code),
               std::vector<dxf::group_list::fresh_group>& groups) {
    for (; chain != nullptr; chain = chain->rbnext) {
        const int code = chain->restype;
        if (!allowed(code))
            return false;
        switch (rx::kind_of(code)) {
        case rx::value_kind::real:
            if (!std::isfinite(chain->resval.rreal))
                return false; // the file can not hold it
            groups.push_back({code, base::real_text(chain->resval.rreal)});
            break;
        case rx::value_kind::point2d:
        case rx::value_kind::point3d:
            for (int i = 0; i < 3; ++i) {
                if (!std::isfinite(chain->resval.rpoint[i]))
                    return false;
                groups.push_back({code + i * next_coordinate, base::real_text(chain->resval.rpoint[i])});
            }
            break;
        case rx::value_kind::int16:
            groups.push_back({code, std::to_string(chain->resval.rint)});
            break;
        case rx::value_kind::int32:
            groups.push_back({code, std::to_string(chain->resval.rlong)});
            break;
        case rx::value_kind::int64:
            groups.push_back({code, std::to_string(chain->resval.mnInt64)});
            break;
        case rx::value_kind::name: {
            AcDbObjectId id;
            id.setFromOldId(chain->resval.rlname[0]);
            groups.push_back({code, handle_text(id.handle())});
            break;
        }
        case rx::value_kind::text:
            if (chain->resval.rstring == nullptr)
                return false;
            groups.push_back({code, object.encode(chain->resval.rstring)});
            break;
        case rx::value_kind::binary: {
            std::string digits;
            for (short i = 0; i < chain->resval.rbinary.clen; ++i) {
                char two[3];
                std::snprintf(two, sizeof two, "%02X",
                              static_cast<unsigned char>(chain->resval.rbinary.buf[i]));
                digits += two;
            }
            groups.push_back({code, std::move(digits)});
            break;
        }
        case rx::value_kind::none:
        case rx::value_kind::unknown:
            return false;
        }
    }
    return true;
}

resbuf* read_extended_data(const AcDbImpObject& object, const ACHAR* application) {
    const auto& groups = object.groups().groups();
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const extent& one : applications(object.groups())) {
        if (application != nullptr &&
            !base::equal_no_case(object.decode(groups[one.first].value), application))
            continue;
        *tail = chain_of(object, std::span(groups).subspan(one.first, one.last - one.first));
        while (*tail != nullptr)
            tail = &(*tail)->rbnext;
    }
    return head;
}

Acad::ErrorStatus write_extended_data(AcDbImpObject& object, const resbuf* chain) {
    if (chain == nullptr || chain->restype != application_code)
        return Acad::eInvalidResBuf;
    std::vector<dxf::group_list::fresh_group> fresh;
    if (!groups_of(
            object, chain, [](int code) { return code >= 1000 && code <= 1071; }, fresh))
        return Acad::eInvalidResBuf;
    int depth = 0;
    std::size_t size = 0;
    for (const auto& group : fresh) {
        if (group.code == application_code && object.database != nullptr &&
            object.database->names().find(table_kind::regapp, object.decode(group.value)) == dxf::no_record)
            return Acad::eRegappIdNotFound;
        if (group.code == 1002)
            depth += group.value == "{" ? 1 : -1;
        if (depth < 0)
            return Acad::eInvalidResBuf;
        size += group.value.size() + 2;
        constexpr std::size_t longest_text = 255;      // characters
        constexpr std::size_t longest_bytes = 2 * 127; // as digits
        if ((group.code == 1000 && object.decode(group.value).size() > longest_text) ||
            (group.code == 1004 && group.value.size() > longest_bytes))
            return Acad::eInvalidResBuf;
    }
    if (depth != 0)
        return Acad::eInvalidResBuf;

    dxf::group_list& list = object.edit();
    const auto same = [&](std::string_view a, std::string_view b) {
        return base::equal_no_case(object.decode(a), object.decode(b));
    };
    for (const extent& other : applications(list)) {
        const std::string_view name = list.groups()[other.first].value;
        if (std::none_of(fresh.begin(), fresh.end(), [&](const auto& group) {
                return group.code == application_code && same(group.value, name);
            }))
            for (std::size_t i = other.first; i < other.last; ++i)
                size += list.groups()[i].value.size() + 2;
    }
    if (size > most_extended_data)
        return Acad::eXdataSizeExceeded;

    // Each application's data takes the place of what it had; new data goes behind all.
    for (std::size_t first = 0; first < fresh.size();) {
        std::size_t last = first + 1;
        while (last < fresh.size() && fresh[last].code != application_code)
            ++last;
        std::size_t from = list.groups().size();
        std::size_t to = from;
        for (const extent& one : applications(list))
            if (same(list.groups()[one.first].value, fresh[first].value)) {
                from = one.first;
                to = one.last;
            }
        const bool keeps_data = last - first > 1; // a name alone takes the data away
        list.splice(from, to, std::span(fresh).subspan(first, keeps_data ? last - first : 0));
        first = last;
    }
    return Acad::eOk;
}

} // namespace db
