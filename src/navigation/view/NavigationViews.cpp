#include "frame/view/ViewRegistry.h"

// The views of the navigation windows, by window name.
void RegisterNavigationViews() {}
