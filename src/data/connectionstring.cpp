#include "data/connectionstring.h"

#include <QDir>
#include <QSettings>

namespace {

QString unquote(QString v)
{
    v = v.trimmed();
    if (v.size() >= 2
        && ((v.front() == QLatin1Char('{') && v.back() == QLatin1Char('}'))
            || (v.front() == QLatin1Char('"') && v.back() == QLatin1Char('"'))))
        v = v.mid(1, v.size() - 2);
    return v;
}

QString firstOf(const QMap<QString, QString>& map, std::initializer_list<const char*> keys)
{
    for (const char* key : keys) {
        const auto it = map.constFind(QLatin1String(key));
        if (it != map.constEnd())
            return it.value();
    }
    return QString();
}

QStringList odbcIniFiles()
{
    return {QDir::homePath() + QStringLiteral("/.odbc.ini"), QStringLiteral("/etc/odbc.ini")};
}

// A data source name looked up in the user's and the system's odbc.ini.
QMap<QString, QString> odbcDataSource(const QString& dsn)
{
    QMap<QString, QString> result;
    for (const QString& file : odbcIniFiles()) {
        QSettings ini(file, QSettings::IniFormat);
        const QStringList groups = ini.childGroups();
        for (const QString& group : groups) {
            if (group.compare(dsn, Qt::CaseInsensitive) != 0)
                continue;
            ini.beginGroup(group);
            const QStringList keys = ini.childKeys();
            for (const QString& key : keys)
                result.insert(key.toLower(), ini.value(key).toString());
            ini.endGroup();
            return result;
        }
    }
    return result;
}

} // namespace

QStringList odbcDataSourceNames()
{
    QStringList names;
    for (const QString& file : odbcIniFiles()) {
        const QStringList groups = QSettings(file, QSettings::IniFormat).childGroups();
        for (const QString& group : groups) {
            if (group.compare(QLatin1String("ODBC Data Sources"), Qt::CaseInsensitive) != 0
                && group.compare(QLatin1String("ODBC"), Qt::CaseInsensitive) != 0
                && !names.contains(group, Qt::CaseInsensitive))
                names.append(group);
        }
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

QMap<QString, QString> parseConnectionString(const QString& text)
{
    QMap<QString, QString> map;
    const QStringList parts = text.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const qsizetype eq = part.indexOf(QLatin1Char('='));
        if (eq <= 0)
            continue;
        map.insert(part.left(eq).trimmed().toLower(), unquote(part.mid(eq + 1)));
    }
    return map;
}

QString fileDbPath(const QString& connectionString)
{
    const QMap<QString, QString> map = parseConnectionString(connectionString);
    return firstOf(map, {"data source", "database", "dbq"});
}

QString fileDbConnectionString(const QString& path) { return QStringLiteral("Provider=SQLite;Data Source=") + path; }

MySqlParams mySqlParams(const QString& connectionString)
{
    QMap<QString, QString> map = parseConnectionString(connectionString);
    const QString dsn = firstOf(map, {"dsn"});
    if (!dsn.isEmpty()) {
        QMap<QString, QString> source = odbcDataSource(dsn);
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            source.insert(it.key(), it.value()); // what the string says wins
        map = source;
    }
    MySqlParams p;
    const QString host = firstOf(map, {"server", "host", "data source"});
    if (!host.isEmpty())
        p.host = host;
    bool ok = false;
    const int port = firstOf(map, {"port"}).toInt(&ok);
    if (ok && port > 0)
        p.port = port;
    p.database = firstOf(map, {"database", "initial catalog", "db"});
    p.user = firstOf(map, {"uid", "user", "user id", "username"});
    p.password = firstOf(map, {"pwd", "password"});
    p.socket = firstOf(map, {"socket", "unix_socket"});
    return p;
}
