#include "host/dxf/encoding_guess.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "host/dxf/text_codec.h"
#include "sys/code_page.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace dxf {

namespace {

// ---- the sample

constexpr std::size_t sample_size = 64 * 1024;
constexpr std::size_t sample_lines = 20000; // looked at; most lines of a drawing say the same as others
constexpr std::size_t longest_line = 4096;

// The first byte above 127 at or behind `at`.
std::size_t next_high_byte(std::string_view bytes, std::size_t at) {
    constexpr std::uint64_t high_bits = 0x8080808080808080u;
    for (; at + 8 <= bytes.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, 8);
        if ((word & high_bits) != 0)
            break;
    }
    while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80)
        ++at;
    return at;
}

// ---- what text looks like. Costs are in bits: how much of a surprise a byte is in an encoding. The encoding
// in which all bytes together surprise least is the one.

constexpr double undecodable = 20;
constexpr double ascii = 6; // counts where a character of two bytes takes one
constexpr double rare = 15;
constexpr double symbol = 9;
constexpr double of_four_bytes = 24; // hardly any other encoding makes them by chance
constexpr double lonely = 5;         // a letter of a script that has hardly a word of one letter
constexpr int dos_page = 437;        // whose Greek letters are signs: alpha, phi for a diameter
constexpr double at_digit = 5;       // a letter beside one; units and signs stand there
constexpr double misplaced = 6;      // a sign in the middle of a word, a degree sign behind no digit

// Frequent characters of each script, most frequent first as far as it matters; those of drawings among them.
constexpr std::wstring_view symbols = L"°±²³µ×Øø§·½¼«»–—’“”…№™®©‰≥≤≈√∞";
constexpr std::wstring_view simplified =
    L"的一是不在有为中大上个国这到说们和地以要时就出会可生对能而子那得于着下自之年过发后作里用道行所然家种事"
    L"成方多经么去法学如都同现当没动面起看定天分还进好小部其些主样理心本前开但因只从想实日军者意无力它与长把"
    L"机十民第公此已工使情明性知全三又关点正业外将两高间由问很最重并物手应战向头文体政美相见被利什二等产或新"
    L"给水排污废雨消防喷淋管道线层图平面立剖系统卫生间厨房阳台轴号标高注说明墙门窗柱梁板楼梯电气暖通风空调设"
    L"备材料表比例设计审核制校对日期项目名称建筑结构钢筋混凝土混度厚宽直径压力流量热冷回供口阀井泵箱器件品";
constexpr std::wstring_view traditional =
    L"的一是不在有為中大上個國這到說們和地以要時就出會可生對能而子那得於著下自之年過發後作裡用道行所然家種事"
    L"成方多經麼去法學如都同現當沒動面起看定天分還進好小部其些主樣理心本前開但因只從想實日軍者意無力它與長把"
    L"機十民第公此已工使情明性知全三又關點正業外將兩高間由問很最重並物手應戰向頭文體政美相見被利什二等產或新"
    L"給水排污廢雨消防噴淋管道線層圖平面立剖系統衛生間廚房陽台臺軸號標高註說明牆門窗柱樑板樓梯電氣暖通風空調"
    L"設"
    L"備材料表比例計審核製校期項目名稱建築結構鋼筋混凝土度厚寬直徑壓力流量熱冷回供口閥井泵箱器件品";
constexpr std::wstring_view japanese = L"のをにはがとでしたていなるるれうくりりンーイスルトラアリドクレグッロ"
                                       L"プムフシジタコマサブカチメテキパデバ"
                                       L"ボウエオナニミモセソノハヘホネツ図面寸法部品名称数量材質尺度平立断詳"
                                       L"細給水排配管通気雨汚設備機械室階床壁天井"
                                       L"日本大中小上下左右年月工事計画現場";
constexpr std::wstring_view korean =
    L"이다는의에을가고하지를한은기도로사서자어나리시과그인일대정수스전해부아보제주장위성구상비동원국조무실선"
    L"공"
    L"유면관신물세용개여명경생연발안우중화급배도층평단입오수설치재규격번호축척건축구조벽창문계단실바닥지하";
constexpr std::wstring_view russian = L"оеаинтсрвлкмдпуяыьгзбчйхжшюцщэфъё";
constexpr std::wstring_view greek = L"αοιετσνηυρπκμλςίόάγέδήύφχώωβξψζ";
constexpr std::wstring_view western = L"éäüöèàçñêóßíáâôîûúãõåøæùïëœìòý";
constexpr std::wstring_view central = L"áíéęąłóżśćčěšžýřůúöüäőűńďťňźăâîţşđ";
constexpr std::wstring_view turkish = L"ıişüğçöâîû";

enum class script { latin, own, east_asian };

struct encoding_model {
    int number;
    script kind;
    std::wstring_view frequent;
    // East Asian pages: the first bytes of the characters that are in daily use, and of the rarer ones, and
    // where the second bytes of both begin.
    unsigned daily_first = 0, daily_last = 0;
    unsigned rare_first = 0, rare_last = 0;
    unsigned trail_first = 0;
    double daily_size = 0; // bits that choose among the daily characters
};

// Source: the ranges of levels 1 and 2 in GB 2312, Big5, JIS X 0208 and KS X 1001.
constexpr encoding_model models[] = {
    {936, script::east_asian, simplified, 0xB0, 0xD7, 0xD8, 0xF7, 0xA1, 11.9},
    {950, script::east_asian, traditional, 0xA4, 0xC6, 0xC9, 0xF9, 0x40, 12.4},
    {932, script::east_asian, japanese, 0x88, 0x97, 0x98, 0xEA, 0x40, 11.6},
    {949, script::east_asian, korean, 0xB0, 0xC8, 0xCA, 0xFD, 0xA1, 11.2},
    {1251, script::own, russian},
    {1253, script::own, greek},
    {1252, script::latin, western},
    {1250, script::latin, central},
    {1254, script::latin, turkish},
    {437, script::latin, western}, // before others that have the same signs and letters
    {866, script::own, russian},
    {850, script::latin, western},
};

bool is_letter(char32_t c) {
    return (c >= 0xC0 && c < 0x250 && c != 0xD7 && c != 0xF7) || (c >= 0x370 && c < 0x530) ||
           (c >= 0x590 && c < 0x700) || (c >= 0xE01 && c < 0xE50) || (c >= 0x1E00 && c < 0x2000);
}

// How much the text of a page surprises, given what it is usually made of.
class page_judge {
public:
    explicit page_judge(const encoding_model& model, const sys::code_page& page)
        : model_(model), page_(page) {
        for (std::size_t rank = 0; rank < model.frequent.size(); ++rank)
            rank_.try_emplace(base::fold_code_point(static_cast<char32_t>(model.frequent[rank])),
                              rank_.size());
    }

    double cost(std::string_view sample) const {
        double total = 0;
        enum class before { other, digit, ascii_letter, high_letter, upper } last = before::other;
        std::size_t letters = 0; // of the script, that stand together; more than one behind a letter of ASCII
        for (std::size_t i = 0; i < sample.size();) {
            const auto byte = static_cast<unsigned char>(sample[i]);
            if (byte < 0x80) {
                if (letters == 1 && model_.kind == script::own)
                    total += lonely;
                letters = 0;
                last = begins_with_letter(sample.substr(i))  ? before::ascii_letter
                       : begins_with_digit(sample.substr(i)) ? before::digit
                                                             : before::other;
                total += ascii;
                ++i;
                // Before and behind an escape stand letters, not digits.
                if (byte == '\\' && sample.substr(i, 2) == "U+") {
                    const std::size_t rest = std::min<std::size_t>(6, sample.size() - i);
                    total += ascii * static_cast<double>(rest);
                    i += rest;
                }
                continue;
            }
            const std::size_t length = model_.kind == script::east_asian ? length_at(sample, i) : 1;
            const std::wstring decoded = page_.decode(sample.substr(i, length));
            const auto c = decoded.empty() ? U'\0' : static_cast<char32_t>(decoded[0]);
            i += length;
            const std::string_view rest = sample.substr(i);
            const std::string_view behind_blank = rest.substr(rest.starts_with(' ') ? 1 : 0);
            const bool in_word =
                last == before::ascii_letter && begins_with_letter(sample.substr(i - length + 1));
            if (base::is_escaped_byte(c)) {
                total += undecodable;
                last = before::other;
            } else if (model_.kind == script::east_asian) {
                total += length == 4   ? of_four_bytes
                         : length == 2 ? pair_cost(c, byte, static_cast<unsigned char>(sample[i - 1]))
                                       : symbol;
                total += in_word ? misplaced : 0; // the second byte of two may be a letter there, too
                last = before::other;
            } else if (!is_letter(c) || (model_.number == dos_page && c >= 0x370 && c < 0x400)) {
                total +=
                    is_letter(c) || symbols.find(static_cast<wchar_t>(c)) != symbols.npos ? symbol : rare;
                total += (in_word && c != U'’') || (c == U'°' && last != before::digit) ? misplaced : 0;
                last = before::other;
            } else if ((c == U'ø' || c == U'Ø') && begins_with_digit(behind_blank) && last == before::other) {
                total += ascii; // a diameter
            } else {
                const bool is_upper = base::fold_code_point(c) != c;
                total += letter_cost(c) + (model_.kind == script::own
                                               ? (last == before::high_letter || last == before::upper ? 0.3
                                                  : last == before::ascii_letter                       ? 6.0
                                                                                                       : 1.5)
                                               : (last == before::high_letter || last == before::upper ? 6.0
                                                  : last == before::ascii_letter                       ? 2.5
                                                                                 : 4.0));
                letters += last == before::ascii_letter ? 2 : 1;
                // A letter alone before a number is no word, but for the preposition à.
                const bool alone = letters == 1 && model_.kind == script::latin;
                if (last == before::digit || (alone && begins_with_digit(c == U'à' ? rest : behind_blank)))
                    total += at_digit;
                // Capitals stand at the beginning or among capitals.
                if (is_upper && last == before::high_letter)
                    total += 4;
                last = is_upper ? before::upper : before::high_letter;
            }
        }
        return total;
    }

private:
    static bool begins_with_letter(std::string_view text) {
        const unsigned folded = text.empty() ? 0u : static_cast<unsigned char>(text.front()) | 0x20u;
        return folded >= 'a' && folded <= 'z';
    }
    static bool begins_with_digit(std::string_view text) {
        return !text.empty() && text.front() >= '0' && text.front() <= '9';
    }

    // How many bytes the character there takes.
    std::size_t length_at(std::string_view sample, std::size_t at) const {
        const auto is_one = [&](std::size_t bytes) {
            if (at + bytes > sample.size())
                return false;
            const std::wstring text = page_.decode(sample.substr(at, bytes));
            return text.size() == 1 && !base::is_escaped_byte(static_cast<char32_t>(text[0]));
        };
        return is_one(1) || !(is_one(2) || is_one(4)) ? 1 : is_one(2) ? 2 : 4;
    }

    double pair_cost(char32_t c, unsigned lead, unsigned trail) const {
        if (rank_.contains(c))
            return 1 + std::log2(static_cast<double>(rank_.size()));
        const bool of_standard = trail >= model_.trail_first;
        if (of_standard && lead >= model_.daily_first && lead <= model_.daily_last)
            return 1 + model_.daily_size;
        if (c >= 0x3000 && c < 0x3400) // punctuation and kana
            return symbol;
        if (c >= 0xFF00 && c < 0xFF60) // wide forms of ASCII
            return symbol;
        if (of_standard && lead >= model_.rare_first && lead <= model_.rare_last)
            return 17;
        return c < 0x3000 ? 12 : undecodable; // Greek, circled numbers, frames; else what nobody writes
    }

    double letter_cost(char32_t c) const {
        const char32_t small = base::fold_code_point(c);
        const auto found = rank_.find(small);
        if (found != rank_.end())
            return 3.3 + static_cast<double>(found->second) / 6.0 + (small != c ? 1 : 0);
        return rank_.empty() ? 5 : 11;
    }

    const encoding_model& model_;
    const sys::code_page& page_;
    std::unordered_map<char32_t, std::size_t> rank_;
};

double utf8_cost(std::string_view sample) {
    double total = 0;
    for (const wchar_t unit : base::widen(sample)) {
        const auto c = static_cast<char32_t>(unit);
        total += c < 0x80 ? ascii : base::is_escaped_byte(c) ? undecodable : c < 0x800 ? 9 : 12;
    }
    return total;
}

double cost_in(int number, std::string_view sample) {
    if (number == utf8_page)
        return utf8_cost(sample);
    const sys::code_page* const page = sys::code_page::find(number);
    if (page == nullptr)
        return undecodable * static_cast<double>(sample.size());
    for (const encoding_model& model : models)
        if (model.number == number)
            return page_judge(model, *page).cost(sample);
    return page_judge({number, script::own, {}}, *page).cost(sample); // of whose language nothing is known
}

// Whether UTF-8 holds a character of three or four bytes: two such in other encodings are UTF-8 by chance
// hardly ever.
bool has_long_characters(std::string_view utf8) {
    return std::any_of(utf8.begin(), utf8.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= 0xE0; });
}

struct encoding_title {
    int number;
    const wchar_t* title;
    std::string_view names[4]; // as people write them, without blanks, hyphens and case
};

constexpr encoding_title titles[] = {
    {936, L"GBK", {"gbk", "gb2312", "gb18030", "euccn"}},
    {950, L"Big5", {"big5"}},
    {932, L"Shift-JIS", {"shiftjis", "sjis", "dos932"}},
    {949, L"EUC-KR", {"euckr", "ksc5601", "uhc"}},
    {1361, L"Johab", {"johab"}},
    {1250, L"Central European", {}},
    {1251, L"Cyrillic", {}},
    {1252, L"Western European", {"latin1"}},
    {1253, L"Greek", {}},
    {1254, L"Turkish", {}},
    {utf8_page, L"UTF-8", {"utf8"}},
};

} // namespace

std::string lines_with_high_bytes(std::string_view drawing, const std::vector<std::string_view>& sealed) {
    std::string sample;
    std::unordered_set<std::string_view> known;
    auto hidden = sealed.begin();
    std::size_t at = 0;
    for (std::size_t lines = 0; lines < sample_lines && sample.size() < sample_size; ++lines) {
        at = next_high_byte(drawing, at);
        if (at == drawing.size())
            break;
        const char* const place = drawing.data() + at;
        while (hidden != sealed.end() && hidden->data() + hidden->size() <= place)
            ++hidden;
        if (hidden != sealed.end() && hidden->data() <= place) {
            at = static_cast<std::size_t>(hidden->data() + hidden->size() - drawing.data());
            continue;
        }
        const std::size_t before = drawing.rfind('\n', at);
        const std::size_t begin = before == drawing.npos ? 0 : before + 1;
        const std::size_t end = std::min(drawing.find('\n', at), drawing.size());
        const std::string_view line = drawing.substr(begin, std::min(end - begin, longest_line));
        if (known.insert(line).second)
            sample.append(line).append(1, '\n');
        at = end;
    }
    return sample;
}

int guess_encoding(std::string_view sample, int named, bool may_be_dos) {
    if (base::is_utf8(sample) && has_long_characters(sample))
        return utf8_page;
    constexpr double clearly = 15; // bits
    constexpr double unnamed = 8;  // by which what most programs write is preferred
    const int first = named != 0 ? named : may_be_dos ? dos_page : 1252;
    const auto cost = [&](int number) {
        const bool usual = named == 0 && (number == first || number == 1252);
        return cost_in(number, sample) - (usual ? unnamed : number == first ? clearly : 0);
    };
    int best = first;
    double least = cost(first);
    const auto consider = [&](int number) {
        const double other = cost(number);
        if (other < least) {
            least = other;
            best = number;
        }
    };
    consider(utf8_page);
    for (const encoding_model& model : models)
        if (model.number != first)
            consider(model.number);
    return best;
}

std::wstring encoding_name(int number) {
    for (const encoding_title& entry : titles)
        if (entry.number == number)
            return number == utf8_page
                       ? std::wstring(entry.title)
                       : std::wstring(entry.title) + L" (code page " + std::to_wstring(number) + L")";
    return L"code page " + std::to_wstring(number);
}

int encoding_number(std::string_view name) {
    std::string plain;
    for (const char c : name)
        if (c != '-' && c != '_' && c != ' ')
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    int number = 0;
    for (const encoding_title& entry : titles)
        for (const std::string_view known : entry.names)
            if (!known.empty() && plain == known)
                number = entry.number;
    if (number == 0)
        number = code_page_number(name);
    std::string_view digits = plain;
    for (const std::string_view prefix : {"windows", "cp", "dos"})
        if (digits.starts_with(prefix))
            digits.remove_prefix(prefix.size());
    if (number == 0 && !digits.empty() && digits.size() < 6 &&
        digits.find_first_not_of("0123456789") == digits.npos)
        number = std::stoi(std::string(digits));
    return number == utf8_page || sys::code_page::find(number) != nullptr ? number : 0;
}

} // namespace dxf
