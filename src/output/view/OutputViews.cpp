#include "frame/view/ViewRegistry.h"

// The views of the output windows, by window name.
void RegisterOutputViews() {}
