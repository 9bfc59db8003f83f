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

void setUi(UiPort* port) { g_port = port; }

QString AppTitle() { return QStringLiteral("Morvel"); }

int MsgBox(const QString& text, int style, const QString& title)
{
    return ui().messageBox(text, style, title.isEmpty() ? AppTitle() : title);
}
