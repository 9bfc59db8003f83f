#include "TextLineReader.h"

#include <QStringDecoder>

namespace {

// Read a piece at a time: large enough that the reads cost nothing next to
// the lines, small enough that a short file costs no large buffer.
constexpr qint64 kChunk = 1 << 16;

// The characters of bytes 0x80 to 0x9F in Windows-1252; the rest is Latin-1.
// Bytes that the code page leaves undefined keep their Latin-1 control code.
constexpr char16_t kHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

QString TextLineReader::FromWindows1252(const QByteArray& bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char b : bytes) {
        const auto u = static_cast<unsigned char>(b);
        *out++ = (u >= 0x80 && u < 0xA0) ? QChar(kHigh[u - 0x80]) : QChar(u);
    }
    return text;
}

bool TextLineReader::open(const QString& path)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = QStringLiteral("No se pudo abrir el archivo ") + path;
        return false;
    }
    if (!firstPass()) {
        m_error = QStringLiteral("No se pudo leer el archivo ") + path;
        return false;
    }
    m_file.seek(0);
    m_buffer.clear();
    m_position = 0;
    m_atEnd = false;
    m_first = true;
    return true;
}

bool TextLineReader::firstPass()
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    m_lineCount = 0;
    bool content = false; // the line in progress holds more than carriage returns
    while (true) {
        const QByteArray chunk = m_file.read(kChunk);
        if (chunk.isEmpty())
            break;
        if (m_utf8) {
            const QString text = decoder.decode(chunk);
            m_utf8 = !decoder.hasError();
        }
        for (const char b : chunk) {
            if (b == '\n') {
                m_lineCount += content ? 1 : 0;
                content = false;
            } else if (b != '\r') {
                content = true;
            }
        }
    }
    if (m_file.error() != QFileDevice::NoError)
        return false;
    m_lineCount += content ? 1 : 0;
    return true;
}

bool TextLineReader::nextRaw(QByteArray& line)
{
    line.clear();
    while (true) {
        const qsizetype eol = m_buffer.indexOf('\n', m_position);
        if (eol >= 0) {
            line.append(m_buffer.constData() + m_position, eol - m_position);
            m_position = eol + 1;
            return true;
        }
        line.append(m_buffer.constData() + m_position, m_buffer.size() - m_position);
        m_buffer.clear();
        m_position = 0;
        if (m_atEnd)
            return !line.isEmpty();
        m_buffer = m_file.read(kChunk);
        if (m_buffer.isEmpty())
            m_atEnd = true;
    }
}

bool TextLineReader::next(QString& line)
{
    QByteArray raw;
    while (nextRaw(raw)) {
        raw.replace("\r", "");
        if (m_first) {
            m_first = false;
            if (m_utf8 && raw.startsWith("\xEF\xBB\xBF"))
                raw.remove(0, 3);
        }
        if (raw.isEmpty())
            continue;
        line = m_utf8 ? QString::fromUtf8(raw) : FromWindows1252(raw);
        return true;
    }
    return false;
}
