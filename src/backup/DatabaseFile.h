#pragma once

#include <QString>
#include <functional>

#include "SqliteDatabase.h"

// The database as a file: consistent copies, the compacted copy, the check
// that a file is a sound database of this system, and the replacement of the
// file in one step. None of these touch the shared gateway; callers close it
// first (CloseDatabase).
class DatabaseFile
{
public:
    // Copies the database `source`, page by page in one read transaction, to
    // the new file `target`: a consistent snapshot even while another
    // connection writes.
    static bool Snapshot(const QString& source, const QString& target);
    // Runs `work` while the file `source` alone is the whole database and
    // nothing can be written into it: a read is held on it, begun with its
    // journal empty, so that no checkpoint writes into the file until `work`
    // ends. False, without running `work`, when the journal holds changes or
    // the file cannot be opened; otherwise what `work` answers.
    static bool WhileWhole(const QString& source, const std::function<bool()>& work);

    // Writes the database `source` without its free space to the new file
    // `target` (VACUUM INTO), flushed to disk.
    static bool WriteCompacted(const QString& source, const QString& target);

    // True when `path` is a SQLite database that passes its integrity check
    // and holds the tables of the system.
    static bool IsSystemDatabase(const QString& path);
    // Why `path` is not a sound database of this system, in the person's
    // words; "" when it is one.
    static QString Soundness(const QString& path);

    // The mark of the program's databases in their header ("MRVL"); older
    // ones carry none (0).
    static constexpr qint64 kMorvelApplicationId = SqliteDatabase::kApplicationId;
    static bool IsOwnApplicationId(qint64 id);

    // Puts `replacement` in place of `target` with one rename, after flushing
    // it to disk and folding back the journal of `target`. False, with both
    // files left as they were, when the journal of `target` belongs to a
    // connection still open (another copy of the program).
    static bool Replace(const QString& replacement, const QString& target);

    // The steps of a compaction or a restore ("written", "checked",
    // "replaced"), told to an observer as they are reached (a progress
    // display, or a test that stops the work at a given step).
    using StageObserver = std::function<void(const QString& stage)>;
    static void SetStageObserver(StageObserver observer);
    static void ReachStage(const QString& stage);

private:
    static bool foldJournal(const QString& path);
};
