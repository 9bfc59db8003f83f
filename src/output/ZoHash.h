#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>

// The digest of the declarations: MD5's block transform, round constants and
// initial values, fed and padded the system's own way. Digests already stored
// depend on the three places where the feeding departs from the published
// algorithm, so they stay:
// - a message whose length modulo 64 is 56 gets no 0x80 byte at all;
// - above 120 bytes, a message whose length modulo 64 is 57 to 63 gets no
//   padding either, and the length bytes overwrite its bytes 56 to 63 of the
//   last block;
// - a file whose length is a multiple of 64 is digested without its last
//   block.
// An object serves one digest at a time; MD5Init resets it.
class ZoHash
{
public:
    ZoHash();

    // The decimal text of each state word, read as a signed 32-bit value.
    QString RegisterA() const;
    QString RegisterB() const;
    QString RegisterC() const;
    QString RegisterD() const;

    // The digest of a file's bytes; "" with ok false when the file cannot be
    // read (or is too long for the byte counter), which the caller must heed.
    QString DigestFileToHexStr(const QString& path, bool* ok = nullptr);
    // The digest of a text, one Windows-1252 byte per character.
    QString DigestStrToHexStr(const QString& text);
    // The 32 upper-case hexadecimal digits of the four state words, each
    // from its lowest byte up.
    QString GetValues() const;

    void MD5Init();
    // False when the byte counter is past what its bit count can hold (2^28
    // bytes); the state is then left as it was.
    bool MD5Final();
    // Counts `length` bytes and transforms each block filled; a negative
    // length pulls the counter back and copies nothing.
    void MD5Update(qint32 length, const QByteArray& bytes);
    qint32 LongLeftRotate(qint32 value, int bits) const;

private:
    void transform(const quint8* block);
    static quint32 roundF(quint32 x, quint32 y, quint32 z);
    static quint32 roundG(quint32 x, quint32 y, quint32 z);
    static quint32 roundH(quint32 x, quint32 y, quint32 z);
    static quint32 roundI(quint32 x, quint32 y, quint32 z);
    static qint32 addWords(qint32 a, qint32 b);
    static QString wordToHex(qint32 word);

    std::array<qint32, 4> m_state{};
    qint32 m_count = 0;
    std::array<quint8, 64> m_buffer{};
};
