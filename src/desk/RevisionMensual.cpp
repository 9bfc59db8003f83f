#include "RevisionMensual.h"

#include "BuscadorContribuyentes.h"
#include "SqlText.h"
#include "EstadoPresentaciones.h"
#include "Globals.h"
#include "Numbers.h"
#include "Recordset.h"
#include "Tovak.h"
#include "Util.h"
#include "ZoAccess.h"
#include "navigation/FormTables.h"
#include "navigation/NavigationText.h"

namespace {

// The parts of a declaration's key.
struct Clave {
    explicit Clave(const QString& key)
    {
        const QString caption = key.section(u';', 0, 0);
        padron = PadronOfCaption(caption);
        objeto = ObjetoOfCaption(caption);
        form = ReadParameter(key, QStringLiteral("Formulario"));
        mes = TwoDigits(ReadParameter(key, QStringLiteral("Periodo")));
        anio = ReadParameter(key, QStringLiteral("Anio"));
        rect = IsYesText(ReadParameter(key, QStringLiteral("Rectificativa")));
        fecha = ReadParameter(key, QStringLiteral("FechaRectificativa"));
        ctrl = ReadParameter(key, QStringLiteral("ctrl"));
    }
    QString periodo() const { return mes + u'-' + anio; }
    QString premisa() const
    {
        return QStringLiteral(" WHERE Padron = ") + Quoted(padron) +
               QStringLiteral(" AND Objeto = ") + Quoted(objeto);
    }
    QString version() const
    {
        return premisa() + QStringLiteral(" AND Periodo = ") + Quoted(periodo()) +
               QStringLiteral(" AND Rectificativa IN ") +
               (rect ? QStringLiteral("('True','Verdadero')")
                     : QStringLiteral("('False','Falso')")) +
               QStringLiteral(" AND ctrl = ") + Quoted(ctrl);
    }
    QString codigo() const { return padron + mes + anio + objeto + (rect ? u'R' : u'O'); }
    // The premises' row and the declaration's row; null or empty when missing.
    RecordsetPtr filaPremisa() const
    {
        return gAccess().FillRecordSet(QStringLiteral("SELECT * FROM tPadronesComerciales") +
                                       premisa());
    }
    RecordsetPtr filaDeclaracion() const
    {
        return gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + form + version());
    }
    QString padron, objeto, form, mes, anio, fecha, ctrl;
    bool rect = false;
};

// The amount columns of each detail table, as the file writes them.
QStringList importesDeDetalle(const QString& form)
{
    if (form == QLatin1String("F976") || form == QLatin1String("F2001"))
        return {QStringLiteral("BaseImponible"), QStringLiteral("Alicuota"),
                QStringLiteral("Impuesto")};
    return {QStringLiteral("ImportePercibido")};
}

// Amounts that are not numbers and texts holding the field separator "@".
void revisarFila(const Recordset& rs, const QStringList& importes, const QString& donde,
                 QStringList& out)
{
    for (int c = 0; c < rs.FieldCount(); ++c) {
        const QString name = rs.FieldName(c);
        const QString value = rs.Text(c);
        if (value.contains(u'@'))
            out << donde + QStringLiteral("el dato ") + name +
                       QStringLiteral(" contiene \"@\", que "
                                      "corre los campos del "
                                      "archivo.");
        const bool importe = importes.contains(name, Qt::CaseInsensitive);
        if (importe && !value.trimmed().isEmpty() && !IsNumericText(value))
            out << donde + QStringLiteral("el importe ") + name + QStringLiteral(" \"") + value +
                       QStringLiteral("\" no es un número y el archivo no puede llevarlo.");
    }
}

QString totalDeAnexo(const Clave& k, const QString& anexo, bool& existe)
{
    const RecordsetPtr reg = gAccess().FillRecordSet(
        QStringLiteral("SELECT Rectificativa, FechaRectificativa FROM TPadrones_Formularios") +
        k.premisa() + QStringLiteral(" AND Periodo = ") + Quoted(k.periodo()) +
        QStringLiteral(" AND idFormulario = ") + Quoted(anexo) +
        QStringLiteral(" ORDER BY Id DESC"));
    existe = reg && !reg->EOF_();
    if (!existe)
        return {};
    QString sql = QStringLiteral("SELECT TotalPercepciones FROM ") + anexo + k.premisa() +
                  QStringLiteral(" AND Periodo = ") + Quoted(k.periodo());
    if (IsYesText(reg->Text(0)))
        sql += QStringLiteral(" AND FechaRectificativa = ") + Quoted(reg->Text(1));
    return gAccess().GetString(sql + QStringLiteral(" ORDER BY Id DESC"));
}

} // namespace

QStringList RevisionMensual::ProblemasDeArchivo(const QString& clave)
{
    const Clave k(clave);
    QStringList out;
    const RecordsetPtr premisa = k.filaPremisa();
    if (!premisa || premisa->EOF_()) {
        out << QStringLiteral("El padrón no está registrado.");
        return out;
    }
    if (premisa->Text(QStringLiteral("grupo")).trimmed().isEmpty())
        out << QStringLiteral("El padrón no tiene grupo: el archivo no puede escribirse entero.");
    const RecordsetPtr codigos = gAccess().FillRecordSet(
        QStringLiteral("SELECT codigo_formulario FROM tCodigos_Formularios WHERE idFormulario = ") +
        Quoted(k.form));
    if (!codigos || codigos->EOF_()) {
        out << QStringLiteral("El formulario ") + k.form +
                   QStringLiteral(" no tiene códigos: el archivo no puede escribirse.");
    } else {
        const QString codigo = codigos->Text(0).trimmed();
        if ((codigo == QLatin1String("0089") || codigo == QLatin1String("0090")) &&
            premisa->Text(QStringLiteral("regimen")).trimmed() == QLatin1String("2"))
            out << QStringLiteral(
                "Anexo de un padrón de régimen 2: el archivo no puede escribirse.");
    }
    const RecordsetPtr row = k.filaDeclaracion();
    if (FormTables::find(k.form) && (!row || row->EOF_()))
        out << QStringLiteral("La declaración no tiene sus datos guardados.");
    return out;
}

QStringList RevisionMensual::DatosQueNoLleva(const QString& clave)
{
    const Clave k(clave);
    QStringList out;
    const RecordsetPtr premisa = k.filaPremisa();
    if (premisa && !premisa->EOF_())
        revisarFila(*premisa, {}, QStringLiteral("En el padrón, "), out);
    const FormTables* tables = FormTables::find(k.form);
    const RecordsetPtr row = k.filaDeclaracion();
    if (!tables || !row || row->EOF_())
        return out;
    // The balance's period travels as text; the annexes' total is an amount
    // although the navigation does not read it.
    QStringList importes = tables->amountColumns;
    importes.removeAll(QStringLiteral("SaldoAFavorF"));
    if (!tables->detailTable.isEmpty() && tables->hasCodigo &&
        !importes.contains(QStringLiteral("Impuesto")))
        importes << QStringLiteral("TotalPercepciones");
    revisarFila(*row, importes, QString(), out);
    if (tables->detailTable.isEmpty())
        return out;
    const RecordsetPtr lines =
        gAccess().FillRecordSet(QStringLiteral("SELECT * FROM ") + tables->detailTable +
                                QStringLiteral(" WHERE Codigo = ") + Quoted(k.codigo()) +
                                QStringLiteral(" AND ctrl = ") + Quoted(k.ctrl));
    for (int n = 1; lines && !lines->EOF_(); lines->MoveNext(), ++n)
        revisarFila(*lines, importesDeDetalle(k.form),
                    QStringLiteral("En la línea ") + QString::number(n) + QStringLiteral(", "),
                    out);
    return out;
}

QStringList RevisionMensual::DiferenciasConAnexos(const QString& clave)
{
    const Clave k(clave);
    QStringList out;
    if (k.form != QLatin1String("F976") && k.form != QLatin1String("F2001"))
        return out;
    ZoAccess& db = gAccess();
    const QString flags = QStringLiteral(" FROM tPadronesComerciales") + k.premisa();
    const struct {
        const char* anexo;
        const char* flag;
        const char* columna;
        const char* nombre;
    } pares[] = {{"F977", "retencion", "Retenciones", "Retenciones"},
                 {"F978", "percepcion", "Percepciones", "Percepciones"}};
    for (const auto& par : pares) {
        if (db.GetString(QStringLiteral("SELECT ") + QLatin1String(par.flag) + flags) !=
            QLatin1String("1"))
            continue;
        bool existe = false;
        const QString anexo = totalDeAnexo(k, QLatin1String(par.anexo), existe);
        if (!existe)
            continue;
        const QString declarado =
            db.GetString(QStringLiteral("SELECT ") + QLatin1String(par.columna) +
                         QStringLiteral(" FROM ") + k.form + k.version());
        // the forms compare in single precision, with no other tolerance
        if (float(TextToDouble(declarado)) != float(TextToDouble(anexo)))
            out << QStringLiteral("El importe declarado en ") + QLatin1String(par.nombre) +
                       QStringLiteral(" ($ ") + FormatAmount(ZeroIfEmpty(declarado)) +
                       QStringLiteral(") no coincide con el anexo ") + QLatin1String(par.anexo) +
                       QStringLiteral(" ($ ") + FormatAmount(ZeroIfEmpty(anexo)) +
                       QStringLiteral(").");
    }
    return out;
}

QVector<Observacion> RevisionMensual::Revisar(const QString& periodo, const QVector<int>& ids)
{
    BuscadorContribuyentes contribuyentes;
    contribuyentes.Cargar();
    QVector<Observacion> out;
    for (int i : contribuyentes.Filtrar({}, BuscadorContribuyentes::PorNombre)) {
        const ContribuyenteListado& c = contribuyentes.at(i);
        if (!ids.isEmpty() && !ids.contains(c.id))
            continue;
        EstadoPresentaciones estado;
        estado.Cargar(c.id);
        auto observar = [&](const QString& padron, const QString& objeto, const QString& form,
                            const QString& texto, const QString& clave) {
            out.push_back({c.id, c.nombre, c.cuit, padron, objeto, form, texto, clave});
        };
        const QStringList abiertas = estado.premisasAbiertas(periodo);
        for (const QString& premisa : estado.premisas()) {
            if (!abiertas.contains(premisa))
                observar(premisa.section(u'|', 0, 0), premisa.section(u'|', 1), {},
                         QStringLiteral("Período no abierto: ningún formulario cargado."), {});
        }
        for (const FilaPresentacion& fila : estado.filas()) {
            const CeldaPresentacion celda = fila.celda(periodo);
            if (celda.estado == EstadoMes::Pendiente)
                observar(fila.padron, fila.objeto, fila.formulario,
                         QStringLiteral("Formulario ofrecido sin declaración."), celda.clave);
            if (celda.estado != EstadoMes::Original && celda.estado != EstadoMes::Rectificada)
                continue;
            const QStringList textos = DiferenciasConAnexos(celda.clave) +
                                       ProblemasDeArchivo(celda.clave) +
                                       DatosQueNoLleva(celda.clave);
            for (const QString& texto : textos)
                observar(fila.padron, fila.objeto, fila.formulario, texto, celda.clave);
        }
    }
    return out;
}
