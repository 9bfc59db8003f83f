#include "GeneracionLote.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "BuscadorContribuyentes.h"
#include "EstadoPresentaciones.h"
#include "MensajesRegistrados.h"
#include "RevisionMensual.h"
#include "Util.h"
#include "output/GenerarDisco.h"
#include "output/ReportDriver.h"
#include "output/ReportRenderer.h"

QString ResumenLote::Linea() const
{
    return QStringLiteral("Generados: ") + QString::number(escritos.size()) +
           QStringLiteral(" archivos; omitidos: ") + QString::number(omitidos.size()) +
           (cancelado ? QStringLiteral(" (cancelado)") : QString());
}

QString GeneracionLote::Carpeta(const QString& cuit, const QString& nombre)
{
    static const QRegularExpression forbidden(QStringLiteral("[/\\\\:*?\"<>|\\x00-\\x1f]"));
    QString name = DigitsOnly(cuit) + u' ' + nombre.trimmed();
    return name.replace(forbidden, QStringLiteral("_")).trimmed();
}

bool GeneracionLote::PeriodoValido(const QString& periodo)
{
    static const QRegularExpression shape(QStringLiteral("^(0[1-9]|1[0-2])-\\d{4}$"));
    return shape.match(periodo).hasMatch();
}

QVector<GeneracionLote::Tarea> GeneracionLote::planificar(ResumenLote& resumen) const
{
    BuscadorContribuyentes contribuyentes;
    contribuyentes.Cargar();
    QVector<Tarea> tareas;
    for (int i : contribuyentes.Filtrar({}, BuscadorContribuyentes::PorNombre)) {
        const ContribuyenteListado& c = contribuyentes.at(i);
        if (!Ids.isEmpty() && !Ids.contains(c.id))
            continue;
        const QString quien = DigitsOnly(c.cuit) + u' ' + c.nombre;
        EstadoPresentaciones estado;
        estado.Cargar(c.id);
        bool alguna = false;
        for (const FilaPresentacion& fila : estado.filas()) {
            const CeldaPresentacion celda = fila.celda(Periodo);
            const QString que =
                quien + u' ' + fila.formulario + QStringLiteral(" padrón ") + fila.padron;
            if (celda.estado == EstadoMes::Pendiente)
                resumen.omitidos << que + QStringLiteral(": ofrecido y no presentado.");
            if (celda.estado != EstadoMes::Original && celda.estado != EstadoMes::Rectificada)
                continue;
            alguna = true;
            tareas.push_back({c.id, Carpeta(c.cuit, c.nombre), quien, celda.clave, fila.formulario,
                              fila.padron});
        }
        if (!alguna)
            resumen.omitidos << quien + QStringLiteral(": sin declaraciones en el período.");
    }
    return tareas;
}

ResumenLote GeneracionLote::Ejecutar()
{
    ResumenLote resumen;
    const QVector<Tarea> tareas = planificar(resumen);
    MensajesRegistrados mensajes;
    for (int n = 0; n < tareas.size(); ++n) {
        if (Progreso && !Progreso(n, int(tareas.size()), tareas.at(n).nombre)) {
            resumen.cancelado = true;
            break;
        }
        generar(tareas.at(n), resumen);
        for (const QString& texto : mensajes.Tomar())
            resumen.omitidos << tareas.at(n).nombre + QStringLiteral(": ") + texto;
    }
    if (Progreso && !resumen.cancelado)
        Progreso(int(tareas.size()), int(tareas.size()), QStringLiteral("Terminado."));
    return resumen;
}

bool GeneracionLote::generar(const Tarea& tarea, ResumenLote& resumen)
{
    const QString que =
        tarea.nombre + u' ' + tarea.formulario + QStringLiteral(" padrón ") + tarea.padron;
    if (IsEncFormularioCopy(tarea.clave)) {
        resumen.omitidos << que + QStringLiteral(": copia de otro período sin modificar.");
        return false;
    }
    const QStringList problemas = RevisionMensual::ProblemasDeArchivo(tarea.clave);
    if (!problemas.isEmpty()) {
        resumen.omitidos << que + QStringLiteral(": ") + problemas.join(u' ');
        return false;
    }
    const QString carpeta = Destino + u'/' + tarea.carpeta;
    if (!QDir().mkpath(carpeta)) {
        resumen.omitidos << que + QStringLiteral(": no se pudo crear la carpeta ") + carpeta + u'.';
        return false;
    }
    // The generate dialog itself writes the file, unseen and with no copies to print.
    GenerarDisco dialogo;
    dialogo.Parametros = tarea.clave;
    dialogo.field(QStringLiteral("txtDestino")).setText(carpeta);
    dialogo.field(QStringLiteral("txtCantidadImpresiones")).setText(QStringLiteral("0"));
    const bool escrito = dialogo.GenerarFormulario(tarea.clave);
    const QString archivo = GenerarDisco::NombreArchivo(carpeta, tarea.clave);
    dialogo.unload();
    if (!escrito || !QFileInfo::exists(archivo)) {
        resumen.omitidos << que + QStringLiteral(": no se pudo escribir el archivo.");
        return false;
    }
    resumen.escritos << tarea.carpeta + u'/' + QFileInfo(archivo).fileName();
    if (!ConPdf)
        return true;
    const QList<ReportJob> jobs = ReportDriver::Prepare(tarea.clave);
    const QString pdf = archivo.left(archivo.size() - 3) + QStringLiteral(".pdf");
    if (jobs.isEmpty())
        return true; // a form that prints nothing (an F976 without lines)
    if (WriteReportPdf(jobs, pdf))
        resumen.escritos << tarea.carpeta + u'/' + QFileInfo(pdf).fileName();
    else
        resumen.omitidos << que + QStringLiteral(": no se pudo escribir el PDF.");
    return true;
}
