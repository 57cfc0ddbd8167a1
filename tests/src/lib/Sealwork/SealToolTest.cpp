#include "Installation.h"
#include <support/TestTable.h>

#include "Failure.h"
#include "Tool.h"

#include <Sealwork/Crypto.h>

#include <csignal>

#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QDir>
#include <QtTest>
#include <memory>

namespace {

bool isPrivate(const QString& filename) {
    const auto permissions = QFile::permissions(filename);
    return permissions == (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
}

ToolResult sealWithoutInput(const QStringList& arguments) {
    return runTool("/bin/sh",
                   QStringList{"-c", "exec \"$0\" \"$@\" <&-", QStringLiteral(VELMORA_SEAL_PROGRAM)} + arguments);
}

QStringList filesBelow(const QString& directory) {
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

/// The program on a terminal of its own.
class Terminal {
public:
    explicit Terminal(const QStringList& arguments) : _child(forkpty(&_master, nullptr, nullptr, nullptr)) {
        if (_child != 0)
            return;
        QVector<QByteArray> texts{VELMORA_SEAL_PROGRAM};
        for (const auto& argument : arguments)
            texts += argument.toLocal8Bit();
        QVector<char*> pointers;
        for (auto& text : texts)
            pointers += text.data();
        execv(VELMORA_SEAL_PROGRAM, (pointers << nullptr).data());
        _exit(127);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() { close(_master); }

    QByteArray readUntil(const QByteArray& end) const {
        QByteArray text;
        char character = 0;
        while (!text.endsWith(end) && read(_master, &character, 1) == 1)
            text += character;
        return text;
    }
    void type(const QByteArray& text) const {
        QCOMPARE(write(_master, text, static_cast<std::size_t>(text.size())), text.size());
    }
    void send(int number) const { kill(_child, number); }
    int wait() const {
        int status = 0;
        waitpid(_child, &status, 0);
        return status;
    }
    bool hasEcho() const {
        termios state{};
        return tcgetattr(_master, &state) == 0 && (state.c_lflag & ECHO) != 0;
    }

private:
    int _master = -1;
    pid_t _child;
};

} // namespace

/// The command line program.
class SealToolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void madeKeysWork();
    void keptKeys();
    void otherKeysAreNotKept_data();
    void otherKeysAreNotKept();
    void passphrasesAreNotShown();
    void promptsEndBySignals_data();
    void promptsEndBySignals();
    void exitStatus_data();
    void exitStatus();
    void filesAreWholeOrMissing();
    void linksLeadNoPrivateKeyElsewhere();
    void closedOutput();
    void noRandomNumbers();

private:
    std::unique_ptr<Installation> _installation; ///< Of the rows of `exitStatus`, none of which may change it.
};

void SealToolTest::madeKeysWork() {
    const Installation installation;
    const auto run = [&installation](const char* line, const QByteArray& input = {}) {
        return seal(argumentsOf(line, installation.path(".")), input);
    };
    const auto key = run("keygen script -o @/scripts");
    QCOMPARE(key.exitCode, 0);
    QVERIFY(isPrivate(QString::fromLocal8Bit(key.output.trimmed())));
    QCOMPARE(run("keygen signer -o @/signers/s").exitCode, 0);
    QCOMPARE(run("keygen recipient -o @/recipients/r --bits 2048 --owner Orvane --name r-1").exitCode, 0);
    for (const auto* name : {"signers/s.private.pem", "recipients/r.private.pem"}) {
        const auto file = installation.path(QLatin1String(name));
        QVERIFY(isPrivate(file));
        QVERIFY(QFile::rename(file, installation.path(QFileInfo(file).fileName())));
    }
    const QByteArray script("def generate(argDict):\n    return {}\n");
    const auto sealed = run("seal - -o - --key @/scripts --signer @/s.private.pem", script);
    QCOMPARE(sealed.errors, QByteArray());
    std::string out;
    Sealwork::Crypto(1).getDecrypted(0, sealed.output.toStdString(), out);
    QCOMPARE(toBytes(out), script);
    Sealwork::Crypto(1).getEncrypted(-1, "vhdl", std::string(16, 'i'), "x", out);
    QVERIFY(toBytes(out).contains("key_keyowner=\"Orvane\", key_keyname=\"r-1\""));

    for (const auto reader : {QFile::ReadGroup, QFile::ReadOther}) {
        QFile::setPermissions(installation.path("s.private.pem"), QFile::ReadOwner | reader);
        const auto warned = run("seal - -o - --key @/scripts --signer @/s.private.pem", script);
        QCOMPARE(warned.exitCode, 0);
        QVERIFY(warned.errors.contains("s.private.pem: warning: others can read this private key"));
    }
}

void SealToolTest::keptKeys() {
    const QTemporaryDir directory;
    for (const auto* line : {"keygen script -o @/keys/scripts", "keygen signer -o @/keys/signer",
                             "keygen recipient -o @/keys/recipient --owner O --name N --bits 2048"}) {
        const auto arguments = argumentsOf(line, directory.path());
        const auto first = seal(QStringList(arguments) << QStringLiteral("--keep"));
        QCOMPARE(first.exitCode, 0);
        const auto file = QString::fromLocal8Bit(first.output.split('\n').first());
        const auto content = readFile(file);
        QVERIFY(!content.isEmpty());
        const auto second = seal(QStringList(arguments) << QStringLiteral("--keep"));
        QCOMPARE(second.output, first.output);
        QCOMPARE(readFile(file), content);
        if (arguments.contains("script"))
            continue;
        const auto publicFile = QString::fromLocal8Bit(first.output.split('\n').at(1));
        const auto publicContent = readFile(publicFile);
        QVERIFY(QFile::remove(publicFile)); // as when the making of the pair was interrupted
        QCOMPARE(seal(QStringList(arguments) << QStringLiteral("--keep")).exitCode, 0);
        QCOMPARE(readFile(file), content);
        QCOMPARE(readFile(publicFile), publicContent);
        const auto third = seal(arguments);
        QCOMPARE(third.exitCode, 2);
        QCOMPARE(third.errors, "velmora-seal: " + file.toLocal8Bit() + ": File exists already, --force replaces it\n");
        QCOMPARE(readFile(file), content);
        QCOMPARE(seal(QStringList(arguments) << QStringLiteral("--force")).exitCode, 0);
        QVERIFY(readFile(file) != content);
        QVERIFY(isPrivate(file));
    }
}

void SealToolTest::otherKeysAreNotKept_data() {
    const TestTable<QString, QString> table("line", "reason");
    table.row("damaged script key", "keygen script -o @/scripts", "not 64 hexadecimal digits and a line feed");
    table.row("halves of two pairs", "keygen signer -o @/mixed", "not the public half of @/mixed.private.pem");
    table.row("other kind", "keygen signer -o @/r", "not an Ed25519 private key, or not its passphrase");
    table.row("other name", "keygen recipient -o @/r --owner O --name M",
              "not the public half of @/r.private.pem under that owner and name");
    table.row("other length", "keygen recipient -o @/r --owner O --name N --bits 3072", "not of 3072 bits");
    table.row("no passphrase", "keygen signer -o @/s --passphrase-file @/passphrase", "has no passphrase");
}

void SealToolTest::otherKeysAreNotKept() {
    QFETCH(QString, line);
    QFETCH(QString, reason);
    const Installation installation;
    for (const auto* setUp :
         {"keygen signer -o @/s", "keygen signer -o @/mixed", "keygen recipient -o @/r --owner O --name N --bits 2048"})
        QCOMPARE(seal(argumentsOf(setUp, installation.path())).exitCode, 0);
    installation.write("mixed.pem", readFile(installation.path("s.pem")));
    installation.write("passphrase", "open sesame\n");
    installation.write("scripts/0123456789abcdef.key", "no key\n");
    const auto before = filesBelow(installation.path());
    const auto result = seal(argumentsOf(qPrintable(line + " --keep"), installation.path()));
    QCOMPARE(result.exitCode, 2);
    const auto expected = QString(reason).replace(QLatin1Char('@'), installation.path());
    QVERIFY2(result.errors.contains("Unable to read key file (" + expected.toLocal8Bit() + ")"),
             result.errors.constData());
    QCOMPARE(filesBelow(installation.path()), before);
}

void SealToolTest::passphrasesAreNotShown() {
    const QTemporaryDir directory;
    const Terminal terminal(argumentsOf("keygen signer -o @/s --passphrase", directory.path()));
    QCOMPARE(terminal.readUntil(": "), QByteArray("New passphrase: "));
    terminal.type("open sesame\n");
    QCOMPARE(terminal.readUntil(": "), QByteArray("\r\nThe same again: "));
    terminal.type("open sesame\n");
    QVERIFY(WIFEXITED(terminal.wait()) && terminal.hasEcho());
    openssl({"pkey", "-in", directory.filePath("s.private.pem"), "-passin", "pass:open sesame", "-noout"});
}

void SealToolTest::promptsEndBySignals_data() {
    const TestTable<int> table("number"); // 0: Ctrl-C
    for (const int number : {0, SIGINT, SIGTERM, SIGHUP})
        table.row(qPrintable(QString::number(number)), number);
}

void SealToolTest::promptsEndBySignals() {
    QFETCH(int, number);
    const QTemporaryDir directory;
    const Terminal terminal(argumentsOf("keygen signer -o @/s --passphrase", directory.path()));
    QCOMPARE(terminal.readUntil(": "), QByteArray("New passphrase: "));
    QVERIFY(!terminal.hasEcho());
    if (number == 0)
        terminal.type("\x03");
    else
        terminal.send(number);
    const int status = terminal.wait();
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == (number == 0 ? SIGINT : number));
    QVERIFY(terminal.hasEcho());
    QCOMPARE(filesBelow(directory.path()), QStringList());
}

void SealToolTest::exitStatus_data() {
    _installation = std::make_unique<Installation>();
    const auto directory = _installation->path();
    _installation->write("plain", "x = 1\n");
    QCOMPARE(mkfifo(qPrintable(directory + QStringLiteral("/pipe.private.pem")), S_IRUSR | S_IWUSR), 0);
    for (const auto* setUp : {"keygen script -o @/keys", "keygen script -o @/several", "keygen script -o @/several",
                              "seal @/plain -o @/sealed --key @/keys"})
        QCOMPARE(seal(argumentsOf(setUp, directory)).exitCode, 0);
    const TestTable<QString, int, QString> table("line", "exitCode", "errors");
    table.row("no command", "", 2, "No command given; see velmora-seal --help");
    table.row("help", "--help", 0, "");
    table.row("help of a command", "seal --kay --help", 0, "");
    table.row("unknown option", "seal a -o b --kay c", 2, "Unknown option --kay; see velmora-seal --help");
    table.row("ambiguous option", "keygen --pass", 2, "Ambiguous option --pass; see velmora-seal --help");
    table.row("value of a switch", "seal a --force=b", 2, "Option --force takes no value; see velmora-seal --help");
    table.row("no key", "seal @/plain -o @/b", 2, "Option --key is missing; see velmora-seal --help");
    table.row("missing input", "seal @/none -o @/b --key @/keys", 2,
              "@/none: Unable to read file (No such file or directory)");
    table.row("sealed already", "seal @/sealed -o @/b --key @/keys", 2, "@/sealed: Script is sealed already");
    table.row("output exists", "seal @/plain -o @/sealed --key @/keys", 2,
              "@/sealed: File exists already, --force replaces it");
    table.row("directory as output", "seal @/plain -o @ --key @/keys", 2, "@: Unable to write file (Is a directory)");
    table.row("pipe as private key", "keygen signer -o @/pipe --force", 2,
              "@/pipe.private.pem: Unable to write file (not a regular file)");
    table.row("closed input", "seal - -o @/b --key @/keys <&-", 2, "-: Unable to read file (Bad file descriptor)");
    table.row("hidden key pair", "keygen signer -o @/.s", 2,
              "--output should end with a file name that does not begin with a dot; see velmora-seal --help");
    table.row("no script key", "seal @/plain -o @/b --key @", 2, "@: No script key in the directory");
    table.row("passphrase of a script key", "keygen script -o @/k --passphrase-file @/plain", 2,
              "--passphrase-file does not go with a script key; see velmora-seal --help");
    table.row("keep and force", "keygen signer -o @/k --keep --force", 2,
              "--keep and --force exclude each other; see velmora-seal --help");
    table.row("bad owner", "keygen recipient -o @/k --name n --owner `", 2,
              "--owner should be 1 to 128 printable ASCII characters without \", \\ and `, no blank at "
              "either end; see velmora-seal --help");
    table.row("too few bits", "keygen recipient -o @/k --name n --owner o --bits=2047", 2,
              "--bits should be 2048 to 8192; see velmora-seal --help");
}

void SealToolTest::exitStatus() {
    QFETCH(QString, line);
    QFETCH(int, exitCode);
    QFETCH(QString, errors);
    const auto directory = _installation->path();
    const auto before = filesBelow(directory);
    const bool isClosed = line.endsWith("<&-");
    const auto arguments = argumentsOf(qPrintable(line.remove("<&-")), directory);
    const auto result = isClosed ? sealWithoutInput(arguments) : seal(arguments);
    QCOMPARE(result.exitCode, exitCode);
    const auto expected = errors.isEmpty() ? QString() : QStringLiteral("velmora-seal: %1\n").arg(errors);
    QCOMPARE(QString::fromLocal8Bit(result.errors), QString(expected).replace(QLatin1Char('@'), directory));
    QCOMPARE(result.output.startsWith("Usage: velmora-seal "), exitCode == 0);
    QCOMPARE(filesBelow(directory), before);
}

void SealToolTest::filesAreWholeOrMissing() {
    const Installation installation;
    const auto keys = installation.path("scripts");
    // No file may grow, which fails the write with an error once the signal is ignored.
    const auto runWithoutSpace = [&installation](const char* line) {
        return runTool("/bin/sh", QStringList{"-c", "trap '' XFSZ; ulimit -f 0; exec \"$0\" \"$@\"",
                                              QStringLiteral(VELMORA_SEAL_PROGRAM)} +
                                      argumentsOf(line, installation.path()));
    };
    const auto result = runWithoutSpace("keygen script -o @/scripts");
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.errors.contains("Unable to write file (File too large)"));
    QCOMPARE(filesBelow(keys), QStringList());

    const auto file = installation.write("signers/old.private.pem", "as it was");
    QCOMPARE(runWithoutSpace("keygen signer -o @/signers/old --force").exitCode, 2);
    QCOMPARE(readFile(file), QByteArray("as it was"));
    QCOMPARE(filesBelow(installation.path("signers")), QStringList("old.private.pem"));
}

void SealToolTest::linksLeadNoPrivateKeyElsewhere() {
    const Installation installation;
    const auto other = installation.write("other", "earlier");
    QVERIFY(QFile::link(other, installation.path("s.private.pem")));
    QCOMPARE(seal(argumentsOf("keygen signer -o @/s --force", installation.path())).exitCode, 0);
    QCOMPARE(readFile(other), QByteArray("earlier"));
    QVERIFY(!QFileInfo(installation.path("s.private.pem")).isSymLink());
}

void SealToolTest::closedOutput() {
    const Installation installation;
    QCOMPARE(runTool("/bin/sh", {"-c", "exec \"$0\" keygen script -o \"$1\" >&-", QStringLiteral(VELMORA_SEAL_PROGRAM),
                                 installation.path("more")})
                 .exitCode,
             2);
}

void SealToolTest::noRandomNumbers() {
    const Installation installation;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(
        "OPENSSL_CONF",
        installation.write("no-random.cnf", "openssl_conf = all\n[all]\nrandom = numbers\n[numbers]\nrandom = NONE\n"));
    const auto result = seal(argumentsOf("keygen script -o @", installation.path("scripts")), {}, environment);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.startsWith("velmora-seal: No random numbers available"), result.errors.constData());
    QCOMPARE(filesBelow(installation.path("scripts")), QStringList());
}

QTEST_GUILESS_MAIN(SealToolTest)
#include "SealToolTest.moc"
