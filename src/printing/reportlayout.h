#pragma once
// Lays a template and its rows out into pages: report header, page header,
// group headers, detail rows, group footers, page footer, report footer;
// a section that no longer fits starts a new page; subreports print inside
// the section that holds them. Touches no database, so it may run on any
// thread.

#include "printing/creport.h"
#include "printing/reportpages.h"
#include "printing/reporttemplate.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

namespace report {

struct LayoutInput
{
    const ReportDefinition* definition = nullptr;
    const ReportRows* rows = nullptr;
    QHash<QString, const ReportRows*> subreportRows; // by lower-case name
    QString pictureFolder;                           // where picture files are read
    QDateTime printTime;
};

// The pages; faults of the template's expressions go to `error` and leave
// the pages empty.
RenderedReport layoutReport(const LayoutInput& input, QString* error);

// Every field ("Table.Field" as written, once whatever its case) the
// definition reads, its group and order fields included; subreports apart.
QStringList fieldsOf(const ReportDefinition& definition, QString* error);

} // namespace report
