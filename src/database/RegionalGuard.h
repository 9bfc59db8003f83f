#pragma once

// Refuses a machine whose regional settings would break stored amounts and
// dates; may ask to change the decimal symbols. False when the program must
// end here.
bool CheckRegionalSettings();

// Set when the guard changed the symbols; never read, as before.
extern bool gRegionalChanged;
