#include "VentanaAnual.h"

#include <QDate>

void VentanaAnual::designAnio()
{
    add(QStringLiteral("cmdAnioAnterior"), FieldKind::Button, QStringLiteral("< Año anterior"));
    add(QStringLiteral("lblAnio"), FieldKind::Label);
    add(QStringLiteral("cmdAnioSiguiente"), FieldKind::Button, QStringLiteral("Año siguiente >"));
    on(QStringLiteral("cmdAnioAnterior"), Ev::Click, [this](EventArgs&) { cambiarAnio(-1); });
    on(QStringLiteral("cmdAnioSiguiente"), Ev::Click, [this](EventArgs&) { cambiarAnio(1); });
}

void VentanaAnual::designCerrar()
{
    add(QStringLiteral("lblReferencias"), FieldKind::Label);
    add(QStringLiteral("cmdCerrar"), FieldKind::Button, QStringLiteral("Cerrar"));
    on(QStringLiteral("cmdCerrar"), Ev::Click, [this](EventArgs&) { unload(); });
}

void VentanaAnual::cambiarAnio(int delta)
{
    if (Anio <= 0)
        Anio = QDate::currentDate().year();
    Anio = qBound(1950, Anio + delta, 2100);
    field(QStringLiteral("lblAnio")).setText(QStringLiteral("Año ") + QString::number(Anio));
    mostrar();
}
