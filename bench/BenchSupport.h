#pragma once

// What the benchmarks share: medians, the wait for a widget to be painted,
// the resident memory of the process, and the line that prints a program's
// figure beside its reference and their ratio; the data they time the
// program on (an annex file to import, a taxpayer's years of declarations)
// and the program's runs over it (the import, the tree on its window).
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QSettings>
#include <QTimer>
#include <QTreeWidget>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "Globals.h"
#include "Transaction.h"
#include "UiPort.h"
#include "ZoAccess.h"
#include "database/Schema.h"
#include "frame/view/QtUi.h"
#include "import/ZoImport.h"
#include "navigation/ContribuyentesDatos.h"
#include "navigation/ZoForms.h"

namespace Bench {

inline double median(std::vector<double> v)
{
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

inline double ms(const QElapsedTimer& t)
{
    return t.nsecsElapsed() / 1e6;
}

// The widget of that name in the windows on screen.
template <class T> T* shown(const QString& name)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible())
            if (T* found = top->findChild<T*>(name))
                return found;
    return nullptr;
}

// Counts the paint events a widget receives.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* widget) : m_widget(widget) { widget->installEventFilter(this); }
    int paints() const { return m_paints; }
    // Lets pending events run, and paints the widget at once when they did
    // not paint it since `since` paints.
    void waitPaintedAfter(int since) const
    {
        QApplication::processEvents();
        if (m_paints <= since)
            m_widget->repaint();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_paints;
        return false;
    }

private:
    QWidget* m_widget;
    int m_paints = 0;
};

// Resident memory of this process, in MiB.
inline double residentMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

// "what   program   reference   ratio  (goal)".
inline void printRatio(const char* what, double program, double reference, double goal,
                       const char* unit = "ms")
{
    const double ratio = reference > 0 ? program / reference : 0;
    std::printf("%-34s %9.1f %s %9.1f %s %6.2fx  %s\n", what, program, unit, reference, unit, ratio,
                ratio <= goal ? "ok" : "OVER GOAL");
    std::fflush(stdout);
}

inline void printHeader(const char* title, double goal)
{
    std::printf("%s (goal: program within %.1fx the reference)\n", title, goal);
    std::printf("%-34s %12s %12s %7s\n", "", "program", "reference", "ratio");
}

// The Qt port, with every question answered "Yes" and every message
// acknowledged at once: the benchmarks time the work, not a person reading.
class AnsweringUi : public QtUi
{
public:
    int messageBox(const QString& text, int style, const QString& title) override
    {
        Q_UNUSED(title);
        m_texts << text;
        return (style & 0xF) == Msg::YesNo ? Msg::Yes : Msg::Ok;
    }
    QStringList m_texts;
};

// --- the data ------------------------------------------------------------------

// The premises whose declarations the benchmarks fill.
inline const QString kPadron = QStringLiteral("0000000004711");
inline const QString kObjeto = QStringLiteral("0000000000001");

// An agent's informative annex of perceptions (F987) of March 2024, as a text
// file to import: header, `lines` details and the trailer with their count
// and signed sum.
inline void writeAnnexFile(const QString& path, int lines)
{
    static const char* const kTipos[] = {"FACA", "FACB", "NCRA", "RECA"};
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    QByteArray buffer = "1@F987@O@03@2024@30-71234567-1@\r\n";
    qint64 cents = 0;
    for (int i = 0; i < lines; ++i) {
        const char* tipo = kTipos[i % 4];
        const qint64 amount = 100 + (i * 37) % 99900;
        cents += tipo[0] == 'N' ? -amount : amount;
        buffer += QStringLiteral("2@%1-03-2024@%2@%3@CLIENTE NÚMERO %4@20-12345678-6@%5@%6.%7\r\n")
                      .arg(1 + i % 28, 2, 10, QChar(u'0'))
                      .arg(QLatin1String(tipo))
                      .arg(i + 1)
                      .arg(i % 1000)
                      .arg(i % 5000)
                      .arg(amount / 100)
                      .arg(amount % 100, 2, 10, QChar(u'0'))
                      .toUtf8();
        if (buffer.size() > (1 << 20)) {
            f.write(buffer);
            buffer.clear();
        }
    }
    const QString sign = cents < 0 ? QStringLiteral("-") : QString();
    buffer += QStringLiteral("3@%1@%2%3.%4\r\n")
                  .arg(lines)
                  .arg(sign)
                  .arg(qAbs(cents) / 100)
                  .arg(qAbs(cents) % 100, 2, 10, QChar(u'0'))
                  .toUtf8();
    f.write(buffer);
}

// The key of the annex's declaration.
inline QString annexCodigo()
{
    return kPadron + QStringLiteral("032024") + kObjeto + QStringLiteral("O");
}

// The premises the annex is imported for, in the database in use.
inline void addAnnexPremises()
{
    gAccess().Execute(QStringLiteral("INSERT INTO tPadronesComerciales (cuit, padron, objeto) "
                                     "VALUES ('30712345671', '%1', '%2')")
                          .arg(kPadron, kObjeto));
}

// The program's import of the annex file into the database in use, its lines
// cleared first; its lines per second, 0 when it did not store them all.
inline double importAnnex(const QString& path, int lines)
{
    gAccess().Execute(QStringLiteral("DELETE * FROM F987_Detalle"));
    QString parametros = QStringLiteral("Padron=") + kPadron +
                               QStringLiteral(" - Objeto N° ") + kObjeto +
                               QStringLiteral(";Anio=2024;Periodo=03;Formulario=F987;"
                                              "Rectificativa=Falso;FechaRectificativa=0;ctrl=0;"
                                              "Codigo=") +
                               annexCodigo() + u';';
    ZoImport import;
    import.IdFormulario = QStringLiteral("F987");
    import.Path = path;
    QElapsedTimer timer;
    timer.start();
    const bool ok = import.Importar(parametros, false);
    const double rate = lines / qMax(1e-9, timer.nsecsElapsed() / 1e9);
    const int stored = gAccess().GetLong(QStringLiteral("SELECT count(*) FROM F987_Detalle"));
    return ok && stored == lines ? rate : 0;
}

inline void isolateSettings(const QString& folder)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder + "/settings");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder + "/settings");
}

// One version of a declaration of the premises: its registration row, and
// the header row of the monthly returns.
inline void addVersion(ZoAccess& db, const QString& form, const QString& period, int ctrl)
{
    const QString rect = ctrl == 0 ? QStringLiteral("False") : QStringLiteral("Verdadero");
    const QString date =
        ctrl == 0 ? QStringLiteral("0") : QStringLiteral("%1-%2").arg(10 + ctrl).arg(period);
    db.Execute(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                              "idFormulario, Rectificativa, FechaRectificativa, ctrl) VALUES "
                              "('%1', '%2', '%3', '%4', '%5', '%6', '%7')")
                   .arg(kPadron, kObjeto, period, form, rect, date, QString::number(ctrl)));
    if (form == QLatin1String("F976") || form == QLatin1String("F2001"))
        db.Execute(QStringLiteral("INSERT INTO %1 (Padron, Objeto, Periodo, Rectificativa, "
                                  "FechaRectificativa, ctrl, Retenciones, Percepciones) VALUES "
                                  "('%2', '%3', '%4', '%5', '%6', '%7', '10,00', '20,00')")
                       .arg(form, kPadron, kObjeto, period, rect, date, QString::number(ctrl)));
}

// A database file in `folder` with `years` years of declarations of all
// eight forms, each with two rectifications, for taxpayer 1.
inline void buildTreeData(const QString& folder, int years)
{
    static const QStringList kForms = {
        QStringLiteral("F976"), QStringLiteral("F2001"), QStringLiteral("F977"),
        QStringLiteral("F978"), QStringLiteral("F985"),  QStringLiteral("F986"),
        QStringLiteral("F987"), QStringLiteral("F988")};
    isolateSettings(folder);
    SetAppPath(folder + QStringLiteral("/data"));
    CreateCurrentDatabase();
    ZoAccess& db = gAccess();
    {
        Transaction unit(db, Transaction::Mode::KeepWhatPassed);
        db.Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre, "
                                  "Cuit) VALUES (1, 'GRAN CONTRIBUYENTE S.A.', '30-71234567-1')"));
        db.Execute(QStringLiteral("INSERT INTO tPadronesComerciales (cuit, padron, objeto, "
                                  "regimen, retencion, percepcion) VALUES ('30712345671', '%1', "
                                  "'%2', '2', '0', '0')")
                       .arg(kPadron, kObjeto));
        for (int year = 2025 - years; year < 2025; ++year)
            for (int month = 1; month <= 12; ++month) {
                const QString period =
                    QStringLiteral("%1-%2").arg(month, 2, 10, QLatin1Char('0')).arg(year);
                for (const QString& form : kForms)
                    for (int ctrl = 0; ctrl < 3; ++ctrl)
                        addVersion(db, form, period, ctrl);
            }
    }
    ResetForms();
    CloseDatabase();
}

// --- the program's runs -----------------------------------------------------------

struct TreeTimes {
    std::vector<double> open, refresh;
    int nodes = 0;
};

// Opens the taxpayer's window on the database in use, times it until its
// tree is painted, refreshes its tree as after a saved form and times that;
// `script` runs instead of the refresh while the window stands (a memory
// reading).
inline void openTree(TreeTimes& times, const std::function<void()>& script = {})
{
    ContribuyentesDatos datos;
    datos.IdContribuyente = 1;
    datos.NombreContribuyente = QStringLiteral("GRAN CONTRIBUYENTE S.A.");
    datos.CuitContribuyente = QStringLiteral("30-71234567-1");
    QElapsedTimer t;
    QTimer::singleShot(0, [&] {
        auto* tree = shown<QTreeWidget>(QStringLiteral("trvDatos"));
        if (!tree) {
            std::printf("the tree is not shown\n");
            datos.unload();
            return;
        }
        PaintWatch watch(tree->viewport());
        watch.waitPaintedAfter(0);
        times.open.push_back(ms(t));
        times.nodes = datos[QStringLiteral("trvDatos")].tree().count();
        if (script) {
            script();
        } else {
            // What the window does when a saved form closes.
            const int painted = watch.paints();
            t.restart();
            Field& field = datos[QStringLiteral("trvDatos")];
            gForms().FillTreeViewContribuyenteOpciones(field, QStringLiteral("1"));
            gForms().FillTreeViewLocales(field, QStringLiteral("1"));
            watch.waitPaintedAfter(painted);
            times.refresh.push_back(ms(t));
            if (qEnvironmentVariableIsSet("BENCH_DEBUG"))
                std::printf("refresh %.1f ms, paints %d -> %d, upd %d vis %d exposed %d\n",
                            times.refresh.back(), painted, watch.paints(),
                            tree->viewport()->updatesEnabled(), tree->viewport()->isVisible(),
                            tree->window()->windowHandle()->isExposed());
        }
        datos.unload();
    });
    t.start();
    datos.show(true);
    QApplication::processEvents();
}

} // namespace Bench
