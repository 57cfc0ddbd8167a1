#include <Quillon/Application.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <string_view>

namespace Quillon {

namespace {

/// Takes every occurrence of the option out of the arguments; true when there was one.
bool takeOption(int& argc, char** argv, std::string_view option) {
    if (argc < 1)
        return false;
    char** const end = std::remove(argv + 1, argv + argc, option);
    const bool found = end != argv + argc;
    argc = static_cast<int>(end - argv);
    argv[argc] = nullptr;
    return found;
}

/// A pipe would keep the program waiting for its content.
void requireSettingsFiles(const QString& organization, const QString& application) {
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        for (const QString& name : {organization + "/" + application, organization}) {
            const QFileInfo file(folder + "/" + name + ".conf");
            const bool isReadable =
                file.isFile() || file.isDir() || file.canonicalFilePath() == QLatin1String("/dev/null");
            if (file.exists() && !isReadable) {
                throw located(Brindle::Critical("Settings are kept in what is no regular file"), BRINDLE_HERE,
                              {{"filename", file.filePath().toStdString()}});
            }
        }
    }
}

QString versionOf(unsigned long major, unsigned long minor, unsigned long patch) {
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(patch);
}

} // namespace

Application* application = nullptr;

std::unique_ptr<Application> Application::create(int& argc, char** argv, const QString& shortName,
                                                 const QString& fullName, unsigned long major, unsigned long minor,
                                                 unsigned long patch, bool graphical) {
    if (QCoreApplication::instance())
        throw located(Brindle::InvalidRequest("There is an application object already"), BRINDLE_HERE);
    const bool aboutSuppressed = takeOption(argc, argv, "-no-about");
    std::signal(SIGPIPE, SIG_IGN); // the program outlives the reader of its output
    setAttribute(Qt::AA_EnableHighDpiScaling);
    setAttribute(Qt::AA_UseHighDpiPixmaps);
    if (!graphical)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Nothing is drawn with OpenGL, whose libraries would cost a third of the start and half of the memory.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    std::unique_ptr<Application> created(
        new Application(argc, argv, shortName, fullName, versionOf(major, minor, patch), aboutSuppressed));
    if (graphical) {
        requireSettingsFiles(organizationName(), applicationName());
        Brindle::theme = Brindle::Theme::getTheme(QSettings().value(QStringLiteral("theme")).toString());
        Brindle::theme.apply(*created);
    }
    return created;
}

Application::Application(int& argc, char** argv, const QString& shortName, const QString& fullName,
                         const QString& fullVersion, bool aboutSuppressed)
    : QApplication(argc, argv),
      _shortName(shortName),
      _fullName(fullName),
      _fullVersion(fullVersion),
      _aboutSuppressed(aboutSuppressed) {
    setOrganizationName(QStringLiteral("Orvane"));
    setApplicationName(fullName);
    setApplicationVersion(fullVersion);
    application = this;
}

Application::~Application() {
    application = nullptr;
}

int Application::exec() {
    if (application)
        application->throwKeptException();
    const int result = QApplication::exec();
    if (application)
        application->throwKeptException();
    return result;
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        keepCurrentException();
        return false;
    }
}

void Application::keepCurrentException() {
    if (!_exception)
        _exception = std::current_exception();
    // Without a running loop there is nothing to leave, and the request would stop the next dialog instead.
    if (QThread::currentThread()->loopLevel() > 0)
        exit(1);
}

void Application::throwKeptException() {
    if (_exception)
        std::rethrow_exception(std::exchange(_exception, nullptr));
}

QString Application::getDistribution() const {
    return QStringLiteral("%1, %2").arg(QSysInfo::prettyProductName(), QSysInfo::buildCpuArchitecture());
}

QString Application::getCopyright(bool isRichText) const {
    return isRichText ? QStringLiteral("Copyright &copy; 2026 Orvane") : QStringLiteral("Copyright \u00a9 2026 Orvane");
}

QString Application::getDisclaimer() const {
    return tr("<p>%1 and the sources that it generates are provided as they are, without warranty of any kind. "
              "Simulate what you generate and check it on your device before you rely on it.</p>"
              "<p>They may be used, copied and passed on under the terms of the licence that Orvane delivers with the "
              "program.</p>")
        .arg(_fullName);
}

} // namespace Quillon
