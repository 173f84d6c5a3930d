#include "base/wildcard.h"

#include "acutads.h"

int acutWcMatch(const ACHAR* text, const ACHAR* pattern) {
    const bool matches = text != nullptr && pattern != nullptr && base::wildcard_match(text, pattern, false);
    return matches ? RTNORM : RTERROR;
}
