// The command that puts symbols on pipes.
#pragma once

// hzfj: asks for the kind of symbol and for pipes; each pipe gets one where it was picked.
void PlaceValves();
