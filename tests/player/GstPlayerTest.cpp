#include "GstPlayer.h"
#include "HostProcess.h"
#include "MediaError.h"
#include "MediaFiles.h"
#include "PlayerFixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace {

// A loopback HTTP server that answers every request with 404, or that
// stalls: it takes each request and never answers.
class LoopbackServer
{
public:
    enum class Mode { NotFound, Stall };

    explicit LoopbackServer(Mode mode = Mode::NotFound) : m_mode(mode), m_fd(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ::bind(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
        ::listen(m_fd, 4);
        ::getsockname(m_fd, reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this]() { serve(); });
    }
    ~LoopbackServer()
    {
        ::shutdown(m_fd, SHUT_RDWR);
        m_thread.join();
        ::close(m_fd);
        for (int client : m_stalled)
            ::close(client);
    }
    QString uri(const QString& path) const { return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(path); }

private:
    void serve()
    {
        for (int client; (client = ::accept(m_fd, nullptr, nullptr)) >= 0;) {
            if (m_mode == Mode::Stall) {
                m_stalled.append(client);
                continue;
            }
            QByteArray request;
            char buffer[1024];
            for (ssize_t n; !request.contains("\r\n\r\n") && (n = ::read(client, buffer, sizeof buffer)) > 0;)
                request.append(buffer, int(n));
            const QByteArray answer = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
            (void)!::write(client, answer.constData(), size_t(answer.size()));
            ::close(client);
        }
    }

    Mode m_mode;
    int m_fd;
    quint16 m_port = 0;
    std::thread m_thread;
    // Open until the server goes; only the serving thread adds to it.
    QList<int> m_stalled;
};

// The GStreamer player on tones made for the test, into a sink that runs
// faster than real time unless a test says otherwise.
class GstPlayerTest : public PlayerFixture
{
protected:
    std::unique_ptr<Player> makePlayer() override { return std::make_unique<GstPlayer>(sink()); }
    virtual QString sink() const { return QStringLiteral("fakesink sync=false"); }

    // A track whose roles give no duration: the stream tells it.
    VexaRoles tone(const QString& title, int ms) const
    {
        const QString path = m_dir.filePath(title + ".flac");
        EXPECT_TRUE(MediaFiles::writeTone(path, ms)) << path.toStdString();
        return track(title, 0, MediaFiles::uriOf(path));
    }
    QList<int> failureCodes() const
    {
        QList<int> codes;
        for (const RecordingPlayLogic::Event& event : logic()->eventsNamed("tryResumePlayback"))
            codes.append(event.errorCode);
        return codes;
    }

    QTemporaryDir m_dir;
};

// Raw 16-bit stereo into a file, for counting samples.
class GstGaplessTest : public GstPlayerTest
{
protected:
    QString sink() const override
    {
        return QStringLiteral("audioconvert ! audio/x-raw,format=S16LE,channels=2,rate=44100 ! filesink location=\"%1\"").arg(output());
    }
    QString output() const { return m_dir.filePath("output.raw"); }
};

class GstRealTimeTest : public GstPlayerTest
{
protected:
    QString sink() const override { return QStringLiteral("fakesink sync=true"); }
};

class GstBrokenSinkTest : public GstPlayerTest
{
protected:
    QString sink() const override { return QStringLiteral("nosuchsinkelement"); }
};

TEST_F(GstGaplessTest, TracksJoinWithoutALostOrAnAddedSample)
{
    const QList<VexaRoles> tracks = {tone("One", 300), tone("Two", 500), tone("Three", 700)};
    ASSERT_FALSE(control(playControl(container(tracks), 0)).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));

    // Each track shorter than the time ahead asks for its successor at once.
    expectPlayedThrough(tracks);

    ASSERT_TRUE(waitForState("stopped"));
    m_player.reset();
    QFile file(output());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray pcm = file.readAll();
    const qint64 frameBytes = 2 * MediaFiles::Channels;
    EXPECT_EQ(pcm.size() / frameBytes, MediaFiles::samplesOf(300 + 500 + 700));
    // A tone never rests on zero for long; a gap at a join would.
    const auto* samples = reinterpret_cast<const qint16*>(pcm.constData());
    int zeros = 0;
    for (qint64 i = 0; i < pcm.size() / 2; ++i) {
        zeros = samples[i] == 0 ? zeros + 1 : 0;
        ASSERT_LT(zeros, 8) << "silence at sample " << i / MediaFiles::Channels;
    }
}

TEST_F(GstPlayerTest, UnplayableUrisFailWithTheirCodeAndPlaybackGoesOn)
{
    const LoopbackServer server;
    const QString garbage = m_dir.filePath("garbage.flac");
    ASSERT_TRUE(MediaFiles::writeGarbage(garbage));
    const QList<VexaRoles> tracks = {
        track("Missing", 0, MediaFiles::uriOf(m_dir.filePath("missing.flac"))),
        track("Garbage", 0, MediaFiles::uriOf(garbage)),
        track("Gone", 0, server.uri("gone.flac")),
        track("Refused", 0, QStringLiteral("http://127.0.0.1:%1/x.flac").arg(HostProcess::freePort())),
        track("Broken", 0, "error:"),
        tone("Good", 200),
    };
    ASSERT_FALSE(control(playControl(container(tracks), 0)).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));

    EXPECT_EQ(failureCodes(), QList<int>({MediaError::NotFound, MediaError::Unsupported, MediaError::NotFound,
                                          MediaError::Unreachable, Player::MediaUnavailableCode}));
    const QList<RecordingPlayLogic::Event> started = logic()->eventsNamed("mediaPlaybackStarted");
    ASSERT_EQ(started.size(), 1);
    EXPECT_EQ(started.first().newRoles, tracks.last());
    EXPECT_TRUE(started.first().oldRoles.isEmpty());
    const QVariantHash ended = status();
    EXPECT_EQ(ended.value("state"), "stopped");
    EXPECT_FALSE(ended.value("error").isValid());
}

TEST_F(GstPlayerTest, AStalledServerFailsItsTrackWithinTheBoundAndPlaybackGoesOn)
{
    const LoopbackServer server(LoopbackServer::Mode::Stall);
    const QList<VexaRoles> tracks = {track("Stalled", 0, server.uri("slow.flac")), tone("Good", 200)};
    QElapsedTimer elapsed;
    elapsed.start();
    ASSERT_FALSE(control(playControl(container(tracks), 0)).hasError());
    ASSERT_TRUE(waitFor([&]() { return !logic()->eventsNamed("tryResumePlayback").isEmpty(); }, 15000));
    EXPECT_LE(elapsed.elapsed(), qint64(GstPlayer::StartTimeoutMs) + 500);
    EXPECT_EQ(failureCodes(), QList<int>{MediaError::Unreachable});
    ASSERT_TRUE(waitForEvent("playbackEnded"));
    EXPECT_EQ(logic()->eventsNamed("mediaPlaybackStarted").value(0).newRoles, tracks.last());
}

TEST_F(GstRealTimeTest, PauseResumeAndSeekFollowThePipeline)
{
    ASSERT_FALSE(control(playControl(container({tone("Long", 30000)}), 0)).hasError());
    ASSERT_TRUE(waitForEvent("mediaPlaybackStarted"));
    // The roles said nothing of the length: the stream did.
    ASSERT_TRUE(waitFor([&]() { return status().value("durationMs").toLongLong() == 30000; }));
    ASSERT_TRUE(waitFor([&]() { return position() > 0; }));

    ASSERT_FALSE(control("pause").hasError());
    EXPECT_EQ(state(), "paused");
    const qint64 pausedAt = position();
    QThread::msleep(300);
    EXPECT_EQ(position(), pausedAt);
    ASSERT_FALSE(control("seek", {{"positionMs", 20000}}).hasError());
    EXPECT_EQ(position(), 20000);
    ASSERT_FALSE(control("resume").hasError());
    EXPECT_TRUE(waitFor([&]() { return position() > 20200; }, 3000));
    // Past the end: refused, and playback goes on.
    EXPECT_EQ(control("seek", {{"positionMs", 31000}}).error().name(), CMError::BadRequestName());
    EXPECT_EQ(state(), "playing");
    EXPECT_EQ(logic()->eventsNamed("prepareNextMedia").size(), 1) << "asked once the last ten seconds began";

    ASSERT_FALSE(control("seek", {{"positionMs", 29700}}).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));
    EXPECT_EQ(state(), "stopped");
    EXPECT_EQ(position(), 0);
    EXPECT_TRUE(control("pause").hasError());
    EXPECT_TRUE(control("seek", {{"positionMs", 0}}).hasError());
}

TEST_F(GstBrokenSinkTest, EveryTrackFailsAsAnOutputError)
{
    ASSERT_FALSE(control(playControl(container({tone("One", 200)}), 0)).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));
    EXPECT_EQ(failureCodes(), QList<int>({MediaError::OutputFailed}));
    EXPECT_EQ(VexaError(status().value("error").toHash()).code(), MediaError::OutputFailed);
}

} // namespace
