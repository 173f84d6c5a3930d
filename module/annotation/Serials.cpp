#include "module/annotation/Serials.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>

namespace {

bool IsDigitCharacter(wchar_t character) {
    return character >= L'0' && character <= L'9';
}

// Gives the pieces of a serial one by one.
class Pieces {
public:
    explicit Pieces(std::wstring_view serial) : m_serial(serial) {}

    // False when there are no more.
    bool Next(std::wstring_view& piece) {
        const std::size_t last = m_serial.size() - 1;
        for (; m_at < m_serial.size(); ++m_at) {
            const bool isDigit = IsDigitCharacter(m_serial[m_at]);
            const bool begins = m_start == m_mark;
            ++m_mark;
            if (begins) {
                m_isDigitRun = isDigit;
                if (m_at == last)
                    return Give(m_at, 1, piece);
            } else if (isDigit != m_isDigitRun) {
                m_mark = m_at;
                const std::size_t start = std::exchange(m_start, m_at);
                return Give(start, m_at - start, piece);
            } else if (m_at == last) {
                return Give(m_start, m_mark - m_start, piece);
            }
        }
        return false;
    }

private:
    bool Give(std::size_t from, std::size_t length, std::wstring_view& piece) {
        piece = m_serial.substr(from, length);
        ++m_at;
        return true;
    }

    std::wstring_view m_serial;
    std::size_t m_start = 0;
    std::size_t m_mark = 0;
    std::size_t m_at = 0;
    bool m_isDigitRun = false;
};

// Compares the numbers that two serials begin with, of any length.
int CompareValues(std::wstring_view a, std::wstring_view b) {
    const auto number = [](std::wstring_view serial) {
        serial = serial.substr(0, serial.find_first_not_of(L"0123456789"));
        return serial.substr(std::min(serial.find_first_not_of(L'0'), serial.size()));
    };
    a = number(a);
    b = number(b);
    return a.size() != b.size() ? (a.size() < b.size() ? -1 : 1) : a.compare(b);
}

int ComparePieces(std::wstring_view a, std::wstring_view b) {
    Pieces ofA(a);
    Pieces ofB(b);
    std::wstring_view pieceA;
    std::wstring_view pieceB;
    for (;;) {
        const bool hasA = ofA.Next(pieceA);
        const bool hasB = ofB.Next(pieceB);
        if (!hasA || !hasB)
            return static_cast<int>(hasA) - static_cast<int>(hasB);
        const int order = IsDigitCharacter(pieceA.front()) ? CompareValues(a, b) : pieceA.compare(pieceB);
        if (order != 0)
            return order < 0 ? -1 : 1;
    }
}

// Adds 1 to a number; it keeps its noughts.
std::wstring Incremented(std::wstring digits) {
    std::size_t at = digits.size();
    while (at > 0 && digits[at - 1] == L'9')
        digits[--at] = L'0';
    if (at > 0)
        ++digits[at - 1];
    else
        digits.insert(0, 1, L'1');
    return digits;
}

// Characters that count up within themselves.
struct Kind {
    wchar_t m_first;
    int m_count;
};
constexpr Kind upperCase = {L'A', 26};
constexpr Kind lowerCase = {L'a', 26};
constexpr Kind digit = {L'0', 10};

const Kind* KindOf(wchar_t character) {
    for (const Kind* const kind : {&upperCase, &lowerCase, &digit})
        if (character >= kind->m_first && character < kind->m_first + kind->m_count)
            return kind;
    return nullptr;
}

// Counts letters and digits up from the right.
void IncreaseCharacters(std::wstring& serial, int step) {
    if (std::ranges::none_of(serial, [](wchar_t one) { return KindOf(one) != nullptr; })) {
        serial += L'1';
        return;
    }
    int carry = std::max(step, 0);
    const Kind* last = nullptr;
    for (std::size_t at = serial.size(); at-- > 0 && carry > 0;) {
        const Kind* const kind = KindOf(serial[at]);
        if (kind == nullptr)
            continue;
        if (last == &digit && kind != &digit) {
            serial.insert(at + 1, std::to_wstring(carry));
            return;
        }
        int place = serial[at] - kind->m_first + carry % kind->m_count;
        carry /= kind->m_count;
        if (place >= kind->m_count) {
            place -= kind->m_count;
            ++carry;
        }
        serial[at] = static_cast<wchar_t>(kind->m_first + place);
        last = kind;
    }
    if (carry > 0 && last == &digit)
        serial.insert(0, std::to_wstring(carry));
    else if (carry > 0)
        serial.insert(0, 1, static_cast<wchar_t>(last->m_first - 1 + carry % last->m_count));
}

void Increase(std::wstring& serial, int step) {
    const std::size_t lastOther = serial.find_last_not_of(L"0123456789");
    const bool isNumber = lastOther == serial.npos;
    const std::size_t headLength =
        isNumber ? std::min(serial.find_first_not_of(L'0'), serial.size()) : lastOther + 1;
    if (headLength == serial.size()) { // no number at the end, or nothing but noughts
        IncreaseCharacters(serial, step);
        return;
    }
    std::wstring head = serial.substr(0, headLength);
    std::wstring tail = Incremented(serial.substr(headLength));
    if (isNumber && !head.empty() && head.size() + tail.size() > serial.size()) {
        tail.erase(0, 1);
        Increase(head, 1);
    }
    serial = head + tail;
}

} // namespace

bool KolTool::IsDigit(LPCTSTR text, bool noLeadingZero) {
    const std::wstring_view all(text);
    return !all.empty() && std::ranges::all_of(all, IsDigitCharacter) &&
           !(noLeadingZero && all.front() == L'0');
}

bool KolTool::SplitSerial(LPCTSTR serial, std::vector<CString>& pieces) {
    pieces.clear();
    Pieces rest{std::wstring_view(serial)};
    for (std::wstring_view piece; rest.Next(piece);)
        pieces.emplace_back(piece.data(), static_cast<int>(piece.size()));
    return !pieces.empty();
}

int KolTool::CompareSerial(LPCTSTR a, LPCTSTR b) {
    return *a == 0 || *b == 0 ? CString(a).Compare(b) : ComparePieces(a, b);
}

// Merges runs, twice as long each time: whatever the comparison answers, each place is moved on once.
std::vector<std::size_t> KolTool::OrderOfSerials(const std::vector<CString>& serials) {
    std::vector<std::size_t> order(serials.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::vector<std::size_t> merged(order.size());
    for (std::size_t run = 1; run < order.size(); run *= 2) {
        for (std::size_t from = 0; from < order.size(); from += 2 * run) {
            std::size_t left = from;
            const std::size_t middle = std::min(from + run, order.size());
            std::size_t right = middle;
            const std::size_t end = std::min(middle + run, order.size());
            for (std::size_t to = from; to < end; ++to) {
                const bool takesRight =
                    left == middle ||
                    (right < end && CompareSerial(serials[order[right]], serials[order[left]]) < 0);
                merged[to] = order[takesRight ? right++ : left++];
            }
        }
        order.swap(merged);
    }
    return order;
}

void KolTool::IncreaseSerial(CString& serial, int step) {
    if (serial.IsEmpty()) {
        serial.Format(L"%d", step);
        return;
    }
    std::wstring text = serial.GetString();
    Increase(text, step);
    serial = text.c_str();
}
