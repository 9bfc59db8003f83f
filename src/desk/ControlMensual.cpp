#include "ControlMensual.h"

#include <QDir>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include "EstadoPresentaciones.h"
#include "GeneracionLote.h"
#include "GenerarLote.h"
#include "Globals.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "output/ZoGenerateDisk.h"

namespace {

const QString kGrid = QStringLiteral("gridObservaciones");
const QString kTitulo = QStringLiteral("Atención !");

QStringList celdas(const Observacion& o)
{
    return {o.contribuyente, o.cuit, o.padron + (o.objeto.isEmpty() ? QString() : u'-' + o.objeto),
            o.formulario, o.texto};
}

} // namespace

ControlMensual::ControlMensual() : VentanaEscritorio(QStringLiteral("ControlMensual")) {}

void ControlMensual::design()
{
    setCaption(QStringLiteral("Control del mes"));
    add(QStringLiteral("lblPeriodo"), FieldKind::Label, QStringLiteral("Período (mm-aaaa):"));
    add(QStringLiteral("txtPeriodo"), FieldKind::Text).setMask(QStringLiteral("##-####"));
    add(QStringLiteral("optUno"), FieldKind::Option, QStringLiteral("Contribuyente seleccionado"))
        .setGroup(QStringLiteral("alcance"));
    add(QStringLiteral("optTodos"), FieldKind::Option, QStringLiteral("Todos los contribuyentes"))
        .setGroup(QStringLiteral("alcance"));
    add(QStringLiteral("cmdRevisar"), FieldKind::Button, QStringLiteral("Revisar"));
    add(kGrid, FieldKind::Grid)
        .setHeader({QStringLiteral("Contribuyente"), QStringLiteral("CUIT"),
                    QStringLiteral("Padrón - Objeto"), QStringLiteral("Formulario"),
                    QStringLiteral("Observación")});
    add(QStringLiteral("lblResumen"), FieldKind::Label);
    add(QStringLiteral("cmdImprimir"), FieldKind::Button, QStringLiteral("Imprimir"));
    add(QStringLiteral("cmdGuardarPdf"), FieldKind::Button, QStringLiteral("Guardar PDF..."));
    add(QStringLiteral("cmdCerrar"), FieldKind::Button, QStringLiteral("Cerrar"));

    on(QStringLiteral("cmdRevisar"), Ev::Click, [this](EventArgs&) { revisar(); });
    abrirFilas(kGrid, [this](int row) { abrir(row); });
    on(QStringLiteral("cmdImprimir"), Ev::Click, [this](EventArgs&) { imprimir(); });
    on(QStringLiteral("cmdGuardarPdf"), Ev::Click, [this](EventArgs&) { guardarPdf(); });
    on(QStringLiteral("cmdCerrar"), Ev::Click, [this](EventArgs&) { unload(); });
}

void ControlMensual::onLoad()
{
    field(QStringLiteral("txtPeriodo")).setText(PeriodoAnterior());
    field(QStringLiteral("optUno")).setEnabled(IdContribuyente > 0);
    field(QStringLiteral("optUno")).setValue(IdContribuyente > 0 ? 1 : 0);
    field(QStringLiteral("optTodos")).setValue(IdContribuyente > 0 ? 0 : 1);
    if (IdContribuyente > 0)
        field(QStringLiteral("optUno"))
            .setText(QStringLiteral("Contribuyente: ") +
                     gAccess().GetString(QStringLiteral("SELECT ApellidoNombre FROM Contribuyentes "
                                                        "WHERE idContribuyente = ") +
                                         QString::number(IdContribuyente)));
}

QString ControlMensual::periodo()
{
    return field(QStringLiteral("txtPeriodo")).text();
}

void ControlMensual::revisar()
{
    if (!GeneracionLote::PeriodoValido(periodo())) {
        MsgBox(QStringLiteral("El periodo ingresado es incorrecto, verifique por favor"),
               Msg::Exclamation, kTitulo);
        setFocus(QStringLiteral("txtPeriodo"));
        return;
    }
    QVector<int> ids;
    if (field(QStringLiteral("optUno")).checked() && IdContribuyente > 0)
        ids << IdContribuyente;
    ui().setBusy(true);
    m_observaciones = RevisionMensual::Revisar(periodo(), ids);
    ui().setBusy(false);
    QVector<QStringList> rows;
    for (const Observacion& o : std::as_const(m_observaciones))
        rows.push_back(celdas(o));
    field(kGrid).setRows(std::move(rows));
    field(QStringLiteral("lblResumen"))
        .setText(m_observaciones.isEmpty()
                     ? QStringLiteral("Sin observaciones: el período ") + periodo() +
                           QStringLiteral(" está listo para presentar.")
                     : QString::number(m_observaciones.size()) +
                           QStringLiteral(" observaciones en el período ") + periodo() +
                           QStringLiteral(". Doble clic en una línea abre la declaración."));
}

void ControlMensual::abrir(int row)
{
    if (row < 0 || row >= m_observaciones.size())
        return;
    const Observacion o = m_observaciones.at(row);
    if (o.clave.isEmpty() || !AbrirDeclaracion(o.idContribuyente, o.clave))
        return;
    revisar();
}

void ControlMensual::imprimir()
{
    // The desktop's viewer prints the report, on the printer the person picks.
    const QString path = WorkFolder() + QStringLiteral("/ControlDelMes.pdf");
    if (!EscribirPdf(path, periodo(), m_observaciones) || !ui().openDocument(path))
        MsgBox(QStringLiteral("No se pudo preparar el informe para imprimir."), Msg::Exclamation,
               kTitulo);
}

void ControlMensual::guardarPdf()
{
    const QString path =
        ui().chooseSaveFile(QStringLiteral("Guardar informe"), QStringLiteral("PDF (*.pdf)"),
                            QDir::homePath() + QStringLiteral("/Control ") +
                                QString(periodo()).replace(u'/', u'-') + QStringLiteral(".pdf"));
    if (path.isEmpty())
        return;
    if (!EscribirPdf(path, periodo(), m_observaciones))
        MsgBox(QStringLiteral("No se pudo guardar el informe en ") + path + u'.', Msg::Exclamation,
               kTitulo);
}

bool ControlMensual::EscribirPdf(const QString& path, const QString& periodo,
                                 const QVector<Observacion>& observaciones)
{
    QPdfWriter writer(path);
    writer.setResolution(150);
    writer.setTitle(QStringLiteral("Control del mes ") + periodo);
    writer.setCreator(QStringLiteral("Morvel"));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                     QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter));
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const QRect page = painter.viewport();
    QFont font(QStringLiteral("DejaVu Sans"), 8);
    painter.setFont(font);
    const int line = painter.fontMetrics().height() + 4;
    const QList<double> widths = {0.22, 0.10, 0.17, 0.07, 0.44};
    int y = 0;
    auto titulo = [&] {
        QFont bold = font;
        bold.setBold(true);
        bold.setPointSize(11);
        painter.setFont(bold);
        painter.drawText(0, line,
                         QStringLiteral("Control del mes ") + periodo + QStringLiteral(" - ") +
                             QString::number(observaciones.size()) +
                             QStringLiteral(" observaciones"));
        bold.setPointSize(8);
        painter.setFont(bold);
        y = 2 * line + 6;
        const QStringList head = {"Contribuyente", "CUIT", "Padrón - Objeto", "Form.",
                                  "Observación"};
        int x = 0;
        for (int c = 0; c < head.size(); ++c) {
            painter.drawText(x, y, head.at(c));
            x += int(page.width() * widths.at(c));
        }
        painter.drawLine(0, y + 4, page.width(), y + 4);
        painter.setFont(font);
        y += line;
    };
    titulo();
    for (const Observacion& o : observaciones) {
        const QStringList cells = celdas(o);
        const int textWidth = int(page.width() * widths.last());
        const QRect need =
            painter.boundingRect(QRect(0, 0, textWidth, 10000), Qt::TextWordWrap, cells.last());
        if (y + need.height() > page.height()) {
            writer.newPage();
            titulo();
        }
        int x = 0;
        for (int c = 0; c < cells.size(); ++c) {
            const int w = int(page.width() * widths.at(c));
            painter.drawText(QRect(x, y - line + 4, w - 6, need.height() + line),
                             Qt::TextWordWrap | Qt::AlignTop,
                             c + 1 < cells.size() ? painter.fontMetrics().elidedText(
                                                        cells.at(c), Qt::ElideRight, w - 6)
                                                  : cells.at(c));
            x += w;
        }
        y += qMax(line, need.height() + 4);
    }
    if (observaciones.isEmpty())
        painter.drawText(
            0, y, QStringLiteral("Sin observaciones: el período está listo para presentar."));
    return painter.end();
}
