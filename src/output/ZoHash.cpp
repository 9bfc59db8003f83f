#include "ZoHash.h"

#include <QFile>
#include <cstring>

#include "ErrorLog.h"
#include "Windows1252.h"

namespace {

// The byte counter times 8 must fit a signed 32-bit word.
constexpr qint64 kMaxCount = qint64(1) << 28;

constexpr std::array<qint32, 4> kInitialState = {qint32(0x67452301), qint32(0xEFCDAB89u),
                                                 qint32(0x98BADCFEu), qint32(0x10325476)};

// The additive constants of the four rounds, in step order.
constexpr quint32 kSine[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

// The shifts of each round, repeated four times within it.
constexpr int kShift[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

quint32 rotate(quint32 value, int bits)
{
    bits &= 31;
    return bits == 0 ? value : (value << bits) | (value >> (32 - bits));
}

int modulo64(qint32 count)
{
    return int(((count % 64) + 64) % 64);
}

} // namespace

ZoHash::ZoHash()
{
    MD5Init();
}

QString ZoHash::RegisterA() const
{
    return QString::number(m_state[0]);
}
QString ZoHash::RegisterB() const
{
    return QString::number(m_state[1]);
}
QString ZoHash::RegisterC() const
{
    return QString::number(m_state[2]);
}
QString ZoHash::RegisterD() const
{
    return QString::number(m_state[3]);
}

void ZoHash::MD5Init()
{
    m_state = kInitialState;
    m_count = 0;
    m_buffer.fill(0);
}

void ZoHash::MD5Update(qint32 length, const QByteArray& bytes)
{
    QByteArray input = bytes;
    if (length > 0 && input.size() < length)
        input.append(QByteArray(length - int(input.size()), '\0'));
    const auto* data = reinterpret_cast<const quint8*>(input.constData());

    int position = modulo64(m_count);
    const int free = 64 - position;
    m_count = qint32(quint32(m_count) + quint32(length));

    int done = 0;
    if (length >= free) {
        std::memcpy(m_buffer.data() + position, data, size_t(free));
        transform(m_buffer.data());
        for (done = free; done + 64 <= length; done += 64)
            transform(data + done);
        position = 0;
    }
    if (length > done)
        std::memcpy(m_buffer.data() + position, data + done, size_t(length - done));
}

bool ZoHash::MD5Final()
{
    if (m_count < 0 || m_count >= kMaxCount)
        return false;
    const quint32 bits = quint32(m_count) * 8;
    const int position = modulo64(m_count);

    // Up to 56 the padding runs to byte 56 (none at all at 56); past it the
    // length is taken from the whole counter, which only the first block
    // answers as the published padding does.
    const qint32 padLength = position <= 56 ? 56 - position : 120 - m_count;
    QByteArray padding(qMax(padLength, 0), '\0');
    if (!padding.isEmpty())
        padding[0] = char(0x80);
    MD5Update(padLength, padding);

    QByteArray length(8, '\0');
    for (int i = 0; i < 4; ++i)
        length[i] = char((bits >> (8 * i)) & 0xFF);
    MD5Update(8, length);
    return true;
}

QString ZoHash::GetValues() const
{
    QString out;
    for (qint32 word : m_state)
        out += wordToHex(word);
    return out;
}

QString ZoHash::DigestStrToHexStr(const QString& text)
{
    const QByteArray bytes = ToWindows1252(text);
    MD5Init();
    MD5Update(qint32(bytes.size()), bytes);
    MD5Final();
    return GetValues();
}

QString ZoHash::DigestFileToHexStr(const QString& path, bool* ok)
{
    if (ok)
        *ok = false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        LogError(QStringLiteral("53"), QStringLiteral("No se encontró el archivo ") + path,
                 QStringLiteral("ZoHash.DigestFileToHexStr"));
        return {};
    }
    const qint64 length = file.size();
    if (length >= kMaxCount) {
        LogError(QStringLiteral("6"), QStringLiteral("Desbordamiento: ") + path,
                 QStringLiteral("ZoHash.DigestFileToHexStr"));
        return {};
    }
    MD5Init();
    // A block is counted and transformed only when more of the file follows
    // it: the last block waits for MD5Final, and a full last block is left
    // out of the digest altogether.
    while (!file.atEnd()) {
        const qint64 read = file.read(reinterpret_cast<char*>(m_buffer.data()), 64);
        if (read <= 0)
            break;
        if (file.pos() < length) {
            m_count += 64;
            transform(m_buffer.data());
        }
    }
    m_count += qint32(length % 64);
    file.close();
    MD5Final();
    if (ok)
        *ok = true;
    return GetValues();
}

qint32 ZoHash::LongLeftRotate(qint32 value, int bits) const
{
    return qint32(rotate(quint32(value), bits));
}

void ZoHash::transform(const quint8* block)
{
    quint32 x[16];
    for (int i = 0; i < 16; ++i)
        x[i] = quint32(block[4 * i]) | (quint32(block[4 * i + 1]) << 8) |
               (quint32(block[4 * i + 2]) << 16) | (quint32(block[4 * i + 3]) << 24);

    quint32 a = quint32(m_state[0]);
    quint32 b = quint32(m_state[1]);
    quint32 c = quint32(m_state[2]);
    quint32 d = quint32(m_state[3]);
    for (int step = 0; step < 64; ++step) {
        const int round = step / 16;
        quint32 f = 0;
        int word = 0;
        switch (round) {
        case 0:
            f = roundF(b, c, d);
            word = step;
            break;
        case 1:
            f = roundG(b, c, d);
            word = (5 * step + 1) % 16;
            break;
        case 2:
            f = roundH(b, c, d);
            word = (3 * step + 5) % 16;
            break;
        default:
            f = roundI(b, c, d);
            word = (7 * step) % 16;
            break;
        }
        const quint32 sum = quint32(addWords(qint32(a + f), qint32(kSine[step] + x[word])));
        const quint32 next = b + rotate(sum, kShift[round][step % 4]);
        a = d;
        d = c;
        c = b;
        b = next;
    }
    m_state[0] = addWords(m_state[0], qint32(a));
    m_state[1] = addWords(m_state[1], qint32(b));
    m_state[2] = addWords(m_state[2], qint32(c));
    m_state[3] = addWords(m_state[3], qint32(d));
}

quint32 ZoHash::roundF(quint32 x, quint32 y, quint32 z)
{
    return (x & y) | (~x & z);
}
quint32 ZoHash::roundG(quint32 x, quint32 y, quint32 z)
{
    return (x & z) | (y & ~z);
}
quint32 ZoHash::roundH(quint32 x, quint32 y, quint32 z)
{
    return x ^ y ^ z;
}
quint32 ZoHash::roundI(quint32 x, quint32 y, quint32 z)
{
    return y ^ (x | ~z);
}

qint32 ZoHash::addWords(qint32 a, qint32 b)
{
    return qint32(quint32(a) + quint32(b));
}

QString ZoHash::wordToHex(qint32 word)
{
    QString out;
    for (int i = 0; i < 4; ++i)
        out += QStringLiteral("%1").arg((quint32(word) >> (8 * i)) & 0xFF, 2, 16, QLatin1Char('0'));
    return out.toUpper();
}
