// The catalogues behind FontTool.h live as long as the module is loaded.
#pragma once

void ReleaseFontCatalogues();
