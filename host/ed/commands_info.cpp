// LIST, ARX, HELP.
#include "aced.h"
#include "acedads.h"
#include "base/case_fold.h"
#include "dbobjptr.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/ed/command_stack.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/rx/applications.h"

#include <algorithm>

namespace ed {

namespace {

std::wstring color_text(const AcCmColor& color) {
    if (color.isByLayer())
        return L"BYLAYER";
    if (color.isByBlock())
        return L"BYBLOCK";
    if (color.isByColor())
        return std::to_wstring(color.red()) + L"," + std::to_wstring(color.green()) + L"," +
               std::to_wstring(color.blue());
    return std::to_wstring(color.colorIndex());
}

void list_entity(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    if (entity.openStatus() != Acad::eOk)
        return;
    AcDbImpDatabase& database = id.database()->imp();
    const dxf::record_id record = database.record(id);
    AcString layer;
    entity->layer(layer);
    AcString space;
    if (const AcDbBlockTableRecordPointer block(entity->blockId(), AcDb::kForRead);
        block.openStatus() == Acad::eOk)
        block->getName(space);
    ACHAR handle[AcDbHandle::kStrSiz];
    id.handle().getIntoAsciiBuffer(handle);
    const std::string type(database.records().type_name(record));
    acutPrintf(L"\n%18S    Layer: \"%ls\"\n%28ls: %ls\n%22ls = %ls\n", type.c_str(), layer.kwszPtr(),
               L"Space", space.kwszPtr(), L"Handle", handle);
    const AcCmColor color = entity->color();
    if (!color.isByLayer())
        acutPrintf(L"%28ls: %ls\n", L"Color", color_text(color).c_str());
    ACHAR* linetype = entity->linetype();
    if (!base::equal_no_case(linetype, L"ByLayer"))
        acutPrintf(L"%28ls: \"%ls\"\n", L"Linetype", linetype);
    acutDelString(linetype);
    if (entity->lineWeight() != AcDb::kLnWtByLayer)
        acutPrintf(L"%28ls: %d\n", L"Lineweight", static_cast<int>(entity->lineWeight()));
    if (entity->visibility() == AcDb::kInvisible)
        acutPrintf(L"%28ls\n", L"Invisible");
}

} // namespace

void list_command() {
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM)
        return;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId id;
        if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk)
            list_entity(id);
    }
    acedSSFree(set);
}

void arx_command() {
    acedInitGet(RSG_NONULL, L"? Load Unload");
    ACHAR option[16];
    // "?" is no keyword by the rules of keyword lists; it is asked for as a text beside them.
    if (ask_value(L"\nEnter an option [?/Load/Unload]: ", take_input_rules(), answer_rule::word,
                  [&](const answer&) { return std::wstring(L"Invalid option keyword."); }) != RTKWORD ||
        acedGetInput(option, 16) != RTNORM)
        return;
    rx::applications& applications = rx::applications::instance();
    if (option[0] == L'?') {
        acutPrintf(L"\nLoaded applications:\n");
        for (const std::wstring& name : applications.names())
            acutPrintf(L"  %ls\n", name.c_str());
        return;
    }
    const bool loads = option[0] == L'L';
    ACHAR name[512];
    if (acedGetString(1,
                      loads ? L"\nEnter application file to load: " : L"\nEnter application file to unload: ",
                      name, 512) != RTNORM ||
        name[0] == 0)
        return;
    const base::result<void> done = loads ? applications.load(name) : applications.unload(name);
    if (!done)
        editor::instance().fail(run_status::not_loaded, done.error());
    else
        acutPrintf(L"\n%ls %ls.\n", name, loads ? L"loaded" : L"unloaded");
}

void help_command() {
    std::wstring group;
    std::size_t column = 0;
    for (const auto& [name, command] : all_commands()) {
        if (name != group) {
            group = name;
            column = 0;
            acutPrintf(L"\n\nCommands of %ls:\n", name.c_str());
        }
        const std::wstring_view help = help_of(command->globalName());
        if (!help.empty()) {
            acutPrintf(L"  %-12ls %.*ls\n", command->globalName(), static_cast<int>(help.size()),
                       help.data());
        } else if (!base::equal_no_case(name, L"ACAD")) {
            constexpr std::size_t columns = 4;
            acutPrintf(++column % columns == 0 ? L"  %ls\n" : L"  %-20ls", command->globalName());
        }
    }
    acutPrintf(L"\n");
}

} // namespace ed
