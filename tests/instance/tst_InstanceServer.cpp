// The channel in one process: the sender, which blocks, is a thread of its own.

#include "instance/FileInbox.h"
#include "instance/InstanceClient.h"
#include "instance/InstanceLock.h"
#include "instance/InstanceMessage.h"
#include "instance/InstanceServer.h"
#include "shared/Timer.h"
#include "support/Rows.h"
#include "support/RunAgain.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QVariantList>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using Result = InstanceClient::Result;

namespace {

/// An instance that runs in the application folder `folder`.
struct Instance
{
    explicit Instance(const QString& folder)
        : lock(folder)
        , server(lock, inbox)
    {
        QObject::connect(&inbox, &FileInbox::Received, &inbox,
                         [this](const QString& name) { names << name; });
    }

    FileInbox inbox;
    QStringList names;
    InstanceLock lock;
    InstanceServer server;
};

/// A starting instance that hands a file over, beside the event loop of the test.
class Sender
{
public:
    Sender(const QString& folder, const QString& name, int patienceMs = InstanceClient::PatienceMs)
        : m_thread(QThread::create([=, this] {
            InstanceLock lock(folder);
            m_hasBegun = true;
            m_result = InstanceClient(lock).handOver(name, patienceMs);
        }))
    {
        m_thread->start();
    }
    ~Sender() { m_thread->wait(); }

    bool hasBegun() const { return m_hasBegun; }
    bool isOver() const { return m_thread->isFinished(); }
    Result result() const
    {
        if (!waitFor([this] { return isOver(); }))
            qFatal("the sender does not end");
        m_thread->wait();
        return m_result;
    }

private:
    std::atomic<bool> m_hasBegun = false;
    Result m_result = Result::NoServer;
    std::unique_ptr<QThread> m_thread;
};

/// Whether a file that is handed over reaches `one`, as the only one so far.
bool isReached(const Instance& one, const QString& folder, const QString& file)
{
    return Sender(folder, file).result() == Result::Delivered && one.names == QStringList(file);
}

/// One that waited as long as this would hang.
constexpr int EndlessMs = std::numeric_limits<int>::max();

/// A connection that says `bytes`, whatever they are.
class Stranger
{
public:
    explicit Stranger(const QString& folder, const QByteArray& bytes = {})
    {
        socket.connectToServer(InstanceLock(folder).serverName());
        socket.write(bytes);
    }
    bool isDropped()
    {
        return waitFor([this] { return socket.state() == QLocalSocket::UnconnectedState; });
    }

    QLocalSocket socket;
};

} // namespace

class InstanceServerTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", m_runtime->path().toLocal8Bit());
        qputenv("XDG_CACHE_HOME", m_folder->filePath("cache").toLocal8Bit());
    }

    void aFileReachesTheInstanceThatServes()
    {
        const Instance running(folder());
        QVERIFY(running.server.isServing());
        const QString name = QString::fromUtf8("/a b/日本 ÿ\U0001F600\n\".pvm");
        QVERIFY(isReached(running, folder(), name));
        QCOMPARE(Sender(folder(), "").result(), Result::Delivered);
        QCOMPARE(running.names.last(), "");
    }

    void theSameFileTwiceComesTwice()
    {
        const Instance running(folder());
        QCOMPARE(Sender(folder(), "/a.pvm").result(), Result::Delivered);
        QCOMPARE(Sender(folder(), "/a.pvm").result(), Result::Delivered);
        QCOMPARE(running.names, (QStringList{"/a.pvm", "/a.pvm"}));
    }

    void aFileNeverSharesItsFolderWithAnothers()
    {
        const QTemporaryDir elsewhere;
        const Instance running(folder());
        const Instance other(elsewhere.path());
        QVERIFY(running.server.isServing() && other.server.isServing());
        QVERIFY(isReached(other, elsewhere.path(), "/a.pvm"));
        QCOMPARE(running.names, QStringList());
    }

    void twoWaysToOneFolderAreOneFolder()
    {
        const QTemporaryDir elsewhere;
        QVERIFY(QFile::link(folder(), elsewhere.filePath("link")));
        const Instance running(folder());
        QCOMPARE(Sender(elsewhere.filePath("link"), "/a").result(), Result::Delivered);
        QCOMPARE(Sender(folder() + "/../" + QFileInfo(folder()).fileName() + '/', "/b").result(),
                 Result::Delivered);
        QCOMPARE(running.names, (QStringList{"/a", "/b"}));
    }

    void whereNobodyServesTheSenderIsTheFirst()
    {
        InstanceLock lock(folder());
        QCOMPARE(InstanceClient(lock).handOver("/a.pvm", EndlessMs), Result::NoServer);
        // From then on the lock is its own.
        QCOMPARE(InstanceLock(folder()).take(), FileLock::Result::HeldByAnother);
        FileInbox inbox;
        const InstanceServer server(lock, inbox);
        QVERIFY(server.isServing());
    }

    void aFileThatIsNotTakenStaysWithItsSender()
    {
        auto running = std::make_unique<Instance>(folder());
        running->inbox.close();
        const Sender sender(folder(), "/a.pvm");
        // It has asked once, at least, when the instance ends.
        Stranger stranger(folder(), QByteArray("F/b.pvm\0", 8));
        QVERIFY(stranger.isDropped());
        QCOMPARE(stranger.socket.readAll(), "");
        running.reset();
        QCOMPARE(sender.result(), Result::NoServer);
    }

    void theSenderWaitsForOneThatIsAboutToServe()
    {
        InstanceLock lock(folder());
        QCOMPARE(lock.take(), FileLock::Result::Taken);
        const Sender sender(folder(), "/a.pvm", EndlessMs);
        QTRY_VERIFY(sender.hasBegun());
        // One that came later has given up.
        InstanceLock impatient(folder());
        QCOMPARE(InstanceClient(impatient).handOver("/b.pvm", 200), Result::Unanswered);
        QVERIFY(!sender.isOver());
        FileInbox inbox;
        QSignalSpy received(&inbox, &FileInbox::Received);
        const InstanceServer server(lock, inbox);
        QCOMPARE(sender.result(), Result::Delivered);
        QCOMPARE(received, QList<QVariantList>{{"/a.pvm"}});
    }

    void anInstanceThatDoesNotAnswerIsWaitedForOnlySoLong()
    {
        // Nobody accepts its connection while this thread waits.
        const Instance hanging(folder());
        InstanceLock lock(folder());
        QCOMPARE(InstanceClient(lock).handOver("/a.pvm", 300), Result::Unanswered);
        // One that answers late opens the file, too, though nobody waits any more.
        QTRY_COMPARE(hanging.names, QStringList("/a.pvm"));
    }

    void whatIsTooLongIsNotSent()
    {
        const Instance running(folder());
        const QString longest = '/' + QString(instanceMessage::MaxBytes - 2, 'x');
        QVERIFY(isReached(running, folder(), longest));
        QCOMPARE(Sender(folder(), longest + 'x', EndlessMs).result(), Result::Unanswered);
        QCOMPARE(Sender(folder(), QString("/a") + QChar(0) + "b", EndlessMs).result(),
                 Result::Unanswered);
        QCOMPARE(running.names.size(), 1);
    }

    void namesAreMadeAbsolute_data()
    {
        const Rows<QString, QString> row("name", "sent");
        const QString here = QDir::currentPath();
        row("absolute", "/a/b.pvm", "/a/b.pvm");
        row("relative", "b.pvm", here + "/b.pvm");
        row("in a folder below", "a/b", here + "/a/b");
        row("a blank", " ", here + "/ ");
        row("an option", "--foo", here + "/--foo");
        row("the ending alone", ".pvm", ".pvm");
        row("the ending in capitals", ".PVM", ".PVM");
        row("the ending in mixed letters", ".Pvm", ".Pvm");
        row("nothing", "", "");
    }

    void namesAreMadeAbsolute()
    {
        QFETCH(QString, name);
        QFETCH(QString, sent);
        QCOMPARE(InstanceClient::nameForServer(name), sent);
        const Instance running(folder());
        QCOMPARE(Sender(folder(), name).result(), Result::Delivered);
        QCOMPARE(running.names, QStringList(sent));
    }

    void nonsenseIsDropped_data()
    {
        const Rows<QByteArray> row("bytes");
        const QByteArray end(1, '\0');
        row("nothing", end);
        row("an unknown kind", "X/a.pvm" + end);
        row("an old web browser", QByteArray("GET / HTTP/1.0\r\n\r\n") + end);
        row("no text", "F/\xFF\xFE.pvm" + end);
        row("half a character", "F/\xC3" + end);
        row("two messages", "F/a" + end + "F/b" + end);
        row("more behind it", "F/a" + end + "b");
        row("queued with a text", "Lx" + end);
        row("too long by one", 'F' + QByteArray(instanceMessage::MaxBytes, 'x') + end);
        row("too long without an end", QByteArray(instanceMessage::MaxBytes + 1, 'F'));
        row("ten megabytes", QByteArray(10'000'000, 'F'));
        QByteArray noise(100'000, 0);
        QRandomGenerator random(5);
        for (char& byte : noise)
            byte = char(1 + random.bounded(255));
        row("noise", noise);
    }

    void nonsenseIsDropped()
    {
        QFETCH(QByteArray, bytes);
        const Instance running(folder());
        Stranger stranger(folder(), bytes);
        // At once, and not when its time is over.
        QTRY_VERIFY([&] {
            for (Timer* timer : running.server.findChildren<Timer*>("tmrMessage"))
                timer->setEnabled(false);
            return stranger.socket.state() == QLocalSocket::UnconnectedState;
        }());
        QCOMPARE(stranger.socket.readAll(), "");
        QCOMPARE(running.names, QStringList());
        QVERIFY(isReached(running, folder(), "/a.pvm"));
    }

    void aMessageMayComeInPieces()
    {
        const Instance running(folder());
        Stranger sender(folder());
        const QByteArray message("F/\xC3\xA4.pvm\0", 9);
        for (const char byte : message) {
            QCOMPARE(running.names, QStringList());
            sender.socket.putChar(byte);
            QVERIFY(sender.socket.flush());
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE(running.names, QStringList(QString::fromUtf8("/ä.pvm")));
        QVERIFY(sender.isDropped());
        QCOMPARE(sender.socket.readAll(), "T");
    }

    void whoSaysNothingIsDroppedAndBlocksNobody()
    {
        const Instance running(folder());
        const auto timers = [&] { return running.server.findChildren<Timer*>("tmrMessage"); };
        Stranger silent(folder());
        Stranger halfway(folder(), "F/a");
        QTRY_COMPARE(timers().size(), 2);
        QCOMPARE(timers().first()->Interval(), 5000);
        QVERIFY(isReached(running, folder(), "/b"));
        QCOMPARE(silent.socket.state(), QLocalSocket::ConnectedState);
        for (Timer* timer : timers())
            timer->elapse();
        QVERIFY(silent.isDropped() && halfway.isDropped());
        QCOMPARE(running.names, QStringList("/b"));
    }

    void silentConnectionsAreBounded()
    {
        const Instance running(folder());
        std::vector<std::unique_ptr<Stranger>> silent;
        for (qsizetype i = 0; i < InstanceServer::MaxConnections; ++i)
            silent.push_back(std::make_unique<Stranger>(folder()));
        const auto connections = [&] {
            return running.server.findChildren<Timer*>("tmrMessage").size();
        };
        QTRY_COMPARE(connections(), InstanceServer::MaxConnections);
        QCOMPARE(silent[0]->socket.state(), QLocalSocket::ConnectedState);
        Stranger oneMore(folder());
        QVERIFY(silent[0]->isDropped());
        QCOMPARE(silent[1]->socket.state(), QLocalSocket::ConnectedState);
        QTRY_COMPARE(connections(), InstanceServer::MaxConnections);
        QCOMPARE(Sender(folder(), "/a").result(), Result::Delivered);
    }

    void whoGoesAwayDoesNoHarm()
    {
        const Instance running(folder());
        for (const QByteArray& said : {QByteArray(), QByteArray("F/a"), QByteArray("F/b\0", 4)}) {
            Stranger gone(folder(), said);
            gone.socket.flush();
            gone.socket.abort();
        }
        QCOMPARE(Sender(folder(), "/c").result(), Result::Delivered);
        QTRY_COMPARE(running.names, (QStringList{"/b", "/c"}));
        QTRY_COMPARE(running.server.findChildren<Timer*>("tmrMessage").size(), 0);
    }

    void theNextOfTheQueueTakesOver()
    {
        auto first = std::make_unique<Instance>(folder());
        const Instance second(folder());
        QVERIFY(!second.server.isServing());
        QTRY_VERIFY(second.server.isQueued());
        QVERIFY(isReached(*first, folder(), "/a"));

        // Who is queued is silent for as long as it likes, and does not ask again and again.
        QList<Timer*> timers;
        QTRY_COMPARE((timers = first->server.findChildren<Timer*>("tmrMessage")).size(), 1);
        QTRY_VERIFY(
            std::none_of(timers.begin(), timers.end(), [](Timer* t) { return t->Enabled(); }));
        QVERIFY(!second.server.findChild<Timer*>("tmrQueue")->Enabled());

        first.reset();
        QTRY_VERIFY(second.server.isServing());
        QVERIFY(isReached(second, folder(), "/b"));
    }

    void ofManyQueuedOneTakesOver()
    {
        constexpr int many = 6;
        std::vector<std::unique_ptr<Instance>> running;
        for (int i = 0; i < many; ++i)
            running.push_back(std::make_unique<Instance>(folder()));
        const auto count = [&](auto&& holds) {
            return std::count_if(running.begin(), running.end(),
                                 [&](const auto& one) { return holds(one->server); });
        };
        const auto serving = [&] {
            return count([](const InstanceServer& one) { return one.isServing(); });
        };
        const auto queued = [&] {
            return count([](const InstanceServer& one) { return one.isQueued(); });
        };
        while (!running.empty()) {
            QTRY_COMPARE(queued(), qsizetype(running.size()) - 1);
            QCOMPARE(serving(), 1);
            QCOMPARE(Sender(folder(), "/a").result(), Result::Delivered);
            running.erase(std::find_if(running.begin(), running.end(),
                                       [](const auto& one) { return one->server.isServing(); }));
        }
        QCOMPARE(Sender(folder(), "/a").result(), Result::NoServer);
    }

    void onlyOneServes()
    {
        const Instance first(folder());
        {
            const Instance second(folder());
            QTRY_VERIFY(second.server.isQueued());
        }
        // The one that went was not the one that served: its end takes nothing away.
        QVERIFY(isReached(first, folder(), "/a"));
    }

    void whoStopsServingReleasesTheLock()
    {
        InstanceLock lock(folder());
        FileInbox inbox;
        auto server = std::make_unique<InstanceServer>(lock, inbox);
        QCOMPARE(InstanceLock(folder()).take(), FileLock::Result::HeldByAnother);
        server.reset();
        QCOMPARE(InstanceLock(folder()).take(), FileLock::Result::Taken);
        QVERIFY(!QFileInfo::exists(lock.serverName()));
    }

    void aKilledInstanceLeavesNothingInTheWay()
    {
        // What one leaves that had no time to clean up: the file of the lock and a dead socket.
        InstanceLock lock(folder());
        QCOMPARE(lock.take(), FileLock::Result::Taken);
        lock.release();
        {
            QLocalServer dead;
            QVERIFY(dead.listen(lock.serverName()));
            QVERIFY(QFile::rename(lock.serverName(), lock.serverName() + "-kept"));
        }
        QVERIFY(QFile::rename(lock.serverName() + "-kept", lock.serverName()));
        QCOMPARE(Sender(folder(), "/a").result(), Result::NoServer);

        const Instance next(folder());
        QVERIFY(next.server.isServing());
        QVERIFY(isReached(next, folder(), "/a"));
    }

    void withoutAPrivateFolderThereIsNoServer()
    {
        QVERIFY(QFile::link(folder(), m_runtime->filePath("pevora")));
        const Instance running(folder());
        QVERIFY(!running.server.isServing() && !running.server.isQueued());
        QVERIFY(!running.server.findChild<Timer*>("tmrQueue")->Enabled());
        InstanceLock lock(folder());
        QCOMPARE(lock.serverName(), "");
        QCOMPARE(InstanceClient(lock).handOver("/a"), Result::NoServer);
        QVERIFY(QDir(folder()).isEmpty());
    }

    void withAPathTooLongForASocketThereIsNoServer()
    {
        const QString deep = m_runtime->filePath(QString(120, 'd'));
        QVERIFY(QDir().mkdir(deep));
        QVERIFY(QFile::setPermissions(deep, QFile::Permissions(0x7700)));
        qputenv("XDG_RUNTIME_DIR", deep.toLocal8Bit());
        const Instance running(folder());
        QVERIFY(!running.server.isServing());
        QVERIFY(!running.server.findChild<Timer*>("tmrQueue")->Enabled());
        // Nobody waits for one that cannot answer.
        QCOMPARE(Sender(folder(), "/a").result(), Result::NoServer);
    }

    void nobodyElseCanOpenWhatIsThere()
    {
        const Instance running(folder());
        const QDir place(m_runtime->filePath("pevora"));
        const auto files =
            place.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        QCOMPARE(files.size(), 2);
        for (const QFileInfo& file : files)
            QCOMPARE(file.permissions() & QFile::Permissions(0x077), QFile::Permissions());
        QCOMPARE(QFileInfo(place.path()).permissions() & QFile::Permissions(0x077),
                 QFile::Permissions());
    }

    void anotherUserReachesNothing()
    {
        constexpr auto variable = "PEVORA_TEST_PLACE";
        if (!runsAgain()) {
            if (geteuid() != 0)
                QSKIP("Only root can be two users.");
            const Instance running(folder());
            // Even where everybody may reach the folder that the private one lies in.
            QCOMPARE(::chmod(m_runtime->path().toLocal8Bit().constData(), 0755), 0);
            const Instance inOpen(m_runtime->path());
            QVERIFY(inOpen.server.isServing());
            qputenv(variable, inOpen.lock.serverName().toLocal8Bit());
            QVERIFY(ranAsOrdinaryUser());
            QCOMPARE(inOpen.names, QStringList());
            QCOMPARE(inOpen.server.findChildren<Timer*>("tmrMessage").size(), 0);
            return;
        }
        const QString server = qEnvironmentVariable(variable);
        const QString place = QFileInfo(server).path();
        QLocalSocket socket;
        socket.connectToServer(server);
        QVERIFY(!socket.waitForConnected(HangMs));
        QVERIFY(QDir(place).entryList(QDir::AllEntries | QDir::System).isEmpty());
        QCOMPARE(FileLock().take(server + ".lock"), FileLock::Result::Impossible);
        QVERIFY(!QFile::remove(server) && !QFile::rename(server, server + "2"));
        QVERIFY(!QLocalServer().listen(server));
        // Neither can the folder be replaced, nor is it taken for this user's own.
        QVERIFY(!QDir().rename(place, place + "2") && !QDir().rmdir(place));
        qputenv("XDG_RUNTIME_DIR", QFileInfo(place).path().toLocal8Bit());
        qputenv("XDG_CACHE_HOME", "/");
        QCOMPARE(InstanceLock("/").take(), FileLock::Result::Impossible);
    }

private:
    QString folder() const { return m_folder->path(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_runtime;
};

QTEST_GUILESS_MAIN(InstanceServerTest)
#include "tst_InstanceServer.moc"
