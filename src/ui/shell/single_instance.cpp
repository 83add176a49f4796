#include "ui/shell/single_instance.h"

#include <QLocalSocket>
#include <QLockFile>

namespace kestavon {

namespace {

constexpr int answerTime = 3000; // milliseconds
constexpr qint64 longestRequest = 64 * 1024;
constexpr auto acknowledgement = "ok\n";

} // namespace

SingleInstance::SingleInstance(const QString& folder)
    : m_socketPath(folder + QStringLiteral("/kestavon.socket"))
    , m_lockPath(folder + QStringLiteral("/kestavon.lock"))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::serve);
}

SingleInstance::Claim SingleInstance::claim(const std::string& scanFolder)
{
    // Two starts at once must not both find nobody and clear away each other's socket.
    QLockFile lock(m_lockPath);
    if (!lock.tryLock(answerTime))
        return Claim::alone;
    switch (ask(scanFolder)) {
    case Answer::taken: return Claim::handedOver;
    case Answer::none: return Claim::alone; // it hangs: leave its socket alone
    case Answer::nobodyThere: break;
    }
    QLocalServer::removeServer(m_socketPath);
    return m_server.listen(m_socketPath) ? Claim::first : Claim::alone;
}

SingleInstance::Answer SingleInstance::ask(const std::string& scanFolder) const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(answerTime))
        return Answer::nobodyThere;
    // Percent-encoded, so that a newline in a name does not end the request.
    socket.write(QByteArray::fromStdString(scanFolder).toPercentEncoding("/") + '\n');
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
            const auto request = socket->readLine().chopped(1);
            socket->write(acknowledgement);
            socket->disconnectFromServer();
            Q_EMIT requested(QByteArray::fromPercentEncoding(request).toStdString());
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

} // namespace kestavon
