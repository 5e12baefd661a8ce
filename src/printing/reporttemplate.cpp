#include "printing/reporttemplate.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringDecoder>

namespace report {
namespace {

// One statement of a template line: its words, bare or quoted, and its
// key=value options.
struct Statement
{
    QString keyword;
    QStringList words;               // in order, quotes taken away
    QList<bool> quoted;              // whether each word was quoted
    QHash<QString, QString> options; // lower-case key
    QStringList flags;               // bare words after the numbers and the value
};

bool splitLine(const QString& line, Statement& out, QString& error)
{
    QStringList parts;
    QList<bool> quoted;
    int i = 0;
    while (i < line.size()) {
        if (line.at(i).isSpace()) {
            ++i;
            continue;
        }
        QString word;
        bool wasQuoted = false;
        // A word runs to the next blank; a quoted piece inside it (key="a b")
        // may hold blanks, and its quote written twice is one quote.
        while (i < line.size() && !line.at(i).isSpace()) {
            const QChar c = line.at(i);
            if (c == QLatin1Char('"')) {
                // Only a word that starts with its quote is a quoted value;
                // key="..." stays an option.
                if (word.isEmpty())
                    wasQuoted = true;
                ++i;
                bool closed = false;
                while (i < line.size()) {
                    if (line.at(i) == QLatin1Char('"')) {
                        if (i + 1 < line.size() && line.at(i + 1) == QLatin1Char('"')) {
                            word += QLatin1Char('"');
                            i += 2;
                            continue;
                        }
                        closed = true;
                        ++i;
                        break;
                    }
                    word += line.at(i++);
                }
                if (!closed) {
                    error = QStringLiteral("virgolette non chiuse");
                    return false;
                }
            } else {
                word += c;
                ++i;
            }
        }
        parts << word;
        quoted << wasQuoted;
    }
    if (parts.isEmpty())
        return true;
    out.keyword = parts.takeFirst().toLower();
    quoted.removeFirst();
    for (int k = 0; k < parts.size(); ++k) {
        const QString& w = parts.at(k);
        const int eq = w.indexOf(QLatin1Char('='));
        // key=value; a quoted word is always a value ("a=b" as text).
        if (eq > 0 && !quoted.at(k) && !w.startsWith(QLatin1Char('{'))) {
            out.options.insert(w.left(eq).toLower(), w.mid(eq + 1));
            continue;
        }
        out.words << w;
        out.quoted << quoted.at(k);
    }
    return true;
}

bool toNumbers(const QStringList& words, int count, QList<double>& numbers, QString& error)
{
    if (words.size() < count) {
        error = QStringLiteral("servono %1 misure").arg(count);
        return false;
    }
    for (int k = 0; k < count; ++k) {
        bool ok = false;
        numbers << QString(words.at(k)).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
        if (!ok) {
            error = QStringLiteral("misura non valida «") + words.at(k) + QStringLiteral("»");
            return false;
        }
    }
    return true;
}

bool readColor(const QString& text, QColor& color, QString& error)
{
    color = QColor(text);
    if (!color.isValid()) {
        error = QStringLiteral("colore non valido «") + text + QStringLiteral("»");
        return false;
    }
    return true;
}

bool readObject(const Statement& st, ReportObject& object, QString& error)
{
    static const QHash<QString, ObjectKind> kinds{
        {QStringLiteral("text"), ObjectKind::Text},        {QStringLiteral("field"), ObjectKind::Field},
        {QStringLiteral("special"), ObjectKind::Special},  {QStringLiteral("line"), ObjectKind::Line},
        {QStringLiteral("box"), ObjectKind::Box},          {QStringLiteral("picture"), ObjectKind::Picture},
        {QStringLiteral("barcode"), ObjectKind::Barcode},  {QStringLiteral("subreport"), ObjectKind::Subreport},
        {QStringLiteral("richtext"), ObjectKind::RichText}};
    object.kind = kinds.value(st.keyword);
    const int measures = object.kind == ObjectKind::Subreport ? 3 : 4;
    QList<double> n;
    if (!toNumbers(st.words, measures, n, error))
        return false;
    if (object.kind == ObjectKind::Line)
        object.rect = QRectF(QPointF(n[0], n[1]), QPointF(n[2], n[3]));
    else
        object.rect = QRectF(n[0], n[1], n[2], measures == 4 ? n[3] : 0);
    const QStringList rest = st.words.mid(measures);
    const bool needsValue = object.kind != ObjectKind::Line && object.kind != ObjectKind::Box;
    if (needsValue) {
        if (rest.isEmpty()) {
            error = QStringLiteral("manca il valore");
            return false;
        }
        object.value = rest.first();
    }
    for (const QString& flag : rest.mid(needsValue ? 1 : 0)) {
        const QString f = flag.toLower();
        if (f == QLatin1String("bold"))
            object.bold = true;
        else if (f == QLatin1String("italic"))
            object.italic = true;
        else if (f == QLatin1String("grow"))
            object.grow = true;
        else if (f == QLatin1String("border"))
            object.border = true;
        else if (f == QLatin1String("blankzero"))
            object.blankZero = true;
        else if (f == QLatin1String("file"))
            object.pictureFile = true;
        else {
            error = QStringLiteral("opzione sconosciuta «") + flag + QStringLiteral("»");
            return false;
        }
    }
    if (object.kind == ObjectKind::Special) {
        static const QStringList specials{QStringLiteral("pagenofm"), QStringLiteral("pagenumber"),
                                          QStringLiteral("totalpages"), QStringLiteral("printdate"),
                                          QStringLiteral("printtime")};
        object.value = object.value.toLower();
        if (!specials.contains(object.value)) {
            error = QStringLiteral("campo speciale sconosciuto «") + object.value + QStringLiteral("»");
            return false;
        }
        object.align = Qt::AlignRight | Qt::AlignVCenter;
    }
    if (object.kind == ObjectKind::Field && !object.value.isEmpty() && object.format.isEmpty())
        object.align = Qt::AlignLeft | Qt::AlignVCenter;
    for (auto it = st.options.cbegin(); it != st.options.cend(); ++it) {
        const QString& key = it.key();
        const QString& value = it.value();
        bool ok = true;
        if (key == QLatin1String("size"))
            object.fontSize = QString(value).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
        else if (key == QLatin1String("font"))
            object.fontFamily = value;
        else if (key == QLatin1String("format"))
            object.format = value.toLower();
        else if (key == QLatin1String("width"))
            object.lineWidth = QString(value).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
        else if (key == QLatin1String("suppress"))
            object.suppress = value;
        else if (key == QLatin1String("color")) {
            if (!readColor(value, object.color, error))
                return false;
        } else if (key == QLatin1String("fill")) {
            if (!readColor(value, object.fill, error))
                return false;
        } else if (key == QLatin1String("align")) {
            const Qt::Alignment vertical = object.align & Qt::AlignVertical_Mask;
            if (value == QLatin1String("left"))
                object.align = Qt::AlignLeft | vertical;
            else if (value == QLatin1String("center"))
                object.align = Qt::AlignHCenter | vertical;
            else if (value == QLatin1String("right"))
                object.align = Qt::AlignRight | vertical;
            else if (value == QLatin1String("justify"))
                object.align = Qt::AlignJustify | vertical;
            else
                ok = false;
        } else if (key == QLatin1String("valign")) {
            const Qt::Alignment horizontal = object.align & Qt::AlignHorizontal_Mask;
            if (value == QLatin1String("top"))
                object.align = Qt::AlignTop | horizontal;
            else if (value == QLatin1String("middle"))
                object.align = Qt::AlignVCenter | horizontal;
            else if (value == QLatin1String("bottom"))
                object.align = Qt::AlignBottom | horizontal;
            else
                ok = false;
        } else {
            error = QStringLiteral("opzione sconosciuta «") + key + QStringLiteral("»");
            return false;
        }
        if (!ok) {
            error = QStringLiteral("valore non valido per «") + key + QStringLiteral("»");
            return false;
        }
    }
    // A filled box has no border unless it is given a colour.
    if (object.kind == ObjectKind::Box && object.fill.isValid() && !st.options.contains(QStringLiteral("color")))
        object.color = QColor();
    // Amounts line up on the decimal comma: numbers are right aligned
    // unless the template says otherwise.
    if (object.kind == ObjectKind::Field && !st.options.contains(QStringLiteral("align")) && !object.format.isEmpty()
        && object.format != QLatin1String("text") && object.format != QLatin1String("date"))
        object.align = Qt::AlignRight | (object.align & Qt::AlignVertical_Mask);
    return true;
}

bool readSection(const Statement& st, Section& section, QString& error)
{
    static const QHash<QString, SectionKind> kinds{{QStringLiteral("reportheader"), SectionKind::ReportHeader},
                                                   {QStringLiteral("pageheader"), SectionKind::PageHeader},
                                                   {QStringLiteral("groupheader"), SectionKind::GroupHeader},
                                                   {QStringLiteral("detail"), SectionKind::Detail},
                                                   {QStringLiteral("groupfooter"), SectionKind::GroupFooter},
                                                   {QStringLiteral("pagefooter"), SectionKind::PageFooter},
                                                   {QStringLiteral("reportfooter"), SectionKind::ReportFooter}};
    if (st.words.isEmpty() || !kinds.contains(st.words.first().toLower())) {
        error = QStringLiteral("sezione sconosciuta");
        return false;
    }
    section.kind = kinds.value(st.words.first().toLower());
    int k = 1;
    if (st.words.size() > 1 && (section.kind == SectionKind::GroupHeader || section.kind == SectionKind::GroupFooter)) {
        bool ok = false;
        const int group = st.words.at(1).toInt(&ok);
        if (ok) {
            section.group = group - 1;
            k = 2;
        }
    }
    for (; k < st.words.size(); ++k) {
        const QString w = st.words.at(k).toLower();
        if (w == QLatin1String("newpageafter"))
            section.newPageAfter = true;
        else if (w == QLatin1String("newpagebefore"))
            section.newPageBefore = true;
        else {
            error = QStringLiteral("opzione sconosciuta «") + st.words.at(k) + QStringLiteral("»");
            return false;
        }
    }
    bool ok = true;
    section.height = QString(st.options.value(QStringLiteral("height"), QStringLiteral("0")))
                         .replace(QLatin1Char(','), QLatin1Char('.'))
                         .toDouble(&ok);
    if (!ok) {
        error = QStringLiteral("altezza non valida");
        return false;
    }
    section.suppress = st.options.value(QStringLiteral("suppress"));
    if (st.options.contains(QStringLiteral("columns"))) {
        section.columns = st.options.value(QStringLiteral("columns")).toInt(&ok);
        section.columnWidth = QString(st.options.value(QStringLiteral("columnwidth")))
                                  .replace(QLatin1Char(','), QLatin1Char('.'))
                                  .toDouble();
        if (!ok || section.columns < 1 || section.columnWidth <= 0 || section.kind != SectionKind::Detail) {
            error = QStringLiteral("colonne non valide: servono columns e columnwidth, solo nel dettaglio");
            return false;
        }
    }
    return true;
}

bool readReportLine(const Statement& st, ReportDefinition& def, QString& error)
{
    for (auto it = st.options.cbegin(); it != st.options.cend(); ++it) {
        const QString& key = it.key();
        const QString& value = it.value();
        if (key == QLatin1String("title"))
            def.title = value;
        else if (key == QLatin1String("orientation")) {
            if (value != QLatin1String("portrait") && value != QLatin1String("landscape")) {
                error = QStringLiteral("orientamento non valido");
                return false;
            }
            def.landscape = value == QLatin1String("landscape");
        } else if (key == QLatin1String("margins")) {
            QList<double> n;
            if (!toNumbers(value.split(QLatin1Char(' '), Qt::SkipEmptyParts), 4, n, error))
                return false;
            def.margins = QMarginsF(n[0], n[1], n[2], n[3]);
        } else if (key == QLatin1String("font"))
            def.fontFamily = value;
        else if (key == QLatin1String("size"))
            def.fontSize = QString(value).replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
        else {
            error = QStringLiteral("opzione sconosciuta «") + key + QStringLiteral("»");
            return false;
        }
    }
    return true;
}

} // namespace

const ReportDefinition* ReportDefinition::subreport(const QString& name) const
{
    for (const auto& sub : subreports)
        if (sub->name.compare(name, Qt::CaseInsensitive) == 0)
            return sub.get();
    return nullptr;
}

Formula* ReportDefinition::formula(const QString& name)
{
    for (Formula& f : formulas)
        if (f.name.compare(name, Qt::CaseInsensitive) == 0)
            return &f;
    return nullptr;
}

const Formula* ReportDefinition::formula(const QString& name) const
{
    return const_cast<ReportDefinition*>(this)->formula(name);
}

std::optional<ReportDefinition> parseTemplate(const QString& text, const QString& name, QString* error)
{
    ReportDefinition main;
    main.name = name;
    ReportDefinition* current = &main;
    Section* section = nullptr;
    const QStringList lines = text.split(QLatin1Char('\n'));
    auto fail = [&](int line, const QString& what) {
        if (error)
            *error = name + QStringLiteral(", riga ") + QString::number(line) + QStringLiteral(": ") + what;
        return std::nullopt;
    };
    for (int index = 0; index < lines.size(); ++index) {
        const int lineNumber = index + 1;
        QString line = lines.at(index);
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        Statement st;
        QString fault;
        if (!splitLine(trimmed, st, fault))
            return fail(lineNumber, fault);
        const QString& kw = st.keyword;
        if (kw == QLatin1String("report")) {
            if (!readReportLine(st, *current, fault))
                return fail(lineNumber, fault);
        } else if (kw == QLatin1String("data")) {
            current->from = st.options.value(QStringLiteral("from"));
            current->where = st.options.value(QStringLiteral("where"));
            current->order = st.options.value(QStringLiteral("order"));
        } else if (kw == QLatin1String("group")) {
            if (st.words.isEmpty())
                return fail(lineNumber, QStringLiteral("manca il campo del gruppo"));
            Group group;
            group.expression = st.words.first();
            group.newPage = st.words.mid(1).contains(QStringLiteral("newpage"), Qt::CaseInsensitive);
            current->groups << group;
        } else if (kw == QLatin1String("formula")) {
            // formula NAME = expression (the rest of the line)
            const int eq = trimmed.indexOf(QLatin1Char('='));
            if (eq < 0)
                return fail(lineNumber, QStringLiteral("manca «=» nella formula"));
            const QString formulaName = trimmed.mid(7, eq - 7).trimmed();
            if (formulaName.isEmpty())
                return fail(lineNumber, QStringLiteral("formula senza nome"));
            current->formulas << Formula{formulaName, trimmed.mid(eq + 1).trimmed()};
        } else if (kw == QLatin1String("section")) {
            Section s;
            if (!readSection(st, s, fault))
                return fail(lineNumber, fault);
            if ((s.kind == SectionKind::GroupHeader || s.kind == SectionKind::GroupFooter)
                && (s.group < 0 || s.group >= current->groups.size()))
                return fail(lineNumber, QStringLiteral("gruppo inesistente"));
            current->sections << s;
            section = &current->sections.last();
        } else if (kw == QLatin1String("subreport") && st.words.size() == 1) {
            // "subreport Name link=..." opens a subreport's definition; with
            // measures it is an object of a section (below).
            if (current != &main)
                return fail(lineNumber, QStringLiteral("sottoreport dentro un sottoreport"));
            auto sub = std::make_shared<ReportDefinition>();
            sub->name = st.words.value(0);
            sub->link = st.options.value(QStringLiteral("link"));
            sub->fontFamily = main.fontFamily;
            sub->fontSize = main.fontSize;
            main.subreports << sub;
            current = sub.get();
            section = nullptr;
        } else if (kw == QLatin1String("end")) {
            if (current == &main)
                return fail(lineNumber, QStringLiteral("«end» senza sottoreport"));
            current = &main;
            section = nullptr;
        } else {
            if (!section)
                return fail(lineNumber, QStringLiteral("oggetto fuori da una sezione"));
            ReportObject object;
            object.line = lineNumber;
            static const QStringList objectKinds{QStringLiteral("text"),    QStringLiteral("field"),
                                                 QStringLiteral("special"), QStringLiteral("line"),
                                                 QStringLiteral("box"),     QStringLiteral("picture"),
                                                 QStringLiteral("barcode"), QStringLiteral("subreport"),
                                                 QStringLiteral("richtext")};
            if (!objectKinds.contains(kw))
                return fail(lineNumber, QStringLiteral("parola sconosciuta «") + st.keyword + QStringLiteral("»"));
            if (!readObject(st, object, fault))
                return fail(lineNumber, fault);
            section->objects << object;
        }
    }
    if (current != &main)
        return fail(int(lines.size()), QStringLiteral("manca «end» del sottoreport ") + current->name);
    for (const auto& sub : main.subreports) {
        if (sub->from.isEmpty())
            return fail(0, QStringLiteral("il sottoreport ") + sub->name + QStringLiteral(" non ha dati"));
    }
    for (const Section& s : main.sections)
        for (const ReportObject& o : s.objects)
            if (o.kind == ObjectKind::Subreport && !main.subreport(o.value))
                return fail(o.line, QStringLiteral("sottoreport inesistente «") + o.value + QStringLiteral("»"));
    return main;
}

std::optional<ReportDefinition> loadTemplate(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("Impossibile aprire il modello ") + path;
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return parseTemplate(text, QFileInfo(path).fileName(), error);
}

} // namespace report
