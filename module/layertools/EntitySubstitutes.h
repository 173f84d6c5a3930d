// Entities that stand for others, which can not be copied as they are.
#pragma once

#include "gemat3d.h"

#include <memory>
#include <vector>

class AcDbEntity;
class AcDbText;

// The text that an attribute, or a constant one of a block, shows: with its colour, lineweight and
// visibility, in a text style of the current drawing.
std::unique_ptr<AcDbEntity> AsText(const AcDbText& source);

// What is drawn in the place of an entity that a placing can not scale unevenly, placed by it; empty when
// nothing can be.
std::vector<std::unique_ptr<AcDbEntity>> Substitutes(const AcDbEntity& entity, const AcGeMatrix3d& placing);
