#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class CMAbstractWorker;
class QThread;

// Loads every module of a folder: each libvexa_<prefix>.so is opened, its
// worker is created on a thread of its own through worker_create and
// registered at the root under <prefix>. A module that cannot be loaded is
// reported by name and skipped.
class ModuleLoader
{
public:
    ModuleLoader() = default;
    ~ModuleLoader();

    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // Loads the modules of dir; reserved prefixes (those of the host) are refused.
    void loadAll(const QString& dir, const QStringList& reservedPrefixes);
    // Takes the modules off the root and ends their threads.
    void stopAll();

    QStringList loadedPrefixes() const;

    // "playlists" for ".../libvexa_playlists.so"; empty when the name does not fit.
    static QString prefixOf(const QString& fileName);

private:
    struct Module
    {
        QString prefix;
        void* handle = nullptr;
        QThread* thread = nullptr;
        CMAbstractWorker* worker = nullptr;
    };

    bool load(const QString& path, const QString& prefix);

    QList<Module> m_modules;
};
