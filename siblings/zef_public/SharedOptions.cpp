#include "siblings/zef_public/SharedOptions.h"

int g_iDefaultPipeDn = 100;
double g_dDbPipeLineWidth = 0.5;
BOOL g_bIsElevDimChangeByPipeElev = TRUE;
double g_nDnDimDist2Pipe = 1.0;
BOOL g_bStandPipeArc = TRUE;
double g_nElbowRate = 1.5; // a long-radius elbow
int g_nSinataryDataType = 0;
int g_iVPipeDimStyle = 0;
double g_dVPipeDimDn2Label = 1.0;
BOOL g_bIsPipeDimCir = FALSE;

double g_nFeedCircleScale = 1.0;
double g_nSprinklerRadius = 1.5;
double g_nValveScale = 1.0;
double g_nDrainPtRadius = 1.5;
BOOL g_bBlk3D = FALSE;
int g_iSprinklerDistMod = 100;

double g_nWellRadius = 700.0;
int g_iDimPipeGradientType = 0;

BOOL g_bToolbar = TRUE;
BOOL g_bEnableSelectPreview = TRUE;
BOOL g_bVrOsnap = FALSE;
BOOL g_bDownloadQ8Split = FALSE;

BOOL g_bIsPipeThick = FALSE;
double g_nBreakPipeWidth = 2.0;
double g_nPipeTextBreak = 1.0;
int g_iElbowType = 0;
