#include "EscritorioMensual.h"

#include <QDate>

#include "CalendarioPresentaciones.h"
#include "UiPort.h"

namespace {

const QString kGrid = QStringLiteral("gridEscritorio");

} // namespace

EscritorioMensual::EscritorioMensual() : VentanaAnual(QStringLiteral("EscritorioMensual")) {}

void EscritorioMensual::design()
{
    setCaption(QStringLiteral("Escritorio del año"));
    designAnio();
    add(kGrid, FieldKind::Grid);
    designCerrar();
    abrirFilas(kGrid, [this](int row) { abrir(row); });
}

QString EscritorioMensual::Resumen(const EstadoPresentaciones& estado, const QString& periodo)
{
    if (estado.premisasAbiertas(periodo).isEmpty())
        return {};
    int faltan = 0;
    for (const FilaPresentacion& fila : estado.filas())
        faltan += fila.celda(periodo).estado == EstadoMes::Pendiente ? 1 : 0;
    return faltan == 0 ? QStringLiteral("✓") : QStringLiteral("−") + QString::number(faltan);
}

void EscritorioMensual::onLoad()
{
    field(QStringLiteral("lblReferencias"))
        .setText(QStringLiteral("✓ todos los formularios ofrecidos del mes presentados · "
                                "−n: n formularios ofrecidos sin presentar · vacío: mes sin "
                                "abrir"));
    m_contribuyentes.Cargar();
    m_orden = m_contribuyentes.Filtrar({}, BuscadorContribuyentes::PorNombre);
    m_estados.clear();
    m_estados.reserve(m_orden.size());
    ui().setBusy(true);
    for (int i : std::as_const(m_orden)) {
        EstadoPresentaciones estado;
        estado.Cargar(m_contribuyentes.at(i).id);
        m_estados.push_back(std::move(estado));
    }
    ui().setBusy(false);
    if (Anio <= 0)
        Anio = QDate::currentDate().year();
    cambiarAnio(0);
}

void EscritorioMensual::mostrar()
{
    QStringList header{QStringLiteral("Contribuyente"), QStringLiteral("CUIT")};
    for (int mes = 1; mes <= 12; ++mes)
        header << MesCorto(mes);
    QVector<QStringList> rows;
    rows.reserve(m_orden.size());
    for (int r = 0; r < m_orden.size(); ++r) {
        const ContribuyenteListado& c = m_contribuyentes.at(m_orden.at(r));
        QStringList cells{c.nombre, c.cuit};
        for (int mes = 1; mes <= 12; ++mes)
            cells << Resumen(m_estados.at(r),
                             QStringLiteral("%1-%2").arg(mes, 2, 10, QLatin1Char('0')).arg(Anio));
        rows.push_back(cells);
    }
    Field& grid = field(kGrid);
    grid.setHeader(header);
    grid.setRows(std::move(rows));
}

void EscritorioMensual::abrir(int row)
{
    if (row < 0 || row >= m_orden.size())
        return;
    CalendarioPresentaciones calendario;
    calendario.IdContribuyente = m_contribuyentes.at(m_orden.at(row)).id;
    calendario.Anio = Anio;
    calendario.show(true);
    m_estados[row].Cargar(calendario.IdContribuyente);
    mostrar();
}
