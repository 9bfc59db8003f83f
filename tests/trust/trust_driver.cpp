// Works the database as a person would over a long day, without pause, so
// that a test can kill it at any moment: saves declarations with their lines,
// imports long detail lists, makes backups, compacts and restores. After each
// declaration committed it writes a journal line flushed to disk.
//
//   trust_driver DATA_FOLDER SETTINGS_FOLDER JOURNAL RUN
#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QSettings>

#include "Globals.h"
#include "ScriptedUi.h"
#include "Transaction.h"
#include "TrustJournal.h"
#include "ZoAccess.h"
#include "backup/Backup.h"

namespace {

QString quoted(const QString& text)
{
    return u'\'' + text + u'\'';
}

QString values(const QStringList& fields)
{
    QStringList out;
    for (const QString& field : fields)
        out << quoted(field);
    return out.join(QStringLiteral(", "));
}

// One declaration: its header row and its detail lines in `table`_Detalle.
bool writeDeclaration(const QString& table, const QString& code, int lines)
{
    ZoAccess& db = gAccess();
    bool ok = db.Execute(
        QStringLiteral("INSERT INTO %1 (Codigo, Padron, Objeto, Periodo, "
                       "Rectificativa, FechaRectificativa, TotalPercepciones, "
                       "ctrl) VALUES (%2)")
            .arg(table,
                 values({code, QStringLiteral("0000000000001"), QStringLiteral("0000000000002"),
                         QStringLiteral("03-2024"), QStringLiteral("0"), QString(),
                         QStringLiteral("100,00"), QStringLiteral("0")})));
    for (int i = 1; ok && i <= lines; ++i)
        ok = db.Execute(
            QStringLiteral("INSERT INTO %1_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                           "Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, "
                           "ImportePercibido, ctrl) VALUES (%2)")
                .arg(table,
                     values({code, QString(), QString::number(i), QStringLiteral("15-03-2024"),
                             QStringLiteral("FA"), QString::number(100000 + i),
                             QStringLiteral("PROVEEDOR DE PRUEBA S.A."),
                             QStringLiteral("30-12345678-1"), QStringLiteral("0000000000009"),
                             QStringLiteral("1.234,56"), QStringLiteral("0")})));
    return ok;
}

// A window's save: the declaration stands whole or not at all.
bool save(const QString& code, int lines)
{
    Transaction unit;
    writeDeclaration(QStringLiteral("F977"), code, lines);
    return unit.commit();
}

// An import: a long list grouped for speed, what passed kept.
bool import(const QString& code, int lines)
{
    Transaction unit(Transaction::Mode::KeepWhatPassed);
    return writeDeclaration(QStringLiteral("F978"), code, lines) && unit.commit();
}

QString lastArchive()
{
    return GetBackupSetting(BackupKey::BackupDirectory, QString()) + QStringLiteral("/") +
           BackupFileName(GetBackupSetting(BackupKey::FechaUlt, QString()));
}

// A backup, and the older copies removed so that the disk stays small.
bool backup()
{
    if (!BackupDatabase())
        return false;
    const QString archive = lastArchive();
    const QDir folder(QFileInfo(archive).absolutePath());
    for (const QString& name : folder.entryList({QStringLiteral("Morvel.*")}, QDir::Files))
        if (name != QFileInfo(archive).fileName())
            QFile::remove(folder.filePath(name));
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 5)
        return 2;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, args.at(2));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, args.at(2));
    ScriptedUi person;
    setUi(&person);
    SetAppPath(args.at(1));
    const QString journal = args.at(3);
    const QString run = args.at(4);
    InitBackupSettings();
    QRandomGenerator random(run.toUInt() * 7919u + 17u);

    for (int n = 1;; ++n) {
        const QString code = QStringLiteral("K%1-%2").arg(run).arg(n);
        const int dice = random.bounded(100);
        const auto begin = [&](const char* step) {
            TrustJournal::append(journal, QStringLiteral("begin ") + QLatin1String(step), false);
        };
        if (dice < 65) {
            begin("save");
            const int lines = random.bounded(1, 40);
            if (save(code, lines))
                TrustJournal::append(journal, QStringLiteral("F977 %1 %2").arg(code).arg(lines),
                                     true);
        } else if (dice < 82) {
            begin("import");
            const int lines = random.bounded(500, 5000);
            if (import(code, lines))
                TrustJournal::append(journal, QStringLiteral("F978 %1 %2").arg(code).arg(lines),
                                     true);
        } else if (dice < 90) {
            begin("backup");
            backup();
        } else if (dice < 95) {
            begin("compaction");
            CompactDatabase();
        } else {
            // The copy just made holds every declaration committed so far:
            // restoring it must lose none.
            begin("backup");
            if (backup()) {
                begin("restore");
                RestoreDatabase(lastArchive());
            }
        }
    }
}
