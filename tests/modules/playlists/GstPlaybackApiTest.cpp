#include "MediaFiles.h"
#include "PlaylistsApi.h"

#include <QTemporaryDir>

#include <functional>

namespace {

using J = PlaylistsApi;

// The play logic of the module driving the GStreamer player over HTTP, on
// tones made for the test, played faster than real time.
class GstPlaybackApi : public PlaylistsHostTest
{
protected:
    GstPlaybackApi() : PlaylistsHostTest({"--player", "gstreamer", "--audio-sink", "fakesink sync=false"}) {}

    QVariantHash tone(const QString& title, int ms) const
    {
        const QString path = m_media.filePath(title + ".flac");
        EXPECT_TRUE(MediaFiles::writeTone(path, ms));
        return J::track(title, 0, MediaFiles::uriOf(path));
    }
    HttpReply playNow(const QVariantList& items) const
    {
        return m_pl.command("add-external-items", QVariantHash{{"plid", 0}, {"mode", "now"}, {"items", items}});
    }
    // The statuses a subscription reports until done holds for the last one.
    QList<QVariantHash> statusesUntil(const QString& id, const std::function<bool(const QVariantHash&)>& done) const
    {
        return m_pl.api().valuesUntil(id, [&](const QList<QVariantHash>& seen) { return done(seen.last()); });
    }
    // The titles that played, each run of one title counted once.
    static QStringList played(const QList<QVariantHash>& statuses)
    {
        QStringList titles;
        for (const QVariantHash& status : statuses) {
            const QString title = status.value("track").toHash().value("title").toString();
            if (status.value("state") == "playing" && (titles.isEmpty() || titles.last() != title))
                titles.append(title);
        }
        return titles;
    }
    static bool ended(const QVariantHash& status) { return status.value("state") == "stopped" && status.value("track").isNull(); }

    QTemporaryDir m_media;
};

TEST_F(GstPlaybackApi, theQueuePlaysThroughAndRepeatAllWraps)
{
    const QString id = m_pl.api().subscribe({{"value", "player:/status"}});
    ASSERT_TRUE(J::answeredTrue(playNow({tone("One", 300), tone("Two", 300), tone("Three", 300)})));
    bool started = false;
    QList<QVariantHash> seen = statusesUntil(id, [&](const QVariantHash& s) {
        started = started || s.value("state") == "playing";
        return started && ended(s);
    });
    EXPECT_EQ(played(seen), QStringList({"One", "Two", "Three"}));

    ASSERT_EQ(m_pl.command("set-repeat", R"({"plid": 0, "mode": "all"})").status, 200);
    ASSERT_EQ(m_pl.command("play-playlist", R"({"plid": 0})").status, 200);
    int starts = 0;
    seen = statusesUntil(id, [&](const QVariantHash& s) { return s.value("state") == "playing" && ++starts > 40; });
    EXPECT_EQ(played(seen).mid(0, 5), QStringList({"One", "Two", "Three", "One", "Two"}));
    EXPECT_EQ(m_pl.set("player:/control", QVariantHash{{"control", "stop"}}).status, 200);
}

TEST_F(GstPlaybackApi, fiveUnplayableTracksAreSkippedAndTheSixthEndsPlayback)
{
    QVariantList items;
    for (int i = 0; i < 6; ++i)
        items.append(J::track(QStringLiteral("Missing%1").arg(i), 0, MediaFiles::uriOf(m_media.filePath("nothing.flac"))));
    items.append(tone("Good", 300));
    const QString id = m_pl.api().subscribe({{"value", "player:/status"}});
    ASSERT_TRUE(J::answeredTrue(playNow(items)));
    const QList<QVariantHash> seen = statusesUntil(id, [](const QVariantHash& s) { return ended(s) && s.value("error").isValid(); });
    EXPECT_EQ(seen.last().value("error").toHash().value("code"), 404);
    EXPECT_FALSE(played(seen).contains("Good"));
    EXPECT_TRUE(m_host.log().contains("Track Missing5 fails")) << "the sixth was tried";
}

// The controls a person uses while a track plays, through the play logic
// over HTTP in real time: the same flows drive either player.
class PlayerControlsApi : public PlaylistsHostTest, public ::testing::WithParamInterface<const char*>
{
protected:
    PlayerControlsApi()
        : PlaylistsHostTest(gstreamer() ? QStringList{"--player", "gstreamer", "--audio-sink", "fakesink sync=true"}
                                        : QStringList{"--time-scale", "1"})
    {
    }
    static bool gstreamer() { return QLatin1String(GetParam()) == QLatin1String("gstreamer"); }

    // A track of four seconds: shorter than the time ahead, so each is
    // announced as the next one as soon as the one before starts.
    QVariantHash track(const QString& title) const
    {
        if (!gstreamer())
            return J::track(title, 4);
        const QString path = m_media.filePath(title + ".flac");
        EXPECT_TRUE(MediaFiles::writeTone(path, 4000));
        return J::track(title, 0, MediaFiles::uriOf(path));
    }
    HttpReply control(const QString& name, const QVariantHash& arguments = {}) const
    {
        QVariantHash value = arguments;
        value.insert("control", name);
        return m_pl.set("player:/control", value);
    }
    HttpReply playMode(const QString& mode) const
    {
        return m_pl.set("player:/playMode", QVariantHash{{"type", "playerPlayMode"}, {"playerPlayMode", mode}});
    }
    // Waits until a track plays for which done(title, position) holds; false after ten seconds.
    bool waitForPlaying(const std::function<bool(const QString&, qint64)>& done) const
    {
        return m_pl.api().waitForPlayer([&](const QVariantHash& status) {
            const QVariantHash position = m_pl.api().data("player:/position", "value").json().toHash().value("value").toHash();
            return status.value("state") == "playing"
                && done(status.value("track").toHash().value("title").toString(), position.value("i64_").toLongLong());
        });
    }
    bool plays(const QString& title) const
    {
        return waitForPlaying([&](const QString& playing, qint64) { return playing == title; });
    }

    QTemporaryDir m_media;
};

TEST_P(PlayerControlsApi, nextPreviousRepeatOneAndShuffle)
{
    ASSERT_TRUE(J::answeredTrue(
        m_pl.command("add-external-items", QVariantHash{{"plid", 0}, {"mode", "now"}, {"items", QVariantList{track("A"), track("B"), track("C")}}})));
    ASSERT_TRUE(plays("A"));
    ASSERT_EQ(control("next").status, 200);
    ASSERT_TRUE(plays("B"));
    // Within the first seconds of a track "previous" goes back.
    ASSERT_EQ(control("previous").status, 200);
    ASSERT_TRUE(plays("A"));

    // Repeat one: past its end the track starts again, in place of the next.
    ASSERT_EQ(playMode("repeatOne").status, 200);
    ASSERT_EQ(control("seek", {{"positionMs", 3700}}).status, 200);
    EXPECT_TRUE(waitForPlaying([](const QString& title, qint64 position) { return title == "A" && position >= 3700; }));
    EXPECT_TRUE(waitForPlaying([](const QString& title, qint64 position) { return title == "A" && position < 1000; }));

    // Shuffle: "next" leaves the track for another one of the queue.
    ASSERT_EQ(playMode("shuffle").status, 200);
    ASSERT_EQ(control("next").status, 200);
    EXPECT_TRUE(waitForPlaying([](const QString& title, qint64) { return title == "B" || title == "C"; }));
}

INSTANTIATE_TEST_SUITE_P(BothPlayers, PlayerControlsApi, ::testing::Values("emulated", "gstreamer"),
                         [](const ::testing::TestParamInfo<const char*>& info) { return std::string(info.param); });

} // namespace
