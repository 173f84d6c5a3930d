// The characters that GB 18030 writes in four bytes: all that GBK has no room for.
#pragma once

namespace sys {

// The character that begins at `at`, of which `left` bytes are there; 0 when no such one does, or when this
// system does not know it. -1 when the end cuts off what may be one.
long gb18030_character(const unsigned char* at, long left);

} // namespace sys
