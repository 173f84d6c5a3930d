// Chains of result buffers, and the wildcard match of the C interface.
#include "acutads.h"
#include "geassign.h"
#include "host/rx/result_buffer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

struct chain_owner {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using chain = std::unique_ptr<resbuf, chain_owner>;

TEST(acutBuildList, takes_every_kind_of_value) {
    const ads_point point = {1.5, -2.5, 3.5};
    const double flat[2] = {7.0, 8.0};
    const ads_name name = {12, -34};
    char bytes[] = {1, 0, 2};
    const ads_binary binary = {3, bytes};
    wchar_t layer[] = L"给水";

    const chain list(acutBuildList(RTDXF0, L"CIRCLE", 8, layer, 10, point, RTPOINT, flat, 40, 25.0, 70, -3,
                                   90, 100000, 160, Adesk::Int64{1} << 40, 330, name, 1004, &binary, RTLB,
                                   RTT, RTLE, -4, L"<OR", RTENAME, name, RTREAL, 0.5, RTSHORT, 7, RTLONG,
                                   -70000, RTSTR, L"", 1010, point, RTNONE));
    layer[0] = L'x';
    bytes[0] = 9;

    const resbuf* at = list.get();
    const auto next = [&at](int type) -> const ads_u_val& {
        static const ads_u_val none{};
        EXPECT_NE(at, nullptr) << type;
        if (at == nullptr)
            return none;
        EXPECT_EQ(at->restype, type);
        const ads_u_val& value = at->resval;
        at = at->rbnext;
        return value;
    };
    EXPECT_STREQ(next(0).rstring, L"CIRCLE");
    EXPECT_STREQ(next(8).rstring, L"给水"); // a copy
    EXPECT_EQ(asPnt3d(next(10).rpoint), AcGePoint3d(1.5, -2.5, 3.5));
    EXPECT_EQ(asPnt3d(next(RTPOINT).rpoint), AcGePoint3d(7.0, 8.0, 0.0));
    EXPECT_EQ(next(40).rreal, 25.0);
    EXPECT_EQ(next(70).rint, -3);
    EXPECT_EQ(next(90).rlong, 100000);
    EXPECT_EQ(next(160).mnInt64, 1099511627776);
    const ads_u_val& owner = next(330);
    EXPECT_TRUE(ads_name_equal(owner.rlname, name));
    const ads_binary& copy = next(1004).rbinary;
    EXPECT_EQ(std::string(copy.buf, static_cast<std::size_t>(copy.clen)), std::string("\1\0\2", 3));
    next(RTLB);
    next(RTT);
    next(RTLE);
    EXPECT_STREQ(next(-4).rstring, L"<OR");
    EXPECT_EQ(next(RTENAME).rlname[1], -34);
    EXPECT_EQ(next(RTREAL).rreal, 0.5);
    EXPECT_EQ(next(RTSHORT).rint, 7);
    EXPECT_EQ(next(RTLONG).rlong, -70000);
    EXPECT_STREQ(next(RTSTR).rstring, L"");
    EXPECT_EQ(next(1010).rpoint[2], 3.5);
    EXPECT_EQ(at, nullptr);
}

TEST(acutBuildList, refuses_bad_types_and_null_values) {
    const wchar_t* const no_text = nullptr;
    const ads_real* const no_point = nullptr;
    const struct {
        const char* what;
        resbuf* list;
    } rows[] = {
        {"the end at once", acutBuildList(0)},
        {"RTNONE at once", acutBuildList(RTNONE)},
        {"a code that nothing has", acutBuildList(8, L"0", 85, 1, 0)},
        {"a type that is none", acutBuildList(8, L"0", 4711, L"x", 0)},
        {"an answer's code", acutBuildList(RTNORM, 1, 0)},
        {"behind all codes", acutBuildList(1072, 1, 0)},
        {"a null text", acutBuildList(8, L"0", 2, no_text, 0)},
        {"a null point", acutBuildList(10, no_point, 0)},
    };
    for (const auto& r : rows)
        EXPECT_EQ(r.list, nullptr) << r.what;
}

TEST(result_buffer, kinds_by_group_code) {
    using enum rx::value_kind;
    // Both ends of what is told apart in the reference of the drawing format.
    const struct {
        int first;
        int last;
        rx::value_kind kind;
    } rows[] = {
        {1, 9, text},          {10, 18, point3d},   {38, 59, real},       {60, 79, int16},
        {80, 89, unknown},     {90, 99, int32},     {100, 102, text},     {103, 104, unknown},
        {105, 105, text},      {110, 112, point3d}, {140, 149, real},     {150, 159, unknown},
        {160, 169, int64},     {170, 179, int16},   {210, 210, point3d},  {240, 269, unknown},
        {270, 289, int16},     {290, 299, int16},   {300, 309, text},     {310, 319, binary},
        {320, 329, text},      {330, 369, name},    {370, 389, int16},    {390, 399, name},
        {400, 409, int16},     {410, 419, text},    {420, 429, int32},    {430, 439, text},
        {440, 459, int32},     {460, 469, real},    {470, 479, text},     {480, 481, name},
        {482, 998, unknown},   {999, 1003, text},   {1004, 1004, binary}, {1005, 1005, text},
        {1010, 1013, point3d}, {1040, 1042, real},  {1060, 1070, int16},  {1071, 1071, int32},
        {1072, 4999, unknown}, {-2, -1, name},      {-3, -3, none},       {-4, -4, text},
        {-9, -6, unknown},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(rx::kind_of(r.first), r.kind) << r.first;
        EXPECT_EQ(rx::kind_of(r.last), r.kind) << r.last;
    }
}

TEST(resbuf, owns_its_texts) {
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
    resbuf* const one = acutNewRb(RTSTR);
    EXPECT_EQ(one->rbnext, nullptr);
    EXPECT_EQ(one->resval.rstring, nullptr);
    one->rbnext = acutNewRb(10);
    one->rbnext->rbnext = acutNewRb(1);
    // Programs put texts of their own there.
    one->rbnext->rbnext->resval.rstring = new ACHAR[2]{L'x', 0};
    EXPECT_EQ(acutNewString(L"给水", one->resval.rstring), Acad::eOk);
    EXPECT_EQ(acutUpdString(L"热水", one->resval.rstring), Acad::eOk);
    EXPECT_EQ(acutUpdString(nullptr, one->resval.rstring), Acad::eInvalidInput);
    EXPECT_STREQ(one->resval.rstring, L"热水");
    EXPECT_EQ(acutRelRb(one), RTNORM);

    ACHAR* text = nullptr;
    acutDelString(text);
    EXPECT_EQ(acutUpdString(L"new", text), Acad::eOk);
    acutDelString(text);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(acutNewString(nullptr, text), Acad::eInvalidInput);
}

TEST(acutWcMatch, respects_case) {
    struct row {
        const wchar_t* text;
        const wchar_t* pattern;
        int answer;
    };
    const row rows[] = {
        {L"PIPE-给水", L"PIPE-*", RTNORM},
        {L"pipe-给水", L"PIPE-*", RTERROR},
        {L"J1", L"@#", RTNORM},
        {L"J-1", L"@.#", RTNORM},
        {L"W", L"J,W", RTNORM},
        {L"J1", L"~J*", RTERROR},
        {L"a*b", L"a`*b", RTNORM},
        {L"axb", L"a`*b", RTERROR},
        {L"B", L"[A-C]", RTNORM},
        {nullptr, L"*", RTERROR},
        {L"", nullptr, RTERROR},
        {L"", L"*", RTNORM},
    };
    for (const row& r : rows)
        EXPECT_EQ(acutWcMatch(r.text, r.pattern), r.answer) << (r.pattern != nullptr ? r.pattern : L"null");
}

} // namespace
