#include "SevenZipRun.h"

#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "ErrorLog.h"
#include "ZoGenerateDisk.h"

extern char** environ;

namespace {

void logFailure(const QString& code, const QString& text)
{
    LogError(code, text, QStringLiteral("ZoGenerateDisk"));
}

} // namespace

SevenZipRun::~SevenZipRun()
{
    if (m_pid > 0 && !m_waited)
        Wait();
}

bool SevenZipRun::Start(const QStringList& arguments, bool keepOutput)
{
    m_arguments = arguments;
    const QString program = SevenZipProgram();
    if (program.isEmpty()) {
        logFailure(QStringLiteral("-1"), QStringLiteral("No se encontró el programa 7za"));
        return false;
    }
    QByteArrayList words{QFile::encodeName(program)};
    for (const QString& argument : arguments)
        words << QFile::encodeName(argument);
    std::vector<char*> argv;
    for (QByteArray& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    int ends[2] = {-1, -1};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (keepOutput && pipe2(ends, O_CLOEXEC) == 0) {
        posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    } else {
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    const int error = posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (ends[1] >= 0)
        close(ends[1]);
    m_pipe = ends[0];
    if (error != 0) {
        m_pid = -1;
        if (m_pipe >= 0)
            close(m_pipe);
        m_pipe = -1;
        logFailure(QStringLiteral("-1"), QStringLiteral("7za no pudo ejecutarse: ") +
                                             QString::fromLocal8Bit(std::strerror(error)));
        return false;
    }
    return true;
}

bool SevenZipRun::Ended()
{
    if (m_pid <= 0 || m_reaped)
        return true;
    // With its output kept, the run ends when the output is read.
    if (m_pipe >= 0)
        return false;
    const pid_t got = waitpid(m_pid, &m_status, WNOHANG);
    m_reaped = got == m_pid || (got < 0 && errno != EINTR);
    return m_reaped;
}

int SevenZipRun::Wait(bool log)
{
    if (m_waited || m_pid <= 0)
        return m_code;
    m_waited = true;
    if (m_pipe >= 0) {
        char buffer[4096];
        ssize_t got = 0;
        while ((got = read(m_pipe, buffer, sizeof buffer)) != 0) {
            if (got > 0 && m_output.size() < 65536)
                m_output.append(buffer, qsizetype(got));
            else if (got < 0 && errno != EINTR)
                break;
        }
        close(m_pipe);
        m_pipe = -1;
    }
    while (!m_reaped) {
        const pid_t got = waitpid(m_pid, &m_status, 0);
        m_reaped = got == m_pid || (got < 0 && errno != EINTR);
        if (got < 0 && errno == ECHILD)
            m_status = -1;
    }
    m_code = m_status >= 0 && WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1;
    if (log)
        LogFailure();
    return m_code;
}

void SevenZipRun::LogFailure() const
{
    if (m_code != 0)
        logFailure(QString::number(m_code), QStringLiteral("7za ") + m_arguments.join(u' ') +
                                                QStringLiteral("\n") +
                                                QString::fromLocal8Bit(m_output));
}
