#pragma once
// A report laid out into pages: what each page draws, in millimetres from the
// page's top left corner. Painting it (the preview, a PDF, a printer) needs
// no data any more, so the pages are made once and shown or printed at will.

#include <QColor>
#include <QImage>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

class QPainter;

namespace report {

struct PageItem
{
    enum class Kind {
        Text,
        Line,
        Box,
        Image,
        Bars,
        RichText
    }; // rich text: HTML in `text`
    Kind kind = Kind::Text;
    QRectF rect; // a line runs from the top left to the bottom right corner
    QString text;
    QString fontFamily;
    double fontSize = 9; // points
    bool bold = false;
    bool italic = false;
    bool wrap = false;
    int align = 0; // Qt::Alignment
    QColor color = Qt::black;
    QColor fill;
    double lineWidth = 0.25;
    QImage image;
    QList<QRectF> bars; // barcodes: the dark modules, in millimetres
};

struct RenderedPage
{
    QList<PageItem> items;
};

struct RenderedReport
{
    QString title;
    QSizeF pageSize{210, 297}; // millimetres, A4 by default
    bool landscape = false;
    QList<RenderedPage> pages;
    // One line per printed detail row: the texts of its fields, left to
    // right, as the CSV export writes them.
    QStringList csvHeader;
    QList<QStringList> csvRows;

    int pageCount() const { return int(pages.size()); }
};

// Paints page `index` (0-based) at `dotsPerInch` with its top left corner at
// the painter's origin.
void paintPage(QPainter& painter, const RenderedReport& report, int index, double dotsPerInch);

// The page as a picture at the given resolution, white background.
QImage pageImage(const RenderedReport& report, int index, double dotsPerInch);

// Writes pages `from`..`to` (1-based, 0 = from the first / to the last) as a
// PDF file; false with the reason in `error`.
bool writePdf(const RenderedReport& report, const QString& path, int from = 0, int to = 0, QString* error = nullptr);

// Writes the detail rows as text separated by ";", with a heading line, in
// the system's encoding for spreadsheets (UTF-8 with its mark).
bool writeCsv(const RenderedReport& report, const QString& path, QString* error = nullptr);

// All the text of the pages, page by page and top to bottom: for tests and
// for searching.
QString pagesText(const RenderedReport& report);

} // namespace report
