#pragma once

#include <VexaPlayer.h>

#include <QList>
#include <QStringList>

// A player that only notes what play logics ask of it.
class FakePlayer : public VexaPlayer
{
public:
    struct Call
    {
        QString op;
        CMPath path;
        VexaRoles roles;
        int number = -1;
        VexaPlayLogicData data;
    };

    bool playContainer(const VexaRoles& container, const VexaRoles&, int index, qint64, bool) override
    {
        return note({"playContainer", container.mediaData().metaData().playLogicPath(), container, index, {}});
    }
    bool stop(VexaPlayLogicStopReason::Enum reason) override { return note({"stop", {}, {}, reason, {}}); }
    bool play(const CMPath& path, const VexaRoles& roles, const QVariantHash&) override
    {
        return note({"play", path, roles, -1, {}});
    }
    bool setNextMedia(const CMPath& path, const VexaRoles& roles, const QVariantHash&) override
    {
        return note({"setNextMedia", path, roles, -1, {}});
    }
    bool clearNextMedia(const CMPath& path) override { return note({"clearNextMedia", path, {}, -1, {}}); }
    void publishData(const CMPath& path, const VexaPlayLogicData& data) override
    {
        note({"publishData", path, {}, -1, data});
    }
    void publishPlayMode(const CMPath& path, VexaPlayerPlayMode::Enum mode) override
    {
        note({"publishPlayMode", path, {}, mode, {}});
    }
    qint64 positionMs() const override { return position; }

    QStringList ops() const
    {
        QStringList names;
        for (const Call& call : calls)
            names.append(call.op);
        return names;
    }

    QList<Call> callsOf(const QString& op) const
    {
        QList<Call> found;
        for (const Call& call : calls) {
            if (call.op == op)
                found.append(call);
        }
        return found;
    }

    QList<Call> calls;
    qint64 position = 0;

private:
    bool note(const Call& call)
    {
        calls.append(call);
        return true;
    }
};
