#include "frame/view/ViewRegistry.h"

// The views of the registry windows, by window name.
void RegisterRegistryViews() {}
