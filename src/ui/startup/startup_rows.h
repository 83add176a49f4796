#pragma once

#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace kestavon {

struct StartupItem;
struct Uuid;

/// The startup items as rows from 0, in two sections that stand on a card each: the user's own and
/// the system's. A section begins with a row of its own, its heading; one without items is not
/// there. A row that does not exist is blank. Ask again whenever the revision has changed. Main
/// thread.
class StartupRows final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int rowCount READ rowCount NOTIFY changed)
    Q_PROPERTY(int sectionCount READ sectionCount NOTIFY changed)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(double itemHeight READ itemHeight CONSTANT)
    /// Of the section's texts, with the room below.
    Q_PROPERTY(double headingHeight READ headingHeight CONSTANT)
public:
    /// Gives the items as they are now, the user's own first; is asked anew after `reload`.
    using Source = std::function<const std::vector<StartupItem>&()>;
    /// Tells of an item whether it is being removed, until `refresh`.
    using Busy = std::function<bool(const Uuid&)>;

    StartupRows(Source source, Busy busy);

    int rowCount() const { return m_rowCount; }
    int sectionCount() const { return static_cast<int>(m_sections.size()); }
    int revision() const { return m_revision; }
    double itemHeight() const { return 54; }
    double headingHeight() const { return 42; }
    Q_INVOKABLE bool isHeading(int row) const;
    /// The item's label, or the section's title.
    Q_INVOKABLE QString titleText(int row) const;
    /// The program that the item runs, or what the section holds.
    Q_INVOKABLE QString detailText(int row) const;
    /// The file that defines the item.
    /// Tells the row's item from every other.
    Q_INVOKABLE QString idText(int row) const;
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    Q_INVOKABLE QString pathText(int row) const;
    Q_INVOKABLE bool isProtected(int row) const;
    Q_INVOKABLE bool isBusy(int row) const;

    /// Where the row begins, in pixels from the first; for `rowCount`, where the last one ends.
    Q_INVOKABLE double rowTop(int row) const;
    Q_INVOKABLE int rowAt(double position) const;
    /// Where the section's card begins and ends.
    Q_INVOKABLE double cardTop(int section) const;
    Q_INVOKABLE double cardBottom(int section) const;

    /// The item that the row shows; null for a heading.
    const StartupItem* itemAt(int row) const;
    void reload();
    void refresh();

Q_SIGNALS:
    /// Other items stand in the rows.
    void reloaded();
    /// A row may show something else than before.
    void changed();

private:
    struct Section {
        bool isSystem;
        std::size_t firstItem; ///< its place in the source
        int itemCount;
        int headingRow;
        double top;
    };

    const Section* sectionOf(int row) const;
    void arrange();

    Source m_source;
    Busy m_busy;
    std::vector<Section> m_sections;
    int m_rowCount = 0;
    double m_length = 0;
    int m_revision = 0;
};

} // namespace kestavon
