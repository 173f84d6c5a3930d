// LINE, CIRCLE, TEXT.
#include "acdbads.h"
#include "acedads.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/ed/circle_tangents.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"
#include "host/ed/system_variables.h"

#include <cmath>
#include <optional>

namespace ed {

namespace {

// Where the newest line or arc of the current space ends, for Enter at the first point.
std::optional<AcGePoint3d> end_of_newest_curve() {
    AcDbImpDatabase& drawing = current_drawing()->imp();
    const AcDbObjectId space = current_drawing()->currentSpaceId();
    const dxf::record_table& records = drawing.records();
    for (dxf::record_id id = records.size(); id-- > 0;) {
        if (records.gone(id) || records.kind(id) != dxf::record_kind::entity ||
            (records.type(id) != dxf::type_line && records.type(id) != dxf::type_arc))
            continue;
        const AcDbObjectPointer<AcDbCurve> curve(drawing.id(id));
        AcGePoint3d end;
        if (curve.openStatus() == Acad::eOk && curve->blockId() == space &&
            curve->getEndPoint(end) == Acad::eOk)
            return end;
    }
    return std::nullopt;
}

std::wstring next_point_prompt(std::size_t points) {
    switch (points) {
    case 1:
        return L"\nSpecify next point or [Undo]: ";
    case 2:
        return L"\nSpecify next point or [eXit/Undo]: ";
    default:
        return L"\nSpecify next point or [Close/eXit/Undo]: ";
    }
}

} // namespace

void line_command() {
    if (current_drawing() == nullptr)
        return;
    std::vector<AcGePoint3d> points(1);
    const int answered = ask_point(L"\nSpecify first point: ", points[0]);
    if (answered == RTNONE) {
        const auto end = end_of_newest_curve();
        if (!end) {
            acutPrintf(L"\nNo line or arc to continue.\n");
            return;
        }
        points[0] = *end;
    } else if (answered != RTNORM) {
        return;
    }
    // Escape ends the command; what was drawn stays.
    for (bool closed = false; !closed;) {
        AcGePoint3d next;
        const int given = ask_point(next_point_prompt(points.size()), next, &points.back(),
                                    points.size() > 2 ? L"Close eXit Undo" : L"eXit Undo");
        if (given == RTNORM) {
            points.push_back(next);
            continue;
        }
        if (given != RTKWORD)
            break;
        const std::wstring word = taken_keyword();
        if (word == L"eXit")
            break;
        if (word == L"Undo" && points.size() == 1)
            acutPrintf(L"\nAll segments already undone.");
        else if (word == L"Undo")
            points.pop_back();
        else
            points.push_back(points.front());
        closed = word == L"Close";
    }
    for (std::size_t i = 1; i < points.size(); ++i)
        if (!add_to_current_space(std::make_unique<AcDbLine>(points[i - 1], points[i])))
            return;
}

namespace {

double last_radius = 0.0; // of the session, as CIRCLERAD has it

std::wstring with_default(const wchar_t* prompt, double value) {
    return prompt + (value > 0.0 ? L" <" + shown_number(value) + L">: " : std::wstring(L": "));
}

// Asks for a radius or a diameter about a centre. False when there is none.
bool ask_radius(const AcGePoint3d& center, double& radius) {
    radius = last_radius;
    int answered = ask_distance(with_default(L"\nSpecify radius of circle or [Diameter]", last_radius),
                                radius, &center, L"Diameter");
    if (answered == RTKWORD) {
        double diameter = last_radius * 2;
        answered = ask_distance(with_default(L"\nSpecify diameter of circle", diameter), diameter, &center);
        radius = diameter / 2;
    }
    return answered == RTNORM || (answered == RTNONE && radius > 0.0);
}

bool add_circle(const AcGePoint3d& center, double radius) {
    last_radius = radius;
    return add_to_current_space(std::make_unique<AcDbCircle>(center, AcGeVector3d::kZAxis, radius));
}

void circle_by_points(std::size_t count) {
    static constexpr const wchar_t* three[] = {L"\nSpecify first point on circle: ",
                                               L"\nSpecify second point on circle: ",
                                               L"\nSpecify third point on circle: "};
    static constexpr const wchar_t* two[] = {L"\nSpecify first end point of circle's diameter: ",
                                             L"\nSpecify second end point of circle's diameter: "};
    std::vector<AcGePoint3d> points;
    while (points.size() < count) {
        AcGePoint3d point;
        if (ask_point((count == 3 ? three : two)[points.size()], point,
                      points.empty() ? nullptr : &points.back(), L"", RSG_NONULL) != RTNORM)
            return;
        points.push_back(point);
    }
    const auto center = count == 3 ? center_through(points[0], points[1], points[2])
                                   : std::optional(points[0] + (points[1] - points[0]) / 2);
    const double radius = center ? center->distanceTo(points[0]) : 0.0;
    if (radius > 0.0)
        add_circle(*center, radius);
    else
        acdbFail(L"\nCircle does not exist.");
}

// Picks a line, a circle or an arc. False when the user ended it.
bool ask_tangent(const wchar_t* prompt, tangent_to& object) {
    for (;;) {
        ads_name name;
        ads_point at;
        AcDbObjectId id;
        const int answered = acedEntSel(prompt, name, at);
        constexpr int null_response = 52;
        if (answered == RTCAN || variable<int>(L"ERRNO") == null_response)
            return false;
        if (answered == RTNORM && acdbGetObjectId(id, name) == Acad::eOk) {
            const AcDbEntityPointer entity(id);
            if (const auto found = entity.openStatus() == Acad::eOk
                                       ? tangent_object(*entity.object(), {at[0], at[1], at[2]})
                                       : std::nullopt) {
                object = *found;
                return true;
            }
        }
        acutPrintf(L"\nThe object selected must be a circle, arc, or line.\n");
    }
}

void circle_by_tangents() {
    tangent_to first;
    tangent_to second;
    double radius = last_radius;
    if (!ask_tangent(L"\nSpecify point on object for first tangent of circle: ", first) ||
        !ask_tangent(L"\nSpecify point on object for second tangent of circle: ", second))
        return;
    const int answered = ask_distance(with_default(L"\nSpecify radius of circle", radius), radius);
    if (answered != RTNORM && (answered != RTNONE || radius <= 0.0))
        return;
    if (const auto center = center_of_tangent_circle(first, second, radius))
        add_circle(*center, radius);
    else
        acdbFail(L"\nCircle does not exist.");
}

} // namespace

void circle_command() {
    if (current_drawing() == nullptr)
        return;
    AcGePoint3d center;
    const int answered = ask_point(L"\nSpecify center point for circle or [3P/2P/Ttr (tan tan radius)]: ",
                                   center, nullptr, L"3P 2P Ttr", RSG_NONULL);
    double radius = 0.0;
    if (answered == RTNORM && ask_radius(center, radius)) {
        add_circle(center, radius);
    } else if (answered == RTKWORD) {
        const std::wstring word = taken_keyword();
        if (word == L"Ttr")
            circle_by_tangents();
        else
            circle_by_points(word == L"3P" ? 3 : 2);
    }
}

namespace {

struct justification {
    std::wstring_view keyword;
    AcDb::TextHorzMode horizontal;
    AcDb::TextVertMode vertical;
    const wchar_t* prompt;
};

constexpr justification justifications[] = {
    {L"Left", AcDb::kTextLeft, AcDb::kTextBase, L"\nSpecify start point of text: "},
    {L"Center", AcDb::kTextCenter, AcDb::kTextBase, L"\nSpecify center point of text: "},
    {L"Right", AcDb::kTextRight, AcDb::kTextBase, L"\nSpecify right endpoint of text baseline: "},
    {L"Align", AcDb::kTextAlign, AcDb::kTextBase, L"\nSpecify first endpoint of text baseline: "},
    {L"Middle", AcDb::kTextMid, AcDb::kTextBase, L"\nSpecify middle point of text: "},
    {L"Fit", AcDb::kTextFit, AcDb::kTextBase, L"\nSpecify first endpoint of text baseline: "},
    {L"TL", AcDb::kTextLeft, AcDb::kTextTop, L"\nSpecify top-left point of text: "},
    {L"TC", AcDb::kTextCenter, AcDb::kTextTop, L"\nSpecify top-center point of text: "},
    {L"TR", AcDb::kTextRight, AcDb::kTextTop, L"\nSpecify top-right point of text: "},
    {L"ML", AcDb::kTextLeft, AcDb::kTextVertMid, L"\nSpecify middle-left point of text: "},
    {L"MC", AcDb::kTextCenter, AcDb::kTextVertMid, L"\nSpecify middle point of text: "},
    {L"MR", AcDb::kTextRight, AcDb::kTextVertMid, L"\nSpecify middle-right point of text: "},
    {L"BL", AcDb::kTextLeft, AcDb::kTextBottom, L"\nSpecify bottom-left point of text: "},
    {L"BC", AcDb::kTextCenter, AcDb::kTextBottom, L"\nSpecify bottom-center point of text: "},
    {L"BR", AcDb::kTextRight, AcDb::kTextBottom, L"\nSpecify bottom-right point of text: "},
};

struct text_settings {
    const justification* justified = justifications;
    AcDbObjectId style;
    double fixed_height = 0.0; // of the style; nought when each text has its own
    AcGePoint3d start;
    AcGePoint3d end; // of the base line, of aligned and fitted texts

    bool between() const {
        return justified->horizontal == AcDb::kTextAlign || justified->horizontal == AcDb::kTextFit;
    }
};

bool set_style(text_settings& settings, const std::wstring& name) {
    const AcDbTextStyleTableRecordPointer style(name.c_str(), current_drawing());
    if (style.openStatus() != Acad::eOk)
        return false;
    settings.style = style->objectId();
    settings.fixed_height = style->textSize();
    return true;
}

bool ask_style(text_settings& settings, std::wstring& name) {
    const int answered =
        ask_name(L"\nEnter style name <" + name + L">: ", name, [&](const std::wstring& given) {
            return set_style(settings, given) ? L"" : L"Cannot find text style \"" + given + L"\".";
        });
    return answered == RTNORM || answered == RTNONE;
}

bool ask_justification(text_settings& settings) {
    std::wstring keywords;
    std::wstring shown;
    for (const justification& one : justifications) {
        keywords += std::wstring(one.keyword) + L" ";
        shown += (shown.empty() ? L"" : L"/") + std::wstring(one.keyword);
    }
    std::wstring word;
    if (ask_keyword(L"\nEnter an option [" + shown + L"]: ", keywords.c_str(), word) != RTNORM)
        return false;
    for (const justification& one : justifications)
        if (one.keyword == word)
            settings.justified = &one;
    return true;
}

// Where the text stands, with justification and style as the user wants them. False when he ended it.
bool ask_place(text_settings& settings) {
    std::wstring style = header_text("$TEXTSTYLE");
    if (!set_style(settings, style))
        set_style(settings, style = L"Standard");
    acutPrintf(L"\nCurrent text style:  \"%ls\"  Text height:  %ls  Justify:  %.*ls", style.c_str(),
               shown_number(settings.fixed_height > 0 ? settings.fixed_height : variable<double>(L"TEXTSIZE"))
                   .c_str(),
               static_cast<int>(settings.justified->keyword.size()), settings.justified->keyword.data());
    for (;;) {
        const int answered = ask_point(L"\nSpecify start point of text or [Justify/Style]: ", settings.start,
                                       nullptr, L"Justify Style", RSG_NONULL);
        if (answered == RTNORM)
            break;
        if (answered != RTKWORD)
            return false;
        if (taken_keyword() == L"Style") {
            if (!ask_style(settings, style))
                return false;
            continue;
        }
        if (!ask_justification(settings) ||
            ask_point(settings.justified->prompt, settings.start, nullptr, L"", RSG_NONULL) != RTNORM)
            return false;
        break;
    }
    return !settings.between() || ask_point(L"\nSpecify second endpoint of text baseline: ", settings.end,
                                            &settings.start, L"", RSG_NONULL) == RTNORM;
}

std::unique_ptr<AcDbText> made_text(const text_settings& settings, const std::wstring& line, double height,
                                    double rotation, const AcGeVector3d& down) {
    auto text = std::make_unique<AcDbText>(settings.start + down, line.c_str(), settings.style, height,
                                           settings.between() ? 0.0 : rotation);
    text->setDatabaseDefaults(current_drawing());
    text->setHorizontalMode(settings.justified->horizontal);
    text->setVerticalMode(settings.justified->vertical);
    if (settings.between())
        text->setAlignmentPoint(settings.end + down);
    else if (!text->isDefaultAlignment())
        text->setAlignmentPoint(settings.start + down);
    return text;
}

} // namespace

void text_command() {
    text_settings settings;
    if (current_drawing() == nullptr || !ask_place(settings))
        return;
    double height = settings.fixed_height;
    if (height == 0.0 && settings.justified->horizontal != AcDb::kTextAlign) {
        height = variable<double>(L"TEXTSIZE");
        const int answered =
            ask_distance(L"\nSpecify height <" + shown_number(height) + L">: ", height, &settings.start);
        if (answered == RTCAN)
            return;
        if (answered == RTNORM)
            set_variable(L"TEXTSIZE", height);
    } else if (height == 0.0) {
        height = variable<double>(L"TEXTSIZE"); // until it is aligned
    }
    double rotation = 0.0;
    if (settings.between()) {
        const AcGeVector3d along = settings.end - settings.start;
        rotation = std::atan2(along.y, along.x);
    } else if (ask_angle(L"\nSpecify rotation angle of text <0>: ", rotation, &settings.start) == RTCAN) {
        return;
    }
    // As in the editor a script writes one line: what follows it is the next command.
    const bool one_line = !editor::instance().input.at_terminal();
    constexpr double line_spacing = 5.0 / 3.0; // of a text's height, from one line to the next
    for (int lines = 0; lines == 0 || !one_line; ++lines) {
        std::wstring line;
        if (ask_line(L"\nEnter text: ", line) != RTNORM)
            return;
        const AcGeVector3d down =
            AcGeVector3d(std::sin(rotation), -std::cos(rotation), 0.0) * (lines * height * line_spacing);
        if (!add_to_current_space(made_text(settings, line, height, rotation, down)))
            return;
    }
}

} // namespace ed
