#include "shell/singleinstance.h"

#include "common/apphome.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace {
const QByteArray kRaise = QByteArrayLiteral("raise\n");
}

SingleInstance::SingleInstance(const QString& key, QObject* parent)
    : QObject(parent)
    , m_name(key)
{ }

QString SingleInstance::keyForProgramFolder()
{
    const QByteArray who = qgetenv("USER") + '|' + QDir(programFolder()).canonicalPath().toUtf8();
    return QStringLiteral("prgOrvantis-")
        + QString::fromLatin1(QCryptographicHash::hash(who, QCryptographicHash::Sha1).toHex().left(16));
}

bool SingleInstance::askRunningCopy()
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(1000))
        return false;
    socket.write(kRaise);
    socket.waitForBytesWritten(1000);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::claim()
{
    if (askRunningCopy())
        return false;
    // Nobody answers: a socket left by a copy that crashed may still exist.
    QLocalServer::removeServer(m_name);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(m_name)) {
        // Without the socket the program still runs; it only loses the one-copy rule.
        qWarning("Orvantis: %s", qPrintable(m_server->errorString()));
        return true;
    }
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::onConnection);
    return true;
}

void SingleInstance::onConnection()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        auto read = [this, socket] {
            if (socket->readAll().contains(kRaise.trimmed()))
                Q_EMIT raiseRequested();
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            read();
    }
}
