// The codes of the C interface: what calls answer, what result buffers hold, how the next input is
// restricted.
#pragma once

// Answers of calls. Failures are below nought.
#define RTNORM 5100
#define RTNONE 5000
#define RTERROR (-5001)
#define RTCAN (-5002)
#define RTREJ (-5003)
#define RTFAIL (-5004)
#define RTKWORD (-5005)

// Types of values. Group codes of drawing files are below 2000, so that the two never meet.
#define RTREAL 5001
#define RTPOINT 5002
#define RTSHORT 5003
#define RTANG 5004
#define RTSTR 5005
#define RTENAME 5006
#define RTPICKS 5007
#define RTORINT 5008
#define RT3DPOINT 5009
#define RTLONG 5010
#define RTVOID 5014
#define RTLB 5016
#define RTLE 5017
#define RTDOTE 5018
#define RTNIL 5019
#define RTDXF0 5020 // group code 0 within acutBuildList, where 0 ends the list
#define RTT 5021
#define RTRESBUF 5023
#define RTMODELESS 5027

// What acedInitGet asks of the next input.
#define RSG_NONULL 0x1
#define RSG_NOZERO 0x2
#define RSG_NONEG 0x4
#define RSG_NOLIM 0x8
#define RSG_DASH 0x20
#define RSG_2D 0x40
#define RSG_OTHER 0x80
#define RSG_DDISTFIRST 0x100
#define RSG_TRACKUCS 0x200
#define RSG_NOORTHOZ 0x400
#define RSG_NOOSNAP 0x800
