#pragma once

#include <QApplication>
#include <QString>

#include <exception>
#include <memory>

namespace Quillon {

/// The application object: who the program is, and an event loop out of which exceptions reach the caller.
class Application : public QApplication {
    Q_OBJECT

public:
    /// Creates the one application object and gives it the theme that the setting "theme" names. The options of the
    /// framework are taken out of the arguments: `-no-about` suppresses the About page. The short name is what takes
    /// little room, the full name is shown to the user; the three numbers are the version. A `graphical` program shows
    /// windows on the desktop; one that is not works without a display and is not styled. `argc` and `argv` must
    /// outlive the object. Throws Brindle::InvalidRequest when there is an application object already and, for a
    /// graphical one, Brindle::Critical with the field "filename" when its settings cannot be read without waiting.
    [[nodiscard]] static std::unique_ptr<Application> create(int& argc, char** argv, const QString& shortName,
                                                             const QString& fullName, unsigned long major,
                                                             unsigned long minor, unsigned long patch, bool graphical);
    ~Application() override;

    /// Runs the event loop and returns its result. An exception out of event handling leaves every loop, those of modal
    /// dialogs included, and is thrown from here; one that was caught while no loop ran is thrown at once.
    static int exec();

    /// Delivers the event; keeps the first exception that its handling throws and leaves the event loops.
    bool notify(QObject* receiver, QEvent* event) override;

    const QString& getShortName() const { return _shortName; }
    const QString& getFullName() const { return _fullName; }
    /// The three numbers with dots between them: "1.0.0".
    const QString& getFullVersion() const { return _fullVersion; }
    /// The operating system that the program runs on, and the processor architecture that it was built for.
    QString getDistribution() const;
    /// The copyright notice, as rich text or as plain text.
    QString getCopyright(bool isRichText) const;
    /// What the maker does not vouch for, as rich text.
    QString getDisclaimer() const;
    /// True when the user asked for a start without the About page.
    bool isAboutSuppressed() const { return _aboutSuppressed; }

private:
    Application(int& argc, char** argv, const QString& shortName, const QString& fullName, const QString& fullVersion,
                bool aboutSuppressed);
    void keepCurrentException();
    void throwKeptException();

    QString _shortName;
    QString _fullName;
    QString _fullVersion;
    bool _aboutSuppressed;
    std::exception_ptr _exception;
};

/// The application object of the process; null when there is none.
extern Application* application;

} // namespace Quillon
