// The UI port in force: the one the program or a test installed, else a
// scripted one. Kept apart from UiPort.cpp so that the port's interface does not
// depend on its implementations.
#include "UiPort.h"

#include "ScriptedUi.h"

namespace {
UiPort* g_port = nullptr;
}

UiPort& ui()
{
    if (!g_port) {
        // Nothing was installed: answer like a person who presses the
        // default button, so that no code path can crash on a missing port.
        static ScriptedUi fallback;
        fallback.setStrict(false);
        return fallback;
    }
    return *g_port;
}

void setUi(UiPort* port)
{
    g_port = port;
}
