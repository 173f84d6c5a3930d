// Rows of types, read into steps.
#include "base/number_text.h"
#include "host/dwg/container.h"
#include "host/dwg/special_fields.h"
#include "host/dwg/type_rows.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <unordered_map>

namespace dwg {

namespace {

constexpr std::pair<std::string_view, field_code> codes[] = {
    {"B", field_code::B},       {"RC", field_code::RC},     {"RS", field_code::RS},
    {"RL", field_code::RL},     {"RD", field_code::RD},     {"2RD", field_code::RD2},
    {"3RD", field_code::RD3},   {"BS", field_code::BS},     {"BL", field_code::BL},
    {"BLL", field_code::BLL},   {"BD", field_code::BD},     {"2BD", field_code::BD2},
    {"3BD", field_code::BD3},   {"BA", field_code::BA},     {"RA", field_code::RA},
    {"BT", field_code::BT},     {"BE", field_code::BE},     {"T", field_code::T},
    {"CMC", field_code::CMC},   {"CMI", field_code::CMI},   {"CMR", field_code::CMR},
    {"H", field_code::H},       {"H?", field_code::H_if},   {"N", field_code::N},
    {"O", field_code::O},       {"DH", field_code::data_H}, {"12BD", field_code::BD12},
    {"16BD", field_code::BD16},
};

// A row that can not be read is a mistake in this program.
[[noreturn]] void misspelt(std::string_view token) {
    std::fprintf(stderr, "a row of a DWG type can not be read: %.*s\n", static_cast<int>(token.size()),
                 token.data());
    std::abort();
}

int number_of(std::string_view text) {
    const auto number = base::parse_integer(text);
    if (!number)
        misspelt(text);
    return static_cast<int>(*number);
}

class tokens {
public:
    explicit tokens(std::string_view text) : left_(text) {}
    std::string_view next() {
        const std::size_t begin = left_.find_first_not_of(" \n");
        if (begin == left_.npos)
            return {};
        left_.remove_prefix(begin);
        const std::size_t end = std::min(left_.find_first_of(" \n"), left_.size());
        const std::string_view token = left_.substr(0, end);
        left_.remove_prefix(end);
        return token;
    }

private:
    std::string_view left_;
};

// The versions of "7+" and "-7"; false when the text is no such.
bool versions_of(std::string_view text, std::int32_t& from, std::int32_t& to) {
    constexpr std::pair<std::string_view, int> names[] = {{"0", r2000},  {"4", r2004},  {"7", r2007},
                                                          {"10", r2010}, {"13", r2013}, {"18", r2018}};
    const bool up_to = text.starts_with('-');
    if (!up_to && !text.ends_with('+'))
        return false;
    const std::string_view name = up_to ? text.substr(1) : text.substr(0, text.size() - 1);
    for (const auto& [year, version] : names)
        if (year == name) {
            from = up_to ? 0 : version;
            to = up_to ? version : std::numeric_limits<std::int32_t>::max();
            return true;
        }
    return false;
}

void (*special_field(std::string_view name))(object_reader&) {
    for (const auto rows : {entity_fields(), object_fields()})
        for (const special_row& row : rows)
            if (row.name == name)
                return row.read;
    misspelt(name);
}

field block_begin(std::string_view token) {
    field step;
    if (versions_of(token, step.from, step.to)) {
        step.code = field_code::when_version;
        return step;
    }
    if (token.size() < 2)
        misspelt(token);
    step.negated = token[0] == '!';
    step.variable = token[1];
    const std::string_view test = token.substr(2);
    if (token[0] == '*')
        step.code = field_code::repeat;
    else if (test.empty())
        step.code = field_code::when_set;
    else {
        step.code = test[0] == '&' ? field_code::when_bits : field_code::when_equal;
        step.from = number_of(test.substr(1));
    }
    return step;
}

field field_of(std::string_view token) {
    field step;
    std::string_view code = token.substr(0, token.find(':'));
    std::string_view group = token.substr(std::min(token.size(), code.size() + 1));
    for (const auto& [name, known] : codes)
        if (name == code) {
            step.code = known;
            if (const std::size_t equals = group.find('='); equals != group.npos) {
                step.variable = group[equals + 1];
                group = group.substr(0, equals);
            }
            step.group = static_cast<std::int16_t>(group.empty() ? 0 : number_of(group));
            return step;
        }
    misspelt(token);
}

// The step that was opened last ends here.
template<class Step>
void close_last(std::vector<Step>& steps, std::vector<std::size_t>& open, std::string_view text) {
    if (open.empty())
        misspelt(text);
    steps[open.back()].end = static_cast<std::uint16_t>(steps.size());
    open.pop_back();
}

std::vector<field> layout_of(std::string_view text) {
    std::vector<field> steps;
    std::vector<std::size_t> open;
    tokens all(text);
    for (std::string_view token = all.next(); !token.empty(); token = all.next()) {
        std::size_t closing = 0;
        while (token.ends_with('}')) {
            token.remove_suffix(1);
            ++closing;
        }
        if (token.starts_with('{')) {
            open.push_back(steps.size());
            steps.push_back(block_begin(token.substr(1)));
        } else if (token.starts_with('%')) {
            steps.emplace_back().code = field_code::segment;
            steps.back().from = number_of(token.substr(1));
        } else if (token.starts_with('@')) {
            steps.emplace_back().code = field_code::special;
            steps.back().read = special_field(token.substr(1));
        } else if (token.starts_with('\'')) {
            const std::size_t equals = token.find('=');
            steps.emplace_back().code = field_code::constant;
            steps.back().group = static_cast<std::int16_t>(number_of(token.substr(1, equals - 1)));
            steps.back().text = token.substr(equals + 1);
            // A brace at the end belongs to the text.
            if (closing != 0 && (steps.back().text.empty() || closing > 1)) {
                steps.back().text = {token.data() + equals + 1, steps.back().text.size() + 1};
                --closing;
            }
        } else if (token.starts_with('|')) {
            steps.emplace_back().code = field_code::add_bits;
            steps.back().variable = token[1];
            steps.back().from = static_cast<unsigned char>(token[3]);
        } else if (!token.empty()) {
            steps.push_back(field_of(token));
        }
        for (; closing != 0; --closing)
            close_last(steps, open, text);
    }
    if (!open.empty())
        misspelt(text);
    return steps;
}

order_step group_step(std::string_view token) {
    order_step step;
    const std::size_t mark = std::min(token.find('~'), token.size());
    step.group = static_cast<std::int16_t>(number_of(token.substr(0, mark)));
    if (mark == token.size())
        return step;
    const std::string_view value = token.substr(mark + 1);
    if (const auto number = base::parse_real(value)) {
        step.left_out = usual::number;
        step.number = *number;
    } else if (value == "x" || value == "z" || value == "o") {
        step.left_out = value == "x" ? usual::x_axis : value == "z" ? usual::z_axis : usual::origin;
    } else {
        step.left_out = usual::text;
        step.text = value;
    }
    return step;
}

std::vector<order_step> order_of(std::string_view text) {
    std::vector<order_step> steps;
    std::vector<std::size_t> open;
    tokens all(text);
    for (std::string_view token = all.next(); !token.empty(); token = all.next()) {
        const bool closing = token.ends_with('}') && token[0] != '\'';
        if (closing)
            token.remove_suffix(1);
        order_step step;
        if (token.starts_with('{')) {
            if (!versions_of(token.substr(1), step.from, step.to))
                misspelt(token);
            step.code = order_code::when_version;
            open.push_back(steps.size());
            steps.push_back(step);
        } else if (token.starts_with('=')) {
            step.code = order_code::constant;
            step.group = 100;
            step.text = token.substr(1);
            steps.push_back(step);
        } else if (token.starts_with('\'')) {
            const std::size_t equals = token.find('=');
            step.code = order_code::constant;
            step.group = static_cast<std::int16_t>(number_of(token.substr(1, equals - 1)));
            step.text = token.substr(equals + 1);
            steps.push_back(step);
        } else if (token.starts_with('%')) {
            step.code = order_code::segment;
            step.from = number_of(token.substr(1));
            steps.push_back(step);
        } else if (token == "*") {
            step.code = order_code::rest;
            steps.push_back(step);
        } else if (token.starts_with('<') || token.starts_with('[')) {
            step.code = token[0] == '<' ? order_code::together : order_code::run;
            const std::size_t head = steps.size();
            steps.push_back(step);
            std::string_view list = token.substr(1, token.size() - 2);
            while (!list.empty()) {
                const std::size_t comma = std::min(list.find(','), list.size());
                steps.push_back(group_step(list.substr(0, comma)));
                list.remove_prefix(std::min(list.size(), comma + 1));
            }
            steps[head].end = static_cast<std::uint16_t>(steps.size());
        } else if (!token.empty()) {
            steps.push_back(group_step(token));
        }
        if (closing)
            close_last(steps, open, text);
    }
    if (!open.empty())
        misspelt(text);
    return steps;
}

std::vector<object_type> all_types() {
    std::vector<object_type> types;
    for (const auto rows : {entity_rows(), object_rows()})
        for (const type_row& row : rows)
            types.push_back({&row, layout_of(row.layout), order_of(row.order)});
    return types;
}

} // namespace

const std::vector<object_type>& object_types() {
    static const std::vector<object_type> types = all_types();
    return types;
}

const object_type* type_of_number(int number) {
    constexpr std::size_t count = 0x200; // numbers of classes are higher
    static const std::vector<const object_type*> by_number = [] {
        std::vector<const object_type*> map(count);
        for (const object_type& type : object_types())
            if (type.row->number != 0)
                map[static_cast<std::size_t>(type.row->number)] = &type;
        return map;
    }();
    return number >= 0 && static_cast<std::size_t>(number) < count
               ? by_number[static_cast<std::size_t>(number)]
               : nullptr;
}

const object_type* type_of_class(std::string_view dxf_name) {
    static const std::unordered_map<std::string_view, const object_type*> by_name = [] {
        std::unordered_map<std::string_view, const object_type*> map;
        for (const object_type& type : object_types())
            if (!type.row->class_name.empty())
                map.emplace(type.row->class_name, &type);
        return map;
    }();
    const auto found = by_name.find(dxf_name);
    return found != by_name.end() ? found->second : nullptr;
}

} // namespace dwg
