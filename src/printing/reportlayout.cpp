#include "printing/reportlayout.h"

#include "common/ean13.h"
#include "printing/reportexpression.h"
#include "printing/testoricco.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QTextDocument>

#include <algorithm>
#include <functional>

namespace report {
namespace {

// Stands for the page count until the last page is known.
const QString kTotalPagesMark = QStringLiteral("\u0001TP\u0001");
constexpr double kMeasureDpi = 1200.0;

// Text measures in millimetres, taken on a high-resolution picture so they
// match what the PDF and the printer draw.
class Measure
{
public:
    Measure()
        : m_device(8, 8, QImage::Format_ARGB32_Premultiplied)
    {
        m_device.setDotsPerMeterX(int(kMeasureDpi / 0.0254 + 0.5));
        m_device.setDotsPerMeterY(int(kMeasureDpi / 0.0254 + 0.5));
    }

    double richHeight(const QFont& font, double widthMm, const QString& html)
    {
        QTextDocument doc;
        doc.documentLayout()->setPaintDevice(&m_device);
        doc.setDefaultFont(font);
        doc.setDocumentMargin(0);
        doc.setHtml(html);
        doc.setTextWidth(widthMm * kMeasureDpi / 25.4);
        return doc.size().height() * 25.4 / kMeasureDpi;
    }

    double textHeight(const QFont& font, double widthMm, const QString& text) const
    {
        const QFontMetricsF metrics(font, &m_device);
        const double toPx = kMeasureDpi / 25.4;
        const QRectF box = metrics.boundingRect(QRectF(0, 0, widthMm * toPx, 1e7), Qt::TextWordWrap, text);
        return box.height() / toPx;
    }

private:
    QImage m_device;
};

QFont fontOf(const ReportDefinition& def, const ReportObject& object)
{
    QFont font(object.fontFamily.isEmpty() ? def.fontFamily : object.fontFamily);
    font.setPointSizeF(object.fontSize > 0 ? object.fontSize : def.fontSize);
    font.setBold(object.bold);
    font.setItalic(object.italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// The rows a walk goes through: positions into the rows of a data source.
struct View
{
    const ReportRows* rows = nullptr;
    QList<int> index;
    int generation = 0; // each printing of a subreport is a data set of its own
    int size() const { return int(index.size()); }
};

class Layout;

// Evaluates at one row, with sums over [first, last).
class Scope : public EvaluationContext
{
public:
    Scope(const Layout& layout, const ReportDefinition& def, const View& view, int position, int first, int last)
        : m_layout(layout)
        , m_def(def)
        , m_view(view)
        , m_position(position)
        , m_first(first)
        , m_last(last)
    { }

    QVariant field(const QString& key) const override;
    QVariant formula(const QString& name) const override;
    QVariant aggregate(const QString& function, const ExpressionNode* argument) const override;
    QVariant special(const QString& name) const override;

    const ReportDefinition& definition() const { return m_def; }
    const View& view() const { return m_view; }
    int position() const { return m_position; }
    Scope at(int position) const { return Scope(m_layout, m_def, m_view, position, m_first, m_last); }
    Scope within(int position, int first, int last) const
    {
        return Scope(m_layout, m_def, m_view, position, first, last);
    }

private:
    const Layout& m_layout;
    const ReportDefinition& m_def;
    const View& m_view;
    int m_position;
    int m_first;
    int m_last;
    mutable int m_depth = 0;
};

struct Band
{
    QList<PageItem> items; // relative to the band's top left corner
    double height = 0;
    QList<std::pair<double, QString>> csv; // x and text of each field
};

class Layout
{
public:
    explicit Layout(const LayoutInput& input)
        : m_input(input)
    { }

    RenderedReport run(QString* error);

    const ExpressionNode* expression(const QString& text) const
    {
        auto it = m_expressions.constFind(text);
        if (it != m_expressions.cend())
            return it->get();
        QString fault;
        Expression parsed = parseExpression(text, &fault);
        if (!parsed && m_error.isEmpty())
            m_error = QStringLiteral("Espressione non valida «") + text + QStringLiteral("»: ") + fault;
        m_expressions.insert(text, parsed);
        return parsed.get();
    }

    QVariant eval(const QString& text, const Scope& scope) const
    {
        if (text.isEmpty())
            return QVariant();
        const ExpressionNode* node = expression(text);
        return node ? evaluate(*node, scope) : QVariant();
    }

    bool suppressed(const QString& condition, const Scope& scope) const
    {
        return !condition.isEmpty() && toBool(eval(condition, scope));
    }

    int page() const { return int(m_report.pages.size()) - 1; }
    const QDateTime& printTime() const { return m_input.printTime; }

    // Aggregates are asked again for each page and group: kept by argument and range.
    mutable QHash<QString, QVariant> aggregates;
    mutable QString m_error;

private:
    using Emit = std::function<void(const Section&, const Scope&)>;
    void walk(const ReportDefinition& def, const View& view, const Emit& emit, bool withReportSections);
    Band render(const Section& section, const Scope& scope, bool collectCsv);
    Band subreport(const ReportObject& object, const Scope& parent);
    QImage picture(const ReportObject& object, const Scope& scope);
    void addText(Band& band, const ReportDefinition& def, const ReportObject& object, const QString& text);

    // Pagination of the main report.
    void startPage(const Scope& scope);
    void finishPage(const Scope& scope);
    void place(const Band& band, const Scope& scope, bool newPageBefore, const Section* section = nullptr);
    double footerHeight() const;

    const LayoutInput& m_input;
    RenderedReport m_report;
    Measure m_measure;
    mutable QHash<QString, Expression> m_expressions;
    QHash<QString, QImage> m_pictures;
    QHash<const ReportDefinition*, QHash<QString, QList<int>>> m_links; // child value → rows
    QHash<const ReportDefinition*, View> m_allRows;
    int m_generation = 0;
    double m_y = 0;
    double m_bodyTop = 0;
    int m_column = 0; // labels: the next column of the current row
    double m_rowHeight = 0;
    bool m_breakPending = false;
    bool m_inPageSection = false;
    QList<std::pair<double, QString>> m_csvHeader;
};

QVariant Scope::field(const QString& key) const
{
    if (m_position < 0 || m_position >= m_view.size() || !m_view.rows)
        return QVariant();
    const int column = m_view.rows->columns.value(key, -1);
    if (column < 0)
        return QVariant();
    return m_view.rows->rows.at(m_view.index.at(m_position)).at(column);
}

QVariant Scope::formula(const QString& name) const
{
    const Formula* f = m_def.formula(name);
    if (!f || m_depth > 16)
        return QVariant();
    ++m_depth;
    const QVariant value = m_layout.eval(f->expression, *this);
    --m_depth;
    return value;
}

QVariant Scope::aggregate(const QString& function, const ExpressionNode* argument) const
{
    const QString key = function + QLatin1Char(':') + QString::number(quintptr(argument)) + QLatin1Char(':')
        + QString::number(m_view.generation) + QLatin1Char(':') + QString::number(m_first) + QLatin1Char(':')
        + QString::number(m_last);
    auto cached = m_layout.aggregates.constFind(key);
    if (cached != m_layout.aggregates.cend())
        return *cached;
    const int first = qMax(0, m_first);
    const int last = qMin(m_view.size(), m_last);
    QVariant result;
    if (function == QLatin1String("count")) {
        int count = 0;
        for (int p = first; p < last; ++p)
            if (!argument || !evaluate(*argument, at(p)).isNull())
                ++count;
        result = double(count);
    } else {
        long double sum = 0;
        int count = 0;
        bool any = false;
        double best = 0;
        for (int p = first; p < last; ++p) {
            const QVariant v = evaluate(*argument, at(p));
            if (v.isNull())
                continue;
            const double n = toNumber(v);
            sum += n;
            ++count;
            if (!any || (function == QLatin1String("min") ? n < best : n > best))
                best = n;
            any = true;
        }
        if (function == QLatin1String("sum"))
            result = double(sum);
        else if (function == QLatin1String("avg"))
            result = count ? double(sum / count) : 0.0;
        else
            result = any ? QVariant(best) : QVariant();
    }
    m_layout.aggregates.insert(key, result);
    return result;
}

QVariant Scope::special(const QString& name) const
{
    if (name == QLatin1String("pagenumber"))
        return double(m_layout.page() + 1);
    if (name == QLatin1String("totalpages"))
        return kTotalPagesMark;
    if (name == QLatin1String("printdate"))
        return m_layout.printTime().date();
    if (name == QLatin1String("printtime"))
        return m_layout.printTime().time().toString(QStringLiteral("HH:mm"));
    if (name == QLatin1String("recordnumber"))
        return double(m_position + 1);
    return QVariant();
}

void Layout::addText(Band& band, const ReportDefinition& def, const ReportObject& object, const QString& text)
{
    PageItem item;
    item.kind = PageItem::Kind::Text;
    item.rect = object.rect;
    item.text = text;
    const QFont font = fontOf(def, object);
    item.fontFamily = font.family();
    item.fontSize = font.pointSizeF();
    item.bold = object.bold;
    item.italic = object.italic;
    item.align = int(object.align);
    item.color = object.color;
    item.wrap = object.grow;
    if (object.grow && !text.isEmpty()) {
        const double needed = m_measure.textHeight(font, object.rect.width(), text) + 0.3;
        if (needed > item.rect.height())
            item.rect.setHeight(needed);
    }
    if (object.fill.isValid() || object.border) {
        PageItem box;
        box.kind = PageItem::Kind::Box;
        box.rect = item.rect;
        box.fill = object.fill;
        box.color = object.border ? object.color : QColor();
        box.lineWidth = object.lineWidth;
        band.items << box;
        // Text inside a box keeps off its edges.
        item.rect.adjust(1, 0, -1, 0);
    }
    band.items << item;
    band.height = qMax(band.height, item.rect.bottom());
}

QImage Layout::picture(const ReportObject& object, const Scope& scope)
{
    if (object.pictureFile) {
        const QString path = QDir(m_input.pictureFolder).filePath(object.value);
        auto it = m_pictures.constFind(path);
        if (it != m_pictures.cend())
            return *it;
        const QImage image = QImage(path);
        m_pictures.insert(path, image);
        return image;
    }
    const QVariant value = eval(object.value, scope);
    if (value.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = value.toByteArray();
        const QString key = QString::number(qHash(bytes)) + QLatin1Char(':') + QString::number(bytes.size());
        auto it = m_pictures.constFind(key);
        if (it != m_pictures.cend())
            return *it;
        const QImage image = QImage::fromData(bytes);
        m_pictures.insert(key, image);
        return image;
    }
    const QString path = toText(value);
    if (path.isEmpty())
        return QImage();
    const QString full = QDir(m_input.pictureFolder).filePath(path);
    if (!m_pictures.contains(full))
        m_pictures.insert(full, QImage(full));
    return m_pictures.value(full);
}

Band Layout::render(const Section& section, const Scope& scope, bool collectCsv)
{
    Band band;
    band.height = section.height;
    const ReportDefinition& def = scope.definition();
    for (const ReportObject& object : section.objects) {
        if (suppressed(object.suppress, scope))
            continue;
        switch (object.kind) {
        case ObjectKind::Text: addText(band, def, object, object.value); break;
        case ObjectKind::Field: {
            const QString text = formatValue(eval(object.value, scope), object.format, object.blankZero);
            addText(band, def, object, text);
            if (collectCsv)
                band.csv << std::pair{object.rect.left(), text};
            break;
        }
        case ObjectKind::Special: {
            QString text;
            if (object.value == QLatin1String("pagenofm"))
                text =
                    QStringLiteral("Pagina ") + QString::number(page() + 1) + QStringLiteral(" di ") + kTotalPagesMark;
            else if (object.value == QLatin1String("pagenumber"))
                text = QString::number(page() + 1);
            else if (object.value == QLatin1String("totalpages"))
                text = kTotalPagesMark;
            else if (object.value == QLatin1String("printdate"))
                text = m_input.printTime.date().toString(QStringLiteral("dd/MM/yyyy"));
            else
                text = m_input.printTime.time().toString(QStringLiteral("HH:mm"));
            addText(band, def, object, text);
            break;
        }
        case ObjectKind::RichText: {
            PageItem item;
            item.kind = PageItem::Kind::RichText;
            item.rect = object.rect;
            item.text = testoRiccoInHtml(toText(eval(object.value, scope)));
            const QFont font = fontOf(def, object);
            item.fontFamily = font.family();
            item.fontSize = font.pointSizeF();
            item.rect.setHeight(
                qMax(object.rect.height(), m_measure.richHeight(font, object.rect.width(), item.text) + 0.5));
            band.items << item;
            band.height = qMax(band.height, item.rect.bottom());
            break;
        }
        case ObjectKind::Line:
        case ObjectKind::Box: {
            PageItem item;
            item.kind = object.kind == ObjectKind::Line ? PageItem::Kind::Line : PageItem::Kind::Box;
            item.rect = object.rect;
            item.color = object.color;
            item.fill = object.fill;
            item.lineWidth = object.lineWidth;
            band.items << item;
            band.height = qMax(band.height, qMax(object.rect.top(), object.rect.bottom()));
            break;
        }
        case ObjectKind::Picture: {
            const QImage image = picture(object, scope);
            if (image.isNull())
                break;
            PageItem item;
            item.kind = PageItem::Kind::Image;
            item.rect = object.rect;
            item.image = image;
            item.align = int(object.align);
            band.items << item;
            break;
        }
        case ObjectKind::Barcode: {
            const ModuliEAN13 code = moduliEAN13(toText(eval(object.value, scope)));
            if (code.moduli.isEmpty())
                break;
            // Quiet zones of 11 and 7 modules; the digits under the bars.
            const QRectF r = object.rect;
            const double module = r.width() / (11 + 95 + 7);
            const double digitsHeight = r.height() * 0.22;
            const double barBottom = r.bottom() - digitsHeight;
            PageItem bars;
            bars.kind = PageItem::Kind::Bars;
            bars.rect = r;
            for (int m = 0; m < code.moduli.size(); ++m) {
                if (code.moduli.at(m) != QLatin1Char('1'))
                    continue;
                const bool guard = m < 3 || (m >= 45 && m < 50) || m >= 92;
                bars.bars << QRectF(r.left() + (11 + m) * module, r.top(), module,
                                    (guard ? barBottom + digitsHeight / 2 : barBottom) - r.top());
            }
            band.items << bars;
            const double size = qMax(4.0, digitsHeight / 25.4 * 72 * 0.95);
            auto digits = [&](const QString& text, double x, double w) {
                PageItem item;
                item.kind = PageItem::Kind::Text;
                item.rect = QRectF(x, barBottom, w, digitsHeight);
                item.text = text;
                item.fontFamily = def.fontFamily;
                item.fontSize = size;
                item.align = int(Qt::AlignHCenter | Qt::AlignBottom);
                band.items << item;
            };
            digits(code.cifre.left(1), r.left(), 10 * module);
            digits(code.cifre.mid(1, 6), r.left() + 14 * module, 42 * module);
            digits(code.cifre.mid(7, 6), r.left() + 61 * module, 42 * module);
            band.height = qMax(band.height, r.bottom());
            break;
        }
        case ObjectKind::Subreport: {
            const Band inner = subreport(object, scope);
            for (PageItem item : inner.items) {
                item.rect.translate(object.rect.left(), object.rect.top());
                for (QRectF& bar : item.bars)
                    bar.translate(object.rect.left(), object.rect.top());
                band.items << item;
            }
            band.height = qMax(band.height, object.rect.top() + inner.height);
            break;
        }
        }
    }
    return band;
}

Band Layout::subreport(const ReportObject& object, const Scope& parent)
{
    Band block;
    const ReportDefinition* sub = parent.definition().subreport(object.value);
    const ReportRows* rows = sub ? m_input.subreportRows.value(sub->name.toLower()) : nullptr;
    if (!sub || !rows)
        return block;
    View view;
    view.rows = rows;
    const QString link = sub->link;
    const int eq = link.indexOf(QLatin1Char('='));
    if (eq > 0) {
        // Rows of the subreport whose field equals the parent's.
        const QString child = link.left(eq).trimmed().remove(QLatin1Char('{')).remove(QLatin1Char('}')).toLower();
        const QString parentKey =
            link.mid(eq + 1).trimmed().remove(QLatin1Char('{')).remove(QLatin1Char('}')).toLower();
        if (!m_links.contains(sub)) {
            QHash<QString, QList<int>> byValue;
            const int column = rows->columns.value(child, -1);
            for (int r = 0; r < rows->rows.size(); ++r)
                byValue[column < 0 ? QString() : toText(rows->rows.at(r).at(column))] << r;
            m_links.insert(sub, byValue);
        }
        view.index = m_links.value(sub).value(toText(parent.field(parentKey)));
    } else {
        for (int r = 0; r < rows->rows.size(); ++r)
            view.index << r;
    }
    // The view must outlive the scopes of the walk.
    view.generation = ++m_generation;
    auto& kept = m_allRows[sub];
    kept = view;
    walk(
        *sub, kept,
        [&](const Section& section, const Scope& scope) {
            if (section.kind == SectionKind::PageHeader || section.kind == SectionKind::PageFooter)
                return;
            const Band band = render(section, scope, false);
            for (PageItem item : band.items) {
                item.rect.translate(0, block.height);
                for (QRectF& bar : item.bars)
                    bar.translate(0, block.height);
                block.items << item;
            }
            block.height += band.height;
        },
        true);
    return block;
}

void Layout::walk(const ReportDefinition& def, const View& view, const Emit& emit, bool withReportSections)
{
    const int n = view.size();
    const int levels = int(def.groups.size());
    const Scope all(*this, def, view, n > 0 ? 0 : -1, 0, n);
    auto sections = [&](SectionKind kind, int group, const Scope& scope) {
        for (const Section& s : def.sections)
            if (s.kind == kind && (group < 0 || s.group == group) && !suppressed(s.suppress, scope))
                emit(s, scope);
    };
    if (withReportSections)
        sections(SectionKind::ReportHeader, -1, all);
    // Group keys of every row, then where each group ends.
    QList<QStringList> keys(n);
    for (int p = 0; p < n; ++p)
        for (int g = 0; g < levels; ++g)
            keys[p] << toText(eval(def.groups.at(g).expression, all.at(p)));
    auto changeLevel = [&](int p) {
        for (int g = 0; g < levels; ++g)
            if (keys[p][g] != keys[p - 1][g])
                return g;
        return levels;
    };
    QList<QList<int>> groupEnd(levels, QList<int>(n, n));
    for (int g = 0; g < levels; ++g) {
        int end = n;
        for (int p = n - 1; p >= 0; --p) {
            groupEnd[g][p] = end;
            if (p > 0 && changeLevel(p) <= g)
                end = p;
        }
    }
    QList<int> groupStart(levels, 0);
    for (int p = 0; p < n; ++p) {
        const int from = p == 0 ? 0 : changeLevel(p);
        if (p > 0 && from < levels) {
            for (int g = levels - 1; g >= from; --g)
                sections(SectionKind::GroupFooter, g, all.within(p - 1, groupStart[g], p));
        }
        for (int g = from; g < levels; ++g) {
            groupStart[g] = p;
            const Scope scope = all.within(p, p, groupEnd[g][p]);
            if (p > 0 && def.groups.at(g).newPage && withReportSections && &def == m_input.definition)
                m_breakPending = true;
            sections(SectionKind::GroupHeader, g, scope);
        }
        sections(SectionKind::Detail, -1, all.at(p));
    }
    if (n > 0)
        for (int g = levels - 1; g >= 0; --g)
            sections(SectionKind::GroupFooter, g, all.within(n - 1, groupStart[g], n));
    if (withReportSections)
        sections(SectionKind::ReportFooter, -1, all.at(n - 1));
}

double Layout::footerHeight() const
{
    double height = 0;
    for (const Section& s : m_input.definition->sections)
        if (s.kind == SectionKind::PageFooter)
            height += s.height;
    return height;
}

void Layout::startPage(const Scope& scope)
{
    m_report.pages.append(RenderedPage());
    m_y = m_input.definition->margins.top();
    m_inPageSection = true;
    for (const Section& s : m_input.definition->sections)
        if (s.kind == SectionKind::PageHeader && !suppressed(s.suppress, scope))
            place(render(s, scope, false), scope, false);
    m_inPageSection = false;
    m_bodyTop = m_y;
}

void Layout::finishPage(const Scope& scope)
{
    const ReportDefinition& def = *m_input.definition;
    double y = m_report.pageSize.height() - def.margins.bottom() - footerHeight();
    for (const Section& s : def.sections) {
        if (s.kind != SectionKind::PageFooter || suppressed(s.suppress, scope))
            continue;
        const Band band = render(s, scope, false);
        for (PageItem item : band.items) {
            item.rect.translate(def.margins.left(), y);
            for (QRectF& bar : item.bars)
                bar.translate(def.margins.left(), y);
            m_report.pages.last().items << item;
        }
        y += s.height;
    }
}

void Layout::place(const Band& band, const Scope& scope, bool newPageBefore, const Section* section)
{
    const ReportDefinition& def = *m_input.definition;
    const int columns = section && section->columns > 1 ? section->columns : 1;
    if (columns == 1 && m_column > 0) {
        m_y += m_rowHeight;
        m_column = 0;
        m_rowHeight = 0;
    }
    if (!m_inPageSection && m_column == 0) {
        const double bottom = m_report.pageSize.height() - def.margins.bottom() - footerHeight();
        const bool atTop = m_y <= m_bodyTop + 0.001;
        if (((m_breakPending || newPageBefore) && !atTop) || (m_y + band.height > bottom && !atTop)) {
            finishPage(scope.at(qMax(0, scope.position() - 1)));
            startPage(scope);
        }
        m_breakPending = false;
    }
    const double x = def.margins.left() + (columns > 1 ? m_column * section->columnWidth : 0);
    for (PageItem item : band.items) {
        item.rect.translate(x, m_y);
        for (QRectF& bar : item.bars)
            bar.translate(x, m_y);
        m_report.pages.last().items << item;
    }
    if (columns > 1) {
        m_rowHeight = qMax(m_rowHeight, band.height);
        if (++m_column == columns) {
            m_y += m_rowHeight;
            m_column = 0;
            m_rowHeight = 0;
        }
    } else {
        m_y += band.height;
    }
    if (!band.csv.isEmpty()) {
        QList<std::pair<double, QString>> cells = band.csv;
        std::stable_sort(cells.begin(), cells.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        QStringList row;
        for (const auto& cell : cells)
            row << cell.second;
        m_report.csvRows << row;
    }
}

RenderedReport Layout::run(QString* error)
{
    const ReportDefinition& def = *m_input.definition;
    m_report.title = def.title;
    m_report.landscape = def.landscape;
    m_report.pageSize = def.landscape ? QSizeF(297, 210) : QSizeF(210, 297);
    View main;
    main.rows = m_input.rows;
    if (m_input.rows)
        for (int r = 0; r < m_input.rows->rows.size(); ++r)
            main.index << r;
    const Scope first(*this, def, main, main.size() > 0 ? 0 : -1, 0, main.size());
    startPage(first);
    int lastPosition = first.position();
    walk(
        def, main,
        [&](const Section& section, const Scope& scope) {
            if (section.kind == SectionKind::PageHeader || section.kind == SectionKind::PageFooter)
                return;
            lastPosition = scope.position();
            place(render(section, scope, section.kind == SectionKind::Detail), scope, section.newPageBefore, &section);
            if (section.newPageAfter)
                m_breakPending = true;
        },
        true);
    finishPage(first.at(lastPosition));
    // Field headings for the CSV: the page header's text over each field.
    for (const Section& s : def.sections) {
        if (s.kind != SectionKind::Detail)
            continue;
        QList<std::pair<double, QString>> headings;
        for (const ReportObject& field : s.objects) {
            if (field.kind != ObjectKind::Field)
                continue;
            QString best;
            double overlap = 0;
            for (const Section& h : def.sections) {
                if (h.kind != SectionKind::PageHeader && h.kind != SectionKind::GroupHeader)
                    continue;
                for (const ReportObject& text : h.objects) {
                    if (text.kind != ObjectKind::Text)
                        continue;
                    const double o =
                        qMin(text.rect.right(), field.rect.right()) - qMax(text.rect.left(), field.rect.left());
                    if (o > overlap) {
                        overlap = o;
                        best = text.value;
                    }
                }
            }
            headings << std::pair{field.rect.left(), best};
        }
        std::stable_sort(headings.begin(), headings.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        for (const auto& h : headings)
            m_report.csvHeader << h.second;
        break;
    }
    const QString count = QString::number(m_report.pages.size());
    for (RenderedPage& page : m_report.pages)
        for (PageItem& item : page.items)
            if (item.kind == PageItem::Kind::Text && item.text.contains(kTotalPagesMark))
                item.text.replace(kTotalPagesMark, count);
    if (!m_error.isEmpty()) {
        if (error)
            *error = m_error;
        return RenderedReport();
    }
    return m_report;
}

void collectFromText(const QString& text, QSet<QString>& fields, QSet<QString>& formulas, QString* error)
{
    if (text.isEmpty())
        return;
    QString fault;
    const Expression e = parseExpression(text, &fault);
    if (!e) {
        if (error && error->isEmpty())
            *error = QStringLiteral("Espressione non valida «") + text + QStringLiteral("»: ") + fault;
        return;
    }
    collectReferences(*e, fields, formulas);
}

} // namespace

RenderedReport layoutReport(const LayoutInput& input, QString* error)
{
    if (!input.definition) {
        if (error)
            *error = QStringLiteral("Nessun modello");
        return RenderedReport();
    }
    Layout layout(input);
    return layout.run(error);
}

QStringList fieldsOf(const ReportDefinition& definition, QString* error)
{
    QSet<QString> fields;
    QSet<QString> formulas;
    for (const Section& s : definition.sections) {
        collectFromText(s.suppress, fields, formulas, error);
        for (const ReportObject& o : s.objects) {
            collectFromText(o.suppress, fields, formulas, error);
            if (o.kind == ObjectKind::Field || o.kind == ObjectKind::Barcode || o.kind == ObjectKind::RichText
                || (o.kind == ObjectKind::Picture && !o.pictureFile))
                collectFromText(o.value, fields, formulas, error);
            if (o.kind == ObjectKind::Subreport) {
                // The parent's side of the link is read from the parent's rows.
                if (const ReportDefinition* sub = definition.subreport(o.value)) {
                    const int eq = sub->link.indexOf(QLatin1Char('='));
                    if (eq > 0)
                        collectFromText(sub->link.mid(eq + 1), fields, formulas, error);
                }
            }
        }
    }
    for (const Group& g : definition.groups)
        collectFromText(g.expression, fields, formulas, error);
    for (const Formula& f : definition.formulas)
        collectFromText(f.expression, fields, formulas, error);
    if (!definition.link.isEmpty()) {
        const int eq = definition.link.indexOf(QLatin1Char('='));
        if (eq > 0)
            collectFromText(definition.link.left(eq), fields, formulas, error);
    }
    for (const QString& part : definition.order.split(QLatin1Char(','), Qt::SkipEmptyParts))
        collectFromText(part.trimmed().section(QLatin1Char(' '), 0, 0), fields, formulas, error);
    QStringList list;
    QSet<QString> seen;
    for (const QString& f : fields)
        if (!seen.contains(f.toLower())) {
            seen.insert(f.toLower());
            list << f;
        }
    list.sort(Qt::CaseInsensitive);
    return list;
}

} // namespace report
