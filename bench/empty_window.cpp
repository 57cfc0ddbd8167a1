#include <QApplication>
#include <QMainWindow>

/// The smallest program with a window, the reference for the program's start.
int main(int argc, char** argv) {
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1000, 600);
    window.show();
    return QApplication::exec();
}
