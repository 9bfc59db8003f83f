#include "FormularioDDJJ.h"

#include "import/ZoImport.h"

#include "DetalleDialog.h"
#include "EditLock.h"
#include "Globals.h"
#include "Numbers.h"
#include "Recordset.h"
#include "SqlText.h"
#include "Tovak.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "Validar.h"
#include "ZoAccess.h"
#include "output/GenerarDisco.h"

namespace {

const QString kGrid = QStringLiteral("gridFormulario");
const QString kFecha = QStringLiteral("txtFechaDDJJ");
const QString kMaskFecha = QStringLiteral("__-__-____");

// The header fields, read-only, and their captions.
const struct {
    const char* name;
    const char* caption;
} kEncabezado[] = {
    {"txtPadron", "N° de Padrón"},
    {"txtObjeto", "N° de Objeto"},
    {"txtPeriodo", "Periodo Liquidado (mes-año)"},
    {"txtRazonSocial", "Razón Social"},
    {"txtDomicilio", "Domicilio"},
    {"txtContribuyente", "Contribuyente"},
};

const struct {
    const char* name;
    const char* caption;
} kBotones[] = {
    {"cmdAgregar", "Agregar"},     {"cmdModificar", "Modificar"}, {"cmdQuitar", "Quitar"},
    {"cmdQuitarT", "Quitar Todo"}, {"cmdImportar", "Importar"},   {"cmdGenerar", "Generar"},
    {"cmdAceptar", "Aceptar"},     {"cmdCancelar", "Cancelar"},
};

} // namespace

FormularioDDJJ::FormularioDDJJ(DefinicionFormulario definicion)
    : DeclarationForm(definicion.id), m_def(std::move(definicion))
{
}

FormularioDDJJ::~FormularioDDJJ() = default;

// --- parameter string and version key ---------------------------------------

bool FormularioDDJJ::EsVerdadero(const QString& text)
{
    return text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 ||
           text.compare(QLatin1String("Verdadero"), Qt::CaseInsensitive) == 0;
}

QString FormularioDDJJ::NormalizarFecha(const QString& text)
{
    const QString t = text.trimmed();
    if (t.isEmpty() || t == kMaskFecha || t.compare(QLatin1String("NO"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("0");
    // A rectification with data carries the time it was begun; the version's
    // key is its day.
    return t.left(10);
}

QString FormularioDDJJ::param(const QString& key) const
{
    return ReadParameter(Parametros, key);
}

void FormularioDDJJ::fijarParam(const QString& key, const QString& value)
{
    if (Parametros.contains(key + u'=', Qt::CaseInsensitive)) {
        Parametros = SetParameter(Parametros, key, value);
        return;
    }
    if (!Parametros.isEmpty() && !Parametros.endsWith(u';'))
        Parametros += u';';
    Parametros += key + u'=' + value + u';';
}

QString FormularioDDJJ::codigo() const
{
    return param(QStringLiteral("Codigo"));
}
QString FormularioDDJJ::fecha() const
{
    return NormalizarFecha(param(QStringLiteral("FechaRectificativa")));
}
QString FormularioDDJJ::ctrl() const
{
    const QString c = param(QStringLiteral("ctrl"));
    return c.isEmpty() ? QStringLiteral("0") : c;
}

QString FormularioDDJJ::mes() const
{
    const QString p = param(QStringLiteral("Periodo"));
    return p.size() > 2 ? p.left(2) : p.rightJustified(2, u'0');
}

QString FormularioDDJJ::anio() const
{
    const QString p = param(QStringLiteral("Periodo"));
    return p.size() > 2 ? p.right(4) : param(QStringLiteral("Anio"));
}

QString FormularioDDJJ::padron() const
{
    return param(QStringLiteral("Padron")).left(13);
}
QString FormularioDDJJ::objeto() const
{
    return param(QStringLiteral("Padron")).mid(26, 13);
}

QString FormularioDDJJ::idContribuyente()
{
    if (!ContribuyenteId.isEmpty())
        return ContribuyenteId;
    return gAccess().GetString(
        QStringLiteral("SELECT idContribuyente FROM tPadronesComerciales WHERE padron = ") +
        Quoted(padron()) + QStringLiteral(" AND objeto = ") + Quoted(objeto()));
}

void FormularioDDJJ::ReconstruirCodigo()
{
    const QString per = texto(QStringLiteral("txtPeriodo"));
    const bool rect = field(QStringLiteral("optRectificativa")).checked();
    fijarParam(QStringLiteral("Codigo"), texto(QStringLiteral("txtPadron")) + per.left(2) +
                                             per.right(4) + texto(QStringLiteral("txtObjeto")) +
                                             (rect ? u'R' : u'O'));
}

QString FormularioDDJJ::filtroVersion() const
{
    return QStringLiteral("Codigo = ") + Quoted(codigo()) +
           QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(fecha()) +
           QStringLiteral(" AND ctrl = ") + Quoted(ctrl());
}

QString FormularioDDJJ::predicadoRectificativa(bool rectificativa) const
{
    return rectificativa ? QStringLiteral("AND Rectificativa in ('Verdadero','True') ")
                         : QStringLiteral("AND Rectificativa in ('False','Falso') ");
}

double FormularioDDJJ::numero(const QString& campo)
{
    return TextToDouble(texto(campo));
}

QString FormularioDDJJ::cero()
{
    return ZeroIfEmpty(QString());
}

QString FormularioDDJJ::Monto(double value)
{
    return LocaleFixed(value, 2, true);
}

QString FormularioDDJJ::primerMonto() const
{
    for (const CampoFormulario& c : m_def.campos)
        if (c.tipo == TipoCampo::Ingresado)
            return c.campo;
    return QStringLiteral("cmdAceptar");
}

void FormularioDDJJ::Vaciar(const QString& campo)
{
    if (texto(campo).isEmpty())
        fijar(campo, cero());
}

// --- design -----------------------------------------------------------------

void FormularioDDJJ::design()
{
    setCaption(m_def.caption);
    designEncabezado();
    designCuerpo();
    designBotones();
}

void FormularioDDJJ::designEncabezado()
{
    for (const auto& h : kEncabezado) {
        Field& f = add(QString::fromUtf8(h.name), FieldKind::Text);
        f.setLocked(true);
        add(QStringLiteral("lbl") + QString::fromUtf8(h.name).mid(3), FieldKind::Label,
            QString::fromUtf8(h.caption));
        on(f.name(), Ev::GotFocus, [this](EventArgs&) { DeshabilitarDetalle(); });
    }
    add(QStringLiteral("optOriginal"), FieldKind::Option, QStringLiteral("Original"))
        .setGroup(QStringLiteral("tipo"));
    add(QStringLiteral("optRectificativa"), FieldKind::Option, QStringLiteral("Rectificativa"))
        .setGroup(QStringLiteral("tipo"));
    add(kFecha, FieldKind::Text).setMask(QStringLiteral("##-##-####"));
    add(QStringLiteral("lblFechaDDJJ"), FieldKind::Label,
        QStringLiteral("DDJJ Rectificativa de la Presentada el"));
    on(QStringLiteral("optOriginal"), Ev::Click, [this](EventArgs&) { optRectificativa(false); });
    on(QStringLiteral("optRectificativa"), Ev::Click,
       [this](EventArgs&) { optRectificativa(true); });
    on(kFecha, Ev::GotFocus, [this](EventArgs&) { DeshabilitarDetalle(); });
    on(kFecha, Ev::Validate, [this](EventArgs& e) { salirFechaDDJJ(e); });
    if (!m_def.tablaDetalle.isEmpty()) {
        add(kGrid, FieldKind::Grid);
        on(kGrid, Ev::Click, [this](EventArgs&) {
            field(QStringLiteral("cmdModificar")).setEnabled(true);
            field(QStringLiteral("cmdQuitar")).setEnabled(true);
        });
    }
}

void FormularioDDJJ::designCuerpo()
{
    for (const CampoFormulario& c : m_def.campos) {
        Field& f = add(c.campo, FieldKind::Text);
        add(QStringLiteral("lbl") + c.campo.mid(3), FieldKind::Label, c.caption)
            .setVisible(c.visible);
        f.setVisible(c.visible);
        const QString name = c.campo;
        if (c.tipo == TipoCampo::Derivado) {
            f.setLocked(true);
            continue;
        }
        if (c.tipo == TipoCampo::Periodo) {
            f.setMask(QStringLiteral("##-####"));
            on(name, Ev::Validate, [this, name](EventArgs& e) {
                const Field& fp = field(name);
                if (fp.isBlankMask() || TextToDate(QStringLiteral("01-") + fp.text()).isValid())
                    return;
                MsgBox(QStringLiteral("La fecha ingresa es incorrecta."), Msg::Exclamation,
                       QStringLiteral("Atención..."));
                e.cancel = true;
            });
            continue;
        }
        on(name, Ev::GotFocus, [this, name](EventArgs&) { field(name).selectAll(); });
        const bool reescribible = c.tipo == TipoCampo::Reescribible;
        on(name, Ev::KeyPress, [this, name, reescribible](EventArgs& e) {
            Field& f = field(name);
            if (!f.enabled() || f.locked())
                e.key = 0;
            else if (reescribible)
                teclaReescribible(e.key);
            else
                gValidar().TextBox(e.key, f, 2, 2);
        });
        on(name, Ev::Validate, [this, name](EventArgs& e) { reglaMonto(name, e); });
        on(name, Ev::LostFocus, [this, name](EventArgs&) {
            fijar(name, FormatAmount(ZeroIfEmpty(texto(name))));
            alSalirMonto(name);
        });
    }
}

void FormularioDDJJ::teclaReescribible(int& key)
{
    // A worked-out amount typed over takes digits and the decimal symbol
    // only, with as many decimals as typed: leaving it rounds to two.
    if (key == KeyCode::Return) {
        key = 0;
        sendTab();
        return;
    }
    FilterDecimalKey(key, true);
}

void FormularioDDJJ::designBotones()
{
    const bool conDetalle = !m_def.tablaDetalle.isEmpty();
    for (const auto& b : kBotones) {
        const QString name = QString::fromUtf8(b.name);
        const bool deDetalle = name != QLatin1String("cmdGenerar") &&
                               name != QLatin1String("cmdAceptar") &&
                               name != QLatin1String("cmdCancelar");
        if (deDetalle && !conDetalle)
            continue;
        add(name, FieldKind::Button, QString::fromUtf8(b.caption));
    }
    add(QStringLiteral("prgImportar"), FieldKind::Progress).setVisible(false);
    if (conDetalle) {
        on(QStringLiteral("cmdAgregar"), Ev::Click, [this](EventArgs&) { cmdAgregar(); });
        on(QStringLiteral("cmdModificar"), Ev::Click, [this](EventArgs&) { cmdModificar(); });
        on(QStringLiteral("cmdQuitar"), Ev::Click, [this](EventArgs&) { cmdQuitar(); });
        on(QStringLiteral("cmdQuitarT"), Ev::Click, [this](EventArgs&) { cmdQuitarT(); });
        on(QStringLiteral("cmdImportar"), Ev::Click, [this](EventArgs&) { Importar(); });
    }
    on(QStringLiteral("cmdGenerar"), Ev::Click, [this](EventArgs&) { cmdGenerar(); });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { cmdAceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { cmdCancelar(); });
}

// --- load -------------------------------------------------------------------

void FormularioDDJJ::onLoad()
{
    // The close box is refused in onQueryUnload: a form is left by its buttons.
    // Open for editing on another workstation: here for consultation only,
    // decided before anything is read or copied into the version.
    if (param(QStringLiteral("Nuevo")) != QLatin1String("Consultar")) {
        m_bloqueo = m_def.id + u' ' + padron() + objeto() + periodo() + u' ' +
                    param(QStringLiteral("ctrl"));
        const QString otro = EditLock::Acquire(m_bloqueo);
        if (!otro.isEmpty()) {
            m_bloqueo.clear();
            MsgBox(EditLock::HeldText(otro), Msg::Information);
            fijarParam(QStringLiteral("Nuevo"), QStringLiteral("Consultar"));
        }
    }
    tomarCabecera();
    cargaDatos(1);
    PropGrid();
    DeshabilitarDetalle();
    if (EsVerdadero(param(QStringLiteral("ConDatos")))) {
        field(QStringLiteral("optOriginal")).setEnabled(false);
        field(QStringLiteral("optRectificativa")).setEnabled(false);
        field(kFecha).setEnabled(false);
    }
    if (param(QStringLiteral("Nuevo")) == QLatin1String("Consultar"))
        BloquearConsulta();
}

void FormularioDDJJ::onUnload()
{
    if (!m_bloqueo.isEmpty())
        EditLock::Release(m_bloqueo);
    m_bloqueo.clear();
}

void FormularioDDJJ::tomarCabecera()
{
    // A form is reused between openings: a record of another premises is old.
    const bool propia =
        Cabecera.Padron == padron() && Cabecera.Objeto == objeto() && Cabecera.Periodo == periodo();
    if (propia)
        return;
    if (Encabezado.Padron == padron() && Encabezado.Objeto == objeto() &&
        Encabezado.PeriodoCompleto() == periodo()) {
        Cabecera = EncabezadoFormulario{padron(),
                                        objeto(),
                                        periodo(),
                                        Encabezado.RazonSocial,
                                        Encabezado.Domicilio,
                                        Encabezado.Contribuyente,
                                        Encabezado.Cuit,
                                        {}};
        for (auto it = Encabezado.Montos.cbegin(); it != Encabezado.Montos.cend(); ++it)
            Cabecera.Montos.insert(it.key().toLower(), it.value());
        return;
    }
    Cabecera = EncabezadoFormulario::Leer(padron(), objeto(), periodo());
}

void FormularioDDJJ::onQueryUnload(bool& cancel, int mode)
{
    if (mode == 0)
        cancel = true;
}

void FormularioDDJJ::BloquearConsulta()
{
    for (Field* f : fields())
        if (f->kind() == FieldKind::Text || f->kind() == FieldKind::Button ||
            f->kind() == FieldKind::Option)
            f->setEnabled(false);
    field(QStringLiteral("cmdCancelar")).setEnabled(true);
}

void FormularioDDJJ::cargaDatos(int tipo)
{
    resolverFechas();
    if (tipo != 3 && debeCopiar())
        CopiarDetallePrevio();
    // From here on the version's date is the new one, when there is one.
    const QString nueva = NormalizarFecha(param(QStringLiteral("FechaRectificativaNueva")));
    if (nueva != QLatin1String("0"))
        fijarParam(QStringLiteral("FechaRectificativa"), nueva);
    leerDetalle();
    cargarMontos(tipo);
    llenarEncabezado();
    if (EsVerdadero(param(QStringLiteral("ConDatos"))) ||
        EsVerdadero(param(QStringLiteral("Rectificativa")))) {
        field(QStringLiteral("optOriginal")).setEnabled(false);
        field(QStringLiteral("optRectificativa")).setEnabled(false);
        field(kFecha).setEnabled(false);
    }
    RecalcularTotales();
}

void FormularioDDJJ::resolverFechas()
{
    const QString anterior = NormalizarFecha(param(QStringLiteral("FechaRectificativa")));
    fijarParam(QStringLiteral("FechaRectificativa"), anterior);
    const bool rect = EsVerdadero(param(QStringLiteral("Rectificativa")));
    const QString base = padron() + mes() + anio() + objeto();
    fijarParam(QStringLiteral("Codigo"), base + (rect ? u'R' : u'O'));
    // The version a new rectification comes from.
    m_previa.codigo = base + (anterior != QLatin1String("0") ? u'R' : u'O');
    m_previa.fecha = anterior;
    m_previa.ctrl = QString::number(ctrl().toInt() - 1);
}

bool FormularioDDJJ::debeCopiar()
{
    if (m_def.tablaDetalle.isEmpty())
        return false;
    const QString detalle = param(QStringLiteral("DetalleNuevo"));
    if (!detalle.isEmpty() && !EsVerdadero(detalle))
        return false;
    // Lines already copied into this version are not copied twice.
    return EsVerdadero(param(QStringLiteral("Nuevo"))) &&
           EsVerdadero(param(QStringLiteral("Rectificativa"))) &&
           EsVerdadero(param(QStringLiteral("ConDatos"))) &&
           NormalizarFecha(param(QStringLiteral("FechaRectificativaNueva"))) !=
               QLatin1String("0") &&
           !HayRegistros();
}

void FormularioDDJJ::CopiarDetallePrevio()
{
    const RecordsetPtr rs =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + m_def.tablaDetalle +
                                QStringLiteral("  WHERE CODIGO = ") + Quoted(m_previa.codigo) +
                                QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(m_previa.fecha) +
                                QStringLiteral(" AND ctrl = ") + Quoted(m_previa.ctrl) +
                                QStringLiteral(" ORDER BY CodigoDetalle ASC"));
    if (!rs || rs->RecordCount() == 0)
        return;
    const QStringList columnas = rs->FieldNames().mid(1);
    const int ultima = rs->FieldCount() - 1;
    // The lines of the version before come over all together or not at all:
    // a rectification with some of them only would look whole.
    // Copied once: another workstation may have begun the same version and
    // copied them already.
    const QString destino =
        QStringLiteral("Codigo = ") + Quoted(codigo()) + QStringLiteral(" AND FECHARECTIFICATIVA = ") +
        Quoted(NormalizarFecha(param(QStringLiteral("FechaRectificativaNueva")))) +
        QStringLiteral(" AND ctrl = ") + Quoted(ctrl());
    SaveWhole([&] {
        gAccess().ReserveKeys(m_def.tablaDetalle, destino);
        if (gAccess().GetInteger(QStringLiteral("SELECT count(*) FROM ") + m_def.tablaDetalle +
                                 QStringLiteral(" WHERE ") + destino) == 0)
            copiarLineas(*rs, columnas, ultima);
        return true;
    });
}

void FormularioDDJJ::copiarLineas(Recordset& rs, const QStringList& columnas, int ultima)
{
    const QString nueva = NormalizarFecha(param(QStringLiteral("FechaRectificativaNueva")));
    for (; !rs.EOF_(); rs.MoveNext()) {
        QStringList valores;
        for (int i = 1; i <= ultima; ++i) {
            QString v = rs.Text(i);
            if (i == 1)
                v = codigo();
            else if (i == 2)
                v = nueva;
            else if (i == ultima)
                v = ctrl();
            else
                v = valorCopiado(i, v);
            valores << Quoted(v);
        }
        gAccess().Execute(QStringLiteral("INSERT INTO ") + m_def.tablaDetalle.toUpper() +
                          QStringLiteral(" (") + columnas.join(QStringLiteral(", ")) +
                          QStringLiteral(") VALUES (") + valores.join(QStringLiteral(", ")) + u')');
    }
}

void FormularioDDJJ::leerDetalle()
{
    iniciarSumas();
    if (m_def.tablaDetalle.isEmpty())
        return;
    const QString desde = QStringLiteral(" FROM ") + m_def.tablaDetalle + QStringLiteral(" WHERE ") +
                          filtroVersion();
    // The lines as texts straight from the database: thousands of them are
    // not first held as values of every kind.
    struct Linea final : LineaDetalle {
        QStringList columnas;
        const TextRow* fila = nullptr;
        QString texto(const QString& columna) const override
        {
            const int i = ColumnIndex(columnas, columna);
            return i < 0 ? QString() : fila->text(i);
        }
    } linea;
    QVector<int> indices;
    QVector<QStringList> filas;
    const bool leidas = gAccess().ReadTexts(
        QStringLiteral("SELECT *") + desde + QStringLiteral(" ORDER BY CodigoDetalle ASC"),
        [&](const TextRow& fila) {
            if (linea.columnas.isEmpty()) {
                linea.columnas = fila.columns();
                for (const QString& c : m_def.columnasGrilla)
                    indices << ColumnIndex(linea.columnas, c);
            }
            QStringList celdas;
            celdas.reserve(indices.size());
            for (int i : indices)
                celdas << (i < 0 ? QString() : fila.text(i));
            // Amounts show in one format, typed or imported; the rows keep
            // what they hold.
            for (int c : m_def.columnasDerecha)
                if (c < celdas.size())
                    celdas[c] = FormatAmount(celdas.at(c));
            filas << celdas;
            linea.fila = &fila;
            sumarLinea(linea);
        });
    if (!leidas) {
        // Lines read only in part are not shown, nor added up, as if whole.
        filas.clear();
        iniciarSumas();
    }
    field(kGrid).setRows(std::move(filas));
    HabilitoGrilla();
}

void FormularioDDJJ::llenarEncabezado()
{
    fijar(QStringLiteral("txtPadron"), padron());
    fijar(QStringLiteral("txtObjeto"), objeto());
    fijar(QStringLiteral("txtPeriodo"), periodo());
    fijar(QStringLiteral("txtRazonSocial"), Cabecera.RazonSocial);
    fijar(QStringLiteral("txtDomicilio"), Cabecera.Domicilio);
    fijar(QStringLiteral("txtContribuyente"), Cabecera.Contribuyente);
    const bool rect = EsVerdadero(param(QStringLiteral("Rectificativa")));
    field(QStringLiteral("optOriginal")).setValue(rect ? 0 : 1);
    field(QStringLiteral("optRectificativa")).setValue(rect ? 1 : 0);
    field(kFecha).setEnabled(rect);
    const QString f = fecha();
    fijar(kFecha, f == QLatin1String("0") ? kMaskFecha : f);
}

void FormularioDDJJ::PropGrid()
{
    if (m_def.tablaDetalle.isEmpty())
        return;
    Field& grid = field(kGrid);
    grid.rightAligned = m_def.columnasDerecha;
    // The lines were just shown under these titles (cargaDatos): the grid is
    // drawn again only when they are not there yet.
    if (grid.header() != m_def.titulosGrilla)
        grid.setHeader(m_def.titulosGrilla);
    AutoSizeGridColumns(grid);
}

bool FormularioDDJJ::HayRegistros()
{
    if (m_def.tablaDetalle.isEmpty())
        return false;
    return gAccess().GetInteger(QStringLiteral("SELECT count(*) as cant FROM ") +
                                m_def.tablaDetalle + QStringLiteral(" WHERE ") + filtroVersion()) >
           0;
}

void FormularioDDJJ::HabilitoGrilla()
{
    Field& grid = field(kGrid);
    grid.setEnabled(grid.rowCount() > 0);
}

void FormularioDDJJ::DeshabilitarDetalle()
{
    if (m_def.tablaDetalle.isEmpty())
        return;
    field(QStringLiteral("cmdModificar")).setEnabled(false);
    field(QStringLiteral("cmdQuitar")).setEnabled(false);
}

// --- header of the screen ------------------------------------------------------

void FormularioDDJJ::optRectificativa(bool rectificativa)
{
    field(kFecha).setEnabled(rectificativa);
    if (rectificativa) {
        Parametros.replace(QStringLiteral("Rectificativa=False"),
                           QStringLiteral("Rectificativa=True"));
        Parametros.replace(QStringLiteral("Rectificativa=Falso"),
                           QStringLiteral("Rectificativa=True"));
    } else {
        Parametros.replace(QStringLiteral("Rectificativa=True"),
                           QStringLiteral("Rectificativa=False"));
        Parametros.replace(QStringLiteral("Rectificativa=Verdadero"),
                           QStringLiteral("Rectificativa=Falso"));
    }
    // ConDatos is left as it stands: the form never changed it here.
    QString c = codigo();
    if (!c.isEmpty())
        fijarParam(QStringLiteral("Codigo"), c.left(c.size() - 1) + (rectificativa ? u'R' : u'O'));
}

void FormularioDDJJ::salirFechaDDJJ(EventArgs& e)
{
    Field& f = field(kFecha);
    if (f.isBlankMask())
        return;
    const QDate d = TextToDate(f.text());
    if (!d.isValid()) {
        MsgBox(QStringLiteral("La fecha ingresa es incorrecta."), Msg::Exclamation,
               QStringLiteral("Atención..."));
        e.cancel = true;
        return;
    }
    if (f.text().right(4).toInt() < anio().toInt()) {
        MsgBox(QStringLiteral("Periodo Incorrecto"), Msg::Exclamation);
        f.setText(kMaskFecha);
        e.cancel = true;
        return;
    }
    fijarParam(QStringLiteral("FechaRectificativa"), d.toString(QStringLiteral("dd-MM-yyyy")));
}

bool FormularioDDJJ::ExigirFechaRectificativa()
{
    if (field(QStringLiteral("optRectificativa")).checked() && field(kFecha).isBlankMask()) {
        MsgBox(QStringLiteral("Debe ingresar una fecha de rectificativa"), Msg::Information);
        setFocus(kFecha);
        return false;
    }
    return true;
}

void FormularioDDJJ::reglaMonto(const QString& campo, EventArgs& e)
{
    const QString t = texto(campo);
    if (t.startsWith(u',') || t.startsWith(u'.')) {
        MsgBox(m_def.mensajeMonto, Msg::Exclamation, m_def.tituloMonto);
        fijar(campo, cero());
        e.cancel = true;
        return;
    }
    e.cancel = rechazaMonto(campo);
}

void FormularioDDJJ::alSalirMonto(const QString& campo)
{
    DeshabilitarDetalle();
    RecalcularTotales();
}

// --- lines ------------------------------------------------------------------

bool FormularioDDJJ::existeDetalle(const QString& tabla)
{
    const RecordsetPtr rs =
        gAccess().FillRecordSet(QStringLiteral("SELECT CODIGO FROM ") + tabla +
                                QStringLiteral(" WHERE CODIGO = ") + Quoted(codigo()));
    return rs && rs->RecordCount() > 0;
}

void FormularioDDJJ::Importar()
{
    ReconstruirCodigo();
    if (!ValidateRectificationDate(Parametros, texto(kFecha))) {
        MsgBox(QStringLiteral("Periodo Incorrecto"), Msg::Exclamation);
        return;
    }
    if (!gValidar().FechaPeriodo(field(kFecha), mes().toInt(), anio().toInt(), 1, false))
        return;
    ZoImport::ImportarDesde(*this, Parametros, &field(QStringLiteral("prgImportar")));
    // Lines stored before a stop stay: the grid and totals are reloaded
    // whatever the outcome.
    cargaDatos(2);
    PropGrid();
    AutoSizeGridColumns(field(kGrid));
    RecalcularTotales();
}

void FormularioDDJJ::cmdAgregar()
{
    if (!ExigirFechaRectificativa())
        return;
    ReconstruirCodigo();
    if (validaFechaAlAgregar() && !existeDetalle(m_def.tablaPruebaAgregar) &&
        !ValidateRectificationDate(Parametros, texto(kFecha))) {
        MsgBox(QStringLiteral("Periodo Incorrecto"), Msg::Exclamation);
        return;
    }
    if (!gValidar().FechaPeriodo(field(kFecha), mes().toInt(), anio().toInt(), 1, false))
        return;
    // The old grid counted its title row among its rows.
    if (m_def.limiteFilas > 0 && field(kGrid).rowCount() + 1 > m_def.limiteFilas) {
        MsgBox(m_def.mensajeLimite, Msg::Information);
        return;
    }
    if (param(QStringLiteral("DetalleNuevo")).isEmpty())
        Parametros.prepend(QStringLiteral("DetalleNuevo=True;"));
    else
        Parametros.replace(QStringLiteral("DetalleNuevo=False"),
                           QStringLiteral("DetalleNuevo=True"));
    abrirDetalle(QString());
    DeshabilitarDetalle();
}

QString FormularioDDJJ::cadenaDetalle(const QString& id) const
{
    QString s = QStringLiteral("Padron=") + padron() + QStringLiteral(" - Objeto N° ") + objeto() +
                QStringLiteral(";Anio=") + anio() + QStringLiteral(";Periodo=") + periodo();
    if (!id.isEmpty())
        s += QStringLiteral(";Id=") + id;
    s += QStringLiteral(";Rectificativa=") + param(QStringLiteral("Rectificativa")) +
         QStringLiteral(";Codigo=") + codigo() + QStringLiteral(";Formulario=") + m_def.id +
         QStringLiteral(";FechaRectificativa=") + fecha() + QStringLiteral(";Codigo=") + codigo();
    if (id.isEmpty())
        s += QStringLiteral(";DetalleNuevo=Verdadero");
    return s + QStringLiteral(";ctrl=") + ctrl() + u';';
}

void FormularioDDJJ::abrirDetalle(const QString& id)
{
    if (!m_def.crearDetalle)
        return;
    std::unique_ptr<DetalleDialog> dialog = m_def.crearDetalle();
    Field& grid = field(kGrid);
    if (grid.rowCount() > 0) {
        const QStringList& ultima = grid.row(grid.rowCount() - 1);
        dialog->Ultimo = ultima.mid(0, m_def.columnasUltimo);
    }
    dialog->Parametros = cadenaDetalle(id);
    dialog->EsAgrega = id.isEmpty();
    dialog->show(true);
    if (dialog->isLoaded())
        dialog->unload();
    // The dialog's string becomes the form's: it holds no Nuevo nor ConDatos,
    // so the lines of a previous version are never copied again.
    const QString vuelta = dialog->Parametros;
    if (id.isEmpty())
        Parametros = vuelta;
    else
        Parametros = (dialog->Aceptado ? QStringLiteral("DetalleNuevo=Verdadero;")
                                       : QStringLiteral("DetalleNuevo=Falso;")) +
                     vuelta;
    cargaDatos(2);
    PropGrid();
    if (grid.rowCount() == 0) {
        HabilitoGrilla();
        Limpio();
    }
    setFocus(primerMonto());
}

void FormularioDDJJ::cmdModificar()
{
    Field& grid = field(kGrid);
    const int row = grid.currentRow();
    if (row < 0 || row >= grid.rowCount() || grid.cell(row, 0).trimmed().isEmpty())
        return;
    abrirDetalle(grid.cell(row, 0));
}

void FormularioDDJJ::cmdQuitar()
{
    Field& grid = field(kGrid);
    const int row = grid.currentRow();
    if (row < 0 || row >= grid.rowCount())
        return;
    // The question names the line it deletes: its cells as the grid shows them.
    QStringList linea;
    for (const QString& celda : grid.row(row))
        if (!celda.trimmed().isEmpty())
            linea << celda.trimmed();
    if (MsgBox(QStringLiteral("Desea eliminar el registro?\n") + linea.join(QStringLiteral("  ")),
               Msg::YesNo) != Msg::Yes)
        return;
    if (EsVerdadero(param(QStringLiteral("ConDatos"))))
        Parametros.replace(QStringLiteral("Nuevo=True"), QStringLiteral("Nuevo=False"));
    if (!escribir(QStringLiteral("DELETE FROM ") + m_def.tablaDetalle +
                  QStringLiteral(" WHERE Codigo = ") + Quoted(codigo()) +
                  QStringLiteral(" AND CodigoDetalle = ") + Quoted(grid.cell(row, 0)) +
                  QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(fecha()) +
                  QStringLiteral(" AND ctrl = ") + Quoted(ctrl())))
        return;
    despuesDeBorrarLinea();
    cargaDatos(3);
    PropGrid();
    // The row clicked is gone: another click chooses the next one.
    DeshabilitarDetalle();
    setFocus(primerMonto());
}

QString FormularioDDJJ::nombrada() const
{
    return QStringLiteral("Formulario ") + windowName() + QStringLiteral(" del período ") +
           periodo() + QStringLiteral(" - Padrón ") + padron() + QStringLiteral(" Objeto ") +
           objeto();
}

void FormularioDDJJ::cmdQuitarT()
{
    if (MsgBox(QStringLiteral("Desea eliminar todos los registros?\n") +
                   QString::number(field(kGrid).rowCount()) + QStringLiteral(" líneas del ") +
                   nombrada(),
               Msg::YesNo) != Msg::Yes)
        return;
    if (EsVerdadero(param(QStringLiteral("ConDatos"))))
        Parametros.replace(QStringLiteral("Nuevo=True"), QStringLiteral("Nuevo=False"));
    if (!escribir(QStringLiteral("DELETE * FROM ") + m_def.tablaDetalle +
                  QStringLiteral(" WHERE ") + filtroVersion()))
        return;
    field(kGrid).clearRows();
    cargaDatos(3);
    PropGrid();
    despuesDeBorrarTodo();
}

// --- accepting, generating, cancelling ------------------------------------------

void FormularioDDJJ::cmdAceptar()
{
    if ((m_def.exigeFechaAlAceptar && !ExigirFechaRectificativa()) || !antesDeFecha())
        return;
    if (!gValidar().FechaPeriodo(field(kFecha), mes().toInt(), anio().toInt(), 1, false))
        return;
    if (!CamposRequeridos(false) || !VerificarSocio())
        return;
    GuardarFormulario(false);
}

void FormularioDDJJ::cmdGenerar()
{
    ReconstruirCodigo();
    if (!versionIniciada() && !ValidateRectificationDate(Parametros, texto(kFecha))) {
        MsgBox(QStringLiteral("Periodo Incorrecto"), Msg::Exclamation);
        setFocus(kFecha);
        return;
    }
    // Nothing to generate from an empty grid: the old grid's one blank row.
    if (!m_def.tablaDetalle.isEmpty() && field(kGrid).rowCount() < 2 &&
        field(kGrid).cell(0, 1).trimmed().isEmpty())
        return;
    if (!CamposRequeridos(true))
        return;
    const bool obligatoria = field(QStringLiteral("optRectificativa")).checked();
    if (!gValidar().FechaPeriodo(field(kFecha), mes().toInt(), anio().toInt(), 1, obligatoria))
        return;
    if (!VerificarSocio())
        return;
    GuardarFormulario(true);
}

bool FormularioDDJJ::versionIniciada()
{
    return m_def.tablaDetalle.isEmpty() || HayRegistros();
}

void FormularioDDJJ::GuardarFormulario(bool generar)
{
    if (!m_def.tablaDetalle.isEmpty() && !HayRegistros() && field(kGrid).rowCount() == 0) {
        MsgBox(QStringLiteral("No puede guardar un formulario sin comprobantes"), Msg::Information);
        if (MsgBox(QStringLiteral("Desea eliminar el formulario?\n") + nombrada(), Msg::YesNo) ==
                Msg::Yes &&
            SaveWhole([this] {
                gAccess().Execute(QStringLiteral("DELETE FROM ") + m_def.tabla +
                                  QStringLiteral(" WHERE ") + filtroVersion());
                borrarRegistro();
                return true;
            }))
            cmdCancelar();
        return;
    }
    // The header row and its registration stand together or not at all; a
    // save the database refuses leaves the form open as typed.
    if (!SaveWhole([this] {
            GrabarFormulario();
            return true;
        }))
        return;
    if (!generar) {
        unload();
        return;
    }
    Parametros.replace(QStringLiteral("Nuevo=True"), QStringLiteral("Nuevo=False"));
    Parametros.replace(QStringLiteral("Nuevo=Verdadero"), QStringLiteral("Nuevo=Falso"));
    abrirGenerarDisco();
}

QVector<QPair<QString, QString>> FormularioDDJJ::columnasEncabezado()
{
    QVector<QPair<QString, QString>> out;
    for (const CampoFormulario& c : m_def.campos)
        if (!c.columna.isEmpty())
            out.append({c.columna, texto(c.campo)});
    return out;
}

void FormularioDDJJ::GrabarFormulario()
{
    ReconstruirCodigo();
    const bool rect = field(QStringLiteral("optRectificativa")).checked();
    const QString valorRect = rect ? QStringLiteral("Verdadero") : QStringLiteral("False");
    const QString f = NormalizarFecha(texto(kFecha));
    if (f != QLatin1String("0"))
        fijarParam(QStringLiteral("FechaRectificativa"), f);
    const QString per = texto(QStringLiteral("txtPeriodo"));
    const QString pad = texto(QStringLiteral("txtPadron"));
    const QString obj = texto(QStringLiteral("txtObjeto"));
    // The versions of one declaration are registered one at a time across
    // workstations, so that two never take the same number.
    const QString declaracion = DeclarationScope(pad, obj, per);
    gAccess().ReserveKeys(m_def.tabla, declaracion);
    const QString identidad =
        m_def.tieneCodigo
            ? QStringLiteral("CODIGO = ") + Quoted(codigo()) +
                  QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(f)
            : QStringLiteral("Padron = ") + Quoted(pad) + QStringLiteral(" AND Objeto = ") + Quoted(obj) +
                  QStringLiteral(" AND Periodo = ") + Quoted(per) + u' ' + predicadoRectificativa(rect);
    const RecordsetPtr existe = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM ") + m_def.tabla + QStringLiteral(" WHERE ") + identidad +
        QStringLiteral(" AND ctrl = ") + Quoted(ctrl()));
    const QVector<QPair<QString, QString>> montos = columnasEncabezado();
    if (existe && existe->RecordCount() > 0) {
        QStringList sets;
        if (m_def.tieneCodigo)
            sets << QStringLiteral("Codigo = ") + Quoted(codigo())
                 << QStringLiteral("FechaRectificativa = ") + Quoted(f);
        for (const auto& m : montos)
            sets << m.first + QStringLiteral(" = ") + Quoted(m.second);
        gAccess().Execute(
            QStringLiteral("UPDATE ") + m_def.tabla + QStringLiteral(" SET ") +
            sets.join(QStringLiteral(", ")) + QStringLiteral(" WHERE Padron = ") + Quoted(pad) +
            QStringLiteral(" AND Objeto = ") + Quoted(obj) + QStringLiteral(" and Periodo = ") + Quoted(per) +
            u' ' + predicadoRectificativa(rect) + QStringLiteral(" AND fecharectificativa = ") +
            Quoted(f) + QStringLiteral(" AND ctrl = ") + Quoted(ctrl()));
        return;
    }
    if (gAccess().GetInteger(QStringLiteral("SELECT count(*) FROM ") + m_def.tabla +
                             QStringLiteral(" WHERE ") + declaracion +
                             QStringLiteral(" AND ctrl = ") + Quoted(ctrl())) > 0)
        TomarSiguienteVersion(declaracion);
    QVector<QPair<QString, QString>> valores{{QStringLiteral("Padron"), pad},
                                             {QStringLiteral("Objeto"), obj},
                                             {QStringLiteral("Periodo"), per},
                                             {QStringLiteral("Rectificativa"), valorRect},
                                             {QStringLiteral("FechaRectificativa"), f}};
    if (m_def.tieneCodigo)
        valores.prepend({QStringLiteral("Codigo"), codigo()});
    valores += montos;
    valores += columnasAlta();
    valores.append({QStringLiteral("ctrl"), ctrl()});
    QStringList cols, vals;
    for (const auto& v : valores) {
        cols << v.first;
        vals << Quoted(v.second);
    }
    gAccess().Execute(QStringLiteral("INSERT INTO ") + m_def.tabla + QStringLiteral(" (") +
                      cols.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
                      vals.join(QStringLiteral(", ")) + u')');
    gAccess().Execute(
        QStringLiteral("INSERT INTO TPadrones_Formularios (Padron,Objeto,Periodo,idFormulario,"
                       "Rectificativa, FechaRectificativa,ctrl) VALUES (") +
        QStringList{Quoted(pad), Quoted(obj), Quoted(per), Quoted(m_def.id), Quoted(valorRect), Quoted(f), Quoted(ctrl())}.join(
            QStringLiteral(", ")) +
        u')');
}

void FormularioDDJJ::TomarSiguienteVersion(const QString& declaracion)
{
    // Another workstation registered a version under this number while this
    // one was being made: this one takes the next, and its lines go with it.
    const qint64 siguiente = gAccess().NextKey(m_def.tabla, QStringLiteral("ctrl"), declaracion);
    if (siguiente < 0)
        return;
    if (!m_def.tablaDetalle.isEmpty())
        gAccess().Execute(QStringLiteral("UPDATE ") + m_def.tablaDetalle +
                          QStringLiteral(" SET ctrl = ") + Quoted(QString::number(siguiente)) +
                          QStringLiteral(" WHERE ") + filtroVersion());
    fijarParam(QStringLiteral("ctrl"), QString::number(siguiente));
}

bool FormularioDDJJ::escribir(const QString& sql)
{
    return SaveWhole([&sql] { return gAccess().Execute(sql); });
}

void FormularioDDJJ::borrarRegistro()
{
    gAccess().Execute(QStringLiteral("DELETE FROM TPadrones_Formularios WHERE Padron = ") +
                      Quoted(padron()) + QStringLiteral(" AND Objeto = ") + Quoted(objeto()) +
                      QStringLiteral(" AND Periodo = ") + Quoted(periodo()) +
                      QStringLiteral(" AND idFormulario = ") + Quoted(m_def.id) + u' ' +
                      predicadoRectificativa(EsVerdadero(param(QStringLiteral("Rectificativa")))) +
                      QStringLiteral(" AND ctrl = ") + Quoted(ctrl()));
}

void FormularioDDJJ::cmdCancelar()
{
    if (param(QStringLiteral("Nuevo")) == QLatin1String("Consultar")) {
        unload();
        return;
    }
    // A form without lines has no "Importar" and nothing typed to throw away:
    // it is registered only when saved.
    const bool enEdicion =
        !m_def.tablaDetalle.isEmpty() && field(QStringLiteral("cmdImportar")).enabled();
    if (enEdicion) {
        const bool rect = EsVerdadero(param(QStringLiteral("Rectificativa")));
        const QString sql =
            QStringLiteral("SELECT Id FROM ") + m_def.tabla + QStringLiteral(" WHERE Padron = ") +
            Quoted(padron()) + QStringLiteral(" AND Objeto = ") + Quoted(objeto()) +
            QStringLiteral(" AND Periodo = ") + Quoted(periodo()) + u' ' + predicadoRectificativa(rect) +
            QStringLiteral(" AND FECHARECTIFICATIVA = ") + Quoted(fecha()) +
            QStringLiteral(" AND ctrl = ") + Quoted(ctrl());
        const RecordsetPtr rs = gAccess().FillRecordSet(sql);
        const bool guardado = rs && rs->RecordCount() > 0;
        // A version never accepted loses what was typed into it; a saved one
        // keeps its header row and its lines.
        if (!guardado || !HayRegistros()) {
            gAccess().Execute(QStringLiteral("DELETE * FROM ") + m_def.tablaDetalle +
                              QStringLiteral(" WHERE ") + filtroVersion());
            borrarRegistro();
        }
    }
    unload();
}

// --- partner forms ------------------------------------------------------------

FormularioDDJJ::RegistroSocio FormularioDDJJ::UltimoRegistro(const QString& idFormulario)
{
    RegistroSocio r;
    const RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM TPadrones_Formularios WHERE Padron = ") + Quoted(padron()) +
        QStringLiteral(" AND Objeto = ") + Quoted(objeto()) + QStringLiteral(" AND Periodo = ") +
        Quoted(periodo()) + QStringLiteral(" AND idFormulario = ") + Quoted(idFormulario) +
        QStringLiteral(" ORDER BY Id DESC"));
    if (!rs || rs->EOF_())
        return r;
    r.existe = true;
    r.rectificativa = EsVerdadero(rs->Text(QStringLiteral("Rectificativa")));
    r.fecha = rs->Text(QStringLiteral("FechaRectificativa"));
    r.ctrl = rs->Text(QStringLiteral("ctrl"));
    return r;
}

QString FormularioDDJJ::CifraSocio(const QString& tabla, const QString& columna,
                                   const RegistroSocio& r, QString& rect)
{
    QString sql = QStringLiteral("SELECT ") + columna + QStringLiteral(" FROM ") + tabla +
                  QStringLiteral(" WHERE Padron = ") + Quoted(padron()) +
                  QStringLiteral(" AND Objeto = ") + Quoted(objeto()) +
                  QStringLiteral(" AND Periodo = ") + Quoted(periodo());
    rect.clear();
    if (r.rectificativa) {
        sql += QStringLiteral(" AND FechaRectificativa = ") + Quoted(r.fecha);
        rect = QStringLiteral(" (Rectif. ") + r.fecha + u')';
    }
    return gAccess().GetString(sql + QStringLiteral(" ORDER BY Id DESC"));
}

void FormularioDDJJ::abrirGenerarDisco()
{
    GenerarDisco dialog;
    dialog.Parametros = Parametros;
    dialog.show(true);
}
