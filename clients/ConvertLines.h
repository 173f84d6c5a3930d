// The command that makes pipes of plain lines.
#pragma once

// xzgx: lines and polylines of straight parts on the pipe layers of the standard become pipes of these
// systems, circles there risers. The diameter is what a text of their extended data says ("DN50", "De63",
// "dn63"), else one that is asked for.
void ConvertLines();
