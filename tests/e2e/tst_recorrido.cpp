#include <QtTest>

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QProcess>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <functional>

#include "GuiSupport.h"
#include "NavigationData.h"
#include "Person.h"
#include "TestSupport.h"
#include "backup/frmBackup.h"
#include "declarations/FormulariosDDJJ.h"
#include "frame/view/QtUi.h"
#include "frame/view/ViewRegistry.h"
#include "navigation/ZoForms.h"
#include "output/ReportPrinter.h"
#include "output/ZoGenerateDisk.h"
#include "shell/MMain.h"
#include "shell/Principal.h"
#include "shell/view/ShellViews.h"

namespace {

using Campos = QVector<QPair<QString, QString>>;

// --- The taxpayer, its premises and what the tree calls them -------------------

const QString kCuit = QStringLiteral("20-12345678-6");
const QString kNombre = QStringLiteral("MUÑOZ ANA MARIA");
const QString kObjeto = QStringLiteral("0000000000001");
const QString kGeneral = QStringLiteral("0000000001001"); // general regime
const QString kAgente = QStringLiteral("0000000002002");  // retention and perception agent
const QString kHecho = QStringLiteral("La generación se realizó correctamente.");
const QString kRectificativa = QStringLiteral(" (Rectif. N° 1 15-05-2024)");

// Keys of the tree: a premises, its year 2024, its March.
QString local(const QString& padron)
{
    return QStringLiteral("Padrón N° ") + padron + QStringLiteral(" - Objeto N° ") + kObjeto;
}
QString anio(const QString& padron)
{
    return local(padron) + QStringLiteral(";Anio=2024");
}
QString mes(const QString& padron)
{
    return anio(padron) + QStringLiteral(";Periodo=03");
}
// The key of a March declaration's rows: padrón, mmyyyy, objeto and its letter.
QString codigo(const QString& padron, QChar letra)
{
    return padron + QStringLiteral("032024") + kObjeto + letra;
}

// A form's name, as the tree's captions carry it.
QString nombreFormulario(const QString& id)
{
    return Db::column("SELECT Nombre FROM Formularios WHERE idFormulario = '" + id + "'").value(0);
}
QString nuevo(const QString& id)
{
    return QStringLiteral("Nuevo - ") + nombreFormulario(id);
}
QString generado(const QString& id)
{
    return QStringLiteral("Formulario Generado - ") + nombreFormulario(id);
}

// --- What the person types -------------------------------------------------------

struct Local {
    QString padron, grupo, fantasia, calle;
    bool general, retencion, percepcion;
    QStringList actividades; // principal first
};
const Local kLocales[] = {
    {"1001", "A", "CASA CENTRAL", "SAN MARTIN 250", true, false, false, {"101011", "101040"}},
    {"2002", "B", "SUCURSAL NORTE", "BELGRANO 1200", false, true, true, {"101040"}},
};

// A line of the return: the entry of the premises' activity list, base and
// rate typed, and the tax the dialog works out.
struct Actividad {
    int entrada;
    QString base, alicuota, tasa;
};
const Actividad kActividades[] = {{0, "100000", "2,40", "2.400,00"},
                                  {1, "50000", "3,60", "1.800,00"}};

struct Comprobante {
    QString fecha, tipo, numero, denominacion, cuit, padron, importe;
};
// An annex typed receipt by receipt, and its total. The receipts as stored
// are read back in the submission files (step 6).
struct Anexo {
    QString form;
    QVector<Comprobante> comprobantes;
    QString total;
};
const Anexo kF977{"F977",
                  {{"05032024", "", "1234", "ACME SA", "30712345671", "555", "200"},
                   {"20022024", "", "77", "DISTRIBUIDORA NORTE", "27234567891", "", "100"}},
                  "300,00"};
const Anexo kF978{
    "F978",
    {{"12032024", "FACA - Factura A", "4567", "PROVEEDOR SA", "30500000011", "", "180"},
     {"14032024", "NCRA - Nota de Crédito A", "4568", "PROVEEDOR SA", "30500000011", "", "30"}},
    "150,00"};
const Anexo kF985{"F985",
                  {{"02032024", "", "1", "CLIENTE UNO SA", "30712345671", "10", "500"},
                   {"09032024", "", "2", "CLIENTE DOS SRL", "20301112220", "11", "250"}},
                  "750,00"};

// An agent's return: the amounts typed and the amount to deposit they give.
struct Agente {
    QString form;
    Campos montos;
    QString depositar;
};
const Agente kF986{"F986", {{"txtImpPerF985", "750"}, {"txtAccesorioCoef", "10"}}, "760,00"};
const Agente kF988{"F988", {{"txtImpPerF987", "1234,50"}}, "1.234,50"};

// The perceptions as the agent's own system exports them: header, lines of
// date, type, number, customer, CUIT, padrón and amount, and the trailer with
// the count and the total, in which the credit note counts against.
QByteArray archivoF987()
{
    auto linea = [](const char* fecha, const char* tipo, const char* numero, const char* importe) {
        return QByteArray("2@") + fecha + '@' + tipo + '@' + numero + "@KIOSCO EL SOL@" +
               kCuit.toLatin1() + "@12@" + importe + '\n';
    };
    return "1@F987@O@03@2024@" + kCuit.toLatin1() + "@\n" +
           linea("04-03-2024", "FACA", "100", "1000.00") +
           linea("11-03-2024", "FACB", "101", "300.00") +
           linea("18-03-2024", "NCRA", "102", "65.50") + "3@3@1234.50\n";
}

// --- Reading back what the program left ---------------------------------------

// The captions under the node `key` of the taxpayer's tree.
QStringList hijos(Controller& arbol, const QString& key)
{
    return nav::ChildCaptions(arbol["trvDatos"].tree(), key);
}

// The whole tree as the real tree widget on screen shows it: indented
// captions, marked where no icon is drawn.
QStringList esquemaEnPantalla()
{
    Gui::settle();
    auto* tree = Gui::find<QTreeWidget>("trvDatos");
    if (!tree)
        return {"<no tree on screen>"};
    QStringList out;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        out << QString(Gui::depthOf(*it) * 2, u' ') + (*it)->text(0) +
                   ((*it)->icon(0).isNull() ? QStringLiteral(" <no icon>") : QString());
    }
    return out;
}

// A double click of the mouse on the item of the tree on screen that reads
// `caption` under the node `padre` (at the top without one).
void abrirNodo(Controller& arbol, const QString& padre, const QString& caption)
{
    Gui::settle();
    auto* tree = Gui::find<QTreeWidget>("trvDatos");
    QVERIFY(tree);
    const int bajo = padre.isEmpty() ? -1 : arbol["trvDatos"].tree().indexOf(padre);
    QVERIFY2(padre.isEmpty() || bajo >= 0, qPrintable("no node " + padre));
    QTreeWidgetItem* item = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it && !item; ++it)
        if ((*it)->text(0) == caption &&
            ((*it)->parent() ? (*it)->parent()->data(0, Qt::UserRole).toInt() : -1) == bajo)
            item = *it;
    QVERIFY2(item, qPrintable("no node " + caption + " under " + padre));
    Gui::doubleClickItem(tree, item);
}

// The records of a submission file, unzipped by the program's own archiver:
// Windows-1252 lines (no byte of 0x80 to 0x9F here) ended by CR LF.
QStringList registros(const QString& archivo, QString carpeta)
{
    QString member = QStringLiteral("TEMPFILE.DJ");
    if (!ZoGenerateDisk().Expand(archivo, member, carpeta))
        return {QStringLiteral("<not expanded>")};
    const QString text = QString::fromLatin1(ReadBytes(carpeta + u'/' + member));
    if (!text.endsWith(QStringLiteral("\r\n")))
        return {QStringLiteral("<not ended by CR LF>")};
    return text.chopped(2).split(QStringLiteral("\r\n"));
}

// The expected files: name, table and condition of the row, records.
struct ArchivoEsperado {
    QString nombre, tabla, condicion;
    QStringList registros;
};
QVector<ArchivoEsperado> archivosEsperados()
{
    const QString text = QString::fromUtf8(ReadBytes(QFINDTESTDATA("recorrido_archivos.txt")));
    QVector<ArchivoEsperado> out;
    for (const QString& bloque : text.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts)) {
        QStringList lineas = bloque.split(u'\n', Qt::SkipEmptyParts);
        lineas.removeIf([](const QString& l) { return l.startsWith(u'#'); });
        if (!lineas.isEmpty()) {
            const QStringList cabeza = lineas.takeFirst().split(u' ');
            out.append({cabeza.value(0), cabeza.value(1), cabeza.mid(2).join(u' '), lineas});
        }
    }
    return out;
}

// The texts of `buscados` that the printed PDF does not hold.
QStringList ausentes(const QString& pdf, const QStringList& buscados)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
    process.waitForFinished(20000);
    const QString texto = QString::fromUtf8(process.readAllStandardOutput()).simplified();
    QStringList out;
    for (const QString& t : buscados)
        if (!texto.contains(t))
            out << t;
    return out;
}

// --- The person in the dialogs --------------------------------------------------

void llenarLocal(Controller& f, const Local& l)
{
    Person p(f);
    p.type("txtPadron", l.padron);
    p.type("txtObjeto", "1");
    p.type("txtGrupo", l.grupo);
    p.type("txtCategoria", "1");
    p.type("txtRazonSocial", "ferreteria muñoz");
    p.type("txtNombreFantasia", l.fantasia);
    p.check("chkRegimenGeneral", l.general);
    p.check("chkRetencion", l.retencion);
    p.check("chkPercepcion", l.percepcion);
    p.click("SSTabLocalesComerciales", 1);
    p.type("txtIdPrincipal", l.actividades.value(0));
    p.type("txtIdSecundaria1", l.actividades.value(1));
    p.click("SSTabLocalesComerciales", 2);
    p.type("txtCalleNumero", l.calle);
    p.type("txtSuscriptor", "ANA MUÑOZ");
    p.type("txtCaracter", "TITULAR");
    p.click("cmdAceptar");
}

void llenarComprobante(Controller& d, const Comprobante& c)
{
    Person p(d);
    p.type("txtFecha", c.fecha);
    if (!c.tipo.isEmpty())
        p.choose("cboComprobante", c.tipo);
    p.type("txtNroComprobante", c.numero);
    p.type("txtDenominacion", c.denominacion);
    p.type("txtCuit", c.cuit);
    p.type("txtPadron", c.padron);
    p.type("txtImportePercibido", c.importe);
    p.click("cmdAceptar");
}

} // namespace

// One person's month, from an empty data folder to the files taken to the
// office, through the real windows of the program with their views on screen
// (offscreen), driven by their fields and the tree's items by the mouse. The
// steps run in order on one data folder; when one fails, the later ones are
// skipped.
class TstRecorrido : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> m_env;
    PdfFolderPrinter m_impresora;
    QStringList m_mensajes; // what the step is to show the person
    bool m_detenido = false;
    int m_fotos = 0;

    ScriptedUi& persona() { return m_env->ui(); }

    // Runs `guion` on the next window of that name that opens, with its view
    // on screen; with MORVEL_SHOTS set, a picture of the view is kept.
    void alAbrir(const QString& ventana, std::function<void(Controller&)> guion)
    {
        persona().onShow(ventana, [this, guion](Controller& w) {
            QPointer<QWidget> vista = OpenView(w);
            QVERIFY2(vista, qPrintable("no view for " + w.windowName()));
            vista->show();
            Gui::settle();
            QCOMPARE(vista->windowTitle(), w.caption());
            guion(w);
            const QString carpeta = qEnvironmentVariable("MORVEL_SHOTS");
            if (vista && !carpeta.isEmpty() && QDir().mkpath(carpeta))
                vista->grab().save(QStringLiteral("%1/%2_%3.png")
                                       .arg(carpeta)
                                       .arg(++m_fotos, 2, 10, QChar(u'0'))
                                       .arg(w.windowName()));
        });
    }

    // The next window of that name: each "field=text" of `pasos` typed over
    // the field, each other name clicked, in order; the last one closes it.
    void responder(const QString& ventana, const QStringList& pasos)
    {
        alAbrir(ventana, [this, pasos](Controller& w) {
            Person p(w);
            for (const QString& paso : pasos)
                if (paso.contains(u'='))
                    p.retype(paso.section(u'=', 0, 0), paso.section(u'=', 1));
                else
                    p.click(paso);
            QVERIFY2(!w.isShown(), qPrintable(w.windowName() + ": " + persona().lastText()));
        });
    }

    // The program started on the data folder: its splash, then its main window.
    void arrancar()
    {
        alAbrir("Inicial", [](Controller&) {});
        alAbrir("Principal", [](Controller&) {});
        QVERIFY(Main(m_env->dataPath()));
    }

    // The taxpayer's tree, opened from the main window's menu (the first
    // entry of its list unless told); "Salir" closes it after `trabajo`.
    void enElArbol(const std::function<void(Controller&)>& trabajo,
                   const QString& menu = QStringLiteral("mnuListadoContribuyentes"),
                   int entrada = 0)
    {
        bool abierto = false;
        alAbrir("ContribuyentesDatos", [&](Controller& arbol) {
            abierto = true;
            QCOMPARE(arbol.caption(), "Contribuyente: " + kNombre + " - " + kCuit);
            trabajo(arbol);
            if (arbol.isLoaded())
                Person(arbol).click("cmbSalir");
        });
        Person(gPrincipal()).click(menu, entrada);
        QVERIFY2(abierto, "the taxpayer's window did not open from the main menu");
    }

    // "Nuevo Año" 2024 on the premises, then "Nuevo Periodo" 03 on that year.
    void abrirMes(Controller& arbol, const QString& padron)
    {
        responder("NuevoAnio", {"txtAnio=2024", "cmdAceptar"});
        responder("NuevoPeriodo", {"txtPeriodo=03", "cmdAceptar"});
        Person p(arbol);
        p.clickNode("trvDatos", local(padron));
        p.click("cmbNuevoAnio");
        p.clickNode("trvDatos", anio(padron));
        QVERIFY(arbol["cmbNuevoPeriodo"].enabled());
        p.click("cmbNuevoPeriodo");
        QCOMPARE(hijos(arbol, anio(padron)), QStringList{"Periodo: 03"});
    }

    void llenarAnexo(Controller& arbol, const QString& mes, const Anexo& a)
    {
        alAbrir(a.form, [this, a](Controller& f) {
            for (const Comprobante& c : a.comprobantes) {
                alAbrir(a.form + "_Detalle", [c](Controller& d) { llenarComprobante(d, c); });
                Person(f).click("cmdAgregar");
            }
            QCOMPARE(f["gridFormulario"].rowCount(), int(a.comprobantes.size()));
            QCOMPARE(f["txtTotalPercepciones"].text(), a.total);
            Person(f).click("cmdAceptar");
            QVERIFY2(!f.isLoaded(), qPrintable(persona().lastText()));
        });
        abrirNodo(arbol, mes, nuevo(a.form));
        QCOMPARE(Db::count(a.form + "_Detalle"), int(a.comprobantes.size()));
        QCOMPARE(Db::rows("SELECT TotalPercepciones FROM " + a.form), QStringList{a.total});
    }

    void llenarAgente(Controller& arbol, const QString& mes, const Agente& a)
    {
        alAbrir(a.form, [a](Controller& f) {
            Person p(f);
            for (const auto& [campo, monto] : a.montos)
                p.retype(campo, monto);
            p.leave(a.montos.last().first);
            QCOMPARE(f["txtImporteDepositar"].text(), a.depositar);
            p.click("cmdAceptar");
            QVERIFY(!f.isLoaded());
        });
        abrirNodo(arbol, mes, nuevo(a.form));
        QCOMPARE(Db::rows("SELECT ImporteDepositar, Rectificativa, FechaRectificativa, ctrl FROM " +
                          a.form),
                 QStringList{a.depositar + "|False|0|0"});
    }

    // "Generar" of the tree on a month, or of a form: into `destino`, one copy;
    // the final message names the files written.
    void generarEn(const QString& destino, const QStringList& archivos)
    {
        responder("GenerarDisco",
                  {"txtDestino=" + destino, "txtCantidadImpresiones=1", "cmdAceptar"});
        m_mensajes << kHecho + "\n\nArchivos generados en " + destino + ":\n  " +
                          archivos.join("\n  ");
    }

private slots:
    void initTestCase()
    {
        if (SevenZipProgram().isEmpty())
            QSKIP("the archiver 7za is not installed: no submission file can be made");
        // The offscreen platform says at every window that it passes no size
        // hints on: nothing the journey needs to read.
        static const QtMessageHandler previo = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
                if (!text.contains(QStringLiteral("propagateSizeHints")))
                    previo(type, context, text);
            });
        RegisterAllViews();
        RegistrarFormularios();
        m_env = std::make_unique<TestEnv>(); // an empty data folder: no database yet
        m_impresora.setFolder(m_env->path("impresiones"));
        SetReportPrinter(&m_impresora); // before any "Aceptar" that prints
    }

    void init()
    {
        if (m_detenido)
            QSKIP("an earlier step of the journey failed");
        persona().clearMessages();
        m_mensajes.clear();
    }

    void cleanup()
    {
        QCOMPARE(persona().texts(), m_mensajes);
        VERIFY_UI_CLEAN(*m_env);
        m_detenido = m_detenido || QTest::currentTestFailed();
    }

    void cleanupTestCase()
    {
        if (gFrmBackup().isLoaded())
            gFrmBackup().unload();
        if (gPrincipal().isLoaded())
            gPrincipal().unload();
        Gui::settle();
        SetReportPrinter(nullptr);
        ResetForms();
        m_env.reset();
    }

    // Step 1: the first start shows the main window with no taxpayer; "Nuevo"
    // registers one and opens its tree.
    void firstStartAndANewTaxpayer()
    {
        arrancar();
        QCOMPARE(persona().shownWindows(), (QStringList{"Inicial", "Principal"}));
        const Field& lista = gPrincipal()["mnuListadoContribuyentes"];
        QCOMPARE(lista.itemText(0), QString("(Vacio)"));
        alAbrir("Contribuyentes", [](Controller& w) {
            Person p(w);
            p.type("txtCuit", "20123456786");
            p.leave("txtCuit");
            p.type("txtApellidoNombre", "muñoz ana maria");
            p.leave("txtApellidoNombre");
            QCOMPARE(w["txtApellidoNombre"].text(), kNombre);
            p.click("cmdAceptar");
        });
        enElArbol(
            [](Controller&) {
                QCOMPARE(esquemaEnPantalla(),
                         (QStringList{"Modificar datos personales", "Eliminar Contribuyente"}));
            },
            "mnuNuevo", -1);
        QCOMPARE(Db::rows("SELECT idContribuyente, ApellidoNombre, Cuit FROM Contribuyentes"),
                 QStringList{"1|" + kNombre + "|" + kCuit});
        QCOMPARE(lista.itemText(0), "1: " + kNombre + " - " + kCuit);
    }

    // Step 2: through "Modificar datos personales", a premises of the general
    // regime and one of an agent of retention and perception.
    void premisesThroughTheTaxpayersData()
    {
        enElArbol([this](Controller& arbol) {
            alAbrir("Contribuyentes", [this](Controller& c) {
                QVERIFY(!c["txtCuit"].enabled());
                for (const Local& l : kLocales) {
                    alAbrir("frmLocalComercial", [l](Controller& f) { llenarLocal(f, l); });
                    Person(c).click("cmdAgregar");
                }
                QCOMPARE(c["gridLocales"].rowCount(), 2);
                Person(c).choose("cboPadronPrincipal", 1);
                Person(c).click("cmdAceptar");
            });
            abrirNodo(arbol, {}, "Modificar datos personales");
            QCOMPARE(esquemaEnPantalla(),
                     (QStringList{"Modificar datos personales", "Eliminar Contribuyente",
                                  "Padrones Comerciales", "  " + local(kGeneral),
                                  "  " + local(kAgente)}));
        });
        // The rest of each row goes to record 2 of its submission files (step 6).
        QCOMPARE(
            Db::rows("SELECT padron, regimen, retencion, percepcion, Principal, suscriptor "
                     "FROM tPadronesComerciales"),
            (QStringList{kGeneral + "|0|0|0|X|ANA MUÑOZ", kAgente + "|2|1|1|<null>|ANA MUÑOZ"}));
        QCOMPARE(Db::rows("SELECT padron, ActP, ActP_Desc, Act1 FROM Actividades_x_padrones"),
                 (QStringList{kGeneral + "|101011|Matanza de ganado bovino|101040",
                              kAgente + "|101040|Fabricación de fiambres y embutidos|"}));
    }

    // Step 3: the general return with two activity lines, then its annexes,
    // whose totals agree with the retentions and perceptions it declares.
    void generalReturnAndItsAnnexes()
    {
        enElArbol([this](Controller& arbol) {
            abrirMes(arbol, kGeneral);
            alAbrir("F976", [this](Controller& f) {
                for (const Actividad& a : kActividades) {
                    alAbrir("F976_Detalle", [this, a](Controller& d) {
                        alAbrir("Busqueda", [a](Controller& b) {
                            Person(b).choose("lstRegistros", a.entrada);
                            Person(b).dblClick("lstRegistros");
                        });
                        Person p(d);
                        p.click("cmdPrincipal");
                        p.retype("txtBaseImponible", a.base);
                        p.choose("txtAlicuota", a.alicuota);
                        QCOMPARE(d["txtTasa"].text(), a.tasa);
                        p.click("cmdAceptar");
                    });
                    Person(f).click("cmdAgregar");
                }
                QCOMPARE(
                    f["gridFormulario"].rows(),
                    (QVector<QStringList>{{"0001", "101011", "Matanza de ganado bovino",
                                           "100.000,00", "2,40", "2.400,00"},
                                          {"0002", "101040", "Fabricación de fiambres y embutidos",
                                           "50.000,00", "3,60", "1.800,00"}}));
                Person p(f);
                p.retype("txtRetenciones", "300");
                p.retype("txtPercepciones", "150");
                p.leave("txtPercepciones");
                for (const auto& [campo, valor] : Campos{{"txtBaseImponible", "150.000,00"},
                                                         {"txtImpuesto", "4.200,00"},
                                                         {"txtTasa", "4.200,00"},
                                                         {"txtSubtotalDeterminado", "450,00"},
                                                         {"txtSaldo2", "3.750,00"},
                                                         {"txtTotalAPagar", "3.750,00"}})
                    QCOMPARE(f[campo].text(), valor);
                p.click("cmdAceptar");
                QVERIFY(!f.isLoaded());
            });
            abrirNodo(arbol, mes(kGeneral), nuevo("F976"));
            QCOMPARE(hijos(arbol, mes(kGeneral)),
                     (QStringList{generado("F976"), nuevo("F978"), nuevo("F977")}));
            llenarAnexo(arbol, mes(kGeneral), kF977);
            llenarAnexo(arbol, mes(kGeneral), kF978);
            QCOMPARE(hijos(arbol, mes(kGeneral)),
                     (QStringList{generado("F976"), generado("F978"), generado("F977")}));
        });
        QCOMPARE(
            Db::rows("SELECT Codigo, BaseImponible, Impuesto, Tasa, Retenciones, Percepciones, "
                     "SubtotalDeterminado, TotalAPagar, Rectificativa, FechaRectificativa, "
                     "ctrl FROM F976"),
            QStringList{codigo(kGeneral, u'O') +
                        "|150.000,00|4.200,00|4.200,00|300,00|150,00|450,00|3.750,00|False|0|"
                        "0"});
    }

    // Step 4: a rectification "with data" starts from the original's lines;
    // one of them changes, and both versions stay.
    void rectificationWithData()
    {
        enElArbol([this](Controller& arbol) {
            responder("SeleccionFormulario",
                      {"optRectificativaConDatos", "txtFecha=15052024", "cmdAceptar"});
            alAbrir("F976", [this](Controller& f) {
                QCOMPARE(f["optRectificativa"].value(), 1);
                QCOMPARE(f["txtFechaDDJJ"].text(), QString("15-05-2024"));
                QCOMPARE(f["gridFormulario"].rowCount(), 2);
                alAbrir("F976_Detalle", [](Controller& d) {
                    QCOMPARE(d["txtIdActividad"].text(), QString("101040"));
                    Person(d).retype("txtBaseImponible", "60000");
                    Person(d).click("cmdAceptar");
                });
                Person p(f);
                p.clickRow("gridFormulario", 1);
                p.click("cmdModificar");
                for (const auto& [campo, valor] : Campos{{"txtBaseImponible", "160.000,00"},
                                                         {"txtImpuesto", "4.560,00"},
                                                         {"txtTasa", "4.560,00"},
                                                         {"txtRetenciones", "300,00"},
                                                         {"txtTotalAPagar", "4.110,00"}})
                    QCOMPARE(f[campo].text(), valor);
                p.click("cmdAceptar");
                QVERIFY(!f.isLoaded());
            });
            abrirNodo(arbol, mes(kGeneral), generado("F976"));
            QCOMPARE(hijos(arbol, mes(kGeneral)),
                     (QStringList{generado("F976"), generado("F976") + kRectificativa,
                                  generado("F978"), generado("F977")}));
        });
        const QString original = codigo(kGeneral, u'O');
        const QString rectificativa = codigo(kGeneral, u'R');
        QCOMPARE(Db::rows("SELECT Codigo, Rectificativa, FechaRectificativa, ctrl, BaseImponible, "
                          "Impuesto, TotalAPagar FROM F976 ORDER BY ctrl"),
                 (QStringList{original + "|False|0|0|150.000,00|4.200,00|3.750,00",
                              rectificativa + "|Verdadero|15-05-2024|1|160.000,00|4.560,00|"
                                              "4.110,00"}));
        QCOMPARE(Db::rows("SELECT Codigo, FechaRectificativa, ctrl, CodigoDetalle, BaseImponible "
                          "FROM F976_Detalle ORDER BY ctrl, CodigoDetalle"),
                 (QStringList{original + "|0|0|0001|100.000,00", original + "|0|0|0002|50.000,00",
                              rectificativa + "|15-05-2024|1|0001|100.000,00",
                              rectificativa + "|15-05-2024|1|0002|60.000,00"}));
    }

    // Step 5: the agent's four forms; the perceptions come from a file.
    void agentForms()
    {
        QVERIFY(WriteBytes(m_env->path("percepciones_marzo.txt"), archivoF987()));
        persona().setOpenFile(m_env->path("percepciones_marzo.txt"));
        m_mensajes << "Importación terminada: se importaron 3 líneas de percepciones_marzo.txt.";
        enElArbol([this](Controller& arbol) {
            abrirMes(arbol, kAgente);
            QCOMPARE(hijos(arbol, mes(kAgente)),
                     (QStringList{nuevo("F988"), nuevo("F987"), nuevo("F986"), nuevo("F985")}));
            QVERIFY(esquemaEnPantalla().contains("        " + nuevo("F985")));
            llenarAnexo(arbol, mes(kAgente), kF985);
            llenarAgente(arbol, mes(kAgente), kF986);
            alAbrir("F987", [](Controller& f) {
                Person(f).click("cmdImportar");
                QCOMPARE(f["gridFormulario"].rowCount(), 3);
                QCOMPARE(f["txtTotalPercepciones"].text(), QString("1.234,50"));
                Person(f).click("cmdAceptar");
                QVERIFY(!f.isLoaded());
            });
            abrirNodo(arbol, mes(kAgente), nuevo("F987"));
            llenarAgente(arbol, mes(kAgente), kF988);
            QCOMPARE(hijos(arbol, mes(kAgente)), (QStringList{generado("F988"), generado("F987"),
                                                              generado("F986"), generado("F985")}));
        });
        // The types are stored with their description; the file keeps the code.
        QCOMPARE(Db::rows("SELECT TipoComprobante, ImportePercibido FROM F987_Detalle"),
                 (QStringList{"FACA - Factura A|1000,00", "FACB - Factura B|300,00",
                              "NCRA - Nota de Crédito A|65,50"}));
    }

    // Step 6: each month generated from the tree into a folder with one copy
    // printed; the files record by record, and the paper. Then the return
    // generated from its own "Generar".
    void generateBothMonths()
    {
        const QString destino = m_env->path("disquete");
        QVERIFY(QDir().mkpath(destino));
        m_impresora.clear();
        enElArbol([&](Controller& arbol) {
            for (const QString& padron : {kGeneral, kAgente}) {
                generarEn(destino, padron == kGeneral
                                       ? QStringList{"09760324.DJ", "09780324.DJ", "09770324.DJ"}
                                       : QStringList{"09880324.DJ", "09870324.DJ", "09860324.DJ",
                                                     "09850324.DJ"});
                Person(arbol).clickNode("trvDatos", mes(padron));
                QVERIFY(arbol["cmbGenerar"].enabled());
                Person(arbol).click("cmbGenerar");
            }
        });
        QCOMPARE(QDir(destino).entryList({"*.DJ"}, QDir::Files, QDir::Name),
                 (QStringList{"09760324.DJ", "09770324.DJ", "09780324.DJ", "09850324.DJ",
                              "09860324.DJ", "09870324.DJ", "09880324.DJ"}));
        QHash<QString, QString> guids; // by form
        const QVector<ArchivoEsperado> esperados = archivosEsperados();
        QCOMPARE(esperados.size(), 7);
        for (const ArchivoEsperado& e : esperados) {
            const QString guid =
                Db::column("SELECT Guidv FROM " + e.tabla + " WHERE " + e.condicion).value(0);
            QVERIFY2(QRegularExpression("^[0-9A-F]{12}$").match(guid).hasMatch(),
                     qPrintable(e.nombre + " Guidv: " + guid));
            QCOMPARE(registros(destino + "/" + e.nombre, m_env->path("abierto/" + e.nombre)),
                     e.registros.join(u'\n').replace("{guid}", guid).split(u'\n'));
            guids.insert(e.tabla, guid);
        }

        // One printing per declaration, in the tree's order, each with its
        // lines although the tree's keys name no Codigo.
        QStringList impresos;
        for (const QString& f : m_impresora.files())
            impresos << QFileInfo(f).fileName().section(u'_', 0, 0);
        QCOMPARE(impresos,
                 (QStringList{"F976", "F976", "F978", "F977", "F988", "F987", "F986", "F985"}));
        const bool lee = !QStandardPaths::findExecutable("pdftotext").isEmpty();
        const QString razon = QStringLiteral("FERRETERIA MUÑOZ");
        const struct {
            const char* form;
            QStringList textos; // of the header, and of the lines read through the row code
        } papeles[] = {
            {"F976", {razon, "4.110,00", "60.000,00", guids["F976"]}},
            {"F977", {kCuit, guids["F977"], razon, "ACME SA", "300,00"}},
            {"F978", {kCuit, guids["F978"], razon, "PROVEEDOR SA", "150,00"}},
            {"F985", {kCuit, guids["F985"], razon, "CLIENTE DOS SRL", "750,00"}},
            {"F986", {kNombre, "750,00", "760,00", "setecientos sesenta", guids["F986"]}},
            {"F987", {kCuit, guids["F987"], razon, "KIOSCO EL SOL", "1.234,50"}},
            {"F988", {kNombre, "1.234,50", "un mil doscientos treinta", guids["F988"]}},
        };
        for (int i = 0; lee && i < int(std::size(papeles)); ++i) {
            const QString pdf = m_impresora.files().value(impresos.lastIndexOf(papeles[i].form));
            QCOMPARE(ausentes(pdf, papeles[i].textos), QStringList());
        }

        // The return's own "Generar" hands on a string with its Codigo: the
        // rectification prints whole, and its file comes out the same.
        m_impresora.clear();
        QVERIFY(QFile::remove(destino + "/09760324.DJ"));
        enElArbol([&](Controller& arbol) {
            responder("SeleccionFormulario", {"cmdAceptar"});
            alAbrir("F976", [&](Controller& f) {
                generarEn(destino, {"09760324.DJ"});
                Person(f).click("cmdGenerar");
                Person(f).click("cmdCancelar");
                QVERIFY(!f.isLoaded());
            });
            abrirNodo(arbol, mes(kGeneral), generado("F976") + kRectificativa);
        });
        QCOMPARE(
            registros(destino + "/09760324.DJ", m_env->path("de_nuevo")),
            esperados.first().registros.join(u'\n').replace("{guid}", guids["F976"]).split(u'\n'));
        QCOMPARE(m_impresora.files().size(), 1);
        if (!lee)
            QSKIP("pdftotext is not installed: the printed text was not read back");
        QCOMPARE(ausentes(m_impresora.files().value(0), {razon, kCuit, "Matanza de ganado bovino",
                                                         "60.000,00", "4.110,00", guids["F976"]}),
                 QStringList());
    }

    // Step 7: a copy made by hand; F988 deleted; the copy restored brings it
    // back, and the next start shows it in the tree.
    void backupDeleteAndRestore()
    {
        QString copia;
        alAbrir("frmBackup", [&](Controller& b) {
            Person(b).click("cmdBackupManual");
            copia = b["lblFecha"].text();
            Person(b).click("cmdAceptar");
        });
        Person(gPrincipal()).click("mnuCopiaSeguridad");
        QVERIFY2(QRegularExpression(R"(^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d$)").match(copia).hasMatch(),
                 qPrintable(copia));
        // the copy made by hand says where it went and its size
        const QString hecha = persona().texts().value(0);
        QVERIFY2(QRegularExpression(R"(^Copia de seguridad realizada en\n.*/BDBKUP/Morvel\.\d{14}\n)"
                                    R"(Tamaño: \d+,\d+ Mb\.$)")
                     .match(hecha)
                     .hasMatch(),
                 qPrintable(hecha));

        m_mensajes = QStringList{hecha,
                                 "Esta seguro de eliminar el formulario?\nFormulario F988 del "
                                 "período 03-2024, original - Padrón " +
                                     kAgente + " Objeto " + kObjeto,
                                 "¿Desea buscar la ubicación de los archivos de copia de "
                                 "seguridad en la PC?",
                                 "Esta acción restaurará la base de datos. Sus datos actuales se "
                                 "perderán.\n¿Desea continuar?",
                                 "La restauración se realizó correctamente. Se cerrará la "
                                 "aplicación."};
        persona().answer(m_mensajes[1], Msg::Yes);
        const QStringList conF988{generado("F988"), generado("F987"), generado("F986"),
                                  generado("F985")};
        enElArbol([&](Controller& arbol) {
            responder("SeleccionFormulario", {"optEliminar", "cmdAceptar"});
            abrirNodo(arbol, mes(kAgente), generado("F988"));
            QCOMPARE(hijos(arbol, mes(kAgente)), conF988.mid(1) + QStringList{nuevo("F988")});
        });
        QCOMPARE(Db::count("F988"), 0);

        // The start of the program made a copy too: the one made by hand is
        // chosen by its time.
        persona().answer(m_mensajes[2], Msg::No);
        persona().answer(m_mensajes[3], Msg::Yes);
        alAbrir("frmBackup", [&](Controller& b) {
            alAbrir("frmBackupArchivos", [&](Controller& a) {
                Person(a).choose("lst0", "Copia del día " + copia.replace(' ', " a hs. "));
                QVERIFY(a["lst0"].listIndex() >= 0);
                Person(a).click("cmdAccion");
            });
            Person(b).click("cmdRestaurar");
            if (b.isLoaded())
                b.unload(); // the program ends, and its windows with it
        });
        Person(gPrincipal()).click("mnuCopiaSeguridad");
        QVERIFY(persona().programEnded());
        QVERIFY(!gPrincipal().isLoaded());
        QCOMPARE(Db::rows("SELECT ImpPercibidoF987, ImporteDepositar FROM F988"),
                 QStringList{"1.234,50|1.234,50"});

        arrancar();
        enElArbol([&](Controller& arbol) { QCOMPARE(hijos(arbol, mes(kAgente)), conF988); });
    }
};

QTEST_MAIN(TstRecorrido)
#include "tst_recorrido.moc"
