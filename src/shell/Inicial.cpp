#include "Inicial.h"

void Inicial::design()
{
    add(QStringLiteral("imgImagen"), FieldKind::Label);
    ProgressWindow::design();
}
