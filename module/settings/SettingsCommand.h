// The command gxsz: the current standard is looked at, changed, compared, checked, opened and saved.
#pragma once

void EditStandard();
