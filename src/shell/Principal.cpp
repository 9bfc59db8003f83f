#include "Principal.h"

#include "Globals.h"
#include "MainWindowLink.h"
#include "SqlText.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "backup/Backup.h"
#include "backup/frmBackup.h"
#include "desk/CalendarioPresentaciones.h"
#include "desk/ControlMensual.h"
#include "desk/EscritorioMensual.h"
#include "desk/GenerarLote.h"
#include "frmAbout.h"
#include "frmBaseDatos.h"
#include "navigation/ContribuyentesDatos.h"
#include "registry/Contribuyentes.h"

namespace {
const QString kList = QStringLiteral("mnuListadoContribuyentes");
const QString kBuscar = QStringLiteral("txtBuscar");
const QString kOrden = QStringLiteral("cboOrden");
const QString kGrid = QStringLiteral("gridContribuyentes");
constexpr int kKeyF = 70;
constexpr int kCtrl = 2;
} // namespace

Principal& gPrincipal()
{
    static Principal principal;
    static const bool linked = [] {
        SetMainWindowLink({[] {
                               if (principal.isLoaded())
                                   principal.FillMenu();
                           },
                           [] {
                               if (principal.isLoaded())
                                   principal.unload();
                           }});
        return true;
    }();
    Q_UNUSED(linked);
    return principal;
}

QString VersionText()
{
    return QString::number(MORVEL_VERSION_MAJOR) + u'.' + QString::number(MORVEL_VERSION_MINOR) +
           QStringLiteral("  ") + QString::number(MORVEL_VERSION_PATCH);
}

Principal::Principal() : Controller(QStringLiteral("Principal")) {}

void Principal::design()
{
    setCaption(QStringLiteral("Sistema Morvel de Declaraciones"));
    designMenu();
    add(QStringLiteral("imgImagen"), FieldKind::Label);
    add(QStringLiteral("txtVersion"), FieldKind::Label);
    designBuscador();

    on(kList, Ev::Click, [this](EventArgs& e) { openListedTaxpayer(e.index); });
    on(QStringLiteral("mnuNuevo"), Ev::Click, [this](EventArgs&) { openNewTaxpayer(); });
    on(QStringLiteral("mnuSalir"), Ev::Click, [this](EventArgs&) { unload(); });
    on(QStringLiteral("mnuManualUso"), Ev::Click, [this](EventArgs&) { openManual(); });
    on(QStringLiteral("mnuAcercaDe"), Ev::Click, [this](EventArgs&) { showAbout(); });
    on(QStringLiteral("mnuCopiaSeguridad"), Ev::Click, [](EventArgs&) { ShowBackupDialog(); });
    on(QStringLiteral("mnuBaseDatos"), Ev::Click, [](EventArgs&) {
        frmBaseDatos window;
        window.show(true);
    });
}

void Principal::designBuscador()
{
    add(QStringLiteral("lblBuscar"), FieldKind::Label,
        QStringLiteral("Buscar contribuyente por nombre o CUIT (Ctrl+F):"));
    add(kBuscar, FieldKind::Text);
    Field& orden = add(kOrden, FieldKind::Combo);
    for (const char* item : {"Recientes primero", "Por nombre", "Por CUIT"})
        orden.addItem(QString::fromUtf8(item));
    orden.setListIndex(BuscadorContribuyentes::Recientes);
    add(kGrid, FieldKind::Grid)
        .setHeader({QStringLiteral("Apellido y Nombre / Razón Social"), QStringLiteral("CUIT")});
    add(QStringLiteral("lblCantidad"), FieldKind::Label);
    add(QStringLiteral("cmdCalendario"), FieldKind::Button,
        QStringLiteral("Calendario de presentaciones"));
    add(QStringLiteral("cmdEscritorio"), FieldKind::Button, QStringLiteral("Escritorio del año"));
    add(QStringLiteral("cmdControlMes"), FieldKind::Button, QStringLiteral("Control del mes"));
    add(QStringLiteral("cmdGenerarPeriodo"), FieldKind::Button, QStringLiteral("Generar período"));

    on(kBuscar, Ev::Change, [this](EventArgs&) { filtrar(); });
    on(kBuscar, Ev::KeyDown, [this](EventArgs& e) {
        if (e.key == KeyCode::Return) {
            e.key = 0;
            openFound(qMax(0, field(kGrid).currentRow()));
        } else if (e.key == KeyCode::Down && field(kGrid).rowCount() > 0) {
            e.key = 0;
            setFocus(kGrid);
        }
    });
    on(kOrden, Ev::Click, [this](EventArgs&) { filtrar(); });
    on(kGrid, Ev::DblClick, [this](EventArgs& e) { openFound(e.index); });
    on(kGrid, Ev::KeyDown, [this](EventArgs& e) {
        if (e.key != KeyCode::Return)
            return;
        e.key = 0;
        openFound(field(kGrid).currentRow());
    });
    on(QStringLiteral("cmdCalendario"), Ev::Click,
       [this](EventArgs&) { openDesk(QStringLiteral("CalendarioPresentaciones")); });
    on(QStringLiteral("cmdEscritorio"), Ev::Click,
       [this](EventArgs&) { openDesk(QStringLiteral("EscritorioMensual")); });
    on(QStringLiteral("cmdControlMes"), Ev::Click,
       [this](EventArgs&) { openDesk(QStringLiteral("ControlMensual")); });
    on(QStringLiteral("cmdGenerarPeriodo"), Ev::Click,
       [this](EventArgs&) { openDesk(QStringLiteral("GenerarLote")); });
}

void Principal::designMenu()
{
    const struct {
        const char* name;
        const char* caption;
    } items[] = {
        {"mnuDeclaracion", "&Declaración"},
        {"mnuContribuyentes", "&Contribuyentes / Padrones Comerciales"},
        {"mnuNuevo", "&Nuevo"},
        {"mnuListadoContribuyentes", "(vacío)"},
        {"mnuSalir", "Sa&lir"},
        {"mnuOpciones", "&Opciones"},
        {"mnuCopiaSeguridad", "&Copia de Seguridad..."},
        {"mnuBaseDatos", "&Base de Datos..."},
        {"mnuAyuda", "Ay&uda"},
        {"mnuManualUso", "&Manual de Uso"},
        {"mnuAcercaDe", "Acerca &de Morvel..."},
    };
    for (const auto& item : items)
        add(QString::fromLatin1(item.name), FieldKind::Menu, QString::fromUtf8(item.caption));
    field(kList).addItem(QStringLiteral("(vacío)"));
}

void Principal::onLoad()
{
    FillMenu();
    field(QStringLiteral("txtVersion")).setText(VersionText());
}

void Principal::FillMenu()
{
    fillMenuList();
    FillBuscador();
}

void Principal::FillBuscador()
{
    m_buscador.Cargar();
    filtrar();
}

void Principal::filtrar()
{
    const auto orden = BuscadorContribuyentes::Orden(qMax(0, field(kOrden).listIndex()));
    m_encontrados = m_buscador.Filtrar(field(kBuscar).text(), orden);
    QVector<QStringList> rows;
    rows.reserve(m_encontrados.size());
    for (int i : m_encontrados)
        rows.push_back({m_buscador.at(i).nombre, m_buscador.at(i).cuit});
    Field& grid = field(kGrid);
    grid.setRows(std::move(rows));
    grid.setCurrentRow(m_encontrados.isEmpty() ? -1 : 0);
    field(QStringLiteral("lblCantidad"))
        .setText(QString::number(m_encontrados.size()) + QStringLiteral(" de ") +
                 QString::number(m_buscador.count()) + QStringLiteral(" contribuyentes"));
}

// The taxpayer of a row of the finder, opened as its menu item opens it.
void Principal::openFound(int row)
{
    if (row < 0 || row >= m_encontrados.size())
        return;
    const ContribuyenteListado found = m_buscador.at(m_encontrados.at(row));
    openTaxpayerData(found.id, found.nombre, found.cuit);
    FillMenu();
}

void Principal::openDesk(const QString& window)
{
    const int row = field(kGrid).currentRow();
    const int id =
        row >= 0 && row < m_encontrados.size() ? m_buscador.at(m_encontrados.at(row)).id : 0;
    if (window == QLatin1String("CalendarioPresentaciones")) {
        if (id == 0) {
            MsgBox(QStringLiteral("Seleccione un contribuyente en la lista."), Msg::Information,
                   QStringLiteral("Atención !"));
            return;
        }
        CalendarioPresentaciones calendario;
        calendario.IdContribuyente = id;
        calendario.show(true);
    } else if (window == QLatin1String("EscritorioMensual")) {
        EscritorioMensual escritorio;
        escritorio.show(true);
    } else if (window == QLatin1String("ControlMensual")) {
        ControlMensual control;
        control.IdContribuyente = id;
        control.show(true);
    } else {
        GenerarLote lote;
        lote.show(true);
    }
    FillMenu();
}

void Principal::fillMenuList()
{
    RecordsetPtr rs = gAccess().FillRecordSetReader(
        QStringLiteral("SELECT IDCONTRIBUYENTE, APELLIDONOMBRE, CUIT FROM CONTRIBUYENTES ORDER BY "
                       "IDCONTRIBUYENTE"));
    Field& list = field(kList);
    list.removeItemsFrom(1);
    if (!rs || rs->RecordCount() == 0) {
        // another case and no accent than the design's "(vacío)", as it was
        list.setItemText(0, QStringLiteral("(Vacio)"));
        list.setItemEnabled(0, false);
        return;
    }
    QVector<ListItem> items;
    const int count = rs->RecordCount();
    for (int i = 0; i < count; ++i) {
        items.push_back(ListItem{QString::number(i + 1) + QStringLiteral(": ") + rs->Text(1) +
                                     QStringLiteral(" - ") + rs->Text(2),
                                 i, true});
        rs->MoveNext();
        if (!rs->EOF_() && rs->Text(2).isEmpty())
            break;
    }
    list.setItemText(0, items.first().text);
    list.setItemEnabled(0, true);
    items.removeFirst();
    list.addItems(items);
    rs->Close();
}

void Principal::openListedTaxpayer(int index)
{
    const QString caption = field(kList).itemText(index);
    const int colon = int(caption.indexOf(u':')) + 1;
    const int dash = int(caption.indexOf(u'-')) + 1;
    if (colon == 0 || dash == 0)
        return;
    const QString name = caption.mid(colon + 1, qMax(0, dash - 5)).trimmed();
    const QString cuit = caption.mid(dash).trimmed();
    const int id = gAccess().GetInteger(
        QStringLiteral("SELECT Contribuyentes.idContribuyente FROM Contribuyentes WHERE Cuit ='") +
        Sq(cuit) + u'\'');
    if (id == -1)
        return;
    openTaxpayerData(id, name, cuit);
    FillMenu();
}

void Principal::openTaxpayerData(int id, const QString& name, const QString& cuit)
{
    BuscadorContribuyentes::RecordarReciente(cuit);
    ContribuyentesDatos datos;
    datos.IdContribuyente = id;
    datos.NombreContribuyente = name;
    datos.CuitContribuyente = cuit;
    datos.show(true);
}

void Principal::openNewTaxpayer()
{
    Contribuyentes dialog;
    dialog.NewRecord = true;
    dialog.Id.clear();
    dialog.show(true);
    FillMenu();
    if (!dialog.Saved)
        return;
    const QString cuit = gAccess().GetString(
        QStringLiteral("SELECT Cuit FROM Contribuyentes WHERE idContribuyente = ") + dialog.Id);
    openTaxpayerData(dialog.Id.toInt(), dialog.GetNombre, cuit);
    FillMenu();
}

void Principal::openManual()
{
    ui().openDocument(AssetsPath() + QStringLiteral("/help/index.html"));
}

void Principal::showAbout()
{
    frmAbout about;
    about.show(true);
}

void Principal::onFormKeyDown(EventArgs& args)
{
    if (args.key == KeyCode::F1) {
        openManual();
    } else if (args.key == kKeyF && (args.shift & kCtrl)) {
        args.key = 0; // Ctrl+F reaches the search box from anywhere in the window
        setFocus(kBuscar);
        field(kBuscar).selectAll();
    }
}

void Principal::onUnload()
{
    RunScheduledBackup(9);
    ui().yield();
    ui().endProgram();
}
