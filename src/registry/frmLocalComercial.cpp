#include "frmLocalComercial.h"

#include "Busqueda.h"
#include "Contribuyentes.h"
#include "Globals.h"
#include "Numbers.h"
#include "SqlText.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

namespace {

const QString kTabs = QStringLiteral("SSTabLocalesComerciales");
const QString kPadron = QStringLiteral("txtPadron");
const QString kObjeto = QStringLiteral("txtObjeto");
const QString kGrupo = QStringLiteral("txtGrupo");
const QString kCategoria = QStringLiteral("txtCategoria");
const QString kRazonSocial = QStringLiteral("txtRazonSocial");
const QString kNombreFantasia = QStringLiteral("txtNombreFantasia");
const QString kGeneral = QStringLiteral("chkRegimenGeneral");
const QString kProcom = QStringLiteral("chkRegimenProcom");
const QString kPercepcion = QStringLiteral("chkPercepcion");
const QString kRetencion = QStringLiteral("chkRetencion");
const QString kCalleNumero = QStringLiteral("txtCalleNumero");
const QString kLocalidad = QStringLiteral("txtLocalidadDepartamento");
const QString kCP = QStringLiteral("txtCP");
const QString kSuscriptor = QStringLiteral("txtSuscriptor");
const QString kCaracter = QStringLiteral("txtCaracter");
const QString kAceptar = QStringLiteral("cmdAceptar");
const QString kCancelar = QStringLiteral("cmdCancelar");

const QString kAllActivities =
    QStringLiteral("SELECT IDTACTIVIDAD, NOMBRE FROM TACTIVIDADES ORDER BY NOMBRE");

// The text boxes of the screen and the columns of tPadronesComerciales they
// show.
const struct {
    const char* column;
    const QString& field;
} kTextColumns[] = {
    {"padron", kPadron},
    {"objeto", kObjeto},
    {"grupo", kGrupo},
    {"categoria", kCategoria},
    {"razon_social", kRazonSocial},
    {"nombre_fantasia", kNombreFantasia},
    {"suscriptor", kSuscriptor},
    {"caracter", kCaracter},
    {"calle_numero", kCalleNumero},
    {"localidad_departamento", kLocalidad},
    {"cp", kCP},
};

const QString kPremisesColumns = QStringLiteral(
    "cuit,padron,objeto,grupo,categoria,razon_social,nombre_fantasia,percepcion,retencion,"
    "regimen,suscriptor,caracter,calle_numero,localidad_departamento,cp");

// The activity columns of Actividades_x_padrones, principal first.
const char* const kActivityColumns[6][2] = {
    {"ActP", "ActP_Desc"}, {"Act1", "Act1_Desc"}, {"Act2", "Act2_Desc"},
    {"Act3", "Act3_Desc"}, {"Act4", "Act4_Desc"}, {"Act5", "Act5_Desc"},
};

QString keyFilter(const QString& cuit, const QString& padron, const QString& objeto)
{
    return QStringLiteral(" where cuit = '") + Sq(cuit) + QStringLiteral("' and padron = '") +
           Sq(padron) + QStringLiteral("' and objeto = '") + Sq(objeto) + u'\'';
}

QString quotedList(const QStringList& values)
{
    QStringList quoted;
    for (const QString& v : values)
        quoted << Quoted(v);
    return quoted.join(u',');
}

} // namespace

frmLocalComercial::frmLocalComercial() : Controller(QStringLiteral("frmLocalComercial")) {}

const std::array<frmLocalComercial::Activity, 6>& frmLocalComercial::activities()
{
    // The third and fifth secondary lines send the focus to Aceptar after a
    // code is found; the others leave it where the person moved it.
    static const std::array<Activity, 6> all = {{
        {QStringLiteral("txtIdPrincipal"), QStringLiteral("cmdPrincipal"),
         QStringLiteral("txtPrincipal"), false},
        {QStringLiteral("txtIdSecundaria1"), QStringLiteral("cmdSecundaria1"),
         QStringLiteral("txtSecundaria1"), false},
        {QStringLiteral("txtIdSecundaria2"), QStringLiteral("cmdSecundaria2"),
         QStringLiteral("txtSecundaria2"), false},
        {QStringLiteral("txtIdSecundaria3"), QStringLiteral("cmdSecundaria3"),
         QStringLiteral("txtSecundaria3"), true},
        {QStringLiteral("txtIdSecundaria4"), QStringLiteral("cmdSecundaria4"),
         QStringLiteral("txtSecundaria4"), false},
        {QStringLiteral("txtIdSecundaria5"), QStringLiteral("cmdSecundaria5"),
         QStringLiteral("txtSecundaria5"), true},
    }};
    return all;
}

QString frmLocalComercial::PadTo13(const QString& text)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    const qint64 number = trimmed.toLongLong(&ok);
    if (!ok || number < 0)
        return text; // not a figure: the pattern leaves it as it is
    return QStringLiteral("%1").arg(number, 13, 10, QChar(u'0'));
}

// --- Design -------------------------------------------------------------------

void frmLocalComercial::design()
{
    setCaption(QStringLiteral("Local Comercial"));
    add(kTabs, FieldKind::Tabs);
    designIdentification();
    designRegime();
    designActivities();
    designAddress();
    add(kAceptar, FieldKind::Button, QStringLiteral("&Aceptar"));
    add(kCancelar, FieldKind::Button, QStringLiteral("&Cancelar"));
    on(kAceptar, Ev::Click, [this](EventArgs&) { aceptar(); });
    on(kCancelar, Ev::Click, [this](EventArgs&) { unload(); });
}

void frmLocalComercial::designIdentification()
{
    add(kPadron, FieldKind::Text).setMaxLength(13);
    add(kObjeto, FieldKind::Text).setMaxLength(13);
    add(kGrupo, FieldKind::Text).setMaxLength(1);
    add(kCategoria, FieldKind::Text).setMaxLength(1);
    add(kRazonSocial, FieldKind::Text).setMaxLength(60);
    add(kNombreFantasia, FieldKind::Text).setMaxLength(60);

    for (const QString& name : {kPadron, kObjeto}) {
        on(name, Ev::KeyPress, [](EventArgs& e) { FilterDecimalKey(e.key, false); });
        on(name, Ev::Validate, [this](EventArgs& e) { e.cancel = VerificaPadron(); });
    }
    on(kPadron, Ev::LostFocus,
       [this](EventArgs&) { field(kPadron).setText(PadTo13(field(kPadron).text())); });
    on(kCategoria, Ev::KeyPress, [](EventArgs& e) { FilterRateKey(e.key, false); });
    on(kGrupo, Ev::KeyUp, [this](EventArgs& e) {
        // the group is one letter from A to H; any other key empties it
        const bool letter = e.key >= 'A' && e.key <= 'H';
        field(kGrupo).setText(letter ? QString(QChar(e.key)) : QString());
    });
    for (const QString& name : {kRazonSocial, kNombreFantasia}) {
        on(name, Ev::KeyPress, [this](EventArgs& e) {
            if (e.key == KeyCode::Return)
                sendTab();
            FilterLetterKey(e.key, true);
        });
    }
}

void frmLocalComercial::designRegime()
{
    add(kGeneral, FieldKind::Check, QStringLiteral("Régimen General"));
    add(kProcom, FieldKind::Check, QStringLiteral("Régimen PROCOM"));
    add(kPercepcion, FieldKind::Check, QStringLiteral("Agente de Percepción"));
    add(kRetencion, FieldKind::Check, QStringLiteral("Agente de Retención"));
    on(kGeneral, Ev::Click, [this](EventArgs&) { regimeClicked(kGeneral, kProcom); });
    on(kProcom, Ev::Click, [this](EventArgs&) { regimeClicked(kProcom, kGeneral); });
}

void frmLocalComercial::designActivities()
{
    const auto& all = activities();
    for (int i = 0; i < int(all.size()); ++i) {
        const Activity& a = all.at(i);
        add(a.code, FieldKind::Text).setMaxLength(6);
        add(a.button, FieldKind::Button, QStringLiteral("..."));
        Field& description = add(a.description, FieldKind::Text);
        description.setEnabled(false);
        description.setLocked(true);
        on(a.code, Ev::KeyPress, [](EventArgs& e) { FilterDecimalKey(e.key, false); });
        on(a.code, Ev::LostFocus, [this, i](EventArgs&) { lookupByCode(activities().at(i)); });
        on(a.button, Ev::Click, [this, i](EventArgs&) { lookupByButton(i); });
    }
}

void frmLocalComercial::designAddress()
{
    add(kCalleNumero, FieldKind::Text).setMaxLength(65);
    add(kLocalidad, FieldKind::Text).setMaxLength(50);
    add(kCP, FieldKind::Text).setMaxLength(8);
    add(kSuscriptor, FieldKind::Text);
    add(kCaracter, FieldKind::Text);

    on(kCP, Ev::KeyPress, [](EventArgs& e) { FilterLetterKey(e.key, true); });
    on(kCP, Ev::LostFocus, [this](EventArgs&) {
        // The category is checked here, on leaving the postal code, as it
        // always was; the message does not hold the focus.
        const QString categoria = field(kCategoria).text();
        const double value = Val(categoria);
        if (!categoria.isEmpty() && (value < 1 || value > 7))
            MsgBox(QStringLiteral("El valor ingresado es incorecto. Valores aceptados: números "
                                  "del 1 al 7, o vacío.-"),
                   Msg::Information);
    });
    for (const QString& name : {kRazonSocial, kNombreFantasia, kCalleNumero, kLocalidad}) {
        on(name, Ev::LostFocus,
           [this, name](EventArgs&) { field(name).setText(field(name).text().toUpper()); });
    }
}

void frmLocalComercial::onLoad()
{
    m_snapshot.fill(QString());
    if (Modificar) {
        field(kPadron).setLocked(true);
        field(kObjeto).setLocked(true);
    } else {
        field(kCP).setText(QStringLiteral("9180"));
        field(kLocalidad).setText(QStringLiteral("VALDO - CAPITAL"));
    }
    field(kTabs).setValue(0);
}

// --- Regime -----------------------------------------------------------------------

void frmLocalComercial::regimeClicked(const QString& clicked, const QString& other)
{
    if (field(clicked).checked() && field(other).checked())
        field(other).setValue(0);
}

QString frmLocalComercial::regimen()
{
    if (field(kGeneral).checked())
        return QStringLiteral("0");
    if (field(kProcom).checked())
        return QStringLiteral("1");
    return QStringLiteral("2");
}

void frmLocalComercial::setRegimen(const QString& value)
{
    // Any other stored value leaves both boxes as they were.
    const QString v = value.isEmpty() ? QStringLiteral("0") : value;
    if (v == QLatin1String("0") || v == QLatin1String("1") || v == QLatin1String("2")) {
        field(kGeneral).setValue(v == QLatin1String("0") ? 1 : 0);
        field(kProcom).setValue(v == QLatin1String("1") ? 1 : 0);
    }
}

// --- Padrón and objeto ----------------------------------------------------------

bool frmLocalComercial::VerificaPadron()
{
    Field& padron = field(kPadron);
    Field& objeto = field(kObjeto);
    padron.setText(PadTo13(padron.text()));
    objeto.setText(PadTo13(objeto.text()));
    if (Modificar || padron.text().trimmed().isEmpty())
        return false;
    // The pair is unique across all taxpayers, not within this one.
    const int count = gAccess().GetInteger(
        QStringLiteral("SELECT count(*) as cant FROM tPadronesComerciales WHERE Padron = '") +
        Sq(padron.text()) + QStringLiteral("' and Objeto = '") + Sq(objeto.text()) + u'\'');
    if (count <= 0)
        return false;
    MsgBox(QStringLiteral("Ya existe el Padrón / Objeto especificado. Verifique.-"),
           Msg::Information);
    setFocus(kPadron);
    padron.selectAll();
    return true;
}

// --- Activities -------------------------------------------------------------------

QString frmLocalComercial::searchActivity(QString* code)
{
    Busqueda search;
    search.SelectCommandText = kAllActivities;
    search.show(true);
    *code = search.Id;
    return search.Description;
}

void frmLocalComercial::lookupByCode(const Activity& activity)
{
    Field& code = field(activity.code);
    Field& description = field(activity.description);
    const QString typed = code.text().trimmed();
    if (typed.isEmpty()) {
        description.setText(QString());
        refreshSnapshot();
        return;
    }
    bool number = false;
    const qint64 id = typed.toLongLong(&number);
    const RecordsetPtr rs =
        number ? gAccess().FillRecordSetReader(
                     QStringLiteral("SELECT * FROM tActividades WHERE idTActividad = ") +
                     QString::number(id))
               : nullptr;
    if (rs && !rs->EOF_()) {
        description.setText(rs->Text(QStringLiteral("NOMBRE")));
        rs->Close();
        refreshSnapshot();
        if (activity.focusAceptarWhenFound)
            setFocus(kAceptar);
        return;
    }
    QString chosen;
    const QString text = searchActivity(&chosen);
    code.setText(text.isEmpty() ? QString() : chosen);
    description.setText(text);
    refreshSnapshot();
    if (activity.focusAceptarWhenFound)
        setFocus(activity.code);
}

void frmLocalComercial::lookupByButton(int index)
{
    const Activity& activity = activities().at(index);
    if (index == 0)
        m_snapshot.fill(QString());
    QString chosen;
    const QString text = searchActivity(&chosen);
    if (!text.isEmpty()) {
        field(activity.code).setText(chosen);
        field(activity.description).setText(text);
        refreshSnapshot();
    }
    if (field(activity.code).text().trimmed().isEmpty())
        return;
    if (index == 0)
        setFocus(activities().at(1).code);
    else
        sendTab();
}

void frmLocalComercial::refreshSnapshot()
{
    for (int i = 0; i < int(m_snapshot.size()); ++i)
        m_snapshot[i] = field(activities().at(i).code).text().trimmed();
}

bool frmLocalComercial::snapshotHasRepeat() const
{
    for (int i = 0; i < int(m_snapshot.size()); ++i)
        for (int j = 0; j < int(m_snapshot.size()); ++j)
            if (i != j && !m_snapshot[i].isEmpty() && m_snapshot[i] == m_snapshot[j])
                return true;
    return false;
}

// --- Aceptar and validation ---------------------------------------------------------

void frmLocalComercial::aceptar()
{
    if (snapshotHasRepeat()) {
        MsgBox(QStringLiteral("Está ingresando una actividad repetida. Verifique los datos por "
                              "favor."),
               Msg::Critical, QStringLiteral("Atención..."));
    } else if (const QString reason = ValidarLocal(); !reason.isEmpty()) {
        MsgBox(reason, Msg::Information);
    } else if (Modificar) {
        actualizarDatos();
    } else {
        insertarDatos();
    }
    // Cleared whatever happened: a second Aceptar sees no repeat until a
    // lookup takes the codes again.
    m_snapshot.fill(QString());
}

QString frmLocalComercial::ValidarLocal()
{
    const struct {
        const QString& field;
        const char* message;
    } required[] = {
        {kPadron, "Debe ingresar un N° de Padrón Comercial"},
        {kObjeto, "Debe ingresar un N° de Objeto"},
        {kGrupo, "Debe ingresar un Grupo"},
        {kRazonSocial, "Debe ingresar una Razón Social"},
    };
    for (const auto& r : required)
        if (field(r.field).text().trimmed().isEmpty())
            return QString::fromUtf8(r.message);
    fillDefaults();
    if (!field(kGeneral).checked() && !field(kProcom).checked() && !field(kPercepcion).checked() &&
        !field(kRetencion).checked())
        return QStringLiteral("La selección actual no es válida.\n"
                              "Debe seleccionar Régimen / Agente de Percepción / Agente de "
                              "Retención");
    const Activity& principal = activities().at(0);
    if (field(principal.code).text().trimmed().isEmpty() ||
        field(principal.description).text().trimmed().isEmpty())
        return QStringLiteral("Debe ingresar una actividad");
    QString refusal;
    if (!confirmBlank(kSuscriptor, QStringLiteral("No se definió un Suscriptor. ¿Desea continuar?"),
                      QStringLiteral("Ingrese un Suscriptor para continuar."), &refusal) ||
        !confirmBlank(kCaracter, QStringLiteral("No se definió el Carácter. ¿Desea continuar?"),
                      QStringLiteral("Ingrese el Carácter para continuar."), &refusal))
        return refusal;
    return QString();
}

bool frmLocalComercial::confirmBlank(const QString& name, const QString& question,
                                     const QString& refusal, QString* answer)
{
    if (!field(name).text().trimmed().isEmpty())
        return true;
    if (MsgBox(question, Msg::YesNo + Msg::Question, QStringLiteral("Local Comercial")) == Msg::Yes)
        return true;
    *answer = refusal;
    return false;
}

void frmLocalComercial::fillDefaults()
{
    for (const QString& name : {kNombreFantasia, kCP, kLocalidad, kCalleNumero})
        if (field(name).text().trimmed().isEmpty())
            field(name).setText(QStringLiteral("0"));
}

// --- Reading and writing ------------------------------------------------------------

QStringList frmLocalComercial::premisesValues()
{
    auto text = [this](const QString& name) { return field(name).text().trimmed(); };
    auto flag = [this](const QString& name) { return QString::number(field(name).value()); };
    return {Cuit.trimmed(),
            text(kPadron),
            text(kObjeto),
            text(kGrupo),
            text(kCategoria),
            text(kRazonSocial),
            text(kNombreFantasia),
            flag(kPercepcion),
            flag(kRetencion),
            regimen(),
            text(kSuscriptor),
            text(kCaracter),
            text(kCalleNumero),
            text(kLocalidad),
            text(kCP)};
}

QStringList frmLocalComercial::activityValues()
{
    QStringList values{Cuit.trimmed(), field(kPadron).text().trimmed(),
                       field(kObjeto).text().trimmed()};
    for (const Activity& a : activities())
        values << field(a.code).text().trimmed() << field(a.description).text().trimmed();
    return values;
}

void frmLocalComercial::cargaDatos()
{
    RecordsetPtr rs = gAccess().FillRecordSetReader(
        QStringLiteral("select * from tPadronesComerciales") + keyFilter(Cuit, Padron, Objeto));
    if (rs && !rs->EOF_()) {
        for (const auto& c : kTextColumns)
            field(c.field).setText(NullToText(rs->Field(QString::fromLatin1(c.column))));
        for (const auto& [column, box] :
             {std::pair{"percepcion", kPercepcion}, std::pair{"retencion", kRetencion}}) {
            const QString flag = rs->Text(QString::fromLatin1(column));
            if (IsNumericText(flag))
                field(box).setValue(int(Val(flag)));
        }
        setRegimen(rs->Text(QStringLiteral("regimen")));
        rs->Close();
    }
    rs = gAccess().FillRecordSetReader(QStringLiteral("Select * from Actividades_x_padrones") +
                                       keyFilter(Cuit, Padron, Objeto));
    if (rs && !rs->EOF_()) {
        for (int i = 0; i < 6; ++i) {
            const Activity& a = activities().at(i);
            field(a.code).setText(rs->Text(QString::fromLatin1(kActivityColumns[i][0])));
            field(a.description).setText(rs->Text(QString::fromLatin1(kActivityColumns[i][1])));
        }
        rs->Close();
    }
}

void frmLocalComercial::insertActivities()
{
    // A premises without its principal activity has no activities row.
    if (field(activities().at(0).code).text().trimmed().isEmpty())
        return;
    QStringList columns{QStringLiteral("cuit"), QStringLiteral("padron"), QStringLiteral("objeto")};
    for (const auto& pair : kActivityColumns)
        columns << QString::fromLatin1(pair[0]) << QString::fromLatin1(pair[1]);
    gAccess().Execute(QStringLiteral("insert into Actividades_x_padrones (") + columns.join(u',') +
                      QStringLiteral(") values (") + quotedList(activityValues()) + u')');
}

void frmLocalComercial::insertarDatos()
{
    // The id the next new taxpayer would get, not the owner's: premises join
    // their taxpayer by CUIT alone, and this value is only carried.
    QString id =
        gAccess().GetString(QStringLiteral("SELECT MAX(IDCONTRIBUYENTE + 1) FROM CONTRIBUYENTES"));
    bool number = false;
    id.toLongLong(&number);
    if (!number || id == QLatin1String("-1"))
        id = QStringLiteral("1");
    // The premises and its activities stand together or not at all; a save
    // the database refuses leaves the window open as typed.
    if (!SaveWhole([&] {
            gAccess().Execute(QStringLiteral("insert into tPadronesComerciales (idContribuyente,") +
                              kPremisesColumns + QStringLiteral(") values (") + id + u',' +
                              quotedList(premisesValues()) + u')');
            insertActivities();
            return true;
        }))
        return;
    refreshOpener();
    unload();
}

void frmLocalComercial::actualizarDatos()
{
    // The row is found by the keys it was opened with; the activities row is
    // replaced, not updated.
    QStringList values = premisesValues();
    QString assignments = kPremisesColumns;
    assignments.replace(u',', QStringLiteral(" = ?,"));
    if (!SaveWhole([&] {
            gAccess().ExecuteNonQuery(QStringLiteral("UPDATE tPadronesComerciales SET ") +
                                          assignments + QStringLiteral(" = ? where padron = '") +
                                          Sq(Padron) + QStringLiteral("' and objeto = '") +
                                          Sq(Objeto) + u'\'',
                                      values);
            gAccess().Execute(
                QStringLiteral("DELETE FROM Actividades_x_padrones WHERE Padron = '") + Sq(Padron) +
                QStringLiteral("' AND Objeto = '") + Sq(Objeto) + u'\'');
            insertActivities();
            return true;
        }))
        return;
    refreshOpener();
    unload();
}

void frmLocalComercial::refreshOpener()
{
    if (!Opener)
        return;
    Opener->GetContribuyente();
    Opener->cargaGridLocales();
}
