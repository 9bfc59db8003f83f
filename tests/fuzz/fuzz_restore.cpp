// The checks a backup from outside goes through before it may replace the
// database: the reading of the archiver's listing of the archive, and the
// check that the member is a sound database of this program. The first byte
// of the input chooses which one gets the rest.
#include <QCoreApplication>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

#include "Globals.h"
#include "backup/BackupArchive.h"
#include "backup/DatabaseFile.h"

namespace {

QTemporaryDir* work = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    work = new QTemporaryDir();
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, work->filePath("settings"));
    SetAppPath(work->filePath("data"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray rest(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    if (data[0] % 2 == 0) {
        const BackupArchive::Listing listing = BackupArchive::ReadListing(rest);
        // A listing is taken only for one plain Morvel.db of a bounded size.
        if (listing.refusal.isEmpty() &&
            (listing.size <= 0 || listing.size > BackupArchive::kLargestDatabase))
            __builtin_trap();
        return 0;
    }
    const QString path = work->filePath(QStringLiteral("Morvel.db"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.write(rest);
        file.close();
        DatabaseFile::Soundness(path);
    }
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    return 0;
}
