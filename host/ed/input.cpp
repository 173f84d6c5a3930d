#include "host/ed/input.h"

#include "sys/plain_text.h"

#include <algorithm>
#include <memory>

namespace ed {

namespace {

constexpr wchar_t escape_character = 0x1B;

bool is_blank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

line_source lines_of(std::wstring_view text) {
    auto kept = std::make_shared<std::wstring>(text);
    auto at = std::make_shared<std::size_t>(0);
    return [kept, at](std::wstring_view) -> std::optional<std::wstring> {
        std::wstring_view line;
        if (!sys::next_line(*kept, *at, line))
            return std::nullopt;
        return std::wstring(line);
    };
}

} // namespace

void input::add(std::wstring name, line_source lines, bool terminal) {
    source added;
    added.name = std::move(name);
    added.lines = std::move(lines);
    added.terminal = terminal;
    sources_.push_back(std::move(added));
}

void input::add_text(std::wstring name, std::wstring_view text) {
    add(std::move(name), lines_of(text));
}

bool input::call_script(std::wstring name, std::wstring_view text) {
    constexpr std::size_t deepest = 32;
    // One that was read to its end is not under way any more, so the last line of a script may call the next
    // one.
    while (!sources_.empty() && !sources_.front().terminal && !fetch(sources_.front(), {}))
        sources_.pop_front();
    if (sources_.size() >= deepest)
        return false;
    source added;
    added.name = std::move(name);
    added.lines = lines_of(text);
    sources_.push_front(std::move(added));
    return true;
}

bool input::return_to_person() {
    const auto person = std::find_if(sources_.begin(), sources_.end(),
                                     [](const source& waiting) { return waiting.terminal; });
    if (person == sources_.end())
        return false;
    sent_.clear();
    sources_.erase(sources_.begin(), person);
    return true;
}

// Texts that programs send hold no comments: a semicolon is one.
void input::send(std::wstring_view text, bool echo) {
    if (!text.empty() && is_blank(text.back())) // it ends its answer, as the end of the text would
        text.remove_suffix(1);
    source added;
    added.name = L"sent text";
    added.lines = lines_of(text);
    added.comments = false;
    added.silent = !echo;
    sent_.push_back(std::move(added));
}

bool input::fetch(source& from, std::wstring_view prompt) {
    while (!from.open) {
        auto line = from.lines(prompt);
        if (!line)
            return false;
        from.line = std::move(*line);
        from.at = 0;
        ++from.number;
        from.open = !from.comments || from.line.empty() || from.line.front() != L';';
    }
    return true;
}

// What follows an answer belongs to it: one blank, or the line's end.
void input::end_answer(source& from) {
    if (from.at < from.line.size())
        ++from.at;
    else
        from.open = false;
}

answer input::cut(source& from, answer_rule rule) {
    const std::wstring& line = from.line;
    std::size_t& at = from.at;
    answer found;
    found.kind = answer_kind::text;

    const bool caret =
        at + 1 < line.size() && line[at] == L'^' && (line[at + 1] == L'C' || line[at + 1] == L'c');
    if (caret || (at < line.size() && line[at] == escape_character)) {
        at += caret ? 2 : 1;
        found.kind = answer_kind::escape;
        if (line.find_first_not_of(L" \t", at) ==
            line.npos) // the line held nothing else: its end is no Enter
            from.open = false;
        return found;
    }
    if (rule == answer_rule::line) {
        found.text = line.substr(at);
        from.open = false;
    } else if (at < line.size() && line[at] == L'"') {
        const std::size_t close = line.find(L'"', at + 1);
        found.text = line.substr(at + 1, close == line.npos ? line.npos : close - at - 1);
        found.quoted = true;
        at = close == line.npos ? line.size() : close + 1;
        // What follows the closing mark up to a blank belongs to the answer: "A B","C D" is one list of
        // names.
        while (at < line.size() && !is_blank(line[at]) && line[at] != escape_character) {
            if (line[at] != L'"')
                found.text += line[at];
            if (line[at++] != L'"')
                continue;
            const std::size_t end = std::min(line.find(L'"', at), line.size());
            found.text += line.substr(at, end - at);
            at = std::min(end + 1, line.size());
        }
        end_answer(from);
    } else if (at < line.size() && line[at] == L'(') {
        const std::size_t begin = at;
        int depth = 0;
        bool in_text = false;
        do {
            if (line[at] == L'"')
                in_text = !in_text;
            else if (!in_text && line[at] == L'(')
                ++depth;
            else if (!in_text && line[at] == L')')
                --depth;
            ++at;
        } while (at < line.size() && depth > 0);
        found.text = line.substr(begin, at - begin);
        found.expression = true;
        end_answer(from);
    } else {
        const std::size_t begin = at;
        while (at < line.size() && !is_blank(line[at]) && line[at] != escape_character)
            ++at;
        found.text = line.substr(begin, at - begin);
        if (at >= line.size() || line[at] != escape_character)
            end_answer(from);
    }
    if (found.text.empty() && !found.quoted)
        found.kind = answer_kind::enter;
    return found;
}

answer input::next(answer_rule rule, std::wstring_view prompt) {
    for (std::deque<source>* queue : {&sent_, &sources_}) {
        while (!queue->empty()) {
            source& from = queue->front();
            if (fetch(from, prompt)) {
                name_ = from.name;
                number_ = from.number;
                answer found = cut(from, rule);
                found.sent = was_sent_ = queue == &sent_;
                found.silent = from.silent;
                return found;
            }
            queue->pop_front();
        }
    }
    return {};
}

std::wstring input::take_rest_of_line() {
    std::deque<source>& queue = was_sent_ ? sent_ : sources_;
    if (queue.empty() || !queue.front().open)
        return {};
    queue.front().open = false;
    return queue.front().line.substr(queue.front().at);
}

// Drops texts that were read to the end. Whether one is left.
bool input::has_sent() {
    while (!sent_.empty() && !fetch(sent_.front(), {}))
        sent_.pop_front();
    return !sent_.empty();
}

bool input::at_terminal() {
    return !has_sent() && !sources_.empty() && sources_.front().terminal;
}

bool input::next_is_silent() {
    return has_sent() && sent_.front().silent;
}

bool input::has_person() const {
    return std::any_of(sources_.begin(), sources_.end(),
                       [](const source& waiting) { return waiting.terminal; });
}

void input::drop_typed_ahead() {
    if (!sources_.empty())
        sources_.front().open = false;
}

std::wstring input::place() const {
    return number_ == 0 ? name_ : name_ + L", line " + std::to_wstring(number_);
}

} // namespace ed
