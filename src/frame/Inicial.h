#pragma once

#include "Controller.h"

// The splash shown while the database is verified and upgraded: a picture, the
// progress bar `pb` and the status label `lbl`, both hidden at first.
class Inicial : public Controller
{
    Q_OBJECT
public:
    Inicial() : Controller(QStringLiteral("Inicial")) {}

protected:
    void design() override;
};

// Moves the bar `pb` of a window (the splash, the backup files) on by `step`,
// never past its maximum, lets pending events run once, and shows `status` in
// its label `lbl` when it is not "".
void AdvanceSplash(Controller& window, int step, const QString& status);
