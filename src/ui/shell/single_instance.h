#pragma once

#include "ui/shell/start_wish.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace kestavon {

/// Keeps the program to one process a user: the first start listens on a socket in the user's
/// runtime folder, and a later one hands its wish over there. Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    enum class Claim {
        first, ///< nobody else runs; requests arrive from now on
        handedOver, ///< a running process took the wish: this one is to end
        alone, ///< no socket can be had, or nobody answers on it: run without it
    };

    /// `folder` holds the socket and is only this user's.
    explicit SingleInstance(const QString& folder);

    /// Looks for a running process and hands it the wish, else takes its place; what a crashed one
    /// left behind is cleared away. Waits for an answer at most a few seconds.
    Claim claim(const StartWish& wish);

Q_SIGNALS:
    /// Another start wants this one in front, and this of it.
    void requested(const kestavon::StartWish& wish);

private:
    enum class Answer { taken, none, nobodyThere };
    Answer ask(const StartWish& wish) const;
    void serve();

    QString m_socketPath;
    QString m_lockPath;
    QLocalServer m_server;
};

} // namespace kestavon
