#include "ChildProcess.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QThread>

#include <vector>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

ChildProcess::~ChildProcess()
{
    if (isRunning()) {
        signal(SIGKILL);
        waitForFinished(5000);
    }
}

bool ChildProcess::start(const QStringList& command, const QString& outputFile, QString* error)
{
    if (isRunning()) {
        *error = QStringLiteral("already running");
        return false;
    }
    const QString program = command.value(0).startsWith(QLatin1Char('/'))
                                ? command.value(0)
                                : QStandardPaths::findExecutable(command.value(0));
    if (program.isEmpty()) {
        *error = QStringLiteral("no program %1 on PATH").arg(command.value(0));
        return false;
    }
    // Everything the child needs is made before fork: after it, only calls
    // that are safe in the child of a threaded process.
    std::vector<QByteArray> arguments{QFile::encodeName(program)};
    for (int i = 1; i < command.size(); ++i)
        arguments.push_back(QFile::encodeName(command.at(i)));
    std::vector<char*> argv;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    const int input = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int output = ::open(QFile::encodeName(outputFile).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (input < 0 || output < 0) {
        *error = QStringLiteral("cannot open %1").arg(outputFile);
        ::close(input);
        ::close(output);
        return false;
    }
    sigset_t none;
    sigemptyset(&none);
    struct sigaction defaultAction = {};
    defaultAction.sa_handler = SIG_DFL;

    const pid_t pid = ::fork();
    if (pid == 0) {
        ::dup2(input, STDIN_FILENO);
        ::dup2(output, STDOUT_FILENO);
        ::dup2(output, STDERR_FILENO);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::sigaction(SIGPIPE, &defaultAction, nullptr);
        ::execv(argv[0], argv.data());
        static const char failed[] = "exec failed\n";
        (void)!::write(STDERR_FILENO, failed, sizeof(failed) - 1);
        ::_exit(127);
    }
    const int forkErrno = errno;
    ::close(input);
    ::close(output);
    if (pid < 0) {
        *error = QStringLiteral("fork failed: %1").arg(QString::fromLocal8Bit(strerror(forkErrno)));
        return false;
    }
    m_pid = pid;
    m_reaped = false;
    m_status = 0;
    return true;
}

bool ChildProcess::isRunning() const
{
    return !waitForFinished(0);
}

bool ChildProcess::waitForFinished(int timeoutMs) const
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!m_reaped) {
        int status = 0;
        const pid_t done = ::waitpid(m_pid, &status, WNOHANG);
        if (done == m_pid || (done < 0 && errno != EINTR)) {
            m_reaped = true;
            m_status = done == m_pid ? status : -1;
        } else if (elapsed.elapsed() >= timeoutMs) {
            return false;
        } else {
            QThread::msleep(5);
        }
    }
    return true;
}

void ChildProcess::signal(int number) const
{
    if (m_pid > 0 && !m_reaped)
        ::kill(m_pid, number);
}

bool ChildProcess::exitedCleanly() const
{
    return m_reaped && m_status != -1 && WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0;
}
