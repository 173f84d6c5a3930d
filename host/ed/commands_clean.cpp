// AUDIT, -PURGE.
#include "acedads.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/audit.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

#include <algorithm>
#include <set>
#include <string>

namespace ed {

// Findings are the run's status 1, whether they are mended or not. What was repaired when the drawing was
// opened counts as found and fixed.
void audit_command() {
    if (current_drawing() == nullptr)
        return;
    const std::optional<bool> answered = ask_yes(L"\nFix any errors detected?");
    if (!answered)
        return;
    const bool mends = *answered;
    AcDbImpDatabase& drawing = current_drawing()->imp();
    acutPrintf(L"\nAuditing Header\nAuditing Tables\nAuditing Entities");
    const auto findings = db::audit(drawing, mends);
    for (const db::audit_finding& finding : findings) {
        std::wstring place = L"Header";
        if (finding.record != dxf::no_record) {
            place = base::widen(drawing.records().type_name(finding.record));
            if (const std::uint64_t handle = drawing.records().handle(finding.record); handle != 0)
                place += L"(" + base::widen(db::handle_text(handle)) + L")";
        }
        acutPrintf(L"\n%ls: %ls: %ls", place.c_str(), finding.what.c_str(),
                   (mends ? finding.remedy : L"to be " + finding.remedy).c_str());
    }
    const std::size_t repaired = drawing.drawing().repairs().size();
    if (repaired != 0)
        acutPrintf(L"\n%d %ls repaired when the drawing was opened.", static_cast<int>(repaired),
                   repaired == 1 ? L"error was" : L"errors were");
    const std::size_t fixed = repaired + (mends ? findings.size() : 0);
    const auto erased = std::count_if(findings.begin(), findings.end(),
                                      [](const db::audit_finding& finding) { return finding.erases; });
    acutPrintf(L"\nTotal errors found %d fixed %d\nErased %d objects\n",
               static_cast<int>(findings.size() + repaired), static_cast<int>(fixed),
               mends ? static_cast<int>(erased) : 0);
    if (repaired + findings.size() != 0)
        note_findings();
}

namespace {

using db::table_kind;

struct purged_kind {
    std::wstring_view keyword;
    table_kind table;
    const wchar_t* one;
    const wchar_t* many;
    bool shapes = false; // of the text styles those that load shapes, or the others
    bool with_all = true;
};

// In this order All takes them: what a block held is free when it is gone.
constexpr purged_kind kinds[] = {
    {L"Blocks", table_kind::block, L"block", L"blocks"},
    {L"Dimstyles", table_kind::dim_style, L"dimension style", L"dimension styles"},
    {L"LAyers", table_kind::layer, L"layer", L"layers"},
    {L"LTypes", table_kind::linetype, L"linetype", L"linetypes"},
    {L"SHapes", table_kind::text_style, L"shape file", L"shape files", true},
    {L"textSTyles", table_kind::text_style, L"text style", L"text styles"},
    {L"Regapps", table_kind::regapp, L"registered application", L"registered applications", false, false},
};

bool loads_shapes(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbTextStyleTableRecord> style(id, AcDb::kForRead);
    return style.openStatus() == Acad::eOk && style->isShapeFile();
}

class purge_run {
public:
    explicit purge_run(std::wstring names) : names_(std::move(names)) {}

    bool ask_whether_to_verify() {
        const std::optional<bool> verifies = ask_yes(L"\nVerify each name to be purged?", true);
        verifies_ = verifies.value_or(true);
        return verifies.has_value();
    }

    // False when the user ended it. `found` gets how many there were.
    bool purge(const purged_kind& kind, std::size_t& found) {
        AcDbImpDatabase& drawing = current_drawing()->imp();
        AcDbObjectIdArray ids;
        for (const dxf::record_id entry : drawing.names().entries(kind.table)) {
            const AcDbObjectId id = drawing.id(entry);
            const bool wanted = !drawing.records().gone(entry) && !declined_.contains(entry) &&
                                base::wildcard_match(drawing.names().name_of(entry), names_, true) &&
                                (kind.table != table_kind::text_style || loads_shapes(id) == kind.shapes);
            if (wanted)
                ids.append(id);
        }
        current_drawing()->purge(ids);
        found = static_cast<std::size_t>(ids.length());
        for (const AcDbObjectId& id : ids)
            if (!purge_one(kind, id))
                return false;
        return true;
    }

private:
    bool purge_one(const purged_kind& kind, AcDbObjectId id) {
        AcDbImpDatabase& drawing = current_drawing()->imp();
        const std::wstring name = drawing.names().name_of(drawing.record(id));
        if (verifies_) {
            const auto purges = ask_yes(L"\nPurge " + std::wstring(kind.one) + L" \"" + name + L"\"?");
            if (!purges)
                return false;
            if (!*purges) {
                declined_.insert(drawing.record(id));
                return true;
            }
        }
        acutPrintf(L"\nDeleting %ls \"%ls\".", kind.one, name.c_str());
        const AcDbObjectPointer<AcDbObject> entry(id, AcDb::kForWrite);
        if (entry.openStatus() != Acad::eOk || entry->erase() != Acad::eOk) {
            acutPrintf(L"\nThe %ls \"%ls\" can not be purged.", kind.one, name.c_str());
            declined_.insert(drawing.record(id));
        }
        return true;
    }

    std::wstring names_;
    bool verifies_ = true;
    std::set<dxf::record_id> declined_;
};

} // namespace

void purge_command() {
    if (current_drawing() == nullptr)
        return;
    std::wstring keywords;
    std::wstring shown;
    for (const purged_kind& kind : kinds) {
        keywords += std::wstring(kind.keyword) + L" ";
        shown += std::wstring(kind.keyword) + L"/";
    }
    std::wstring word;
    if (ask_keyword(L"\nEnter type of unused objects to purge [" + shown + L"All]: ",
                    (keywords + L"All").c_str(), word) != RTNORM)
        return;
    std::wstring names = L"*";
    if (ask_name(L"\nEnter name(s) to purge <*>: ", names) == RTCAN)
        return;
    purge_run run(names);
    if (!run.ask_whether_to_verify())
        return;
    // What hung on a thing that went may be free now.
    const bool all = word == L"All";
    std::size_t found = 0;
    for (bool again = true, first = true; again; first = false) {
        again = false;
        for (const purged_kind& kind : kinds) {
            if (all ? !kind.with_all : kind.keyword != word)
                continue;
            if (!run.purge(kind, found))
                return;
            again = again || found != 0;
            if (found == 0 && first)
                acutPrintf(L"\nNo unreferenced %ls found.", kind.many);
        }
    }
    acutPrintf(L"\n");
}

} // namespace ed
