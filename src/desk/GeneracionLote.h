#pragma once

#include <QString>
#include <QSet>
#include <QStringList>
#include <QVector>
#include <functional>

class ArchiveQueue;
class ReportPdfQueue;

// What a whole period's generation did.
struct ResumenLote {
    QStringList escritos; // files written, relative to the destination
    QStringList omitidos; // "{CUIT} {name} {form} padrón {padron}: why"
    bool cancelado = false;

    // "Generados: n archivos; omitidos: m" and " (cancelado)" when so.
    QString Linea() const;
};

// Generates a period for all taxpayers, or those chosen, into a folder per
// taxpayer, "{destination}/{CUIT} {name}/": each filed declaration's submission
// file, the same file the generate dialog writes, and its printed form as PDF.
// A declaration whose file cannot be written whole, a form offered and not
// filed, a taxpayer with nothing in the period, are skipped and told why.
class GeneracionLote
{
public:
    QString Periodo;    // mm-yyyy
    QString Destino;    // an existing folder
    QVector<int> Ids;   // the taxpayers; empty means all
    bool ConPdf = true; // the printed forms too
    // Called after each declaration with what is done and what there is in
    // all; false cancels the run at that point.
    std::function<bool(int hechos, int total, const QString& estado)> Progreso;

    ResumenLote Ejecutar();

    // "{CUIT} {name}", with what a folder's name cannot hold taken out.
    static QString Carpeta(const QString& cuit, const QString& nombre);
    // Whether a text is a period mm-yyyy.
    static bool PeriodoValido(const QString& periodo);

private:
    struct Tarea {
        int id = 0;
        QString carpeta;
        QString nombre;
        QString clave;
        QString formulario;
        QString padron;
    };
    // What one declaration gave: its files, or why it was skipped.
    struct Resultado {
        QString archivo;
        QString pdf;
        QString pdfOmitido; // told before the others: the PDF is asked for first
        QStringList omitidos;
    };
    QVector<Tarea> planificar(ResumenLote& resumen) const;
    // Writes the declaration's text and hands it to the archiver, and its
    // printed form to the PDF writers, which run while the next declaration
    // is prepared.
    void generar(const Tarea& tarea, ArchiveQueue& cola, ReportPdfQueue& pdfs,
                 Resultado& resultado);
    void imprimir(const Tarea& tarea, const QString& archivo, ReportPdfQueue& pdfs,
                  Resultado& resultado) const;
    QSet<QString> m_carpetas; // the folders made so far
};
