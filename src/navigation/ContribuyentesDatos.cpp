#include "ContribuyentesDatos.h"

#include "Globals.h"
#include "NavigationText.h"
#include "NuevoAnio.h"
#include "NuevoPeriodo.h"
#include "SqlText.h"
#include "Tovak.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoForms.h"
#include "output/GenerarDisco.h"

namespace {

const QString kTree = QStringLiteral("trvDatos");
const QString kNuevoPeriodo = QStringLiteral("cmbNuevoPeriodo");
const QString kGenerar = QStringLiteral("cmbGenerar");

ContribuyentesDatos* g_current = nullptr;

} // namespace

ContribuyentesDatos::ContribuyentesDatos() : Controller(QStringLiteral("ContribuyentesDatos")) {}

ContribuyentesDatos::~ContribuyentesDatos()
{
    if (g_current == this)
        g_current = nullptr;
}

ContribuyentesDatos* ContribuyentesDatos::Current()
{
    return g_current;
}

Field& ContribuyentesDatos::tree()
{
    return field(kTree);
}

void ContribuyentesDatos::design()
{
    add(kTree, FieldKind::Tree);
    add(QStringLiteral("cmdDesplegar"), FieldKind::Button, QStringLiteral("+"));
    add(QStringLiteral("cmdContraer"), FieldKind::Button, QStringLiteral("-"));
    add(QStringLiteral("cmbNuevoAnio"), FieldKind::Button, QStringLiteral("Nuevo &Año"));
    add(kNuevoPeriodo, FieldKind::Button, QStringLiteral("Nuevo &Periodo")).setEnabled(false);
    add(kGenerar, FieldKind::Button, QStringLiteral("Generar")).setEnabled(false);
    add(QStringLiteral("cmdBorrarPadron"), FieldKind::Button, QStringLiteral("&Borrar Padrón"));
    add(QStringLiteral("cmbSalir"), FieldKind::Button, QStringLiteral("Sa&lir"));

    on(kTree, Ev::Click, [this](EventArgs&) { nodeClick(); });
    on(kTree, Ev::DblClick, [this](EventArgs&) { showSelected(); });
    on(kTree, Ev::KeyPress, [this](EventArgs& e) {
        if (e.key != KeyCode::Return)
            return;
        e.key = 0;
        showSelected();
    });
    on(QStringLiteral("cmdDesplegar"), Ev::Click, [this](EventArgs&) { desplegar(); });
    on(QStringLiteral("cmdContraer"), Ev::Click, [this](EventArgs&) { contraer(); });
    on(QStringLiteral("cmbNuevoAnio"), Ev::Click, [this](EventArgs&) { nuevoAnio(); });
    on(kNuevoPeriodo, Ev::Click, [this](EventArgs&) { nuevoPeriodo(); });
    on(kGenerar, Ev::Click, [this](EventArgs&) { generar(); });
    on(QStringLiteral("cmdBorrarPadron"), Ev::Click, [this](EventArgs&) { borrarPadron(); });
    on(QStringLiteral("cmbSalir"), Ev::Click, [this](EventArgs&) { unload(); });
}

void ContribuyentesDatos::onLoad()
{
    g_current = this;
    setCaption(QStringLiteral("Contribuyente: ") + NombreContribuyente + QStringLiteral(" - ") +
               CuitContribuyente);
    ActualizoVista();
}

void ContribuyentesDatos::onUnload()
{
    if (g_current == this)
        g_current = nullptr;
}

void ContribuyentesDatos::ActualizoVista()
{
    gForms().Refill(tree(), id());
}

void ContribuyentesDatos::nodeClick()
{
    const TreeNode* node = tree().tree().selectedNode();
    const QString caption = node ? node->text : QString();
    field(kNuevoPeriodo).setEnabled(caption.contains(QStringLiteral("Formularios Año:")));
    field(kGenerar).setEnabled(caption.contains(QStringLiteral("Periodo")) ||
                               caption.contains(QStringLiteral("Generado")));
}

void ContribuyentesDatos::showSelected()
{
    int result = 0;
    gForms().ShowForm(tree(), id(), result);
    if (result == 2)
        unload();
}

void ContribuyentesDatos::nuevoAnio()
{
    const TreeNode* node = tree().tree().selectedNode();
    if (!node || node->text.left(6) != QStringLiteral("Padrón"))
        return;
    const QString selectedKey = node->key;
    NuevoAnio dialog;
    // The options override the built-in limits when they can be read.
    const int min = gAccess().GetInteger(
        QStringLiteral("SELECT VALOR FROM OPCIONES WHERE NOMBRE LIKE 'AnioMinimo'"));
    const int max = gAccess().GetInteger(
        QStringLiteral("SELECT VALOR FROM OPCIONES WHERE NOMBRE LIKE 'AnioMaximo'"));
    if (min > 0)
        dialog.Min = min;
    if (max > 0)
        dialog.Max = max;
    dialog.show(true);
    if (dialog.Anio <= 0)
        return;
    gForms().FillTreeViewNuevoAnio(tree(), QString::number(dialog.Anio), id(), selectedKey);
    const int index = tree().tree().indexOf(selectedKey);
    if (index >= 0)
        tree().tree().node(index).expanded = true;
    tree().treeChanged();
}

void ContribuyentesDatos::nuevoPeriodo()
{
    TreeModel& model = tree().tree();
    const int yearNode = model.selected();
    if (yearNode < 0 || yearNode >= model.count() || model.node(yearNode).parent < 0)
        return;
    const QString year = model.node(yearNode).key.right(4);
    const QString premises = model.node(model.node(yearNode).parent).key;
    const QString padron = PadronOfCaption(premises);
    const QString objeto = ObjetoOfCaption(premises);
    const RecordsetPtr flags = gAccess().FillRecordSet(
        QStringLiteral("SELECT Retencion, Percepcion, Regimen FROM tPadronesComerciales WHERE "
                       "Padron = ") +
        Quoted(padron) + QStringLiteral(" and objeto = ") + Quoted(objeto) + u' ');
    const bool found = flags && !flags->EOF_();
    const QString retencion = found ? flags->Text(0).trimmed() : QString();
    const QString percepcion = found ? flags->Text(1).trimmed() : QString();
    const QString regimen = found ? flags->Text(2).trimmed() : QString();

    NuevoPeriodo dialog;
    dialog.IdContribuyente = IdContribuyente;
    dialog.Padron = padron;
    dialog.Objeto = objeto;
    dialog.show(true);
    if (dialog.Periodo.toInt() < 1)
        return;
    const QString month = TwoDigits(dialog.Periodo);
    if (dialog.AnioModelo.toInt() > 0) {
        if (gForms().VerifyNode(PremisesCaption(padron, objeto) + QStringLiteral(";Anio=") + year +
                                    QStringLiteral(";Periodo=") + month,
                                tree())) {
            MsgBox(QStringLiteral("Periodo ya ingresado."), Msg::Exclamation,
                   QStringLiteral("Atención !"));
            return;
        }
        gForms().InsertCopiaDDJJ(id(), dialog.PeriodoModelo(), dialog.AnioModelo, year, month,
                                 padron, objeto);
        ActualizoVista();
        return;
    }
    gForms().FillTreeViewNuevoPeriodo(tree(), month, yearNode, id(), padron, objeto, retencion,
                                      percepcion, regimen);
}

void ContribuyentesDatos::generar()
{
    const TreeNode* node = tree().tree().selectedNode();
    if (!node)
        return;
    const QString key = node->key;
    if (IsEncFormularioCopy(key)) {
        MsgBox(QStringLiteral("Debe modificar el formulario antes de generar por tratarse de una "
                              "copia de otro período."),
               Msg::Exclamation, QStringLiteral("Atención !"));
        return;
    }
    GenerarDisco dialog;
    if (key.contains(QStringLiteral("Formulario="))) {
        dialog.Parametros = key;
    } else {
        // A month: every declaration under it, joined by "#".
        const QString month = key.mid(1);
        QStringList keys;
        for (const TreeNode& n : tree().tree().nodes())
            if (n.key.contains(month) &&
                ReadParameter(n.key, QStringLiteral("ConDatos")) == QLatin1String("Verdadero"))
                keys << n.key;
        dialog.TotalPeriodo = true;
        dialog.Parametros = keys.join(u'#');
    }
    dialog.show(true);
}

void ContribuyentesDatos::borrarPadron()
{
    const TreeNode* node = tree().tree().selectedNode();
    if (!node || !node->text.startsWith(QStringLiteral("Padrón")))
        return;
    const QString padron = PadronOfCaption(node->text);
    const QString objeto = ObjetoOfCaption(node->text);
    const QString where = QStringLiteral(" WHERE Padron = ") + Quoted(padron) +
                          QStringLiteral(" and objeto = ") + Quoted(objeto);
    ZoAccess& db = gAccess();
    if (db.GetString(QStringLiteral("SELECT Principal from tPadronesComerciales") + where) ==
        QLatin1String("X")) {
        MsgBox(QStringLiteral("El Padrón que se desea eliminar es el Padrón Principal.\r\n"
                              "Por favor defina un nuevo Padrón Principal para continuar."),
               Msg::Exclamation, QStringLiteral("Borrar Padrón"));
        return;
    }
    const RecordsetPtr forms =
        db.FillRecordSet(QStringLiteral("SELECT * FROM TPadrones_Formularios") + where);
    if (forms && forms->RecordCount() > 0) {
        MsgBox(QStringLiteral("No puede eliminar un padrón que posea formularios cargados"),
               Msg::Information);
        return;
    }
    if (MsgBox(QStringLiteral("Desea eliminar el Padrón-Objeto N° ") + padron + u'-' + objeto,
               Msg::YesNo + Msg::Question) != Msg::Yes)
        return;
    gForms().DeletePadron(padron, objeto);
    ActualizoVista();
}

void ContribuyentesDatos::desplegar()
{
    TreeModel& model = tree().tree();
    for (int i = 0; i < model.count(); ++i)
        model.ensureVisible(i);
    tree().treeChanged();
}

void ContribuyentesDatos::contraer()
{
    TreeModel& model = tree().tree();
    for (int i = 0; i < model.count(); ++i) {
        const QString& caption = model.node(i).text;
        if (caption.startsWith(QStringLiteral("Formularios Año")) ||
            caption.startsWith(QStringLiteral("Periodo")))
            model.node(i).expanded = false;
    }
    tree().treeChanged();
}
