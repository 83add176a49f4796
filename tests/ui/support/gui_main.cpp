#include <QAccessible>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>

#include <gmock/gmock.h>

Q_IMPORT_QML_PLUGIN(Kestavon_UiPlugin)

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QAccessible::setActive(true);
    for (const char* name : {"InterTabular-Regular", "InterTabular-Medium", "InterTabular-SemiBold",
             "InterTabular-Bold", "InterDisplayTabular-Bold"})
        QFontDatabase::addApplicationFont(
            QStringLiteral(":/fonts/%1.otf").arg(QLatin1String(name)));
    return RUN_ALL_TESTS();
}
