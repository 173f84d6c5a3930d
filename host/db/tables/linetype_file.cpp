#include "host/db/tables/linetype_file.h"
#include "host/db/core/file_status.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/support_path.h"
#include "host/db/core/symbol_names.h"
#include "sys/dbase_file.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <numbers>
#include <optional>

namespace db {

namespace fs = std::filesystem;

namespace {

// ---- patterns

// The parts between commas, without blanks; what stands in quotes or brackets is one part.
std::vector<std::wstring> split(std::wstring_view text) {
    std::vector<std::wstring> parts(1);
    int depth = 0;
    bool quoted = false;
    for (const wchar_t c : text) {
        quoted ^= c == L'"';
        if (!quoted)
            depth += (c == L'[' ? 1 : 0) - (c == L']' ? 1 : 0);
        if (c == L',' && depth == 0 && !quoted)
            parts.emplace_back();
        else if (quoted || std::iswspace(static_cast<std::wint_t>(c)) == 0)
            parts.back() += c;
    }
    return parts;
}

std::optional<double> number_of(std::wstring_view text) {
    return base::parse_real(base::narrow(text));
}

std::optional<double> degrees_of(std::wstring text) {
    constexpr double degrees_of_gon = 0.9;
    const wchar_t unit = text.empty() ? L'\0' : base::fold_case(text.back());
    if (unit == L'd' || unit == L'r' || unit == L'g')
        text.pop_back();
    auto value = number_of(text);
    if (value && unit == L'r')
        *value *= 180.0 / std::numbers::pi;
    else if (value && unit == L'g')
        *value *= degrees_of_gon;
    return value;
}

// S=2.5 and its like.
bool set_property(linetype_dash& dash, const std::wstring& property) {
    if (property.size() < 3 || property[1] != L'=')
        return false;
    const wchar_t key = base::fold_case(property[0]);
    const bool turns = key == L'r' || key == L'a' || key == L'u';
    const auto value = turns ? degrees_of(property.substr(2)) : number_of(property.substr(2));
    if (!value)
        return false;
    if (turns) {
        dash.degrees = *value;
        dash.oriented = key == L'a';
        return true;
    }
    if (key == L's')
        dash.scale = *value;
    else if (key == L'x')
        dash.offset.x = *value;
    else if (key == L'y')
        dash.offset.y = *value;
    else
        return false;
    return true;
}

// ["TEXT",STYLE,S=2.5,...] or [SHAPE,FILE,...]
bool set_figure(linetype_dash& dash, std::wstring_view part) {
    if (part.size() < 2 || part.front() != L'[' || part.back() != L']')
        return false;
    const std::vector<std::wstring> parts = split(part.substr(1, part.size() - 2));
    if (parts.size() < 2 || parts[0].empty() || parts[1].empty())
        return false;
    const std::wstring& name = parts[0];
    if (name.front() != L'"')
        dash.shape = name;
    else if (name.size() > 2 && name.back() == L'"')
        dash.text = name.substr(1, name.size() - 2);
    else
        return false;
    dash.style = parts[1];
    return std::all_of(parts.begin() + 2, parts.end(),
                       [&](const std::wstring& property) { return set_property(dash, property); });
}

// ---- files

base::result<std::vector<linetype_definition>> read_table(const fs::path& file) {
    constexpr int gbk = 936;
    std::vector<linetype_definition> found;
    const auto table = sys::read_dbase(file, gbk);
    if (!table)
        return table.why();
    const auto name = table->find_field(L"NAME");
    const auto description = table->find_field(L"DESCR");
    const auto pattern = table->find_field(L"PATTERN");
    if (!name || !description || !pattern)
        return base::failure{L"'" + sys::from_path(file) +
                             L"' has no columns NAME, DESCR and PATTERN, so it is no table of linetypes"};
    for (std::size_t row = 0; row < table->row_count(); ++row)
        if (!table->is_deleted(row))
            found.push_back({table->text(row, *name), table->text(row, *description),
                             table->text(row, *pattern), row + 1});
    return found;
}

std::wstring_view without_blanks(std::wstring_view text) {
    while (!text.empty() && std::iswspace(static_cast<std::wint_t>(text.front())) != 0)
        text.remove_prefix(1);
    while (!text.empty() && std::iswspace(static_cast<std::wint_t>(text.back())) != 0)
        text.remove_suffix(1);
    return text;
}

// A header without a pattern behind it defines nothing.
std::vector<linetype_definition> definitions_of(std::wstring_view text) {
    std::vector<linetype_definition> found;
    std::optional<linetype_definition> begun;
    std::wstring_view line;
    std::size_t number = 0;
    for (std::size_t at = 0; sys::next_line(text, at, line);) {
        ++number;
        line = without_blanks(line.substr(0, line.find(L'\x1A')));
        if (line.empty() || line.front() == L';')
            continue;
        if (line.front() == L'*') {
            const std::size_t comma = std::min(line.find(L','), line.size());
            begun = linetype_definition{std::wstring(without_blanks(line.substr(1, comma - 1))),
                                        std::wstring(line.substr(std::min(comma + 1, line.size()))),
                                        {},
                                        0};
        } else if (begun) {
            begun->pattern = line;
            begun->line = number;
            found.push_back(*std::exchange(begun, std::nullopt));
        }
    }
    return found;
}

// ---- in the drawing

AcDbObjectId text_style(AcDbDatabase& drawing, const std::wstring& name) {
    AcDbImpDatabase& imp = drawing.imp();
    dxf::record_id style = imp.names().find(table_kind::text_style, name);
    if (style == dxf::no_record)
        style = imp.names().find(table_kind::text_style, L"Standard");
    return imp.id(style);
}

void set_dashes(AcDbLinetypeTableRecord& linetype, const std::vector<linetype_dash>& dashes,
                AcDbDatabase& drawing) {
    linetype.setNumDashes(0); // nothing of the old ones stays
    linetype.setNumDashes(static_cast<int>(dashes.size()));
    double length = 0.0;
    for (std::size_t i = 0; i < dashes.size(); ++i) {
        const linetype_dash& dash = dashes[i];
        const int index = static_cast<int>(i);
        linetype.setDashLengthAt(index, dash.length);
        length += std::abs(dash.length);
        if (dash.text.empty())
            continue;
        linetype.setTextAt(index, dash.text.c_str());
        linetype.setShapeStyleAt(index, text_style(drawing, dash.style));
        linetype.setShapeScaleAt(index, dash.scale);
        linetype.setShapeRotationAt(index, radians(dash.degrees));
        linetype.setShapeIsUcsOrientedAt(index, dash.oriented);
        linetype.setShapeOffsetAt(index, dash.offset);
    }
    linetype.setPatternLength(length);
}

const linetype_definition* find(const std::vector<linetype_definition>& definitions, std::wstring_view name) {
    const auto at =
        std::find_if(definitions.begin(), definitions.end(), [&](const linetype_definition& definition) {
            return base::equal_no_case(definition.name, name);
        });
    return at != definitions.end() ? &*at : nullptr;
}

} // namespace

base::result<std::vector<linetype_dash>> parse_linetype_pattern(std::wstring_view pattern) {
    std::vector<std::wstring> parts = split(pattern);
    if (parts.size() > 1 && parts.back().empty())
        parts.pop_back();
    if (parts.size() < 2 || !base::equal_no_case(parts[0], L"A"))
        return base::failure{L"a pattern begins with \"A,\" and a length"};
    std::vector<linetype_dash> dashes;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (const auto length = number_of(parts[i]))
            dashes.emplace_back().length = *length;
        else if (dashes.empty() || !set_figure(dashes.back(), parts[i]))
            return base::failure{L"\"" + parts[i] + L"\" is neither a length nor a text or shape behind one"};
    }
    return dashes;
}

base::result<std::vector<linetype_definition>> read_linetypes(const fs::path& file) {
    if (base::equal_no_case(sys::from_path(file.extension()), L".dbf"))
        return read_table(file);
    const auto bytes = sys::read_file(file);
    if (!bytes)
        return bytes.why();
    return definitions_of(sys::plain_text(bytes->view()));
}

Acad::ErrorStatus define_linetype(AcDbDatabase& drawing, const linetype_definition& definition,
                                  AcDbObjectId& id) {
    id.setNull();
    const auto dashes = parse_linetype_pattern(definition.pattern);
    if (!dashes || definition.name.empty())
        return Acad::eInvalidInput;
    if (std::any_of(dashes->begin(), dashes->end(),
                    [](const linetype_dash& dash) { return !dash.shape.empty(); }))
        return Acad::eUndefineShapeName;
    if (const dxf::record_id known = drawing.imp().names().find(table_kind::linetype, definition.name);
        known != dxf::no_record) {
        const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(drawing.imp().id(known), AcDb::kForWrite);
        if (linetype.openStatus() != Acad::eOk)
            return linetype.openStatus();
        linetype->setComments(definition.description.c_str());
        set_dashes(*linetype.object(), *dashes, drawing);
        id = linetype->objectId();
        return Acad::eOk;
    }
    const AcDbLinetypeTablePointer table(drawing.linetypeTableId(), AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk)
        return table.openStatus();
    AcDbObjectPointer<AcDbLinetypeTableRecord> linetype;
    linetype.create();
    linetype->setName(definition.name.c_str());
    linetype->setComments(definition.description.c_str());
    set_dashes(*linetype.object(), *dashes, drawing);
    return table->add(id, linetype.object());
}

AcDbObjectId find_and_load_linetype(AcDbDatabase& drawing, std::wstring_view name) {
    std::vector<fs::path> files = {sys::system_folder() / "linetype.dbf"};
    for (const wchar_t* const usual : {L"acadiso.lin", L"acad.lin"})
        if (fs::path found = find_support_file(usual, &drawing.imp()); !found.empty())
            files.push_back(std::move(found));
    for (fs::path& file : support_files(L".lin", &drawing.imp()))
        files.push_back(std::move(file));
    for (const fs::path& file : files) {
        const auto definitions = read_linetypes(file);
        const linetype_definition* const definition = definitions ? find(*definitions, name) : nullptr;
        AcDbObjectId id;
        if (definition != nullptr && define_linetype(drawing, *definition, id) == Acad::eOk)
            return id;
    }
    return AcDbObjectId::kNull;
}

} // namespace db

Acad::ErrorStatus AcDbDatabase::loadLineTypeFile(const ACHAR* name, const ACHAR* file) {
    if (name == nullptr || *name == 0 || file == nullptr || !m_imp->has_drawing())
        return Acad::eInvalidInput;
    const auto path = db::find_support_file(file, m_imp.get());
    if (path.empty())
        return Acad::eFileNotFound;
    const auto definitions = db::read_linetypes(path);
    if (!definitions)
        return db::status_of(definitions.why(), Acad::eFilerError);
    // One that is named is to be new; of those that a pattern fits the ones that are there are passed over.
    const bool named = db::find(*definitions, name) != nullptr;
    Acad::ErrorStatus status = Acad::eUndefinedLineType;
    for (const db::linetype_definition& definition : *definitions) {
        if (named ? !base::equal_no_case(definition.name, name)
                  : !base::wildcard_match(definition.name, name, true))
            continue;
        const bool is_there =
            m_imp->names().find(db::table_kind::linetype, definition.name) != dxf::no_record;
        if (named && is_there)
            return Acad::eDuplicateRecordName;
        AcDbObjectId id;
        status = is_there ? Acad::eOk : db::define_linetype(*this, definition, id);
        if (status != Acad::eOk || named)
            break;
    }
    return status;
}

Acad::ErrorStatus acdbLoadLineTypeFile(const ACHAR* name, const ACHAR* file, AcDbDatabase* drawing) {
    return drawing != nullptr ? drawing->loadLineTypeFile(name, file) : Acad::eInvalidInput;
}
