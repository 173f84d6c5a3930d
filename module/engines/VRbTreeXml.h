// Attributed trees from and to XML files: an element is an item, its tag the item's name, its text the value,
// its attributes the attributes, its child elements the children in their order.
#pragma once

#include "module/engines/MarkupFault.h"

#include "windows.h"

class CVRbTree;

// Fills the tree's root item, which is made when there is none, from the root element of a file: name and
// value are replaced, attributes and children added, so callers clear the tree first. Blanks and line ends
// between child elements are no value. 0, and the tree as it was, when the file does not exist, is not
// well-formed or has no root element. `fault` becomes what is wrong with the file; a file that was read may
// have one, too, and else it becomes none. With `judgesBytes` a file whose bytes are none of the encoding
// that it names is read by its bytes alone (sys/plain_text.h), if that gives a text.
int LoadTreeFromXml(LPCTSTR path, CVRbTree& tree, std::optional<MarkupFault>* fault = nullptr,
                    bool judgesBytes = false);

// Writes the tree's root item with all below it, in the encoding of that name, "utf-8" when it is null. An
// item that has children is written without its value. 0, and no file written, when the tree is empty, a name
// in it is none of XML's, or the file cannot be written.
int SaveTreeToXml(const CVRbTree& tree, LPCTSTR path, LPCTSTR encoding, bool standalone);
