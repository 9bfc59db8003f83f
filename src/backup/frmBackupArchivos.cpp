#include "frmBackupArchivos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

#include "Backup.h"
#include "ErrorLog.h"
#include "MainWindowLink.h"
#include "ProgressWindow.h"
#include "ServerBackup.h"
#include "UiPort.h"

namespace {

const QString kSingle = QStringLiteral("lst0");
const QString kSeveral = QStringLiteral("lst1");
const QString kCopiaTitle = QStringLiteral("Copia de Seguridad");

frmBackupArchivos* g_current = nullptr;

// "Copia del día dd/mm/yyyy a hs. HH:mm:ss" for "Morvel.yyyymmddHHmmss".
QString itemText(const QString& name)
{
    const QString s = name.mid(7);
    return QStringLiteral("Copia del día ") + s.mid(6, 2) + u'/' + s.mid(4, 2) + u'/' +
           s.mid(0, 4) + QStringLiteral(" a hs. ") + s.mid(8, 2) + u':' + s.mid(10, 2) + u':' +
           s.mid(12, 2);
}

// Copies `source` over `target`, which takes the new content whole or keeps
// its old one: never half a file under a backup's name.
bool copyReplacing(const QString& source, const QString& target)
{
    if (QFileInfo(source).canonicalFilePath() == QFileInfo(target).canonicalFilePath())
        return true; // the folder chosen is the folder of the copies
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    if (!QFile::copy(source, partial)) {
        QFile::remove(partial);
        return false;
    }
    if (std::rename(QFile::encodeName(partial).constData(),
                    QFile::encodeName(target).constData()) != 0) {
        QFile::remove(partial);
        return false;
    }
    return true;
}

} // namespace

frmBackupArchivos::~frmBackupArchivos()
{
    if (g_current == this)
        g_current = nullptr;
}

frmBackupArchivos* frmBackupArchivos::Current()
{
    return g_current;
}

void frmBackupArchivos::design()
{
    setCaption(QStringLiteral("Archivos de Seguridad"));
    add(QStringLiteral("lblTitulo"), FieldKind::Label);
    add(kSingle, FieldKind::List);
    add(kSeveral, FieldKind::List);
    add(QStringLiteral("cmdSelAll"), FieldKind::Button, QStringLiteral("Seleccionar todos"));
    add(QStringLiteral("cmdSelNone"), FieldKind::Button, QStringLiteral("Ninguno"));
    // The status and the bar show while the work runs, as on the splash.
    add(QStringLiteral("lbl"), FieldKind::Label).setVisible(false);
    add(QStringLiteral("pb"), FieldKind::Progress).setVisible(false);
    add(QStringLiteral("cmdAccion"), FieldKind::Button);
    add(QStringLiteral("cmdSalir"), FieldKind::Button, QStringLiteral("Salir"));

    on(QStringLiteral("cmdSelAll"), Ev::Click, [this](EventArgs&) { tickAll(true); });
    on(QStringLiteral("cmdSelNone"), Ev::Click, [this](EventArgs&) { tickAll(false); });
    on(QStringLiteral("cmdSalir"), Ev::Click, [this](EventArgs&) { unload(); });
    on(QStringLiteral("cmdAccion"), Ev::Click, [this](EventArgs&) {
        if (AccionGrabar)
            saveTicked();
        else
            restoreChosen();
    });
}

void frmBackupArchivos::onLoad()
{
    g_current = this;
    field(QStringLiteral("cmdAccion"))
        .setText(AccionGrabar ? QStringLiteral("Guardar...") : QStringLiteral("Restaurar"));
    field(QStringLiteral("cmdSelAll")).setVisible(AccionGrabar);
    field(QStringLiteral("cmdSelNone")).setVisible(AccionGrabar);
    field(kSingle).setVisible(!AccionGrabar);
    field(kSeveral).setVisible(AccionGrabar);
    field(QStringLiteral("lblTitulo"))
        .setText(AccionGrabar ? QStringLiteral("Marque las copias que desea guardar en ") +
                                    GrabarDirectorio + u':'
                              : QStringLiteral("Elija la copia de seguridad que desea restaurar:"));
    listFiles();
}

void frmBackupArchivos::onUnload()
{
    if (g_current == this)
        g_current = nullptr;
}

void frmBackupArchivos::listFiles()
{
    const QString folder = !RestauraDirectorio.isEmpty()
                               ? RestauraDirectorio
                               : GetBackupSetting(BackupKey::BackupDirectory, QString());
    m_paths.clear();
    Field& list = field(AccionGrabar ? kSeveral : kSingle);
    list.clearItems();
    const QStringList names = QDir(folder).entryList(
        {QStringLiteral("Morvel.*")}, QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QString& name : names) {
        if (!ServerBackup::IsListedName(name))
            continue;
        list.addItem(itemText(name), m_paths.size());
        m_paths << QDir(folder).filePath(name);
    }
    m_ticked = QVector<bool>(m_paths.size(), false);
    emit ticksChanged();
}

bool frmBackupArchivos::Ticked(int index) const
{
    return index >= 0 && index < m_ticked.size() && m_ticked.at(index);
}

void frmBackupArchivos::SetTicked(int index, bool on)
{
    if (index < 0 || index >= m_ticked.size() || m_ticked.at(index) == on)
        return;
    m_ticked[index] = on;
    emit ticksChanged();
}

void frmBackupArchivos::tickAll(bool on)
{
    m_ticked.fill(on);
    emit ticksChanged();
}

void frmBackupArchivos::restoreChosen()
{
    const int chosen = field(kSingle).listIndex();
    if (chosen < 0 || chosen >= m_paths.size())
        return;
    const int answer =
        MsgBox(QStringLiteral("Esta acción restaurará la base de datos. Sus datos "
                              "actuales se perderán.\n¿Desea continuar?"),
               Msg::YesNo | Msg::Question | Msg::DefaultButton2, QStringLiteral("Restaurar"));
    if (answer != Msg::Yes)
        return;
    advance(0, QStringLiteral("Restaurando base de datos desde archivo..."));
    ui().setBusy(true);
    QString reason;
    const bool restored = RestoreDatabase(m_paths.at(chosen), &reason);
    ui().setBusy(false);
    if (!restored) {
        // The system's message, then why, so that the person knows the
        // backup itself is at fault and that nothing of theirs changed.
        QString text = QStringLiteral("La restauración no se pudo realizar correctamente.");
        if (!reason.isEmpty())
            text += QStringLiteral("\n\n") + reason +
                    QStringLiteral("\nLa base de datos actual no se modificó.");
        MsgBox(text, Msg::Critical);
        resetProgress();
        return;
    }
    advance(100, QStringLiteral("Verificando base de datos..."));
    MsgBox(QStringLiteral("La restauración se realizó correctamente. Se cerrará la aplicación."),
           Msg::Information);
    resetProgress();
    unload();
    CloseMainWindow();
    ui().endProgram();
}

void frmBackupArchivos::saveTicked()
{
    MsgBox(QStringLiteral("Se iniciará el proceso de grabación. Por favor espere."),
           Msg::Information, kCopiaTitle);
    QStringList failed;
    const int step = m_paths.isEmpty() ? 0 : 100 / int(m_paths.size());
    for (int i = 0; i < m_paths.size(); ++i) {
        if (!Ticked(i))
            continue;
        const QString name = QFileInfo(m_paths.at(i)).fileName();
        if (!copyReplacing(m_paths.at(i), GrabarDirectorio + u'/' + name)) {
            LogError(QStringLiteral("-1"),
                     QStringLiteral("No se pudo copiar ") + m_paths.at(i) + QStringLiteral(" a ") +
                         GrabarDirectorio,
                     QStringLiteral("frmBackupArchivos"));
            failed << name;
        }
        advance(step, QString());
    }
    if (!failed.isEmpty())
        MsgBox(QStringLiteral("No se pudieron copiar estos archivos a ") + GrabarDirectorio +
                   QStringLiteral(":\n") + failed.join(u'\n'),
               Msg::Exclamation, kCopiaTitle);
    MsgBox(QStringLiteral("Se finalizó la transferencia."), Msg::Information, kCopiaTitle);
    resetProgress();
}

void frmBackupArchivos::advance(int step, const QString& status)
{
    AdvanceSplash(*this, step, status);
}

void frmBackupArchivos::resetProgress()
{
    if (!isLoaded())
        return;
    Field& pb = field(QStringLiteral("pb"));
    Field& lbl = field(QStringLiteral("lbl"));
    pb.setValue(0);
    lbl.setText(QString());
    pb.setVisible(false);
    lbl.setVisible(false);
}
