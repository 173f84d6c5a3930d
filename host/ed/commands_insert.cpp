// INSERT, XATTACH.
#include "acedads.h"
#include "base/case_fold.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/inserted_drawing.h"
#include "host/db/creation/new_block.h"
#include "host/db/xref/loading.h"
#include "host/ed/editor.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/insertion.h"
#include "host/ed/questions.h"
#include "sys/folders.h"

namespace ed {

namespace {

std::wstring last_block; // of the session

AcDbObjectId block_named(const std::wstring& name) {
    AcDbImpDatabase& drawing = current_drawing()->imp();
    return drawing.id(drawing.names().find(db::table_kind::block, name));
}

void list_blocks() {
    std::wstring pattern = L"*";
    if (ask_name(L"\nEnter block(s) to list <*>: ", pattern) == RTCAN)
        return;
    AcDbImpDatabase& drawing = current_drawing()->imp();
    acutPrintf(L"\nDefined blocks.");
    int references = 0;
    int own = 0;
    int unnamed = 0;
    for (const dxf::record_id entry : drawing.names().entries(db::table_kind::block)) {
        const std::wstring name = drawing.names().name_of(entry);
        if (drawing.records().gone(entry) || db::blocks::is_space_name(name))
            continue;
        const AcDbObjectPointer<AcDbBlockTableRecord> block(drawing.id(entry));
        const bool external = block.openStatus() == Acad::eOk && block->isFromExternalReference();
        const bool anonymous = name.starts_with(L"*");
        ++(external ? references : anonymous ? unnamed : own);
        if (!anonymous && base::wildcard_match(name, pattern, true))
            acutPrintf(L"\n  \"%ls\"%ls", name.c_str(), external ? L"  Xref" : L"");
    }
    acutPrintf(L"\n\nUser Blocks  External References  Unnamed Blocks\n%11d  %19d  %14d\n", own, references,
               unnamed);
}

// The drawing file that a name means: with or without its extension, from the current folder or beside the
// drawing. Empty when there is none.
std::filesystem::path drawing_file(const std::wstring& name) {
    const std::filesystem::path beside = sys::to_path(current_drawing()->imp().file_name).parent_path();
    for (const std::filesystem::path& folder : {std::filesystem::path("."), beside})
        for (const std::wstring& named : {name, name + L".dxf", name + L".dwg"}) {
            const std::filesystem::path path = folder / sys::to_path(named);
            std::error_code ignored;
            if (std::filesystem::is_regular_file(path, ignored))
                return path.lexically_normal();
        }
    return {};
}

// What the user wants to insert.
struct wanted {
    AcDbObjectId block;
    std::wstring name;          // of the block that a file becomes
    std::filesystem::path file; // empty: a block of the drawing
    bool exploded = false;
};

// "name", "*name", "file", "name=file". The reason when there is no such thing.
std::wstring find_wanted(std::wstring text, wanted& found) {
    found = {};
    found.exploded = text.size() > 1 && text.front() == L'*' && block_named(text).isNull();
    if (found.exploded)
        text.erase(0, 1);
    const std::size_t equals = text.find(L'=');
    found.name = text.substr(0, equals);
    if (equals == text.npos)
        found.block = block_named(text);
    if (!found.block.isNull() && !db::blocks::is_space_name(text))
        return {};
    found.block = {};
    const std::wstring file =
        equals != text.npos && equals + 1 < text.size() ? text.substr(equals + 1) : found.name;
    found.file = drawing_file(file);
    if (equals == text.npos)
        found.name = sys::from_path(found.file.stem());
    return found.file.empty() ? L"\"" + text + L"\" is neither a block of the drawing nor a drawing file."
                              : std::wstring();
}

} // namespace

void insert_command() {
    if (current_drawing() == nullptr)
        return;
    const std::wstring shown = last_block.empty() ? std::wstring() : L" <" + last_block + L">";
    wanted chosen;
    std::wstring name;
    const expecting hint({{}, L".dxf"});
    const int answered =
        ask_name(L"\nEnter block name or [?]" + shown + L": ", name, [&](const std::wstring& given) {
            return given == L"?" ? std::wstring() : find_wanted(given, chosen);
        });
    if (answered == RTNONE && !last_block.empty()) {
        name = last_block;
        if (!find_wanted(name, chosen).empty())
            return;
    } else if (answered != RTNORM) {
        return;
    }
    if (name == L"?") {
        list_blocks();
        return;
    }
    if (!chosen.file.empty()) {
        auto made = db::insert_drawing(current_drawing()->imp(), chosen.file, chosen.name);
        if (!made) {
            editor::instance().fail_command(made.error());
            acutPrintf(L"\n%ls\n", made.error().c_str());
            return;
        }
        for (const std::wstring& line : made->told)
            acutPrintf(L"\n%ls", line.c_str());
        chosen.block = made->block;
        if (made->redefined)
            acutPrintf(L"\nBlock \"%ls\" redefined.\n", chosen.name.c_str());
    }
    last_block = chosen.name;
    insert_block(chosen.block, chosen.exploded);
}

void xattach_command() {
    if (current_drawing() == nullptr)
        return;
    std::wstring name;
    if (ask_file(L"\nEnter name of file to attach: ", L".dxf", name) != RTNORM || name.empty())
        return;
    std::wstring kind = L"Attach";
    if (ask_keyword(L"\nEnter reference type [Attach/Overlay] <Attach>: ", L"Attach Overlay", kind) == RTCAN)
        return;
    AcDbImpDatabase& drawing = current_drawing()->imp();
    const std::filesystem::path file = drawing_file(name);
    if (file.empty()) {
        const std::wstring message = L"Cannot find the drawing file \"" + name + L"\".";
        acutPrintf(L"\n%ls\n", message.c_str());
        editor::instance().fail_command(message);
        return;
    }
    const std::wstring block_name = sys::from_path(file.stem());
    AcDbObjectId block = block_named(block_name);
    if (!block.isNull()) {
        const AcDbObjectPointer<AcDbBlockTableRecord> known(block);
        if (known.openStatus() != Acad::eOk || !known->isFromExternalReference()) {
            acdbFail((L"\nThe drawing has a block \"" + block_name + L"\" that is no external reference.")
                         .c_str());
            return;
        }
        acutPrintf(L"\nXref \"%ls\" has already been defined.\nUsing existing definition.\n",
                   block_name.c_str());
    } else {
        const Acad::ErrorStatus status =
            db::add_reference_block(drawing, block_name, sys::from_path(file), kind == L"Overlay", block);
        if (status != Acad::eOk) {
            acdbFail(L"\nThe drawing can not hold the reference.");
            return;
        }
        acutPrintf(L"\n%ls Xref \"%ls\": %ls\n", kind.c_str(), block_name.c_str(),
                   sys::from_path(file).c_str());
        for (const std::wstring& line : db::load_references(drawing))
            acutPrintf(L"%ls\n", line.c_str());
    }
    insert_block(block, false);
}

} // namespace ed
