// What the start of a program costs that only shows an empty frame.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setObjectName(QStringLiteral("Empty"));
    window.setWindowTitle(QStringLiteral("Quorvik - empty"));
    window.setCentralWidget(new QMdiArea);
    window.show();
    return QApplication::exec();
}
