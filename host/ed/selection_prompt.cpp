#include "host/ed/selection_prompt.h"

#include "acdbads.h"
#include "acedads.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "host/ed/coordinates.h"
#include "host/ed/expected.h"
#include "host/ed/expression.h"
#include "host/ed/message_filters.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"

namespace ed {

namespace {

AcGePoint2d flat_world(const AcGePoint3d& user) {
    const AcGePoint3d world = to_world(user);
    return {world.x, world.y};
}

// Asks for a point: RTNORM, RTNONE for Enter where that is allowed, RTCAN.
int ask_point(const wchar_t* prompt, bool enter_ends, AcGePoint2d& point) {
    return ask_judged(prompt, {enter_ends ? 0 : RSG_NONULL, {}}, answer_rule::word, [&](const answer& given) {
        const auto read = take_point(given.text);
        if (!read)
            return verdict::unknown(L"Invalid point.");
        point = flat_world(*read);
        return verdict();
    });
}

// "Expects a point or Window/Last/...".
std::wstring expectation() {
    std::wstring text;
    for (const std::wstring& word : words_for_ways())
        text += (text.empty() ? L"Expects a point or " : L"/") + word;
    return text;
}

} // namespace

keyword_callback& selection_keyword_callback() {
    static keyword_callback callback = nullptr;
    return callback;
}

int selection_prompt::run(selection_set& set) {
    set_ = &set;
    if (mode_.how == way::multiple) {
        further_ = way::multiple;
        if (const int answered = ask_further(); answered != RTNORM || once_)
            return answered;
    } else if (mode_.first && *mode_.first != way::point) {
        const verdict began = take_way(*mode_.first);
        const int answered = began.what == verdict::how::taken ? ask_further() : RTNORM;
        if (answered != RTNORM || once_)
            return answered;
    }
    const expecting hint({{}, {}, words_for_ways()});
    for (;;) {
        further_ = way::ask;
        hit_nothing_ = false;
        const input_rules rules{rules_.bits & ~RSG_NONULL, rules_.keywords};
        bool changes = true; // whether the answer is one that selects, of which ":S" takes one
        int answered = ask_judged((removing_ ? remove_prompt_ : add_prompt_).c_str(), rules,
                                  answer_rule::word, [&](const answer& given) {
                                      const verdict found = take(given);
                                      changes = further_ != way::add;
                                      return found;
                                  });
        if (answered == RTNORM)
            answered = ask_further();
        if (answered == RTKWORD && mode_.callbacks && selection_keyword_callback() != nullptr)
            answered = call_back();
        if (answered == RTNONE)
            return set.ids().empty() ? RTNONE : RTNORM;
        if (answered != RTNORM || (once_ && changes))
            return answered;
    }
}

std::wstring selection_prompt::take_first(selection_set& set, const answer& given) {
    set_ = &set;
    verdict found = given.expression ? take_expression(given) : take_point_answer(given);
    if (found.what == verdict::how::taken)
        ask_further();
    return std::move(found.reason);
}

verdict selection_prompt::take(const answer& given) {
    if (given.expression)
        return take_expression(given);
    if (given.text == L"?") {
        command_line::instance().print(L"\n" + expectation());
        further_ = way::add; // nothing was selected
        return {};
    }
    if (const auto chosen = way_of_answer(given.text); chosen && mode_.first != way::point)
        return take_way(*chosen);
    return take_point_answer(given);
}

verdict selection_prompt::take_expression(const answer& given) {
    std::wstring reason;
    const auto parsed = parse_expression(given.text, reason);
    if (!parsed)
        return verdict::refused(reason);
    if (parsed->what == expression::function::handent) {
        dxf::record_id entity = dxf::no_record;
        if (reason = entity_of_handle(database_, parsed->text, entity); !reason.empty())
            return verdict::refused(reason);
        add({database_.id(entity)});
        return {};
    }
    const auto filter = selection_filter::make(database_, parsed->filter.get());
    const auto mode = parse_selection_mode(parsed->text);
    if (!filter || !mode || mode->how != way::drawing)
        return verdict::refused(L"Invalid selection expression.");
    add(select_all(database_, &*filter, true));
    return {};
}

verdict selection_prompt::take_point_answer(const answer& given) {
    const auto point = read_point(given.text);
    if (!point || !mode_.allows(way::point) || mode_.only_whole)
        return verdict::unknown(L"*Invalid selection* " + expectation());
    put_variable(L"LASTPOINT", *point);
    if (!click(*point)) {
        further_ = way::add;
        return {};
    }
    const auto picked = select_point(database_, to_world(*point), mode_);
    const bool box = automatic_ || (variable<int>(L"PICKAUTO") & 1) != 0;
    if (picked.empty() && box && mode_.first != way::point) {
        further_ = way::box;
        corner_ = {flat_world(*point)};
        return {};
    }
    hit_nothing_ = picked.empty();
    add(picked);
    return {};
}

verdict selection_prompt::take_way(way chosen) {
    if (!mode_.allows(chosen))
        return verdict::refused(L"*Invalid selection*");
    switch (chosen) {
    case way::last: {
        const dxf::record_id last = last_visible(database_);
        add(last != dxf::no_record ? std::vector{database_.id(last)} : std::vector<AcDbObjectId>());
        break;
    }
    case way::previous:
        add(previous_in(database_));
        break;
    case way::all: {
        std::vector<AcDbObjectId> here;
        for (const AcDbObjectId id : select_all(database_, nullptr, false))
            if (in_current_space(database_, database_.record(id)))
                here.push_back(id);
        add(here);
        break;
    }
    case way::undo:
        undo();
        further_ = way::add;
        break;
    case way::add:
    case way::remove:
        removing_ = chosen == way::remove;
        further_ = way::add;
        break;
    case way::automatic:
        automatic_ = true;
        further_ = way::add;
        break;
    case way::single:
        once_ = true;
        further_ = way::add;
        break;
    default:
        further_ = chosen; // its points are asked for next
        corner_.clear();
        break;
    }
    return {};
}

int selection_prompt::ask_further() {
    switch (further_) {
    case way::ask:
    case way::add:
        return RTNORM;
    case way::multiple:
        return ask_multiple();
    case way::group:
        return ask_group();
    default:
        return ask_region(further_, std::exchange(corner_, {}));
    }
}

int selection_prompt::ask_region(way chosen, std::vector<AcGePoint2d> points) {
    const bool two_corners = chosen == way::window || chosen == way::crossing || chosen == way::box;
    const bool fence = chosen == way::fence;
    if (points.empty()) {
        const wchar_t* const first = two_corners ? L"Specify first corner: "
                                     : fence     ? L"Specify first fence point: "
                                                 : L"First polygon point: ";
        points.resize(1);
        if (const int answered = ask_point(first, false, points[0]); answered != RTNORM)
            return answered;
    }
    while (!two_corners || points.size() < 2) {
        AcGePoint2d next;
        const int answered = ask_point(two_corners ? L"Specify opposite corner: "
                                       : fence     ? L"Specify next fence point: "
                                                   : L"Specify endpoint of line: ",
                                       !two_corners, next);
        if (answered == RTNONE)
            break;
        if (answered != RTNORM)
            return answered;
        points.push_back(next);
    }
    const std::size_t least = two_corners || fence ? 2 : 3;
    if (points.size() < least) {
        command_line::instance().print(L"\nToo few points.");
        return RTNORM;
    }
    add(select_region(database_, chosen, std::move(points)));
    return RTNORM;
}

// Picks that are looked at when all of them are there.
int selection_prompt::ask_multiple() {
    std::vector<AcGePoint3d> points;
    for (;;) {
        AcGePoint3d point;
        const int answered = ask_judged(add_prompt_.c_str(), {}, answer_rule::word, [&](const answer& given) {
            const auto read = take_point(given.text);
            if (!read)
                return verdict::unknown(L"Invalid point.");
            point = *read;
            return verdict();
        });
        if (answered == RTNONE)
            break;
        if (answered != RTNORM)
            return answered;
        if (click(point))
            points.push_back(to_world(point));
    }
    std::vector<AcDbObjectId> picked;
    for (const AcGePoint3d& point : points)
        for (const AcDbObjectId id : select_point(database_, point, mode_))
            picked.push_back(id);
    command_line::instance().print(L"\n" + std::to_wstring(points.size()) + L" selected, ");
    add(picked);
    return RTNORM;
}

int selection_prompt::ask_group() {
    return ask_judged(L"Enter group name: ", {}, answer_rule::word, [&](const answer& given) {
        const auto members = select_group(database_, given.text);
        if (!members)
            return verdict::refused(L"There is no group " + given.text + L".");
        add(*members);
        return verdict();
    });
}

// What the program makes of a keyword: entities and sets are selected, a text is shown.
int selection_prompt::call_back() {
    AcString word;
    acedGetInput(word);
    resbuf* const chain = selection_keyword_callback()(word.constPtr());
    std::vector<AcDbObjectId> picked;
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        AcDbObjectId id;
        if (node->restype == RTSTR && node->resval.rstring != nullptr) {
            command_line::instance().print(L"\n" + std::wstring(node->resval.rstring));
        } else if (node->restype == RTENAME && acdbGetObjectId(id, node->resval.rlname) == Acad::eOk) {
            picked.push_back(id);
        } else if (node->restype == RTPICKS) {
            if (const selection_set* const set = find_selection_set(node->resval.rlname))
                picked.insert(picked.end(), set->ids().begin(), set->ids().end());
        }
    }
    acutRelRb(chain);
    if (!picked.empty())
        add(picked);
    return RTNORM;
}

// Says "2 found, 1 duplicate, 5 total", as the editor does.
void selection_prompt::add(const std::vector<AcDbObjectId>& picked) {
    step done{removing_, {}};
    std::size_t filtered = 0;
    std::size_t locked = 0;
    picture::layer_states states(database_);
    for (const AcDbObjectId id : picked) {
        const dxf::record_id record = database_.record(id);
        if (record == dxf::no_record || (filter_ != nullptr && !filter_->fits(record)))
            ++filtered;
        else if (mode_.unlocked && states.of(record).locked)
            ++locked;
        else if (removing_ ? set_->remove(id) : set_->add(id))
            done.changed.push_back(id);
        else if (mode_.doubles && !removing_)
            set_->add_again(id);
    }
    const std::size_t left_out = filtered + locked;
    std::wstring text = std::to_wstring(picked.size()) + L" found";
    if (filtered != 0)
        text += L", " + std::to_wstring(filtered) + L" filtered out";
    if (locked != 0)
        text += L", " + std::to_wstring(locked) + (locked == 1 ? L" was" : L" were") + L" on a locked layer";
    if (removing_)
        text += L", " + std::to_wstring(done.changed.size()) + L" removed";
    else if (done.changed.size() + left_out < picked.size())
        text += L", " + std::to_wstring(picked.size() - done.changed.size() - left_out) + L" duplicate";
    if (set_->ids().size() != picked.size() || removing_)
        text += L", " + std::to_wstring(set_->ids().size()) + L" total";
    command_line::instance().print(L"\n" + text);
    steps_.push_back(std::move(done));
}

void selection_prompt::undo() {
    if (steps_.empty()) {
        command_line::instance().print(L"\nNothing to undo.");
        return;
    }
    for (const AcDbObjectId id : steps_.back().changed)
        steps_.back().removing ? set_->add(id) : set_->remove(id);
    steps_.pop_back();
}

} // namespace ed
