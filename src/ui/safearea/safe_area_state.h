#pragma once

#include "core/model/app_model.h"
#include "ui/safearea/held_items.h"
#include "ui/widgets/confirmation.h"

#include <QObject>

namespace kestavon {

/// The Safe Area screen: what was moved there, to be restored or deleted for good. Main thread.
class SafeAreaState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestavon::HeldItems* items READ items CONSTANT)
    Q_PROPERTY(kestavon::Confirmation* confirmation READ confirmation CONSTANT)
    /// All items are being restored or deleted; none can be chosen meanwhile.
    Q_PROPERTY(bool working READ working NOTIFY workingChanged)
public:
    explicit SafeAreaState(AppModel& model);

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

Q_SIGNALS:
    void workingChanged();

private:
    using ItemOperation = void (AppModel::*)(const QuarantineItem&, AppModel::Finished);
    using ListOperation = void (AppModel::*)(AppModel::Finished);

    void workOnItem(int row, ItemOperation operation);
    void askForAll(ConfirmationTexts question, ListOperation operation);
    void setWorking(bool working);

    AppModel& m_model;
    HeldItems m_items;
    Confirmation m_confirmation;
    bool m_working = false;
};

} // namespace kestavon
