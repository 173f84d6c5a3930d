// acedCommandS and acedCmdS: commands that a program runs and answers.
#include "acdbads.h"
#include "aced.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/ed/editor.h"
#include "host/ed/selection_set.h"
#include "host/rx/result_buffer.h"

#include <cstdarg>
#include <cwchar>
#include <memory>
#include <optional>

namespace {

struct free_chain {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};

ed::answer text_answer(std::wstring text) {
    ed::answer given;
    given.kind = text.empty() ? ed::answer_kind::enter : ed::answer_kind::text;
    given.text = std::move(text);
    return given;
}

// Nothing for a name that is none.
std::optional<ed::answer> entity_answer(AcDbObjectId id) {
    ACHAR digits[17];
    if (!id.handle().getIntoAsciiBuffer(digits, 17) || id.database() == nullptr)
        return std::nullopt;
    ed::answer given = text_answer(L"(handent \"" + std::wstring(digits) + L"\")");
    given.expression = true;
    return given;
}

// The answers that a value stands for; nothing for a type that is none.
std::optional<std::deque<ed::answer>> answers_of(const resbuf& value) {
    const auto point = [&](int axes) {
        std::string text;
        for (int i = 0; i < axes; ++i)
            text += (i == 0 ? "" : ",") + base::real_text(value.resval.rpoint[i]);
        return std::deque<ed::answer>{text_answer(base::widen(text))};
    };
    switch (value.restype) {
    case RTSTR: {
        const std::wstring text = value.resval.rstring != nullptr ? value.resval.rstring : L"";
        constexpr wchar_t escape_character = 0x1B;
        ed::answer given = text_answer(text);
        if (text.size() == 1 && text.front() == escape_character)
            given.kind = ed::answer_kind::escape;
        given.expression = !text.empty() && text.front() == L'(';
        return std::deque<ed::answer>{given};
    }
    case RTREAL:
    case RTANG:
    case RTORINT:
        return std::deque<ed::answer>{text_answer(base::widen(base::real_text(value.resval.rreal)))};
    case RTSHORT:
        return std::deque<ed::answer>{text_answer(std::to_wstring(value.resval.rint))};
    case RTLONG:
        return std::deque<ed::answer>{text_answer(std::to_wstring(value.resval.rlong))};
    case RTPOINT:
        return point(2);
    case RT3DPOINT:
        return point(3);
    case RTENAME: {
        AcDbObjectId id;
        auto given = acdbGetObjectId(id, value.resval.rlname) == Acad::eOk ? entity_answer(id) : std::nullopt;
        if (!given)
            return std::nullopt;
        return std::deque<ed::answer>{*given};
    }
    case RTPICKS: {
        const ed::selection_set* const set = ed::find_selection_set(value.resval.rlname);
        if (set == nullptr)
            return std::nullopt;
        std::deque<ed::answer> given;
        for (const AcDbObjectId id : set->ids())
            if (auto one = entity_answer(id))
                given.push_back(*one);
        return given;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

int acedCmdS(const resbuf* answers) {
    std::deque<ed::answer> given;
    for (const resbuf* value = answers; value != nullptr; value = value->rbnext) {
        auto some = answers_of(*value);
        if (!some)
            return RTREJ;
        given.insert(given.end(), some->begin(), some->end());
    }
    return given.empty() ? RTREJ : ed::editor::instance().run_given(std::move(given));
}

int acedCommandS(int type, ...) {
    va_list arguments;
    va_start(arguments, type);
    const std::unique_ptr<resbuf, free_chain> answers(rx::build_list(type, arguments));
    va_end(arguments);
    return answers != nullptr ? acedCmdS(answers.get()) : RTREJ;
}
