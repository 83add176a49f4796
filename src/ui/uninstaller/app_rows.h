#pragma once

#include "core/domain/installed_app.h"
#include "ui/widgets/file_path.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kestavon {

/// Applications as rows from 0, and below each that is opened what it has left; a row that does not
/// exist is blank. Ask again whenever the revision has changed. Main thread.
class AppRows final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int rowCount READ rowCount NOTIFY changed)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(double appHeight READ appHeight CONSTANT)
    Q_PROPERTY(double leftoverHeight READ leftoverHeight CONSTANT)
public:
    using Source = std::function<const std::vector<InstalledApp>&()>;
    using Busy = std::function<bool(const Uuid&)>;

    /// `source` gives the applications as they are now, and is asked anew after `reload`; `busy`
    /// tells of each whether it is being removed, until `refresh`.
    AppRows(Source source, Busy busy);

    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int revision() const { return m_revision; }
    double appHeight() const { return 52; }
    double leftoverHeight() const { return 34; }
    Q_INVOKABLE bool isApp(int row) const { return at(row) && !at(row)->leftover; }

    /// Of an application its name; of a leftover its path.
    Q_INVOKABLE QString nameText(int row) const;
    /// Of an application its identifier, or that it has none; of a leftover what kind it is.
    Q_INVOKABLE QString detailText(int row) const;
    Q_INVOKABLE QString sizeText(int row) const;
    /// The name of that text's colour.
    Q_INVOKABLE QString sizeColor(int row) const;
    Q_INVOKABLE kestavon::FilePath filePath(int row) const;
    /// Tells what the row shows from everything else.
    Q_INVOKABLE QString idText(int row) const;
    /// Of a leftover that other applications have too, which; else empty.
    Q_INVOKABLE QString sharedText(int row) const;

    /// @name Applications only
    /// @{
    /// As AppIcon takes it; empty for none.
    Q_INVOKABLE QString iconText(int row) const;
    Q_INVOKABLE QString filesText(int row) const;
    Q_INVOKABLE bool hasLeftovers(int row) const;
    Q_INVOKABLE bool isOpen(int row) const;
    Q_INVOKABLE bool isBusy(int row) const;
    /// Whether anything of it can be moved.
    Q_INVOKABLE bool canUninstall(int row) const;
    /// @}

    /// Shows or hides what the row's application has left. Gives the application's row.
    Q_INVOKABLE int setOpen(int row, bool open);
    Q_INVOKABLE int toggle(int row);

    /// Where the row begins, in pixels from the first; for `rowCount`, where the last one ends.
    Q_INVOKABLE double rowTop(int row) const;
    Q_INVOKABLE int rowAt(double position) const;

    /// The application that the row belongs to.
    const InstalledApp* appOf(int row) const;
    /// Only those whose names contain it are shown; all for an empty one.
    void setFilter(std::string filter);
    void reload();
    void refresh();

Q_SIGNALS:
    void changed();

private:
    struct Row {
        std::size_t app; ///< its place in the source
        std::optional<std::size_t> leftover; ///< none for the application itself
        double top;
    };

    const Row* at(int row) const;
    const LeftoverFile* leftoverAt(int row) const;
    void arrange();
    void findShared();

    Source m_source;
    Busy m_busy;
    std::string m_filter;
    std::unordered_set<Uuid> m_open;
    /// The owners of what has several, by its path; their places in the source.
    std::unordered_map<std::string, std::vector<std::size_t>> m_shared;
    std::vector<Row> m_rows;
    double m_length = 0;
    int m_revision = 0;
};

} // namespace kestavon
