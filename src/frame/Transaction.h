#pragma once

#include <QString>
#include <functional>

class ZoAccess;

// One unit of work on the database, ended on every path when its scope ends.
//
// - AllOrNothing (a window's save): its statements stand or fall together; if
//   any of them failed, nothing of the unit remains when it ends.
// - KeepWhatPassed (the long loops of an import, a copy or an upgrade, grouped
//   in one transaction only for speed): what passed is committed when the unit
//   ends, whatever stopped the loop.
//
// Units nest: an inner one is a savepoint of the outer, and the outermost
// decides what reaches the disk.
class Transaction
{
public:
    enum class Mode { AllOrNothing, KeepWhatPassed };

    explicit Transaction(Mode mode = Mode::AllOrNothing);
    Transaction(ZoAccess& db, Mode mode);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // Ends the unit now; true when all of it stands on disk. Ending it again
    // does nothing and repeats the answer.
    bool commit();
    // Ends the unit now, undoing all of it.
    void rollback();

    // No statement of the unit has failed so far.
    bool ok() const;
    // Why the unit did not stand, in the person's words ("No se pudo guardar:
    // el disco está lleno."); "" when it stood.
    QString failure() const { return m_failure; }

private:
    bool release();
    void undo();

    ZoAccess& m_db;
    Mode m_mode;
    QString m_name;
    int m_failuresAtStart = 0;
    bool m_open = false;
    bool m_stood = false;
    QString m_failure;
};

// "No se pudo guardar: ..." for the engine's result code of a failed write.
QString SaveFailureText(int sqliteCode, const QString& engineMessage);

// A window's save: the writes of `save` stand together or not at all. True
// when all of them stand on disk. When the database refuses them (read-only,
// damaged, full disk), nothing of them remains, the person is told why in an
// exclamation box, and the answer is false, so that the window stays open
// with what was typed. A `save` that answers false itself (a check it already
// told of) has its writes undone without a further word.
bool SaveWhole(const std::function<bool()>& save);
