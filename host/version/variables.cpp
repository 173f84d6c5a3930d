#include "host/version/variables.h"

#include "host/db/core/format_versions.h"

#include <algorithm>
#include <iterator>

namespace version {

namespace {

// Source: the DXF reference of R12.
constexpr std::string_view in_r12[] = {
    "$ACADVER",    "$ANGBASE",    "$ANGDIR",      "$ATTDIA",     "$ATTMODE",     "$ATTREQ",    "$AUNITS",
    "$AUPREC",     "$AXISMODE",   "$AXISUNIT",    "$BLIPMODE",   "$CECOLOR",     "$CELTYPE",   "$CHAMFERA",
    "$CHAMFERB",   "$CLAYER",     "$COORDS",      "$DIMALT",     "$DIMALTD",     "$DIMALTF",   "$DIMAPOST",
    "$DIMASO",     "$DIMASZ",     "$DIMBLK",      "$DIMBLK1",    "$DIMBLK2",     "$DIMCEN",    "$DIMCLRD",
    "$DIMCLRE",    "$DIMCLRT",    "$DIMDLE",      "$DIMDLI",     "$DIMEXE",      "$DIMEXO",    "$DIMGAP",
    "$DIMLFAC",    "$DIMLIM",     "$DIMPOST",     "$DIMRND",     "$DIMSAH",      "$DIMSCALE",  "$DIMSE1",
    "$DIMSE2",     "$DIMSHO",     "$DIMSOXD",     "$DIMSTYLE",   "$DIMTAD",      "$DIMTFAC",   "$DIMTIH",
    "$DIMTIX",     "$DIMTM",      "$DIMTOFL",     "$DIMTOH",     "$DIMTOL",      "$DIMTP",     "$DIMTSZ",
    "$DIMTVP",     "$DIMTXT",     "$DIMZIN",      "$DRAGMODE",   "$DWGCODEPAGE", "$ELEVATION", "$EXTMAX",
    "$EXTMIN",     "$FASTZOOM",   "$FILLETRAD",   "$FILLMODE",   "$FLATLAND",    "$GRIDMODE",  "$GRIDUNIT",
    "$HANDLING",   "$HANDSEED",   "$INSBASE",     "$LIMCHECK",   "$LIMMAX",      "$LIMMIN",    "$LTSCALE",
    "$LUNITS",     "$LUPREC",     "$MAXACTVP",    "$MENU",       "$MIRRTEXT",    "$ORTHOMODE", "$OSMODE",
    "$PDMODE",     "$PDSIZE",     "$PELEVATION",  "$PEXTMAX",    "$PEXTMIN",     "$PLIMCHECK", "$PLIMMAX",
    "$PLIMMIN",    "$PLINEGEN",   "$PLINEWID",    "$PSLTSCALE",  "$PUCSNAME",    "$PUCSORG",   "$PUCSXDIR",
    "$PUCSYDIR",   "$QTEXTMODE",  "$REGENMODE",   "$SHADEDGE",   "$SHADEDIF",    "$SKETCHINC", "$SKPOLY",
    "$SNAPANG",    "$SNAPBASE",   "$SNAPISOPAIR", "$SNAPMODE",   "$SNAPSTYLE",   "$SNAPUNIT",  "$SPLFRAME",
    "$SPLINESEGS", "$SPLINETYPE", "$SURFTAB1",    "$SURFTAB2",   "$SURFTYPE",    "$SURFU",     "$SURFV",
    "$TDCREATE",   "$TDINDWG",    "$TDUPDATE",    "$TDUSRTIMER", "$TEXTSIZE",    "$TEXTSTYLE", "$THICKNESS",
    "$TILEMODE",   "$TRACEWID",   "$UCSNAME",     "$UCSORG",     "$UCSXDIR",     "$UCSYDIR",   "$UNITMODE",
    "$USERI1",     "$USERI2",     "$USERI3",      "$USERI4",     "$USERI5",      "$USERR1",    "$USERR2",
    "$USERR3",     "$USERR4",     "$USERR5",      "$USRTIMER",   "$VIEWCTR",     "$VIEWDIR",   "$VIEWSIZE",
    "$VISRETAIN",  "$WORLDVIEW"};

struct variable_row {
    std::string_view name;
    int first;
};

// Source: the DXF references of 2004 and 2007 to 2018.
constexpr variable_row later[] = {{"$3DDWFPREC", db::release_2007},
                                  {"$CAMERADISPLAY", db::release_2007},
                                  {"$CAMERAHEIGHT", db::release_2007},
                                  {"$CMATERIAL", db::release_2007},
                                  {"$CSHADOW", db::release_2007},
                                  {"$DGNFRAME", db::release_2007},
                                  {"$DIMARCSYM", db::release_2007},
                                  {"$DIMASSOC", db::release_2004},
                                  {"$DIMFXL", db::release_2007},
                                  {"$DIMFXLON", db::release_2007},
                                  {"$DIMJOGANG", db::release_2007},
                                  {"$DIMLTEX1", db::release_2007},
                                  {"$DIMLTEX2", db::release_2007},
                                  {"$DIMLTYPE", db::release_2007},
                                  {"$DIMTFILL", db::release_2007},
                                  {"$DIMTFILLCLR", db::release_2007},
                                  {"$DIMTXTDIRECTION", db::release_2010},
                                  {"$DWFFRAME", db::release_2007},
                                  {"$HALOGAP", db::release_2004},
                                  {"$HIDETEXT", db::release_2004},
                                  {"$INDEXCTL", db::release_2004},
                                  {"$INTERFERECOLOR", db::release_2007},
                                  {"$INTERFEREOBJVS", db::release_2007},
                                  {"$INTERFEREVPVS", db::release_2007},
                                  {"$INTERSECTIONCOLOR", db::release_2004},
                                  {"$INTERSECTIONDISPLAY", db::release_2004},
                                  {"$LASTSAVEDBY", db::release_2004},
                                  {"$LATITUDE", db::release_2007},
                                  {"$LENSLENGTH", db::release_2007},
                                  {"$LIGHTGLYPHDISPLAY", db::release_2007},
                                  {"$LOFTANG1", db::release_2007},
                                  {"$LOFTANG2", db::release_2007},
                                  {"$LOFTMAG1", db::release_2007},
                                  {"$LOFTMAG2", db::release_2007},
                                  {"$LOFTNORMALS", db::release_2007},
                                  {"$LOFTPARAM", db::release_2007},
                                  {"$LONGITUDE", db::release_2007},
                                  {"$NORTHDIRECTION", db::release_2007},
                                  {"$OBSCOLOR", db::release_2004},
                                  {"$OBSLTYPE", db::release_2004},
                                  {"$PROJECTNAME", db::release_2004},
                                  {"$PSOLHEIGHT", db::release_2007},
                                  {"$PSOLWIDTH", db::release_2007},
                                  {"$REALWORLDSCALE", db::release_2007},
                                  {"$REQUIREDVERSIONS", db::release_2013},
                                  {"$SHADOWPLANELOCATION", db::release_2007},
                                  {"$SHOWHIST", db::release_2007},
                                  {"$SOLIDHIST", db::release_2007},
                                  {"$SORTENTS", db::release_2004},
                                  {"$STEPSIZE", db::release_2007},
                                  {"$STEPSPERSEC", db::release_2007},
                                  {"$TILEMODELIGHTSYNCH", db::release_2007},
                                  {"$TIMEZONE", db::release_2007},
                                  {"$XCLIPFRAME", db::release_2004}};

} // namespace

bool knows_variable(int version, std::string_view name) {
    if (version < db::release_13)
        return std::find(std::begin(in_r12), std::end(in_r12), name) != std::end(in_r12);
    const auto row = std::find_if(std::begin(later), std::end(later),
                                  [&](const variable_row& candidate) { return candidate.name == name; });
    return row == std::end(later) || version >= row->first;
}

} // namespace version
