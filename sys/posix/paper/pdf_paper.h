// Draws straight into a PDF: lines are most of a plan, and a library that can do everything takes ten times
// as long for them.
#pragma once

#include "sys/paper.h"

#include <memory>

namespace sys {

std::unique_ptr<paper> make_pdf_paper(const paper_setup& setup);

} // namespace sys
