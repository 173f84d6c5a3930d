// How the interface's classes and functions are made visible to the applications that link the host.
// Every other header that exports something includes this one through adesk.h.
#pragma once

#define ACBASE_PORT __attribute__((visibility("default")))

#define ACDB_PORT ACBASE_PORT
#define ACDBCORE2D_PORT ACBASE_PORT
#define ACCORE_PORT ACBASE_PORT
#define ACGE_PORT ACBASE_PORT
#define GE_DLLEXPIMPORT ACBASE_PORT
#define ACGI_PORT ACBASE_PORT
#define ADUI_PORT ACBASE_PORT
