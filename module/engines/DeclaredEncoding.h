// The encoding that a document names itself.
#pragma once

#include <string_view>

// The `encoding` of the XML declaration at the front of the text, or the charset of a Content-Type in an HTML
// head, as it stands there; empty when there is none. The front of the document is enough. Behind it can be
// read as far as scanReach tells.
std::wstring_view GetDeclaredEncoding(std::wstring_view text);
