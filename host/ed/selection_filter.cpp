#include "host/ed/selection_filter.h"

#include "acutads.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/code_line.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>
#include <span>

namespace ed {

namespace {

constexpr int operator_code = -4;
constexpr int extended_data_code = -3;
constexpr int application_code = 1001;
constexpr int layout_code = 410;
constexpr int space_code = 67;
constexpr int owner_code = 330;

enum class relation { any, equal, unequal, less, at_most, greater, at_least, some_bits, all_bits };

std::optional<relation> relation_of(std::wstring_view sign) {
    constexpr std::pair<std::wstring_view, relation> signs[] = {
        {L"*", relation::any},       {L"=", relation::equal},    {L"!=", relation::unequal},
        {L"/=", relation::unequal},  {L"<>", relation::unequal}, {L"<", relation::less},
        {L"<=", relation::at_most},  {L">", relation::greater},  {L">=", relation::at_least},
        {L"&", relation::some_bits}, {L"&=", relation::all_bits}};
    for (const auto& [known, meaning] : signs)
        if (sign == known)
            return meaning;
    return std::nullopt;
}

bool is_of_bits(relation how) {
    return how == relation::some_bits || how == relation::all_bits;
}

bool holds(relation how, double left, double right) {
    const auto bits = [](double value) { return static_cast<long long>(value); };
    switch (how) {
    case relation::any:
        return true;
    case relation::equal:
        return left == right;
    case relation::unequal:
        return left != right;
    case relation::less:
        return left < right;
    case relation::at_most:
        return left <= right;
    case relation::greater:
        return left > right;
    case relation::at_least:
        return left >= right;
    case relation::some_bits:
        return (bits(left) & bits(right)) != 0;
    case relation::all_bits:
        return (bits(left) & bits(right)) == bits(right);
    }
    return false;
}

// What is a point in an entity, x standing in this group, y and z in those 10 and 20 above.
bool is_point_code(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210;
}

// y and z of points: by themselves they are no values.
bool is_part_of_point(int code) {
    return (code >= 20 && code <= 37) || (code >= 120 && code <= 139) || code == 220 || code == 230;
}

bool is_number(dxf::value_kind kind) {
    return kind == dxf::value_kind::real || kind == dxf::value_kind::small_integer ||
           kind == dxf::value_kind::integer || kind == dxf::value_kind::wide_integer ||
           kind == dxf::value_kind::flag;
}

double number_in(const resbuf& value, int code) {
    switch (dxf::kind_of_code(code)) {
    case dxf::value_kind::real:
        return value.resval.rreal;
    case dxf::value_kind::integer:
        return value.resval.rlong;
    case dxf::value_kind::wide_integer:
        return static_cast<double>(value.resval.mnInt64);
    default:
        return value.resval.rint;
    }
}

// What an entity of a type, or of any, that leaves a number out is taken to have. Source: the DXF reference's
// tables of entities.
struct default_row {
    std::string_view type; // empty: any
    int code;
    double value;
};
constexpr default_row default_numbers[] = {
    {{}, 48, 1.0},           {{}, 60, 0.0},         {{}, 62, 256.0},     {{}, 370, -1.0},
    {"LINE", 39, 0.0},       {"POINT", 39, 0.0},    {"CIRCLE", 39, 0.0}, {"ARC", 39, 0.0},
    {"TEXT", 39, 0.0},       {"SOLID", 39, 0.0},    {"TRACE", 39, 0.0},  {"LWPOLYLINE", 39, 0.0},
    {"TEXT", 41, 1.0},       {"TEXT", 50, 0.0},     {"TEXT", 51, 0.0},   {"TEXT", 71, 0.0},
    {"TEXT", 72, 0.0},       {"TEXT", 73, 0.0},     {"INSERT", 41, 1.0}, {"INSERT", 42, 1.0},
    {"INSERT", 43, 1.0},     {"INSERT", 44, 0.0},   {"INSERT", 45, 0.0}, {"INSERT", 50, 0.0},
    {"INSERT", 66, 0.0},     {"INSERT", 70, 1.0},   {"INSERT", 71, 1.0}, {"LWPOLYLINE", 38, 0.0},
    {"LWPOLYLINE", 70, 0.0}, {"POLYLINE", 70, 0.0}, {"POINT", 50, 0.0},
};

std::optional<double> default_number(std::string_view type, int code) {
    for (const default_row& row : default_numbers)
        if (row.code == code && (row.type.empty() || row.type == type))
            return row.value;
    return std::nullopt;
}

std::wstring default_text(std::string_view type, int code) {
    return code == 6 ? L"ByLayer" : code == 7 && type == "TEXT" ? L"Standard" : L"";
}

// Whether a record has no letter that a name without wildcards begins with: most have none of an
// application's name.
bool lacks_first_letter(std::string_view record, std::wstring_view name) {
    if (name.empty() || name.find_first_of(L"#@.*?~[,`") != name.npos)
        return false;
    const wchar_t upper =
        name.front() >= L'a' && name.front() <= L'z' ? name.front() - L'a' + L'A' : name.front();
    return upper >= L'A' && upper <= L'Z' && record.find(static_cast<char>(upper)) == record.npos &&
           record.find(static_cast<char>(upper - L'A' + L'a')) == record.npos;
}

} // namespace

struct selection_filter::node {
    enum class kind {
        all,
        some,
        one,
        none,
        passed_over,
        type,
        layer,
        layout,
        space,
        text,
        number,
        point,
        owner,
        application
    };
    kind what = kind::all;
    std::vector<std::shared_ptr<node>> parts; // of groups
    int code = 0;
    std::wstring pattern;
    std::array<relation, 3> how{}; // of numbers the first
    std::array<double, 3> value{};
    std::uint64_t handle = 0;
    std::vector<bool> numbers; // of types or layers that the pattern fits
    // Of where entities stand, by number of owner: 1 it fits, 0, or -1 for not asked yet.
    mutable std::vector<signed char> owners;
};

// An entity while it is judged: its groups are read when the first part of a filter wants them.
struct selection_filter::candidate {
    AcDbImpDatabase& database;
    dxf::record_id record;
    std::optional<dxf::group_list> list;

    // Its own groups; what begins with 1001 is data of applications, what begins with 101 an object in it.
    std::span<const dxf::group> groups() {
        if (!list) {
            list.emplace(database.records().text(record));
            const auto& all = list->groups();
            own = static_cast<std::size_t>(std::find_if(all.begin(), all.end(),
                                                        [](const dxf::group& group) {
                                                            return group.code == 101 ||
                                                                   group.code >= application_code;
                                                        }) -
                                           all.begin());
        }
        return std::span(list->groups()).first(own);
    }
    std::span<const dxf::group> all_groups() {
        groups();
        return list->groups();
    }
    std::string_view type() const { return database.records().type_name(record); }
    // Where it stands.
    dxf::record_id space() const { return database.records().find(database.records().owner_handle(record)); }
    std::size_t own = 0;
};

// Reads a chain.
class selection_filter::reader {
public:
    reader(AcDbImpDatabase& database, const resbuf* chain) : database_(database), at_(chain) {}

    // What stands up to the end, or up to a bracket that closes; null when it is malformed.
    std::shared_ptr<node> read_group(std::wstring_view until) {
        auto group = std::make_shared<node>();
        for (; at_ != nullptr; at_ = at_->rbnext) {
            const int code = at_->restype == RTDXF0 ? 0 : at_->restype;
            if (code == operator_code) {
                if (at_->resval.rstring == nullptr)
                    return nullptr;
                const std::wstring sign = base::folded(at_->resval.rstring);
                if (!until.empty() && sign == until)
                    return relations_.empty() ? group : nullptr;
                if (!relations_.empty())
                    return nullptr; // one relation behind the other
                if (!read_bracket(sign, *group) && !read_relations(sign))
                    return nullptr;
                continue;
            }
            auto leaf = read_value(code);
            if (leaf == nullptr)
                return nullptr;
            if (code != extended_data_code)
                group->parts.push_back(std::move(leaf));
            in_extended_data_ =
                code == extended_data_code || (in_extended_data_ && code >= application_code - 1);
            relations_.clear();
        }
        return until.empty() && relations_.empty() ? group : nullptr;
    }

private:
    bool read_bracket(const std::wstring& sign, node& group) {
        struct bracket {
            std::wstring_view open, close;
            node::kind what;
        };
        static constexpr bracket brackets[] = {{L"<and", L"and>", node::kind::all},
                                               {L"<or", L"or>", node::kind::some},
                                               {L"<xor", L"xor>", node::kind::one},
                                               {L"<not", L"not>", node::kind::none}};
        for (const bracket& bracket : brackets) {
            if (sign != bracket.open)
                continue;
            at_ = at_->rbnext;
            in_extended_data_ = false;
            auto inner = read_group(bracket.close);
            const std::size_t operands = inner != nullptr ? inner->parts.size() : 0;
            if (at_ == nullptr || operands == 0 || (bracket.what == node::kind::one && operands != 2) ||
                (bracket.what == node::kind::none && operands != 1))
                return false;
            inner->what = bracket.what;
            group.parts.push_back(std::move(inner));
            return true;
        }
        return false;
    }

    // "<=", or one for each coordinate of a point: ">,>,*".
    bool read_relations(std::wstring_view sign) {
        for (std::size_t at = 0; at <= sign.size();) {
            const std::size_t comma = std::min(sign.find(L',', at), sign.size());
            const auto told = relation_of(sign.substr(at, comma - at));
            if (!told)
                return false;
            relations_.push_back(*told);
            at = comma + 1;
        }
        return relations_.size() <= 3;
    }

    // Null for what no filter can hold; "passed over" for what filters do not look at.
    std::shared_ptr<node> read_value(int code) {
        auto leaf = std::make_shared<node>();
        leaf->code = code;
        leaf->what = node::kind::passed_over;
        const dxf::value_kind kind = dxf::kind_of_code(code);
        const bool of_entity = code >= 0 && code < 1000;
        const bool is_text = of_entity && kind == dxf::value_kind::text;
        const bool is_application = code == application_code && in_extended_data_;
        if (is_text || is_application) {
            if (!relations_.empty() || at_->resval.rstring == nullptr)
                return nullptr;
            leaf->pattern = at_->resval.rstring;
            leaf->what = is_application        ? node::kind::application
                         : code == layout_code ? node::kind::layout
                         : code == 8           ? node::kind::layer
                         : code == 0           ? node::kind::type
                                               : node::kind::text;
            if (code == 0 || code == 8)
                number_names(*leaf);
        } else if (code == owner_code) {
            AcDbObjectId owner;
            owner.setFromOldId(at_->resval.rlname[0]);
            const dxf::record_id record = database_.record(owner);
            leaf->handle = record != dxf::no_record ? database_.records().handle(record) : 0;
            leaf->what = node::kind::owner;
        } else if (of_entity && is_point_code(code)) {
            leaf->what = node::kind::point;
            std::copy_n(at_->resval.rpoint, 3, leaf->value.begin());
            // A coordinate without a relation of its own may be anything, when others have one.
            if (!relations_.empty())
                leaf->how.fill(relation::any);
            else
                leaf->how.fill(relation::equal);
            std::copy(relations_.begin(), relations_.end(), leaf->how.begin());
            if (std::any_of(relations_.begin(), relations_.end(), is_of_bits))
                return nullptr;
        } else if (of_entity && is_number(kind) && !is_part_of_point(code)) {
            leaf->what = code == space_code ? node::kind::space : node::kind::number;
            leaf->value[0] = number_in(*at_, code);
            leaf->how[0] = relations_.empty() ? relation::equal : relations_.front();
            if (relations_.size() > 1 || (is_of_bits(leaf->how[0]) && kind == dxf::value_kind::real))
                return nullptr;
        }
        return leaf;
    }

    void number_names(node& leaf) const {
        const dxf::name_set& names =
            leaf.code == 0 ? database_.records().type_names() : database_.records().layer_names();
        for (std::uint32_t i = 0; i < names.size(); ++i) {
            const std::string_view bytes = dxf::trimmed(names[i]);
            const std::wstring name =
                leaf.code == 8 && bytes.empty() ? L"0" : database_.drawing().codec().decode(bytes);
            leaf.numbers.push_back(base::wildcard_match(name, leaf.pattern, true));
        }
    }

    AcDbImpDatabase& database_;
    const resbuf* at_;
    std::vector<relation> relations_; // of the -4 in front
    bool in_extended_data_ = false;
};

std::optional<selection_filter> selection_filter::make(AcDbImpDatabase& database, const resbuf* chain) {
    selection_filter filter(database);
    filter.root_ = reader(database, chain).read_group({});
    if (filter.root_ == nullptr)
        return std::nullopt;
    return filter;
}

const std::vector<bool>* selection_filter::layers() const {
    for (const auto& part : root_->parts)
        if (part->what == node::kind::layer)
            return &part->numbers;
    return nullptr;
}

bool selection_filter::asks_layers_alone() const {
    return root_->parts.size() == 1 && layers() != nullptr;
}

bool selection_filter::fits(dxf::record_id entity) const {
    candidate judged{*database_, entity, std::nullopt};
    return fits(*root_, judged);
}

bool selection_filter::fits(const node& tested, candidate& entity) const {
    const dxf::record_table& records = database_->records();
    std::size_t fitting = 0;
    switch (tested.what) {
    case node::kind::all:
        for (const auto& part : tested.parts)
            if (!fits(*part, entity))
                return false;
        return true;
    case node::kind::some:
    case node::kind::one:
    case node::kind::none:
        for (const auto& part : tested.parts)
            fitting += fits(*part, entity) ? 1 : 0;
        return tested.what == node::kind::some  ? fitting != 0
               : tested.what == node::kind::one ? fitting == 1
                                                : fitting == 0;
    case node::kind::passed_over:
        return true;
    case node::kind::type:
        return tested.numbers[records.type(entity.record)];
    case node::kind::layer:
        return tested.numbers[records.layer(entity.record)];
    case node::kind::layout:
    case node::kind::space:
        return fits_space(tested, entity);
    case node::kind::owner:
        return tested.handle != 0 && records.owner_handle(entity.record) == tested.handle;
    case node::kind::text:
        return fits_text(tested, entity);
    case node::kind::number:
        return fits_number(tested, entity);
    case node::kind::point:
        return fits_point(tested, entity);
    case node::kind::application:
        return fits_application(tested, entity);
    }
    return false;
}

bool selection_filter::fits_space(const node& tested, candidate& entity) const {
    const std::uint32_t owner = database_->records().owner(entity.record);
    if (owner >= tested.owners.size())
        tested.owners.resize(owner + 1, -1);
    signed char& known = tested.owners[owner];
    if (known < 0 && tested.what == node::kind::layout) {
        known = base::wildcard_match(db::tab_name(*database_, entity.space()), tested.pattern, true) ? 1 : 0;
    } else if (known < 0) {
        const std::wstring block = base::folded(database_->names().name_of(entity.space()));
        const double paper = block.starts_with(L"*paper_space") ? 1.0 : 0.0;
        known = holds(tested.how[0], paper, tested.value[0]) ? 1 : 0;
    }
    return known == 1;
}

bool selection_filter::fits_text(const node& tested, candidate& entity) const {
    bool found = false;
    for (const dxf::group& group : entity.groups()) {
        if (group.code != tested.code)
            continue;
        found = true;
        if (base::wildcard_match(database_->drawing().codec().decode(dxf::trimmed(group.value)),
                                 tested.pattern, true))
            return true;
    }
    const std::wstring missing = found ? L"" : default_text(entity.type(), tested.code);
    return !missing.empty() && base::wildcard_match(missing, tested.pattern, true);
}

bool selection_filter::fits_number(const node& tested, candidate& entity) const {
    bool found = false;
    for (const dxf::group& group : entity.groups()) {
        if (group.code != tested.code)
            continue;
        found = true;
        const auto value = dxf::leading_real(group.value);
        if (value && holds(tested.how[0], *value, tested.value[0]))
            return true;
    }
    const auto missing = found ? std::nullopt : default_number(entity.type(), tested.code);
    return missing && holds(tested.how[0], *missing, tested.value[0]);
}

bool selection_filter::fits_point(const node& tested, candidate& entity) const {
    const auto judge = [&](const std::array<double, 3>& point) {
        for (std::size_t i = 0; i < point.size(); ++i)
            if (!holds(tested.how[i], point[i], tested.value[i]))
                return false;
        return true;
    };
    const std::span<const dxf::group> groups = entity.groups();
    bool found = false;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code != tested.code)
            continue;
        found = true;
        std::array<double, 3> point{};
        for (std::size_t k = 0; k < 3 && i + k < groups.size(); ++k)
            if (groups[i + k].code == tested.code + 10 * static_cast<int>(k))
                point[k] = dxf::leading_real(groups[i + k].value).value_or(0.0);
        if (judge(point))
            return true;
    }
    return !found && tested.code == 210 && judge({0.0, 0.0, 1.0}); // the direction that is left out
}

bool selection_filter::fits_application(const node& tested, candidate& entity) const {
    const std::string_view text = database_->records().text(entity.record);
    if (lacks_first_letter(text, tested.pattern) || !dxf::may_hold(text, "1001"))
        return false;
    const std::span<const dxf::group> groups = entity.all_groups();
    return std::any_of(groups.begin(), groups.end(), [&](const dxf::group& group) {
        return group.code == application_code &&
               base::wildcard_match(database_->drawing().codec().decode(dxf::trimmed(group.value)),
                                    tested.pattern, true);
    });
}

} // namespace ed
