// Draws every window of the manual offscreen, over a sample taxpayer, and
// saves each as {window}.png, so that the manual's pictures follow the program
// when it changes. The windows are driven as a person would: the forms are
// opened by a double click on the taxpayer's tree, their lines by "Modificar".
//
// Usage: morvel_screens <output folder>
//        morvel_screens --readme <folder>   (the two pictures of the README)
//        morvel_screens --pantalla <folder> (on a display with a window manager:
//                                            the whole screen, each window placed
//                                            as the program places it)
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

#include "Globals.h"
#include "shell/view/ShellViews.h"
#include "frame/view/SpanishTranslations.h"
#include "frame/view/HelpViewer.h"
#include "HelpPages.h"
#include "shell/Inicial.h"
#include "shell/MMain.h"
#include "Person.h"
#include "shell/Principal.h"
#include "SampleData.h"
#include "ShotPort.h"
#include "backup/Backup.h"
#include "backup/frmBackup.h"
#include "backup/frmBackupArchivos.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/ControlMensual.h"
#include "desk/EscritorioMensual.h"
#include "desk/GenerarLote.h"
#include "frame/view/ViewRegistry.h"
#include "shell/frmAbout.h"
#include "shell/frmBaseDatos.h"
#include "navigation/ContribuyentesDatos.h"
#include "navigation/CopiarDDJJ.h"
#include "navigation/DeclarationForm.h"
#include "navigation/NuevoAnio.h"
#include "navigation/NuevoPeriodo.h"
#include "navigation/SeleccionFormulario.h"
#include "output/GenerarDisco.h"
#include "registry/Busqueda.h"
#include "registry/Contribuyentes.h"
#include "registry/frmLocalComercial.h"

using namespace SampleData;

namespace {

void note(const QString& text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

// --- The main window -----------------------------------------------------------

// The main window with the taxpayers' menu open, as one picture.
QPixmap withMenuOpen(QMainWindow* main)
{
    auto* declaracion = main->findChild<QMenu*>(QStringLiteral("mnuDeclaracion"));
    auto* list = main->findChild<QMenu*>(QStringLiteral("mnuContribuyentes"));
    QPixmap shot = main->grab();
    if (!declaracion || !list)
        return shot;
    emit list->aboutToShow();
    QPainter p(&shot);
    const QPoint origin = main->menuBar()->actionGeometry(declaracion->menuAction()).bottomLeft();
    declaracion->adjustSize();
    p.drawPixmap(origin, declaracion->grab());
    list->adjustSize();
    const QRect item = declaracion->actionGeometry(list->menuAction());
    p.drawPixmap(origin + QPoint(declaracion->width() - 4, item.top()), list->grab());
    return shot;
}

void mainWindow(ShotPort& port, bool readme)
{
    gPrincipal().FillMenu();
    QApplication::processEvents();
    auto* main = qobject_cast<QMainWindow*>(port.view(QStringLiteral("Principal")));
    if (!main) {
        note(QStringLiteral("  la ventana principal no se mostró: sin imagen"));
        return;
    }
    port.save(main->grab(), QStringLiteral("Principal"));
    port.save(withMenuOpen(main), QStringLiteral("Principal_menu"));
    if (!readme)
        return;
    // wide enough for the taxpayer's window to stand inside it
    main->resize(1180, 800);
    QApplication::processEvents();
    port.save(main->grab(), QStringLiteral("Principal_readme"));
}

// --- Taxpayers and premises ---------------------------------------------------------

void registry(ShotPort& port)
{
    const QStringList pages = {QStringLiteral("Contribuyentes"),
                               QStringLiteral("Contribuyentes_Locales")};
    for (int page = 0; page < pages.size(); ++page) {
        Contribuyentes dialog;
        dialog.Id = QString::number(kId);
        dialog.NewRecord = false;
        port.shoot(dialog, pages.at(page),
                   [page](Controller& w) { w[QStringLiteral("sstFichas")].setValue(page); });
    }
    const QStringList tabs = {QStringLiteral("frmLocalComercial"),
                              QStringLiteral("frmLocalComercial_Actividades"),
                              QStringLiteral("frmLocalComercial_Domicilio")};
    for (int tab = 0; tab < tabs.size(); ++tab) {
        frmLocalComercial local;
        local.Cuit = QString(kCuit).remove(u'-');
        local.Padron = kGeneral.padron;
        local.Objeto = kGeneral.objeto;
        local.Modificar = true;
        port.shoot(local, tabs.at(tab), [&local, tab](Controller& w) {
            local.cargaDatos();
            w[QStringLiteral("SSTabLocalesComerciales")].setValue(tab);
        });
    }
    Busqueda search;
    search.SelectCommandText = Busqueda::ActivitiesSql(QString());
    port.shoot(search, QStringLiteral("Busqueda"), [](Controller& w) {
        Person(w).type(QStringLiteral("txtBuscar"), QStringLiteral("panader"));
        Person(w).choose(QStringLiteral("lstRegistros"), 0);
        Person(w).click(QStringLiteral("lstRegistros"));
    });
}

// --- Years, months, the copy of a month ---------------------------------------------

void periods(ShotPort& port)
{
    NuevoAnio year;
    port.shoot(year, QStringLiteral("NuevoAnio"),
               [](Controller& w) { w[QStringLiteral("txtAnio")].setText(QStringLiteral("2025")); });

    // "Copiar" in a new month opens the copy dialog, whose choice shows as
    // the model month.
    port.plan(
        QStringLiteral("CopiarDDJJ"), QStringLiteral("CopiarDDJJ"),
        [](Controller& w) {
            Person(w).choose(QStringLiteral("cboAnios"), 0);
            Person(w).click(QStringLiteral("cboAnios"));
            Field& months = w[QStringLiteral("cboPeriodos")];
            Person(w).choose(QStringLiteral("cboPeriodos"), months.listCount() - 1);
        },
        [](Controller& w) { Person(w).click(QStringLiteral("cmbAceptar")); });
    NuevoPeriodo month;
    month.IdContribuyente = kId;
    month.Padron = kGeneral.padron;
    month.Objeto = kGeneral.objeto;
    port.shoot(month, QStringLiteral("NuevoPeriodo"), [](Controller& w) {
        Person(w).click(QStringLiteral("cmdCopiar"));
        w[QStringLiteral("txtPeriodo")].setText(QStringLiteral("04"));
    });
}

// --- The tree, the forms and their lines -------------------------------------------

// The key of the first node that holds every fragment.
QString findNode(Controller& datos, const QStringList& fragments)
{
    for (const TreeNode& node : datos[QStringLiteral("trvDatos")].tree().nodes()) {
        bool all = true;
        for (const QString& f : fragments)
            all = all && node.key.contains(f);
        if (all)
            return node.key;
    }
    return {};
}

QString declarationNode(Controller& datos, const Premises& premises, const QString& form)
{
    return findNode(datos,
                    {premises.padron, QStringLiteral(";Anio=") + kAnio,
                     QStringLiteral(";Periodo=") + kMes,
                     QStringLiteral(";Formulario=") + form + u';', QStringLiteral("Nuevo=Falso")});
}

void prepareTree(ContribuyentesDatos& datos)
{
    datos.IdContribuyente = kId;
    datos.NombreContribuyente = kNombre;
    datos.CuitContribuyente = kCuit;
}

void tree(ShotPort& port)
{
    ContribuyentesDatos datos;
    prepareTree(datos);
    port.shoot(datos, QStringLiteral("ContribuyentesDatos"), [&port](Controller& w) {
        // April opened under the year, with the forms it may start
        Person p(w);
        const QString year = findNode(w, {kGeneral.padron, QStringLiteral(";Anio=") + kAnio});
        p.clickNode(QStringLiteral("trvDatos"), year);
        port.plan(
            QStringLiteral("NuevoPeriodo"), QString(),
            [](Controller& d) { d[QStringLiteral("txtPeriodo")].setText(QStringLiteral("04")); },
            [](Controller& d) { Person(d).click(QStringLiteral("cmdAceptar")); });
        p.click(QStringLiteral("cmbNuevoPeriodo"));
        p.click(QStringLiteral("cmdDesplegar"));
        const QString key = declarationNode(w, kGeneral, QStringLiteral("F976"));
        if (!key.isEmpty())
            p.clickNode(QStringLiteral("trvDatos"), key);
    });
}

struct FormShot {
    const char* form;
    const Premises* premises;
    const char* detail; // the detail dialog of its lines, or nullptr
};

const FormShot kForms[] = {
    {"F976", &kGeneral, "F976_Detalle"}, {"F977", &kGeneral, "F977_Detalle"},
    {"F978", &kGeneral, "F978_Detalle"}, {"F2001", &kProcom, "F2001_Detalle"},
    {"F985", &kAgente, "F985_Detalle"},  {"F986", &kAgente, nullptr},
    {"F987", &kAgente, "F987_Detalle"},  {"F988", &kAgente, nullptr},
};

// Opens the line of the first row, as a person edits it.
void openFirstLine(Controller& form)
{
    Person p(form);
    p.clickRow(QStringLiteral("gridFormulario"), 0);
    p.click(QStringLiteral("cmdModificar"));
}

void forms(ShotPort& port)
{
    ContribuyentesDatos datos;
    prepareTree(datos);
    datos.load();
    bool selectionShot = false;
    for (const FormShot& f : kForms) {
        const QString form = QString::fromLatin1(f.form);
        if (!IsDeclarationFormRegistered(form)) {
            note(QStringLiteral("  el formulario ") + form +
                 QStringLiteral(" todavía no está registrado: sin imagen"));
            continue;
        }
        const QString key = declarationNode(datos, *f.premises, form);
        if (key.isEmpty()) {
            note(QStringLiteral("  el árbol no muestra el formulario ") + form +
                 QStringLiteral(": sin imagen"));
            continue;
        }
        // "Modificar" is what the selection offers first; the form shows, then
        // the detail dialog of its first line.
        port.plan(QStringLiteral("SeleccionFormulario"),
                  selectionShot ? QString() : QStringLiteral("SeleccionFormulario"), {},
                  [](Controller& w) { Person(w).click(QStringLiteral("cmdAceptar")); });
        selectionShot = true;
        const QString detail = f.detail ? QString::fromLatin1(f.detail) : QString();
        port.plan(form, form, {}, [detail](Controller& w) {
            if (!detail.isEmpty())
                openFirstLine(w);
        });
        if (!detail.isEmpty())
            port.plan(detail, detail);
        Person(datos).dblClickNode(QStringLiteral("trvDatos"), key);
        if (form != QLatin1String("F2001"))
            continue;
        // Once more: a rectification with the lines of this version, dated,
        // then cancelled.
        port.plan(
            QStringLiteral("SeleccionFormulario"),
            QStringLiteral("SeleccionFormulario_Rectificativa"),
            [](Controller& w) {
                Person p(w);
                p.click(QStringLiteral("optRectificativaConDatos"));
                p.type(QStringLiteral("txtFecha"), QStringLiteral("10042024"));
            },
            [](Controller& w) { Person(w).click(QStringLiteral("cmdCancelar")); });
        Person(datos).dblClickNode(QStringLiteral("trvDatos"), key);
    }
    datos.unload();
}

// --- Generation ------------------------------------------------------------------

void generation(ShotPort& port)
{
    GenerarDisco dialog;
    dialog.Parametros = Declaration(kGeneral, QStringLiteral("F976"));
    port.shoot(dialog, QStringLiteral("GenerarDisco"), [](Controller& w) {
        w[QStringLiteral("txtDestino")].setText(QStringLiteral("/media/juan/PENDRIVE"));
        w[QStringLiteral("txtCantidadImpresiones")].setText(QStringLiteral("2"));
    });
}

// --- Backups ---------------------------------------------------------------------

// Three copies of March 2024 in the backup folder, the last of them the
// latest the settings know.
void backupFiles()
{
    const QString folder = DefaultBackupFolder();
    QDir dir(folder);
    dir.mkpath(QStringLiteral("."));
    for (const QString& old : dir.entryList(QDir::Files))
        dir.remove(old);
    const QStringList stamps = {QStringLiteral("20240301091522"), QStringLiteral("20240315183040"),
                                QStringLiteral("20240329120005")};
    for (const QString& stamp : stamps) {
        QFile file(folder + u'/' + BackupFileName(stamp));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(420 * 1024, 'M'));
    }
    SaveBackupSetting(BackupKey::FechaUlt, stamps.last());
    SaveBackupSetting(BackupKey::BackupDirectory, folder);
}

void backups(ShotPort& port)
{
    backupFiles();
    frmBackup backup;
    port.shoot(backup, QStringLiteral("frmBackup"));
    frmBackupArchivos restore;
    port.shoot(restore, QStringLiteral("frmBackupArchivos"),
               [](Controller& w) { Person(w).choose(QStringLiteral("lst0"), 2); });
    frmBackupArchivos save;
    save.AccionGrabar = true;
    save.GrabarDirectorio = QStringLiteral("/media/juan/PENDRIVE");
    port.shoot(save, QStringLiteral("frmBackupArchivos_Guardar"),
               [&save](Controller&) { save.SetTicked(2, true); });
}

// --- The README's pictures -----------------------------------------------------------

// A window's picture with a plain title bar, as a desktop draws it.
QPixmap framed(const QPixmap& window, const QString& title)
{
    const int bar = 28;
    QPixmap out(window.width() + 2, window.height() + bar + 1);
    out.fill(QColor(0x17, 0x3f, 0x73));
    QPainter p(&out);
    p.drawPixmap(1, bar, window);
    p.setPen(Qt::white);
    QFont font = p.font();
    font.setBold(true);
    p.setFont(font);
    p.drawText(QRect(12, 0, out.width() - 24, bar), Qt::AlignVCenter | Qt::AlignLeft, title);
    return out;
}

// The taxpayer's window over the main window, as a person sees them.
QPixmap windowOver(const QPixmap& back, const QPixmap& front)
{
    QPixmap out = back;
    QPainter p(&out);
    const QPoint at(out.width() - front.width() - 40, out.height() - front.height() - 30);
    p.fillRect(QRect(at + QPoint(6, 6), front.size()), QColor(0, 0, 0, 50));
    p.drawPixmap(at, front);
    return out;
}

bool writeReadme(const QString& shots, const QString& folder)
{
    QDir().mkpath(folder);
    const QPixmap main(shots + QStringLiteral("/Principal_readme.png"));
    const QPixmap datos(shots + QStringLiteral("/ContribuyentesDatos.png"));
    const QPixmap form(shots + QStringLiteral("/F976.png"));
    if (main.isNull() || datos.isNull() || form.isNull())
        return false;
    const QPixmap desk = windowOver(
        framed(main, QStringLiteral("Sistema Morvel de Declaraciones")),
        framed(datos, QStringLiteral("Contribuyente: ") + kNombre + QStringLiteral(" - ") + kCuit));
    return desk.save(folder + QStringLiteral("/ventana-principal.png")) &&
           framed(form, QStringLiteral("Formulario F976 T.I.S.S.H Régimen General DJ Mensual"))
               .save(folder + QStringLiteral("/formulario-f976.png"));
}

// --- The desk: the calendar, the year's desk, the month's control, the batch ---
// (no page of the manual shows them: they are drawn for a look at the whole
// screen only)

void desk(ShotPort& port)
{
    CalendarioPresentaciones calendario;
    calendario.IdContribuyente = kId;
    port.shoot(calendario, QStringLiteral("CalendarioPresentaciones"));
    EscritorioMensual escritorio;
    port.shoot(escritorio, QStringLiteral("EscritorioMensual"));
    ControlMensual control;
    control.IdContribuyente = kId;
    port.shoot(control, QStringLiteral("ControlMensual"));
    GenerarLote lote;
    port.shoot(lote, QStringLiteral("GenerarLote"));
}

void drawAll(ShotPort& port, const QString& dataFolder, bool readme, bool wholeScreen)
{
    Inicial splash;
    port.shoot(splash, QStringLiteral("Inicial"), [&splash](Controller&) {
        splash.field(QStringLiteral("pb")).setMaximum(24);
        AdvanceSplash(splash, 9, QStringLiteral("Verificando Base de Datos..."));
    });
    if (!Main(dataFolder)) {
        note(QStringLiteral("  el programa no arrancó: solo la presentación"));
        return;
    }
    QApplication::processEvents();
    Insert();
    mainWindow(port, readme);
    frmAbout about;
    port.shoot(about, QStringLiteral("frmAbout"));
    frmBaseDatos baseDatos;
    port.shoot(baseDatos, QStringLiteral("frmBaseDatos"));
    frmBaseDatos servidor;
    port.shoot(servidor, QStringLiteral("frmBaseDatos_Servidor"), [](Controller& w) {
        Person p(w);
        p.click(QStringLiteral("optServidor"));
        p.retype(QStringLiteral("txtServidor"), QStringLiteral("servidor.estudio.local"));
        p.type(QStringLiteral("txtBase"), QStringLiteral("morvel"));
        p.type(QStringLiteral("txtUsuario"), QStringLiteral("juan"));
        p.type(QStringLiteral("txtContrasena"), QStringLiteral("secreta"));
    });
    registry(port);
    periods(port);
    tree(port);
    forms(port);
    generation(port);
    backups(port);
    if (wholeScreen)
        desk(port);
    HelpViewer& help = HelpViewer::instance();
    help.showPage(HelpPathFor(QStringLiteral("F976")));
    QApplication::processEvents();
    port.save(help.grab(), QStringLiteral("Ayuda"));
    help.hide();
}

// The offscreen platform's remark on every dialog says nothing about them.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (message.contains(QLatin1String("propagateSizeHints")))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

} // namespace

int main(int argc, char* argv[])
{
    const bool wholeScreen = argc > 1 && QByteArray(argv[1]) == "--pantalla";
    if (!wholeScreen)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietHandler);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Morvel"));
    InstallSpanishTranslations();
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList args = QApplication::arguments().mid(1);
    const bool readme = args.value(0) == QLatin1String("--readme");
    const QString target = readme || wholeScreen ? args.value(1, QStringLiteral("docs"))
                                                 : args.value(0, QStringLiteral("screens"));

    QTemporaryDir work;
    const QString shots = readme ? work.filePath(QStringLiteral("shots")) : target;
    QDir().mkpath(shots);
    // Settings and data of this run stay in the temporary folder.
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, work.filePath("settings"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, work.filePath("settings"));
    ShotPort port(shots);
    port.setWholeScreen(wholeScreen);
    setUi(&port);
    RegisterAllViews();
    SetAppPath(work.filePath(QStringLiteral("data")));

    drawAll(port, work.filePath(QStringLiteral("data")), readme, wholeScreen);
    CloseDatabase();

    for (const QString& missing : port.untaken())
        note(QStringLiteral("  no se llegó a dibujar ") + missing);
    note(QString::number(port.taken().size()) + QStringLiteral(" imágenes en ") + shots);
    if (readme) {
        if (!writeReadme(shots, target)) {
            note(QStringLiteral("faltan imágenes para el README"));
            return 1;
        }
        note(QStringLiteral("imágenes del README en ") + target);
    }
    return 0;
}
