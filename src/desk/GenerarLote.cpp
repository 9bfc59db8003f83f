#include "GenerarLote.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

#include "GeneracionLote.h"
#include "UiPort.h"
#include "Util.h"

namespace {

const QString kGrid = QStringLiteral("gridContribuyentes");
const QString kSi = QStringLiteral("Sí");
const QString kTitulo = QStringLiteral("Atención !");

} // namespace

QString PeriodoAnterior()
{
    return QDate::currentDate().addMonths(-1).toString(QStringLiteral("MM-yyyy"));
}

GenerarLote::GenerarLote() : Controller(QStringLiteral("GenerarLote")) {}

void GenerarLote::design()
{
    setCaption(QStringLiteral("Generar período"));
    add(QStringLiteral("lblPeriodo"), FieldKind::Label, QStringLiteral("Período (mm-aaaa):"));
    add(QStringLiteral("txtPeriodo"), FieldKind::Text).setMask(QStringLiteral("##-####"));
    add(QStringLiteral("lblDestino"), FieldKind::Label, QStringLiteral("Seleccione el Destino:"));
    add(QStringLiteral("txtDestino"), FieldKind::Text, QDir::homePath());
    add(QStringLiteral("cmdBuscarDestino"), FieldKind::Button, QStringLiteral("..."));
    designSeleccion();
    add(QStringLiteral("chkPdf"), FieldKind::Check, QStringLiteral("Formularios impresos en PDF"))
        .setValue(1);
    add(QStringLiteral("pbProgreso"), FieldKind::Progress);
    add(QStringLiteral("lblEstado"), FieldKind::Label);
    add(QStringLiteral("gridResumen"), FieldKind::Grid)
        .setHeader({QStringLiteral("Resultado"), QStringLiteral("Detalle")});
    add(QStringLiteral("lblResumen"), FieldKind::Label);
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("Generar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("Cancelar"));

    on(QStringLiteral("cmdBuscarDestino"), Ev::Click, [this](EventArgs&) {
        const QString folder = BrowseForFolder(QStringLiteral("Buscar destino"));
        if (!folder.isEmpty())
            field(QStringLiteral("txtDestino")).setText(folder);
    });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { generar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { cancelar(); });
}

void GenerarLote::designSeleccion()
{
    add(kGrid, FieldKind::Grid)
        .setHeader(
            {QStringLiteral("Generar"), QStringLiteral("Contribuyente"), QStringLiteral("CUIT")});
    add(QStringLiteral("cmdTodos"), FieldKind::Button, QStringLiteral("Todos"));
    add(QStringLiteral("cmdNinguno"), FieldKind::Button, QStringLiteral("Ninguno"));
    on(kGrid, Ev::DblClick, [this](EventArgs& e) { marcar(e.index); });
    on(kGrid, Ev::KeyDown, [this](EventArgs& e) {
        if (e.key != 32 && e.key != KeyCode::Return)
            return;
        e.key = 0;
        marcar(field(kGrid).currentRow());
    });
    on(QStringLiteral("cmdTodos"), Ev::Click, [this](EventArgs&) { marcarTodos(true); });
    on(QStringLiteral("cmdNinguno"), Ev::Click, [this](EventArgs&) { marcarTodos(false); });
}

void GenerarLote::onLoad()
{
    field(QStringLiteral("txtPeriodo")).setText(PeriodoAnterior());
    field(QStringLiteral("txtDestino")).setText(QDir::homePath());
    m_contribuyentes.Cargar();
    m_orden = m_contribuyentes.Filtrar({}, BuscadorContribuyentes::PorNombre);
    QVector<QStringList> rows;
    for (int i : std::as_const(m_orden))
        rows.push_back({kSi, m_contribuyentes.at(i).nombre, m_contribuyentes.at(i).cuit});
    field(kGrid).setRows(std::move(rows));
}

void GenerarLote::marcar(int row)
{
    Field& grid = field(kGrid);
    if (row < 0 || row >= grid.rowCount() || m_corriendo)
        return;
    grid.setCell(row, 0, grid.cell(row, 0) == kSi ? QStringLiteral("No") : kSi);
}

void GenerarLote::marcarTodos(bool on)
{
    Field& grid = field(kGrid);
    for (int r = 0; r < grid.rowCount(); ++r)
        grid.setCell(r, 0, on ? kSi : QStringLiteral("No"));
}

void GenerarLote::cancelar()
{
    if (m_corriendo) {
        m_cancelar = true;
        return;
    }
    unload();
}

void GenerarLote::generar()
{
    if (m_corriendo)
        return;
    GeneracionLote lote;
    lote.Periodo = field(QStringLiteral("txtPeriodo")).text();
    lote.Destino = QDir::cleanPath(field(QStringLiteral("txtDestino")).text().trimmed());
    if (!GeneracionLote::PeriodoValido(lote.Periodo)) {
        MsgBox(QStringLiteral("El periodo ingresado es incorrecto, verifique por favor"),
               Msg::Exclamation, kTitulo);
        setFocus(QStringLiteral("txtPeriodo"));
        return;
    }
    const QFileInfo destino(lote.Destino);
    if (!destino.isDir() || !destino.isWritable()) {
        MsgBox(QStringLiteral("No se puede acceder a la unidad. Verifique por favor."),
               Msg::Exclamation, kTitulo);
        return;
    }
    Field& grid = field(kGrid);
    bool todos = true;
    for (int r = 0; r < grid.rowCount(); ++r) {
        if (grid.cell(r, 0) == kSi)
            lote.Ids << m_contribuyentes.at(m_orden.at(r)).id;
        else
            todos = false;
    }
    if (lote.Ids.isEmpty()) {
        MsgBox(QStringLiteral("Marque al menos un contribuyente."), Msg::Exclamation, kTitulo);
        return;
    }
    if (todos)
        lote.Ids.clear();
    lote.ConPdf = field(QStringLiteral("chkPdf")).checked();
    lote.Progreso = [this](int hechos, int total, const QString& estado) {
        Field& bar = field(QStringLiteral("pbProgreso"));
        bar.setMaximum(qMax(1, total));
        bar.setValue(hechos);
        field(QStringLiteral("lblEstado")).setText(estado);
        ui().yield();
        return !m_cancelar;
    };
    m_corriendo = true;
    m_cancelar = false;
    field(QStringLiteral("cmdAceptar")).setEnabled(false);
    const ResumenLote resumen = lote.Ejecutar();
    m_corriendo = false;
    field(QStringLiteral("cmdAceptar")).setEnabled(true);
    QVector<QStringList> rows;
    for (const QString& escrito : resumen.escritos)
        rows.push_back({QStringLiteral("Escrito"), escrito});
    for (const QString& omitido : resumen.omitidos)
        rows.push_back({QStringLiteral("Omitido"), omitido});
    field(QStringLiteral("gridResumen")).setRows(std::move(rows));
    field(QStringLiteral("lblResumen")).setText(resumen.Linea());
}
