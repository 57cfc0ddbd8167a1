#include "Installation.h"
#include "Tool.h"
#include <support/TestTable.h>

#include <csignal>

#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QDirIterator>
#include <QtTest>
#include <memory>

namespace {

const QByteArray region("`protect begin\nend;\n`protect end\n");

bool isPrivate(const QString& filename) {
    const auto permissions = QFile::permissions(filename);
    return permissions == (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
}

QStringList filesBelow(const QString& directory) {
    QStringList files;
    QDirIterator file(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (file.hasNext())
        files << file.next();
    files.sort();
    return files;
}

/// The making of a signer "s" on a terminal of its own, up to the question for the passphrase.
class Terminal {
public:
    explicit Terminal(const QString& directory) : _child(forkpty(&_master, nullptr, nullptr, nullptr)) {
        const auto base = directory.toLocal8Bit() + "/s";
        if (_child == 0) {
            for (const int number : {SIGINT, SIGHUP}) // ignored where the tests run in the background
                std::signal(number, SIG_DFL);
            execl(VELMORA_SEAL_PROGRAM, VELMORA_SEAL_PROGRAM, "keygen", "signer", "-o", base.data(), "--passphrase",
                  nullptr);
        }
        QCOMPARE(readUntil(": "), QByteArray("New passphrase: "));
        QVERIFY(!hasEcho());
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

/// The command line program: keys, prompts, and what it refuses.
class SealToolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keptKeys();
    void passphrasesAreNotShown();
    void promptsEndBySignals_data();
    void promptsEndBySignals();
    void help();
    void refusals_data();
    void refusals();
    void filesAreWholeOrMissing_data();
    void filesAreWholeOrMissing();
    void linksLeadNoPrivateKeyElsewhere();

private:
    std::unique_ptr<Installation> _installation; ///< Of the rows of a table, none of which may change it.
};

void SealToolTest::keptKeys() {
    const QTemporaryDir directory;
    for (const QString line : {"keygen script -o @/keys/scripts", "keygen signer -o @/keys/signer",
                               "keygen recipient -o @/keys/recipient --owner O --name N --bits 2048"}) {
        const auto run = [&](const char* option) { return seal(line + option, directory.path()); };
        const auto first = run(" --keep");
        QCOMPARE(first.exitCode, 0);
        const auto files = QString::fromLocal8Bit(first.output).replace("@", directory.path()).split('\n');
        const auto content = readFile(files[0]);
        QVERIFY(!content.isEmpty() && isPrivate(files[0]));
        QCOMPARE(run(" --keep").output, first.output);
        QCOMPARE(readFile(files[0]), content);
        if (line.contains("script"))
            continue;
        const auto publicContent = readFile(files[1]);
        QVERIFY(QFile::remove(files[1])); // as when the making of the pair was interrupted
        QCOMPARE(run(" --keep").exitCode, 0);
        QCOMPARE(readFile(files[0]), content);
        QCOMPARE(readFile(files[1]), publicContent);
        QVERIFY(run("").errors.endsWith(".private.pem: File exists already, --force replaces it\n"));
        QCOMPARE(readFile(files[0]), content);
        QCOMPARE(run(" --force").exitCode, 0);
        QVERIFY(readFile(files[0]) != content && isPrivate(files[0]));
    }
}

void SealToolTest::passphrasesAreNotShown() {
    const QTemporaryDir directory;
    const Terminal terminal(directory.path());
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
    const Terminal terminal(directory.path());
    if (number == 0)
        terminal.type("\x03");
    else
        terminal.send(number);
    const int status = terminal.wait();
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == (number == 0 ? SIGINT : number));
    QVERIFY(terminal.hasEcho());
    QCOMPARE(filesBelow(directory.path()), QStringList());
}

void SealToolTest::help() {
    for (const char* line : {"--help", "seal --kay --help"}) {
        const auto result = seal(line, "/nowhere");
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.output.startsWith("Usage: velmora-seal ") && result.output.contains("\nExample: velmora-seal "));
    }
}

void SealToolTest::refusals_data() {
    _installation = std::make_unique<Installation>();
    _installation->addRecipient("a", 2048);
    const auto pem = toBytes(Installation::rsaKey(2304).getPublicPem());
    const auto directory = _installation->path();
    _installation->write("plain", "x = 1\n");
    _installation->write("scripts/0123456789abcdef.key", "no key\n");
    _installation->write("empty", "\n");
    _installation->write("long", QByteArray(1025, 'x'));
    _installation->write("key", pem);
    _installation->write("b.private.pem", toBytes(Installation::rsaKey(2304).getPrivatePem().text()));
    QFile::setPermissions(_installation->path("b.private.pem"), QFile::ReadOwner);
    _installation->write("recipients/other.pem",
                         "Key-Owner: Velmora\nKey-Name: b\n" + toBytes(Installation::rsaKey(2048).getPublicPem()));
    QCOMPARE(mkfifo(qPrintable(directory + QStringLiteral("/pipe.private.pem")), S_IRUSR | S_IWUSR), 0);
    for (const auto* setUp :
         {"keygen script -o @/keys", "keygen script -o @/several", "keygen script -o @/several", "keygen signer -o @/s",
          "keygen signer -o @/mixed", "keygen recipient -o @/r --owner O --name N --bits 2048",
          "seal @/plain -o @/sealed --key @/keys"})
        QCOMPARE(seal(setUp, directory).exitCode, 0);
    _installation->write("mixed.pem", readFile(_installation->path("s.pem")));
    _installation->write("t", seal("protect - --language vhdl", directory, "a\n" + region).output);

    const TestTable<QString, int, QByteArray, QByteArray> table("line", "exitCode", "errors", "input");
    const auto usage = [&table](const char* tag, const char* line, const QByteArray& error) {
        table.row(tag, line, 2, error + "; see velmora-seal --help", {});
    };
    const auto refused = [&table](const char* tag, const char* line, int exitCode, const QByteArray& error,
                                  const QByteArray& input = {}) { table.row(tag, line, exitCode, error, input); };
    usage("no command", "", "No command given");
    usage("unknown option", "seal a -o b --kay c", "Unknown option --kay");
    usage("ambiguous option", "keygen --pass", "Ambiguous option --pass");
    usage("value of a switch", "seal a --force=b", "Option --force takes no value");
    usage("no key", "seal @/plain -o @/b", "Option --key is missing");
    usage("hidden key pair", "keygen signer -o @/.s",
          "--output should end with a file name that does not begin with a dot");
    usage("passphrase of a script key", "keygen script -o @/k --passphrase-file @/plain",
          "--passphrase-file does not go with a script key");
    usage("keep and force", "keygen signer -o @/k --keep --force", "--keep and --force exclude each other");
    usage("bad owner", "keygen recipient -o @/k --name n --owner `",
          "--owner should be 1 to 128 printable ASCII characters without \", \\ and `, no blank at either end");
    usage("too few bits", "keygen recipient -o @/k --name n --owner o --bits=2047", "--bits should be 2048 to 8192");
    usage("no ending", "protect @/t -o @/out", "The name @/t does not tell its language, give --language");
    usage("no language", "protect - -o @/out", "Standard input has no name to tell its language, give --language");
    usage("option of another action", "recipients list --owner a", "--owner does not go with recipients list");
    usage("key without a name", "recipients add @/key --owner O", "The file does not tell the name, give --name");
    refused("missing input", "seal @/none -o @/b --key @/keys", 2,
            "@/none: Unable to read file (No such file or directory)");
    refused("sealed already", "seal @/sealed -o @/b --key @/keys", 2, "@/sealed: Script is sealed already");
    refused("output exists", "seal @/plain -o @/sealed --key @/keys", 2,
            "@/sealed: File exists already, --force replaces it");
    refused("directory as output", "seal @/plain -o @ --key @/keys", 2, "@: Unable to write file (Is a directory)");
    refused("pipe as private key", "keygen signer -o @/pipe --force", 2,
            "@/pipe.private.pem: Unable to write file (not a regular file)");
    refused("no script key", "seal @/plain -o @/b --key @", 2, "@: No script key in the directory");
    refused("several script keys", "seal @/plain -o @/b --key @/several", 2,
            "@/several: Several script keys, name one of them");
    refused("empty passphrase", "keygen signer -o @/d --passphrase-file @/empty", 2, "The passphrase is empty");
    refused("long passphrase", "keygen signer -o @/d --passphrase-file @/long", 2,
            "The passphrase is longer than 1024 bytes");
    const auto notKept = [&refused](const char* tag, const char* line, const QByteArray& file, const QByteArray& why) {
        refused(tag, qPrintable(QString(line) + " --keep"), 2, file + ": Unable to read key file (" + why + ")");
    };
    notKept("damaged script key", "keygen script -o @/scripts", "@/scripts/0123456789abcdef.key",
            "not 64 hexadecimal digits and a line feed");
    notKept("halves of two pairs", "keygen signer -o @/mixed", "@/mixed.pem",
            "not the public half of @/mixed.private.pem");
    notKept("other kind", "keygen signer -o @/r", "@/r.private.pem",
            "not an Ed25519 private key, or not its passphrase");
    notKept("other name", "keygen recipient -o @/r --owner O --name M", "@/r.pem",
            "not the public half of @/r.private.pem under that owner and name");
    notKept("other length", "keygen recipient -o @/r --owner O --name N --bits 3072", "@/r.private.pem",
            "not of 3072 bits");
    notKept("no passphrase", "keygen signer -o @/s --passphrase-file @/plain", "@/s.private.pem", "has no passphrase");
    refused("region left open", "protect - --language vhdl -o @/out", 3, "-:2: No \"`protect end\" follows",
            "a\n`protect begin\nb\n");
    refused("envelope in a region", "protect - --language vhdl -o @/out", 3,
            "-:4: Region already holds a protected envelope",
            "a\n`protect begin\nb\n`protect key_block\n`protect end\n");
    refused("markers of the standard", "protect - --language vlog -o @/out", 3,
            "-:2: \"`pragma protect begin\" marks no region, \"`protect begin\" does", "a\n`pragma protect begin\n");
    refused("no region", "protect - --language vhdl -o @/out", 7, "-: No \"`protect begin\" found, nothing is written",
            "a\n");
    refused("other key", "open @/t --key @/r.private.pem -o @/out --lax", 5,
            "@/t:2: Envelope refused: altered after it was protected, or protected for other keys");
    refused("key of another length", "open @/t --key @/b.private.pem -o @/out", 4,
            "@/t:2: Envelope refused: no key block is for a key of this length");
    refused("nothing to open", "open @/plain --key @/r.private.pem -o @/out", 6,
            "@/plain: Nothing to open: no protected envelope");
    refused("nothing to tell of", "info @/plain", 6, "@/plain: Neither a protected envelope nor a sealed script");
    const QByteArray exists(": File exists already, --force replaces it");
    refused("two keys", "recipients add - --owner O --name n", 3,
            "-: Not one public key, in PEM or in a key_public_key block", pem + pem);
    refused("bad name", "recipients add @/key --owner O --name `", 2,
            "@/key: Recipient key refused: bad owner or name");
    refused("named already", "recipients add @/key --owner Velmora --name a", 2, "@/recipients/a.pem" + exists);
    refused("named in another file", "recipients add @/key --owner Velmora --name b", 2,
            "@/recipients/other.pem" + exists);
}

void SealToolTest::refusals() {
    QFETCH(QString, line);
    QFETCH(QByteArray, errors);
    QFETCH(QByteArray, input);
    const auto before = filesBelow(_installation->path());
    const auto result = seal(line, _installation->path(), input);
    QCOMPARE(result.errors, "velmora-seal: " + errors + "\n");
    QTEST(result.exitCode, "exitCode");
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(filesBelow(_installation->path()), before);
}

void SealToolTest::filesAreWholeOrMissing_data() {
    _installation = std::make_unique<Installation>();
    _installation->write("signers/old.private.pem", "as it was");
    const auto noNumbers = _installation->write(
        "no-random.cnf", "openssl_conf = all\n[all]\nrandom = numbers\n[numbers]\nrandom = NONE\n");
    const TestTable<QString, QString, QByteArray> table("command", "line", "errors");
    // No file may grow, which fails the write with an error once the signal is ignored.
    const char* noSpace = R"(trap '' XFSZ; ulimit -f 0; exec "$0" "$@")";
    table.row("no space", noSpace, "keygen script -o @/scripts", "Unable to write file (File too large)\n");
    table.row("no space for what is there", noSpace, "keygen signer -o @/signers/old --force", "(File too large)\n");
    table.row("closed output", R"(exec "$0" "$@" >&-)", "--help", "Unable to write to standard output\n");
    table.row("closed input", R"(exec "$0" "$@" <&-)", "info -", "-: Unable to read file (Bad file descriptor)\n");
    table.row("no random numbers", QString("OPENSSL_CONF='%1' exec \"$0\" \"$@\"").arg(noNumbers),
              "keygen script -o @/scripts", "velmora-seal: No random numbers available");
}

void SealToolTest::filesAreWholeOrMissing() {
    QFETCH(QString, command);
    QFETCH(QString, line);
    QFETCH(QByteArray, errors);
    const auto before = filesBelow(_installation->path());
    const auto result = sealFromShell(command, line, _installation->path());
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains(errors), result.errors.constData());
    QCOMPARE(filesBelow(_installation->path()), before);
    QCOMPARE(readFile(_installation->path("signers/old.private.pem")), QByteArray("as it was"));
}

void SealToolTest::linksLeadNoPrivateKeyElsewhere() {
    const Installation installation;
    const auto other = installation.write("other", "earlier");
    QVERIFY(QFile::link(other, installation.path("s.private.pem")));
    QCOMPARE(seal("keygen signer -o @/s --force", installation.path()).exitCode, 0);
    QCOMPARE(readFile(other), QByteArray("earlier"));
    QVERIFY(!QFileInfo(installation.path("s.private.pem")).isSymLink());
}

QTEST_GUILESS_MAIN(SealToolTest)
#include "SealToolTest.moc"
