#include "frmBackup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "Backup.h"
#include "Globals.h"
#include "UiPort.h"
#include "Util.h"
#include "Validar.h"
#include "frmBackupArchivos.h"

namespace {

const QString kChkDias = QStringLiteral("chkDias");
const QString kTxtDias = QStringLiteral("txtDias");
const QString kOptInicio = QStringLiteral("optInicio");
const QString kOptCierre = QStringLiteral("optCierre");
const QString kChkCompacta = QStringLiteral("chkCompactaRepara");
const QString kBrowseTitle = QStringLiteral("Buscar ubicación");

// The fields that only matter when the copies are automatic.
const QStringList kScheduleFields = {
    QStringLiteral("frmDias"),
    QStringLiteral("lblCantDias"),
    kTxtDias,
    QStringLiteral("udDias"),
    QStringLiteral("udDiasUp"),
    QStringLiteral("udDiasDown"),
    kOptInicio,
    kOptCierre,
    kChkCompacta,
};

// Names of purged files are longer than this; shorter ones are never copies.
constexpr int kShortestPurged = 15;

// "dd/mm/yyyy HH:MM:SS" from a stamp "yyyymmddHHmmss".
QString stampText(const QString& stamp)
{
    if (stamp.isEmpty())
        return {};
    return stamp.mid(6, 2) + u'/' + stamp.mid(4, 2) + u'/' + stamp.mid(0, 4) + u' ' +
           stamp.mid(8, 2) + u':' + stamp.mid(10, 2) + u':' + stamp.mid(12, 2);
}

QString backupFolder()
{
    return GetBackupSetting(BackupKey::BackupDirectory, QString());
}

} // namespace

frmBackup& gFrmBackup()
{
    static frmBackup dialog;
    return dialog;
}

void ShowBackupDialog()
{
    frmBackup& dialog = gFrmBackup();
    if (dialog.isLoaded() && dialog.isShown())
        return;
    dialog.show(false);
}

void frmBackup::design()
{
    setCaption(QStringLiteral("Copia de Seguridad"));
    add(kChkDias, FieldKind::Check, QStringLiteral("Copia de Seguridad automática"));
    designSchedule();
    add(QStringLiteral("lblFechaLeyenda"), FieldKind::Label,
        QStringLiteral("Fecha de la última copia:"));
    add(QStringLiteral("lblFecha"), FieldKind::Label);
    add(QStringLiteral("lblTamanioLeyenda"), FieldKind::Label, QStringLiteral("Espacio Ocupado:"));
    add(QStringLiteral("lblSize"), FieldKind::Label);
    add(QStringLiteral("cmdBackupManual"), FieldKind::Button,
        QStringLiteral("Realizar copia de seguridad manual ahora"));
    add(QStringLiteral("cmdPurgar"), FieldKind::Button,
        QStringLiteral("Eliminar archivos antiguos"));
    add(QStringLiteral("cmdRespaldo"), FieldKind::Button,
        QStringLiteral("Guardar copias en otra ubicación..."));
    add(QStringLiteral("cmdRestaurar"), FieldKind::Button,
        QStringLiteral("Restaurar una copia de seguridad..."));
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("Aceptar"));

    on(kChkDias, Ev::Click, [this](EventArgs&) { enableSchedule(); });
    on(kTxtDias, Ev::KeyPress,
       [this](EventArgs& e) { gValidar().TextBox(e.key, field(kTxtDias), Validar::Digits, 3); });
    on(QStringLiteral("udDiasUp"), Ev::Click, [this](EventArgs&) { stepDias(1); });
    on(QStringLiteral("udDiasDown"), Ev::Click, [this](EventArgs&) { stepDias(-1); });
    on(QStringLiteral("cmdBackupManual"), Ev::Click, [this](EventArgs&) { backupNow(); });
    on(QStringLiteral("cmdPurgar"), Ev::Click, [this](EventArgs&) { purge(); });
    on(QStringLiteral("cmdRespaldo"), Ev::Click, [this](EventArgs&) { saveElsewhere(); });
    on(QStringLiteral("cmdRestaurar"), Ev::Click, [this](EventArgs&) { restore(); });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { accept(); });
}

void frmBackup::designSchedule()
{
    add(QStringLiteral("frmDias"), FieldKind::Frame);
    add(kOptInicio, FieldKind::Option,
        QStringLiteral("Hacer la copia de seguridad durante el inicio de Morvel"))
        .setGroup(QStringLiteral("momento"));
    add(kOptCierre, FieldKind::Option,
        QStringLiteral("Hacer la copia de seguridad durante el cierre de Morvel"))
        .setGroup(QStringLiteral("momento"));
    add(QStringLiteral("lblCantDias"), FieldKind::Label, QStringLiteral("Cantidad de días:"));
    add(kTxtDias, FieldKind::Text).setMaxLength(3);
    add(QStringLiteral("udDias"), FieldKind::Frame);
    add(QStringLiteral("udDiasUp"), FieldKind::Button);
    add(QStringLiteral("udDiasDown"), FieldKind::Button);
    add(kChkCompacta, FieldKind::Check,
        QStringLiteral("Compactar y Reparar base de datos antes de la copia de seguridad"));
}

void frmBackup::onLoad()
{
    field(kChkDias).setValue(
        IsSettingOn(GetBackupSetting(BackupKey::CopiaSeguridad, kSettingOff)) ? 1 : 0);
    field(kChkCompacta)
        .setValue(IsSettingOn(GetBackupSetting(BackupKey::CompactaRepara, kSettingOn)) ? 1 : 0);
    field(kTxtDias).setText(GetBackupSetting(BackupKey::CantDias, QStringLiteral("10")));
    // One moment only: at close when both are on, as the later option wins.
    const bool atClose = IsSettingOn(GetBackupSetting(BackupKey::Cierre, kSettingOn));
    const bool atStart = !atClose && IsSettingOn(GetBackupSetting(BackupKey::Inicio, kSettingOff));
    field(kOptInicio).setValue(atStart ? 1 : 0);
    field(kOptCierre).setValue(atClose ? 1 : 0);
    enableSchedule();
    refreshLabels();
}

void frmBackup::enableSchedule()
{
    const bool on = field(kChkDias).checked();
    for (const QString& name : kScheduleFields)
        field(name).setEnabled(on);
}

void frmBackup::refreshLabels()
{
    field(QStringLiteral("lblFecha"))
        .setText(stampText(GetBackupSetting(BackupKey::FechaUlt, QString())));
    field(QStringLiteral("lblSize")).setText(MegabytesText(GetDirectorySize(backupFolder())));
}

void frmBackup::stepDias(int step)
{
    Field& dias = field(kTxtDias);
    const int value = qBound(kMinDias, dias.text().toInt() + step, kMaxDias);
    dias.setText(QString::number(value));
}

void frmBackup::backupNow()
{
    ui().setBusy(true);
    const bool done = BackupDatabase();
    ui().setBusy(false);
    refreshLabels();
    // The person is told where the copy went and how big it is, or that
    // there is none.
    const QString copia =
        backupFolder() + u'/' + BackupFileName(GetBackupSetting(BackupKey::FechaUlt, QString()));
    if (done)
        MsgBox(QStringLiteral("Copia de seguridad realizada en\n") + QDir::toNativeSeparators(copia) +
                   QStringLiteral("\nTamaño: ") + MegabytesText(QFileInfo(copia).size()),
               Msg::Information, QStringLiteral("Copia de Seguridad"));
    else
        MsgBox(QStringLiteral("No se pudo realizar la copia de seguridad. El motivo quedó en el "
                              "registro de errores."),
               Msg::Exclamation, QStringLiteral("Copia de Seguridad"));
}

void frmBackup::purge()
{
    const int answer = MsgBox(QStringLiteral("Este proceso eliminará los archivos de backup\n"
                                             "dejando disponible sólamente el último backup "
                                             "realizado.\n¿Desea continuar?"),
                              Msg::YesNo | Msg::Question, QStringLiteral("Purgar"));
    const QString last = GetBackupSetting(BackupKey::FechaUlt, QString());
    if (answer == Msg::Yes && !last.isEmpty()) {
        const QString folder = backupFolder();
        for (const QString& name : QDir(folder).entryList(QDir::Files)) {
            if (!name.contains(last) && name.size() > kShortestPurged)
                QFile::remove(folder + u'/' + name);
        }
    }
    refreshLabels();
}

void frmBackup::saveElsewhere()
{
    const QString folder = BrowseForFolder(kBrowseTitle);
    if (folder.isEmpty())
        return;
    frmBackupArchivos archivos;
    archivos.AccionGrabar = true;
    archivos.GrabarDirectorio = folder;
    archivos.show(true);
}

void frmBackup::restore()
{
    frmBackupArchivos archivos;
    const int answer =
        MsgBox(QStringLiteral("¿Desea buscar la ubicación de los archivos de copia de seguridad "
                              "en la PC?"),
               Msg::YesNo | Msg::Question, QStringLiteral("Restaurar"));
    if (answer == Msg::Yes)
        archivos.RestauraDirectorio = BrowseForFolder(kBrowseTitle);
    archivos.AccionGrabar = false;
    archivos.show(true);
}

void frmBackup::accept()
{
    SaveBackupSetting(BackupKey::CopiaSeguridad, SettingText(field(kChkDias).checked()));
    SaveBackupSetting(BackupKey::CompactaRepara, SettingText(field(kChkCompacta).checked()));
    // An emptied box keeps the days stored before rather than "" (a copy at
    // every start).
    const QString dias = field(kTxtDias).text().trimmed();
    if (!dias.isEmpty())
        SaveBackupSetting(BackupKey::CantDias, dias);
    SaveBackupSetting(BackupKey::Inicio, SettingText(field(kOptInicio).checked()));
    SaveBackupSetting(BackupKey::Cierre, SettingText(field(kOptCierre).checked()));
    unload();
}
