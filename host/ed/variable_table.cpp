#include "host/ed/variable_table.h"

#include <algorithm>

namespace ed {

namespace {

using row = variable_row;
constexpr double no_end = std::numeric_limits<double>::infinity();

row whole(std::wstring_view name, kept where, int value, double least, double most, int code = 70) {
    return {name, where, value, least, most, code};
}
row flag(std::wstring_view name, kept where, int value, int code = 70) {
    return whole(name, where, value, 0, 1, code);
}
row real(std::wstring_view name, kept where, double value, double least = -no_end, double most = no_end) {
    return {name, where, value, least, most, 40};
}
row size(std::wstring_view name, kept where, double value) { // above nought
    row made = real(name, where, value, 0.0);
    made.above = true;
    return made;
}
row text(std::wstring_view name, kept where, std::wstring_view value, int code = 1) {
    row made{name, where, std::wstring(value)};
    made.code = code;
    return made;
}
row point(std::wstring_view name, kept where, const AcGePoint3d& value = {}) {
    row made{name, where, value};
    made.code = 10;
    return made;
}
row flat(std::wstring_view name, kept where, const AcGePoint3d& value = {}) {
    row made = point(name, where, value);
    made.flat = true;
    return made;
}
row fixed(row made) {
    made.read_only = true;
    return made;
}
row per_space(row made) {
    made.per_space = true;
    return made;
}

// Source: the editor's list of system variables (2021), where it says type, place, initial value and range;
// group codes from the DXF reference's header section. What a header does not hold has the value that a
// metric drawing has.
std::vector<row> make_table() {
    constexpr kept session = kept::session;
    constexpr kept profile = kept::profile;
    constexpr kept drawing = kept::drawing;
    constexpr kept asked = kept::asked;
    std::vector<row> table = {
        // ---- what the program and its documents are
        fixed(text(L"ACADVER", session, L"24.0s (LMS Tech)")),
        fixed(real(L"CDATE", asked, 0.0)),
        fixed(whole(L"CMDACTIVE", asked, 0, 0, 127)),
        fixed(text(L"CMDNAMES", asked, L"")),
        fixed(text(L"CPROFILE", session, L"<<Unnamed Profile>>")),
        text(L"CTAB", asked, L""),
        whole(L"CVPORT", asked, 2, 1, 32767),
        fixed(real(L"DATE", asked, 0.0)),
        fixed(whole(L"DBMOD", asked, 0, 0, 63)),
        fixed(text(L"DWGCODEPAGE", drawing, L"ANSI_1252", 3)),
        fixed(text(L"DWGNAME", asked, L"")),
        fixed(text(L"DWGPREFIX", asked, L"")),
        fixed(flag(L"DWGTITLED", asked, 0)),
        fixed(whole(L"ERRNO", session, 0, 0, 32767)),
        fixed(flag(L"FULLOPEN", session, 1)),
        fixed(flag(L"HANDLES", session, 1)),
        fixed(text(L"LOCALE", session, L"CHS")),
        fixed(text(L"PLATFORM", session, L"")),
        fixed(text(L"PRODUCT", session, L"AutoCAD")),
        fixed(whole(L"SDI", session, 0, 0, 3)),
        fixed(whole(L"WRITESTAT", asked, 1, 0, 1)),

        // ---- input
        real(L"ANGBASE", drawing, 0.0),
        flag(L"ANGDIR", drawing, 0),
        whole(L"APERTURE", profile, 10, 1, 50),
        whole(L"AUNITS", drawing, 0, 0, 4),
        whole(L"AUPREC", drawing, 0, 0, 8),
        flag(L"BLIPMODE", profile, 0),
        flag(L"CMDDIA", profile, 1),
        flag(L"CMDECHO", session, 1),
        whole(L"COORDS", profile, 1, 0, 2),
        whole(L"DYNMODE", profile, 3, -3, 3),
        per_space(real(L"ELEVATION", drawing, 0.0)),
        whole(L"EXPERT", session, 0, 0, 5),
        flag(L"FILEDIA", session, 0), // asks on the command line
        flag(L"GRIDMODE", session, 0),
        whole(L"GRIPS", profile, 2, 0, 2),
        whole(L"GRIPSIZE", profile, 5, 1, 255),
        whole(L"HIGHLIGHT", session, 1, 0, 1),
        whole(L"INPUTHISTORYMODE", profile, 15, 0, 31),
        fixed(real(L"LASTANGLE", session, 0.0)),
        point(L"LASTPOINT", session),
        fixed(text(L"LASTPROMPT", session, L"")),
        flag(L"LIMCHECK", drawing, 0),
        whole(L"LUNITS", drawing, 2, 1, 5),
        whole(L"LUPREC", drawing, 4, 0, 8),
        flag(L"MENUECHO", session, 0),
        flag(L"NOMUTT", session, 0),
        flag(L"ORTHOMODE", drawing, 0),
        whole(L"OSMODE", profile, 4133, 0, 32767),
        whole(L"OSNAPCOORD", profile, 2, 0, 2),
        whole(L"PICKADD", session, 1, 0, 2), // as scripts have it
        whole(L"PICKAUTO", session, 0, 0, 7),
        whole(L"PICKBOX", profile, 3, 0, 50),
        whole(L"PICKDRAG", profile, 2, 0, 2),
        flag(L"PICKFIRST", profile, 1),
        whole(L"PICKSTYLE", profile, 1, 0, 3),
        real(L"POLARANG", profile, 90.0),
        real(L"POLARDIST", profile, 0.0),
        whole(L"POLARMODE", profile, 0, 0, 15),
        whole(L"SHORTCUTMENU", profile, 11, 0, 31),
        real(L"SNAPANG", session, 0.0),
        flat(L"SNAPBASE", session),
        whole(L"SNAPISOPAIR", session, 0, 0, 2),
        flag(L"SNAPMODE", session, 0),
        flag(L"SNAPSTYL", session, 0),
        flat(L"SNAPUNIT", session, {10.0, 10.0, 0.0}),
        whole(L"SORTENTS", drawing, 127, 0, 127, 280),
        flag(L"TEXTEVAL", session, 0),
        flag(L"UNITMODE", drawing, 0),

        // ---- the view and the coordinate system
        per_space(fixed(point(L"EXTMAX", drawing, {-1e20, -1e20, -1e20}))),
        per_space(fixed(point(L"EXTMIN", drawing, {1e20, 1e20, 1e20}))),
        per_space(point(L"INSBASE", drawing)),
        per_space(flat(L"LIMMAX", drawing, {420.0, 297.0, 0.0})),
        per_space(flat(L"LIMMIN", drawing)),
        fixed(flat(L"SCREENSIZE", session, {1920.0, 1080.0, 0.0})),
        flag(L"TILEMODE", drawing, 1),
        text(L"UCSBASE", drawing, L"", 2),
        flag(L"UCSFOLLOW", session, 0),
        whole(L"UCSICON", session, 3, 0, 3),
        per_space(fixed(text(L"UCSNAME", drawing, L"", 2))),
        per_space(fixed(point(L"UCSORG", drawing))),
        whole(L"UCSVIEW", profile, 1, 0, 1),
        per_space(fixed(point(L"UCSXDIR", drawing, {1.0, 0.0, 0.0}))),
        per_space(fixed(point(L"UCSYDIR", drawing, {0.0, 1.0, 0.0}))),
        fixed(point(L"VIEWCTR", asked)),
        fixed(real(L"VIEWSIZE", asked, 1.0)),
        fixed(flag(L"WORLDUCS", asked, 1)),
        flag(L"WORLDVIEW", drawing, 1),

        // ---- what new entities get
        text(L"CECOLOR", asked, L"BYLAYER"),
        size(L"CELTSCALE", drawing, 1.0),
        text(L"CELTYPE", drawing, L"ByLayer", 6),
        whole(L"CELWEIGHT", drawing, -1, -3, 211, 370),
        whole(L"CMLJUST", drawing, 0, 0, 2),
        real(L"CMLSCALE", drawing, 20.0),
        text(L"CMLSTYLE", drawing, L"Standard", 2),
        text(L"CLAYER", asked, L"0"),
        real(L"HPANG", session, 0.0),
        text(L"HPNAME", session, L"ANSI31"),
        size(L"HPSCALE", session, 1.0),
        text(L"INSNAME", session, L""),
        whole(L"INSUNITS", drawing, 4, 0, 24),
        whole(L"INSUNITSDEFSOURCE", profile, 4, 0, 24),
        whole(L"INSUNITSDEFTARGET", profile, 4, 0, 24),
        real(L"OFFSETDIST", session, -1.0),
        whole(L"OFFSETGAPTYPE", profile, 0, 0, 2),
        flag(L"PELLIPSE", session, 0),
        flag(L"PLINEGEN", drawing, 0),
        whole(L"PLINETYPE", profile, 2, 0, 2),
        real(L"PLINEWID", drawing, 0.0, 0.0),
        whole(L"POLYSIDES", session, 4, 3, 1024),
        size(L"SKETCHINC", drawing, 1.0),
        flag(L"SKPOLY", drawing, 0),
        whole(L"SPLINESEGS", drawing, 8, -32768, 32767),
        whole(L"SPLINETYPE", drawing, 6, 5, 6),
        whole(L"SURFTAB1", drawing, 6, 2, 32766),
        whole(L"SURFTAB2", drawing, 6, 2, 32766),
        whole(L"SURFTYPE", drawing, 6, 5, 8),
        whole(L"SURFU", drawing, 6, 0, 200),
        whole(L"SURFV", drawing, 6, 0, 200),
        size(L"TEXTSIZE", drawing, 2.5),
        text(L"TEXTSTYLE", drawing, L"Standard", 7),
        real(L"THICKNESS", drawing, 0.0),
        size(L"TRACEWID", drawing, 1.0),
        real(L"CHAMFERA", drawing, 0.0, 0.0),
        real(L"CHAMFERB", drawing, 0.0, 0.0),
        real(L"CHAMFERC", drawing, 0.0, 0.0),
        real(L"CHAMFERD", drawing, 0.0),
        flag(L"CHAMMODE", session, 0),
        real(L"CIRCLERAD", session, 0.0, 0.0),
        real(L"DONUTID", session, 0.5, 0.0),
        real(L"DONUTOD", session, 1.0, 0.0),
        real(L"FILLETRAD", drawing, 0.0, 0.0),
        flag(L"TRIMMODE", profile, 1),
        whole(L"EDGEMODE", profile, 0, 0, 1),
        whole(L"DELOBJ", profile, 1, -3, 3),
        flag(L"DRAGMODE", session, 1),

        // ---- how it is shown and saved
        flag(L"ATTDIA", profile, 0),
        whole(L"ATTMODE", drawing, 1, 0, 2),
        flag(L"ATTREQ", profile, 1),
        flag(L"DISPSILH", drawing, 0),
        whole(L"DRAWORDERCTL", session, 3, 0, 3),
        flag(L"EXTNAMES", drawing, 1, 290),
        real(L"FACETRES", session, 0.5, 0.01, 10.0),
        flag(L"FILLMODE", drawing, 1),
        whole(L"HIDETEXT", drawing, 1, 0, 1, 280),
        text(L"HYPERLINKBASE", drawing, L""),
        whole(L"INDEXCTL", drawing, 0, 0, 3, 280),
        flag(L"ISAVEBAK", profile, 1),
        whole(L"ISAVEPERCENT", profile, 50, 0, 100),
        whole(L"ISOLINES", session, 4, 0, 2047),
        whole(L"LAYOUTREGENCTL", profile, 2, 0, 2),
        whole(L"LAYLOCKFADECTL", profile, 50, -90, 90),
        size(L"LTSCALE", drawing, 1.0),
        whole(L"LWDEFAULT", profile, 25, 0, 211),
        flag(L"LWDISPLAY", drawing, 0, 290),
        whole(L"LWUNITS", profile, 1, 0, 1),
        whole(L"MAXACTVP", drawing, 64, 2, 64),
        whole(L"MAXSORT", profile, 1000, 0, 32767),
        flag(L"MEASUREINIT", profile, 1),
        flag(L"MEASUREMENT", drawing, 1),
        flag(L"MIRRTEXT", drawing, 0),
        whole(L"PDMODE", drawing, 0, 0, 100),
        real(L"PDSIZE", drawing, 0.0),
        text(L"PROJECTNAME", drawing, L""),
        flag(L"PROXYGRAPHICS", drawing, 1),
        flag(L"PROXYNOTICE", profile, 1),
        whole(L"PROXYSHOW", profile, 1, 0, 2),
        flag(L"PSLTSCALE", drawing, 1),
        fixed(flag(L"PSTYLEMODE", drawing, 1, 290)),
        flag(L"QTEXTMODE", drawing, 0),
        flag(L"REGENMODE", drawing, 1),
        text(L"SAVEFILEPATH", session, L""),
        whole(L"SAVETIME", profile, 10, 0, 600),
        whole(L"SHADEDGE", drawing, 3, 0, 3),
        whole(L"SHADEDIF", drawing, 70, 0, 100),
        flag(L"SPLFRAME", drawing, 0),
        text(L"STYLESHEET", drawing, L""),
        fixed(real(L"TDCREATE", drawing, 0.0)),
        fixed(real(L"TDINDWG", drawing, 0.0)),
        fixed(real(L"TDUCREATE", drawing, 0.0)),
        fixed(real(L"TDUPDATE", drawing, 0.0)),
        fixed(real(L"TDUSRTIMER", drawing, 0.0)),
        fixed(real(L"TDUUPDATE", drawing, 0.0)),
        flag(L"TEXTFILL", profile, 1),
        whole(L"TEXTQLTY", session, 50, 0, 100),
        whole(L"TREEDEPTH", drawing, 3020, -32768, 32767),
        flag(L"USRTIMER", drawing, 1),
        fixed(text(L"VERSIONGUID", drawing, L"", 2)),
        flag(L"VISRETAIN", drawing, 1),
        flag(L"WHIPARC", profile, 0),
        whole(L"XCLIPFRAME", drawing, 0, 0, 2, 280),
        flag(L"XEDIT", drawing, 1, 290),
        whole(L"XLOADCTL", profile, 2, 0, 2),
        whole(L"XREFCTL", profile, 0, 0, 1),
        whole(L"XREFTYPE", profile, 0, 0, 1),

        // ---- what commands measured last, and undo
        fixed(real(L"AREA", session, 0.0)),
        fixed(real(L"DISTANCE", session, 0.0)),
        fixed(real(L"PERIMETER", session, 0.0)),
        fixed(whole(L"UNDOCTL", session, 5, 0, 63)),
        fixed(whole(L"UNDOMARKS", session, 0, 0, 32767)),

        // ---- for whoever wants them
        whole(L"USERI1", drawing, 0, -32768, 32767),
        whole(L"USERI2", drawing, 0, -32768, 32767),
        whole(L"USERI3", drawing, 0, -32768, 32767),
        whole(L"USERI4", drawing, 0, -32768, 32767),
        whole(L"USERI5", drawing, 0, -32768, 32767),
        real(L"USERR1", drawing, 0.0),
        real(L"USERR2", drawing, 0.0),
        real(L"USERR3", drawing, 0.0),
        real(L"USERR4", drawing, 0.0),
        real(L"USERR5", drawing, 0.0),
        text(L"USERS1", session, L""),
        text(L"USERS2", session, L""),
        text(L"USERS3", session, L""),
        text(L"USERS4", session, L""),
        text(L"USERS5", session, L""),

        // ---- dimensions
        whole(L"DIMADEC", drawing, 0, -1, 8),
        flag(L"DIMALT", drawing, 0),
        whole(L"DIMALTD", drawing, 3, 0, 8),
        real(L"DIMALTF", drawing, 0.03937007874, 0.0),
        real(L"DIMALTRND", drawing, 0.0, 0.0),
        whole(L"DIMALTTD", drawing, 3, 0, 8),
        whole(L"DIMALTTZ", drawing, 0, 0, 15),
        whole(L"DIMALTU", drawing, 2, 1, 8),
        whole(L"DIMALTZ", drawing, 0, 0, 15),
        text(L"DIMAPOST", drawing, L""),
        whole(L"DIMASSOC", drawing, 2, 0, 2, 280),
        real(L"DIMASZ", drawing, 2.5, 0.0),
        whole(L"DIMATFIT", drawing, 3, 0, 3),
        whole(L"DIMAUNIT", drawing, 0, 0, 3),
        whole(L"DIMAZIN", drawing, 0, 0, 3),
        text(L"DIMBLK", drawing, L""),
        text(L"DIMBLK1", drawing, L""),
        text(L"DIMBLK2", drawing, L""),
        real(L"DIMCEN", drawing, 2.5),
        whole(L"DIMCLRD", drawing, 0, 0, 256),
        whole(L"DIMCLRE", drawing, 0, 0, 256),
        whole(L"DIMCLRT", drawing, 0, 0, 256),
        whole(L"DIMDEC", drawing, 2, 0, 8),
        real(L"DIMDLE", drawing, 0.0, 0.0),
        real(L"DIMDLI", drawing, 3.75, 0.0),
        whole(L"DIMDSEP", drawing, 44, 0, 255),
        real(L"DIMEXE", drawing, 1.25, 0.0),
        real(L"DIMEXO", drawing, 0.625, 0.0),
        whole(L"DIMFRAC", drawing, 0, 0, 2),
        real(L"DIMGAP", drawing, 0.625),
        whole(L"DIMJUST", drawing, 0, 0, 4),
        text(L"DIMLDRBLK", drawing, L""),
        real(L"DIMLFAC", drawing, 1.0),
        flag(L"DIMLIM", drawing, 0),
        whole(L"DIMLUNIT", drawing, 2, 1, 6),
        whole(L"DIMLWD", drawing, -2, -3, 211),
        whole(L"DIMLWE", drawing, -2, -3, 211),
        text(L"DIMPOST", drawing, L""),
        real(L"DIMRND", drawing, 0.0, 0.0),
        flag(L"DIMSAH", drawing, 0),
        real(L"DIMSCALE", drawing, 1.0, 0.0),
        flag(L"DIMSD1", drawing, 0),
        flag(L"DIMSD2", drawing, 0),
        flag(L"DIMSE1", drawing, 0),
        flag(L"DIMSE2", drawing, 0),
        flag(L"DIMSHO", session, 1),
        flag(L"DIMSOXD", drawing, 0),
        fixed(text(L"DIMSTYLE", drawing, L"Standard", 2)),
        whole(L"DIMTAD", drawing, 1, 0, 4),
        whole(L"DIMTDEC", drawing, 2, 0, 8),
        size(L"DIMTFAC", drawing, 1.0),
        flag(L"DIMTIH", drawing, 0),
        flag(L"DIMTIX", drawing, 0),
        real(L"DIMTM", drawing, 0.0),
        whole(L"DIMTMOVE", drawing, 0, 0, 2),
        flag(L"DIMTOFL", drawing, 1),
        flag(L"DIMTOH", drawing, 0),
        flag(L"DIMTOL", drawing, 0),
        whole(L"DIMTOLJ", drawing, 0, 0, 2),
        real(L"DIMTP", drawing, 0.0),
        real(L"DIMTSZ", drawing, 0.0, 0.0),
        real(L"DIMTVP", drawing, 0.0),
        text(L"DIMTXSTY", drawing, L"Standard", 7),
        size(L"DIMTXT", drawing, 2.5),
        whole(L"DIMTZIN", drawing, 8, 0, 15),
        flag(L"DIMUPT", drawing, 0),
        whole(L"DIMZIN", drawing, 8, 0, 15),
    };
    std::sort(table.begin(), table.end(), [](const row& a, const row& b) { return a.name < b.name; });
    return table;
}

} // namespace

std::vector<variable_row>& variable_table() {
    static std::vector<row> table = make_table();
    return table;
}

} // namespace ed
