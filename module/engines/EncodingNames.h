// The names that documents call their encodings by, and the numbers that Windows gives those as code pages.
#pragma once

#include <string_view>

// The code page with that name, whatever its case; 0 when the name is not known.
int GetCodePageOfName(std::wstring_view name);
