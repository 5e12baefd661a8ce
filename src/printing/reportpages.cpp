#include "printing/reportpages.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFont>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextDocument>

#include <algorithm>

namespace report {

void paintPage(QPainter& painter, const RenderedReport& report, int index, double dotsPerInch)
{
    if (index < 0 || index >= report.pages.size())
        return;
    const double k = dotsPerInch / 25.4; // millimetres to device pixels
    auto px = [k](const QRectF& r) { return QRectF(r.left() * k, r.top() * k, r.width() * k, r.height() * k); };
    // Point sizes follow the device's own resolution; scale them to the one asked.
    const double deviceDpi = painter.device() ? painter.device()->logicalDpiY() : dotsPerInch;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
    // Pictures go into a PDF without JPEG's noise around a letterhead's lettering.
    painter.setRenderHint(QPainter::LosslessImageRendering, true);
    for (const PageItem& item : report.pages.at(index).items) {
        switch (item.kind) {
        case PageItem::Kind::Text: {
            if (item.text.isEmpty())
                break;
            QFont font(item.fontFamily);
            font.setPointSizeF(item.fontSize * dotsPerInch / deviceDpi);
            font.setBold(item.bold);
            font.setItalic(item.italic);
            font.setHintingPreference(QFont::PreferNoHinting);
            painter.setFont(font);
            painter.setPen(item.color);
            int flags = item.align;
            if (item.wrap)
                flags |= Qt::TextWordWrap;
            painter.drawText(px(item.rect), flags, item.text);
            break;
        }
        case PageItem::Kind::Line: {
            QPen pen(item.color);
            pen.setWidthF(qMax(0.5, item.lineWidth * k));
            pen.setCapStyle(Qt::FlatCap);
            painter.setPen(pen);
            painter.drawLine(QPointF(item.rect.left() * k, item.rect.top() * k),
                             QPointF(item.rect.right() * k, item.rect.bottom() * k));
            break;
        }
        case PageItem::Kind::Box: {
            if (item.color.isValid()) {
                QPen pen(item.color);
                pen.setWidthF(qMax(0.5, item.lineWidth * k));
                pen.setJoinStyle(Qt::MiterJoin);
                painter.setPen(pen);
            } else {
                painter.setPen(Qt::NoPen);
            }
            painter.setBrush(item.fill.isValid() ? QBrush(item.fill) : QBrush(Qt::NoBrush));
            painter.drawRect(px(item.rect));
            painter.setBrush(Qt::NoBrush);
            break;
        }
        case PageItem::Kind::Image: {
            // Fitted into its box, proportions kept.
            const QRectF box = px(item.rect);
            QSizeF size = item.image.size();
            size.scale(box.size(), Qt::KeepAspectRatio);
            double x = box.left();
            if (item.align & Qt::AlignHCenter)
                x += (box.width() - size.width()) / 2;
            else if (item.align & Qt::AlignRight)
                x += box.width() - size.width();
            double y = box.top();
            if (item.align & Qt::AlignVCenter)
                y += (box.height() - size.height()) / 2;
            else if (item.align & Qt::AlignBottom)
                y += box.height() - size.height();
            painter.drawImage(QRectF(QPointF(x, y), size), item.image);
            break;
        }
        case PageItem::Kind::RichText: {
            QTextDocument doc;
            doc.documentLayout()->setPaintDevice(painter.device());
            QFont font(item.fontFamily);
            font.setPointSizeF(item.fontSize * dotsPerInch / deviceDpi);
            doc.setDefaultFont(font);
            doc.setDocumentMargin(0);
            doc.setHtml(item.text);
            const QRectF box = px(item.rect);
            doc.setTextWidth(box.width());
            painter.save();
            painter.translate(box.topLeft());
            doc.drawContents(&painter, QRectF(0, 0, box.width(), box.height()));
            painter.restore();
            break;
        }
        case PageItem::Kind::Bars: {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::black);
            // No smoothing: bars keep sharp edges for the scanner.
            painter.setRenderHint(QPainter::Antialiasing, false);
            for (const QRectF& bar : item.bars)
                painter.drawRect(px(bar));
            painter.setRenderHint(QPainter::Antialiasing, true);
            painter.setBrush(Qt::NoBrush);
            break;
        }
        }
    }
    painter.restore();
}

QImage pageImage(const RenderedReport& report, int index, double dotsPerInch)
{
    const QSize size(qRound(report.pageSize.width() / 25.4 * dotsPerInch),
                     qRound(report.pageSize.height() / 25.4 * dotsPerInch));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(qRound(dotsPerInch / 0.0254));
    image.setDotsPerMeterY(qRound(dotsPerInch / 0.0254));
    image.fill(Qt::white);
    QPainter painter(&image);
    paintPage(painter, report, index, dotsPerInch);
    return image;
}

bool writePdf(const RenderedReport& report, const QString& path, int from, int to, QString* error)
{
    const int first = qMax(1, from);
    const int last = to > 0 ? qMin(to, report.pageCount()) : report.pageCount();
    if (report.pageCount() == 0 || first > last) {
        if (error)
            *error = QStringLiteral("Nessuna pagina da stampare");
        return false;
    }
    QPdfWriter writer(path);
    writer.setResolution(600);
    writer.setTitle(report.title);
    writer.setCreator(QStringLiteral("Orvantis"));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4),
                                     report.landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF()));
    QPainter painter;
    if (!painter.begin(&writer)) {
        if (error)
            *error = QStringLiteral("Impossibile scrivere il file ") + path;
        return false;
    }
    for (int page = first; page <= last; ++page) {
        if (page > first)
            writer.newPage();
        paintPage(painter, report, page - 1, writer.resolution());
    }
    painter.end();
    return true;
}

namespace {

QString csvCell(const QString& text)
{
    if (!text.contains(QLatin1Char(';')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')))
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString csvLine(const QStringList& cells)
{
    QStringList out;
    for (const QString& c : cells)
        out << csvCell(c);
    return out.join(QLatin1Char(';')) + QStringLiteral("\r\n");
}

} // namespace

bool writeCsv(const RenderedReport& report, const QString& path, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error)
            *error = QStringLiteral("Impossibile scrivere il file ") + path;
        return false;
    }
    QString text;
    if (!report.csvHeader.isEmpty())
        text += csvLine(report.csvHeader);
    for (const QStringList& row : report.csvRows)
        text += csvLine(row);
    file.write("\xEF\xBB\xBF");
    file.write(text.toUtf8());
    if (!file.commit()) {
        if (error)
            *error = QStringLiteral("Impossibile scrivere il file ") + path;
        return false;
    }
    return true;
}

QString pagesText(const RenderedReport& report)
{
    QString out;
    for (const RenderedPage& page : report.pages) {
        QList<const PageItem*> texts;
        for (const PageItem& item : page.items)
            if ((item.kind == PageItem::Kind::Text || item.kind == PageItem::Kind::RichText) && !item.text.isEmpty())
                texts << &item;
        std::stable_sort(texts.begin(), texts.end(), [](const PageItem* a, const PageItem* b) {
            if (qAbs(a->rect.top() - b->rect.top()) > 0.5)
                return a->rect.top() < b->rect.top();
            return a->rect.left() < b->rect.left();
        });
        for (const PageItem* item : texts)
            out += item->text + QLatin1Char('\n');
        out += QLatin1Char('\f');
    }
    return out;
}

} // namespace report
