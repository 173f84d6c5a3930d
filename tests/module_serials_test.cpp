// The order of serials and the next one, against a second reading of their rules, word by word.
#include "base/utf.h"
#include "module/annotation/Serials.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace KolTool;

namespace {

using pieces = std::vector<CString>;

bool digit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// ---- the second reading, which takes no thought for speed

pieces split(const std::wstring& s) {
    pieces out;
    const int n = static_cast<int>(s.size());
    int start = 0;
    int mark = 0;
    bool digit_run = false;
    const auto append = [&](int from, int to) {
        out.emplace_back(
            s.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)).c_str());
    };
    for (int i = 0; i < n; ++i) {
        const bool is_digit = digit(s[static_cast<std::size_t>(i)]);
        if (start == mark) {
            digit_run = is_digit;
            if (i == n - 1)
                append(i, i + 1);
            mark = mark + 1;
        } else {
            mark = mark + 1;
            if (is_digit != digit_run) {
                mark = i;
                append(start, i);
                start = i;
            } else if (i == n - 1) {
                append(start, mark);
            }
        }
    }
    return out;
}

int compare(const std::wstring& a, const std::wstring& b) {
    if (a.empty() || b.empty())
        return a.compare(b);
    const pieces p = split(a);
    const pieces q = split(b);
    for (std::size_t j = 0; j < std::min(p.size(), q.size()); ++j) {
        if (!digit(p[j][0])) {
            if (p[j] != q[j])
                return p[j] < q[j] ? -1 : 1;
        } else {
            const auto value = [](const std::wstring& s) { return digit(s[0]) ? std::stoll(s) : 0; };
            if (value(a) != value(b))
                return value(a) < value(b) ? -1 : 1;
        }
    }
    return p.size() == q.size() ? 0 : p.size() < q.size() ? -1 : 1;
}

std::wstring counted_up(std::wstring s, int step) {
    const std::wstring upper = L"ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const std::wstring lower = L"abcdefghijklmnopqrstuvwxyz";
    const std::wstring digits = L"0123456789";
    const auto kind = [&](wchar_t c) {
        return upper.find(c) != upper.npos ? &upper : lower.find(c) != lower.npos ? &lower : &digits;
    };
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < s.size(); ++i)
        if (kind(s[i])->find(s[i]) != upper.npos)
            places.push_back(i);
    if (places.empty())
        return s + L"1";
    int carry = step;
    bool was_digit = false;
    bool was_lower = false;
    while (!places.empty() && carry >= 1) {
        const std::size_t at = places.back();
        places.pop_back();
        const std::wstring& own = *kind(s[at]);
        const int size = static_cast<int>(own.size());
        if (was_digit && &own != &digits)
            return s.substr(0, at + 1) + std::to_wstring(carry) + s.substr(at + 1);
        const int sum = static_cast<int>(own.find(s[at])) + carry % size;
        s[at] = own[static_cast<std::size_t>(sum < size ? sum : sum - size)];
        carry = carry / size + (sum < size ? 0 : 1);
        was_digit = &own == &digits;
        was_lower = &own == &lower;
    }
    if (carry < 1)
        return s;
    if (was_digit)
        return std::to_wstring(carry) + s;
    return std::wstring(1, static_cast<wchar_t>((was_lower ? L'`' : L'@') + carry % 26)) + s;
}

std::wstring next(const std::wstring& s, int step) {
    if (s.empty())
        return std::to_wstring(step);
    std::size_t head = s.size();
    while (head > 0 && digit(s[head - 1]))
        --head;
    const bool all_digits = head == 0;
    if (all_digits)
        while (head < s.size() && s[head] == L'0')
            ++head;
    if (head == s.size())
        return counted_up(s, step);
    const std::wstring old_tail = s.substr(head);
    std::wstring tail = std::to_wstring(std::stoll(old_tail) + 1);
    std::wstring front = s.substr(0, head);
    if (tail.size() < old_tail.size()) {
        tail = std::wstring(old_tail.size() - tail.size(), L'0') + tail;
    } else if (tail.size() > old_tail.size() && all_digits && s[0] == L'0') {
        tail = tail.substr(tail.size() - old_tail.size());
        front = next(front, 1);
    }
    return front + tail;
}

// Serials of few different characters, so that all rules are met.
std::wstring random_serial(std::mt19937& random) {
    constexpr std::wstring_view characters = L"0019aAzZB-管";
    std::wstring text(random() % 9, L' ');
    for (wchar_t& c : text)
        c = characters[random() % characters.size()];
    return text;
}

} // namespace

TEST(Serials, AreSplitComparedAndCountedAsTold) {
    const std::pair<const wchar_t*, pieces> splits[] = {
        {L"", {}},
        {L"123", {L"123"}},
        {L"A123", {L"A", L"12"}},
        {L"A12", {L"A", L"2"}},
        {L"A1", {L"A"}},
        {L"A1B", {L"A", L"B"}},
        {L"A12B3", {L"A", L"12", L"3"}},
        {L"AB1", {L"AB"}},
        {L"A１23", {L"A１", L"3"}}, // a wide 1 is no digit
    };
    for (const auto& [serial, expected] : splits) {
        pieces found = {L"before"};
        EXPECT_EQ(SplitSerial(serial, found), !expected.empty()) << base::narrow(serial);
        EXPECT_EQ(found, expected) << base::narrow(serial);
    }

    struct comparison {
        const wchar_t *a, *b;
        int sign;
    };
    for (const auto& [a, b, sign] :
         {comparison{L"2", L"10", -1}, comparison{L"A12", L"A34", 0}, comparison{L"A2", L"A10", -1},
          comparison{L"A", L"B", -1}, comparison{L"a", L"A", 1}, comparison{L"A1", L"A1B", -1},
          comparison{L"", L"A", -1}, comparison{L"A", L"", 1}, comparison{L"", L"", 0},
          comparison{L"12345678901234567890", L"9", 1}, comparison{L"007", L"7", 0},
          comparison{L"1-2", L"A", 1}, comparison{L"A", L"1-2", 1}}) {
        const int order = CompareSerial(a, b);
        EXPECT_EQ((order > 0) - (order < 0), sign) << base::narrow(a) << " " << base::narrow(b);
    }

    struct count {
        const wchar_t* serial;
        int step;
        const wchar_t* next;
    };
    for (const auto& [serial, step, expected] : {count{L"A9", 1, L"A10"},
                                                 count{L"A009", 1, L"A010"},
                                                 count{L"09", 1, L"10"},
                                                 count{L"099", 1, L"100"},
                                                 count{L"0099", 1, L"0100"},
                                                 count{L"7", 1, L"8"},
                                                 count{L"-", 5, L"-1"},
                                                 count{L"A", 1, L"B"},
                                                 count{L"Z", 1, L"AA"},
                                                 count{L"z", 1, L"aa"},
                                                 count{L"AZ", 1, L"BA"},
                                                 count{L"B", 3, L"E"},
                                                 count{L"A12", 5, L"A13"},
                                                 count{L"", 5, L"5"},
                                                 count{L"000", 5, L"005"},
                                                 count{L"00", 250, L"250"},
                                                 count{L"A9Z", 1, L"A10A"},
                                                 count{L"JL-9", 1, L"JL-10"},
                                                 count{L"B-9Z", 27, L"B1-1A"},
                                                 count{L"JL-Z管", 1, L"JM-A管"},
                                                 count{L"B", 0, L"B"},
                                                 count{L"A", -1, L"A"},
                                                 count{L"9999999999999999999", 1, L"10000000000000000000"}}) {
        CString found = serial;
        IncreaseSerial(found, step);
        EXPECT_EQ(found, expected) << base::narrow(serial) << " by " << step;
    }

    EXPECT_TRUE(IsDigit(L"007", false));
    EXPECT_FALSE(IsDigit(L"007", true));
    EXPECT_TRUE(IsDigit(L"70", true));
    EXPECT_FALSE(IsDigit(L"", false));
    EXPECT_FALSE(IsDigit(L"1a", false));
}

TEST(Serials, AgreeWithASecondReading) {
    std::mt19937 random(17);
    for (int i = 0; i < 100'000; ++i) {
        const std::wstring a = random_serial(random);
        const std::wstring b = random() % 8 == 0 ? a : random_serial(random);
        pieces found;
        SplitSerial(a.c_str(), found);
        ASSERT_EQ(found, split(a)) << base::narrow(a);
        const int order = CompareSerial(a.c_str(), b.c_str());
        const int expected = compare(a, b);
        ASSERT_EQ(order > 0, expected > 0) << base::narrow(a) << " " << base::narrow(b);
        ASSERT_EQ(order < 0, expected < 0) << base::narrow(a) << " " << base::narrow(b);
        const int step = static_cast<int>(random() % 3 == 0 ? random() % 2000 : 1);
        CString following = a.c_str();
        IncreaseSerial(following, step);
        ASSERT_EQ(following, next(a, step).c_str()) << base::narrow(a) << " by " << step;
    }
}

// The comparison goes in circles among these; the order loses nothing and is as it is promised.
TEST(Serials, AreOrderedThoughTheirComparisonIsNone) {
    std::mt19937 random(17);
    std::vector<CString> serials;
    for (int i = 0; i < 100'000; ++i)
        serials.emplace_back(random_serial(random).c_str());
    std::vector<std::size_t> order = OrderOfSerials(serials);
    ASSERT_EQ(order.size(), serials.size());
    for (std::size_t i = 1; i < order.size(); ++i) {
        const CString& before = serials[order[i - 1]];
        const CString& behind = serials[order[i]];
        ASSERT_TRUE(CompareSerial(before, behind) <= 0 || CompareSerial(behind, before) >= 0)
            << base::narrow(before.GetString()) << " " << base::narrow(behind.GetString());
    }
    std::ranges::sort(order);
    for (std::size_t i = 0; i < order.size(); ++i)
        ASSERT_EQ(order[i], i);

    EXPECT_EQ(OrderOfSerials({L"WL-1", L"JL-12", L"JL-9", L"JL-11", L"JL-2"}),
              (std::vector<std::size_t>{2, 4, 1, 3, 0}));
    EXPECT_EQ(OrderOfSerials({L"10", L"9", L"09", L"2"}), (std::vector<std::size_t>{3, 1, 2, 0}));
    EXPECT_TRUE(OrderOfSerials({}).empty());
}
