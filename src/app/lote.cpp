// morvel-lote: a whole period generated from the command line, for scheduled
// runs. Writes each filed declaration's submission file and printed form into
// {destination}/{CUIT} {name}/, the same files the generate dialog writes, and
// ends with a summary line. Exit status: 0 when everything was written, 1 when
// something was skipped (each told on its own line), 2 when nothing could run.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTextStream>

#include "Globals.h"
#include "UiPort.h"
#include "Util.h"
#include "desk/BuscadorContribuyentes.h"
#include "desk/GeneracionLote.h"
#include "desk/MensajesRegistrados.h"

namespace {

int fail(const QString& text)
{
    QTextStream(stderr) << "morvel-lote: " << text << Qt::endl;
    return 2;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // no screen needed, e.g. from cron
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Morvel"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Genera un período completo: archivos de presentación y formularios en PDF "
                       "en {destino}/{CUIT} {nombre}/."));
    parser.addHelpOption();
    const QCommandLineOption periodo(QStringLiteral("periodo"), QStringLiteral("Período mm-aaaa."),
                                     QStringLiteral("mm-aaaa"));
    const QCommandLineOption destino(QStringLiteral("destino"),
                                     QStringLiteral("Carpeta de destino existente."),
                                     QStringLiteral("carpeta"));
    const QCommandLineOption cuit(QStringLiteral("cuit"),
                                  QStringLiteral("Solo este contribuyente (puede repetirse)."),
                                  QStringLiteral("cuit"));
    const QCommandLineOption datos(QStringLiteral("datos"),
                                   QStringLiteral("Carpeta de datos de Morvel (Morvel.db)."),
                                   QStringLiteral("carpeta"));
    const QCommandLineOption sinPdf(QStringLiteral("sin-pdf"),
                                    QStringLiteral("Solo los archivos, sin formularios en PDF."));
    parser.addOptions({periodo, destino, cuit, datos, sinPdf});
    parser.process(app);

    GeneracionLote lote;
    lote.Periodo = parser.value(periodo);
    lote.Destino = QDir::cleanPath(parser.value(destino));
    lote.ConPdf = !parser.isSet(sinPdf);
    if (!GeneracionLote::PeriodoValido(lote.Periodo))
        return fail(QStringLiteral("el período debe ser mm-aaaa: \"") + lote.Periodo + u'"');
    const QFileInfo folder(lote.Destino);
    if (lote.Destino.isEmpty() || !folder.isDir() || !folder.isWritable())
        return fail(QStringLiteral("no se puede escribir en el destino \"") + lote.Destino + u'"');

    SetAppPath(parser.isSet(datos)
                   ? parser.value(datos)
                   : QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    if (!QFileInfo::exists(DatabasePath()))
        return fail(QStringLiteral("no se encontró la base de datos ") + DatabasePath());
    setUi(PuertoSinPantalla());
    gDecimalSymbol = GetDecimalSymbol();

    QTextStream out(stdout);
    QStringList desconocidos;
    if (parser.isSet(cuit)) {
        BuscadorContribuyentes contribuyentes;
        contribuyentes.Cargar();
        for (const QString& pedido : parser.values(cuit)) {
            bool found = false;
            for (int i = 0; i < contribuyentes.count(); ++i) {
                if (DigitsOnly(contribuyentes.at(i).cuit) == DigitsOnly(pedido)) {
                    lote.Ids << contribuyentes.at(i).id;
                    found = true;
                }
            }
            if (!found)
                desconocidos << pedido + QStringLiteral(": CUIT no registrado.");
        }
        if (lote.Ids.isEmpty())
            lote.Ids << -1; // none of them: nothing to generate
    }
    ResumenLote resumen = lote.Ejecutar();
    resumen.omitidos = desconocidos + resumen.omitidos;
    for (const QString& escrito : std::as_const(resumen.escritos))
        out << "Escrito: " << escrito << '\n';
    for (const QString& omitido : std::as_const(resumen.omitidos))
        out << "Omitido: " << omitido << '\n';
    out << resumen.Linea() << Qt::endl;
    CloseDatabase();
    return resumen.omitidos.isEmpty() ? 0 : 1;
}
