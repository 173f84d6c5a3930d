// The dialog in which the user says which layers are architecture's and which water and drainage's.
#pragma once

// Shows the table "userlayer.dbf" with the current drawing's layers until the user ends the dialog. True when
// the table has changed; why it can not be read or written is told.
bool DefineLayers();
