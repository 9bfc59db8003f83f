// The time of a backup as the person waits for it, on a database of about
// 200 MB: BackupDatabase (a consistent snapshot of the open database, zipped
// by the archiver into the backup folder) beside the reference, the archiver
// alone zipping the same file at its fastest level ("7za a -tzip -mx=1").
// Each runs once, or the number of times given as the argument, in turn;
// medians in seconds, and their ratio.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <sqlite3.h>
#include <vector>

#include "BenchSupport.h"
#include "Globals.h"
#include "ScriptedUi.h"
#include "SqliteDatabase.h"
#include "backup/Backup.h"
#include "database/Schema.h"
#include "output/ZoGenerateDisk.h"

namespace {

// The lines alone; the index built after them brings the file to about 200 MB.
constexpr qint64 kTargetBytes = 168LL * 1024 * 1024;

constexpr double kGoal = 1.2;
using Bench::median;

QString amount(quint32 cents)
{
    return QString::number(cents / 100) + u',' +
           QString::number(cents % 100).rightJustified(2, u'0');
}

// Detail lines of monthly returns until the file holds about 200 MB: the
// codes, periods and amounts of real declarations, in one transaction.
void fillDatabase()
{
    sqlite3* db = SqliteDatabase::connection(DatabasePath());
    // The index is built once at the end rather than row by row.
    sqlite3_exec(db, "DROP INDEX IF EXISTS ix_F976_Detalle_Codigo_FechaRectificativa_ctrl", nullptr,
                 nullptr, nullptr);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                       "TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) "
                       "VALUES (?, '0', ?, ?, ?, ?, ?, ?, '0')",
                       -1, &insert, nullptr);
    const char* activities[] = {
        "Venta al por menor en hipermercados, supermercados y minimercados con predominio de "
        "productos alimenticios y bebidas",
        "Servicio de transporte automotor de cargas n.c.p., incluye servicios de transporte de "
        "carga refrigerada y de mudanzas",
        "Servicios de restaurantes y cantinas con y sin espectáculo, de expendio de comidas y "
        "bebidas en bares y confiterías",
        "Construcción, reforma y reparación de edificios residenciales y no residenciales, "
        "obras de ingeniería civil",
        "Venta al por menor de combustible para vehículos automotores y motocicletas, incluye "
        "estaciones de servicio y lubricantes"};
    quint32 seed = 12345;
    auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    qint64 rows = 0;
    for (;;) {
        const quint32 r = next();
        const QByteArray codigo =
            QString::asprintf("%013u%02u2024%013uO", r % 100000, 1 + r % 12, (r >> 8) % 1000)
                .toUtf8();
        const QByteArray detalle = QString::asprintf("%04lld", 1 + rows % 9).toUtf8();
        const QByteArray actividad = activities[r % 5];
        const QByteArray codigoActividad = QByteArray::number(470000 + r % 9000);
        const quint32 base = next() % 50000000;
        const QByteArray baseText = amount(base).toUtf8();
        const QByteArray alicuota = QByteArray::number(1 + r % 7) + ",5";
        const QByteArray impuesto = amount(base / 40).toUtf8();
        const QByteArray* values[] = {&codigo,   &detalle,  &actividad, &codigoActividad,
                                      &baseText, &alicuota, &impuesto};
        for (int i = 0; i < 7; ++i)
            sqlite3_bind_text(insert, i + 1, values[i]->constData(), int(values[i]->size()),
                              SQLITE_TRANSIENT);
        sqlite3_step(insert);
        sqlite3_reset(insert);
        if (++rows % 20000 == 0) {
            sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
            sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
            if (QFileInfo(DatabasePath()).size() >= kTargetBytes)
                break;
            sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
        }
    }
    sqlite3_finalize(insert);
    EnsureIndices();
    CloseDatabase();
    std::printf("database: %lld detail lines, %.1f MB\n", rows,
                QFileInfo(DatabasePath()).size() / 1048576.0);
}

double timeBackup()
{
    QElapsedTimer t;
    t.start();
    const bool ok = BackupDatabase();
    const double seconds = t.nsecsElapsed() / 1e9;
    if (!ok)
        std::printf("  BackupDatabase failed\n");
    // Only one copy kept, so that the disk does not fill over the runs.
    const QString made = DefaultBackupFolder() + QStringLiteral("/Morvel.") +
                         GetBackupSetting(BackupKey::FechaUlt, QString());
    QFile::remove(made);
    return seconds;
}

double timeArchiver(const QString& archive)
{
    QFile::remove(archive);
    QElapsedTimer t;
    t.start();
    const int code = RunSevenZip({QStringLiteral("a"), QStringLiteral("-tzip"),
                                  QStringLiteral("-mx=1"), archive, DatabasePath()});
    const double seconds = t.nsecsElapsed() / 1e9;
    if (code != 0)
        std::printf("  7za failed (%d)\n", code);
    QFile::remove(archive);
    return seconds;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.filePath("settings"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.filePath("settings"));
    ScriptedUi person;
    setUi(&person);
    SetAppPath(folder.filePath("data"));
    if (SevenZipProgram().isEmpty()) {
        std::printf("7za is not installed\n");
        return 1;
    }

    CreateCurrentDatabase();
    fillDatabase();
    InitBackupSettings();

    const int runs = qMax(1, QString::fromLocal8Bit(argc > 1 ? argv[1] : "1").toInt());
    std::vector<double> backups, archiver;
    for (int i = 0; i < runs; ++i) {
        backups.push_back(timeBackup());
        archiver.push_back(timeArchiver(folder.filePath("plain.zip")));
    }
    const double b = median(backups);
    const double a = median(archiver);
    const QByteArray title =
        QStringLiteral("backup, median of %1 runs (reference: 7za a -tzip -mx=1 of the same file)")
            .arg(runs)
            .toUtf8();
    Bench::printHeader(title.constData(), kGoal);
    Bench::printRatio("BackupDatabase", b, a, kGoal, "s");
    setUi(nullptr);
    return 0;
}
