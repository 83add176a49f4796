// Opens an empty Quick window, prints the milliseconds from the program's start to its first frame,
// and ends.
#include "platform/process_age.h"

#include <QApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { width: 1280; height: 820; visible: true }");
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    if (!window)
        return EXIT_FAILURE;
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, [] {
        std::fprintf(stderr, "%ld\n", kestavon::processAgeMilliseconds());
        QCoreApplication::quit();
    });
    return QApplication::exec();
}
