// Filters of acedSSGet: a table of what they select, and random ones against a slow, obvious evaluator.
#include "acutmem.h"
#include "geassign.h"
#include "tests/ed_session.h"
#include "tests/support.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <random>
#include <sstream>

namespace {

std::string selected(resbuf* chain) {
    ads_name set;
    const int answered = acedSSGet(L"_X", nullptr, nullptr, chain, set);
    acutRelRb(chain);
    if (answered == RTREJ)
        return "refused";
    return answered == RTNORM ? test::handles_of(set) : "";
}

resbuf* rb(auto... values) {
    return acutBuildList(values..., 0);
}

} // namespace

TEST(EdFilter, SelectsByGroupsOperatorsAndBrackets) {
    test::session session(test::drawing("r2018.dxf"));
    const AcDbObjectId model_id = session.database().self().currentSpaceId();
    ads_name model;
    acdbGetAdsName(model, model_id);
    ads_point origin = {0.0, 0.0, 0.0};
    ads_point corner = {500.0, 300.0, 0.0};
    ads_point up = {0.0, 0.0, 1.0};
    struct row {
        const char* what;
        resbuf* chain;
        const char* expected;
    };
    for (const row& row : {
             row{"wildcards", rb(RTDXF0, L"insert,LWPOLY*"), "105 103"},
             row{"a pattern of a name that holds a sign", rb(8, L"PIPE`-*", RTDXF0, L"LINE"), "104 102"},
             row{"two layers at once", rb(8, L"墙体", 8, L"PIPE-给水"), ""},
             row{"any of two", rb(-4, L"<OR", 8, L"墙体", 8, L"家具", -4, L"OR>"), "10A 108 101 100"},
             row{"not", rb(-4, L"<not", RTDXF0, L"LINE", -4, L"not>"), "10A 105 103"},
             row{"one of two", rb(-4, L"<XOR", RTDXF0, L"LINE", 8, L"PIPE*", -4, L"XOR>"),
                 "10B 109 108 105 103 101 100"},
             row{"brackets in brackets",
                 rb(-4, L"<OR", -4, L"<AND", RTDXF0, L"LINE", 8, L"墙体", -4, L"AND>", RTDXF0, L"TEXT", -4,
                    L"OR>"),
                 "10A 101 100"},
             row{"what is left out has a default", rb(62, 256, 8, L"PIPE-给水"), "105 103"},
             row{"a linetype that is left out", rb(6, L"bylayer", RTDXF0, L"INSERT"), "105"},
             row{"an application", rb(-3, 1001, L"zef_*"), "102"},
             row{"an application, and more", rb(-3, 1001, L"ZEF_TEST", 8, L"墙体"), ""},
             row{"two applications", rb(-3, 1001, L"ZEF_TEST", 1001, L"OTHER"), ""},
             row{"names of applications elsewhere", rb(1001, L"OTHER", RTDXF0, L"TEXT"), "10A"},
             row{"a point", rb(10, corner), "103 102"},
             row{"where several begin", rb(10, origin, RTDXF0, L"LINE"), "10B 109 100"},
             row{"relations by coordinate", rb(-4, L">=,<,*", 10, corner, RTDXF0, L"LINE"), ""},
             row{"fewer relations than coordinates", rb(-4, L">", 10, corner, RTDXF0, L"LINE"), "108"},
             row{"a direction that is left out", rb(210, up, RTDXF0, L"INSERT"), "105"},
             row{"a number", rb(-4, L">", 40, 349.0, RTDXF0, L"TEXT"), "10A"},
             row{"bits", rb(-4, L"&", 60, 1), "109"},
             row{"all bits", rb(-4, L"&=", 60, 3), ""},
             row{"a sign by another name", rb(-4, L"/=", 60, 0), "109"},
             row{"paper space", rb(67, 1), "10B"},
             row{"model space by its tab", rb(410, L"model", RTDXF0, L"TEXT,INSERT"), "10A 105"},
             row{"an owner", rb(330, model, RTDXF0, L"TEXT"), "10A"},
             row{"what no filter looks at", rb(5, L"100", RTDXF0, L"TEXT"), "10A"},
             row{"a bracket that is not closed", rb(-4, L"<OR", 8, L"墙体"), "refused"},
             row{"one that is not opened", rb(-4, L"OR>"), "refused"},
             row{"the wrong one", rb(-4, L"<OR", 8, L"墙体", -4, L"AND>"), "refused"},
             row{"an empty one", rb(-4, L"<NOT", -4, L"NOT>"), "refused"},
             row{"two nots", rb(-4, L"<NOT", 62, 1, 62, 2, -4, L"NOT>"), "refused"},
             row{"one xor", rb(-4, L"<XOR", 62, 1, -4, L"XOR>"), "refused"},
             row{"no operator", rb(-4, L"?", 62, 1), "refused"},
             row{"an operator for nothing", rb(62, 1, -4, L"<"), "refused"},
             row{"an operator for a text", rb(-4, L"=", 8, L"0"), "refused"},
             row{"bits of a real number", rb(-4, L"&", 40, 1.0), "refused"},
             row{"three operators for a number", rb(-4, L"<,<", 62, 1), "refused"},
         })
        EXPECT_EQ(selected(row.chain), row.expected) << row.what;
}

namespace {

// ---- a drawing as a plain list, and a filter as a tree

using place = std::array<double, 3>;

struct entity {
    std::uint64_t handle = 0;
    std::wstring type;
    std::map<int, std::wstring> texts; // with what is left out
    std::map<int, std::vector<double>> numbers;
    std::map<int, std::vector<place>> points;
    std::vector<std::wstring> applications;
};

struct filter {
    enum class kind { all, some, one, none, text, number, point, application } what = kind::all;
    std::vector<filter> parts;
    int code = 0;
    std::wstring pattern;
    std::vector<std::wstring> signs;
    place value{};
};

// One alternative of a pattern, letter by letter.
bool matches_from(const std::wstring& text, std::size_t t, const std::wstring& pattern, std::size_t p) {
    if (p == pattern.size())
        return t == text.size();
    const wchar_t sign = pattern[p];
    if (sign == L'*')
        return matches_from(text, t, pattern, p + 1) ||
               (t < text.size() && matches_from(text, t + 1, pattern, p));
    if (t == text.size())
        return false;
    const wchar_t c = text[t];
    const bool digit = c >= L'0' && c <= L'9';
    const bool letter = (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c >= 128;
    const auto big = [](wchar_t x) { return x >= L'a' && x <= L'z' ? static_cast<wchar_t>(x - 32) : x; };
    if (sign == L'[') {
        const std::size_t close = pattern.find(L']', p);
        std::wstring set = pattern.substr(p + 1, close - p - 1);
        const bool outside = set.front() == L'~';
        if (outside)
            set.erase(0, 1);
        const bool in = set.size() == 3 && set[1] == L'-' ? big(c) >= big(set[0]) && big(c) <= big(set[2])
                                                          : set.find(big(c)) != set.npos;
        return in != outside && matches_from(text, t + 1, pattern, close + 1);
    }
    if (sign == L'`')
        return big(c) == big(pattern[p + 1]) && matches_from(text, t + 1, pattern, p + 2);
    const bool fits = sign == L'?'   ? true
                      : sign == L'#' ? digit
                      : sign == L'@' ? letter
                      : sign == L'.' ? !digit && !letter
                                     : big(c) == big(sign);
    return fits && matches_from(text, t + 1, pattern, p + 1);
}

bool matches(const std::wstring& text, const std::wstring& pattern) {
    std::wistringstream alternatives(pattern);
    for (std::wstring one; std::getline(alternatives, one, L',');) {
        const bool turned = one.starts_with(L'~');
        if (matches_from(text, 0, turned ? one.substr(1) : one, 0) != turned)
            return true;
    }
    return false;
}

bool related(double left, const std::wstring& sign, double right) {
    const auto bits = [](double value) { return static_cast<int>(value); };
    if (sign == L"<")
        return left < right;
    if (sign == L"<=")
        return left <= right;
    if (sign == L">")
        return left > right;
    if (sign == L">=")
        return left >= right;
    if (sign == L"!=" || sign == L"/=" || sign == L"<>")
        return left != right;
    if (sign == L"&")
        return (bits(left) & bits(right)) != 0;
    if (sign == L"&=")
        return (bits(left) & bits(right)) == bits(right);
    return sign == L"*" || left == right;
}

bool fits(const filter& tested, const entity& judged) {
    const auto fitting = std::count_if(tested.parts.begin(), tested.parts.end(),
                                       [&](const filter& part) { return fits(part, judged); });
    const auto parts = static_cast<std::ptrdiff_t>(tested.parts.size());
    const std::wstring sign = tested.signs.empty() ? L"=" : tested.signs.front();
    switch (tested.what) {
    case filter::kind::all:
        return fitting == parts;
    case filter::kind::some:
        return fitting > 0;
    case filter::kind::one:
        return fitting == 1;
    case filter::kind::none:
        return fitting == 0;
    case filter::kind::text: {
        const auto text = judged.texts.find(tested.code);
        return text != judged.texts.end() && matches(text->second, tested.pattern);
    }
    case filter::kind::application:
        return std::any_of(judged.applications.begin(), judged.applications.end(),
                           [&](const std::wstring& name) { return matches(name, tested.pattern); });
    case filter::kind::number: {
        const auto found = judged.numbers.find(tested.code);
        return found != judged.numbers.end() &&
               std::any_of(found->second.begin(), found->second.end(),
                           [&](double value) { return related(value, sign, tested.value[0]); });
    }
    case filter::kind::point: {
        const auto found = judged.points.find(tested.code);
        return found != judged.points.end() &&
               std::any_of(found->second.begin(), found->second.end(), [&](const place& value) {
                   for (std::size_t i = 0; i < 3; ++i) {
                       const std::wstring how = tested.signs.empty()      ? L"="
                                                : i < tested.signs.size() ? tested.signs[i]
                                                                          : L"*";
                       if (!related(value[i], how, tested.value[i]))
                           return false;
                   }
                   return true;
               });
    }
    }
    return false;
}

// ---- both as what the editor gets

void append(resbuf**& tail, int code, const auto& fill) {
    *tail = acutNewRb(code);
    fill((*tail)->resval);
    tail = &(*tail)->rbnext;
}

void append_text(resbuf**& tail, int code, const std::wstring& text) {
    append(tail, code, [&](ads_u_val& value) { acutNewString(text.c_str(), value.rstring); });
}

void append(resbuf**& tail, const filter& part) {
    static const std::map<filter::kind, std::wstring> names = {{filter::kind::all, L"AND"},
                                                               {filter::kind::some, L"Or"},
                                                               {filter::kind::one, L"xor"},
                                                               {filter::kind::none, L"NOT"}};
    if (const auto name = names.find(part.what); name != names.end()) {
        append_text(tail, -4, L"<" + name->second);
        for (const filter& inner : part.parts)
            append(tail, inner);
        append_text(tail, -4, name->second + L">");
        return;
    }
    if (!part.signs.empty()) {
        std::wstring all;
        for (const std::wstring& sign : part.signs)
            all += (all.empty() ? L"" : L",") + sign;
        append_text(tail, -4, all);
    }
    switch (part.what) {
    case filter::kind::application:
        append(tail, -3, [](ads_u_val&) {});
        append_text(tail, 1001, part.pattern);
        break;
    case filter::kind::text:
        append_text(tail, part.code, part.pattern);
        break;
    default:
        append(tail, part.code, [&](ads_u_val& value) {
            if (part.what == filter::kind::point)
                std::copy(part.value.begin(), part.value.end(), value.rpoint);
            else if (part.code < 60)
                value.rreal = part.value[0];
            else
                value.rint = static_cast<short>(part.value[0]);
        });
        break;
    }
}

class generator {
public:
    explicit generator(unsigned seed) : engine_(seed) {}

    int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine_); }
    bool chance(int percent) { return below(100) < percent; }
    template<class Choice>
    const Choice& any(const std::vector<Choice>& choices) {
        return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
    }

    // An entity, and its groups in the file.
    entity make_entity(std::uint64_t handle, std::string& file) {
        static const std::vector<std::wstring> types = {L"LINE", L"CIRCLE", L"TEXT", L"POINT", L"INSERT"};
        entity made;
        made.handle = handle;
        made.type = any(types);
        made.texts[0] = made.type;
        const auto group = [&](int code, const std::string& value) {
            file += std::to_string(code) + "\n" + value + "\n";
        };
        const auto text = [&](int code, const std::wstring& value, bool written) {
            made.texts[code] = value;
            if (written)
                group(code, base::narrow(value));
        };
        const auto number = [&](int code, int value, int missing) {
            made.numbers[code] = {static_cast<double>(value)};
            if (value != missing || chance(30))
                group(code, std::to_string(value) + (code < 60 ? ".0" : ""));
        };
        const auto stand = [&](int code) {
            const place at = {static_cast<double>(below(6)), static_cast<double>(below(6)),
                              static_cast<double>(below(2))};
            made.points[code].push_back(at);
            for (int i = 0; i < 3; ++i)
                group(code + 10 * i,
                      std::to_string(static_cast<int>(at[static_cast<std::size_t>(i)])) + ".0");
        };
        group(0, base::narrow(made.type));
        group(5, test::digits(handle));
        made.numbers[67] = {chance(15) ? 1.0 : 0.0};
        if (made.numbers[67][0] == 1.0)
            group(67, "1");
        text(8, any(layers_), true);
        const bool by_layer = chance(60);
        text(6, by_layer ? L"ByLayer" : any(linetypes_), !by_layer);
        number(62, chance(50) ? 256 : below(8), 256);
        number(60, chance(10) ? 1 : 0, 0);
        number(48, chance(70) ? 1 : 2, 1);
        if (made.type != L"INSERT")
            number(39, chance(70) ? 0 : below(4), 0);
        stand(10);
        if (made.type == L"LINE")
            stand(11);
        if (made.type == L"CIRCLE" || made.type == L"TEXT")
            number(40, below(5) + 1, -1);
        if (made.type == L"TEXT") {
            text(1, any(contents_), true);
            number(72, below(3), 0);
        }
        if (made.type == L"INSERT")
            text(2, any(contents_), true);
        if (made.type == L"INSERT" || made.type == L"TEXT")
            number(41, below(3) + 1, 1);
        for (const wchar_t* const name : {L"ALPHA", L"BETA_2"})
            if (chance(20)) {
                made.applications.emplace_back(name);
                group(1001, base::narrow(name));
                group(1000, "x");
            }
        return made;
    }

    filter make_filter(int depth) {
        filter made;
        const int choice = below(depth > 0 ? 11 : 8);
        if (choice >= 8) {
            static const std::vector<filter::kind> groups = {filter::kind::all, filter::kind::some,
                                                             filter::kind::one, filter::kind::none};
            made.what = any(groups);
            const int parts = made.what == filter::kind::one    ? 2
                              : made.what == filter::kind::none ? 1
                                                                : 1 + below(3);
            for (int i = 0; i < parts; ++i)
                made.parts.push_back(make_filter(depth - 1));
            return made;
        }
        if (choice < 3) {
            static const std::vector<std::pair<int, std::vector<std::wstring>>> names = {
                {0, {L"LINE", L"CIRCLE", L"TEXT", L"POINT", L"INSERT"}},
                {8, layers_},
                {6, {L"ByLayer", L"DASHED", L"DOT2"}},
                {1, contents_},
                {2, contents_}};
            const auto& [code, texts] = any(names);
            made.what = filter::kind::text;
            made.code = code;
            made.pattern = make_pattern(texts);
        } else if (choice < 4) {
            made.what = filter::kind::application;
            made.pattern = make_pattern({L"ALPHA", L"BETA_2"});
        } else if (choice < 6) {
            static const std::vector<int> codes = {62, 60, 48, 39, 40, 72, 41, 67};
            made.what = filter::kind::number;
            made.code = any(codes);
            made.value[0] = made.code == 62 && chance(40) ? 256 : below(8);
            if (chance(60))
                made.signs = {any(made.code < 60 ? real_signs_ : signs_)};
        } else {
            made.what = filter::kind::point;
            made.code = chance(70) ? 10 : 11;
            for (double& value : made.value)
                value = below(6);
            for (int i = below(4); i > 0; --i)
                made.signs.push_back(any(real_signs_));
        }
        return made;
    }

private:
    // A name, some of its letters hidden.
    std::wstring make_pattern(const std::vector<std::wstring>& names) {
        std::wstring pattern;
        for (int alternative = chance(25) ? 2 : 1; alternative > 0; --alternative) {
            std::wstring one = chance(20) ? L"~" : L"";
            for (const wchar_t c : any(names)) {
                const bool digit = c >= L'0' && c <= L'9';
                const bool letter = (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
                switch (below(14)) {
                case 0:
                    one += L"*";
                    break;
                case 1:
                    one += L"?";
                    break;
                case 2:
                    one += digit ? L"#" : letter ? L"@" : c < 128 ? L"." : L"?";
                    break;
                case 3:
                    one += digit ? L"[0-4]" : L"[A-M]";
                    break;
                case 4:
                    one += L"[~XYZ]";
                    break;
                default:
                    if (!digit && !letter && c < 128)
                        one += L'`';
                    one += c;
                    break;
                }
            }
            pattern += (pattern.empty() ? L"" : L",") + one;
        }
        return pattern;
    }

    std::mt19937 engine_;
    std::vector<std::wstring> layers_ = {L"0",   L"PIPE-1",    L"PIPE-2",    L"pipe-hot", L"WALL",
                                         L"A#1", L"管道-给水", L"管道-排水", L"X_Y",      L"DIM.1"};
    std::vector<std::wstring> linetypes_ = {L"DASHED", L"DOT2", L"Center"};
    std::vector<std::wstring> contents_ = {L"DN20", L"DN100", L"dn 32", L"JL-1", L"JL-12", L"厨房"};
    std::vector<std::wstring> real_signs_ = {L"=", L"!=", L"/=", L"<>", L"<", L"<=", L">", L">=", L"*"};
    std::vector<std::wstring> signs_ = {L"=", L"!=", L"<>", L"<", L"<=", L">", L">=", L"&", L"&=", L"*"};
};

} // namespace

TEST(EdFilter, SelectsWhatASlowEvaluatorSelects) {
    constexpr unsigned seed = 20211;
    constexpr int entities = 300;
    constexpr int filters = test::sanitized ? 500 : 2500;
    generator random(seed);
    std::string file = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n9\n$DWGCODEPAGE\n3\nUTF-8\n0\nENDSEC\n"
                       "0\nSECTION\n2\nENTITIES\n";
    std::vector<entity> drawing;
    for (std::uint64_t i = 0; i < entities; ++i)
        drawing.push_back(random.make_entity(0x100 + i, file));
    file += "0\nENDSEC\n0\nEOF\n";
    const test::folder folder;
    test::session session(folder.write("random.dxf", file));

    int empty = 0;
    for (int i = 0; i < filters; ++i) {
        filter tested;
        for (int parts = 1 + random.below(3); parts > 0; --parts)
            tested.parts.push_back(random.make_filter(2));
        resbuf* chain = nullptr;
        resbuf** tail = &chain;
        for (const filter& part : tested.parts)
            append(tail, part);
        std::string expected;
        for (auto judged = drawing.rbegin(); judged != drawing.rend(); ++judged)
            if (fits(tested, *judged))
                expected += (expected.empty() ? "" : " ") + test::digits(judged->handle);
        empty += expected.empty() ? 1 : 0;
        std::string shown;
        for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
            const bool text =
                node->restype == -4 || node->restype == 1001 || (node->restype >= 0 && node->restype < 10);
            shown += "(" + std::to_string(node->restype) + " " +
                     (text                  ? base::narrow(node->resval.rstring)
                      : node->restype >= 60 ? std::to_string(node->resval.rint)
                      : node->restype >= 10 ? std::to_string(node->resval.rreal)
                                            : "") +
                     ")";
        }
        ASSERT_EQ(selected(chain), expected) << "seed " << seed << ", filter " << i << ": " << shown;
    }
    EXPECT_LT(empty, filters * 2 / 3) << "most filters should tell entities apart";
}
