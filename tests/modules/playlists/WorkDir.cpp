#include "WorkDir.h"

#include <QDir>

WorkDir::WorkDir()
    : m_previous(QDir::currentPath())
{
    QDir::setCurrent(m_dir.path());
}

WorkDir::~WorkDir()
{
    QDir::setCurrent(m_previous);
}

QString WorkDir::path() const
{
    return m_dir.path();
}
