#include "frame/view/ViewRegistry.h"

// The views of the backup windows, by window name.
void RegisterBackupViews() {}
