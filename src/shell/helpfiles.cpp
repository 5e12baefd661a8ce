#include "shell/helpfiles.h"

#include "common/apphome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

// The pages are compiled into a static library: register them explicitly.
static void initHelpResource() { Q_INIT_RESOURCE(help); }

namespace {
void writeIfChanged(const QString& resource, const QString& target)
{
    QFile source(resource);
    if (!source.open(QIODevice::ReadOnly))
        return;
    const QByteArray content = source.readAll();
    QFile current(target);
    if (current.open(QIODevice::ReadOnly) && current.readAll() == content)
        return;
    current.close();
    QFile out(target);
    if (out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        out.write(content);
}
} // namespace

QString helpIndexFile()
{
    initHelpResource();
    const QDir folder(programFile(QStringLiteral("help")));
    QDir().mkpath(folder.path());
    QDirIterator pages(QStringLiteral(":/help"));
    while (pages.hasNext()) {
        const QString resource = pages.next();
        writeIfChanged(resource, folder.filePath(QFileInfo(resource).fileName()));
    }
    return folder.filePath(QStringLiteral("index.html"));
}
