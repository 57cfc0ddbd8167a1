#include <support/TestMain.h>
#include <support/TestPrefix.h>

#include <velmora/window/AboutLeaf.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/widgets/Theme.h>

#include <QPainter>

#include <algorithm>

namespace {

/// Before there is an application object.
[[maybe_unused]] const bool isScaled = qputenv("QT_SCALE_FACTOR", "2");

QImage grab(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// The logo of double density, as the screen is to show it.
QImage drawLogo() {
    QImage drawing(Brindle::theme.getImagePath("velmora").replace(".png", "@2x.png"));
    drawing.setDevicePixelRatio(1);
    QImage image(drawing.size(), QImage::Format_RGB32);
    image.fill(Brindle::theme.getColor("surface"));
    QPainter(&image).drawImage(0, 0, drawing);
    return image;
}

/// True when the part is there pixel by pixel.
bool holds(const QImage& whole, const QImage& part) {
    const auto row = [](const QImage& image, int y) {
        return reinterpret_cast<const QRgb*>(image.constScanLine(y)); // Format_RGB32
    };
    const auto isAt = [&](int left, int top) {
        for (int y = 0; y < part.height(); ++y) {
            if (!std::equal(row(part, y), row(part, y) + part.width(), row(whole, top + y) + left))
                return false;
        }
        return true;
    };
    for (int top = 0; top <= whole.height() - part.height(); ++top) {
        for (int left = 0; left <= whole.width() - part.width(); ++left) {
            if (isAt(left, top))
                return true;
        }
    }
    return false;
}

} // namespace

/// What is shown on a screen of double density, where drawings of single density would be blurred.
class DensityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void logoIsSharp();
};

void DensityTest::logoIsSharp() {
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    const TestPrefix prefix;
    const Velmora::MainWindow window;
    QVERIFY(holds(grab(*window.findChild<Velmora::AboutLeaf*>()), drawLogo()));
}

VELMORA_TEST_MAIN(DensityTest)
#include "tst_density.moc"
