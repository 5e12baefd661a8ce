#include "common/apphome.h"

#include <QDir>
#include <QStandardPaths>

namespace {
QString& overriddenFolder()
{
    static QString folder;
    return folder;
}
} // namespace

void setProgramFolder(const QString& path)
{
    overriddenFolder() = path.isEmpty() ? QString() : QDir(path).absolutePath();
}

QString programFolder()
{
    QString folder = overriddenFolder();
    if (folder.isEmpty())
        folder = qEnvironmentVariable("ORVANTIS_HOME");
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Orvantis");
    folder = QDir(folder).absolutePath();
    QDir().mkpath(folder);
    return folder;
}

QString programFile(const QString& name) { return QDir(programFolder()).filePath(name); }

QString programFolderSettingsFile()
{
    const QString folder = overriddenFolder();
    if (folder.isEmpty())
        return QString();
    QDir().mkpath(folder);
    return QDir(folder).filePath(QStringLiteral("prgOrvantis.ini"));
}
