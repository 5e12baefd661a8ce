#pragma once
// One copy of the program per user and program folder. The first copy
// listens on a local socket; a later one asks it to come forward and ends.

#include <QObject>
#include <QString>

class QLocalServer;

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    // `key` names the copy; programs with the same key are one program.
    explicit SingleInstance(const QString& key, QObject* parent = nullptr);

    // The key of this user and program folder.
    static QString keyForProgramFolder();

    // True when no other copy answers: this one starts listening. False when
    // another copy runs; it has been asked to come forward.
    bool claim();

Q_SIGNALS:
    // Another copy started and asked this one to come forward.
    void raiseRequested();

private:
    bool askRunningCopy();
    void onConnection();

    QString m_name;
    QLocalServer* m_server = nullptr;
};
