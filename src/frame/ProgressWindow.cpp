#include "ProgressWindow.h"

#include <QElapsedTimer>

#include "UiPort.h"

namespace {
constexpr qint64 kFrameMs = 20;
} // namespace

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
    // The window is drawn again at most once a frame: a run of many quick
    // steps (the checks of a start on a sound database) does not wait for a
    // paint at each one, and a slow step still shows its progress.
    static QElapsedTimer sinceYield;
    if (!sinceYield.isValid() || sinceYield.elapsed() >= kFrameMs) {
        ui().yield();
        sinceYield.start();
    }
    if (!status.isEmpty())
        lbl.setText(status);
}
