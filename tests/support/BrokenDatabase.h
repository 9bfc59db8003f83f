#pragma once

#include <QString>

// The ways the database of the data folder stops taking writes, as a save
// meets them: a file that can only be read, a disk with no room left, pages
// that are damaged.
enum class Breakage { ReadOnly, DiskFull, Damaged };

namespace BrokenDatabase {

// Makes the database refuse writes that way from now on: this run's
// connection becomes read-only; every write to the disk fails as on a full
// one (reads go on); or the pages of `table` are damaged on disk.
void Break(Breakage how, const QString& table = QStringLiteral("Contribuyentes"));
// The disk has room again and the connection may write again (a damaged
// table stays damaged).
void Mend();
// The disk gets its room back, whatever a test left behind (at the end of
// every test's run).
void RepairDisk();
// The rows of a data-driven test over the three breakages, in a column
// "breakage"; the test reads it with FETCH_BREAKAGE.
void Rows();
// What the person is told when a save meets it.
QString SaveFailure(Breakage how);

} // namespace BrokenDatabase

// A breakage is the file's own (its mode, its disk, its pages): the server
// run skips it.
#define FETCH_BREAKAGE(name)                                                                       \
    SKIP_ON_SERVER("a read-only, full or damaged file is the file's own case");                    \
    QFETCH(int, breakage);                                                                         \
    const Breakage name = Breakage(breakage)
