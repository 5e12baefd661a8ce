#include "printing/testoricco.h"

#include <QList>
#include <QStringDecoder>

namespace {

struct Stato
{
    bool grassetto = false;
    bool corsivo = false;
    bool sottolineato = false;
    int mezziPunti = 0; // 0: the default size
    bool salta = false; // a destination that prints nothing (font table, ...)
};

QString apri(const Stato& s)
{
    QString out;
    if (s.mezziPunti > 0)
        out += QStringLiteral("<span style=\"font-size:%1pt\">").arg(s.mezziPunti / 2.0);
    if (s.grassetto)
        out += QStringLiteral("<b>");
    if (s.corsivo)
        out += QStringLiteral("<i>");
    if (s.sottolineato)
        out += QStringLiteral("<u>");
    return out;
}

QString chiudi(const Stato& s)
{
    QString out;
    if (s.sottolineato)
        out += QStringLiteral("</u>");
    if (s.corsivo)
        out += QStringLiteral("</i>");
    if (s.grassetto)
        out += QStringLiteral("</b>");
    if (s.mezziPunti > 0)
        out += QStringLiteral("</span>");
    return out;
}

QString daRtf(const QString& rtf)
{
    static const QStringList destinazioniMute{QStringLiteral("fonttbl"),    QStringLiteral("colortbl"),
                                              QStringLiteral("stylesheet"), QStringLiteral("info"),
                                              QStringLiteral("pict"),       QStringLiteral("header"),
                                              QStringLiteral("footer")};
    QList<Stato> pila{Stato()};
    QString out;
    auto testo = [&](const QString& t) {
        if (pila.last().salta || t.isEmpty())
            return;
        out += apri(pila.last()) + t.toHtmlEscaped() + chiudi(pila.last());
    };
    QStringDecoder cp1252("windows-1252");
    int i = 0;
    const int n = int(rtf.size());
    QString corrente;
    auto svuota = [&] {
        testo(corrente);
        corrente.clear();
    };
    while (i < n) {
        const QChar c = rtf.at(i);
        if (c == QLatin1Char('{')) {
            svuota();
            pila << pila.last();
            ++i;
            if (i + 1 < n && rtf.at(i) == QLatin1Char('\\') && rtf.at(i + 1) == QLatin1Char('*'))
                pila.last().salta = true;
            continue;
        }
        if (c == QLatin1Char('}')) {
            svuota();
            if (pila.size() > 1)
                pila.removeLast();
            ++i;
            continue;
        }
        if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            ++i;
            continue;
        }
        if (c != QLatin1Char('\\')) {
            corrente += c;
            ++i;
            continue;
        }
        // A control word or symbol.
        ++i;
        if (i >= n)
            break;
        const QChar d = rtf.at(i);
        if (d == QLatin1Char('\\') || d == QLatin1Char('{') || d == QLatin1Char('}')) {
            corrente += d;
            ++i;
            continue;
        }
        if (d == QLatin1Char('\'')) {
            const QByteArray byte = QByteArray::fromHex(rtf.mid(i + 1, 2).toLatin1());
            corrente += cp1252(byte);
            i += 3;
            continue;
        }
        if (!d.isLetter()) {
            ++i; // \~, \-, \* and the like
            continue;
        }
        int j = i;
        while (j < n && rtf.at(j).isLetter())
            ++j;
        const QString parola = rtf.mid(i, j - i);
        int k = j;
        if (k < n && (rtf.at(k) == QLatin1Char('-') || rtf.at(k).isDigit())) {
            ++k;
            while (k < n && rtf.at(k).isDigit())
                ++k;
        }
        const bool haNumero = k > j;
        const int numero = haNumero ? rtf.mid(j, k - j).toInt() : 1;
        i = k;
        if (i < n && rtf.at(i) == QLatin1Char(' '))
            ++i;
        svuota();
        Stato& s = pila.last();
        if (destinazioniMute.contains(parola))
            s.salta = true;
        else if (parola == QLatin1String("par") || parola == QLatin1String("line"))
            out += s.salta ? QString() : QStringLiteral("<br>");
        else if (parola == QLatin1String("tab"))
            corrente += QLatin1Char(' ');
        else if (parola == QLatin1String("b"))
            s.grassetto = numero != 0;
        else if (parola == QLatin1String("i"))
            s.corsivo = numero != 0;
        else if (parola == QLatin1String("ul"))
            s.sottolineato = numero != 0;
        else if (parola == QLatin1String("ulnone"))
            s.sottolineato = false;
        else if (parola == QLatin1String("fs"))
            s.mezziPunti = numero;
        else if (parola == QLatin1String("plain"))
            s = Stato{false, false, false, 0, s.salta};
    }
    svuota();
    return out;
}

} // namespace

QString testoRiccoInHtml(const QString& testo)
{
    if (testo.trimmed().startsWith(QLatin1String("{\\rtf")))
        return daRtf(testo);
    return testo.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
}
