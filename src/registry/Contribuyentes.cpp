#include "Contribuyentes.h"

#include "Globals.h"
#include "SqlText.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kTabs = QStringLiteral("sstFichas");
const QString kCuit = QStringLiteral("txtCuit");
const QString kNombre = QStringLiteral("txtApellidoNombre");
const QString kGrid = QStringLiteral("gridLocales");
const QString kAgregar = QStringLiteral("cmdAgregar");
const QString kModificar = QStringLiteral("cmdModificar");
const QString kQuitar = QStringLiteral("cmdQuitar");
const QString kQuitarTodo = QStringLiteral("cmdQuitarTodo");
const QString kPrincipal = QStringLiteral("cboPadronPrincipal");
const QString kAceptar = QStringLiteral("cmdAceptar");
const QString kCancelar = QStringLiteral("cmdCancelar");

const QString kCuitMask = QStringLiteral("##-########-#");
const QString kBlankCuit = QStringLiteral("__-________-_");
const QString kNoPrincipal = QStringLiteral("------------");
const QString kAttention = QStringLiteral("Atención !");

constexpr int kTaxpayerTab = 0;
constexpr int kPremisesTab = 1;

// The columns of tPadronesComerciales that the grid shows, in its order.
const char* const kGridColumns[] = {"padron",
                                    "objeto",
                                    "grupo",
                                    "categoria",
                                    "nombre_fantasia",
                                    "calle_numero",
                                    "localidad_departamento",
                                    "cp"};

// The text of a premises in the principal combo: the padrón, "/" and the
// objeto, " - " and the fantasy name; the keys are cut back from it by
// position, since padrón and objeto are thirteen characters.
QString comboEntry(const Recordset& rs)
{
    QString entry = rs.Text(QStringLiteral("padron"));
    if (!rs.IsNull(QStringLiteral("objeto")))
        entry += u'/' + rs.Text(QStringLiteral("objeto"));
    if (!rs.IsNull(QStringLiteral("nombre_fantasia")))
        entry += QStringLiteral(" - ") + rs.Text(QStringLiteral("nombre_fantasia"));
    return entry;
}

bool hasRows(const QString& sql)
{
    const RecordsetPtr rs = gAccess().FillRecordSet(sql);
    return rs && rs->RecordCount() > 0;
}

bool hasDeclarations(const QString& padron, const QString& objeto)
{
    return hasRows(QStringLiteral("SELECT * FROM TPadrones_Formularios WHERE Padron = '") +
                   Sq(padron) + QStringLiteral("' and Objeto = '") + Sq(objeto) + u'\'');
}

bool isWholeNumber(const QString& text)
{
    bool ok = false;
    text.trimmed().toLongLong(&ok);
    return ok;
}

} // namespace

Contribuyentes::Contribuyentes() : Controller(QStringLiteral("Contribuyentes")) {}

// --- Design -------------------------------------------------------------------

void Contribuyentes::design()
{
    setCaption(QStringLiteral("Contribuyentes / Locales Comerciales"));
    add(kTabs, FieldKind::Tabs);
    designTaxpayer();
    designPremises();
    add(kAceptar, FieldKind::Button, QStringLiteral("&Aceptar"));
    add(kCancelar, FieldKind::Button, QStringLiteral("&Cancelar"));
    on(kAceptar, Ev::Click, [this](EventArgs&) { aceptar(); });
    on(kCancelar, Ev::Click, [this](EventArgs&) { cancelar(); });
}

void Contribuyentes::designTaxpayer()
{
    add(kCuit, FieldKind::Text).setMask(kCuitMask);
    add(kNombre, FieldKind::Text).setMaxLength(60);

    on(kCuit, Ev::LostFocus, [this](EventArgs&) { cuitNotice(); });
    on(kCuit, Ev::Validate, [this](EventArgs& e) {
        if (!NewRecord || !VerificaExistCuit())
            return;
        MsgBox(QStringLiteral("El cuit ya existe en la base. Por favor corrija el mismo.-"),
               Msg::Information);
        e.cancel = true;
    });
    on(kNombre, Ev::KeyPress, [](EventArgs& e) { FilterLetterKey(e.key, true); });
    on(kNombre, Ev::LostFocus,
       [this](EventArgs&) { field(kNombre).setText(field(kNombre).text().toUpper()); });
}

void Contribuyentes::designPremises()
{
    add(kGrid, FieldKind::Grid);
    add(kAgregar, FieldKind::Button, QStringLiteral("Agregar"));
    add(kModificar, FieldKind::Button, QStringLiteral("Modificar"));
    add(kQuitar, FieldKind::Button, QStringLiteral("Quitar"));
    add(kQuitarTodo, FieldKind::Button, QStringLiteral("QuitarTodo")).setEnabled(false);
    add(kPrincipal, FieldKind::Combo);

    on(kGrid, Ev::Click, [this](EventArgs&) { gridClicked(); });
    on(kGrid, Ev::DblClick, [this](EventArgs&) { modificar(); });
    on(kAgregar, Ev::Click, [this](EventArgs&) { agregar(); });
    on(kModificar, Ev::Click, [this](EventArgs&) { modificar(); });
    on(kQuitar, Ev::Click, [this](EventArgs&) { quitar(); });
    on(kQuitarTodo, Ev::Click, [this](EventArgs&) { quitarTodo(); });
    on(kPrincipal, Ev::Click, [this](EventArgs&) { choosePrincipal(); });
}

void Contribuyentes::onLoad()
{
    Saved = false;
    m_cuitCargado.clear();
    m_cuitActual.clear();
    formatGridLocales();
    if (!Id.isEmpty() && !NewRecord) {
        GetContribuyente();
        cargaGridLocales();
        m_cuitCargado = field(kCuit).text();
        if (field(kGrid).rowCount() >= 1)
            field(kQuitarTodo).setEnabled(true);
    } else {
        for (const QString& name : {kModificar, kQuitar, kQuitarTodo})
            field(name).setEnabled(false);
        Field& combo = field(kPrincipal);
        combo.clearItems();
        combo.addItem(kNoPrincipal);
        combo.setListIndex(0);
    }
    field(kTabs).setValue(kTaxpayerTab);
}

void Contribuyentes::onQueryUnload(bool& cancel, int mode)
{
    // The close box leaves like Cancelar: premises typed under a CUIT that
    // was never stored would belong to nobody.
    if (mode == 0 && !field(kCuit).text().isEmpty())
        removeOrphans();
}

void Contribuyentes::onUnload()
{
    GetNombre = field(kNombre).text();
}

// --- The CUIT ---------------------------------------------------------------------

QString Contribuyentes::cuitDigits()
{
    return QString(field(kCuit).text()).remove(u'-').trimmed();
}

void Contribuyentes::cuitNotice()
{
    // A notice only: the checks that stop the save are in Validate.
    static const QStringList prefixes = {QStringLiteral("20"), QStringLiteral("27"),
                                         QStringLiteral("30"), QStringLiteral("23"),
                                         QStringLiteral("33")};
    const QString notice = QStringLiteral("Número de CUIT incorrecto");
    QString cuit = field(kCuit).text();
    const bool badPrefix = !prefixes.contains(cuit.left(2));
    if (badPrefix)
        MsgBox(notice, Msg::Information, QStringLiteral("Mensaje..."));
    if (!IsValidCuit(cuit) && !badPrefix)
        MsgBox(notice, Msg::Information, QStringLiteral("Mensaje..."));
}

bool Contribuyentes::VerificaExistCuit()
{
    const QString cuit = field(kCuit).text();
    if (cuit.isEmpty())
        return false;
    return gAccess().GetInteger(
               QStringLiteral("SELECT count(*) as cant FROM contribuyentes WHERE cuit = '") +
               Sq(cuit) + u'\'') > 0;
}

bool Contribuyentes::refuseTakenCuit(const QString& cuit)
{
    if (CuitIsFree(cuit))
        return false;
    MsgBox(QStringLiteral("Cuit Repetido"), Msg::Information);
    field(kCuit).setText(kBlankCuit);
    setFocus(kCuit);
    return true;
}

// --- Aceptar, Cancelar -------------------------------------------------------------

void Contribuyentes::focusOnTab(int tab, const QString& name)
{
    field(kTabs).setValue(tab);
    setFocus(name);
}

bool Contribuyentes::Validate()
{
    const auto refuse = [this](const QString& message, const QString& name) {
        MsgBox(message, Msg::Exclamation, kAttention);
        focusOnTab(kTaxpayerTab, name);
        return false;
    };
    if (field(kCuit).clipText().isEmpty())
        return refuse(QStringLiteral("Debe especificar el Nº de CUIT."), kCuit);
    if (field(kNombre).text().trimmed().isEmpty())
        return refuse(QStringLiteral("Debe especificar el Apellido y Nombre ó Razón Social."),
                      kNombre);
    if (!ValidateCuitField(field(kCuit))) {
        focusOnTab(kTaxpayerTab, kCuit);
        field(kCuit).selectAll();
        return false;
    }
    // The placeholder "------------" counts as a choice: only a combo with
    // nothing selected at all stops the save.
    if (field(kPrincipal).listIndex() == -1) {
        MsgBox(QStringLiteral("Debe especificar un padrón principal para continuar."));
        focusOnTab(kPremisesTab, kPrincipal);
        return false;
    }
    return true;
}

bool Contribuyentes::GuardarContribuyente()
{
    // Failures are logged by the gateway; the unit of work the caller runs
    // this in tells whether they stood.
    const QString nombre = field(kNombre).text();
    const QString cuit = field(kCuit).text();
    if (NewRecord) {
        // Numbered in the same step as the insert: two workstations adding a
        // taxpayer at once never get the same id.
        const qint64 next =
            gAccess().NextKey(QStringLiteral("CONTRIBUYENTES"), QStringLiteral("IDCONTRIBUYENTE"));
        if (next < 0)
            return true; // the failure, logged, undoes the save
        const QString id = QString::number(next);
        QStringList values{id, nombre, cuit};
        gAccess().ExecuteNonQuery(QStringLiteral("INSERT INTO contribuyentes (idContribuyente, "
                                                 "ApellidoNombre, Cuit) VALUES (?,?,?);"),
                                  values);
        Id = id;
    } else if (isWholeNumber(Id)) {
        QStringList values{nombre, cuit};
        gAccess().ExecuteNonQuery(
            QStringLiteral("UPDATE Contribuyentes SET ApellidoNombre = ?, Cuit = ? Where "
                           "idContribuyente = ") +
                Id.trimmed(),
            values);
    }
    return true;
}

void Contribuyentes::aceptar()
{
    const QString typed = field(kCuit).text();
    if (NewRecord && typed.size() == 13 && typed != kBlankCuit && refuseTakenCuit(typed))
        return;
    m_cuitActual = field(kCuit).text();
    if (!Validate())
        return;
    const bool cuitChanged = m_cuitActual != m_cuitCargado;
    if (cuitChanged && refuseTakenCuit(m_cuitActual))
        return;
    // The taxpayer and its premises' CUIT stand together or not at all; a
    // save the database refuses leaves the window open as typed.
    const QString idAntes = Id;
    if (!SaveWhole([&] { return GuardarContribuyente() && seguirCuit(cuitChanged); })) {
        Id = idAntes;
        return;
    }
    Saved = true;
    unload();
}

bool Contribuyentes::seguirCuit(bool cuitChanged)
{
    if (!cuitChanged)
        return true;
    // Only the premises follow the CUIT; activities and declarations keep
    // theirs. A stored CUIT cannot be edited here, so the old one is the
    // empty CUIT of a new taxpayer.
    QString nuevo = m_cuitActual;
    QString viejo = m_cuitCargado;
    gAccess().Execute(QStringLiteral("UPDATE tPadronesComerciales SET cuit = '") +
                      Sq(nuevo.remove(u'-')) + QStringLiteral("' WHERE cuit = '") +
                      Sq(viejo.remove(u'-')) + u'\'');
    return true;
}

void Contribuyentes::cancelar()
{
    Saved = false;
    removeOrphans();
    unload();
}

void Contribuyentes::removeOrphans()
{
    const RecordsetPtr owner =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM CONTRIBUYENTES WHERE CUIT = '") +
                                Sq(field(kCuit).text()) + u'\'');
    if (!owner || owner->RecordCount() > 0)
        return; // a stored taxpayer, or no answer: nothing is removed
    const QString cuit = Sq(cuitDigits());
    for (const QString& table :
         {QStringLiteral("TPADRONESCOMERCIALES"), QStringLiteral("ACTIVIDADES_X_PADRONES")}) {
        const QString where = QStringLiteral(" WHERE CUIT = '") + cuit + u'\'';
        if (hasRows(QStringLiteral("SELECT * FROM ") + table + where))
            gAccess().Execute(QStringLiteral("DELETE FROM ") + table + where);
    }
}

// --- Loading --------------------------------------------------------------------------

void Contribuyentes::GetContribuyente()
{
    // A taxpayer not yet stored has no id: its fields stay as typed.
    if (!isWholeNumber(Id))
        return;
    const RecordsetPtr rs = gAccess().FillRecordSetReader(
        QStringLiteral("SELECT * FROM CONTRIBUYENTES WHERE IDCONTRIBUYENTE = ") + Id.trimmed() +
        u';');
    if (!rs || rs->EOF_())
        return;
    field(kNombre).setText(rs->Text(QStringLiteral("ApellidoNombre")));
    field(kCuit).setText(rs->Text(QStringLiteral("Cuit")));
    field(kNombre).setEnabled(false);
    field(kCuit).setEnabled(false);
    rs->Close();
}

void Contribuyentes::formatGridLocales()
{
    Field& grid = field(kGrid);
    grid.clearRows();
    grid.setHeader(QStringLiteral("Padrón|Objeto|Grupo|Categoría|Nombre de fantasía|"
                                  "Calle - Número|Localidad - Departamento|C.P.")
                       .split(u'|'));
}

void Contribuyentes::cargaGridLocales()
{
    formatGridLocales();
    const RecordsetPtr rs = gAccess().FillRecordSetReader(
        QStringLiteral("Select * from tPadronesComerciales where cuit = '") + Sq(cuitDigits()) +
        u'\'');
    Field& combo = field(kPrincipal);
    combo.clearItems();
    combo.addItem(kNoPrincipal);
    combo.setListIndex(0);
    QVector<QStringList> rows;
    for (; rs && !rs->EOF_(); rs->MoveNext()) {
        QStringList cells;
        for (const char* column : kGridColumns)
            cells << rs->Text(QString::fromLatin1(column));
        rows << cells;
        combo.addItem(comboEntry(*rs));
        if (!rs->IsNull(QStringLiteral("Principal")))
            combo.setListIndex(combo.listCount() - 1);
    }
    Field& grid = field(kGrid);
    grid.setRows(rows);
    if (!rows.isEmpty())
        grid.setCurrentRow(0); // the old grid stood on its first data row
    AutoSizeGridColumns(grid);
    SetComboDropWidth(combo);
}

// --- The premises --------------------------------------------------------------------

void Contribuyentes::choosePrincipal()
{
    // Written at once, before and regardless of Aceptar.
    const QString cuit = Sq(cuitDigits());
    const Field& combo = field(kPrincipal);
    const QString chosen = combo.itemText(combo.listIndex());
    const RecordsetPtr marked = gAccess().FillRecordSetReader(
        QStringLiteral("SELECT padron, objeto, nombre_fantasia FROM tPadronesComerciales WHERE "
                       "Principal = 'X' AND cuit = '") +
        cuit + u'\'');
    if (marked && !marked->EOF_() && comboEntry(*marked) == chosen)
        return;
    // The old mark goes only with the new one in place.
    SaveWhole([&] {
        if (marked && !marked->EOF_())
            gAccess().Execute(
                QStringLiteral("UPDATE tPadronesComerciales SET Principal = NULL WHERE cuit = '") +
                cuit + u'\'');
        // The keys are cut from the entry by position; the placeholder marks
        // nothing, so choosing it only clears the mark.
        gAccess().Execute(
            QStringLiteral("UPDATE tPadronesComerciales SET Principal = 'X' WHERE cuit = '") +
            cuit + QStringLiteral("' AND padron = '") + Sq(chosen.left(13)) +
            QStringLiteral("' AND objeto = '") + Sq(chosen.mid(14, 13)) + u'\'');
        return true;
    });
}

bool Contribuyentes::hasCurrentPremises()
{
    const Field& grid = field(kGrid);
    return grid.currentRow() >= 0 && grid.currentRow() < grid.rowCount();
}

void Contribuyentes::gridClicked()
{
    const Field& grid = field(kGrid);
    const bool premises = !grid.cell(grid.currentRow(), 1).isEmpty();
    field(kModificar).setEnabled(premises);
    field(kQuitar).setEnabled(premises);
    if (premises)
        field(kQuitarTodo).setEnabled(true);
}

void Contribuyentes::agregar()
{
    QString typed = field(kCuit).text();
    typed.remove(u'_').remove(u'-');
    if (typed.trimmed().isEmpty() || field(kNombre).text().trimmed().isEmpty())
        return;
    m_local.Cuit = cuitDigits();
    m_local.Padron.clear();
    m_local.Objeto.clear();
    m_local.Modificar = false;
    m_local.Opener = this;
    m_local.show(true);
    GetContribuyente();
    cargaGridLocales();
}

void Contribuyentes::modificar()
{
    if (!hasCurrentPremises())
        return;
    const Field& grid = field(kGrid);
    const int row = grid.currentRow();
    m_local.Cuit = cuitDigits();
    m_local.Padron = grid.cell(row, 0);
    m_local.Objeto = grid.cell(row, 1);
    m_local.Modificar = true;
    m_local.Opener = this;
    m_local.cargaDatos();
    m_local.show(true);
    GetContribuyente();
    cargaGridLocales();
}

void Contribuyentes::quitar()
{
    if (!hasCurrentPremises())
        return;
    const Field& grid = field(kGrid);
    // The question names the premises it deletes.
    if (MsgBox(QStringLiteral("Desea eliminar el Local Comercial?\nPadrón ") +
                   grid.cell(grid.currentRow(), 0) + QStringLiteral(" - Objeto N° ") +
                   grid.cell(grid.currentRow(), 1),
               Msg::YesNo + Msg::Question) != Msg::Yes)
        return;
    BorraLocal(grid.cell(grid.currentRow(), 0), grid.cell(grid.currentRow(), 1));
}

void Contribuyentes::quitarTodo()
{
    if (field(kGrid).rowCount() == 0)
        return;
    if (MsgBox(QStringLiteral("Desea eliminar todos los Locales Comerciales?\n") +
                   QString::number(field(kGrid).rowCount()) +
                   QStringLiteral(" del contribuyente ") + field(kCuit).text() + u' ' +
                   field(kNombre).text(),
               Msg::YesNo + Msg::Question) != Msg::Yes)
        return;
    BorraLocal(QString(), QString());
}

void Contribuyentes::BorraLocal(const QString& padron, const QString& objeto)
{
    if (hasDeclarations(padron, objeto)) {
        MsgBox(QStringLiteral("No puede eliminar un padrón que posea formularios cargados"),
               Msg::Information);
        return;
    }
    SaveWhole([&] {
        if (!padron.isEmpty() && !objeto.isEmpty()) {
            gAccess().Execute(
                QStringLiteral("Delete * from tPadronesComerciales where Padron = '") + Sq(padron) +
                QStringLiteral("' and Objeto = '") + Sq(objeto) + u'\'');
            return true;
        }
        // Every premises of the taxpayer; those with declarations are passed
        // over without a word. Their activities rows stay.
        const RecordsetPtr rs = gAccess().FillRecordSet(
            QStringLiteral("SELECT * FROM tPadronesComerciales WHERE cuit = '") + Sq(cuitDigits()) +
            u'\'');
        for (; rs && !rs->EOF_(); rs->MoveNext()) {
            const QString p = rs->Text(QStringLiteral("padron"));
            const QString o = rs->Text(QStringLiteral("objeto"));
            if (!hasDeclarations(p, o))
                gAccess().Execute(
                    QStringLiteral("Delete * from tPadronesComerciales where padron ='") + Sq(p) +
                    QStringLiteral("' and Objeto = '") + Sq(o) + u'\'');
        }
        return true;
    });
    GetContribuyente();
    cargaGridLocales();
}
