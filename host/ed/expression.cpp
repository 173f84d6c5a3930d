#include "host/ed/expression.h"

#include "acutmem.h"
#include "adscodes.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"

namespace ed {

namespace {

constexpr int extended_data = -3;

// A token of an expression: a parenthesis, a dot, a quote mark, a text, or a word.
struct token {
    enum class kind { open, close, dot, text, word, end } what = kind::end;
    std::wstring text;
};

class reader {
public:
    explicit reader(std::wstring_view text) : text_(text) {}

    token next() {
        while (at_ < text_.size() && (text_[at_] == L' ' || text_[at_] == L'\t' || text_[at_] == L'\''))
            ++at_;
        if (at_ == text_.size())
            return {};
        const wchar_t c = text_[at_++];
        if (c == L'(')
            return {token::kind::open, {}};
        if (c == L')')
            return {token::kind::close, {}};
        if (c == L'"') {
            const std::size_t end = std::min(text_.find(L'"', at_), text_.size());
            token found{token::kind::text, std::wstring(text_.substr(at_, end - at_))};
            at_ = std::min(end + 1, text_.size());
            return found;
        }
        const std::size_t begin = at_ - 1;
        while (at_ < text_.size() &&
               std::wstring_view(L" \t()\"").find(text_[at_]) == std::wstring_view::npos)
            ++at_;
        std::wstring word(text_.substr(begin, at_ - begin));
        if (word == L".")
            return {token::kind::dot, {}};
        return {token::kind::word, std::move(word)};
    }

private:
    std::wstring_view text_;
    std::size_t at_ = 0;
};

// The names of applications behind the opening parenthesis of (-3 ("A" "B")).
bool read_applications(reader& from, resbuf**& tail) {
    constexpr int application = 1001;
    *tail = acutNewRb(extended_data);
    tail = &(*tail)->rbnext;
    token name = from.next();
    for (; name.what == token::kind::text; name = from.next()) {
        *tail = acutBuildList(application, name.text.c_str(), 0);
        tail = &(*tail)->rbnext;
    }
    return name.what == token::kind::close;
}

// One pair of a filter list, behind its opening parenthesis: code . value, or code x y z for a point.
bool read_pair(reader& from, resbuf**& tail) {
    const token code_word = from.next();
    const auto code = base::parse_integer(base::narrow(code_word.text));
    if (code_word.what != token::kind::word || !code || *code < -10 || *code > 1071)
        return false;
    token value = from.next();
    if (value.what == token::kind::dot)
        value = from.next();
    resbuf* added = nullptr;
    const int number = static_cast<int>(*code);
    if (number == extended_data)
        return value.what == token::kind::open && read_applications(from, tail) &&
               from.next().what == token::kind::close;
    if (value.what == token::kind::text) {
        added = number == 0 ? acutBuildList(RTDXF0, value.text.c_str(), 0)
                            : acutBuildList(number, value.text.c_str(), 0);
    } else if (value.what == token::kind::word) {
        added = acutNewRb(number);
        const std::string digits = base::narrow(value.text);
        const auto whole = base::parse_integer(digits);
        const auto real = base::parse_real(digits);
        if (!real) {
            acutRelRb(added);
            return false;
        }
        if ((number >= 10 && number <= 59) || (number >= 110 && number <= 149) ||
            (number >= 210 && number <= 239))
            added->resval.rreal = *real;
        else if (number >= 90 && number <= 99)
            added->resval.rlong = static_cast<Adesk::Int32>(whole.value_or(0));
        else
            added->resval.rint = static_cast<short>(whole.value_or(0));
    }
    if (added == nullptr)
        return false;
    *tail = added;
    tail = &added->rbnext;
    return from.next().what == token::kind::close;
}

} // namespace

std::optional<std::array<double, 3>> parse_point(std::wstring_view text) {
    std::array<double, 3> point{};
    std::size_t count = 0;
    for (std::size_t at = 0; at <= text.size(); ++count) {
        const std::size_t comma = std::min(text.find(L',', at), text.size());
        const auto value = base::parse_real(base::narrow(text.substr(at, comma - at)));
        if (!value || count == point.size())
            return std::nullopt;
        point[count] = *value;
        at = comma + 1;
    }
    if (count < 2)
        return std::nullopt;
    return point;
}

std::optional<expression> parse_expression(std::wstring_view text, std::wstring& reason) {
    reader from(text);
    expression found;
    reason =
        L"An expression that can be answered with is (handent \"2F\") or (ssget \"X\" '((8 . \"LAYER\"))).";
    if (from.next().what != token::kind::open)
        return std::nullopt;
    const token function = from.next();
    const token argument = from.next();
    if (argument.what != token::kind::text)
        return std::nullopt;
    found.text = argument.text;
    if (base::equal_no_case(function.text, L"handent")) {
        found.what = expression::function::handent;
        return from.next().what == token::kind::close ? std::optional(found) : std::nullopt;
    }
    if (!base::equal_no_case(function.text, L"ssget"))
        return std::nullopt;
    found.what = expression::function::ssget;
    token next = from.next();
    if (next.what == token::kind::close)
        return found;
    if (next.what != token::kind::open)
        return std::nullopt;
    resbuf* chain = nullptr;
    resbuf** tail = &chain;
    bool good = true;
    for (next = from.next(); good && next.what == token::kind::open; next = from.next())
        good = read_pair(from, tail);
    found.filter = std::shared_ptr<resbuf>(chain, [](resbuf* owned) { acutRelRb(owned); });
    if (!good || next.what != token::kind::close)
        return std::nullopt;
    return found;
}

} // namespace ed
