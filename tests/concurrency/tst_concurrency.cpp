#include <QProcess>
#include <QSet>
#include <QtTest>
#include <memory>

#include "ConcurrencyData.h"
#include "Db.h"
#include "Seed.h"
#include "TestSupport.h"

using namespace Concurrency;

// Eight workstations at once on one server database, on the same few
// taxpayers: each adds lines to the same returns, starts returns and
// rectifies them, and adds taxpayers, for a minute (MORVEL_CONCURRENCY_SECONDS
// for a shorter run). Afterwards no key is held twice, everything a
// workstation was told it stored is there, and none of them failed or hung.
class TstConcurrency : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestEnv> m_env;
    QStringList m_ledger; // every client's records
    QStringList m_clientFaults;
    double m_seconds = 60;

    static double seconds()
    {
        bool ok = false;
        const double s = qEnvironmentVariable("MORVEL_CONCURRENCY_SECONDS").toDouble(&ok);
        return ok && s > 0 ? s : 60;
    }

    static void seedTaxpayers()
    {
        for (int n = 1; n <= kTaxpayers; ++n) {
            const QString cuit = QStringLiteral("2000000000%1").arg(n);
            Seed::AddTaxpayer(n, QStringLiteral("CONTRIBUYENTE %1").arg(n), cuit);
            Seed::AddPremises(QString::number(100 + n), QStringLiteral("1"),
                              {"idContribuyente=" + QString::number(n), "cuit=" + cuit,
                               "retencion=0", "percepcion=0"});
            Seed::AddDeclaration(
                Seed::Declaration(kForm, kSharedPeriod, 0, "0", QString::number(100 + n), "1"));
        }
    }

    // Starts the clients together and waits for them, allowing a generous
    // margin over their time before calling one hung.
    void runClients()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("MORVEL_DATABASE_SERVER"),
                           qEnvironmentVariable("MORVEL_DATABASE_SERVER"));
        environment.remove(QStringLiteral("MORVEL_TEST_BACKEND"));
        std::vector<std::unique_ptr<QProcess>> clients;
        for (int i = 1; i <= kClients; ++i) {
            auto client = std::make_unique<QProcess>();
            client->setProcessEnvironment(environment);
            client->setProcessChannelMode(QProcess::MergedChannels);
            client->start(QStringLiteral(MORVEL_CONCURRENCY_CLIENT),
                          {QString::number(i), QString::number(m_seconds), ledgerPath(i)});
            clients.push_back(std::move(client));
        }
        QDeadlineTimer hang(qint64(m_seconds * 1000) + 120000);
        for (int i = 1; i <= kClients; ++i) {
            QProcess& client = *clients[size_t(i - 1)];
            const bool ended = client.waitForFinished(int(qMax<qint64>(1, hang.remainingTime())));
            if (!ended) {
                m_clientFaults << QStringLiteral("client %1 hung").arg(i);
                client.kill();
                client.waitForFinished();
            } else if (client.exitStatus() != QProcess::NormalExit || client.exitCode() != 0) {
                m_clientFaults << QStringLiteral("client %1 ended with %2: %3")
                                      .arg(i)
                                      .arg(client.exitCode())
                                      .arg(QString::fromUtf8(client.readAll()).right(2000));
            }
            const QStringList records =
                QString::fromUtf8(ReadBytes(ledgerPath(i))).split(u'\n', Qt::SkipEmptyParts);
            for (const QString& r : records)
                if (r.startsWith(u'F'))
                    m_clientFaults << QStringLiteral("client %1: %2").arg(i).arg(r);
            m_ledger << records;
        }
    }

    QString ledgerPath(int client) const
    {
        return m_env->path(QStringLiteral("ledger_%1.txt").arg(client));
    }

    // The records of one kind, without their kind.
    QStringList records(QChar kind) const
    {
        QStringList out;
        for (const QString& r : m_ledger)
            if (r.startsWith(kind) && r.size() > 1 && r.at(1) == u'|')
                out << r.mid(2);
        return out;
    }

private slots:
    void initTestCase()
    {
        if (!TestEnv::onServer())
            QSKIP("several workstations share a database on a server only");
        m_seconds = seconds();
        m_env = std::make_unique<TestEnv>();
        m_env->createDatabase();
        seedTaxpayers();
        runClients();
    }

    void cleanupTestCase()
    {
        if (!m_env)
            return;
        qInfo().noquote() << QStringLiteral(
                                 "%1 clients, %2 s: %3 lines, %4 declarations, %5 "
                                 "rectifications (%6 under the next number), %7 taxpayers; "
                                 "%8 openings found held by another workstation, %9 steps the "
                                 "rules refused; %10 lines stored in all")
                                 .arg(kClients)
                                 .arg(m_seconds)
                                 .arg(records(u'L').size())
                                 .arg(records(u'D').size())
                                 .arg(records(u'R').size())
                                 .arg(records(u'N').size())
                                 .arg(records(u'T').size())
                                 .arg(records(u'H').size())
                                 .arg(records(u'S').size())
                                 .arg(Db::count(kDetail));
        m_env.reset();
    }

    void noClientFailedNorHung()
    {
        QVERIFY2(m_clientFaults.isEmpty(), qPrintable(m_clientFaults.join(u'\n')));
        // Each kind of step happened, or the run proved nothing.
        for (const QChar kind : {u'L', u'D', u'R', u'T'})
            QVERIFY2(!records(kind).isEmpty(), qPrintable(QStringLiteral("no record ") + kind));
    }

    void noKeyTwice_data()
    {
        Columns<QString>("sql");
        Row("a line number within a version",
            QStringLiteral("SELECT Codigo, FechaRectificativa, ctrl, CodigoDetalle FROM "
                           "F976_Detalle GROUP BY Codigo, FechaRectificativa, ctrl, CodigoDetalle "
                           "HAVING COUNT(*) > 1"));
        Row("a version number within a declaration",
            QStringLiteral("SELECT Padron, Objeto, Periodo, ctrl FROM F976 GROUP BY Padron, "
                           "Objeto, Periodo, ctrl HAVING COUNT(*) > 1"));
        Row("a registration of a version",
            QStringLiteral("SELECT Padron, Objeto, Periodo, idFormulario, ctrl FROM "
                           "TPadrones_Formularios GROUP BY Padron, Objeto, Periodo, idFormulario, "
                           "ctrl HAVING COUNT(*) > 1"));
        Row("a taxpayer's id",
            QStringLiteral("SELECT idContribuyente FROM Contribuyentes GROUP BY idContribuyente "
                           "HAVING COUNT(*) > 1"));
    }
    void noKeyTwice()
    {
        QFETCH(QString, sql);
        const QStringList twice = Db::rows(sql);
        QVERIFY2(twice.isEmpty(), qPrintable(QString::number(twice.size()) + " held twice:\n" +
                                             twice.mid(0, 20).join(u'\n')));
    }

    // A version that took the next number took its lines with it.
    void everyVersionHasItsLines()
    {
        QCOMPARE(Db::rows("SELECT f.Padron, f.Periodo, f.ctrl FROM F976 f WHERE NOT EXISTS "
                          "(SELECT 1 FROM F976_Detalle d WHERE d.Codigo = f.Codigo AND "
                          "d.FechaRectificativa = f.FechaRectificativa AND d.ctrl = f.ctrl)"),
                 QStringList());
    }

    void nothingStoredIsLost_data()
    {
        // kind: the ledger's records; sql: what is stored, in the records' shape
        Columns<QString, QString>("kind", "sql");
        Row("lines", QStringLiteral("L"),
            QStringLiteral("SELECT Codigo & '|' & FechaRectificativa & '|' & CodigoActividad FROM "
                           "F976_Detalle"));
        Row("new declarations", QStringLiteral("D"),
            QStringLiteral("SELECT Padron & '|' & Periodo & '|' & ctrl FROM F976"));
        Row("rectifications", QStringLiteral("R"),
            QStringLiteral("SELECT Padron & '|' & Periodo & '|' & ctrl FROM F976"));
        Row("taxpayers", QStringLiteral("T"),
            QStringLiteral("SELECT idContribuyente & '|' & Cuit FROM Contribuyentes"));
    }
    void nothingStoredIsLost()
    {
        const auto [kind, sql] = Fetch<QString, QString>("kind", "sql");
        const QStringList stored = Db::column(sql);
        const QSet<QString> there(stored.begin(), stored.end());
        QStringList lost;
        for (const QString& r : records(kind.at(0)))
            if (!there.contains(r))
                lost << r;
        QVERIFY2(lost.isEmpty(), qPrintable(QString::number(lost.size()) +
                                            " lost: " + lost.mid(0, 20).join(u'\n')));
    }
};

QTEST_GUILESS_MAIN(TstConcurrency)
#include "tst_concurrency.moc"
