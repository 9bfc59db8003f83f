#include "CalendarioPresentaciones.h"

#include <QDate>

#include "Globals.h"
#include "ZoAccess.h"

namespace {

const QString kGrid = QStringLiteral("gridCalendario");

QString periodo(int mes, int anio)
{
    return QStringLiteral("%1-%2").arg(mes, 2, 10, QLatin1Char('0')).arg(anio);
}

} // namespace

CalendarioPresentaciones::CalendarioPresentaciones()
    : VentanaAnual(QStringLiteral("CalendarioPresentaciones"))
{
}

void CalendarioPresentaciones::design()
{
    setCaption(QStringLiteral("Calendario de presentaciones"));
    add(QStringLiteral("lblContribuyente"), FieldKind::Label);
    designAnio();
    add(kGrid, FieldKind::Grid);
    designCerrar();
    abrirFilas(kGrid, [this](int row) { abrir(row, field(kGrid).currentColumn()); });
}

void CalendarioPresentaciones::onLoad()
{
    const QString id = QString::number(IdContribuyente);
    field(QStringLiteral("lblContribuyente"))
        .setText(
            QStringLiteral("Contribuyente: ") +
            gAccess().GetString(QStringLiteral("SELECT ApellidoNombre FROM Contribuyentes WHERE "
                                               "idContribuyente = ") +
                                id) +
            QStringLiteral(" - ") +
            gAccess().GetString(
                QStringLiteral("SELECT Cuit FROM Contribuyentes WHERE idContribuyente = ") + id));
    field(QStringLiteral("lblReferencias"))
        .setText(QStringLiteral("✓ presentado (original) · R n: rectificado n veces · con el "
                                "total de la declaración · Pendiente: ofrecido y no presentado · "
                                "vacío: mes sin abrir o formulario no ofrecido"));
    m_estado.Cargar(IdContribuyente);
    if (Anio <= 0) {
        const QStringList anios = m_estado.anios();
        const QString actual = QString::number(QDate::currentDate().year());
        Anio = (anios.isEmpty() || anios.contains(actual) ? actual : anios.last()).toInt();
    }
    cambiarAnio(0);
}

void CalendarioPresentaciones::mostrar()
{
    QStringList header{QStringLiteral("Formulario / Padrón-Objeto")};
    for (int mes = 1; mes <= 12; ++mes)
        header << MesCorto(mes);
    QVector<QStringList> rows;
    for (const FilaPresentacion& fila : m_estado.filas()) {
        QStringList cells{EstadoPresentaciones::Rotulo(fila)};
        for (int mes = 1; mes <= 12; ++mes)
            cells << EstadoPresentaciones::Texto(fila.celda(periodo(mes, Anio)));
        rows.push_back(cells);
    }
    Field& grid = field(kGrid);
    grid.setHeader(header);
    grid.setRows(std::move(rows));
}

CeldaPresentacion CalendarioPresentaciones::Celda(int row, int mes) const
{
    if (row < 0 || row >= m_estado.filas().size())
        return {};
    return m_estado.filas().at(row).celda(periodo(mes, Anio));
}

void CalendarioPresentaciones::abrir(int row, int column)
{
    const CeldaPresentacion celda = Celda(row, column);
    if (celda.clave.isEmpty() || !AbrirDeclaracion(IdContribuyente, celda.clave))
        return;
    m_estado.Cargar(IdContribuyente);
    mostrar();
}
