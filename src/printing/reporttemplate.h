#pragma once
// A report template: the declarative, text-editable description of one
// printed report (a ".rpt" file of the report folder). A template names its
// data (tables, joins, own filter, order, groups), its formulas and its
// sections, top to bottom, each with the objects it prints. Measures are in
// millimetres from the top left corner of the section.
//
// The text form, one statement a line, "#" starts a comment:
//
//   report    title="Fattura" orientation=portrait margins="12 10 12 10" font="Liberation Sans" size=9
//   data      from="Movimenti INNER JOIN DettagliMovimento ON ..." where="..." order="{DettagliMovimento.POS}"
//   group     "{Movimenti.RID}" newpage
//   formula   TOTALE = Sum({DettagliMovimento.TotaleRiga})
//   section   pageheader height=40 [suppress="expr"] [newpageafter]
//             detail height=36 columns=3 columnwidth=70   (labels: across, then down)
//     text    x y w h "literal text" [size=12 bold italic align=left|center|right valign=top|middle|bottom
//                                     color=#rrggbb fill=#rrggbb border grow]
//     field   x y w h "expression" [format=money|qty|int|date|text|num:N|pad:N blankzero ...as text]
//     special x y w h pagenofm|pagenumber|totalpages|printdate|printtime
//     line    x1 y1 x2 y2 [width=0.3 color=#rrggbb]
//     box     x y w h [width=0.3 color=... fill=... ]
//     picture x y w h "expression or file name" [file]
//     barcode x y w h "expression"        (13 digits, or the EAN-13 font string)
//     richtext x y w h "expression"       (RTF or plain text; the section grows)
//     subreport x y w "Name"
//   subreport Name link="{child.field}={parent.field}"
//     ... data / group / formula / section lines of the subreport ...
//   end
//
// Sections: reportheader, pageheader, groupheader (of the group of the same
// number, "groupheader 2"; the first group when no number), detail,
// groupfooter, pagefooter, reportfooter. Expressions are described in
// reportexpression.h.

#include <QColor>
#include <QList>
#include <QMarginsF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace report {

enum class SectionKind {
    ReportHeader,
    PageHeader,
    GroupHeader,
    Detail,
    GroupFooter,
    PageFooter,
    ReportFooter
};

enum class ObjectKind {
    Text,
    Field,
    Special,
    Line,
    Box,
    Picture,
    Barcode,
    Subreport,
    RichText
};

struct ReportObject
{
    ObjectKind kind = ObjectKind::Text;
    QRectF rect;              // for a line: from the top left to the bottom right corner
    QString value;            // literal text, expression, special name, picture, subreport name
    bool pictureFile = false; // the picture's value is a file name of the report folder
    QString format;           // money, qty, int, date, text, num:N, pad:N
    bool blankZero = false;   // a zero prints as nothing
    Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter;
    QString fontFamily;  // empty: the report's
    double fontSize = 0; // points; 0: the report's
    bool bold = false;
    bool italic = false;
    bool grow = false; // the text wraps and the section grows to hold it
    bool border = false;
    QColor color = Qt::black;
    QColor fill;             // invalid: none
    double lineWidth = 0.25; // millimetres
    QString suppress;        // expression: true hides the object
    int line = 0;            // line of the template, for messages
};

struct Section
{
    SectionKind kind = SectionKind::Detail;
    int group = 0; // group headers and footers: the group's index
    double height = 0;
    QString suppress; // expression: true leaves the section out
    bool newPageAfter = false;
    bool newPageBefore = false;
    int columns = 1; // details side by side, left to right
    double columnWidth = 0;
    QList<ReportObject> objects;
};

struct Group
{
    QString expression; // the rows change group when its value changes
    bool newPage = false;
};

struct Formula
{
    QString name;
    QString expression;
};

struct ReportDefinition
{
    QString name; // the file name, or the subreport's name
    QString title;
    bool landscape = false;
    QMarginsF margins{12, 10, 12, 10}; // left, top, right, bottom
    QString fontFamily = QStringLiteral("Liberation Sans");
    double fontSize = 9;
    QString from;  // FROM clause: tables and joins, with their full names
    QString where; // the template's own filter, in the selection-formula syntax
    QString order; // comma separated field references, after the groups
    QString link;  // subreports: "{child.field}={parent.field}"
    QList<Group> groups;
    QList<Formula> formulas;
    QList<Section> sections;
    QList<std::shared_ptr<ReportDefinition>> subreports;

    const ReportDefinition* subreport(const QString& name) const;
    // The formula of that name (case-insensitive), or nullptr.
    Formula* formula(const QString& name);
    const Formula* formula(const QString& name) const;
};

// Reads a template from its text; on a fault gives nothing and the fault,
// with its line, in `error`.
std::optional<ReportDefinition> parseTemplate(const QString& text, const QString& name, QString* error);
std::optional<ReportDefinition> loadTemplate(const QString& path, QString* error);

} // namespace report
