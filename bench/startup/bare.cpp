// The floor for the shell's start-up: a bare frameless 1024x64 window of the same toolkit,
// with nothing in it.
#include <QApplication>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget panel(nullptr, Qt::FramelessWindowHint);
    panel.setWindowTitle(QStringLiteral("Bare Panel"));
    panel.setGeometry(0, 704, 1024, 64);
    panel.show();
    return app.exec();
}
