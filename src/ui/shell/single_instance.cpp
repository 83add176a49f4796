#include "ui/shell/single_instance.h"

#include <QLocalSocket>
#include <QLockFile>

namespace kestavon {

namespace {

constexpr int answerTime = 3000; // milliseconds
constexpr qint64 longestRequest = 64 * 1024;
constexpr auto acknowledgement = "ok\n";

/// One line: the folder, the section's title, whether to scan and the desktop's token, parted by
/// spaces. Encoded, so that a newline or space in a name does not end anything.
QByteArray requestOf(const StartWish& wish)
{
    const auto section = wish.section ? rawValue(*wish.section) : std::string_view();
    return QByteArray::fromStdString(wish.folder).toPercentEncoding("/") + ' '
        + QByteArray::fromStdString(std::string(section)).toPercentEncoding() + ' '
        + (wish.scansAtOnce ? "scan" : "") + ' '
        + QByteArray::fromStdString(wish.activationToken).toPercentEncoding() + '\n';
}

StartWish wishOf(const QByteArray& request)
{
    const auto fields = request.chopped(1).split(' ');
    StartWish wish{.folder = QByteArray::fromPercentEncoding(fields.front()).toStdString()};
    if (fields.size() == 4) {
        wish.section
            = fromRawValue<AppSection>(QByteArray::fromPercentEncoding(fields[1]).toStdString());
        wish.scansAtOnce = fields[2] == "scan";
        wish.activationToken = QByteArray::fromPercentEncoding(fields[3]).toStdString();
    }
    return wish;
}

} // namespace

SingleInstance::SingleInstance(const QString& folder)
    : m_socketPath(folder + QStringLiteral("/kestavon.socket"))
    , m_lockPath(folder + QStringLiteral("/kestavon.lock"))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::serve);
}

SingleInstance::Claim SingleInstance::claim(const StartWish& wish)
{
    // Two starts at once must not both find nobody and clear away each other's socket.
    QLockFile lock(m_lockPath);
    if (!lock.tryLock(answerTime))
        return Claim::alone;
    switch (ask(wish)) {
    case Answer::taken: return Claim::handedOver;
    case Answer::none: return Claim::alone; // it hangs: leave its socket alone
    case Answer::nobodyThere: break;
    }
    QLocalServer::removeServer(m_socketPath);
    return m_server.listen(m_socketPath) ? Claim::first : Claim::alone;
}

SingleInstance::Answer SingleInstance::ask(const StartWish& wish) const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(answerTime))
        return Answer::nobodyThere;
    socket.write(requestOf(wish));
    socket.flush();
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(answerTime))
            return Answer::none;
    }
    return socket.readLine() == acknowledgement ? Answer::taken : Answer::none;
}

void SingleInstance::serve()
{
    while (auto* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            if (!socket->canReadLine()) {
                if (socket->bytesAvailable() > longestRequest)
                    socket->abort();
                return;
            }
            const auto request = socket->readLine();
            socket->write(acknowledgement);
            socket->disconnectFromServer();
            Q_EMIT requested(wishOf(request));
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

} // namespace kestavon
