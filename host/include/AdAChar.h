// The character of the interface's texts, and how a literal is made of it.
#pragma once

typedef wchar_t ACHAR;

// ACRX_T("text") is a literal of ACHAR; the argument may be a macro.
#define ACRX_T_LITERAL(x) L##x
#define ACRX_T(x) ACRX_T_LITERAL(x)
#define _ACRX_T(x) ACRX_T_LITERAL(x)
