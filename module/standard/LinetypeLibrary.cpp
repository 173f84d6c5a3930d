#include "module/standard/LinetypeLibrary.h"

#include "module/standard/Names.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/dbase_file.h"
#include "sys/folders.h"

#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <cwctype>
#include <filesystem>
#include <numbers>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr int gbk = 936;

struct LinetypeRow {
    CString m_name;
    CString m_description;
    CString m_pattern;
};

std::vector<LinetypeRow> Read() {
    std::vector<LinetypeRow> rows;
    const auto table = sys::read_dbase(sys::find_without_case(sys::system_folder(), "linetype.dbf"), gbk);
    if (!table)
        return rows;
    const auto name = table->find_field(L"NAME");
    const auto description = table->find_field(L"DESCR");
    const auto pattern = table->find_field(L"PATTERN");
    if (!name || !description || !pattern)
        return rows;
    for (std::size_t row = 0; row < table->row_count(); ++row)
        if (!table->is_deleted(row))
            rows.push_back({table->text(row, *name).c_str(), table->text(row, *description).c_str(),
                            table->text(row, *pattern).c_str()});
    return rows;
}

std::vector<LinetypeRow>& Rows() {
    static std::vector<LinetypeRow> rows;
    if (rows.empty()) // a table that was not there may be there now
        rows = Read();
    return rows;
}

// The parts between commas; what stands in quotes or brackets is one part.
std::vector<std::wstring> Split(std::wstring_view text) {
    std::vector<std::wstring> parts(1);
    int depth = 0;
    bool quoted = false;
    for (const wchar_t c : text) {
        quoted ^= c == L'"';
        if (!quoted)
            depth += (c == L'[' ? 1 : 0) - (c == L']' ? 1 : 0);
        if (c == L',' && depth == 0 && !quoted)
            parts.emplace_back();
        else if (quoted || std::iswspace(static_cast<wint_t>(c)) == 0)
            parts.back() += c;
    }
    return parts;
}

std::optional<double> NumberOf(std::wstring_view text) {
    const std::wstring whole(text);
    wchar_t* end = nullptr;
    const double value = std::wcstod(whole.c_str(), &end);
    if (whole.empty() || *end != 0 || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// ["TEXT",STYLE,S=2.5,...]
bool ParseText(std::wstring_view part, LinetypeDash& dash) {
    if (part.size() < 2 || part.back() != L']')
        return false;
    const std::vector<std::wstring> parts = Split(part.substr(1, part.size() - 2));
    const std::wstring& text = parts[0];
    if (parts.size() < 2 || text.size() < 3 || text.front() != L'"' || text.back() != L'"')
        return false;
    dash.m_text = text.substr(1, text.size() - 2).c_str();
    dash.m_style = parts[1].c_str();
    for (std::size_t i = 2; i < parts.size(); ++i) {
        const auto value = parts[i].size() > 2 && parts[i][1] == L'='
                               ? NumberOf(std::wstring_view(parts[i]).substr(2))
                               : std::nullopt;
        if (!value)
            return false;
        switch (std::towupper(static_cast<wint_t>(parts[i][0]))) {
        case L'S':
            dash.m_size = *value;
            break;
        case L'R':
            dash.m_rotation = *value;
            break;
        case L'A':
            dash.m_rotation = *value;
            dash.m_isAbsolute = true;
            break;
        case L'X':
            dash.m_x = *value;
            break;
        case L'Y':
            dash.m_y = *value;
            break;
        default:
            return false;
        }
    }
    return true;
}

AcDbObjectId TextStyleOf(LPCTSTR name, AcDbDatabase* database) {
    AcDbObjectId style;
    const AcDbTextStyleTablePointer table(database->textStyleTableId());
    if (table.openStatus() == Acad::eOk && table->getAt(name, style) != Acad::eOk)
        table->getAt(L"Standard", style);
    return style;
}

void SetDash(AcDbLinetypeTableRecord& linetype, int index, const LinetypeDash& dash, AcDbDatabase* database) {
    linetype.setDashLengthAt(index, dash.m_length);
    if (dash.m_text.IsEmpty())
        return;
    linetype.setTextAt(index, dash.m_text);
    linetype.setShapeStyleAt(index, TextStyleOf(dash.m_style, database));
    linetype.setShapeScaleAt(index, dash.m_size);
    linetype.setShapeRotationAt(index, dash.m_rotation * std::numbers::pi / 180);
    linetype.setShapeIsUcsOrientedAt(index, dash.m_isAbsolute);
    linetype.setShapeOffsetAt(index, AcGeVector2d(dash.m_x, dash.m_y));
}

// Makes a linetype as the first linetype file (".lin") of the support path defines it that does.
AcDbObjectId MakeFromFiles(LPCTSTR name, AcDbDatabase& database) {
    namespace fs = std::filesystem;
    std::vector<CString> folders;
    ZefExport::GetSupportPaths(folders);
    for (const CString& folder : folders) {
        std::vector<fs::path> files;
        std::error_code error;
        for (fs::directory_iterator at(sys::to_path(ViewOf(folder)), error), end; !error && at != end;
             at.increment(error))
            if (IsSameName(std::wstring_view(sys::from_path(at->path().extension())), L".lin"))
                files.push_back(at->path());
        std::ranges::sort(files);
        for (const fs::path& file : files) {
            if (database.loadLineTypeFile(name, sys::from_path(file).c_str()) != Acad::eOk)
                continue;
            AcDbObjectId id;
            const AcDbLinetypeTablePointer table(database.linetypeTableId(), AcDb::kForRead);
            if (table.openStatus() == Acad::eOk && table->getAt(name, id) == Acad::eOk)
                return id;
        }
    }
    return AcDbObjectId::kNull;
}

} // namespace

std::optional<std::vector<LinetypeDash>> ParseLinetypePattern(LPCTSTR pattern) {
    const std::vector<std::wstring> parts = Split(pattern);
    if (parts.size() < 2 || parts[0] != L"A")
        return std::nullopt;
    std::vector<LinetypeDash> dashes;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (const auto length = NumberOf(parts[i]))
            dashes.emplace_back().m_length = *length;
        else if (dashes.empty() || !parts[i].starts_with(L'[') || !ParseText(parts[i], dashes.back()))
            return std::nullopt;
    }
    return dashes;
}

void ReloadLinetypes() {
    Rows() = Read();
}

void GetLinetypeNames(std::vector<CString>& names) {
    for (const LinetypeRow& row : Rows())
        names.push_back(row.m_name);
}

AcDbObjectId KolTool::LoadVrLineType(LPCTSTR name) {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr)
        return AcDbObjectId::kNull;
    AcDbObjectId id;
    AcDbLinetypeTablePointer table(database->linetypeTableId(), AcDb::kForRead);
    if (table.openStatus() != Acad::eOk || table->getAt(name, id) == Acad::eOk)
        return id;
    const auto row = std::ranges::find_if(
        Rows(), [name](const LinetypeRow& candidate) { return IsSameName(candidate.m_name, name); });
    const auto dashes = row != Rows().end() ? ParseLinetypePattern(row->m_pattern) : std::nullopt;
    if (!dashes) {
        table.close();
        return MakeFromFiles(name, *database);
    }
    if (table->upgradeOpen() != Acad::eOk)
        return AcDbObjectId::kNull;

    AcDbObjectPointer<AcDbLinetypeTableRecord> linetype;
    linetype.create();
    linetype->setName(row->m_name);
    linetype->setComments(row->m_description);
    linetype->setNumDashes(static_cast<int>(dashes->size()));
    double length = 0;
    for (std::size_t i = 0; i < dashes->size(); ++i) {
        SetDash(*linetype.object(), static_cast<int>(i), (*dashes)[i], database);
        length += std::abs((*dashes)[i].m_length);
    }
    linetype->setPatternLength(length);
    return table->add(id, linetype.object()) == Acad::eOk ? id : AcDbObjectId(AcDbObjectId::kNull);
}
