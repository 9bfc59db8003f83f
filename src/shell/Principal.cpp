#include "Principal.h"

#include "Globals.h"
#include "MainWindowLink.h"
#include "SqlText.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "backup/Backup.h"
#include "backup/frmBackup.h"
#include "frmAbout.h"
#include "navigation/ContribuyentesDatos.h"
#include "registry/Contribuyentes.h"

namespace {
const QString kList = QStringLiteral("mnuListadoContribuyentes");
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

    on(kList, Ev::Click, [this](EventArgs& e) { openListedTaxpayer(e.index); });
    on(QStringLiteral("mnuNuevo"), Ev::Click, [this](EventArgs&) { openNewTaxpayer(); });
    on(QStringLiteral("mnuSalir"), Ev::Click, [this](EventArgs&) { unload(); });
    on(QStringLiteral("mnuManualUso"), Ev::Click, [this](EventArgs&) { openManual(); });
    on(QStringLiteral("mnuAcercaDe"), Ev::Click, [this](EventArgs&) { showAbout(); });
    on(QStringLiteral("mnuCopiaSeguridad"), Ev::Click, [](EventArgs&) { ShowBackupDialog(); });
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
    if (args.key == KeyCode::F1)
        openManual();
}

void Principal::onUnload()
{
    RunScheduledBackup(9);
    ui().yield();
    ui().endProgram();
}
