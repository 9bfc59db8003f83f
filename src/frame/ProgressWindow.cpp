#include "ProgressWindow.h"

#include "UiPort.h"

void ProgressWindow::design()
{
    Field& pb = add(QStringLiteral("pb"), FieldKind::Progress);
    pb.setVisible(false);
    Field& lbl = add(QStringLiteral("lbl"), FieldKind::Label);
    lbl.setVisible(false);
}

void AdvanceSplash(Controller& window, int step, const QString& status)
{
    Field& pb = window.field(QStringLiteral("pb"));
    Field& lbl = window.field(QStringLiteral("lbl"));
    if (!pb.visible())
        pb.setVisible(true);
    if (!lbl.visible())
        lbl.setVisible(true);
    if (pb.value() + step > pb.maximum())
        pb.setValue(pb.maximum());
    else
        pb.setValue(pb.value() + step);
    ui().yield();
    if (!status.isEmpty())
        lbl.setText(status);
}
