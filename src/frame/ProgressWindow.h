#pragma once

#include "Controller.h"

// A window that shows the progress of a long run in a bar `pb` and a status
// label `lbl`, both hidden until the run moves them: the splash while the
// database is verified and upgraded, or a window never shown when the same run
// goes on without a screen.
class ProgressWindow : public Controller
{
    Q_OBJECT
public:
    explicit ProgressWindow(const QString& name) : Controller(name) {}

protected:
    void design() override;
};

// Moves the bar `pb` of a window (the splash, the backup files) on by `step`,
// never past its maximum, lets pending events run once, and shows `status` in
// its label `lbl` when it is not "".
void AdvanceSplash(Controller& window, int step, const QString& status);
