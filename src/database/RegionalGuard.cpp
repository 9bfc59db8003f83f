#include "RegionalGuard.h"

bool gRegionalChanged = false;
bool CheckRegionalSettings() { return true; }
