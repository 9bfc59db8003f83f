#pragma once

#include <QStringList>
#include <QVector>

#include "Controller.h"

// "Archivos de Seguridad": the backup files of a folder, one of which is
// restored, or several of which are copied to another folder.
//
// The two lists of the window stand in the same place: `lst0` takes one
// choice (restore), `lst1` takes several, each item with a tick (copies).
class frmBackupArchivos : public Controller
{
    Q_OBJECT
public:
    frmBackupArchivos() : Controller(QStringLiteral("frmBackupArchivos")) {}
    ~frmBackupArchivos() override;

    // Set before showing: true to save copies, false to restore one.
    bool AccionGrabar = false;
    // The folder the copies are saved to.
    QString GrabarDirectorio;
    // A folder to restore from; "" for the folder of the backups.
    QString RestauraDirectorio;

    // The full path of each listed item.
    const QStringList& Archivos() const { return m_paths; }

    // The ticks of the list of several choices.
    bool Ticked(int index) const;
    void SetTicked(int index, bool on);

    // The window being shown, for the view that draws its ticks.
    static frmBackupArchivos* Current();

signals:
    void ticksChanged();

protected:
    void design() override;
    void onLoad() override;
    void onUnload() override;

private:
    void listFiles();
    void tickAll(bool on);
    void restoreChosen();
    void saveTicked();
    void advance(int step, const QString& status);
    void resetProgress();

    QStringList m_paths;
    QVector<bool> m_ticked;
};
