#pragma once

#include "core/model/work_meter.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace kestavon {

/// The operations on files that are going on, and the one of them that a person is told about: the
/// first that has lasted for a while. Main thread.
class WorkBoard {
public:
    /// `show` gets what there is to tell, ten times a second while that changes.
    explicit WorkBoard(std::function<void(const std::optional<FileWork>&)> show);
    ~WorkBoard();
    WorkBoard(const WorkBoard&) = delete;
    WorkBoard& operator=(const WorkBoard&) = delete;

    /// An operation that begins sooner or later, until `end`.
    std::shared_ptr<WorkMeter> start(FileWork::Deed deed);
    void end(const std::shared_ptr<WorkMeter>& meter);

    /// Asks the operation that is shown to end; nothing when none is.
    void stopShown();
    /// Asks all to end. Whether there were any.
    bool stopAll();

private:
    void look();

    std::function<void(const std::optional<FileWork>&)> m_show;
    std::vector<std::shared_ptr<WorkMeter>> m_meters; ///< in the order of their start
    std::shared_ptr<WorkMeter> m_shownMeter;
    std::optional<FileWork> m_shown;
    QTimer m_timer; ///< runs while there are meters
};

} // namespace kestavon
