#pragma once

#include "core/model/app_model.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>

namespace kestavon {

/// The live count of the storage scan as the screens show it: it runs evenly from one published
/// value to the next, and is drawn at most 30 times a second however fast values come in. Outside
/// a running scan it is the published value itself. Main thread.
class LiveCount final : public QObject {
    Q_OBJECT
public:
    /// How long the count takes from one published value to the next.
    static constexpr int tweenMilliseconds = 250;

    explicit LiveCount(AppModel& model, QObject* parent = nullptr);

    std::int64_t shown() const { return m_shown; }
    /// Whether the count runs between values (default) or steps from value to value.
    void setAnimated(bool animated) { m_animated = animated; }

Q_SIGNALS:
    void changed();

private:
    void follow();
    void step();
    void show(std::int64_t count);

    AppModel& m_model;
    bool m_animated = true;
    std::int64_t m_shown = 0;
    std::int64_t m_from = 0; ///< the tween runs from here to m_to
    std::int64_t m_to = 0;
    QElapsedTimer m_sinceValue;
    QTimer m_frames; ///< runs only while the shown count lags behind
};

} // namespace kestavon
