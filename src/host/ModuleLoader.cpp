#include "ModuleLoader.h"

#include <CMRootWorker.h>
#include <VexaLog.h>
#include <VexaModule.h>

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <dlfcn.h>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Host");
}

} // namespace

ModuleLoader::~ModuleLoader()
{
    stopAll();
}

QString ModuleLoader::prefixOf(const QString& fileName)
{
    const QString name = QFileInfo(fileName).fileName();
    const QString head = QStringLiteral("libvexa_");
    const QString tail = QStringLiteral(".so");
    if (!name.startsWith(head) || !name.endsWith(tail) || name.size() <= head.size() + tail.size())
        return QString();
    return name.mid(head.size(), name.size() - head.size() - tail.size());
}

void ModuleLoader::loadAll(const QString& dir, const QStringList& reservedPrefixes)
{
    const QFileInfoList files = QDir(dir).entryInfoList({QStringLiteral("libvexa_*.so")}, QDir::Files, QDir::Name);
    if (files.isEmpty())
        LOG4CPLUS_WARN(logger(), "No modules in " << dir);
    for (const QFileInfo& file : files) {
        const QString prefix = prefixOf(file.fileName());
        if (reservedPrefixes.contains(prefix) || loadedPrefixes().contains(prefix)) {
            LOG4CPLUS_ERROR(logger(), "Module " << file.fileName() << " skipped: prefix " << prefix << " is taken");
            continue;
        }
        if (load(file.absoluteFilePath(), prefix))
            LOG4CPLUS_INFO(logger(), "Module " << file.fileName() << " serves " << prefix << ":");
    }
}

bool ModuleLoader::load(const QString& path, const QString& prefix)
{
    const QString name = QFileInfo(path).fileName();
    void* handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        LOG4CPLUS_ERROR(logger(), "Module " << name << " skipped: " << dlerror());
        return false;
    }
    auto create = reinterpret_cast<VexaWorkerCreateFunction>(dlsym(handle, "worker_create"));
    if (!create) {
        LOG4CPLUS_ERROR(logger(), "Module " << name << " skipped: it has no worker_create");
        dlclose(handle);
        return false;
    }

    // The worker is built on its own thread, so that it and everything it
    // creates live there and handle their requests there.
    auto* thread = new QThread;
    thread->setObjectName(prefix);
    thread->start();
    auto* context = new QObject;
    context->moveToThread(thread);
    const QHash<QString, QVariant> parameters = {{QStringLiteral("prefix"), prefix},
                                                 {QStringLiteral("modulePath"), path}};
    CMAbstractWorker* worker = nullptr;
    QMetaObject::invokeMethod(context, [&]() { worker = create(nullptr, parameters); }, Qt::BlockingQueuedConnection);
    context->deleteLater();
    if (!worker) {
        LOG4CPLUS_ERROR(logger(), "Module " << name << " skipped: worker_create failed");
        thread->quit();
        thread->wait();
        delete thread;
        // The library stays loaded: a failed start may have left objects behind.
        return false;
    }
    CMRoot()->registerWorker(prefix, worker);
    m_modules.append(Module{prefix, handle, thread, worker});
    return true;
}

void ModuleLoader::stopAll()
{
    for (Module& module : m_modules) {
        CMRoot()->unregisterWorker(module.prefix);
        module.thread->quit();
        module.thread->wait();
        delete module.thread;
        module.thread = nullptr;
    }
    // Workers and libraries stay until the process ends: modules own objects
    // that are meant to live as long as the process.
    m_modules.clear();
}

QStringList ModuleLoader::loadedPrefixes() const
{
    QStringList prefixes;
    for (const Module& module : m_modules)
        prefixes.append(module.prefix);
    return prefixes;
}
