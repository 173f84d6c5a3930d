// The commands that draw pipes of the standard's systems.
#pragma once

// hzgx: asks for system, diameter and points, and draws a pipe from each point to the next.
void DrawPipes();
// hzlg: asks for system, diameter and elevations, and draws a riser at each point.
void DrawRisers();
