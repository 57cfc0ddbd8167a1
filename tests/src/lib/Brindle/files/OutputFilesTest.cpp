#include <support/ReadFile.h>
#include <support/TestTable.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/OutputFiles.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using Brindle::OutputFiles;

namespace {

/// Runs the work in a process of its own, in which the signal does what the system does, and returns how that ended, as
/// `waitpid` tells it.
int statusOf(int number, const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(number, SIG_DFL);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

} // namespace

/// Files that replace others together.
class OutputFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void wholeOrNotAtAll_data();
    void wholeOrNotAtAll();
    void signalsLeaveNothing();
    void placesStayAsTheyAre();
    void descriptorsAndPipes();

private:
    QByteArray path(const char* name) const { return QFile::encodeName(_directory->filePath(name)); }
    QStringList entries() const {
        return QDir(_directory->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    void write(const char* name, const QByteArray& content) const {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    std::unique_ptr<QTemporaryDir> _directory;
};

void OutputFilesTest::init() {
    _directory = std::make_unique<QTemporaryDir>();
}

/// Many are not kept without a name, as each of those takes a descriptor.
void OutputFilesTest::wholeOrNotAtAll_data() {
    const TestTable<int, bool> table("others", "fails");
    table.row("few", 1, false);
    table.row("few, one fails", 1, true);
    table.row("many", 70, false);
    table.row("many, one fails", 70, true);
}

void OutputFilesTest::wholeOrNotAtAll() {
    QFETCH(int, others);
    QFETCH(bool, fails);
    write("old", "earlier");
    OutputFiles output(BRINDLE_HERE);
    output.add(path("old").constData(), "new");
    output.addPrivate(path("secret").constData(), {}, Brindle::Overwrite::No);
    for (int number = 0; number < others; ++number)
        output.add(path(qPrintable("other" + QString::number(number))).constData(), "new");
    output.add(path("last").constData(), "new");
    QCOMPARE(QDir(_directory->path()).entryList(QDir::Files), QStringList("old"));
    if (fails)
        QVERIFY(QDir().mkpath(path("last/x")));
    try {
        output.commit();
        QVERIFY(!fails);
    } catch (const Brindle::Fatal& exception) {
        QVERIFY(fails);
        QCOMPARE(exception.getField("filename").c_str(), path("last").constData());
    }
    QCOMPARE(readFile(path("old")), QByteArray(fails ? "earlier" : "new"));
    QCOMPARE(entries().size(), fails ? 2 : others + 3);
}

void OutputFilesTest::signalsLeaveNothing() {
    const auto addMany = [this](OutputFiles& output) {
        for (int file = 0; file < 70; ++file)
            output.add(path(qPrintable(QString::number(file))).constData(), "new");
    };
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const int before = statusOf(number, [&] {
            OutputFiles output(BRINDLE_HERE);
            addMany(output);
            std::raise(number);
        });
        QVERIFY(WIFSIGNALED(before) && WTERMSIG(before) == number);
        QCOMPARE(entries(), QStringList());
    }
    const int during = statusOf(SIGINT, [&] {
        OutputFiles output(BRINDLE_HERE);
        addMany(output);
        const Brindle::SignalDelay delay;
        std::raise(SIGINT);
        output.commit();
    });
    QVERIFY(WIFSIGNALED(during) && WTERMSIG(during) == SIGINT);
    QCOMPARE(entries().size(), 70);
}

/// Permissions of what is replaced and links to it stay.
void OutputFilesTest::placesStayAsTheyAre() {
    write("file", "earlier");
    QCOMPARE(chmod(path("file"), S_IRUSR | S_IRGRP), 0);
    QVERIFY(QFile::link("file", path("link")) && QFile::link("link", path("chain")) &&
            QFile::link("new", path("bare")));
    OutputFiles output(BRINDLE_HERE);
    output.add(path("chain").constData(), "new");
    output.add(path("bare").constData(), "new");
    output.commit();
    struct stat status {};
    QCOMPARE(stat(path("file"), &status), 0);
    QCOMPARE(status.st_mode & 0777U, static_cast<mode_t>(S_IRUSR | S_IRGRP));
    QCOMPARE(readFile(path("file")) + readFile(path("new")), QByteArray("newnew"));
    QCOMPARE(entries(), (QStringList{"bare", "chain", "file", "link", "new"}));
}

void OutputFilesTest::descriptorsAndPipes() {
    write("log", "earlier\n");
    const int log = open(path("log"), O_WRONLY | O_APPEND);
    QCOMPARE(mkfifo(path("pipe"), S_IRUSR | S_IWUSR), 0);
    const int pipe = open(path("pipe"), O_RDONLY | O_NONBLOCK);
    OutputFiles output(BRINDLE_HERE);
    output.add("/dev/fd/" + std::to_string(log), "new");
    output.add(path("pipe").constData(), "new");
    output.commit();
    QCOMPARE(readFile(path("log")), QByteArray("earlier\nnew"));
    QByteArray received(10, ' ');
    received.truncate(static_cast<int>(read(pipe, received.data(), 10)));
    QCOMPARE(received, QByteArray("new"));
    close(log);
    close(pipe);
    QVERIFY_EXCEPTION_THROWN(output.add("/dev/fd/" + std::to_string(log), "new"), Brindle::Fatal);
}

QTEST_APPLESS_MAIN(OutputFilesTest)
#include "OutputFilesTest.moc"
