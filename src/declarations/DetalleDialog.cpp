#include "DetalleDialog.h"

#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "Tovak.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"

QString DetalleDialog::CodigoDeclaracion(const QString& parametros)
{
    const QString padron = ReadParameter(parametros, QStringLiteral("Padron"));
    const QString periodo = ReadParameter(parametros, QStringLiteral("Periodo"));
    const QString rect = ReadParameter(parametros, QStringLiteral("Rectificativa"));
    const bool original = rect.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0 ||
                          rect.compare(QStringLiteral("Falso"), Qt::CaseInsensitive) == 0;
    // The Padron entry holds {padron} " - Objeto N° " {objeto}: the objeto
    // starts at the 27th character.
    return padron.left(13) + QString(periodo).remove(u'-') + padron.mid(26, 13) +
           (original ? QStringLiteral("O") : QStringLiteral("R"));
}

void DetalleDialog::handle(const QString& fieldName, Ev ev, Handler handler)
{
    auto& chain = m_chains[{fieldName, ev}];
    if (chain.empty()) {
        on(fieldName, ev, [this, fieldName, ev](EventArgs& e) {
            // A copy: a handler may reload the window and clear the chains.
            const auto handlers = m_chains[{fieldName, ev}];
            for (const Handler& h : handlers)
                h(e);
        });
    }
    chain.push_back(std::move(handler));
}

void DetalleDialog::addRecall(const QString& fieldName, int column)
{
    handle(fieldName, Ev::GotFocus,
           [this](EventArgs&) { field(QStringLiteral("lblF3")).setVisible(EsAgrega); });
    handle(fieldName, Ev::LostFocus,
           [this](EventArgs&) { field(QStringLiteral("lblF3")).setVisible(false); });
    handle(fieldName, Ev::KeyDown, [this, fieldName, column](EventArgs& e) {
        if (e.key != KeyCode::F3 || !EsAgrega)
            return;
        Field& f = field(fieldName);
        const QString cell = Ultimo.value(column);
        if (f.kind() == FieldKind::Combo)
            SetComboText(f, cell);
        else
            f.setText(cell);
        fire(fieldName, Ev::Change);
        if (!cell.trimmed().isEmpty())
            sendTab();
    });
}

bool DetalleDialog::AmountRule(Field& f, const QString& message, const QString& title)
{
    const QString text = f.text();
    if (text.startsWith(u',') || text.startsWith(u'.')) {
        MsgBox(message, Msg::Exclamation, title);
        f.setText(FormatAmount(QStringLiteral("0")));
        f.selectAll();
        return false;
    }
    f.setText(FormatAmount(ZeroIfEmpty(text)));
    return true;
}

void DetalleDialog::SetComboText(Field& combo, QString text)
{
    const int index = FindComboIndex(combo, text);
    if (!text.isEmpty() && combo.itemText(index) == text) {
        combo.setListIndex(index);
        return;
    }
    combo.setListIndex(-1);
    combo.setText(text);
}

bool DetalleDialog::Requerido(const QString& fieldName, bool blank, const QString& message)
{
    if (!blank)
        return true;
    MsgBox(message, Msg::Information, m_tituloMensajes);
    setFocus(fieldName);
    return false;
}

QString DetalleDialog::Parametro(const QString& key) const
{
    return ReadParameter(Parametros, key);
}

QString DetalleDialog::FechaClave(const QString& fecha)
{
    return fecha.left(2) == QStringLiteral("__") ? QStringLiteral("0") : fecha;
}

void DetalleDialog::SetCodigo(const QString& codigo)
{
    if (Parametros.contains(QStringLiteral("Codigo="), Qt::CaseInsensitive)) {
        Parametros = SetParameter(Parametros, QStringLiteral("Codigo"), codigo);
        return;
    }
    if (!Parametros.isEmpty() && !Parametros.endsWith(u';'))
        Parametros += u';';
    Parametros += QStringLiteral("Codigo=") + codigo + u';';
}

bool DetalleDialog::GrabarLinea(const QString& tabla, const QString& codigo,
                                const QString& codigoDetalle, const QString& fecha,
                                const QStringList& columnas, const QStringList& valores)
{
    const QString ctrl = Parametro(QStringLiteral("ctrl"));
    const QString version = QStringLiteral("CODIGO = '%1' AND FECHARECTIFICATIVA = '%2' AND "
                                           "ctrl = '%3'")
                                .arg(Sq(codigo), Sq(fecha), Sq(ctrl));
    // The line is replaced whole or left as it was.
    return SaveWhole([&] {
        QString numero = codigoDetalle;
        if (numero.isEmpty()) {
            const qint64 siguiente =
                gAccess().NextKey(tabla, QStringLiteral("CodigoDetalle"), version);
            if (siguiente < 0)
                return true; // the failure, logged, undoes the save
            numero = QStringLiteral("%1").arg(siguiente, 4, 10, QChar(u'0'));
        }
        QStringList quoted{Sq(codigo), Sq(fecha), Sq(numero)};
        for (const QString& v : valores)
            quoted << Sq(v);
        quoted << Sq(ctrl);
        gAccess().Execute(QStringLiteral("DELETE * FROM %1 WHERE CodigoDetalle = '%2' AND %3")
                              .arg(tabla, Sq(numero), version));
        gAccess().Execute(
            QStringLiteral("INSERT INTO %1 (Codigo,FechaRectificativa,CodigoDetalle,%2,ctrl) "
                           "VALUES ('%3')")
                .arg(tabla, columnas.join(u','), quoted.join(QStringLiteral("','"))));
        return true;
    });
}

void DetalleDialog::Aceptar()
{
    Aceptado = true;
    hide();
}
