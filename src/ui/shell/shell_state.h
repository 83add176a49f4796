#pragma once

#include "core/model/app_model.h"
#include "ui/shell/folder_chooser.h"
#include "ui/shell/sidebar_model.h"
#include "ui/shell/start_wish.h"
#include "ui/shell/window_folder_picker.h"

#include <QObject>
#include <QString>
#include <QUrl>

namespace kestavon {

/// The frame around every screen: sidebar, toolbar, and which screen is shown. Main thread.
class ShellState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestavon::SidebarModel* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(kestavon::WindowFolderPicker* folderPicker READ folderPicker CONSTANT)
    Q_PROPERTY(kestavon::FolderChooser* folderChooser READ folderChooser CONSTANT)
    /// The row of the shown section in `sidebar`.
    Q_PROPERTY(int row READ row NOTIFY sectionChanged)
    Q_PROPERTY(QString sectionTitle READ sectionTitle NOTIFY sectionChanged)
    Q_PROPERTY(QString sectionSymbol READ sectionSymbol NOTIFY sectionChanged)
    /// The QML file of the shown section.
    Q_PROPERTY(QUrl screen READ screen NOTIFY sectionChanged)
    /// A storage scan is running; no other scan counts.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
public:
    explicit ShellState(AppModel& model);

    SidebarModel* sidebar() { return &m_sidebar; }
    WindowFolderPicker* folderPicker() { return &m_folderPicker; }
    FolderChooser* folderChooser() { return &m_folderChooser; }
    int row() const { return m_sidebar.rowOf(m_model.section()); }
    QString sectionTitle() const;
    QString sectionSymbol() const;
    QUrl screen() const;
    bool isScanning() const { return m_model.scanPhase().isScanning(); }
    bool hasFullDiskAccess() const { return m_model.hasFullDiskAccess(); }

    /// Shows the section in this row of the sidebar; a row that does not exist changes nothing.
    Q_INVOKABLE void showRow(int row);
    Q_INVOKABLE void showSettings() { m_model.setSection(AppSection::settings); }
    Q_INVOKABLE void showSmartClean() { m_model.setSection(AppSection::smartClean); }
    Q_INVOKABLE void chooseFolder() { m_model.chooseScanFolder(m_folderPicker); }
    Q_INVOKABLE void scan() { m_model.startStorageScan(); }
    Q_INVOKABLE void stop() { m_model.stopStorageScan(); }
    Q_INVOKABLE void openFullDiskAccessSettings();
    Q_INVOKABLE void refreshFullDiskAccess() { m_model.refreshFullDiskAccess(); }
    /// Asks the window to come to the front.
    Q_INVOKABLE void raise() { Q_EMIT raiseRequested(); }

    /// Does what a start of the program asks for; a running scan goes on unless it is of another
    /// folder.
    void fulfil(const StartWish& wish);
    /// What another start of the program asked for: come to the front as well.
    void takeOver(const StartWish& wish);

Q_SIGNALS:
    void sectionChanged();
    void isScanningChanged();
    void hasFullDiskAccessChanged();
    void raiseRequested();
    /// Something the user asked for could not be done; `reason` is a sentence for a person.
    void failed(const QString& reason);

private:
    void follow(AppModel::Field field);

    AppModel& m_model;
    SidebarModel m_sidebar;
    WindowFolderPicker m_folderPicker;
    FolderChooser m_folderChooser;
};

} // namespace kestavon
