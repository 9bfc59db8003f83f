#include "SpreadsheetFile.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <sys/resource.h>

#include "UiPort.h"

namespace {

constexpr int kMaxRows = 1048576;
constexpr int kMaxColumns = 16384;

bool isBlank(const QString& text)
{
    return text.trimmed().isEmpty();
}

// Reads "{number} " or "{number}\n" at `at`; false when there is none.
bool number(const QByteArray& bytes, qsizetype& at, char end, qint64 max, qint64& value)
{
    value = 0;
    const qsizetype start = at;
    while (at < bytes.size() && bytes.at(at) >= '0' && bytes.at(at) <= '9') {
        value = value * 10 + (bytes.at(at) - '0');
        if (value > max)
            return false;
        ++at;
    }
    if (at == start || at >= bytes.size() || bytes.at(at) != end)
        return false;
    ++at;
    return true;
}

} // namespace

QString SpreadsheetFile::HelperPath()
{
    const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/morvel-hoja");
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStringLiteral(MORVEL_HOJA_BUILD_PATH);
}

void SpreadsheetFile::clear()
{
    m_cells.clear();
    m_width.clear();
    m_rowCount = 0;
    m_columnCount = 0;
    m_error.clear();
    m_damaged = false;
}

bool SpreadsheetFile::read(const QString& path)
{
    clear();
    if (!QFileInfo(path).isFile()) {
        m_error = QStringLiteral("El archivo no existe.");
        return false;
    }
    QByteArray output;
    if (!run(path, output) || !parse(output)) {
        const QString reason = m_error;
        clear();
        m_error = reason;
        m_damaged = reason.isEmpty();
        return false;
    }
    return true;
}

bool SpreadsheetFile::run(const QString& path, QByteArray& output)
{
    QProcess helper;
    helper.setProgram(HelperPath());
    helper.setArguments({path});
    helper.setStandardInputFile(QProcess::nullDevice());
    helper.setStandardErrorFile(QProcess::nullDevice());
    helper.setChildProcessModifier([] {
        const rlimit memory{rlim_t(kMaxMemory), rlim_t(kMaxMemory)};
        setrlimit(RLIMIT_AS, &memory);
        const rlimit cpu{kMaxSeconds, kMaxSeconds};
        setrlimit(RLIMIT_CPU, &cpu);
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none);
        setrlimit(RLIMIT_FSIZE, &none);
    });
    helper.start();
    if (!helper.waitForStarted()) {
        m_error = QStringLiteral("No se encontró el programa que lee las hojas de cálculo (") +
                  HelperPath() + u')';
        return false;
    }
    // Pending events run while the helper works, so the window stays alive.
    const QDeadlineTimer deadline(kMaxSeconds * 1000);
    while (helper.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        helper.waitForReadyRead(50);
        output += helper.readAllStandardOutput();
        if (output.size() > kMaxOutput)
            break;
        ui().yield();
    }
    if (helper.state() != QProcess::NotRunning) {
        helper.kill();
        helper.waitForFinished();
        return false;
    }
    output += helper.readAllStandardOutput();
    return helper.exitStatus() == QProcess::NormalExit && output.size() <= kMaxOutput &&
           (helper.exitCode() == 0 || helper.exitCode() == 2);
}

bool SpreadsheetFile::parse(const QByteArray& output)
{
    static const QByteArray kHead = QByteArrayLiteral("MORVEL-HOJA 1\n");
    if (!output.startsWith(kHead))
        return false;
    qsizetype at = kHead.size();
    while (at < output.size()) {
        const char kind = output.at(at);
        if (kind == 'F')
            return at + 2 == output.size() && output.at(at + 1) == '\n';
        if (at + 1 >= output.size() || output.at(at + 1) != ' ')
            return false;
        at += 2;
        qint64 row = 0, col = 0, length = 0;
        if (kind == 'C' && (!number(output, at, ' ', kMaxRows - 1, row) ||
                            !number(output, at, ' ', kMaxColumns - 1, col)))
            return false;
        if ((kind != 'C' && kind != 'E') || !number(output, at, '\n', kMaxOutput, length) ||
            length > output.size() - at)
            return false;
        const QString text = QString::fromUtf8(output.constData() + at, length);
        at += length;
        if (kind == 'E') {
            m_error =
                text.isEmpty() ? QStringLiteral("El archivo no es una hoja de cálculo.") : text;
            return false;
        }
        m_cells[int(row)][int(col)] = text;
        if (!isBlank(text)) {
            int& width = m_width[int(row)];
            width = qMax(width, int(col) + 1);
            m_columnCount = qMax(m_columnCount, width);
            m_rowCount = qMax(m_rowCount, int(row) + 1);
        }
    }
    return false;
}

QStringList SpreadsheetFile::row(int r) const
{
    QStringList cells(m_columnCount);
    const int width = m_width.value(r);
    const auto found = m_cells.constFind(r);
    if (found == m_cells.constEnd())
        return cells;
    for (auto it = found->constBegin(); it != found->constEnd() && it.key() < width; ++it)
        cells[it.key()] = it.value();
    return cells;
}
