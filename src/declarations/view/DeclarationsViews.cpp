#include "frame/view/ViewRegistry.h"

// The views of the declarations windows, by window name.
void RegisterDeclarationsViews() {}
