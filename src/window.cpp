#include "cli/command_line.h"
#include "cli/exit_code.h"
#include "core/model/app_model.h"
#include "platform/host_layout.h"
#include "platform/process_age.h"
#include "program_model.h"
#include "ui/accessible_shim.h"
#include "ui/shell/single_instance.h"
#include "ui/shell/status_tray.h"
#include "ui/style/desktop_appearance.h"
#include "ui/style/desktop_motion.h"
#include "ui/style/symbol_provider.h"
#include "ui/ui_states.h"
#include "ui/widgets/app_icon_provider.h"

#include <QApplication>
#include <QFontDatabase>
#include <QQmlApplicationEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>

Q_IMPORT_QML_PLUGIN(Kestavon_UiPlugin)

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

void useFonts()
{
    for (const char* name : {"InterTabular-Regular", "InterTabular-Medium", "InterTabular-SemiBold",
             "InterTabular-Bold", "InterDisplayTabular-Bold"})
        QFontDatabase::addApplicationFont(
            QStringLiteral(":/fonts/%1.otf").arg(QLatin1String(name)));
    QFont font(QStringLiteral("Inter Tabular"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
}

int runWindow(QApplication& application, const CommandLine& line, std::string activationToken)
{
    const StartWish wish{.folder = line.folder.empty() ? std::string() : typedPath(line.folder),
        .section = line.section,
        .scansAtOnce = line.scansAtOnce,
        .activationToken = std::move(activationToken)};
    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
    if (instance.claim(wish) == SingleInstance::Claim::handedOver)
        return EXIT_SUCCESS;

    auto model = makeModel(line);
    UiStates states(model);
    states.shell()->fulfil(wish);
    QObject::connect(&instance, &SingleInstance::requested, states.shell(), &ShellState::takeOver);

    useFonts();
    DesktopAppearance appearance;
    const auto isStill = [&] { return desktopReducesMotion(appearance.reducesMotion()); };
    states.liveCount().setAnimated(!isStill());
    QQmlApplicationEngine engine;
    installAccessibleShim(engine);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    engine.addImageProvider(
        QStringLiteral("appicon"), new AppIconProvider(model.platform().layout.dataFolders));
    engine.setInitialProperties({{QStringLiteral("ui"), QVariant::fromValue(&states)},
        {QStringLiteral("themeChoice"), QString::fromStdString(line.theme)},
        {QStringLiteral("reducedMotion"), isStill()},
        {QStringLiteral("desktopScheme"), appearance.colorScheme()}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Kestavon/Ui/shell/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return EXIT_FAILURE;

    QObject::connect(&appearance, &DesktopAppearance::colorSchemeChanged, &engine, [&] {
        engine.rootObjects().constFirst()->setProperty("desktopScheme", appearance.colorScheme());
    });
    QObject::connect(&appearance, &DesktopAppearance::reducesMotionChanged, &engine, [&] {
        states.liveCount().setAnimated(!isStill());
        engine.rootObjects().constFirst()->setProperty("reducedMotion", isStill());
    });
    // The tray takes a conversation with the desktop: only once the window is there.
    std::optional<StatusTray> tray;
    QTimer trayWatch; // a desktop that is just starting may bring its tray later, or take it away
    const auto lookForTray = [&] {
        const bool isAvailable = QSystemTrayIcon::isSystemTrayAvailable();
        if (isAvailable && !tray)
            tray.emplace(states);
        else if (!isAvailable)
            tray.reset();
        if (!tray && engine.rootObjects().constFirst()->property("visible") == false)
            states.shell()->raise(); // Nothing else would lead to it any more.
        // With an icon in the tray the program stays when its window is closed.
        QGuiApplication::setQuitOnLastWindowClosed(!tray);
        trayWatch.start(std::chrono::seconds(tray ? 30 : 5));
    };
    QObject::connect(&trayWatch, &QTimer::timeout, lookForTray);
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    if (qEnvironmentVariableIsSet("KESTAVON_PRINT_FIRST_FRAME")) {
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &application,
            [] { std::cerr << processAgeMilliseconds() << std::endl; }, Qt::SingleShotConnection);
    }
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, lookForTray,
        Qt::ConnectionType(Qt::SingleShotConnection | Qt::QueuedConnection));
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("KESTAVON_GPU"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // The toolkit may take it out of the environment.
    const auto activationToken = qgetenv(activationTokenVariable).toStdString();
    QApplication application(argc, argv); // takes Qt's own options out of the arguments
    QCoreApplication::setApplicationName(QStringLiteral("kestavon"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Kestavon"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.kestavon.Kestavon"));
    const auto line = readCommandLine({argv + 1, argv + argc});
    int code = usageExitCode;
    if (line.error.empty())
        code = runWindow(application, line, activationToken);
    else
        std::cerr << "kestavon: " << line.error << " Try kestavon --help.\n";
    // A worker may still sit in a read that never returns, using what exit() would destroy.
    std::fflush(nullptr);
    std::_Exit(code);
}
