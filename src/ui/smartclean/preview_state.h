#pragma once

#include "core/domain/preview_sort_order.h"
#include "core/model/app_model.h"
#include "smartclean/running_owners.h"
#include "ui/smartclean/smart_clean_rules.h"
#include "ui/widgets/confirmation.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace kestavon {

/// The sheet in which the items of one category are looked through, ticked and removed. It shows
/// the category as it was when the sheet was opened. The items may be many: they are sorted on a
/// thread of this object's own, and the rows stay as they are until the new order is there. Main
/// thread.
class PreviewState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY isPresentedChanged)
    /// @name The category
    Q_PROPERTY(QString title READ title NOTIFY opened)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY opened)
    Q_PROPERTY(QString symbol READ symbol NOTIFY opened)
    Q_PROPERTY(QString color READ color NOTIFY opened)

    Q_PROPERTY(QStringList sortLabels READ sortLabels CONSTANT)
    /// The chosen one of `sortLabels`.
    Q_PROPERTY(int sortOrder READ sortOrder NOTIFY sortOrderChanged)
    Q_PROPERTY(int rowCount READ rowCount NOTIFY rowsChanged)
    Q_PROPERTY(int contentRevision READ contentRevision NOTIFY rowsChanged)

    Q_PROPERTY(int selectionRevision READ selectionRevision NOTIFY selectionChanged)
    /// "4 of 128"
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY selectionChanged)
    Q_PROPERTY(bool allSelected READ allSelected NOTIFY selectionChanged)
    Q_PROPERTY(bool someSelected READ someSelected NOTIFY selectionChanged)
    /// "Select All", or "Deselect All" while every item is selected.
    Q_PROPERTY(QString allLabel READ allLabel NOTIFY selectionChanged)
    /// "4 selected" and what they come to.
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedSizeText READ selectedSizeText NOTIFY selectionChanged)
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY selectionChanged)
    /// A removal is under way.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY selectionChanged)
    /// Only its alert is used: nothing here asks.
    Q_PROPERTY(kestavon::Confirmation* notice READ notice CONSTANT)
public:
    explicit PreviewState(AppModel& model);
    ~PreviewState() override;

    /// Opens the sheet for this category as it is now: nothing ticked, the largest items first.
    void open(const JunkGroup& group);
    Q_INVOKABLE void close();

    bool isPresented() const { return m_isPresented; }
    const QString& title() const { return m_look.title; }
    const QString& subtitle() const { return m_look.subtitle; }
    const QString& symbol() const { return m_look.symbol; }
    const QString& color() const { return m_look.color; }

    QStringList sortLabels() const;
    int sortOrder() const { return static_cast<int>(m_sortOrder); }
    Q_INVOKABLE void sortBy(int order);

    /// @name Items, by number of their row from 0
    /// A row that does not exist is blank: ask again whenever a revision has changed.
    /// @{
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int contentRevision() const { return m_contentRevision; }
    Q_INVOKABLE QString nameText(int row) const;
    /// The folder that the item lies in, where another item has the same name; else empty.
    Q_INVOKABLE QString folderText(int row) const;
    Q_INVOKABLE QString dateText(int row) const;
    Q_INVOKABLE QString sizeText(int row) const;
    Q_INVOKABLE QString pathText(int row) const;
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    /// "Editor is running", when the application that the item belongs to is; else empty.
    Q_INVOKABLE QString runningText(int row) const;
    /// What kind of item it is, and what removing it means, in one sentence; and in another that
    /// its application is running.
    Q_INVOKABLE QString reasonText(int row) const;
    Q_INVOKABLE QString adviceText(int row) const;
    Q_INVOKABLE bool isSelected(int row) const;
    Q_INVOKABLE void toggle(int row);
    /// @}

    int selectionRevision() const { return m_selectionRevision; }
    QString selectionText() const;
    bool allSelected() const { return m_selectedCount > 0 && m_selectedCount == items().size(); }
    bool someSelected() const { return m_selectedCount > 0 && !allSelected(); }
    QString allLabel() const;
    QString selectedText() const;
    QString selectedSizeText() const;
    bool canRemove() const { return !m_isBusy && m_selectedCount > 0; }
    bool isBusy() const { return m_isBusy; }
    Confirmation* notice() { return &m_notice; }

    /// Ticks every item, or none when every one is ticked.
    Q_INVOKABLE void toggleAll() { selectAll(!allSelected()); }
    Q_INVOKABLE void selectEverything() { selectAll(true); }

    /// Remove the ticked items, without asking, and close the sheet. It stays open when that failed
    /// or the Safe Area could not take all of them; `notice` says so.
    /// Moves what is selected to the Trash, or deletes it for good, once a question has been
    /// answered: what a key does that may be pressed by mistake.
    Q_INVOKABLE void askRemoval(bool forGood);
    Q_INVOKABLE void moveToSafeArea() { remove(ActionKind::safeArea); }
    Q_INVOKABLE void moveToTrash() { remove(ActionKind::trash); }
    Q_INVOKABLE void deleteForever() { remove(ActionKind::permanent); }

Q_SIGNALS:
    void isPresentedChanged();
    void opened();
    void sortOrderChanged();
    void rowsChanged();
    void selectionChanged();

private:
    /// How the items are shown.
    struct Arrangement {
        std::vector<std::uint32_t> rows; ///< positions in the group's items
        std::vector<bool> sharesName; ///< by position
    };

    /// Who runs, and which items belong to them.
    struct Owners {
        std::shared_ptr<const RunningOwners> running;
        std::vector<std::string_view> names; ///< by position; the text is that of `running`
    };

    const JunkItems& items() const { return m_group.items; }
    std::optional<std::size_t> positionOf(int row) const;
    const CleanupCandidate* itemAt(int row) const;
    void arrange();
    void findOwners();
    void show(Arrangement arrangement);
    void selectAll(bool selected);
    void announceSelection();
    void remove(ActionKind action);
    /// Of what was just held, so many.
    void deselectHeld(std::size_t count);
    void endRemoval(std::uint64_t opening, const QString& problem);
    template <class T> void disposeInBackground(T value);

    AppModel& m_model;
    JunkGroup m_group;
    CategoryLook m_look;
    std::uint64_t m_opening = 0; ///< counts how often the sheet was opened
    bool m_isPresented = false;

    PreviewSortOrder m_sortOrder = PreviewSortOrder::sizeDesc;
    std::vector<std::uint32_t> m_rows; ///< positions in the group's items
    std::vector<bool> m_sharesName; ///< by position
    Owners m_owners; ///< empty until they are known
    int m_contentRevision = 0;

    std::vector<bool> m_selected; ///< by position
    std::size_t m_selectedCount = 0;
    std::int64_t m_selectedBytes = 0;
    int m_selectionRevision = 0;

    bool m_isBusy = false;
    Confirmation m_notice;

    std::optional<std::stop_source> m_arranging; ///< the rows that are on their way
    std::shared_ptr<SerialQueue> m_queue = std::make_shared<SerialQueue>();
};

} // namespace kestavon
