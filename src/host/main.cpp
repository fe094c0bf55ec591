#include "HostOptions.h"
#include "HttpServer.h"
#include "LogSetup.h"
#include "MemoryTrimmer.h"
#include "ModuleLoader.h"
#include "EmulatedPlayer.h"
#include "GstPlayer.h"
#include "PlayerWorker.h"
#include "PowerManager.h"
#include "SettingsStore.h"
#include "SignalWatcher.h"

#include <CMRootWorker.h>
#include <PlayLogicInterface.h>
#include <VexaLog.h>

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <memory>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    // First of all, so that a stop asked for while starting is a clean one.
    SignalWatcher signalWatcher;
    HostOptions options;
    options.modulesDir = QStringLiteral(VEXA_DEFAULT_MODULES_DIR);
    QString error;
    if (!HostOptions::parse(app.arguments().mid(1), &options, &error)) {
        std::fputs(error.toLocal8Bit().constData(), stderr);
        return 2;
    }
    LogSetup::configure(options.logLevel);
    const log4cplus::Logger logger = log4cplus::Logger::getInstance("Host");

    // Relative module folders are taken from where the host was started.
    options.modulesDir = QDir(options.modulesDir).absolutePath();
    if (!options.root.isEmpty() && !QDir::setCurrent(options.root)) {
        LOG4CPLUS_FATAL(logger, "Cannot change into root " << options.root);
        return 1;
    }
    QDir().mkpath(QStringLiteral("data-rw"));

    SettingsStore settings;
    for (const auto& setting : qAsConst(options.settings)) {
        if (!settings.setText(setting.first, setting.second, &error)) {
            LOG4CPLUS_FATAL(logger, "--set " << setting.first << ": " << error);
            return 2;
        }
    }
    PowerManager power;
    CMRoot()->registerWorker(SettingsStore::prefix(), &settings);
    CMRoot()->registerWorker(PowerManager::prefix(), &power);
    std::unique_ptr<Player> player;
    if (options.player == QLatin1String("gstreamer"))
        player = std::make_unique<GstPlayer>(options.audioSink);
    else
        player = std::make_unique<EmulatedPlayer>(options.timeScale);
    PlayerWorker playerWorker(player.get());
    PlayLogicInterface::setPlayerInstance(player.get());
    CMRoot()->registerWorker(PlayerWorker::prefix(), &playerWorker);

    ModuleLoader modules;
    modules.loadAll(options.modulesDir, {SettingsStore::prefix(), PowerManager::prefix(), PlayerWorker::prefix()});

    if (signalWatcher.stopPending()) {
        LOG4CPLUS_INFO(logger, "Stopped while starting");
        modules.stopAll();
        return 0;
    }
    HttpServer server(CMRoot(), options.replyTimeoutMs, options.maxBodyBytes);
    if (!server.start(options.listenAddress, options.port, &error)) {
        LOG4CPLUS_FATAL(logger, "Cannot listen on " << options.listenAddress << ":" << options.port << ": " << error);
        modules.stopAll();
        return 1;
    }
    LOG4CPLUS_INFO(logger, "Serving on " << options.listenAddress << ":" << server.port() << " in " << QDir::currentPath());

    MemoryTrimmer trimmer;
    // A signal that came after the check above is waiting in the watcher and
    // is delivered as soon as the event loop runs.
    QObject::connect(&signalWatcher, &SignalWatcher::stopRequested, &app, [&](int number) {
        LOG4CPLUS_INFO(logger, "Signal " << number << ": stopping");
        server.stop();
        modules.stopAll();
        // Nothing announces player changes once the listeners are going.
        player->stop(VexaPlayLogicStopReason::Stopped);
        app.quit();
    });
    return app.exec();
}
