#include "host/ed/selection_filter.h"

#include "acutads.h"
#include "base/case_fold.h"
#include "base/wildcard.h"
#include "host/db/properties.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace ed {

namespace {

constexpr int operator_code = -4;
constexpr int extended_data_code = -3;
constexpr int application_code = 1001;

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

bool holds(relation relation, double left, double right) {
    const auto bits = [](double value) { return static_cast<long long>(value); };
    switch (relation) {
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

// What an entity that leaves a group out is taken to have.
std::optional<double> default_number(int code) {
    switch (code) {
    case 62:
        return 256.0;
    case 60:
    case 67:
        return 0.0;
    case 48:
        return 1.0;
    case 370:
        return -1.0;
    default:
        return std::nullopt;
    }
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

} // namespace

struct selection_filter::node {
    enum class kind { all, some, one, none, text, number, application } what = kind::all;
    std::vector<std::shared_ptr<node>> parts;
    int code = 0;
    std::wstring pattern;
    relation how = relation::equal;
    double number = 0;
    std::vector<bool> numbers; // of types or layers that the pattern fits
};

std::shared_ptr<selection_filter::node> selection_filter::parse(const resbuf*& at, const wchar_t* until,
                                                                const AcDbImpDatabase& database) {
    auto group = std::make_shared<node>();
    relation how = relation::equal; // what the operator in front of a number says
    for (; at != nullptr; at = at->rbnext) {
        const int code = at->restype == RTDXF0 ? 0 : at->restype;
        if (code == operator_code) {
            const std::wstring sign = base::folded(at->resval.rstring != nullptr ? at->resval.rstring : L"");
            if (until != nullptr && sign == until)
                return group;
            struct bracket {
                const wchar_t *open, *close;
                node::kind what;
            };
            static constexpr bracket brackets[] = {{L"<and", L"and>", node::kind::all},
                                                   {L"<or", L"or>", node::kind::some},
                                                   {L"<xor", L"xor>", node::kind::one},
                                                   {L"<not", L"not>", node::kind::none}};
            const bracket* opened = nullptr;
            for (const bracket& bracket : brackets)
                if (sign == bracket.open)
                    opened = &bracket;
            if (opened != nullptr) {
                at = at->rbnext;
                auto inner = parse(at, opened->close, database);
                const std::size_t operands = inner != nullptr ? inner->parts.size() : 0;
                if (inner == nullptr || operands == 0 || (opened->what == node::kind::one && operands != 2) ||
                    (opened->what == node::kind::none && operands != 1))
                    return nullptr;
                inner->what = opened->what;
                group->parts.push_back(std::move(inner));
                continue;
            }
            const auto told = relation_of(sign);
            if (!told)
                return nullptr;
            how = *told;
            continue;
        }
        if (code == extended_data_code)
            continue; // the names of applications follow
        auto leaf = std::make_shared<node>();
        leaf->code = code;
        const dxf::value_kind kind = dxf::kind_of_code(code);
        if (code == application_code) {
            leaf->what = node::kind::application;
            leaf->pattern = at->resval.rstring != nullptr ? at->resval.rstring : L"";
        } else if (kind == dxf::value_kind::text && code >= 0) {
            leaf->what = node::kind::text;
            if (at->resval.rstring == nullptr)
                return nullptr;
            leaf->pattern = at->resval.rstring;
            const dxf::name_set* names = code == 0   ? &database.records().type_names()
                                         : code == 8 ? &database.records().layer_names()
                                                     : nullptr;
            for (std::uint32_t i = 0; names != nullptr && i < names->size(); ++i) {
                const std::string_view bytes = dxf::trimmed((*names)[i]);
                const std::wstring name =
                    code == 8 && bytes.empty() ? L"0" : database.drawing().codec().decode(bytes);
                leaf->numbers.push_back(base::wildcard_match(name, leaf->pattern, true));
            }
        } else if (code >= 0 && code < 1000 && kind != dxf::value_kind::handle &&
                   kind != dxf::value_kind::binary) {
            leaf->what = node::kind::number;
            leaf->how = how;
            leaf->number = number_in(*at, code);
        } else {
            continue; // handles, names of entities: no filter looks at them
        }
        how = relation::equal;
        group->parts.push_back(std::move(leaf));
    }
    return until == nullptr ? group : nullptr; // a bracket that is not closed
}

std::optional<selection_filter> selection_filter::make(AcDbImpDatabase& database, const resbuf* chain) {
    selection_filter filter(database);
    filter.root_ = parse(chain, nullptr, database);
    if (filter.root_ == nullptr)
        return std::nullopt;
    return filter;
}

const std::vector<bool>* selection_filter::layers() const {
    for (const auto& part : root_->parts)
        if (part->what == node::kind::text && part->code == 8)
            return &part->numbers;
    return nullptr;
}

bool selection_filter::asks_layers_alone() const {
    return root_->parts.size() == 1 && layers() != nullptr;
}

bool selection_filter::fits(dxf::record_id entity) const {
    std::optional<dxf::group_list> groups;
    return fits(*root_, entity, groups);
}

bool selection_filter::fits(const node& tested, dxf::record_id entity,
                            std::optional<dxf::group_list>& groups) const {
    std::size_t fitting = 0;
    switch (tested.what) {
    case node::kind::all:
        for (const auto& part : tested.parts)
            if (!fits(*part, entity, groups))
                return false;
        return true;
    case node::kind::some:
    case node::kind::one:
    case node::kind::none:
        for (const auto& part : tested.parts)
            fitting += fits(*part, entity, groups) ? 1 : 0;
        return tested.what == node::kind::some  ? fitting != 0
               : tested.what == node::kind::one ? fitting == 1
                                                : fitting == 0;
    case node::kind::text: {
        const dxf::record_table& records = database_->records();
        if (tested.code == 0)
            return tested.numbers[records.type(entity)];
        if (tested.code == 8)
            return tested.numbers[records.layer(entity)];
        if (!groups)
            groups.emplace(records.text(entity));
        std::wstring text;
        if (const auto value = groups->text(db::name_place, tested.code))
            text = database_->drawing().codec().decode(dxf::trimmed(*value));
        else if (tested.code == 6)
            text = L"ByLayer";
        else if (tested.code == 410)
            text = L"Model";
        return base::wildcard_match(text, tested.pattern, true);
    }
    case node::kind::application: {
        if (!groups)
            groups.emplace(database_->records().text(entity));
        const auto& all = groups->groups();
        return std::any_of(all.begin(), all.end(), [&](const dxf::group& group) {
            return group.code == application_code &&
                   base::wildcard_match(database_->drawing().codec().decode(dxf::trimmed(group.value)),
                                        tested.pattern, true);
        });
    }
    case node::kind::number: {
        if (!groups)
            groups.emplace(database_->records().text(entity));
        auto value = groups->real(db::name_place, tested.code);
        if (!value)
            value = default_number(tested.code);
        return value && holds(tested.how, *value, tested.number);
    }
    }
    return false;
}

} // namespace ed
