// One workstation of the concurrency test: for a given number of seconds it
// adds lines to the shared returns, starts new returns and rectifies stored
// ones, always through the program's own windows (the detail dialog, the
// form, the form selection, the dispatcher), on the database that
// MORVEL_DATABASE_SERVER names. It writes what it stored to its ledger, so
// that the test can look for each of them afterwards.
//
//   concurrency_client NUMBER SECONDS LEDGER

#include <QCoreApplication>
#include <QDate>
#include <QDeadlineTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>
#include <cstdio>

#include "ConcurrencyData.h"
#include "Globals.h"
#include "Person.h"
#include "Recordset.h"
#include "TestSupport.h"
#include "Tovak.h"
#include "Util.h"
#include "ZoAccess.h"
#include "declarations/DetalleDialog.h"
#include "declarations/FormularioDDJJ.h"
#include "declarations/FormulariosDDJJ.h"
#include "navigation/SeleccionFormulario.h"
#include "navigation/ZoForms.h"
#include "registry/Contribuyentes.h"

using namespace Concurrency;

namespace {

// Messages that the forms' own rules give when another workstation got there
// first: the step is skipped, nothing is lost.
const QStringList kRuleMessages = {QStringLiteral("está siendo editada"),
                                   QStringLiteral("La fecha de Rectificativa debe ser mayor")};

class Client
{
public:
    Client(int number, QFile& ledger)
        : m_number(number), m_ledger(ledger), m_random(quint32(number) * 7919u)
    {
        // Scripts capture only the client: one left unused (its window never
        // opened) plays the current step's part when the window next opens.
        m_env.ui().setStrict(true);
        RegistrarFormularios();
    }

    void step()
    {
        const int dice = int(m_random.bounded(20));
        if (dice < 11)
            addLine(1 + int(m_random.bounded(kTaxpayers)));
        else if (dice < 15)
            newDeclaration(1 + int(m_random.bounded(kTaxpayers)));
        else if (dice < 19)
            rectify(1 + int(m_random.bounded(kTaxpayers)));
        else
            newTaxpayer();
        checkMessages();
    }

    bool failed() const { return m_failed; }

private:
    void note(const QString& record)
    {
        m_ledger.write(record.toUtf8() + '\n');
        m_ledger.flush();
    }

    // Every message shown since the last look: a rule's refusal is noted as
    // a skipped step, anything else is a failure.
    void checkMessages()
    {
        for (const ScriptedUi::Message& m : m_env.ui().messages()) {
            const bool rule = std::any_of(kRuleMessages.begin(), kRuleMessages.end(),
                                          [&](const QString& r) { return m.text.contains(r); });
            note((rule ? QStringLiteral("S|") : QStringLiteral("F|")) +
                 QString(m.text).replace(u'\n', u' ').replace(u'\r', u' '));
            m_failed = m_failed || !rule;
        }
        for (const QString& fault : m_env.ui().faults()) {
            note(QStringLiteral("F|") + fault);
            m_failed = true;
        }
        m_env.ui().clearMessages();
    }

    QString nextActivity() { return QString::number(m_number * 100000 + ++m_serial); }

    // Types one line into the detail dialog and accepts it; true when the
    // dialog took it as written.
    static bool typeLine(DetalleDialog& d, const QString& actividad)
    {
        Person p(d);
        p.type(QStringLiteral("txtIdActividad"), actividad);
        p.leave(QStringLiteral("txtIdActividad"));
        p.type(QStringLiteral("txtBaseImponible"), QStringLiteral("1000"));
        p.leave(QStringLiteral("txtBaseImponible"));
        p.choose(QStringLiteral("txtAlicuota"), QStringLiteral("2,40"));
        p.click(QStringLiteral("cmdAceptar"));
        return d.Aceptado;
    }

    // "Agregar" on the shared return of taxpayer `n`: the dialog as the form
    // opens it.
    void addLine(int n)
    {
        const std::unique_ptr<DeclarationForm> form = CreateDeclarationForm(kForm);
        std::unique_ptr<DetalleDialog> d =
            static_cast<FormularioDDJJ&>(*form).definicion().crearDetalle();
        d->Parametros = fx::detalle(kForm, {}, Lugar(n, kSharedPeriod));
        d->EsAgrega = true;
        d->load();
        const QString actividad = nextActivity();
        if (typeLine(*d, actividad))
            note(QStringLiteral("L|%1|0|%2")
                     .arg(fx::codigo(u'O', Lugar(n, kSharedPeriod)), actividad));
        if (d->isLoaded())
            d->unload();
    }

    // A return of a month not started yet, with one line, accepted.
    void newDeclaration(int n)
    {
        const int month = 1 + int(m_random.bounded(12));
        const QString periodo =
            QStringLiteral("%1-%2").arg(month, 2, 10, QChar(u'0')).arg(2010 + m_random.bounded(16));
        const QString key = fx::nuevo(kForm, Lugar(n, periodo));
        if (gForms().CountVersions(key) > 0)
            return rectify(n, periodo);
        m_activity = nextActivity();
        m_lineStored = false;
        runForm(key, [this, n, periodo](FormularioDDJJ& f) {
            m_env.ui().onShow(kDetail, [this](Controller& c) {
                m_lineStored = typeLine(static_cast<DetalleDialog&>(c), m_activity);
            });
            Person(f).click(QStringLiteral("cmdAgregar"));
            if (!m_lineStored)
                return false;
            Person(f).click(QStringLiteral("cmdAceptar"));
            if (f.isLoaded())
                return false;
            note(QStringLiteral("L|%1|0|%2").arg(fx::codigo(u'O', Lugar(n, periodo)), m_activity));
            note(QStringLiteral("D|%1|%2|%3")
                     .arg(Padron(n), periodo, ReadParameter(f.Parametros, QStringLiteral("ctrl"))));
            return true;
        });
    }

    // "Rectificativa con datos" on the latest version of a stored return, as
    // the tree offers it; the new version is accepted as it comes.
    void rectify(int n, QString periodo = {})
    {
        const RecordsetPtr rs = gAccess().FillRecordSet(
            QStringLiteral("SELECT Periodo, Rectificativa, FechaRectificativa, ctrl FROM "
                           "TPadrones_Formularios WHERE Padron = '%1' AND idFormulario = '%2'")
                .arg(Padron(n), kForm));
        if (!rs || rs->RecordCount() == 0)
            return;
        if (periodo.isEmpty()) {
            const auto& rows = rs->rows();
            periodo = rows.at(int(m_random.bounded(rows.size()))).value(0).toString();
        }
        // The tree shows the latest version of the period.
        QStringList latest;
        for (const auto& row : rs->rows())
            if (row.value(0).toString() == periodo &&
                (latest.isEmpty() || row.value(3).toString().toInt() >= latest.at(3).toInt()))
                latest = {row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
                          row.value(3).toString()};
        if (latest.isEmpty())
            return;
        const bool rect =
            latest.at(1) == QLatin1String("Verdadero") || latest.at(1) == QLatin1String("True");
        SeleccionFormulario selection;
        selection.Parametros =
            fx::existente(kForm, rect ? QStringLiteral("Verdadero") : QStringLiteral("Falso"),
                          latest.at(2), latest.at(3), QStringLiteral("Falso"), Lugar(n, periodo));
        selection.load();
        if (!selection.field(QStringLiteral("optRectificativaConDatos")).enabled())
            return note(QStringLiteral("S|not the latest"));
        Person p(selection);
        p.click(QStringLiteral("optRectificativaConDatos"));
        const int next = latest.at(3).toInt() + 1;
        // Later versions, later days; workstations rectifying together mostly
        // pick different days, so that their versions are told apart.
        p.type(QStringLiteral("txtFecha"),
               QStringLiteral("%1-06-2026").arg(5 * next + m_number % 5, 2, 10, QChar(u'0')));
        p.click(QStringLiteral("cmdAceptar"));
        const QString key = selection.Parametros;
        // The dispatcher's limit of three rectifications.
        if (selection.OpcionesSeleccion != 2 ||
            !key.contains(QStringLiteral("FechaRectificativaNueva=")) ||
            gForms().CountVersions(key) >= 3)
            return;
        runForm(key, [this, n, periodo, next](FormularioDDJJ& f) {
            // A version without lines is not saved: the form would offer to
            // delete it instead.
            if (f.field(QStringLiteral("gridFormulario")).rowCount() == 0) {
                note(QStringLiteral("S|no lines to rectify"));
                return false;
            }
            Person(f).click(QStringLiteral("cmdAceptar"));
            if (f.isLoaded())
                return false;
            const QString ctrl = ReadParameter(f.Parametros, QStringLiteral("ctrl"));
            note(QStringLiteral("R|%1|%2|%3").arg(Padron(n), periodo, ctrl));
            // Another workstation took the number first: this one took the next.
            if (ctrl != QString::number(next))
                note(QStringLiteral("N|%1|%2|%3").arg(Padron(n), periodo, ctrl));
            return true;
        });
    }

    // A new taxpayer, as the main window's "Nuevo" shows the window.
    void newTaxpayer()
    {
        const QString cuit = NextCuit();
        Contribuyentes w;
        w.NewRecord = true;
        m_env.ui().onShow(QStringLiteral("Contribuyentes"), [&](Controller& c) {
            Person p(c);
            p.type(QStringLiteral("txtCuit"), cuit);
            p.type(QStringLiteral("txtApellidoNombre"), QStringLiteral("cliente ") + cuit);
            p.click(QStringLiteral("cmdAceptar"));
        });
        w.show(true);
        if (w.Saved)
            note(QStringLiteral("T|%1|%2").arg(w.Id, FormatCuit(cuit)));
    }

    // A CUIT of this client never used before, with its right check digit.
    QString NextCuit()
    {
        for (;;) {
            const QString base =
                QStringLiteral("20%1").arg(m_number * 1000000 + ++m_serial, 8, 10, QChar(u'0'));
            static const int weights[] = {5, 4, 3, 2, 7, 6, 5, 4, 3, 2};
            int sum = 0;
            for (int i = 0; i < 10; ++i)
                sum += base.at(i).digitValue() * weights[i];
            const int digit = (11 - sum % 11) % 11;
            if (digit < 10)
                return base + QString::number(digit);
        }
    }

    // Opens the form through the dispatcher and plays `script` on it; a form
    // that opens for consultation only (held by another workstation) is left
    // with Cancelar, as is a form the script could not finish.
    void runForm(const QString& key, std::function<bool(FormularioDDJJ&)> script)
    {
        m_onForm = std::move(script);
        m_formKey = key;
        m_formShown = false;
        m_env.ui().onShow(kForm,
                          [this](Controller& c) { playForm(static_cast<FormularioDDJJ&>(c)); });
        gForms().CargaForm(key, kForm);
        if (!m_formShown) {
            note(QStringLiteral("F|the form did not open: ") + key);
            m_failed = true;
        }
    }

    void playForm(FormularioDDJJ& f)
    {
        m_formShown = true;
        if (ReadParameter(f.Parametros, QStringLiteral("Nuevo")) == QLatin1String("Consultar"))
            note(QStringLiteral("H|") + m_formKey);
        else if (m_onForm(f))
            return;
        if (f.isLoaded())
            Person(f).click(QStringLiteral("cmdCancelar"));
    }

    TestEnv m_env;
    int m_number;
    QFile& m_ledger;
    QRandomGenerator m_random;
    std::function<bool(FormularioDDJJ&)> m_onForm;
    QString m_formKey;
    bool m_formShown = false;
    QString m_activity;
    bool m_lineStored = false;
    int m_serial = 0;
    bool m_failed = false;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 4) {
        std::fprintf(stderr, "usage: concurrency_client NUMBER SECONDS LEDGER\n");
        return 2;
    }
    QFile ledger(args.at(3));
    if (!ledger.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 2;
    // This workstation's database is the one MORVEL_DATABASE_SERVER names.
    qunsetenv("MORVEL_TEST_BACKEND");
    Client client(args.at(1).toInt(), ledger);
    const QDeadlineTimer deadline(qint64(args.at(2).toDouble() * 1000));
    while (!deadline.hasExpired() && !client.failed())
        client.step();
    return client.failed() ? 1 : 0;
}
