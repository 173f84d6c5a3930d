// The user's options that all modules of the add-on share. When zef_public is loaded it reads those of the
// upper block from the registry, key KOLConfig; what is missing there keeps the value it is built with.
//
// BOOL options are 0 or 1. Lengths are millimetres, on paper where that is said.
#pragma once

#include "siblings/zef_public/PublicPort.h"

// Pipes.
ZEF_PUBLIC_PORT extern int g_iDefaultPipeDn;      // nominal diameter of a new pipe, mm
ZEF_PUBLIC_PORT extern double g_dDbPipeLineWidth; // line width of double-line water pipes, mm on paper
ZEF_PUBLIC_PORT extern BOOL
    g_bIsElevDimChangeByPipeElev;                // single elevation labels follow the pipe's elevation
ZEF_PUBLIC_PORT extern double g_nDnDimDist2Pipe; // from a pipe to its diameter label, mm on paper
ZEF_PUBLIC_PORT extern BOOL g_bStandPipeArc;     // bends of riser pipes are arcs
ZEF_PUBLIC_PORT extern double g_nElbowRate;      // radius of an elbow, in diameters of its pipe
ZEF_PUBLIC_PORT extern int
    g_nSinataryDataType;                     // where data of sanitary fixtures come from: 0 the first source
ZEF_PUBLIC_PORT extern int g_iVPipeDimStyle; // label style of risers (building number): 0 the first style
ZEF_PUBLIC_PORT extern double g_dVPipeDimDn2Label; // in riser labels from number to diameter, mm on paper
ZEF_PUBLIC_PORT extern BOOL g_bIsPipeDimCir;       // riser labels are in a circle

// Equipment.
ZEF_PUBLIC_PORT extern double g_nFeedCircleScale; // scale of the circles at water-supply points
ZEF_PUBLIC_PORT extern double g_nSprinklerRadius; // radius of a sprinkler's symbol, mm on paper
ZEF_PUBLIC_PORT extern double g_nValveScale;      // scale of valve symbols
ZEF_PUBLIC_PORT extern double g_nDrainPtRadius;   // radius of the circle at a drain point, mm on paper
ZEF_PUBLIC_PORT extern BOOL g_bBlk3D;             // equipment is drawn in three dimensions
ZEF_PUBLIC_PORT extern int g_iSprinklerDistMod;   // distances of sprinklers are multiples of this, mm

// Outdoors.
ZEF_PUBLIC_PORT extern double g_nWellRadius;       // diameter of an inspection well, mm
ZEF_PUBLIC_PORT extern int g_iDimPipeGradientType; // label style of outdoor pipes: 0 the first style

// Tools.
ZEF_PUBLIC_PORT extern BOOL g_bToolbar;             // the toolbar is shown
ZEF_PUBLIC_PORT extern BOOL g_bEnableSelectPreview; // what would be picked is highlighted
ZEF_PUBLIC_PORT extern BOOL g_bVrOsnap;             // the add-on's own object snaps are used
ZEF_PUBLIC_PORT extern BOOL g_bDownloadQ8Split; // on the way to the Q8 format Chinese and Latin text is split

// The current drawing's settings, as the pipe entities tell them.
ZEF_PUBLIC_PORT extern BOOL g_bIsPipeThick;      // pipes are drawn as thick as they plot
ZEF_PUBLIC_PORT extern double g_nBreakPipeWidth; // gap in a pipe where another one crosses, mm on paper
ZEF_PUBLIC_PORT extern double g_nPipeTextBreak;  // gap in a pipe around its text, mm on paper
ZEF_PUBLIC_PORT extern int g_iElbowType;         // 0 a sharp bend, 1 an arc
