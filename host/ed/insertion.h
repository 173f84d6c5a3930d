// Inserting a block: where, how large, turned how, with which attributes.
#pragma once

#include "dbmain.h"

namespace ed {

// Asks for all of it and puts a reference to the block into the current space; or, with `exploded`, what it
// is made of. False when the user ended it, or the drawing can not hold it.
bool insert_block(AcDbObjectId block, bool exploded);

} // namespace ed
