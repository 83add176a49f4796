#include <QAccessible>
#include <QGuiApplication>
#include <QQuickWindow>

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv(
            "QT_QPA_PLATFORM", "offscreen"); // tests are listed and run where there is no display
    testing::InitGoogleMock(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
