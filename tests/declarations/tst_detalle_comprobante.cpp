#include <QtTest>

#include <memory>

#include "DetalleTestData.h"
#include "Person.h"
#include "TestSupport.h"
#include "declarations/F977_Detalle.h"
#include "declarations/F978_Detalle.h"
#include "declarations/F985_Detalle.h"
#include "declarations/F987_Detalle.h"

using namespace DetalleTest;

namespace {

std::unique_ptr<DetalleDialog> Dialogo(const QString& formulario)
{
    if (formulario == QStringLiteral("F977"))
        return std::make_unique<F977_Detalle>();
    if (formulario == QStringLiteral("F978"))
        return std::make_unique<F978_Detalle>();
    if (formulario == QStringLiteral("F985"))
        return std::make_unique<F985_Detalle>();
    return std::make_unique<F987_Detalle>();
}

std::unique_ptr<DetalleDialog> Abrir(const QString& formulario, const QString& id = {},
                                     const QStringList& ultimo = {})
{
    auto d = Dialogo(formulario);
    d->Parametros = Parametros(formulario, id);
    d->EsAgrega = id.isEmpty();
    d->Ultimo = ultimo;
    d->load();
    return d;
}

// The three data every receipt needs; the rest is left to its defaults.
void Minimo(DetalleDialog& d, const QString& fecha = "15-03-2024",
            const QString& cuit = "20123456786")
{
    Person p(d);
    p.type("txtFecha", fecha);
    p.type("txtCuit", cuit);
    p.type("txtImportePercibido", "150");
    p.leave("txtImportePercibido");
}

bool conTipo(const QString& formulario)
{
    return formulario == QStringLiteral("F978") || formulario == QStringLiteral("F987");
}

} // namespace

// The receipt dialogs of the four annexes, driven as a person would.
class TstDetalleComprobante : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
    }
    void cleanup() { env.reset(); }

    void calendar_data()
    {
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<bool>("valida");
        QTest::newRow("29 Feb leap") << "29-02-2024" << true;
        QTest::newRow("29 Feb common") << "29-02-2023" << false;
        QTest::newRow("30 Feb") << "30-02-2024" << false;
        QTest::newRow("31 Apr") << "31-04-2024" << false;
        QTest::newRow("30 Apr") << "30-04-2024" << true;
        QTest::newRow("31 Dec") << "31-12-2023" << true;
        QTest::newRow("day 0") << "00-01-2024" << false;
        QTest::newRow("month 13") << "10-13-2024" << false;
    }
    void calendar()
    {
        QFETCH(QString, fecha);
        QFETCH(bool, valida);
        QCOMPARE(DetalleComprobante::Valida(fecha), valida);
    }

    // The period is March 2024: a later month is refused, an older one passes.
    void dateOnLeaving_data()
    {
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<QString>("titulo");
        QTest::newRow("leap day") << "29-02-2024"
                                  << ""
                                  << "";
        QTest::newRow("last of the period") << "31-03-2024"
                                            << ""
                                            << "";
        QTest::newRow("older year") << "15-12-2019"
                                    << ""
                                    << "";
        QTest::newRow("30 Feb") << "30-02-2024"
                                << "La fecha ingresa es incorrecta."
                                << "Atención...";
        QTest::newRow("31 Apr") << "31-04-2023"
                                << "La fecha ingresa es incorrecta."
                                << "Atención...";
        QTest::newRow("next month") << "01-04-2024"
                                    << "La fecha ingresada no puede ser mayor a la del período en "
                                       "cuestión. Verifique."
                                    << "Mensaje...";
        QTest::newRow("next year") << "01-01-2025"
                                   << "La fecha ingresada no puede ser mayor a la del período en "
                                      "cuestión. Verifique."
                                   << "Mensaje...";
    }
    void dateOnLeaving()
    {
        QFETCH(QString, fecha);
        QFETCH(QString, mensaje);
        QFETCH(QString, titulo);
        auto d = Abrir("F977");
        Person p(*d);
        p.type("txtFecha", fecha);
        QCOMPARE(p.leave("txtFecha"), mensaje.isEmpty());
        if (mensaje.isEmpty()) {
            VERIFY_UI_CLEAN(*env);
            QVERIFY(env->ui().messages().isEmpty());
            return;
        }
        QCOMPARE(env->ui().texts(), QStringList{mensaje});
        QCOMPARE(env->ui().messages().last().title, titulo);
        QCOMPARE(d->focused(), QString("txtFecha"));
    }

    void cuitOnLeaving_data()
    {
        QTest::addColumn<QString>("cuit");
        QTest::addColumn<bool>("aviso");
        QTest::newRow("valid 20") << "20123456786" << false;
        QTest::newRow("valid 27") << "27171717170" << false;
        QTest::newRow("valid 30") << "30712345671" << false;
        QTest::newRow("prefix 24") << "24123456781" << true;
        QTest::newRow("check digit") << "20123456780" << true;
        QTest::newRow("short") << "2012345" << true;
        QTest::newRow("blank") << "" << false;
    }
    void cuitOnLeaving()
    {
        QFETCH(QString, cuit);
        QFETCH(bool, aviso);
        auto d = Abrir("F978");
        Person p(*d);
        p.type("txtCuit", cuit);
        QVERIFY(p.leave("txtCuit")); // a notice: the person goes on
        QCOMPARE(env->ui().texts(),
                 aviso ? QStringList{"Número de CUIT incorrecto"} : QStringList{});
    }

    void requiredData_data()
    {
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<QString>("cuit");
        QTest::addColumn<QString>("importe");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<QString>("foco");
        QTest::newRow("date") << ""
                              << "20123456786"
                              << "1"
                              << "Debe ingresar el dato Fecha"
                              << "txtFecha";
        QTest::newRow("cuit") << "15-03-2024"
                              << ""
                              << "1"
                              << "Debe ingresar el dato Cuit"
                              << "txtCuit";
        QTest::newRow("short cuit") << "15-03-2024"
                                    << "2012345678"
                                    << "1"
                                    << "El CUIT debe tener 11 dígitos."
                                    << "txtCuit";
        QTest::newRow("amount") << "15-03-2024"
                                << "20123456786"
                                << ""
                                << "Debe ingresar el dato Importe Percibido"
                                << "txtImportePercibido";
    }
    void requiredData()
    {
        QFETCH(QString, fecha);
        QFETCH(QString, cuit);
        QFETCH(QString, importe);
        QFETCH(QString, mensaje);
        QFETCH(QString, foco);
        auto d = Abrir("F977");
        Person p(*d);
        p.type("txtFecha", fecha);
        p.type("txtCuit", cuit);
        p.focus("txtDenominacion");
        d->field("txtImportePercibido").setText(importe);
        p.click("cmdAceptar");
        QVERIFY(!d->Aceptado);
        QCOMPARE(env->ui().lastText(), mensaje);
        QCOMPARE(d->focused(), foco);
        QVERIFY(Columna("F977_Detalle", "Id").isEmpty());
    }

    void defaultsOfAnUntypedReceipt_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::newRow("F977") << "F977";
        QTest::newRow("F978") << "F978";
        QTest::newRow("F985") << "F985";
        QTest::newRow("F987") << "F987";
    }
    void defaultsOfAnUntypedReceipt()
    {
        QFETCH(QString, formulario);
        const QString tabla = formulario + "_Detalle";
        auto d = Abrir(formulario);
        Minimo(*d);
        Person(*d).click("cmdAceptar");
        QVERIFY(d->Aceptado);
        QCOMPARE(Columna(tabla, "NroComprobante"), QStringList{"000000000000000"});
        QCOMPARE(Columna(tabla, "Padron"), QStringList{"0000000000000"});
        QCOMPARE(Columna(tabla, "Denominacion"), QStringList{"0"});
        QCOMPARE(Columna(tabla, "TipoComprobante"),
                 QStringList{conTipo(formulario) ? "OTRO - Otros" : ""});
        QCOMPARE(Columna(tabla, "Fecha"), QStringList{"15-03-2024"});
        QCOMPARE(Columna(tabla, "Cuit"), QStringList{"20-12345678-6"});
        QCOMPARE(Columna(tabla, "ImportePercibido"), QStringList{"150,00"});
        QCOMPARE(Columna(tabla, "CodigoDetalle"), QStringList{"0001"});
        QVERIFY(d->Parametros.contains("Codigo=" + kCodigo + ";"));
        VERIFY_UI_CLEAN(*env);
    }

    void numbersArePadded()
    {
        auto d = Abrir("F985");
        Person p(*d);
        p.type("txtNroComprobante", "4711");
        p.type("txtPadron", "1234");
        p.leave("txtPadron");
        QCOMPARE(d->field("txtNroComprobante").text(), QString("000000000004711"));
        QCOMPARE(d->field("txtPadron").text(), QString("0000000001234"));
        p.type("txtNroComprobante", "x");
        QCOMPARE(d->field("txtNroComprobante").text(), QString("000000000004711"));
    }

    void longNameIsCut()
    {
        auto d = Abrir("F977");
        Person p(*d);
        const QString nombre = QString("DISTRIBUIDORA ").repeated(4); // 56 characters
        p.type("txtDenominacion", nombre);
        p.leave("txtDenominacion");
        QCOMPARE(env->ui().texts(),
                 QStringList{"El dato ingresado no puede superar los 50 caracteres. Verifique.-"});
        QCOMPARE(d->field("txtDenominacion").text(), nombre.left(50));
    }

    // The same number twice in a version is refused; on the perception
    // annexes the number repeats under another type.
    void repeatedReceipt_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::addColumn<QString>("tipo2");
        QTest::addColumn<QString>("mensaje");
        QTest::newRow("F977") << "F977"
                              << ""
                              << "La constancia 000000000000123 - ACME SA, ya está dado de alta "
                                 "para este período. Verifique.-";
        QTest::newRow("F985") << "F985"
                              << ""
                              << "La constancia 000000000000123 - ACME SA, ya está dado de alta "
                                 "para este período. Verifique.-";
        QTest::newRow("F978 same type") << "F978"
                                        << "FACA - Factura A"
                                        << "El comprobante 000000000000123 - ACME SA, ya está "
                                           "dado de alta para este período. Verifique.-";
        QTest::newRow("F978 other type") << "F978"
                                         << "FACB - Factura B"
                                         << "";
        QTest::newRow("F987 other type") << "F987"
                                         << "NCRA - Nota de Crédito A"
                                         << "";
    }
    void repeatedReceipt()
    {
        QFETCH(QString, formulario);
        QFETCH(QString, tipo2);
        QFETCH(QString, mensaje);
        for (const QString& tipo : {QString("FACA - Factura A"), tipo2}) {
            auto d = Abrir(formulario);
            Person p(*d);
            if (conTipo(formulario))
                p.choose("cboComprobante", tipo);
            p.type("txtNroComprobante", "123");
            p.type("txtDenominacion", "ACME SA");
            Minimo(*d);
            p.click("cmdAceptar");
            if (!mensaje.isEmpty() && d->Aceptado == false)
                QCOMPARE(d->focused(), QString("txtNroComprobante"));
        }
        const int lineas = int(Columna(formulario + "_Detalle", "Id").size());
        QCOMPARE(lineas, mensaje.isEmpty() ? 2 : 1);
        QCOMPARE(env->ui().texts(), mensaje.isEmpty() ? QStringList{} : QStringList{mensaje});
    }

    void typeListLeavesTheAdjustmentOut()
    {
        auto d = Abrir("F978");
        const Field& f = d->field("cboComprobante");
        QCOMPARE(f.listCount(), 20);
        QCOMPARE(f.itemText(0), QString("FACA - Factura A"));
        for (int i = 0; i < f.listCount(); ++i)
            QVERIFY(!f.itemText(i).startsWith("AJUS"));
        QVERIFY(!Abrir("F977")->hasField("cboComprobante"));
    }

    // A stored line is shown for edit: F987 finds the description of a
    // type kept by its code alone.
    void storedLineIsShown_data()
    {
        QTest::addColumn<QString>("formulario");
        QTest::addColumn<QString>("guardado");
        QTest::addColumn<QString>("mostrado");
        QTest::newRow("F987 code only") << "F987"
                                        << "FACB"
                                        << "FACB - Factura B";
        QTest::newRow("F987 code and text") << "F987"
                                            << "NCRA - Nota de Crédito A"
                                            << "NCRA - Nota de Crédito A";
        QTest::newRow("F978 code and text") << "F978"
                                            << "RECC - Recibo C"
                                            << "RECC - Recibo C";
    }
    void storedLineIsShown()
    {
        QFETCH(QString, formulario);
        QFETCH(QString, guardado);
        QFETCH(QString, mostrado);
        gAccess().Execute(
            QString("INSERT INTO %1_Detalle (Codigo,FechaRectificativa,CodigoDetalle,"
                    "Fecha,TipoComprobante,NroComprobante,Denominacion,Cuit,Padron,"
                    "ImportePercibido,ctrl) VALUES ('%2','0','0001','02-03-2024','%3',"
                    "'000000000000777','Acme Sa','20123456786','0000000000099',"
                    "'1.234,56','0')")
                .arg(formulario, kCodigo, guardado));
        auto d = Abrir(formulario, "0001");
        QCOMPARE(d->field("cboComprobante").text(), mostrado);
        QVERIFY(d->field("cboComprobante").listIndex() >= 0);
        QCOMPARE(d->field("txtCuit").text(), QString("20-12345678-6"));
        QCOMPARE(d->field("txtDenominacion").text(), QString("ACME SA"));
        QCOMPARE(d->field("txtFecha").text(), QString("02-03-2024"));
        Person p(*d);
        p.retype("txtImportePercibido", "99");
        p.click("cmdAceptar");
        QVERIFY(d->Aceptado);
        const QString tabla = formulario + "_Detalle";
        QCOMPARE(Columna(tabla, "CodigoDetalle"), QStringList{"0001"});
        QCOMPARE(Columna(tabla, "ImportePercibido"), QStringList{"99,00"});
        QCOMPARE(Columna(tabla, "TipoComprobante"), QStringList{mostrado});
        VERIFY_UI_CLEAN(*env);
    }

    void recallOfThePreviousReceipt()
    {
        const QStringList ultimo{"0001",    "10-03-2024",    "FACB - Factura B", "000000000000001",
                                 "ACME SA", "20-12345678-6", "0000000000099",    "300,00"};
        auto d = Abrir("F978", {}, ultimo);
        Person p(*d);
        for (const char* name : {"txtFecha", "cboComprobante", "txtDenominacion", "txtCuit",
                                 "txtPadron", "txtImportePercibido"})
            p.key(name, KeyCode::F3);
        QCOMPARE(d->field("txtFecha").text(), QString("10-03-2024"));
        QCOMPARE(d->field("cboComprobante").listIndex(), 1);
        QCOMPARE(d->field("txtDenominacion").text(), QString("ACME SA"));
        QCOMPARE(d->field("txtCuit").text(), QString("20-12345678-6"));
        QCOMPARE(d->field("txtPadron").text(), QString("0000000000099"));
        QCOMPARE(d->field("txtImportePercibido").text(), QString("300,00"));
        QCOMPARE(d->field("txtNroComprobante").text(), QString()); // never recalled
        QCOMPARE(d->focused(), QString("cmdAceptar"));
        VERIFY_UI_CLEAN(*env);
    }

    void amountStartingWithTheSeparator()
    {
        auto d = Abrir("F977");
        Person p(*d);
        p.focus("txtImportePercibido");
        d->field("txtImportePercibido").setText(".75");
        QVERIFY(!p.leave("txtImportePercibido"));
        QCOMPARE(env->ui().lastText(),
                 QString("El dato ingresado es incorrecto. Por favor verifique.-"));
        QCOMPARE(env->ui().messages().last().title, QString("Mensaje"));
        QCOMPARE(d->field("txtImportePercibido").text(), QString("0,00"));
    }
};

QTEST_GUILESS_MAIN(TstDetalleComprobante)
#include "tst_detalle_comprobante.moc"
