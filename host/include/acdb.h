// The enumerations that database objects are opened and described with.
#pragma once

#include "acadstrc.h"
#include "adesk.h"

class AcDbObject;
class AcDbEntity;
class AcDbDatabase;

// Database service names and the names of the spaces' blocks.
#define ACDB_MODEL_SPACE ACRX_T("*Model_Space")
#define ACDB_PAPER_SPACE ACRX_T("*Paper_Space")

namespace AcDb {

// How an object is opened.
enum OpenMode {
    kForRead = 0,   // any number of readers, up to 256
    kForWrite = 1,  // one, and no reader beside it
    kForNotify = 2, // for the time of a notification
};

enum Visibility { kInvisible = 1, kVisible = 0 };

// Hundredths of a millimetre, and the three that stand for something else. No other value is legal.
enum LineWeight {
    kLnWt000 = 0,
    kLnWt005 = 5,
    kLnWt009 = 9,
    kLnWt013 = 13,
    kLnWt015 = 15,
    kLnWt018 = 18,
    kLnWt020 = 20,
    kLnWt025 = 25,
    kLnWt030 = 30,
    kLnWt035 = 35,
    kLnWt040 = 40,
    kLnWt050 = 50,
    kLnWt053 = 53,
    kLnWt060 = 60,
    kLnWt070 = 70,
    kLnWt080 = 80,
    kLnWt090 = 90,
    kLnWt100 = 100,
    kLnWt106 = 106,
    kLnWt120 = 120,
    kLnWt140 = 140,
    kLnWt158 = 158,
    kLnWt200 = 200,
    kLnWt211 = 211,
    kLnWtByLayer = -1,
    kLnWtByBlock = -2,
    kLnWtByLwDefault = -3,
};

// What of a text stands at its alignment point: across (aligned and fitted ones lie between two points), and
// up and down.
enum TextHorzMode {
    kTextLeft = 0,
    kTextCenter = 1,
    kTextRight = 2,
    kTextAlign = 3,
    kTextMid = 4,
    kTextFit = 5,
};

enum TextVertMode {
    kTextBase = 0,
    kTextBottom = 1,
    kTextVertMid = 2,
    kTextTop = 3,
};

// Whether high letters push the next line of a paragraph text down.
enum LineSpacingStyle {
    kAtLeast = 1,
    kExactly = 2,
};

// What polylines and meshes were made into, and what their vertices are then.
enum Poly2dType { k2dSimplePoly = 0, k2dFitCurvePoly, k2dQuadSplinePoly, k2dCubicSplinePoly };
enum Poly3dType { k3dSimplePoly = 0, k3dQuadSplinePoly, k3dCubicSplinePoly };
enum PolyMeshType {
    kSimpleMesh = 0,
    kQuadSurfaceMesh = 5,
    kCubicSurfaceMesh = 6,
    kBezierSurfaceMesh = 8,
};
enum Vertex2dType { k2dVertex = 0, k2dSplineCtlVertex, k2dSplineFitVertex, k2dCurveFitVertex };
enum Vertex3dType { k3dSimpleVertex = 0, k3dControlVertex, k3dFitVertex };

// Versions of drawing files: R12, R13, R14, 2000, 2004, 2007, 2010, 2013, 2018.
enum AcDbDwgVersion {
    kDHL_1009 = 16,
    kDHL_1012 = 19,
    kDHL_1014 = 21,
    kDHL_1015 = 23,
    kDHL_1018 = 25,
    kDHL_1021 = 27,
    kDHL_1024 = 29,
    kDHL_1027 = 31,
    kDHL_1032 = 33,
    kDHL_CURRENT = kDHL_1032,
};

enum MaintenanceReleaseVersion {
    kMRelease0 = 0,
    kMReleaseCurrent = 125,
};

// What became of an external reference.
enum XrefStatus {
    kXrfNotAnXref = 0,
    kXrfResolved = 1,
    kXrfUnloaded = 2,
    kXrfUnreferenced = 3, // an overlay inside a reference: nothing of it is shown
    kXrfFileNotFound = 4,
    kXrfUnresolved = 5, // not looked for, no drawing that can be read, or part of a circle
};

// What acedVPLayer does.
enum VpFreezeOps { kFreeze, kThaw, kReset };

// What the groups of drawing files hold, by their codes.
enum DxfCode {
    kDxfInvalid = -9999,
    kDxfXDictionary = -6,
    kDxfPReactors = -5,
    kDxfOperator = -4,
    kDxfXDataStart = -3,
    kDxfHeaderId = -2,
    kDxfFirstEntId = -2,
    kDxfEnd = -1,
    kDxfStart = 0,
    kDxfText = 1,
    kDxfXRefPath = 1,
    kDxfShapeName = 2,
    kDxfBlockName = 2,
    kDxfAttributeTag = 2,
    kDxfSymbolTableName = 2,
    kDxfSymTableRecName = 2,
    kDxfAttributePrompt = 3,
    kDxfDimStyleName = 3,
    kDxfLinetypeProse = 3,
    kDxfTextFontFile = 3,
    kDxfDescription = 3,
    kDxfTextBigFontFile = 4,
    kDxfSymTableRecComments = 4,
    kDxfHandle = 5,
    kDxfLinetypeName = 6,
    kDxfTextStyleName = 7,
    kDxfLayerName = 8,
    kDxfXCoord = 10,
    kDxfYCoord = 20,
    kDxfZCoord = 30,
    kDxfElevation = 38,
    kDxfThickness = 39,
    kDxfReal = 40,
    kDxfTxtSize = 40,
    kDxfTxtStyleXScale = 41,
    kDxfTxtStylePSize = 42,
    kDxfLinetypeScale = 48,
    kDxfAngle = 50,
    kDxfVisibility = 60,
    kDxfColor = 62,
    kDxfHasSubentities = 66,
    kDxfViewportVisibility = 67,
    kDxfInt16 = 70,
    kDxfRegAppFlags = 71,
    kDxfTxtStyleFlags = 71,
    kDxfInt32 = 90,
    kDxfSubclass = 100,
    kDxfEmbeddedObjectStart = 101,
    kDxfControlString = 102,
    kDxfDimVarHandle = 105,
    kDxfUCSOrg = 110,
    kDxfUCSOriX = 111,
    kDxfUCSOriY = 112,
    kDxfXReal = 140,
    kDxfInt64 = 160,
    kDxfXInt16 = 170,
    kDxfNormalX = 210,
    kDxfNormalY = 220,
    kDxfNormalZ = 230,
    kDxfXXInt16 = 270,
    kDxfInt8 = 280,
    kDxfRenderMode = 281,
    kDxfBool = 290,
    kDxfXTextString = 300,
    kDxfBinaryChunk = 310,
    kDxfArbHandle = 320,
    kDxfSoftPointerId = 330,
    kDxfHardPointerId = 340,
    kDxfSoftOwnershipId = 350,
    kDxfHardOwnershipId = 360,
    kDxfLineWeight = 370,
    kDxfPlotStyleNameType = 380,
    kDxfPlotStyleNameId = 390,
    kDxfXXXInt16 = 400,
    kDxfLayoutName = 410,
    kDxfColorRGB = 420,
    kDxfColorName = 430,
    kDxfAlpha = 440,
    kDxfXdAsciiString = 1000,
    kDxfRegAppName = 1001,
    kDxfXdControlString = 1002,
    kDxfXdLayerName = 1003,
    kDxfXdBinaryChunk = 1004,
    kDxfXdHandle = 1005,
    kDxfXdXCoord = 1010,
    kDxfXdYCoord = 1020,
    kDxfXdZCoord = 1030,
    kDxfXdWorldXCoord = 1011,
    kDxfXdWorldXDisp = 1012,
    kDxfXdWorldXDir = 1013,
    kDxfXdReal = 1040,
    kDxfXdDist = 1041,
    kDxfXdScale = 1042,
    kDxfXdInteger16 = 1070,
    kDxfXdInteger32 = 1071,
    kDxfXdMax = 1071,
};

// What a filer is for.
enum FilerType {
    kFileFiler = 0,
    kCopyFiler = 1,
    kUndoFiler = 2,
    kBagFiler = 3,
    kIdXlateFiler = 4,
    kPageFiler = 5,
    kDeepCloneFiler = 6,
    kIdFiler = 7,
    kPurgeFiler = 8,
    kWblockCloneFiler = 9,
};

// What becomes of a record whose name is there already.
enum DuplicateRecordCloning {
    kDrcNotApplicable = 0,
    kDrcIgnore = 1,
    kDrcReplace = 2,
    kDrcXrefMangleName = 3,
    kDrcMangleName = 4,
    kDrcUnmangleName = 5,
};

} // namespace AcDb

// AcDbDatabase::loadLineTypeFile; eInvalidInput without a drawing.
ACDB_PORT Acad::ErrorStatus acdbLoadLineTypeFile(const ACHAR* name, const ACHAR* file, AcDbDatabase* drawing);
