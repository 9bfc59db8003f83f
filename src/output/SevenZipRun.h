#pragma once

#include <QByteArray>
#include <QStringList>
#include <sys/types.h>

// One run of the archiver. It is started with posix_spawn, which does not
// copy this process's memory as a fork would (a large share of the time of a
// small archive), with no input and, when asked, its output kept for the
// error log. A run may go on while other work is done, and is waited for
// at the end; one never waited for is waited for when it is destroyed.
class SevenZipRun
{
public:
    SevenZipRun() = default;
    ~SevenZipRun();
    SevenZipRun(const SevenZipRun&) = delete;
    SevenZipRun& operator=(const SevenZipRun&) = delete;

    // Starts the archiver with `arguments`; false, logged, when it is
    // missing or could not start. Without `keepOutput` its output is thrown
    // away and only its exit code is logged on failure.
    bool Start(const QStringList& arguments, bool keepOutput = true);
    // Whether the run has ended, without waiting.
    bool Ended();
    // Waits for the end: the archiver's exit code, or -1 when it did not
    // start or did not end by itself. A code other than 0 is logged, unless
    // not `log` (a run waited for on another thread): then LogFailure().
    int Wait(bool log = true);
    void LogFailure() const;

private:
    QStringList m_arguments;
    QByteArray m_output;
    pid_t m_pid = -1;
    int m_pipe = -1;
    int m_status = 0;
    bool m_reaped = false;
    bool m_waited = false;
    int m_code = -1;
};
