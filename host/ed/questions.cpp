#include "host/ed/questions.h"

#include "acdbads.h"
#include "acedads.h"
#include "base/wide_format.h"
#include "dbobjptr.h"
#include "geassign.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/ed/expected.h"
#include "host/ed/prompts.h"

namespace ed {

AcDbDatabase* current_drawing() {
    return ap::documents::instance().current_database();
}

int ask_point(const std::wstring& prompt, AcGePoint3d& point, const AcGePoint3d* base,
              const wchar_t* keywords, int bits) {
    acedInitGet(bits, keywords);
    ads_point found;
    const int answered = acedGetPoint(base != nullptr ? asDblArray(*base) : nullptr, prompt.c_str(), found);
    if (answered == RTNORM)
        point = asPnt3d(found);
    return answered;
}

int ask_distance(const std::wstring& prompt, double& distance, const AcGePoint3d* base,
                 const wchar_t* keywords) {
    acedInitGet(RSG_NOZERO | RSG_NONEG, keywords);
    return acedGetDist(base != nullptr ? asDblArray(*base) : nullptr, prompt.c_str(), &distance);
}

int ask_angle(const std::wstring& prompt, double& angle, const AcGePoint3d* base) {
    acedInitGet(0, L"");
    return acedGetAngle(base != nullptr ? asDblArray(*base) : nullptr, prompt.c_str(), &angle);
}

int ask_keyword(const std::wstring& prompt, const wchar_t* keywords, std::wstring& word) {
    acedInitGet(0, keywords);
    ACHAR taken[32];
    const int answered = acedGetKword(prompt.c_str(), taken, 32);
    if (answered == RTNORM)
        word = taken;
    return answered;
}

std::wstring taken_keyword() {
    ACHAR word[133];
    return acedGetInput(word, 133) == RTNORM ? word : L"";
}

int ask_name(const std::wstring& prompt, std::wstring& name, const name_check& reason) {
    return ask_value(prompt.c_str(), {}, answer_rule::word, [&](const answer& given) -> std::wstring {
        std::wstring why = reason != nullptr ? reason(given.text) : std::wstring();
        if (why.empty())
            name = given.text;
        return why;
    });
}

int ask_line(const std::wstring& prompt, std::wstring& text) {
    return ask_value(prompt.c_str(), {}, answer_rule::line, [&](const answer& given) {
        text = given.text;
        return std::wstring();
    });
}

int ask_file(const std::wstring& prompt, const std::wstring& extension, std::wstring& file) {
    const expecting hint({{}, extension});
    const int answered = ask_line(prompt, file);
    file = file_of(file);
    return answered;
}

std::wstring file_of(std::wstring_view typed) {
    while (!typed.empty() && typed.back() == L' ')
        typed.remove_suffix(1);
    if (typed.size() > 1 && typed.front() == L'"' && typed.back() == L'"')
        typed = typed.substr(1, typed.size() - 2);
    return std::wstring(typed);
}

std::optional<bool> ask_yes(const std::wstring& question, bool enter) {
    std::wstring word = enter ? L"Yes" : L"No";
    if (ask_keyword(question + (enter ? L" [Yes/No] <Y>: " : L" [Yes/No] <N>: "), L"Yes No", word) == RTCAN)
        return std::nullopt;
    return word == L"Yes";
}

std::vector<AcDbObjectId> ask_objects(bool writes) {
    std::vector<AcDbObjectId> chosen;
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM)
        return chosen;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    int locked = 0;
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId id;
        if (acedSSName(set, i, name) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk)
            continue;
        AcDbImpDatabase& drawing = id.database()->imp();
        if (writes && drawing.layers().is_locked(drawing.record(id)))
            ++locked;
        else
            chosen.push_back(id);
    }
    acedSSFree(set);
    if (locked != 0)
        acutPrintf(L"\n%d %ls on a locked layer.\n", locked, locked == 1 ? L"was" : L"were");
    return chosen;
}

bool add_to_current_space(std::unique_ptr<AcDbEntity> entity) {
    const AcDbBlockTableRecordPointer space(current_drawing()->currentSpaceId(), AcDb::kForWrite);
    if (space.openStatus() != Acad::eOk || space->appendAcDbEntity(entity.get()) != Acad::eOk) {
        acdbFail(L"\nThis drawing can not hold the object.");
        return false;
    }
    entity.release()->close(); // the drawing's now
    return true;
}

std::wstring shown_number(double value) {
    return base::format_wide(L"%.4f", value);
}

std::wstring shown_point(const AcGePoint3d& point) {
    return L"X=" + shown_number(point.x) + L"  Y=" + shown_number(point.y) + L"  Z=" + shown_number(point.z);
}

std::wstring header_text(std::string_view variable) {
    const dxf::drawing& drawing = current_drawing()->imp().drawing();
    return drawing.codec().decode(drawing.header_value(variable).value_or(""));
}

} // namespace ed
