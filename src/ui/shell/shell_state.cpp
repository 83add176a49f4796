#include "ui/shell/shell_state.h"

#include "ui/shell/shell_rules.h"

#include <QFile>
#include <QPointer>

namespace kestavon {

namespace {

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

ShellState::ShellState(AppModel& model)
    : m_model(model)
    , m_sidebar(model)
    , m_folderChooser(model.platform().layout.home)
{
    connect(&model, &AppModel::fieldChanged, this, &ShellState::follow);
}

QString ShellState::sectionTitle() const
{
    return text(rawValue(m_model.section()));
}

QString ShellState::sectionSymbol() const
{
    return text(lookOf(m_model.section()).symbol);
}

QUrl ShellState::screen() const
{
    const auto folder = QStringLiteral("/qt/qml/Kestavon/Ui/");
    auto file = folder + text(lookOf(m_model.section()).screen);
    if (!QFile::exists(u':' + file))
        file = folder + QStringLiteral("shell/UnbuiltScreen.qml");
    return QUrl(QStringLiteral("qrc:") + file);
}

void ShellState::showRow(int row)
{
    if (row >= 0 && row < m_sidebar.rowCount())
        m_model.setSection(m_sidebar.sectionAt(row));
}

void ShellState::openFullDiskAccessSettings()
{
    m_model.openFullDiskAccessSettings();
}

void ShellState::fulfil(const StartWish& wish)
{
    const bool isElsewhere = !wish.folder.empty() && wish.folder != m_model.selectedRoot();
    if (!wish.folder.empty())
        m_model.setSelectedRoot(wish.folder);
    if (wish.section)
        m_model.setSection(*wish.section);
    if (wish.scansAtOnce && (isElsewhere || !isScanning()))
        scan();
}

void ShellState::takeOver(const StartWish& wish)
{
    fulfil(wish);
    // From where the toolkit takes it when it asks to be activated.
    if (!wish.activationToken.empty())
        qputenv(activationTokenVariable, QByteArray::fromStdString(wish.activationToken));
    raise();
}

void ShellState::follow(AppModel::Field field)
{
    switch (field) {
    case AppModel::Field::section: Q_EMIT sectionChanged(); break;
    case AppModel::Field::scanPhase: Q_EMIT isScanningChanged(); break;
    case AppModel::Field::hasFullDiskAccess: Q_EMIT hasFullDiskAccessChanged(); break;
    default: break;
    }
}

} // namespace kestavon
