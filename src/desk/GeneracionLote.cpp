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
#include "Globals.h"
#include "Transaction.h"
#include "ZoAccess.h"
#include "output/ArchiveQueue.h"
#include "output/GenerarDisco.h"
#include "output/ReportDriver.h"
#include "output/ReportPdfQueue.h"
#include "output/ZoGenerateDisk.h"
#include "output/ZoHashGuid.h"

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
    QVector<Resultado> resultados(tareas.size());
    {
        MensajesRegistrados mensajes;
        // The identifiers given on the way are written in one go, and what
        // was given stands whatever stops the run.
        Transaction unidad(gAccess(), Transaction::Mode::KeepWhatPassed);
        ArchiveQueue cola;
        ReportPdfQueue pdfs;
        for (int n = 0; n < tareas.size(); ++n) {
            if (Progreso && !Progreso(n, int(tareas.size()), tareas.at(n).nombre)) {
                resumen.cancelado = true;
                break;
            }
            generar(tareas.at(n), cola, pdfs, resultados[n]);
            for (const QString& texto : mensajes.Tomar())
                resultados[n].omitidos << tareas.at(n).nombre + QStringLiteral(": ") + texto;
        }
        cola.Finish();
        pdfs.Finish();
    }
    for (const Resultado& r : std::as_const(resultados)) {
        for (const QString& escrito : {r.archivo, r.pdf})
            if (!escrito.isEmpty())
                resumen.escritos << escrito;
        if (!r.pdfOmitido.isEmpty())
            resumen.omitidos << r.pdfOmitido;
        resumen.omitidos << r.omitidos;
    }
    if (Progreso && !resumen.cancelado)
        Progreso(int(tareas.size()), int(tareas.size()), QStringLiteral("Terminado."));
    return resumen;
}

void GeneracionLote::generar(const Tarea& tarea, ArchiveQueue& cola, ReportPdfQueue& pdfs,
                             Resultado& resultado)
{
    const QString que =
        tarea.nombre + u' ' + tarea.formulario + QStringLiteral(" padrón ") + tarea.padron;
    if (IsEncFormularioCopy(tarea.clave)) {
        resultado.omitidos << que + QStringLiteral(": copia de otro período sin modificar.");
        return;
    }
    const QStringList problemas = RevisionMensual::ProblemasDeArchivo(tarea.clave);
    if (!problemas.isEmpty()) {
        resultado.omitidos << que + QStringLiteral(": ") + problemas.join(u' ');
        return;
    }
    const QString carpeta = Destino + u'/' + tarea.carpeta;
    if (!m_carpetas.contains(carpeta)) {
        if (!QDir().mkpath(carpeta)) {
            resultado.omitidos << que + QStringLiteral(": no se pudo crear la carpeta ") +
                                      carpeta + u'.';
            return;
        }
        m_carpetas.insert(carpeta);
    }
    // The text and the archive of the generate dialog, written by the same
    // writer and archiver, each in a work folder of its own.
    EnsureDeclarationGuidv(tarea.clave);
    const QString archivo = GenerarDisco::NombreArchivo(carpeta, tarea.clave);
    QFile::remove(archivo); // an earlier file of the name must not pass for this one
    ZoGenerateDisk disk;
    disk.Parametros = tarea.clave;
    disk.SetTemporaryFolder(cola.Folder());
    if (!disk.CreateText() || !StampSubmissionTime(disk.TemporaryPath())) {
        resultado.omitidos << que + QStringLiteral(": no se pudo escribir el archivo. ") +
                                  disk.Falla();
        return;
    }
    const QString escrito = tarea.carpeta + u'/' + QFileInfo(archivo).fileName();
    cola.Add(disk.TemporaryPath(), archivo,
             [&resultado, escrito, que](bool colocado) {
                 if (colocado)
                     resultado.archivo = escrito;
                 else
                     resultado.omitidos << que + QStringLiteral(": no se pudo escribir el "
                                                                "archivo. ") +
                                               ArchiveFailureText();
             });
    if (ConPdf)
        imprimir(tarea, archivo, pdfs, resultado);
}

void GeneracionLote::imprimir(const Tarea& tarea, const QString& archivo, ReportPdfQueue& pdfs,
                              Resultado& resultado) const
{
    const QList<ReportJob> jobs = ReportDriver::Prepare(tarea.clave);
    if (jobs.isEmpty())
        return; // a form that prints nothing (an F976 without lines)
    const QString pdf = archivo.left(archivo.size() - 3) + QStringLiteral(".pdf");
    const QString escrito = tarea.carpeta + u'/' + QFileInfo(pdf).fileName();
    const QString que =
        tarea.nombre + u' ' + tarea.formulario + QStringLiteral(" padrón ") + tarea.padron;
    pdfs.Add(jobs, pdf, [&resultado, escrito, que](bool written) {
        if (written)
            resultado.pdf = escrito;
        else
            resultado.pdfOmitido = que + QStringLiteral(": no se pudo escribir el PDF.");
    });
}
