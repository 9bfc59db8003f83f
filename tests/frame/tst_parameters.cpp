#include <QtTest>

#include "TestSupport.h"
#include "DatabaseLocation.h"
#include "Tovak.h"
#include "ZoParameterString.h"

// Parameter strings are read and patched by position; these cases pin the
// loose rules the screens rely on, for the free routines and the class alike.
class TstParameters : public QObject
{
    Q_OBJECT
private slots:
    void read_data()
    {
        Columns<QString, QString, QString>("parameters", "key", "value");
        Row("semicolon supplied, case ignored", "Padron=A;Anio=2010", "anio", "2010");
        Row("empty value", "Codigo=;ctrl=3;", "Codigo", "");
        Row("order matters: Rectificativa first", "Rectificativa=Falso;FechaRectificativa=0;",
            "Rectificativa", "Falso");
        Row("order matters: found inside FechaRectificativa",
            "FechaRectificativa=0;Rectificativa=Falso;", "Rectificativa", "0");
        Row("value holding =", "a=b=c;", "a", "b=c");
        Row("missing key", "a=1;b=2;", "z", "");
        Row("empty string", "", "a", "");
        Row("one character", "a", "a", "");
        Row("first of duplicates", "Codigo=X;Codigo=Y;", "Codigo", "X");
        Row("last-but-one is ; so none added", "a=1;b", "a", "1");
        Row("no = before the ; fails", "a;b=2;", "a", "");
        Row("no = at all reads to the ;", "abc;def", "b", "abc");
        Row("Padron with Objeto", "Padron=0000000000123 - Objeto N° 0000000000456;Anio=2015;",
            "Padron", "0000000000123 - Objeto N° 0000000000456");
        Row("Nuevo found inside DetalleNuevo", "DetalleNuevo=Verdadero;Nuevo=Falso;", "Nuevo",
            "Verdadero");
    }
    void read()
    {
        QFETCH(QString, parameters);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QCOMPARE(ReadParameter(parameters, key), value);
        QCOMPARE(ZoParameterString().ReadValue(parameters, key), value);
    }

    void set_data()
    {
        Columns<QString, QString, QString, QString>("parameters", "key", "value", "result");
        Row("replace and end with ;", "a=1;b=2", "b", "9", "a=1;b=9;");
        Row("missing key not added", "a=1;", "z", "9", "a=1;");
        Row("to empty", "ctrl=0", "ctrl", "", "ctrl=;");
        Row("first of duplicates", "Codigo=;x=1;Codigo=;", "Codigo", "K", "Codigo=K;x=1;Codigo=;");
        Row("empty string", "", "a", "1", ";");
        Row("malformed entry unchanged", "a;b=2;", "a", "9", "a;b=2;");
        Row("case ignored", "Anio=2010;", "anio", "2011", "Anio=2011;");
    }
    void set()
    {
        QFETCH(QString, parameters);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, result);
        QCOMPARE(SetParameter(parameters, key, value), result);
        QCOMPARE(ZoParameterString().SetValue(parameters, key, value), result);
    }

    void positionsBeyondShortRangeFail()
    {
        const QString filler(33000, QChar(u'x'));
        const QString s = QStringLiteral("a=1;") + filler + QStringLiteral(";b=2;");
        QCOMPARE(ReadParameter(s, "a"), QString("1"));
        QCOMPARE(ReadParameter(s, "b"), QString());
        QCOMPARE(SetParameter(s, "b", "3"), s);
    }

    // A server's connection text reads back as the location it came from,
    // whatever the values hold (spaces, quotes, backslashes, a socket folder).
    void serverLocationRoundTrip_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("user");
        QTest::newRow("plain") << "servidor" << 5432 << "morvel" << "estudio";
        QTest::newRow("socket folder") << "/tmp/pg sock" << 55432 << "Morvel" << "";
        QTest::newRow("quotes") << "srv" << 1 << "O'Higgins" << R"(a\b'c)";
    }
    void serverLocationRoundTrip()
    {
        QFETCH(QString, host);
        QFETCH(int, port);
        QFETCH(QString, database);
        QFETCH(QString, user);
        DatabaseLocation location;
        location.kind = DatabaseLocation::Kind::Server;
        location.host = host;
        location.port = port;
        location.database = database;
        location.user = user;
        QCOMPARE(DatabaseLocation::fromConnectionInfo(location.connectionInfo()), location);
    }

    void locationKeptInSettings()
    {
        TestEnv env; // settings kept in its own folder
        QVERIFY(!DatabaseLocation::current().isServer());
        const DatabaseLocation server =
            DatabaseLocation::fromConnectionInfo(QStringLiteral("host=srv port=6000 dbname=firma user=ana"));
        DatabaseLocation::setCurrent(server);
        QCOMPARE(DatabaseLocation::current(), server);
        DatabaseLocation::setCurrent(DatabaseLocation());
        QVERIFY(!DatabaseLocation::current().isServer());
    }
};

QTEST_GUILESS_MAIN(TstParameters)
#include "tst_parameters.moc"
