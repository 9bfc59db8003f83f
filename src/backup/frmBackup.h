#pragma once

#include "Controller.h"

// "Copia de Seguridad": the schedule of the automatic copies, the date and
// size of the copies, a manual copy, the purge of old copies, copies to
// another folder and the restore. It stays open beside the main window.
class frmBackup : public Controller
{
    Q_OBJECT
public:
    frmBackup() : Controller(QStringLiteral("frmBackup")) {}

    // The bounds of the up-down beside "Cantidad de días:".
    static constexpr int kMinDias = 1;
    static constexpr int kMaxDias = 365;

protected:
    void design() override;
    void onLoad() override;

private:
    void designSchedule();
    void enableSchedule();
    void refreshLabels();
    void stepDias(int step);
    void backupNow();
    void purge();
    void saveElsewhere();
    void restore();
    void accept();
};

// The one instance of the dialog, shown beside the main window; a second call
// while it is open leaves it as it is.
frmBackup& gFrmBackup();
void ShowBackupDialog();
