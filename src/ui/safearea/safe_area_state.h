#pragma once

#include "core/model/app_model.h"
#include "ui/safearea/held_items.h"
#include "ui/widgets/confirmation.h"

#include <QObject>

namespace kestavon {

/// The Safe Area screen: what was moved there, to be restored or deleted for good; on request also
/// what earlier runs of the program moved there. Main thread.
class SafeAreaState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestavon::HeldItems* items READ items CONSTANT)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
    /// All items are being restored or deleted; none can be chosen meanwhile.
    Q_PROPERTY(bool working READ working NOTIFY workingChanged)
    Q_PROPERTY(kestavon::HeldItems* earlierItems READ earlierItems CONSTANT)
    /// "12 items from earlier"
    Q_PROPERTY(QString earlierText READ earlierText NOTIFY earlierChanged)
    /// Some of them can be put back all at once: their place is known.
    Q_PROPERTY(bool canRestoreEarlier READ canRestoreEarlier NOTIFY earlierChanged)
    /// There are items of earlier runs, and they are not shown yet, or they are.
    Q_PROPERTY(bool offersEarlier READ offersEarlier NOTIFY earlierChanged)
    Q_PROPERTY(bool showsEarlier READ showsEarlier NOTIFY earlierChanged)
public:
    /// `picker` lets the user choose where to put an item whose place is not known; it must outlive
    /// this.
    SafeAreaState(AppModel& model, FolderPicker& picker);

    HeldItems* items() { return &m_items; }
    Confirmation* confirmation() { return &m_confirmation; }
    bool working() const { return m_working; }

    /// Puts one item back, or deletes it for good without asking; nothing while the item is already
    /// being worked on. A failure is shown by `confirmation`.
    Q_INVOKABLE void restore(int row);
    Q_INVOKABLE void deleteForever(int row);
    /// Ask, and do it when the answer is yes. A question is withdrawn when the list changes
    /// meanwhile: nobody was asked about what it holds then.
    Q_INVOKABLE void askRestoreAll();
    Q_INVOKABLE void askDeleteAll();

    /// @name Items of earlier runs
    /// @{
    HeldItems* earlierItems() { return &m_earlierItems; }
    QString earlierText() const;
    bool canRestoreEarlier() const { return restorableEarlier() > 0; }
    bool offersEarlier() const { return hasEarlier() && !m_wantsEarlier; }
    bool showsEarlier() const { return hasEarlier() && m_wantsEarlier; }
    /// The screen is opened: finds out whether there are any.
    Q_INVOKABLE void lookForEarlier() { m_model.findEarlierHeldItems(); }
    Q_INVOKABLE void showEarlier() { setWantsEarlier(true); }
    Q_INVOKABLE void hideEarlier() { setWantsEarlier(false); }
    /// Puts one item back; where its place is not known, the user chooses a folder first.
    Q_INVOKABLE void restoreEarlier(int row);
    Q_INVOKABLE void askDeleteEarlier(int row);
    Q_INVOKABLE void askRestoreAllEarlier();
    Q_INVOKABLE void askDeleteAllEarlier();
    /// @}

Q_SIGNALS:
    void workingChanged();
    void earlierChanged();

private:
    using ItemOperation = void (AppModel::*)(const QuarantineItem&, AppModel::Finished);
    using ListOperation = void (AppModel::*)(AppModel::Finished);

    bool hasEarlier() const { return !m_model.earlierQuarantine().empty(); }
    std::size_t restorableEarlier() const;
    void setWantsEarlier(bool wanted);
    void workOnItem(HeldItems& list, int row, ItemOperation operation);
    void workOn(HeldItems& list, const QuarantineItem& item, ItemOperation operation);
    void askForAll(HeldItems& list, ConfirmationTexts question, ListOperation operation);
    void setWorking(bool working);

    AppModel& m_model;
    FolderPicker& m_picker;
    HeldItems m_items;
    HeldItems m_earlierItems;
    Confirmation m_confirmation;
    bool m_working = false;
    bool m_wantsEarlier = false;
};

} // namespace kestavon
