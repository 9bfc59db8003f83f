#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QtTest>

#include "TestSupport.h"
#include "output/Windows1252.h"
#include "output/ZoHash.h"

namespace {

// A message of `length` bytes: the digits repeated.
QByteArray message(int length)
{
    return QByteArray("0123456789").repeated(40).left(length);
}

QString published(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toUpper();
}

} // namespace

// The digest of declarations: the published MD5 wherever its feeding agrees
// with it, and the stored digests' own values where it does not.
class TstZoHash : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    ZoHash hash;

    QString file(const QString& name, const QByteArray& bytes)
    {
        if (!WriteBytes(m_dir.filePath(name), bytes))
            qFatal("cannot write %s", qPrintable(name));
        return m_dir.filePath(name);
    }

private slots:
    void agreesWithPublished_data()
    {
        QTest::addColumn<int>("length");
        for (int length : {0, 1, 55, 57, 60, 63, 64, 65, 100, 119, 128, 183})
            QTest::addRow("%d bytes", length) << length;
    }
    void agreesWithPublished()
    {
        QFETCH(int, length);
        QCOMPARE(hash.DigestStrToHexStr(QString::fromLatin1(message(length))),
                 published(message(length)));
    }

    // Values worked out by hand from the transform on the blocks the feeding
    // leaves: at 56 (modulo 64) no 0x80 byte; past 120, with 57 to 63 bytes in
    // the last block, the length takes the place of its bytes 56 to 63.
    void departsFromPublished_data()
    {
        Columns<int, QString>("length", "digest");
        Row("56 bytes", 56, "CE030CF1CC14C92276B6D4EF2C79DA6C");
        Row("120 bytes", 120, "C605C3C3A7B5695DCFB77E5DBDBB1F03");
        Row("248 bytes", 248, "737A15AD5A313AD76308075F10C15E53");
        Row("124 bytes", 124, "D985CCCA1DC2AC4E87D64E1D29F6FCAA");
        Row("127 bytes", 127, "AD0182F47C2CADC43DD5DA287A0D060F");
        Row("190 bytes", 190, "D86C8ABDA2D62421BDC31102D26A6CFD");
    }
    void departsFromPublished()
    {
        QFETCH(int, length);
        QFETCH(QString, digest);
        QCOMPARE(hash.DigestStrToHexStr(QString::fromLatin1(message(length))), digest);
        QVERIFY(digest != published(message(length)));
        // A file of a length that is not a multiple of 64 digests as its text.
        QCOMPARE(hash.DigestFileToHexStr(file("m.bin", message(length))), digest);
    }

    void updatesInPieces()
    {
        hash.MD5Init();
        const QByteArray bytes = message(150);
        hash.MD5Update(30, bytes.mid(0, 30));
        hash.MD5Update(0, QByteArray());
        hash.MD5Update(40, bytes.mid(30, 40));
        hash.MD5Update(80, bytes.mid(70));
        QVERIFY(hash.MD5Final());
        QCOMPARE(hash.GetValues(), published(bytes));
    }

    void filesOfWholeBlocks()
    {
        const QString empty = published({});
        QCOMPARE(hash.DigestFileToHexStr(file("empty.bin", {})), empty);
        // The last full block of a file never reaches the digest.
        QCOMPARE(hash.DigestFileToHexStr(file("64.bin", message(64))), empty);
        QByteArray other = message(192);
        other.replace(130, 5, "XXXXX");
        QCOMPARE(hash.DigestFileToHexStr(file("a.bin", message(192))), published(message(128)));
        QCOMPARE(hash.DigestFileToHexStr(file("b.bin", other)), published(message(128)));

        bool ok = true;
        QCOMPARE(hash.DigestFileToHexStr(m_dir.filePath("none.bin"), &ok), QString());
        QVERIFY(!ok);
    }

    void ansiText_data()
    {
        Columns<QString, QByteArray>("text", "bytes");
        // clang-format off
        Row("latin", "Año Ñandú N°", QByteArray("A\xF1o \xD1" "and\xFA N\xB0"));
        Row("typographic", "€ – “a”", QByteArray("\x80 \x96 \x93" "a\x94"));
        // clang-format on
        Row("ends of the table", "Ÿ‚", QByteArray("\x9F\x82"));
        Row("undefined byte", QString(QChar(0x81)), QByteArray("\x81"));
        Row("not in the code page", "中x😀", QByteArray("?x?"));
    }
    void ansiText()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QCOMPARE(ToWindows1252(text), bytes);
        QCOMPARE(hash.DigestStrToHexStr(text), published(bytes));
    }
};

QTEST_GUILESS_MAIN(TstZoHash)
#include "tst_zohash.moc"
