// The command that labels pipes with their diameters.
#pragma once

// bzgj: asks how and which pipes.
void LabelPipes();
