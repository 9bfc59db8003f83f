#include "DetailImporter.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <QRegularExpression>
#include <cmath>

#include "Field.h"
#include "Globals.h"
#include "Numbers.h"
#include "PreparedInsert.h"
#include "RegionalSettings.h"
#include "SpreadsheetFile.h"
#include "SqlText.h"
#include "TextLineReader.h"
#include "Tovak.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "ZoAccess.h"
#include "ZoImport.h"

namespace {

const QStringList kAlicuotas = {
    QStringLiteral("0,60"), QStringLiteral("0,43"), QStringLiteral("1,20"), QStringLiteral("2,00"),
    QStringLiteral("2,40"), QStringLiteral("3,60"), QStringLiteral("6,00"),
};

const QString kContinuar = QStringLiteral("¿Continuar con la lectura del archivo?");

// Columns of the inserts, in the order of the values.
const QStringList kColumnasActividad = {
    QStringLiteral("Codigo"),
    QStringLiteral("FechaRectificativa"),
    QStringLiteral("CodigoDetalle"),
    QStringLiteral("TipoActividad"),
    QStringLiteral("CodigoActividad"),
    QStringLiteral("BaseImponible"),
    QStringLiteral("Alicuota"),
    QStringLiteral("Impuesto"),
    QStringLiteral("ctrl"),
};

// ... and of a receipt's, without and with its type.
const QStringList kColumnasComprobante = {
    QStringLiteral("Codigo"),         QStringLiteral("FechaRectificativa"),
    QStringLiteral("CodigoDetalle"),  QStringLiteral("Fecha"),
    QStringLiteral("NroComprobante"), QStringLiteral("Denominacion"),
    QStringLiteral("Cuit"),           QStringLiteral("Padron"),
    QStringLiteral("ImportePercibido"), QStringLiteral("ctrl"),
};
const QStringList kColumnasComprobanteConTipo = [] {
    QStringList columnas = kColumnasComprobante;
    columnas.insert(4, QStringLiteral("TipoComprobante"));
    return columnas;
}();

bool esVerdadero(const QString& text)
{
    const QString t = text.trimmed();
    return t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 ||
           t.compare(QLatin1String("Verdadero"), Qt::CaseInsensitive) == 0;
}

// The declaration's rectification date as the detail rows carry it.
QString fechaDeLinea(const QString& value)
{
    const QString t = value.trimmed();
    if (t.isEmpty() || t == QLatin1String("0") || t == QLatin1String("__-__-____") ||
        t.compare(QLatin1String("NO"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("0");
    const QDate day = TextToDate(t);
    return day.isValid() ? day.toString(QStringLiteral("dd-MM-yyyy")) : t.left(10);
}

// The amount in cents: 0 for a text that is no number (such a line is stored
// as written, and adds nothing), nullopt for an amount beyond the range.
std::optional<qint64> centavos(const QString& amount)
{
    const auto value = LocaleNumber(amount);
    return value ? AmountCents(*value) : 0;
}

// Whether an amount is written as its normal form writes it: no sign, no
// grouping, no leading zero, the regional decimal symbol and two decimals
// ("1234,50"), with at most thirteen whole digits; its cents then read
// straight from its digits.
bool enFormaNormal(const QString& amount, qint64* cents)
{
    const QChar dec = Regional::decimalSymbol();
    const qsizetype n = amount.size();
    if (n < 4 || n > 16 || amount.at(n - 3) != dec || dec == Regional::thousandsSymbol() ||
        (amount.at(0) == u'0' && n > 4))
        return false;
    qint64 value = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (i == n - 3)
            continue;
        const char16_t c = amount.at(i).unicode();
        if (c < u'0' || c > u'9')
            return false;
        value = value * 10 + (c - u'0');
    }
    *cents = value;
    return true;
}

// The amount of a line in its normal form, and its cents (nullopt beyond the
// range, 0 for a text that is no number), as NormalizeAmount and centavos
// give them; an amount already written so is taken as it is.
QString importeNormal(const QString& amount, std::optional<qint64>& cents)
{
    QString written = amount;
    if (gDecimalSymbol != QLatin1String(".")) {
        written.remove(u',');
        written.replace(u'.', u',');
    }
    qint64 direct = 0;
    if (enFormaNormal(written, &direct)) {
        cents = direct;
        return written;
    }
    const QString normal = NormalizeAmount(amount);
    cents = centavos(normal);
    return normal;
}

QString fueraDeRango(const QString& amount)
{
    return QStringLiteral("El importe ") + amount.trimmed() +
           QStringLiteral(" está fuera del rango admitido.");
}

// The first control character among the fields, NUL included, as the
// person's message naming its field (text) or column (sheet); "" when none.
QString caracterDeControl(const QStringList& campos, bool columnas)
{
    for (qsizetype i = 0; i < campos.size(); ++i)
        for (const QChar c : campos.at(i)) {
            const char16_t u = c.unicode();
            if (u >= 0x20 && (u < 0x7F || u >= 0xA0))
                continue;
            const QString donde = columnas ? QStringLiteral("La columna ") + QChar(char16_t(u'A' + i))
                                           : QStringLiteral("El campo ") + QString::number(i + 1);
            return donde + QStringLiteral(" contiene un carácter de control (código ") +
                   QString::number(u) + QStringLiteral("). Verifique el archivo.");
        }
    return QString();
}

bool soloDigitos(const QString& text)
{
    if (text.isEmpty())
        return false;
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// A figure padded with zeros to `width` digits, as the "000..." pattern does;
// any other text stays as it is.
QString ceros(const QString& text, int width)
{
    const QString t = text.trimmed();
    return soloDigitos(t) ? t.rightJustified(width, u'0') : t;
}

} // namespace

DetailImporter::DetailImporter(const ImportRule& rule, const QString& parametros, int mes, int anio,
                               Field* progress)
    : m_rule(rule), m_progress(progress)
{
    const QString padron = ReadParameter(parametros, QStringLiteral("Padron"));
    m_padron = padron.left(13);
    m_objeto = padron.mid(26, 13);
    m_periodo = ReadParameter(parametros, QStringLiteral("Periodo"));
    m_anioParam = ReadParameter(parametros, QStringLiteral("Anio"));
    const bool largo = m_periodo.size() > 2;
    m_mes = mes > 0 ? mes : m_periodo.left(2).toInt();
    m_anio = anio > 0 ? anio : (largo ? m_periodo.right(4) : m_anioParam).toInt();
    m_rectificativa = esVerdadero(ReadParameter(parametros, QStringLiteral("Rectificativa")));
    m_fecha = fechaDeLinea(ReadParameter(parametros, QStringLiteral("FechaRectificativa")));
    m_ctrl = ReadParameter(parametros, QStringLiteral("ctrl")).trimmed();
    if (m_ctrl.isEmpty())
        m_ctrl = QStringLiteral("0");
    m_codigo = ReadParameter(parametros, QStringLiteral("Codigo")).trimmed();
    if (m_codigo.size() != 33)
        m_codigo = m_padron + QStringLiteral("%1").arg(m_mes, 2, 10, QChar(u'0')) +
                   QString::number(m_anio) + m_objeto + (m_rectificativa ? u'R' : u'O');
}

DetailImporter::~DetailImporter() = default;

// --- Reading ------------------------------------------------------------------

bool DetailImporter::ImportarTexto(const QString& path)
{
    m_origen = Origen::Texto;
    m_tabla = m_rule.tablaTexto;
    TextLineReader reader;
    if (!reader.open(path)) {
        MsgBox(reader.errorText(), Msg::Information);
        return false;
    }
    if (m_progress) {
        m_progress->setMinimum(0);
        m_progress->setMaximum(int(qMin<qint64>(reader.lineCount(), INT_MAX)));
        m_progress->setValue(0);
        m_progress->setVisible(true);
    }
    comenzar();
    const auto terminar = qScopeGuard([this] { confirmar(); });
    QString line;
    while (reader.next(line)) {
        ++m_linea;
        avanzar();
        if (ZoImport::Detenido()) {
            confirmar();
            return false;
        }
        const QStringList campos = line.split(u'@');
        const QString tipo = campos.first().trimmed();
        const bool registro = tipo == u"1" || tipo == u"2" ||
                              (tipo == u"3" && m_rule.familia == ImportFamily::Agentes);
        const QString control = registro ? caracterDeControl(campos, false) : QString();
        if (!control.isEmpty()) {
            detener(control);
            return false;
        }
        Paso paso = Paso::Sigue;
        if (tipo == u"1") {
            paso = m_rule.familia == ImportFamily::Agentes ? cabeceraAgente(campos)
                                                           : cabeceraDeclaracion(campos);
            m_conCabecera = paso == Paso::Sigue;
        } else if (tipo == u"2") {
            paso = m_conCabecera ? detalleTexto(campos)
                                 : detener(QStringLiteral("Archivo incorrecto, falta el registro "
                                                          "de cabecera."));
        } else if (tipo == u"3" && m_rule.familia == ImportFamily::Agentes) {
            paso = m_conCabecera ? pie(campos)
                                 : detener(QStringLiteral("Archivo incorrecto, falta el registro "
                                                          "de cabecera."));
        }
        if (paso == Paso::Detiene)
            return false;
    }
    confirmar();
    if (!m_conCabecera) {
        MsgBox(QStringLiteral("El archivo no contiene registros para importar. Verifique que sea "
                              "un archivo de importación del formulario ") +
                   m_rule.formulario + u'.',
               Msg::Information);
        return false;
    }
    if (m_rule.familia == ImportFamily::Agentes && !m_conPie) {
        MsgBox(QStringLiteral("El archivo no tiene el registro de totales al final. Por favor "
                              "verifique."),
               Msg::Information);
        return false;
    }
    return true;
}

bool DetailImporter::ImportarHoja(const QString& path, bool encabezado)
{
    m_origen = Origen::Hoja;
    m_tabla = m_rule.tablaHoja;
    const QString nombre = QFileInfo(path).fileName();
    SpreadsheetFile hoja;
    if (!hoja.read(path)) {
        // Only an Excel workbook is told the reader's own reason; any other
        // sheet that cannot be read is damaged or none.
        MsgBox(hoja.damaged() || !ZoImport::EsExcel(path)
                   ? QStringLiteral("El archivo ") + nombre +
                         QStringLiteral(" está dañado o no es una planilla válida.")
                   : QStringLiteral("No se pudo abrir el archivo de Excel:\n") + path +
                         QStringLiteral("\n") + hoja.errorText(),
               Msg::Information, ZoImport::TituloHoja(path));
        return false;
    }
    if (!ZoImport::VerificarColumnas(hoja.row(0), hoja.columnCount(), encabezado, m_rule.columnas))
        return false;
    const int first = encabezado ? 1 : 0;
    if (m_progress) {
        m_progress->setMinimum(0);
        m_progress->setMaximum(qMax(0, hoja.rowCount() - first));
        m_progress->setValue(0);
        m_progress->setVisible(true);
    }
    comenzar();
    const auto terminar = qScopeGuard([this] { confirmar(); });
    for (int r = first; r < hoja.rowCount(); ++r) {
        ++m_linea;
        avanzar();
        if (ZoImport::Detenido()) {
            confirmar();
            return false;
        }
        if (!hoja.hasValue(r))
            continue;
        const QStringList celdas = hoja.row(r);
        const QString control = caracterDeControl(celdas, true);
        if (!control.isEmpty()) {
            detener(control);
            return false;
        }
        QStringList linea = m_rule.familia == ImportFamily::Actividades
                                ? celdas.mid(0, 5)
                                : comprobanteDeColumnas(celdas, 0);
        if (detalle(linea) == Paso::Detiene)
            return false;
    }
    confirmar();
    return true;
}

void DetailImporter::avanzar()
{
    if (m_progress && m_progress->maximum() > 0) {
        const qint64 step = qMax<qint64>(1, m_progress->maximum() / 200);
        if (m_linea % step == 0 || m_linea >= m_progress->maximum())
            m_progress->setValue(int(qMin<qint64>(m_linea, m_progress->maximum())));
    }
    // Pending events run often enough for the window to stay alive, and not
    // at every line, which would cost more than the line itself.
    if (!m_desdeYield.isValid() || m_desdeYield.elapsed() >= 30) {
        ui().yield();
        m_desdeYield.restart();
    }
}

// --- Messages and the transaction ---------------------------------------------

void DetailImporter::comenzar()
{
    m_transaccion = std::make_unique<Transaction>(Transaction::Mode::KeepWhatPassed);
}

void DetailImporter::confirmar()
{
    m_transaccion.reset();
}

DetailImporter::Paso DetailImporter::detener(const QString& texto)
{
    confirmar();
    const QString prefijo = m_origen == Origen::Texto ? QStringLiteral("Error en línea ")
                                                      : QStringLiteral("Error en fila ");
    MsgBox(prefijo + QString::number(m_linea) + u'\n' + texto, Msg::Information);
    return Paso::Detiene;
}

bool DetailImporter::preguntar(const QString& texto, const QString& pregunta)
{
    confirmar();
    const QString prefijo = m_origen == Origen::Texto ? QStringLiteral("Error en línea ")
                                                      : QStringLiteral("Error en fila ");
    const bool si = MsgBox(prefijo + QString::number(m_linea) + u'\n' + texto + u'\n' + pregunta,
                           Msg::YesNo + Msg::Information) == Msg::Yes;
    comenzar();
    return si;
}

// --- Header and trailer records ----------------------------------------------

QString DetailImporter::periodoArchivo() const
{
    if (m_periodo.size() == 7)
        return QString(m_periodo).remove(u'-');
    return m_periodo + m_anioParam;
}

DetailImporter::Paso DetailImporter::cabeceraDeclaracion(const QStringList& campos)
{
    const QString codigo = campos.value(1).trimmed();
    const QString formulario = campos.value(2).trimmed();
    if (codigo.left(13) != m_padron)
        return detener(QStringLiteral("Número de Padrón incorrecto en Archivo"));
    if (codigo.mid(13, 6) != periodoArchivo())
        return detener(QStringLiteral("Periodo incorrecto en Archivo"));
    if (codigo.size() < 14 || codigo.mid(codigo.size() - 14, 13) != m_objeto)
        return detener(QStringLiteral("Número de Objeto incorrecto en Archivo"));
    if (tipoDeclaracion(codigo.right(1) == u"R") == Paso::Detiene)
        return Paso::Detiene;
    if (formulario != m_rule.formulario)
        return detener(QStringLiteral("Archivo incorrecto, el archivo que desea importar "
                                      "pertenece a un formulario ") +
                       formulario);
    m_codigoArchivo = codigo;
    return Paso::Sigue;
}

DetailImporter::Paso DetailImporter::cabeceraAgente(const QStringList& campos)
{
    const QString formulario = campos.value(1).trimmed();
    if (formulario != m_rule.formulario)
        return detener(QStringLiteral("Archivo incorrecto, el archivo que desea importar "
                                      "pertenece a un formulario ") +
                       formulario);
    if (tipoDeclaracion(campos.value(2).trimmed() == u"R") == Paso::Detiene)
        return Paso::Detiene;
    bool ok = false;
    const int mes = campos.value(3).trimmed().toInt(&ok);
    if (!ok || mes != m_mes)
        return detener(QStringLiteral("Periodo incorrecto en Archivo"));
    const int anio = campos.value(4).trimmed().toInt(&ok);
    if (!ok || anio != m_anio)
        return detener(QStringLiteral("Año incorrecto en Archivo"));
    const QString cuit = gAccess().GetString(
        QStringLiteral("SELECT cuit FROM tPadronesComerciales WHERE padron = '") + Sq(m_padron) +
        QStringLiteral("' AND objeto = '") + Sq(m_objeto) + u'\'');
    const QString delArchivo = QString(campos.value(5)).remove(u'-').trimmed();
    if (delArchivo.isEmpty() || delArchivo != QString(cuit).remove(u'-').trimmed())
        return detener(QStringLiteral("CUIT incorrecto en Archivo"));
    return Paso::Sigue;
}

DetailImporter::Paso DetailImporter::tipoDeclaracion(bool rectificativa)
{
    if (rectificativa && !m_rectificativa)
        return detener(QStringLiteral("Archivo incorrecto, el archivo que desea importar es una "
                                      "Rectificativa"));
    if (!rectificativa && m_rectificativa)
        return detener(QStringLiteral("Archivo incorrecto, el archivo que desea importar es un "
                                      "Original"));
    return Paso::Sigue;
}

DetailImporter::Paso DetailImporter::pie(const QStringList& campos)
{
    m_conPie = true;
    bool ok = false;
    const qint64 cantidad = campos.value(1).trimmed().toLongLong(&ok);
    if (!ok || cantidad != m_linea - 2)
        return detener(QStringLiteral("La cantidad de elementos en el detalle no coincide con la "
                                      "cantidad especificada al final del archivo. Por favor "
                                      "verifique."));
    const QString total = NormalizeAmount(campos.value(2).trimmed());
    if (!IsNumericText(total) || !m_sumaCentavos || centavos(total) != *m_sumaCentavos)
        return detener(QStringLiteral("La suma de los importes en el detalle no coincide con el "
                                      "total especificado al final del archivo."));
    return Paso::Sigue;
}

// --- Detail lines --------------------------------------------------------------

QStringList DetailImporter::comprobanteDeColumnas(const QStringList& celdas, int desde) const
{
    QStringList linea = celdas.mid(desde);
    // A line may stop short of its fields: the missing ones are empty, and
    // the line's checks say what is wrong with it.
    while (linea.size() < Importe + 1)
        linea.append(QString());
    if (!m_rule.conTipo) {
        linea.insert(Tipo, QString());
        linea.removeLast();
    }
    return linea;
}

DetailImporter::Paso DetailImporter::detalleTexto(const QStringList& campos)
{
    switch (m_rule.familia) {
    case ImportFamily::Actividades: return detalle(campos.mid(1));
    case ImportFamily::Agentes: return detalle(comprobanteDeColumnas(campos, 1));
    case ImportFamily::Anexos: break;
    }
    // A line of another declaration: Yes leaves it out and reads on.
    if (campos.value(1).trimmed() != m_codigoArchivo)
        return preguntar(QStringLiteral("Código no coincide con cabecera."), kContinuar)
                   ? Paso::Sigue
                   : Paso::Detiene;
    return detalle(comprobanteDeColumnas(campos, 2));
}

DetailImporter::Paso DetailImporter::detalle(QStringList linea)
{
    return m_rule.familia == ImportFamily::Actividades ? actividad(std::move(linea))
                                                       : comprobante(std::move(linea));
}

DetailImporter::Paso DetailImporter::actividad(QStringList linea)
{
    while (linea.size() < Impuesto + 1)
        linea.append(QString());
    const QString existentes = gAccess().GetString(
        QStringLiteral("SELECT count(*) FROM ") + m_tabla + QStringLiteral(" WHERE Codigo = '") +
        Sq(m_codigo) + QStringLiteral("' AND FECHARECTIFICATIVA = '") + Sq(m_fecha) +
        QStringLiteral("' AND ctrl = '") + Sq(m_ctrl) + u'\'');
    if (existentes.toInt() >= 4)
        return detener(QStringLiteral("El formulario ") + m_rule.formulario +
                       QStringLiteral(" no puede contener mas de 4 registros en el detalle"));
    const QString base = NormalizeAmount(linea.at(Base).trimmed());
    const QString impuesto = NormalizeAmount(linea.at(Impuesto).trimmed());
    const auto centavosImpuesto = centavos(impuesto);
    if (!centavos(base))
        return detener(fueraDeRango(linea.at(Base)));
    if (!centavosImpuesto)
        return detener(fueraDeRango(linea.at(Impuesto)));
    QString alicuota = linea.at(Alicuota).trimmed();
    // A number cell of a sheet reads with "." as its decimal; it stands for the
    // rate the person sees in the regional form.
    static const QRegularExpression numeroDeHoja(QStringLiteral("^\\d+(\\.\\d+)?$"));
    if (m_origen == Origen::Hoja && numeroDeHoja.match(alicuota).hasMatch())
        alicuota = NormalizeAmount(alicuota);
    if (!kAlicuotas.contains(alicuota))
        return preguntar(QStringLiteral("El valor de alícuota no es válido"), kContinuar)
                   ? Paso::Sigue
                   : Paso::Detiene;
    const double calculado = RoundDecimal(TextToDouble(base) * TextToDouble(alicuota) / 100.0, 2);
    if (AmountCents(calculado) != centavosImpuesto &&
        !preguntar(QStringLiteral("El valor del impuesto no es el mismo que el valor calculado "
                                  "(Base Imponible * Alícuota)"),
                   QStringLiteral("¿Ignorar el error?")))
        return Paso::Sigue;
    return insertar(kColumnasActividad,
                    {m_codigo, m_fecha, siguienteDetalle(), linea.at(TipoActividad),
                     linea.at(CodigoActividad), base, alicuota, impuesto, m_ctrl});
}

DetailImporter::Paso DetailImporter::comprobante(QStringList linea)
{
    const QString fecha = linea.at(Fecha).trimmed();
    const QString posterior = QStringLiteral("Fecha incorrecta, posterior al periodo.");
    if (m_origen == Origen::Hoja) {
        if (!ZoImport::EsFecha(fecha))
            return detener(
                QStringLiteral("Formato de fecha incorrecto. El mismo debe ser DD-MM-YYYY."));
        if (!ZoImport::FechaPeriodo(fecha, m_mes, m_anio))
            return detener(posterior);
    } else if (m_rule.familia == ImportFamily::Agentes) {
        // Only a short text is refused for its form; ten characters that are
        // no day of the period or before it are refused by the period check.
        if (fecha.size() < 10)
            return detener(m_rule.fechaTexto);
        if (!ZoImport::FechaPeriodo(fecha, m_mes, m_anio))
            return detener(posterior);
    } else if (!ZoImport::EsFecha(fecha)) {
        return detener(m_rule.fechaTexto);
    }
    if (!ZoImport::EsCuitValido(linea.at(Cuit)))
        return detener(QStringLiteral("El CUIT informado no es válido. Verifique."));
    std::optional<qint64> monto;
    const QString importe = importeNormal(linea.at(Importe).trimmed(), monto);
    const QString tipo = linea.at(Tipo).trimmed();
    if (!monto)
        return detener(fueraDeRango(linea.at(Importe)));
    sumar(tipo.startsWith(QLatin1String("NC")) ? -*monto : *monto);

    QStringList valores;
    valores.reserve(kColumnasComprobante.size() + 1);
    valores << m_codigo << m_fecha << siguienteDetalle() << fecha;
    if (m_rule.conTipo)
        valores << tipoGuardado(tipo);
    valores << ceros(linea.at(Numero), 15) << linea.at(Denominacion)
            << FormatCuit(QString(linea.at(Cuit)).remove(u'-').trimmed())
            << ceros(linea.at(Padron), 13) << importe << m_ctrl;
    return insertar(m_rule.conTipo ? kColumnasComprobanteConTipo : kColumnasComprobante, valores);
}

// --- Storing -------------------------------------------------------------------

QString DetailImporter::siguienteDetalle()
{
    // The maximum is read once; the version's numbers are reserved for the
    // import until it ends (no other workstation numbers a line of it
    // meanwhile), so counting on from it gives the numbers a MAX per line would.
    if (m_proximo < 0) {
        const QString version = QStringLiteral("CODIGO = '") + Sq(m_codigo) +
                                QStringLiteral("' AND FECHARECTIFICATIVA = '") + Sq(m_fecha) +
                                QStringLiteral("' AND ctrl = '") + Sq(m_ctrl) + u'\'';
        gAccess().ReserveKeys(m_tabla, version);
        const QString maximo = gAccess().GetString(
            QStringLiteral("SELECT MAX(CODIGODETALLE) as maximo FROM ") + m_tabla +
            QStringLiteral(" WHERE ") + version);
        m_proximo = (maximo.isEmpty() || maximo == u"-1") ? 1 : qint64(Val(maximo)) + 1;
    }
    return QString::number(m_proximo++).rightJustified(4, u'0');
}

QString DetailImporter::tipoGuardado(const QString& tipo)
{
    // Held whole for each receipt type, as every line of that type stores it.
    const QString codigo = tipo.left(4);
    auto it = m_comprobantes.constFind(codigo);
    if (it == m_comprobantes.constEnd())
        it = m_comprobantes.insert(
            codigo, codigo + QStringLiteral(" - ") +
                        gAccess().GetString(
                            QStringLiteral("SELECT descripcion FROM tComprobantes WHERE valor = '") +
                            Sq(codigo) + u'\''));
    return it.value();
}

void DetailImporter::sumar(qint64 centavos)
{
    // Each amount is within the range, but enough of them could still
    // overflow the sum; such a sum matches no trailer.
    qint64 suma = 0;
    if (m_sumaCentavos && __builtin_add_overflow(*m_sumaCentavos, centavos, &suma))
        m_sumaCentavos.reset();
    else if (m_sumaCentavos)
        m_sumaCentavos = suma;
}

DetailImporter::Paso DetailImporter::insertar(const QStringList& columnas,
                                              const QStringList& valores)
{
    if (m_insercion.insert(m_tabla, columnas, valores)) {
        ++m_importadas;
        return Paso::Sigue;
    }
    return detener(m_insercion.failure());
}
