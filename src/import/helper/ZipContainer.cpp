#include "ZipContainer.h"

#include <QFile>
#include <zip.h>

namespace {

constexpr zip_uint64_t kMaxEntrySize = 512ull * 1024 * 1024;

} // namespace

ZipContainer::ZipContainer(const QString& path)
{
    int error = 0;
    m_zip = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &error);
}

ZipContainer::~ZipContainer()
{
    if (m_zip)
        zip_discard(m_zip);
}

ZipContainer::Entry ZipContainer::read(const QString& name, QByteArray& data) const
{
    data.clear();
    if (!m_zip)
        return Entry::Missing;
    const QByteArray entryName = name.toUtf8();
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat(m_zip, entryName.constData(), ZIP_FL_NOCASE, &stat) != 0 ||
        !(stat.valid & ZIP_STAT_SIZE) || stat.size > kMaxEntrySize)
        return Entry::Missing;
    zip_file_t* file = zip_fopen(m_zip, entryName.constData(), ZIP_FL_NOCASE);
    if (!file)
        return Entry::Damaged;
    data.resize(qsizetype(stat.size));
    const zip_int64_t got = zip_fread(file, data.data(), stat.size);
    zip_fclose(file);
    if (got != zip_int64_t(stat.size)) {
        data.clear();
        return Entry::Damaged;
    }
    return Entry::Read;
}
