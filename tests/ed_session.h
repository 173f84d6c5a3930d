// A drawing that is open as in the program, and answers typed for the calls that ask.
#pragma once

#include "acdbads.h"
#include "acedads.h"
#include "base/utf.h"
#include "dbmain.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/ed/editor.h"
#include "tests/sys_support.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace test {

class session {
public:
    explicit session(const std::filesystem::path& drawing) {
        editor_.keep_going = true;
        ed::command_line::instance().set_sink([this](std::string_view text) { shown += text; });
        ed::command_line::instance().set_error_sink([this](std::string_view text) { errors += text; });
        const auto opened = ap::documents::instance().open(drawing.wstring(), false);
        EXPECT_TRUE(static_cast<bool>(opened)) << drawing;
        acDocManager->lockDocument(acDocManager->curDocument()); // as it is for a command
        type(L"");
        acedUsrBrk();
    }
    ~session() {
        type(L"");
        acedUsrBrk();
        ed::command_line::instance().set_sink({});
        ed::command_line::instance().set_error_sink({});
        editor_.keep_going = false;
        acDocManager->unlockDocument(acDocManager->curDocument());
        ap::documents::instance().close_all();
    }
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    // What the next questions are answered with; what was not used of the answers before is dropped.
    void type(std::wstring_view text) {
        while (editor_.input.next(ed::answer_rule::line, L"").kind != ed::answer_kind::end)
            continue;
        shown.clear();
        errors.clear();
        if (!text.empty())
            editor_.input.send(text);
    }
    // Whether every answer was used.
    bool all_used() { return editor_.input.next(ed::answer_rule::line, L"").kind == ed::answer_kind::end; }

    AcDbImpDatabase& database() { return ap::documents::instance().current_database()->imp(); }
    AcDbObjectId id(std::uint64_t handle) { return database().id(database().records().find(handle)); }

    std::string shown;
    std::string errors; // a line for each refused answer

private:
    profile profile_;
    ed::editor& editor_ = ed::editor::instance();
};

inline std::string digits(std::uint64_t handle) {
    char text[20];
    std::snprintf(text, sizeof text, "%llX", static_cast<unsigned long long>(handle));
    return text;
}

// The handles of a set, in its order; the set is freed.
inline std::string handles_of(ads_name set) {
    std::string text;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name entity;
        AcDbObjectId id;
        if (acedSSName(set, i, entity) == RTNORM && acdbGetObjectId(id, entity) == Acad::eOk)
            text += (text.empty() ? "" : " ") + digits(static_cast<Adesk::UInt64>(id.handle()));
    }
    acedSSFree(set);
    return text;
}

inline int error_number() {
    resbuf value;
    acedGetVar(L"ERRNO", &value);
    return value.resval.rint;
}

inline void set_variable(const wchar_t* name, double value) {
    resbuf wanted{};
    wanted.restype = RTREAL;
    wanted.resval.rreal = value;
    if (acedSetVar(name, &wanted) == RTREJ) {
        wanted.restype = RTSHORT;
        wanted.resval.rint = static_cast<short>(value);
        EXPECT_EQ(acedSetVar(name, &wanted), RTNORM) << name;
    }
}

} // namespace test
