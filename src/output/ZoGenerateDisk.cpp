#include "ZoGenerateDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTemporaryFile>
#include <optional>
#include <vector>

#include "ErrorLog.h"
#include "Globals.h"
#include "SevenZipRun.h"
#include "SqlText.h"
#include "Tovak.h"
#include "UiPort.h"
#include "Util.h"
#include "Windows1252.h"
#include "ZoAccess.h"
#include "ZoHashGuid.h"

ZoGenerateDisk::ZoGenerateDisk() : m_temporaryPath(gAppPath + QStringLiteral("/tmp/TEMPFILE.DJ")) {}

QString WorkFolder()
{
    const QString folder = gAppPath + QStringLiteral("/tmp");
    QDir().mkpath(folder);
    return folder;
}

QString SevenZipProgram()
{
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/7za");
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStandardPaths::findExecutable(QStringLiteral("7za"));
}

int RunSevenZip(const QStringList& arguments)
{
    SevenZipRun run;
    return run.Start(arguments) ? run.Wait() : -1;
}

QStringList ArchiveArguments(const QString& member, const QString& archive,
                             const QStringList& options)
{
    return QStringList{QStringLiteral("a"), QStringLiteral("-tzip")} + options +
           QStringList{archive, member};
}

bool PlaceArchive(const QString& archive, const QString& target)
{
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    // A rename where the two share a disk, a copy where they do not.
    const bool moved = QFile::rename(archive, partial) || QFile::copy(archive, partial);
    QFile::remove(archive);
    if (!moved) {
        QFile::remove(partial);
        return false;
    }
    QFile::remove(target);
    if (!QFile::rename(partial, target)) {
        QFile::remove(partial);
        return false;
    }
    return QFileInfo::exists(target);
}

bool ArchiveAlone(const QString& member, const QString& archive, const QString& target,
                  const QStringList& options)
{
    // A zip left by a run that stopped would take the new member beside its
    // old one: start from none.
    QFile::remove(archive);
    const int code = RunSevenZip(ArchiveArguments(member, archive, options));
    if (code != 0 || !QFileInfo::exists(archive)) {
        QFile::remove(archive);
        return false;
    }
    return PlaceArchive(archive, target);
}

namespace {

std::function<QDateTime()>& submissionClock()
{
    static std::function<QDateTime()> clock;
    return clock;
}

} // namespace

QDateTime SubmissionTime()
{
    const auto& clock = submissionClock();
    return clock ? clock() : QDateTime::currentDateTime();
}

void SetSubmissionClock(std::function<QDateTime()> clock)
{
    submissionClock() = std::move(clock);
}

bool StampSubmissionTime(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::Append) &&
           file.setFileTime(SubmissionTime(), QFileDevice::FileModificationTime);
}

bool ZoGenerateDisk::Compress(const QString& source, const QString& destination)
{
    ui().yield();
    return ArchiveAlone(source, gAppPath + QStringLiteral("/TEMPFILE.ZIP"), destination);
}

bool ZoGenerateDisk::Expand(const QString& archive, QString& member, QString& folder)
{
    if (folder.endsWith(u'/') || folder.endsWith(u'\\'))
        folder.chop(1);
    if (folder.isEmpty())
        folder = gAppPath + QStringLiteral("/TEMP");
    QDir().mkpath(folder);
    const int code = RunSevenZip(
        {QStringLiteral("e"), QStringLiteral("-y"), archive, QStringLiteral("-o") + folder});
    if (code != 0)
        return false;
    return member.isEmpty() || QFileInfo::exists(folder + u'/' + member);
}

bool ZoGenerateDisk::DeleteFile(const QString& path)
{
    QFile::remove(path);
    return true;
}

QString ZoGenerateDisk::RutaCorta(QString& path)
{
    QString compact = path;
    compact.remove(u' ');
    const QString head = compact.left(3);
    const QStringList parts = compact.mid(3).split(u'\\');
    QStringList out;
    for (int i = 0; i < parts.size(); ++i) {
        const QString& name = parts.at(i);
        const bool last = i == parts.size() - 1;
        out << (!last && name.size() > 8 ? name.left(6) + QStringLiteral("~1") : name);
    }
    return (head + out.join(u'\\')).toUpper();
}

bool ZoGenerateDisk::Is64bit()
{
    // The old question was whether a 32-bit program ran on a 64-bit system.
    return QSysInfo::buildCpuArchitecture() != QSysInfo::currentCpuArchitecture();
}

// --- The submission file ------------------------------------------------------

namespace {

const QString kTitle = QStringLiteral("Atención !");

// How a field of records 3 and 4 is written.
enum class Render {
    Text,      // the stored text; Null gives an empty field
    Amount,    // the text as a dotted amount: "1.234,50" gives 1234.50
    RawAmount, // as Amount, read without the Null guard: a Null is an error
    Type4,     // the first four characters of the text
    ShortCode, // padrón, month, year and the letter of the declaration
};

struct RecordField {
    const char* column;
    Render render;
};

} // namespace

// What sets one form's records apart from another's: its table, how its rows
// are found, and the fields of records 3 and 4 in the order the office reads
// them. In the queries {table}, {codigo}, {fecha}, {ctrl}, {padron},
// {objeto}, {mes} and {anio} are filled in, {rect} is the rectifying clause
// with its trailing blank and {rect-} the same without it.
struct FormLayout {
    const char* form;
    const char* formQuery;
    const char* detailQuery;
    std::vector<RecordField> record3;
    std::vector<RecordField> record4;
    bool splitPeriod = false;  // an "mm-yyyy" Periodo is split into month and year first
    bool dashFreeCode = false; // the row code loses every "-"
};

namespace {

const char* const kAnnexQuery =
    "SELECT * FROM {table} WHERE Padron = '{padron}' AND OBJETO = '{objeto}' AND Periodo = "
    "'{mes}-{anio}' {rect-} AND ctrl = '{ctrl}'";
const char* const kAnnexDetailQuery =
    "SELECT * FROM {table}_Detalle WHERE Codigo = '{codigo}' AND ctrl = '{ctrl}'";
const char* const kAgentQuery =
    "SELECT * FROM {table} WHERE Padron = '{padron}' AND Objeto = '{objeto}' AND Periodo = "
    "'{mes}-{anio}' {rect}AND FECHARECTIFICATIVA = '{fecha}' AND ctrl = '{ctrl}'";

const std::vector<RecordField> kAnnexRecord3 = {
    {"Padron", Render::Text},        {"Domicilio", Render::Text},
    {"RazonSocial", Render::Text},   {"Periodo", Render::Text},
    {"Rectificativa", Render::Text}, {"FechaRectificativa", Render::Text},
    {"Transporte", Render::Amount},  {"TotalPercepciones", Render::Amount},
};

const std::vector<RecordField> kAgentRecord3 = {
    {"Padron", Render::Text},        {"Periodo", Render::Text},
    {"Rectificativa", Render::Text}, {"FechaRectificativa", Render::Text},
    {"RazonSocial", Render::Text},   {"Contribuyente", Render::Text},
    {"domicilio", Render::Text},
};

// Record 4 of an annex; only the annexes of perceptions carry the voucher
// type.
std::vector<RecordField> annexRecord4(const char* typeColumn, Render typeRender)
{
    std::vector<RecordField> fields = {{"Fecha", Render::Text}};
    if (typeColumn)
        fields.push_back({typeColumn, typeRender});
    fields.insert(fields.end(), {{"NroComprobante", Render::Text},
                                 {"Denominacion", Render::Text},
                                 {"Cuit", Render::Text},
                                 {"Padron", Render::Text},
                                 {"ImportePercibido", Render::Amount}});
    return fields;
}

std::vector<RecordField> agentRecord4(const char* collected)
{
    return {{collected, Render::Amount},
            {"AccesoriosCoef", Render::Amount},
            {"Multas", Render::Amount},
            {"Otros", Render::Amount},
            {"ImporteDepositar", Render::Amount}};
}

FormLayout annex(const char* form, const char* typeColumn, Render typeRender)
{
    return {form, kAnnexQuery, kAnnexDetailQuery, kAnnexRecord3,
            annexRecord4(typeColumn, typeRender)};
}

const std::vector<FormLayout>& formLayouts()
{
    static const std::vector<FormLayout> layouts = {
        {"F976",
         "SELECT * FROM {table} WHERE Codigo = '{codigo}' AND FECHARECTIFICATIVA = '{fecha}' "
         "AND ctrl = '{ctrl}'",
         "SELECT * FROM {table}_Detalle WHERE Codigo = '{codigo}' AND FECHARECTIFICATIVA = "
         "'{fecha}'  AND ctrl = '{ctrl}'",
         {{"Padron", Render::Text},
          {"Periodo", Render::Text},
          {"Rectificativa", Render::Text},
          {"FechaRectificativa", Render::Text},
          {"BaseImponible", Render::RawAmount},
          {"Impuesto", Render::RawAmount},
          {"Accesorios", Render::Amount},
          {"Multas", Render::Amount},
          {"PagoACuenta", Render::Amount},
          {"Percepciones", Render::Amount},
          {"Retenciones", Render::Amount},
          {"SaldoAFavor", Render::Amount},
          // The balance carried from earlier returns goes as the form shows it.
          {"SaldoAFavorF", Render::Text},
          {"SubtotalDeterminado", Render::Amount},
          {"TotalAPagar", Render::Amount},
          {"Tasa", Render::Amount}},
         {{"", Render::ShortCode},
          {"TipoActividad", Render::Text},
          {"CodigoActividad", Render::Text},
          {"BaseImponible", Render::Amount},
          {"Alicuota", Render::Amount},
          {"Impuesto", Render::Amount}},
         /* splitPeriod */ true,
         /* dashFreeCode */ false},
        {"F2001",
         "SELECT * FROM {table} WHERE Padron = '{padron}' AND OBJETO = '{objeto}'  AND Periodo = "
         "'{mes}-{anio}' {rect}AND FECHARECTIFICATIVA = '{fecha}' AND ctrl = '{ctrl}'",
         "SELECT * FROM {table}_Detalle WHERE Codigo = '{codigo}' AND FECHARECTIFICATIVA = "
         "'{fecha}' AND ctrl = '{ctrl}'",
         {{"Padron", Render::Text},
          {"Periodo", Render::Text},
          {"Rectificativa", Render::Text},
          {"FechaRectificativa", Render::Text},
          {"BaseImponible", Render::RawAmount},
          {"Impuesto", Render::RawAmount},
          {"Total", Render::Amount},
          {"SaldoAFavor", Render::Amount},
          {"Retenciones", Render::Amount},
          {"Percepciones", Render::Amount},
          {"Desgrabaciones", Render::Amount},
          {"SubtotalCol12", Render::Amount},
          {"SubtotalColumna2", Render::Amount},
          {"DiferenciaCol12", Render::Amount},
          {"DiferenciaColumna2", Render::Amount},
          {"PagoACuenta", Render::Amount},
          {"TotalAPagar", Render::Amount}},
         // The activity's code before its type, the other way round from F976.
         {{"", Render::ShortCode},
          {"CodigoActividad", Render::Text},
          {"TipoActividad", Render::Text},
          {"BaseImponible", Render::Amount},
          {"Alicuota", Render::Amount},
          {"Impuesto", Render::Amount}},
         /* splitPeriod */ false,
         /* dashFreeCode */ true},
        annex("F977", nullptr, Render::Text),
        annex("F978", "TipoComprobante", Render::Text),
        annex("F985", nullptr, Render::Text),
        annex("F987", "TipoComprobante", Render::Type4),
        // The agents' returns have no detail table: record 4 comes from the
        // form's own table, asked again. F986 asks without the date of the
        // rectification, and so lists every version of the same ctrl.
        {"F986", kAgentQuery,
         "SELECT * FROM {table} WHERE Padron = '{padron}' AND Objeto = '{objeto}' AND Periodo = "
         "'{mes}-{anio}' {rect}AND ctrl = '{ctrl}'",
         kAgentRecord3, agentRecord4("ImpPercibidoF985")},
        {"F988", kAgentQuery,
         "SELECT * FROM {table} WHERE Padron = '{padron}' AND Objeto = '{objeto}' AND Periodo = "
         "'{mes}-{anio}' {rect-}AND FECHARECTIFICATIVA = '{fecha}' AND ctrl = '{ctrl}'",
         kAgentRecord3, agentRecord4("ImpPercibidoF987")},
    };
    return layouts;
}

const FormLayout* layoutOf(const QString& form)
{
    for (const FormLayout& layout : formLayouts())
        if (form == QLatin1String(layout.form))
            return &layout;
    return nullptr;
}

bool isTrueWord(const QString& text)
{
    return text == QLatin1String("True") || text == QLatin1String("Verdadero");
}

bool isFalseWord(const QString& text)
{
    return text == QLatin1String("False") || text == QLatin1String("Falso");
}

// The field's text, or nullopt where reading it is an error: no current row,
// no such column, or a Null read without the guard.
std::optional<QString> renderField(const Recordset* rs, const RecordField& field,
                                   const QString& shortCode)
{
    if (field.render == Render::ShortCode)
        return shortCode;
    bool ok = false;
    const QVariant value = rs ? rs->Field(QLatin1String(field.column), &ok) : QVariant();
    if (!ok || (field.render == Render::RawAmount && value.isNull()))
        return std::nullopt;
    const QString text = NullToText(value);
    switch (field.render) {
    case Render::Amount:
    case Render::RawAmount: return AmountToSqlText(text);
    case Render::Type4: return text.left(4);
    default: return text;
    }
}

// One record from the current row. A field that cannot be read keeps the
// value it had in the record before (empty in the first): the old writer went
// on past such a statement, and its line then lacked or repeated the value.
QString recordLine(int type, const std::vector<RecordField>& fields, const Recordset* rs,
                   const QString& shortCode, QStringList& values, const QString& form)
{
    while (values.size() < int(fields.size()))
        values << QString();
    QStringList unread;
    QString line = QString::number(type) + u'@';
    for (size_t i = 0; i < fields.size(); ++i) {
        if (const auto text = renderField(rs, fields[i], shortCode))
            values[int(i)] = *text;
        else
            unread << QLatin1String(fields[i].column);
        line += values.at(int(i)) + u'@';
    }
    if (!unread.isEmpty())
        LogError(QStringLiteral("3021"),
                 QStringLiteral("Registro %1 de %2 sin: %3").arg(type).arg(form, unread.join(", ")),
                 QStringLiteral("ZoGenerateDisk"));
    return line;
}

// The record of the premises, in the order of its columns; null stands for
// the padrón as parsed.
const char* const kPremisesColumns[] = {"cuit",
                                        nullptr,
                                        "objeto",
                                        "grupo",
                                        "categoria",
                                        "razon_social",
                                        "nombre_fantasia",
                                        "percepcion",
                                        "retencion",
                                        "calle_numero",
                                        "localidad_departamento",
                                        "cp"};

} // namespace

void ZoGenerateDisk::ParseParametros()
{
    const QString padron = ReadParameter(Parametros, QStringLiteral("Padron"));
    m_Padron = padron.left(13);
    m_Objeto = padron.mid(26, 13);
    m_idContribuyente = ReadParameter(Parametros, QStringLiteral("idContribuyente"));
    m_Anio = ReadParameter(Parametros, QStringLiteral("Anio"));
    m_Periodo = ReadParameter(Parametros, QStringLiteral("Periodo"));
    m_Formulario = ReadParameter(Parametros, QStringLiteral("Formulario"));
    m_Rectificativa = ReadParameter(Parametros, QStringLiteral("Rectificativa"));
    m_FechaRectificativa = ReadParameter(Parametros, QStringLiteral("FechaRectificativa"));
    if (m_FechaRectificativa == QLatin1String("__-__-____"))
        m_FechaRectificativa = QStringLiteral("0");
    m_Nuevo = ReadParameter(Parametros, QStringLiteral("Nuevo"));
    m_ConDatos = ReadParameter(Parametros, QStringLiteral("ConDatos"));
    m_ctrl = ReadParameter(Parametros, QStringLiteral("ctrl"));
}

bool ZoGenerateDisk::DriveExists(const QString& path) const
{
    // The folder must be there and take a file: a relative name has no
    // folder to answer for it.
    if (!QDir::isAbsolutePath(path))
        return false;
    const QString folder = QFileInfo(path).absolutePath();
    if (!QFileInfo(folder).isDir())
        return false;
    QTemporaryFile probe(folder + QStringLiteral("/.morvel-XXXXXX"));
    return probe.open();
}

bool ZoGenerateDisk::CreateFile(const QString& path, bool noCompress)
{
    if (path.startsWith(QLatin1String("//")) || path.contains(QLatin1String("\\\\")) ||
        path.contains(QLatin1String("smb:"), Qt::CaseInsensitive)) {
        MsgBox(QStringLiteral("No se puede generar el archivo en unidades de red."),
               Msg::Exclamation, kTitle);
        return false;
    }
    WorkFolder();
    if (!DriveExists(path)) {
        MsgBox(QStringLiteral("No se puede acceder a la unidad. Verifique por favor."),
               Msg::Exclamation, kTitle);
        return false;
    }
    const bool whole = CreateText();
    if (noCompress)
        return m_known;

    // Only a text written to its end goes out: an envelope or premises the
    // writer refused, a write that failed, or an unknown form would
    // otherwise be zipped as if it were a good declaration.
    if (whole) {
        StampSubmissionTime(m_temporaryPath);
        if (!Compress(m_temporaryPath, path) && m_falla.isEmpty())
            m_falla = ArchiveFailureText();
    } else {
        LogError(QStringLiteral("-1"),
                 QStringLiteral("No se generó ") + path +
                     QStringLiteral(": el texto de la declaración quedó incompleto (") +
                     m_Formulario + u')',
                 QStringLiteral("ZoGenerateDisk.CreateFile"));
    }
    DeleteFile(m_temporaryPath);
    return m_known;
}

bool ZoGenerateDisk::CreateText()
{
    Parametros.replace(QStringLiteral("Padrón N° "), QStringLiteral("Padron="));
    ParseParametros();
    m_complete = false;
    m_writeFailed = false;
    m_falla.clear();
    const FormLayout* layout = layoutOf(m_Formulario);
    // The writer's own answer is true for every form it knows.
    m_known = layout && WriteForm(*layout);
    if (!layout)
        m_falla = QStringLiteral("El formulario ") + m_Formulario +
                  QStringLiteral(" no tiene archivo de presentación.");
    return m_known && m_complete && !m_writeFailed;
}

void ZoGenerateDisk::SetTemporaryFolder(const QString& folder)
{
    m_temporaryPath = folder + QStringLiteral("/TEMPFILE.DJ");
}

QString ArchiveFailureText()
{
    return SevenZipProgram().isEmpty()
               ? QStringLiteral("No se encontró el compresor 7za (paquete p7zip-full).")
               : QStringLiteral("No se pudo comprimir ni copiar el archivo al destino: "
                                "verifique que haya espacio libre y permiso de escritura.");
}

bool ZoGenerateDisk::CreateHeader(const QString& temporaryPath)
{
    // The last declaration's text is emptied in place, not removed: right
    // after freeing many files a file system is slow to make new ones, and a
    // period's generation would make one a declaration. One that cannot be
    // written is removed, and made anew.
    if (!QFileInfo(temporaryPath).isWritable())
        QFile::remove(temporaryPath);
    if (!WriteLines(temporaryPath, {}, true))
        return false;
    m_kind = isFalseWord(m_Rectificativa) ? QStringLiteral("O") : QStringLiteral("R");

    RecordsetPtr codes = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM tCodigos_Formularios WHERE idFormulario = '") +
        Sq(m_Formulario) + u'\'');
    if (!codes || codes->EOF_()) {
        LogError(QStringLiteral("3021"),
                 QStringLiteral("Sin códigos en tCodigos_Formularios para ") + m_Formulario,
                 QStringLiteral("ZoGenerateDisk.CreateHeader"));
        m_falla = QStringLiteral("El formulario ") + m_Formulario +
                  QStringLiteral(" no tiene sus códigos de presentación (tabla "
                                 "tCodigos_Formularios).");
        return false;
    }
    const QString tipo = codes->Text(QStringLiteral("tipo_imponible"));
    QString concepto = codes->Text(QStringLiteral("impuesto_concepto"));
    const QString codigo = codes->Text(QStringLiteral("codigo_formulario"));

    // The annexes of retentions and perceptions suffered declare under the
    // concept of the premises' regime.
    if (codigo == QLatin1String("0089") || codigo == QLatin1String("0090")) {
        const QString regimen = gAccess().GetString(
            QStringLiteral("SELECT regimen FROM tPadronesComerciales WHERE padron = '") +
            Sq(m_Padron) + QStringLiteral("' AND OBJETO = '") + Sq(m_Objeto) + u'\'');
        if (regimen == QLatin1String("2")) {
            m_falla = QStringLiteral("El local comercial ") + m_Padron +
                      QStringLiteral(" - Objeto N° ") + m_Objeto +
                      QStringLiteral(" es de régimen 2, que no presenta el formulario ") +
                      m_Formulario + u'.';
            return false;
        }
        const QString prefix = regimen == QLatin1String("0")   ? QStringLiteral("0012")
                               : regimen == QLatin1String("1") ? QStringLiteral("0011")
                                                               : QString();
        if (concepto.left(4) != prefix)
            concepto =
                prefix + u'-' +
                (codigo == QLatin1String("0089") ? QStringLiteral("0008") : QStringLiteral("0009"));
    }

    const QString monthYear = m_Periodo.size() < 3 ? m_Periodo + u'@' + m_Anio + u'@'
                                                   : QString(m_Periodo).replace(u'-', u'@') + u'@';
    QString line = QStringLiteral("1@") + m_kind + u'@' + monthYear + m_Padron + u'@' + tipo +
                   u'@' + concepto + u'@' + codigo + u'@' + m_Objeto + u'@' +
                   GetDeclarationGuidv(Parametros) + u'@';
    if (line.size() > 6 && line.at(6) == u'-')
        line = line.left(6) + u'@' + line.mid(7, 4) + line.mid(12);
    return WriteLines(temporaryPath, {line}, false);
}

bool ZoGenerateDisk::CreateDatosPadron(const QString& temporaryPath)
{
    RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM tPadronesComerciales  WHERE Padron = '") + Sq(m_Padron) +
        QStringLiteral("' AND Objeto = '") + Sq(m_Objeto) + QStringLiteral("' "));
    QString line = QStringLiteral("2@");
    for (const char* column : kPremisesColumns) {
        if (!column) {
            line += m_Padron + u'@';
            continue;
        }
        bool ok = false;
        const QVariant value = rs ? rs->Field(QLatin1String(column), &ok) : QVariant();
        // The group is read without the Null guard: a premises without one
        // has no record 2.
        if (!ok || (value.isNull() && qstrcmp(column, "grupo") == 0)) {
            LogError(QStringLiteral("94"),
                     QStringLiteral("Local comercial sin ") + QLatin1String(column) +
                         QStringLiteral(": ") + m_Padron + QStringLiteral(" - ") + m_Objeto,
                     QStringLiteral("ZoGenerateDisk.CreateDatosPadron"));
            m_falla = QStringLiteral("El local comercial ") + m_Padron +
                      QStringLiteral(" - Objeto N° ") + m_Objeto +
                      (rs && !rs->EOF_() ? QStringLiteral(" no tiene ") + QLatin1String(column) +
                                               QStringLiteral(" asignado.")
                                         : QStringLiteral(" no está registrado."));
            return false;
        }
        line += NullToText(value) + u'@';
    }
    return WriteLines(temporaryPath, {line}, false);
}

QString ZoGenerateDisk::FillQuery(const QString& sqlTemplate, const QString& table,
                                  const QString& code) const
{
    const bool rectifying = isTrueWord(m_Rectificativa);
    const QString rect = rectifying ? QStringLiteral("AND RECTIFICATIVA in ('True','Verdadero') ")
                                    : QStringLiteral("AND RECTIFICATIVA in ('Falso','False') ");
    const QHash<QString, QString> values = {
        {QStringLiteral("table"), table},
        {QStringLiteral("codigo"), Sq(code)},
        {QStringLiteral("fecha"), Sq(m_FechaRectificativa)},
        {QStringLiteral("ctrl"), Sq(m_ctrl)},
        {QStringLiteral("padron"), Sq(m_Padron)},
        {QStringLiteral("objeto"), Sq(m_Objeto)},
        {QStringLiteral("mes"), Sq(m_Periodo)},
        {QStringLiteral("anio"), Sq(m_Anio)},
        {QStringLiteral("rect"), rect},
        {QStringLiteral("rect-"), rect.chopped(1)},
    };
    // One pass, so that no value is read again as a placeholder.
    QString sql;
    int from = 0;
    while (true) {
        const int open = int(sqlTemplate.indexOf(u'{', from));
        const int close = open < 0 ? -1 : int(sqlTemplate.indexOf(u'}', open));
        if (close < 0)
            break;
        sql += sqlTemplate.mid(from, open - from) +
               values.value(sqlTemplate.mid(open + 1, close - open - 1));
        from = close + 1;
    }
    return sql + sqlTemplate.mid(from);
}

bool ZoGenerateDisk::WriteForm(const FormLayout& layout)
{
    // A refused envelope or premises ends the text there; the writer's own
    // answer stays true, as callers have always been told.
    if (!CreateHeader(m_temporaryPath))
        return true;
    if (!CreateDatosPadron(m_temporaryPath))
        return true;

    if (layout.splitPeriod && m_Periodo.contains(u'-')) {
        m_Anio = m_Periodo.section(u'-', 1, 1);
        m_Periodo = m_Periodo.section(u'-', 0, 0);
    }
    QString code = m_Padron + m_Periodo + m_Anio + m_Objeto;
    if (layout.dashFreeCode)
        code.remove(u'-');
    code += isTrueWord(m_Rectificativa) ? u'R' : u'O';
    const QString shortCode = code.left(19) + code.right(1);
    const QString table = QLatin1String(layout.form);

    QStringList lines;
    QStringList values;
    RecordsetPtr row =
        gAccess().FillRecordSet(FillQuery(QLatin1String(layout.formQuery), table, code));
    lines << recordLine(3, layout.record3, row.get(), shortCode, values, table);

    values.clear();
    RecordsetPtr details =
        gAccess().FillRecordSet(FillQuery(QLatin1String(layout.detailQuery), table, code));
    for (; details && !details->EOF_(); details->MoveNext())
        lines << recordLine(4, layout.record4, details.get(), shortCode, values, table);

    if (WriteLines(m_temporaryPath, lines, false))
        m_complete = true;
    return true;
}

bool ZoGenerateDisk::WriteLines(const QString& path, const QStringList& lines, bool truncate)
{
    QFile file(path);
    const QIODevice::OpenMode mode =
        QIODevice::WriteOnly | (truncate ? QIODevice::Truncate : QIODevice::Append);
    bool ok = file.open(mode);
    if (ok) {
        QByteArray bytes;
        for (const QString& line : lines)
            bytes += ToWindows1252(line) + QByteArrayLiteral("\r\n");
        ok = file.write(bytes) == bytes.size() && file.flush();
        file.close();
        ok = ok && file.error() == QFileDevice::NoError;
    }
    if (!ok) {
        m_writeFailed = true;
        m_falla = QStringLiteral("No se pudo escribir el archivo temporal ") + path +
                  QStringLiteral(": ") + file.errorString() + u'.';
        LogError(QStringLiteral("61"),
                 QStringLiteral("No se pudo escribir ") + path + QStringLiteral(": ") +
                     file.errorString(),
                 QStringLiteral("ZoGenerateDisk"));
    }
    return ok;
}
