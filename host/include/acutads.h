// Helpers of the C interface that need no drawing.
#pragma once

#include "acutmem.h"
#include "adscodes.h"
#include "adsdef.h"

// Whether a text matches a pattern: `#` digit, `@` letter, `.` neither of them, `*` anything, `?` one
// character,
// `[abc]`, `[a-c]`, `[~abc]` one of these or none of them, `~` in front turns the pattern round, `,` parts
// alternatives, a backquote takes the next character literally. Case counts. RTNORM when it matches, RTERROR
// when not or when one of the texts is null.
ACBASE_PORT int acutWcMatch(const ACHAR* text, const ACHAR* pattern);

// Prints to the command line by a format of printf's kind in which %s and %ls are wide texts, %hs and %S
// narrow ones. RTNORM.
ACCORE_PORT int acutPrintf(const ACHAR* format, ...);

// Shows a message of the application as the cause of a failure. RTNORM.
ACCORE_PORT int acdbFail(const ACHAR* message);
