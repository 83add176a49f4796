#include "core/model/app_model.h"
#include "core/model/updater_controller.h"
#include "platform/host_layout.h"
#include "platform/platform.h"
#include "platform/resident_memory.h"
#include "storage/file_scanner.h"
#include "ui/accessible_shim.h"
#include "ui/command_line.h"
#include "ui/style/symbol_provider.h"
#include "ui/ui_states.h"
#ifdef KESTAVON_HAS_CLI
#include "cli/scan_command.h"
#endif

#include <QApplication>
#include <QFontDatabase>
#include <QQmlApplicationEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>

#include <cstdio>
#include <cstdlib>
#include <string_view>

Q_IMPORT_QML_PLUGIN(Kestavon_UiPlugin)

namespace {

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

int runWindow(QApplication& application, const CommandLine& line)
{
    auto environment = currentHostEnvironment();
    environment.systemRoot = normalisedPath(line.systemRoot);
    auto scanner = std::make_shared<FileScanner>(
        std::vector<std::string>{"/System", "/private/var/db", "/private/var/vm"},
        std::uint64_t{1'073'741'824}, residentMemoryBytes);
    AppModel model(std::move(scanner), systemPlatform(environment));
    if (!line.folder.empty())
        model.setSelectedRoot(line.folder);
    UiStates states(model);

    useFonts();
    QQmlApplicationEngine engine;
    installAccessibleShim(engine);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    engine.setInitialProperties({{QStringLiteral("ui"), QVariant::fromValue(&states)},
        {QStringLiteral("themeChoice"), QString::fromStdString(line.theme)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Kestavon/Ui/shell/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return EXIT_FAILURE;
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::string_view(argv[1]) == "scan") {
#ifdef KESTAVON_HAS_CLI
        return runScanCommand(argc, argv);
#endif
    }

    if (!qEnvironmentVariableIsSet("KESTAVON_GPU"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv); // takes Qt's own options out of the arguments
    QCoreApplication::setApplicationName(QStringLiteral("kestavon"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Kestavon"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.kestavon.Kestavon"));

    const auto line = readCommandLine({argv + 1, argv + argc});
    return runWindow(application, line);
}
