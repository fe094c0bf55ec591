#pragma once

#include <QString>
#include <QTemporaryDir>

// Makes a fresh temporary directory the working directory for the lifetime
// of the object, so that each test gets a store of its own.
class WorkDir
{
public:
    WorkDir();
    ~WorkDir();

    QString path() const;

private:
    QTemporaryDir m_dir;
    QString m_previous;
};
