#include <QtTest>

#include "output/MontoEnLetras.h"

// The total to pay in words, as the printed forms state it, blanks included.
class TstMontoEnLetras : public QObject
{
    Q_OBJECT

private slots:
    void words_data()
    {
        QTest::addColumn<double>("amount");
        QTest::addColumn<QString>("words");
        // clang-format off
        QTest::newRow("1") << 1.0 << "uno";
        QTest::newRow("10") << 10.0 << "diez";
        QTest::newRow("11") << 11.0 << "once";
        QTest::newRow("15") << 15.0 << "quince";
        QTest::newRow("16") << 16.0 << "dieciseis";
        QTest::newRow("20") << 20.0 << "veinte ";
        QTest::newRow("21") << 21.0 << "veintiuno";
        QTest::newRow("22") << 22.0 << "veintidos";
        QTest::newRow("30") << 30.0 << "treinta ";
        QTest::newRow("31") << 31.0 << "treinta y uno";
        QTest::newRow("45") << 45.0 << "cuarenta y cinco";
        QTest::newRow("99") << 99.0 << "noventa y nueve";
        QTest::newRow("100") << 100.0 << "cien ";
        QTest::newRow("101") << 101.0 << "ciento uno";
        QTest::newRow("315") << 315.0 << "trescientos quince";
        // The system's own stem for four hundred.
        QTest::newRow("444") << 444.0 << "cuatroscientos cuarenta y cuatro";
        QTest::newRow("500") << 500.0 << "quinientos ";
        QTest::newRow("820") << 820.0 << "ochocientos veinte ";
        QTest::newRow("999") << 999.0 << "novecientos noventa y nueve";
        QTest::newRow("1000") << 1000.0 << "un mil ";
        QTest::newRow("1001") << 1001.0 << "un mil uno";
        QTest::newRow("1100") << 1100.0 << "un mil cien ";
        QTest::newRow("21000") << 21000.0 << "veintiun mil ";
        QTest::newRow("31000") << 31000.0 << "treinta y un mil ";
        QTest::newRow("100000") << 100000.0 << "cien  mil ";
        QTest::newRow("101000") << 101000.0 << "ciento un mil ";
        QTest::newRow("121121") << 121121.0 << "ciento veintiun mil ciento veintiuno";
        QTest::newRow("1000000") << 1000000.0 << "un millon ";
        QTest::newRow("2000000") << 2000000.0 << "dos millones ";
        QTest::newRow("21000000") << 21000000.0 << "veintiun millones ";
        QTest::newRow("1234567") << 1234567.0
            << "un millon doscientos treinta y cuatro mil quinientos sesenta y siete";
        QTest::newRow("0") << 0.0 << "cero ";
        QTest::newRow("0.05") << 0.05 << "cero  con 5/100";
        QTest::newRow("1234.5") << 1234.5 << "un mil doscientos treinta y cuatro con 50/100";
        QTest::newRow("1.999") << 1.999 << "uno con 100/100";
        QTest::newRow("999999999.98") << 999999999.98
            << "novecientos noventa y nueve millones novecientos noventa y nueve mil "
               "novecientos noventa y nueve con 98/100";
        QTest::newRow("999999999.99") << 999999999.99 << "";
        QTest::newRow("negative") << -21.5 << "menos veintiuno con 50/100";
        // clang-format on
    }
    void words()
    {
        QFETCH(double, amount);
        QFETCH(QString, words);
        const double before = amount;
        QCOMPARE(MontoEnLetras(amount), words);
        QCOMPARE(amount, before);
    }
};

QTEST_GUILESS_MAIN(TstMontoEnLetras)
#include "tst_montoenletras.moc"
