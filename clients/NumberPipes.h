// The command that gives pipes and risers serial numbers.
#pragma once

// gxbh: asks for pipes, a style, a first serial and a step, and in which order they are numbered. A pipe has
// its serial in its extended data ("PIPE-SERIAL"), and a text about it shows it.
void NumberPipes();
