// Renders the images and the marks of the style sheet to PNG files, at single and double density and for each theme:
//     brindle-render-images <resources> <output>
// Renders one drawing as a square icon of that many pixels:
//     brindle-render-images <drawing> <size> <output>
#include <Brindle/widgets/ThemeColors.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

/// A mark of one colour, which its drawing calls "currentColor".
struct Mark {
    const char* name = nullptr;
    const char* color = nullptr;
    const char* disabledColor = nullptr; ///< None when the mark is never disabled.
};

constexpr std::array marks{
    Mark{"arrow-up", "muted", "border"},
    Mark{"arrow-down", "muted", "border"},
    Mark{"arrow-right", "muted"},
    Mark{"check", "accent_text", "disabled"},
    Mark{"dash", "accent_text", "disabled"},
    Mark{"grip-horizontal", "outline"},
    Mark{"grip-vertical", "outline"},
    Mark{"back", "text"},
    Mark{"forward", "text"},
    Mark{"parent-folder", "text"},
    Mark{"new-folder", "text"},
    Mark{"list", "text"},
    Mark{"details", "text"},
    Mark{"warning", "remark"},
};

QString readDrawing(const QString& filename) {
    QFile file(filename);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("Unable to open " + filename.toStdString());
    return QString::fromUtf8(file.readAll());
}

void renderAtSize(QSvgRenderer& renderer, const QSize& size, const QString& filename) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    if (!QDir().mkpath(QFileInfo(filename).path()) || !image.save(filename))
        throw std::runtime_error("Unable to write " + filename.toStdString());
}

void load(QSvgRenderer& renderer, const QString& drawing, const QString& path) {
    if (!renderer.load(drawing.toUtf8()))
        throw std::runtime_error("Not a drawing: the source of " + path.toStdString());
}

/// Writes `path`.png at the drawing's own size and `path`@2x.png at twice that.
void render(const QString& drawing, const QString& path) {
    QSvgRenderer renderer;
    load(renderer, drawing, path);
    renderAtSize(renderer, renderer.defaultSize(), path + QStringLiteral(".png"));
    renderAtSize(renderer, renderer.defaultSize() * 2, path + QStringLiteral("@2x.png"));
}

void renderIcon(const QString& filename, int size, const QString& output) {
    QSvgRenderer renderer;
    load(renderer, readDrawing(filename), output);
    renderAtSize(renderer, QSize(size, size), output);
}

void renderTheme(const QDir& resources, const QDir& output, const Brindle::ThemeColors& colors) {
    const QDir folder(output.filePath(colors.getFolder()));
    for (const char* name : {"velmora", "logo-mid"}) {
        const QString path = QStringLiteral("images/%1").arg(QLatin1String(name));
        render(colors.fillIn(readDrawing(resources.filePath(path) + QStringLiteral(".svg"))), folder.filePath(path));
    }
    for (const Mark& mark : marks) {
        const QString name = QLatin1String(mark.name);
        const QString drawing = readDrawing(resources.filePath(QStringLiteral("controls/%1.svg").arg(name)));
        const auto colored = [&](const char* color) {
            return QString(drawing).replace(QLatin1String("currentColor"), colors.getColorName(color));
        };
        render(colored(mark.color), folder.filePath(name));
        if (mark.disabledColor)
            render(colored(mark.disabledColor), folder.filePath(name) + QStringLiteral("-disabled"));
    }
}

void renderResources(const QDir& resources, const QDir& output) {
    for (const auto code : {Brindle::ThemeColors::Light, Brindle::ThemeColors::Dark})
        renderTheme(resources, output, Brindle::ThemeColors(code));
    render(readDrawing(resources.filePath(QStringLiteral("images/rocket.svg"))),
           output.filePath(QStringLiteral("rocket")));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // fonts, which a drawing may need, come with a platform
    const QGuiApplication application(argc, argv);
    const auto path = [argv](int index) { return QFile::decodeName(argv[index]); };
    try {
        if (argc == 3)
            renderResources(QDir(path(1)), QDir(path(2)));
        else if (argc == 4 && std::atoi(argv[2]) > 0)
            renderIcon(path(1), std::atoi(argv[2]), path(3));
        else {
            std::fputs("usage: brindle-render-images <resources> <output>\n"
                       "       brindle-render-images <drawing> <size> <output>\n",
                       stderr);
            return 2;
        }
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "brindle-render-images: %s\n", exception.what());
        return 1;
    }
    return 0;
}
