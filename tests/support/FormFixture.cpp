#include <support/FormFixture.h>

#include <support/Examples.h>

#include <velmora/tables/LineTableView.h>

#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QToolButton>

const QByteArray FormFixture::echo = "def generate(argDict):\n"
                                     "  return '\\n'.join(key + '=' + argDict[key] for key in sorted(argDict))\n";

QStringList FormFixture::getPads() {
    QStringList pads;
    for (int pad = 0; pad < 30; ++pad)
        pads += QStringLiteral("%1%2").arg(pad / 2 + 1, 2, 10, QChar('0')).arg(pad % 2 ? "N" : "P");
    return pads;
}

void FormFixture::begin() {
    _prefix = std::make_unique<TestPrefix>();
    _dialog.answer = _prefix->path(QStringLiteral("out.vhd"));
    _dialog.asked.clear();
    QSettings().setValue("animations", "Never");
}

void FormFixture::end() {
    _page.reset();
    _prefix.reset();
}

void FormFixture::open(const QString& ipName, const QByteArray& script, const QByteArray& uid) {
    _page.reset();
    const QString description = _prefix->addKnownIP(ipName, script, "uid " + uid + "\n");
    _page = std::make_unique<Velmora::IPLeaf>(description.toStdString());
}

Velmora::Configuration FormFixture::openFor(const QString& example, const QByteArray& script) {
    const auto configuration = Examples::configuration(example);
    open(QString::fromStdString(configuration.getName()), script, configuration.getUID().c_str());
    return configuration;
}

void FormFixture::openFilled(const QString& example, const QByteArray& script) {
    const auto configuration = openFor(example, script);
    _page->setConfiguration(configuration);
}

QStringList FormFixture::cells(int rowCount) const {
    QStringList rows;
    for (const Velmora::FormTable& table : _page->getForm()->getTables())
        rows += FormText::cellsOf(*table.view, rowCount);
    return rows;
}

void FormFixture::press(const char* button) const {
    QTest::mousePress(editor<QPushButton>(button), Qt::LeftButton); // acts before it is released
}

QStringList FormFixture::generate() const {
    ConsoleRecorder recorder;
    press("Generate");
    return recorder.lines();
}

QString FormFixture::statement() const {
    return QString::fromStdString(_page->getGeneration().getArguments().getStatement())
        .replace(QRegularExpression(QStringLiteral("'\\d\\d/\\d\\d/\\d{4} - \\d\\d:\\d\\d'")),
                 QStringLiteral("'DATE'"));
}

void FormFixture::showUnfolded(const QSize& size) const {
    _page->resize(size);
    _page->show();
    _page->activateWindow();
    if (!QTest::qWaitForWindowActive(_page.get()))
        qFatal("the window does not become active");
    for (auto* toggle : _page->findChildren<QToolButton*>())
        QTest::mouseClick(toggle, Qt::LeftButton);
    QCoreApplication::processEvents();
}
