#include "UiPort.h"

QString AppTitle() { return QStringLiteral("Morvel"); }

int MsgBox(const QString& text, int style, const QString& title)
{
    return ui().messageBox(text, style, title.isEmpty() ? AppTitle() : title);
}
