#include "Schema.h"

bool EnsureBaseSchema() { return true; }
void EnsureIndices() {}
void CreateCurrentDatabase() {}
