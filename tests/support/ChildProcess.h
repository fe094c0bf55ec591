#pragma once

#include <QString>
#include <QStringList>

#include <sys/types.h>

// A program run as a child with fork and exec, its output appended to a file.
// QProcess is not used: under qemu-user it cannot start a program (Qt asks
// for a pidfd with clone, which the emulator refuses), and after that failure
// it signals pid -1, which reaches every process the user may signal. Signals
// here go only to a child that was started and has not been reaped.
class ChildProcess
{
public:
    ChildProcess() = default;
    ~ChildProcess();

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Starts command (the program, found on PATH unless absolute, then its
    // arguments); false with *error set when it cannot be started.
    bool start(const QStringList& command, const QString& outputFile, QString* error);
    bool isRunning() const;
    // Waits up to timeoutMs for the child to end; true once it has.
    bool waitForFinished(int timeoutMs) const;
    void signal(int number) const;
    // True when the child ended by exit status 0.
    bool exitedCleanly() const;
    pid_t pid() const { return m_pid; }

private:
    pid_t m_pid = 0;
    mutable bool m_reaped = true;
    mutable int m_status = 0;
};
