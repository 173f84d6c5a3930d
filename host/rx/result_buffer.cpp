#include "host/rx/result_buffer.h"

#include "acutads.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cwchar>
#include <iterator>

namespace rx {

namespace {

struct range {
    int first;
    int last;
    value_kind kind;
};

// Group codes of drawing files, and of the lists that selection filters and entity lists are made of; sorted.
constexpr range ranges[] = {
    {-5, -5, value_kind::name},
    {-4, -4, value_kind::text},
    {-3, -3, value_kind::none},
    {-2, -1, value_kind::name},
    {0, 9, value_kind::text},
    {10, 19, value_kind::point3d},
    {20, 59, value_kind::real},
    {60, 79, value_kind::int16},
    {90, 99, value_kind::int32},
    {100, 102, value_kind::text},
    {105, 105, value_kind::text},
    {110, 119, value_kind::point3d},
    {120, 149, value_kind::real},
    {160, 169, value_kind::int64},
    {170, 179, value_kind::int16},
    {210, 219, value_kind::point3d},
    {220, 239, value_kind::real},
    {270, 299, value_kind::int16},
    {300, 309, value_kind::text},
    {310, 319, value_kind::binary},
    {320, 329, value_kind::text},
    {330, 369, value_kind::name},
    {370, 389, value_kind::int16},
    {390, 399, value_kind::name},
    {400, 409, value_kind::int16},
    {410, 419, value_kind::text},
    {420, 429, value_kind::int32},
    {430, 439, value_kind::text},
    {440, 459, value_kind::int32},
    {460, 469, value_kind::real},
    {470, 479, value_kind::text},
    {480, 481, value_kind::name},
    {999, 1003, value_kind::text},
    {1004, 1004, value_kind::binary},
    {1005, 1009, value_kind::text},
    {1010, 1019, value_kind::point3d},
    {1020, 1059, value_kind::real},
    {1060, 1070, value_kind::int16},
    {1071, 1071, value_kind::int32},
    {RTREAL, RTREAL, value_kind::real},
    {RTPOINT, RTPOINT, value_kind::point2d},
    {RTSHORT, RTSHORT, value_kind::int16},
    {RTANG, RTANG, value_kind::real},
    {RTSTR, RTSTR, value_kind::text},
    {RTENAME, RTPICKS, value_kind::name},
    {RTORINT, RTORINT, value_kind::real},
    {RT3DPOINT, RT3DPOINT, value_kind::point3d},
    {RTLONG, RTLONG, value_kind::int32},
    {RTVOID, RTVOID, value_kind::none},
    {RTLB, RTNIL, value_kind::none},
    {RTDXF0, RTDXF0, value_kind::text},
    {RTT, RTT, value_kind::none},
};

constexpr value_kind find_kind(int type) {
    const range* const found = std::lower_bound(std::begin(ranges), std::end(ranges), type,
                                                [](const range& r, int t) { return r.last < t; });
    return found != std::end(ranges) && found->first <= type ? found->kind : value_kind::unknown;
}

// Those of the group codes of files, one by one: each value that is read or written asks for it.
constexpr auto kinds_of_codes = [] {
    constexpr int highest_code = 1071;
    std::array<value_kind, highest_code + 1> kinds{};
    for (int code = 0; code <= highest_code; ++code)
        kinds[static_cast<std::size_t>(code)] = find_kind(code);
    return kinds;
}();

} // namespace

value_kind kind_of(int type) {
    const auto code = static_cast<std::size_t>(type); // below nought: far above all of them
    return code < kinds_of_codes.size() ? kinds_of_codes[code] : find_kind(type);
}

} // namespace rx

using rx::value_kind;

Acad::ErrorStatus acutNewString(const ACHAR* text, ACHAR*& copy) {
    copy = nullptr;
    if (text == nullptr)
        return Acad::eInvalidInput;
    const std::size_t size = std::wcslen(text) + 1;
    copy = new ACHAR[size];
    std::copy_n(text, size, copy);
    return Acad::eOk;
}

void acutDelString(ACHAR*& text) {
    delete[] text;
    text = nullptr;
}

Acad::ErrorStatus acutUpdString(const ACHAR* text, ACHAR*& old) {
    ACHAR* copy;
    const Acad::ErrorStatus status = acutNewString(text, copy);
    if (status == Acad::eOk) {
        delete[] old;
        old = copy;
    }
    return status;
}

resbuf* acutNewRb(int type) {
    auto* const made = new resbuf{};
    made->restype = static_cast<short>(type);
    return made;
}

int acutRelRb(resbuf* chain) {
    while (chain != nullptr) {
        resbuf* const next = chain->rbnext;
        switch (rx::kind_of(chain->restype)) {
        case value_kind::text:
            delete[] chain->resval.rstring;
            break;
        case value_kind::binary:
            delete[] chain->resval.rbinary.buf;
            break;
        default:
            break;
        }
        delete chain;
        chain = next;
    }
    return RTNORM;
}

namespace {

// Takes the value of the given kind from the arguments. False for a null pointer and for the unknown kind.
bool take_value(value_kind kind, ads_u_val& value, va_list& arguments) {
    switch (kind) {
    case value_kind::none:
        return true;
    case value_kind::real:
        value.rreal = va_arg(arguments, double);
        return true;
    case value_kind::int16:
        value.rint = static_cast<short>(va_arg(arguments, int));
        return true;
    case value_kind::int32:
        value.rlong = va_arg(arguments, int);
        return true;
    case value_kind::int64:
        value.mnInt64 = va_arg(arguments, Adesk::Int64);
        return true;
    case value_kind::point2d:
    case value_kind::point3d: {
        const ads_real* const point = va_arg(arguments, const ads_real*);
        if (point == nullptr)
            return false;
        std::copy_n(point, kind == value_kind::point2d ? 2 : 3, value.rpoint);
        return true;
    }
    case value_kind::name: {
        const Adesk::IntPtr* const name = va_arg(arguments, const Adesk::IntPtr*);
        if (name == nullptr)
            return false;
        std::copy_n(name, 2, value.rlname);
        return true;
    }
    case value_kind::text:
        return acutNewString(va_arg(arguments, const ACHAR*), value.rstring) == Acad::eOk;
    case value_kind::binary: {
        const ads_binary* const bytes = va_arg(arguments, const ads_binary*);
        if (bytes == nullptr || bytes->clen < 0 || (bytes->buf == nullptr && bytes->clen != 0))
            return false;
        value.rbinary.clen = bytes->clen;
        value.rbinary.buf = new char[static_cast<std::size_t>(bytes->clen)];
        std::copy_n(bytes->buf, bytes->clen, value.rbinary.buf);
        return true;
    }
    case value_kind::unknown:
        break;
    }
    return false;
}

} // namespace

resbuf* rx::build_list(int type, va_list& arguments) {
    resbuf* chain = nullptr;
    resbuf** end = &chain;
    for (; type != 0 && type != RTNONE; type = va_arg(arguments, int)) {
        *end = acutNewRb(type == RTDXF0 ? 0 : type);
        if (!take_value(rx::kind_of(type), (*end)->resval, arguments)) {
            acutRelRb(chain);
            chain = nullptr;
            break;
        }
        end = &(*end)->rbnext;
    }
    return chain;
}

resbuf* acutBuildList(int type, ...) {
    va_list arguments;
    va_start(arguments, type);
    resbuf* const chain = rx::build_list(type, arguments);
    va_end(arguments);
    return chain;
}
