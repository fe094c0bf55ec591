#include "HostOptions.h"

namespace {

const QStringList kLevels = {QStringLiteral("TRACE"), QStringLiteral("DEBUG"), QStringLiteral("INFO"),
                             QStringLiteral("WARN"),  QStringLiteral("ERROR"), QStringLiteral("FATAL")};

bool parseListen(const QString& text, HostOptions* options)
{
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    if (colon <= 0)
        return false;
    bool ok = false;
    const uint port = text.mid(colon + 1).toUInt(&ok);
    if (!ok || port > 65535)
        return false;
    QString address = text.left(colon);
    if (address.startsWith(QLatin1Char('[')) && address.endsWith(QLatin1Char(']')))
        address = address.mid(1, address.size() - 2);
    options->listenAddress = address;
    options->port = quint16(port);
    return true;
}

} // namespace

bool HostOptions::parse(const QStringList& arguments, HostOptions* options, QString* error)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& name = arguments.at(i);
        if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
            *error = usage();
            return false;
        }
        if (i + 1 >= arguments.size()) {
            *error = QStringLiteral("%1 needs a value (or is unknown)\n").arg(name) + usage();
            return false;
        }
        const QString value = arguments.at(++i);
        bool ok = true;
        if (name == QLatin1String("--root")) {
            options->root = value;
        } else if (name == QLatin1String("--listen")) {
            ok = parseListen(value, options);
        } else if (name == QLatin1String("--modules")) {
            options->modulesDir = value;
        } else if (name == QLatin1String("--time-scale")) {
            options->timeScale = value.toDouble(&ok);
            ok = ok && options->timeScale > 0;
        } else if (name == QLatin1String("--log-level")) {
            options->logLevel = value.toUpper();
            ok = kLevels.contains(options->logLevel);
        } else if (name == QLatin1String("--reply-timeout")) {
            options->replyTimeoutMs = value.toInt(&ok);
            ok = ok && options->replyTimeoutMs > 0;
        } else if (name == QLatin1String("--max-body-bytes")) {
            options->maxBodyBytes = value.toInt(&ok);
            ok = ok && options->maxBodyBytes > 0;
        } else if (name == QLatin1String("--player")) {
            options->player = value;
            ok = value == QLatin1String("emulated") || value == QLatin1String("gstreamer");
        } else if (name == QLatin1String("--audio-sink")) {
            options->audioSink = value;
            ok = !value.trimmed().isEmpty();
        } else if (name == QLatin1String("--set")) {
            const int equals = value.indexOf(QLatin1Char('='));
            ok = equals > 0;
            if (ok)
                options->settings.append({value.left(equals), value.mid(equals + 1)});
        } else {
            *error = QStringLiteral("unknown option %1\n").arg(name) + usage();
            return false;
        }
        if (!ok) {
            *error = QStringLiteral("invalid value for %1: %2\n").arg(name, value) + usage();
            return false;
        }
    }
    return true;
}

QString HostOptions::usage()
{
    return QStringLiteral(
        "usage: vexa-host [--root DIR] [--listen ADDR:PORT] [--modules DIR] [--time-scale F]\n"
        "                 [--log-level TRACE|DEBUG|INFO|WARN|ERROR|FATAL] [--reply-timeout MS]\n"
        "                 [--max-body-bytes N] [--player emulated|gstreamer] [--audio-sink DESC]\n"
        "                 [--set PATH=VALUE]...\n");
}
