#include <support/TestTable.h>

#include <Quillon/Application.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QDialog>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <stdexcept>
#include <vector>

using Quillon::Application;

namespace {

/// An application with command line arguments of its own.
class Program {
public:
    explicit Program(const std::vector<const char*>& arguments = {"velmora"}) {
        for (const char* argument : arguments)
            _argv.push_back(const_cast<char*>(argument));
        _argc = static_cast<int>(_argv.size());
        _argv.push_back(nullptr);
        _application = Application::create(_argc, _argv.data(), "Velm", "Velmora", 1, 2, 30, true);
    }

    Application* operator->() { return _application.get(); }

private:
    int _argc = 0;
    std::vector<char*> _argv;
    std::unique_ptr<Application> _application;
};

enum Thrown { Critical, Standard, Number };
enum Place { InSlot, InModalDialog, InPressedButton, BeforeTheLoop };

[[noreturn]] void throwOne(Thrown thrown) {
    if (thrown == Critical)
        throw located(Brindle::Critical("critical"), BRINDLE_HERE, {{"key", "value"}});
    if (thrown == Standard)
        throw std::out_of_range("standard");
    throw 42;
}

/// What leaves the loop: the dynamic type and what it says.
QString caughtFromExec() {
    try {
        return QStringLiteral("result %1").arg(Application::exec());
    } catch (const Brindle::Critical& exception) {
        return QStringLiteral("%1 %2").arg(exception.what(), exception.getField("key").c_str());
    } catch (const std::out_of_range& exception) {
        return exception.what();
    } catch (int number) {
        return QString::number(number);
    }
}

class ThrowingWidget : public QWidget {
public:
    explicit ThrowingWidget(Thrown thrown) : _thrown(thrown) {}

protected:
    void showEvent(QShowEvent*) override { throwOne(_thrown); }

private:
    Thrown _thrown;
};

} // namespace

class ApplicationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsWhoItIs();
    void takesItsOptionOutOfTheArguments();
    void themeComesFromSettings();
    void exceptionsLeaveEveryLoop_data();
    void exceptionsLeaveEveryLoop();
    void firstExceptionIsKept();
};

void ApplicationTest::tellsWhoItIs() {
    QVERIFY(!Quillon::application);
    {
        Program program;
        QCOMPARE(static_cast<QApplication*>(Quillon::application), qApp);
        QCOMPARE(program->getFullVersion(), "1.2.30");
        QCOMPARE(QSettings().organizationName(), "Orvane");
        QCOMPARE(QSettings().applicationName(), "Velmora");
        QVERIFY(program->getDisclaimer().contains(program->getFullName()));
        QVERIFY(!program->getDisclaimer().contains(QLatin1Char('%')));
    }
    QVERIFY(!Quillon::application);
}

void ApplicationTest::takesItsOptionOutOfTheArguments() {
    {
        Program program({"velmora", "-no-about", "x", "-no-about", "-help"});
        QVERIFY(program->isAboutSuppressed());
        QCOMPARE(QCoreApplication::arguments(), QStringList({"velmora", "x", "-help"}));
        QVERIFY_EXCEPTION_THROWN(Program(), Brindle::InvalidRequest); // there is one already
    }
    Program program({"-no-about", "no-about"}); // a program of that name
    QVERIFY(!program->isAboutSuppressed());
    QCOMPARE(QCoreApplication::arguments(), QStringList({"-no-about", "no-about"}));
}

void ApplicationTest::themeComesFromSettings() {
    QSettings settings("Orvane", "Velmora");
    for (const QVariant& stored : {QVariant("dark"), QVariant(QStringList{"dark", "x"})}) {
        settings.setValue("theme", stored);
        settings.sync();
        const Program program;
        QCOMPARE(int(Brindle::theme.getCode()),
                 int(stored == QVariant("dark") ? Brindle::Theme::Dark : Brindle::Theme::Light));
        QCOMPARE(QApplication::palette().color(QPalette::Window), Brindle::theme.getColor("window"));
        QVERIFY(!QPixmap(":/Brindle/rocket.png").isNull());
    }
    settings.remove("theme");
}

void ApplicationTest::exceptionsLeaveEveryLoop_data() {
    const TestTable<int, int, QString> table("thrown", "place", "caught");
    table.row("slot", Critical, InSlot, "critical value");
    table.row("modal dialog", Standard, InModalDialog, "standard");
    table.row("pressed button", Number, InPressedButton, "42");
    table.row("before the loop", Critical, BeforeTheLoop, "critical value");
}

void ApplicationTest::exceptionsLeaveEveryLoop() {
    QFETCH(int, thrown);
    QFETCH(int, place);
    QFETCH(QString, caught);
    const auto throwIt = [kind = static_cast<Thrown>(thrown)] { throwOne(kind); };
    const Program program;
    ThrowingWidget throwing(static_cast<Thrown>(thrown));
    QPushButton button;
    QObject::connect(&button, &QPushButton::pressed, &button, throwIt);
    bool wentOn = false;
    if (place == BeforeTheLoop) {
        throwing.show();
        QDialog dialog; // which is not what is left
        QTimer::singleShot(0, &dialog, &QDialog::accept);
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    } else if (place == InSlot) {
        QTimer::singleShot(0, qApp, throwIt);
    } else if (place == InPressedButton) {
        QTimer::singleShot(0, qApp, [&button] { QTest::mousePress(&button, Qt::LeftButton); });
    } else {
        QTimer::singleShot(0, qApp, [&] {
            QTimer::singleShot(0, qApp, throwIt);
            wentOn = QDialog().exec() == QDialog::Rejected;
        });
    }
    QCOMPARE(caughtFromExec(), caught);
    QCOMPARE(wentOn, place == InModalDialog);

    // Nothing is left behind: the next loop and the next dialog run as ever.
    QTimer::singleShot(0, qApp, [] {
        QDialog dialog;
        QTimer::singleShot(0, &dialog, &QDialog::accept);
        QCoreApplication::exit(dialog.exec() == QDialog::Accepted ? 3 : 4);
    });
    QCOMPARE(caughtFromExec(), "result 3");
}

void ApplicationTest::firstExceptionIsKept() {
    const Program program;
    ThrowingWidget first(Standard);
    ThrowingWidget second(Number);
    first.show();
    second.show();
    QCOMPARE(caughtFromExec(), "standard");
}

QTEST_APPLESS_MAIN(ApplicationTest)
#include "ApplicationTest.moc"
