#pragma once

#include <QString>
#include <QStringList>
#include <QList>
#include <QPair>

// The command line of vexa-host.
struct HostOptions
{
    // The working directory the host changes into; data-rw/ lives there.
    QString root;
    QString listenAddress = QStringLiteral("127.0.0.1");
    quint16 port = 8080;
    QString modulesDir;
    // How much faster than real time the player's virtual clock runs.
    double timeScale = 1.0;
    // log4cplus level name of every logger: TRACE, DEBUG, INFO, WARN, ERROR, FATAL.
    QString logLevel = QStringLiteral("INFO");
    // How long an HTTP request waits for a module's reply.
    int replyTimeoutMs = 10000;
    // The largest request body taken (413 beyond): room for the store's
    // default item limit of tracks in one add.
    int maxBodyBytes = 16 * 1024 * 1024;
    // The player behind "player:": "emulated" or "gstreamer".
    QString player = QStringLiteral("emulated");
    // The gstreamer player's audio sink, as gst-launch describes it.
    QString audioSink = QStringLiteral("autoaudiosink");
    // Settings stored before the modules load (--set PATH=VALUE), in order.
    QList<QPair<QString, QString>> settings;

    // Parses arguments (without the program name); false with error set on bad input.
    static bool parse(const QStringList& arguments, HostOptions* options, QString* error);
    static QString usage();
};
