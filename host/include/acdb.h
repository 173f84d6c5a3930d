// The enumerations that database objects are opened and described with.
#pragma once

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

// Values of extended data and of xrecords, by what their group codes hold.
enum DxfCode {
    kDxfStart = 0,
    kDxfText = 1,
    kDxfBlockName = 2,
    kDxfHandle = 5,
    kDxfLinetypeName = 6,
    kDxfLayerName = 8,
    kDxfXCoord = 10,
    kDxfReal = 40,
    kDxfVisibility = 60,
    kDxfColor = 62,
    kDxfInt16 = 70,
    kDxfInt32 = 90,
    kDxfSubclass = 100,
    kDxfSoftPointerId = 330,
    kDxfHardPointerId = 340,
    kDxfSoftOwnershipId = 350,
    kDxfHardOwnershipId = 360,
    kDxfXDataStart = -3,
    kDxfRegAppName = 1001,
};

} // namespace AcDb
