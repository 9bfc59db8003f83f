#pragma once

#include <QByteArray>
#include <QString>

struct zip;

// The zip container of a workbook (.xlsx, .ods), opened with libzip for
// reading only. Entries are read whole, up to a bound far beyond any sheet of
// detail lines: a damaged or hostile container that claims more is refused
// instead of filling the memory.
class ZipContainer
{
public:
    enum class Entry { Read, Missing, Damaged };

    explicit ZipContainer(const QString& path);
    ~ZipContainer();
    ZipContainer(const ZipContainer&) = delete;
    ZipContainer& operator=(const ZipContainer&) = delete;

    bool isOpen() const { return m_zip != nullptr; }
    // Reads the entry `name` (compared without regard to case) into `data`.
    Entry read(const QString& name, QByteArray& data) const;

private:
    zip* m_zip = nullptr;
};
