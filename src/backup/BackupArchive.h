#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// A backup archive from outside, read with distrust: it must be a zip that
// holds one regular file named Morvel.db, of a size the data folder can take,
// and only that member is ever written out, never more bytes than it claims.
class BackupArchive
{
public:
    // What the archiver's technical listing ("7za l -slt") tells of the
    // archive; `refusal` is "" when it may be restored.
    struct Listing {
        QString refusal;
        qint64 size = 0;
    };

    // The largest database a backup may hold, whatever the free space.
    static constexpr qint64 kLargestDatabase = qint64(2) * 1024 * 1024 * 1024;

    // Judges the listing of an archive: exactly one entry, named Morvel.db,
    // a regular file (no link, no folder), not encrypted, with a size.
    static Listing ReadListing(const QByteArray& listing);

    // True when an entry of the listing is a regular file: no folder, no
    // link of either kind, no device.
    static bool IsPlainFile(const QHash<QString, QString>& entry);

    // Lists `archive` with the archiver and judges it, also against the
    // free space of the data folder (`freeBytes`).
    static Listing Inspect(const QString& archive, qint64 freeBytes);

    // Writes the member Morvel.db of `archive`, which its listing said is
    // `size` bytes long, to the new file `target`. A "" answer when exactly
    // those bytes came out whole; otherwise the reason, and no `target`.
    static QString Extract(const QString& archive, const QString& target, qint64 size);
};
