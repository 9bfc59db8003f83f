#include <QtTest>

#include "TestSupport.h"
#include "output/MontoEnLetras.h"

// The total to pay in words, as the printed forms state it, blanks included.
class TstMontoEnLetras : public QObject
{
    Q_OBJECT

private slots:
    void words_data()
    {
        Columns<double, QString>("amount", "words");
        // The system's own stem for four hundred: "cuatroscientos".
        const std::pair<double, const char*> rows[] = {
            {1.0, "uno"},
            {10.0, "diez"},
            {11.0, "once"},
            {15.0, "quince"},
            {16.0, "dieciseis"},
            {20.0, "veinte "},
            {21.0, "veintiuno"},
            {22.0, "veintidos"},
            {30.0, "treinta "},
            {31.0, "treinta y uno"},
            {45.0, "cuarenta y cinco"},
            {99.0, "noventa y nueve"},
            {100.0, "cien "},
            {101.0, "ciento uno"},
            {315.0, "trescientos quince"},
            {444.0, "cuatroscientos cuarenta y cuatro"},
            {500.0, "quinientos "},
            {820.0, "ochocientos veinte "},
            {999.0, "novecientos noventa y nueve"},
            {1000.0, "un mil "},
            {1001.0, "un mil uno"},
            {1100.0, "un mil cien "},
            {21000.0, "veintiun mil "},
            {31000.0, "treinta y un mil "},
            {100000.0, "cien  mil "},
            {101000.0, "ciento un mil "},
            {121121.0, "ciento veintiun mil ciento veintiuno"},
            {1000000.0, "un millon "},
            {2000000.0, "dos millones "},
            {21000000.0, "veintiun millones "},
            {1234567.0, "un millon doscientos treinta y cuatro mil quinientos sesenta y siete"},
            {0.0, "cero "},
            {0.05, "cero  con 5/100"},
            {1234.5, "un mil doscientos treinta y cuatro con 50/100"},
            {1.999, "uno con 100/100"},
            {999999999.98, "novecientos noventa y nueve millones novecientos noventa y nueve mil "
                           "novecientos noventa y nueve con 98/100"},
            {999999999.99, ""},
            {-21.5, "menos veintiuno con 50/100"}};
        for (const auto& [amount, words] : rows)
            QTest::addRow("%.2f", amount) << amount << QString(words);
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
