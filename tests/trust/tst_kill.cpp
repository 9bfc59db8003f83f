#include <QtTest>

#include <QProcess>
#include <QRandomGenerator>

#include "Db.h"
#include "Globals.h"
#include "TestSupport.h"
#include "TrustJournal.h"
#include "ZoAccess.h"
#include "backup/Backup.h"
#include "shell/MMain.h"
#include "shell/Principal.h"

namespace {

// Lines per declaration code, read from the detail table: "code|lines".
QHash<QString, int> linesByCode(const QString& table)
{
    QHash<QString, int> out;
    for (const QString& row :
         Db::rows(QStringLiteral("SELECT Codigo, Count(*) FROM %1_Detalle GROUP BY Codigo")
                      .arg(table))) {
        const QStringList cells = row.split(u'|');
        out.insert(cells.value(0), cells.value(1).toInt());
    }
    return out;
}

QHash<QString, int> headersByCode(const QString& table)
{
    QHash<QString, int> out;
    for (const QString& row :
         Db::rows(QStringLiteral("SELECT Codigo, Count(*) FROM %1 GROUP BY Codigo").arg(table))) {
        const QStringList cells = row.split(u'|');
        out.insert(cells.value(0), cells.value(1).toInt());
    }
    return out;
}

int workLeft()
{
    return int(QDir(gAppPath + QStringLiteral("/tmp"))
                   .entryList({QStringLiteral("copia-*"), QStringLiteral("restaura-*")},
                              QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot)
                   .size());
}

} // namespace

// The program killed at any moment (SIGKILL: no handler runs, as when the
// power goes) while it saves, imports, backs up, compacts or restores: after
// each kill the database passes its integrity check, holds every declaration
// that was reported committed with all its lines, and the program starts on
// it, clearing what the interrupted work left.
class TstKill : public EnvTest
{
    Q_OBJECT

    void tearDown() override
    {
        if (gPrincipal().isLoaded())
            gPrincipal().unload();
    }

private slots:
    void killedAtRandomMomentsLosesNothing()
    {
        const int kills = qMax(45, qEnvironmentVariableIntValue("MORVEL_KILLS"));
        const quint32 seed = qEnvironmentVariableIsSet("MORVEL_KILL_SEED")
                                 ? quint32(qEnvironmentVariableIntValue("MORVEL_KILL_SEED"))
                                 : QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        // The start's own backup is not due: the checks below stay short.
        InitBackupSettings();
        SaveBackupSetting(BackupKey::FechaUlt,
                          QDateTime::currentDateTime().toString("yyyyMMddHHmmss"));
        CloseDatabase();
        const QString journal = env->path("diario.txt");

        int intact = 0, started = 0, leftovers = 0;
        QSet<QString> lost; // each declaration counted once, whenever it went missing
        QMap<QString, int> byStep;
        for (int kill = 1; kill <= kills; ++kill) {
            QProcess driver;
            driver.setProcessChannelMode(QProcess::ForwardedChannels);
            driver.start(QStringLiteral(MORVEL_TRUST_DRIVER),
                         {env->dataPath(), env->path("settings"), journal, QString::number(kill)});
            QVERIFY(driver.waitForStarted());
            QVERIFY2(!driver.waitForFinished(random.bounded(150, 1100)),
                     "the driver stopped by itself");
            driver.kill();
            QVERIFY(driver.waitForFinished());
            ++byStep[TrustJournal::lastStep(journal)];
            leftovers += workLeft();

            started += Main(env->dataPath()) && gPrincipal().isLoaded() ? 1 : 0;
            gPrincipal().unload();
            QCOMPARE(workLeft(), 0);
            intact += gAccess().GetString("PRAGMA integrity_check") == "ok" ? 1 : 0;
            QHash<QString, QHash<QString, int>> lines, headers;
            for (const TrustJournal::Committed& c : TrustJournal::committed(journal)) {
                if (!lines.contains(c.table)) {
                    lines.insert(c.table, linesByCode(c.table));
                    headers.insert(c.table, headersByCode(c.table));
                }
                if (headers[c.table].value(c.code) != 1 || lines[c.table].value(c.code) != c.lines)
                    lost.insert(c.code);
            }
            CloseDatabase();
        }

        QStringList steps;
        for (auto it = byStep.cbegin(); it != byStep.cend(); ++it)
            steps << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
        const int committed = int(TrustJournal::committed(journal).size());
        qInfo().noquote() << QStringLiteral("seed %1; kills: %2 (during %3); intact databases: %4; "
                                            "starts: %5; declarations committed: %6, lost: %7; "
                                            "interrupted work folders removed at start: %8")
                                 .arg(seed)
                                 .arg(kills)
                                 .arg(steps.join(QStringLiteral(", ")))
                                 .arg(intact)
                                 .arg(started)
                                 .arg(committed)
                                 .arg(lost.size())
                                 .arg(leftovers);
        QCOMPARE(intact, kills);
        QCOMPARE(started, kills);
        QCOMPARE(lost.size(), 0);
        QVERIFY(committed > kills);
    }
};

QTEST_GUILESS_MAIN(TstKill)
#include "tst_kill.moc"
