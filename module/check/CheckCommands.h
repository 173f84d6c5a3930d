// The commands that check drawings and put them right.
#pragma once

// jcjk: checks the drawing against the standard, shows a table, writes reports. Findings make the run's
// status 1.
void CheckCurrentDrawing();

// gxfz: puts right what that finds, all of it or some rules, after a list of what would change; and maps
// layers by a file, learns such a file from a drawing that was mapped by hand, and turns it round.
void MendCurrentDrawing();

// xxyh: makes one of linetypes that look the same, brings their scales to the plot scale, lets patterns run
// round corners and takes out linetypes that nobody uses.
void OrderLinetypes();

// xxyh2: makes one of lines that were drawn in pieces or twice.
void JoinLines();
