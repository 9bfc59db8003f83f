#pragma once

#include "ProgressWindow.h"

// The splash shown while the database is verified and upgraded: a picture, the
// progress bar `pb` and the status label `lbl`, both hidden at first.
class Inicial : public ProgressWindow
{
    Q_OBJECT
public:
    Inicial() : ProgressWindow(QStringLiteral("Inicial")) {}

protected:
    void design() override;
};
