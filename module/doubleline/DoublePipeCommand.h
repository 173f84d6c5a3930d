// The command gxgd: draws double-line pipes from point to point, and risers.
#pragma once

void DrawDoubleLinePipes();
