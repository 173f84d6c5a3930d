// What several of the host's own commands ask for and do: points, distances, objects, new entities.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

// The drawing that commands work on; null when none is open.
AcDbDatabase* current_drawing();

// What the user answered: RTNORM, RTNONE for Enter, RTKWORD, RTCAN.
int ask_point(const std::wstring& prompt, AcGePoint3d& point, const AcGePoint3d* base = nullptr,
              const wchar_t* keywords = L"", int bits = 0);
// A length above nought, as a number or by a point from `base`.
int ask_distance(const std::wstring& prompt, double& distance, const AcGePoint3d* base = nullptr,
                 const wchar_t* keywords = L"");
// An angle, typed in degrees or by a point from `base`; in radians.
int ask_angle(const std::wstring& prompt, double& angle, const AcGePoint3d* base = nullptr);
// One of the keywords; `word` stays as it is for Enter.
int ask_keyword(const std::wstring& prompt, const wchar_t* keywords, std::wstring& word);
// The keyword behind RTKWORD.
std::wstring taken_keyword();
// A name, to a blank; or a whole line. Enter leaves it as it is. `reason` answers why a name is refused.
using name_check = std::function<std::wstring(const std::wstring& name)>;
int ask_name(const std::wstring& prompt, std::wstring& name, const name_check& reason = nullptr);
int ask_line(const std::wstring& prompt, std::wstring& text);
// A file name with an extension as completion offers it, marks around it left out.
int ask_file(const std::wstring& prompt, const std::wstring& extension, std::wstring& file);
// The file name in a line that was typed: without marks around it and blanks behind it.
std::wstring file_of(std::wstring_view typed);
// Whether the user says yes, behind whose question "[Yes/No] <N>: " is shown; `enter` is what Enter says.
// Nothing when it was cancelled.
std::optional<bool> ask_yes(const std::wstring& question, bool enter = false);

// What the user selects; those on locked layers are left out and counted where `writes` is set. Empty when
// there is nothing, or it was cancelled.
std::vector<AcDbObjectId> ask_objects(bool writes);

// Puts a new entity into the current space. False when the drawing can not hold it: the user is told.
bool add_to_current_space(std::unique_ptr<AcDbEntity> entity);

// Whether the drawing has a linetype, or got it now from a file that defines it
// (host/db/tables/linetype_file.h); ByLayer and ByBlock count. And what the user is told where it is not so.
bool has_linetype(const std::wstring& name);
std::wstring linetype_missing(const std::wstring& name);

// A number as prompts show it: four places behind the point.
std::wstring shown_number(double value);
std::wstring shown_point(const AcGePoint3d& point);
// The value of a variable of the drawing's header ("$TEXTSTYLE"), decoded; empty when it has none.
std::wstring header_text(std::string_view variable);

} // namespace ed
