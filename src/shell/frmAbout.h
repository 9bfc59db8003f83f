#pragma once

#include "Controller.h"

// The About box of the main window.
class frmAbout : public Controller
{
    Q_OBJECT
public:
    frmAbout() : Controller(QStringLiteral("frmAbout")) {}

    // What the machine and the toolkit tell of themselves.
    static QString SystemInformation();

protected:
    void design() override;
};
