#include "common/italiantext.h"
#include "support/localerows.h"

#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(Currency)

namespace {

QVariant text(const char* s) { return QVariant(QString::fromUtf8(s)); }
QString str(const char* s) { return QString::fromUtf8(s); }
template <typename T> QVariant typedNull() { return QVariant(QMetaType::fromType<T>()); } // a database Null
QVariant money(qint64 raw) { return QVariant::fromValue(Currency::fromRaw(raw)); }
// The columns of a table: the process locale's, then those named.
template <typename... T, typename... Name> void columns(Name... names)
{
    QTest::addColumn<QString>("locale");
    (QTest::addColumn<T>(names), ...);
}

} // namespace

class TstItalianText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parseNumber_data()
    {
        columns<QString, bool, double>("input", "valid", "value");
        const auto ok = [](const char* name, const char* in, double v) { addRows(name, str(in), true, v); };
        const auto bad = [](const char* name, const char* in) { addRows(name, str(in), false, 0.0); };
        ok("dot for thousands, comma for decimals", "1.234,50", 1234.5);
        ok("separators anywhere between digits", "1.2.3", 123);
        ok("negative", "-3,5", -3.5);
        ok("plus sign", "+4", 4);
        ok("blanks around", " 7 ", 7);
        ok("leading comma", ",5", 0.5);
        ok("trailing comma", "5,", 5);
        ok("exponent", "1,5E3", 1500);
        ok("negative exponent", "2e-2", 0.02);
        ok("correctly rounded", "0,3", 0.3);
        ok("many digits", "0,1000000000000000055511151231257827", 0.1);
        bad("empty", "");
        bad("blank", "   ");
        bad("digits then letters", "12abc");
        bad("two commas", "1,2,3");
        bad("sign alone", "-");
        bad("trailing minus", "3-");
        bad("sign then blank", "- 3");
        bad("inner blank", "1 234");
        bad("leading dot", ".5");
        bad("trailing dot", "12.");
        bad("double dot", "1..2");
        bad("dot after the comma", "1,234.5");
        bad("exponent without digits", "1E");
        bad("exponent overflow", "1E400");
        bad("non-ASCII digits", "١٢");
    }
    void parseNumber()
    {
        LOCALE_SCOPE;
        QFETCH(QString, input);
        QFETCH(bool, valid);
        QFETCH(double, value);
        const std::optional<double> parsed = parseNumberIt(input);
        QCOMPARE(parsed.has_value(), valid);
        QCOMPARE(isNumericIt(input), valid);
        if (valid)
            QVERIFY2(*parsed == value, qPrintable(QString::number(*parsed, 'g', 17)));
    }

    void getValore_data()
    {
        columns<QVariant, qint64, float, double>("value", "raw", "single", "numeric");
        addRows("Null", QVariant(), qint64(0), 0.0f, 0.0);
        addRows("typed Null", typedNull<double>(), qint64(0), 0.0f, 0.0);
        addRows("not numeric", text("abc"), qint64(0), 0.0f, 0.0);
        addRows("bool is not a number", QVariant(true), qint64(0), 0.0f, 0.0);
        addRows("Italian text", text("1.234,5678"), qint64(12345678), 1234.5678f, 1234.5678);
        addRows("negative text", text("-0,5"), qint64(-5000), -0.5f, -0.5);
        addRows("int", QVariant(12), qint64(120000), 12.0f, 12.0);
        addRows("qlonglong", QVariant(qlonglong(-3)), qint64(-30000), -3.0f, -3.0);
        addRows("double", QVariant(2.5), qint64(25000), 2.5f, 2.5);
        addRows("float enters at its value", QVariant(0.1f), qint64(1000), 0.1f, double(0.1f));
        // Text is rounded from its digits: a decimal half is a tie there.
        addRows("text half to even, down", text("0,00005"), qint64(0), 0.00005f, 0.00005);
        addRows("text half to even, up", text("0,00015"), qint64(2), 0.00015f, 0.00015);
        addRows("text just above half", text("0,0000500001"), qint64(1), 0.0000500001f, 0.0000500001);
        // 1 + 2^-24 + a little: through a double it becomes a float tie and
        // rounds down; read straight it lies above the tie.
        addRows("Single in one rounding", text("1,00000005960464477539062500000001"), qint64(10000), 1.00000012f,
                1.0000000596046448);
        addRows("Single beyond 2^24", text("16.777.217"), qint64(167772170000), 16777216.0f, 16777217.0);
    }
    void getValore()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(qint64, raw);
        QFETCH(float, single);
        QFETCH(double, numeric);
        QCOMPARE(getValoreCurrency(value).raw(), raw);
        QVERIFY2(getValoreSingle(value) == single, qPrintable(QString::number(getValoreSingle(value), 'g', 9)));
        QVERIFY2(getValoreNumerico(value) == numeric, qPrintable(QString::number(getValoreNumerico(value), 'g', 17)));
    }

    // One table for every overload: a double or float value must give the
    // same text through its own overload and through a QVariant.
    void formattaImporto_data()
    {
        columns<QVariant, int, QString, QString>("value", "decimals", "expected", "emptyWhenNull");
        const auto row = [](const char* name, const QVariant& v, int decimals, const char* expected,
                            const char* whenEmpty = nullptr) {
            addRows(name, v, decimals, str(expected), whenEmpty ? str(whenEmpty) : str(expected));
        };
        row("Null", QVariant(), 2, "0,00", "");
        row("typed Null", typedNull<qlonglong>(), 3, "0,000", "");
        row("not numeric", text("abc"), 2, "0,00", "");
        row("zero is a value", QVariant(0), 2, "0,00");
        row("NaN is no value", QVariant(std::numeric_limits<double>::quiet_NaN()), 2, "0,00", "");
        row("text read the Italian way", text("1234,5"), 2, "1.234,50");
        row("text with separators", text("1.234.567,891"), 2, "1.234.567,89");
        row("text half away from zero", text("0,125"), 2, "0,13");
        row("negative text half away", text("-0,125"), 2, "-0,13");
        row("text with a dot only", text("12.5"), 0, "125,");
        row("int", QVariant(1234567), 2, "1.234.567,00");
        row("beyond double precision", QVariant(qlonglong(9007199254740993LL)), 0, "9.007.199.254.740.993,");
        row("Currency grouping", money(12345678900), 2, "1.234.567,89");
        row("Currency half away", money(1250), 2, "0,13");
        row("Currency negative half away", money(-1250), 2, "-0,13");
        row("Currency below half", money(1249), 2, "0,12");
        row("Currency carry to a thousand", money(9999950), 2, "1.000,00");
        row("Currency no decimals", money(-25000), 0, "-3,");
        row("Currency padded", money(15000), 6, "1,500000");
        row("Currency minimum", money(std::numeric_limits<qint64>::min()), 2, "-922.337.203.685.477,58");
        row("Currency maximum", money(std::numeric_limits<qint64>::max()), 4, "922.337.203.685.477,5807");
        row("rounds to zero, no sign", money(-40), 2, "0,00");
        // Binary 1.00499999..., 2.67499999..., 0.43499999...: the digits read,
        // not the binary error, decide the half.
        row("1.005", QVariant(1.005), 2, "1,01");
        row("-1.005", QVariant(-1.005), 2, "-1,01");
        row("0.145 times 3", QVariant(0.145 * 3), 2, "0,44");
        row("below half", QVariant(1.0049), 2, "1,00");
        row("-0.5 away from zero", QVariant(-0.5), 0, "-1,");
        row("large", QVariant(1e15), 0, "1.000.000.000.000.000,");
        row("double rounds to zero", QVariant(-0.001), 2, "0,00");
        // A Single shows seven significant digits.
        row("Single 2.675f", QVariant(2.675f), 2, "2,68");
        row("Single 1234.5678f", QVariant(1234.5678f), 6, "1.234,568000");
        row("Single 0.1f", QVariant(0.1f), 9, "0,100000000");
    }
    void formattaImporto()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(int, decimals);
        QFETCH(QString, expected);
        QFETCH(QString, emptyWhenNull);
        if (value.typeId() == qMetaTypeId<Currency>()) {
            QCOMPARE(::formattaImporto(value.value<Currency>(), decimals), expected);
            return;
        }
        QCOMPARE(::formattaImporto(value, decimals), expected);
        QCOMPARE(::formattaImporto(value, decimals, true), emptyWhenNull);
        if (value.typeId() == QMetaType::Double)
            QCOMPARE(::formattaImporto(value.toDouble(), decimals), expected);
        if (value.typeId() == QMetaType::Float)
            QCOMPARE(::formattaImporto(value.toFloat(), decimals), expected); // picks the Single overload
        if (decimals == 0)
            QCOMPARE(formattaIntero(value), expected.chopped(1)); // the same without the final comma
    }

    // The plain text of a number, and a whole number through a mask.
    void plainText_data()
    {
        columns<QVariant, QString, QString>("value", "mask", "expected"); // no mask: plainTextIt
        const auto plain = [](const char* name, const QVariant& v, const char* expected) {
            addRows(name, v, QString(), str(expected));
        };
        const auto mask = [](const char* name, qint64 v, const char* m, const char* expected) {
            addRows(name, QVariant(v), str(m), str(expected));
        };
        plain("zero", QVariant(0.0), "0");
        plain("decimal comma, no grouping", QVariant(1234.5), "1234,5");
        plain("small", QVariant(-0.0001), "-0,0001");
        plain("fifteen digits", QVariant(123456789012345.0), "123456789012345");
        plain("binary noise hidden", QVariant(0.1 + 0.2), "0,3");
        plain("exponent when large", QVariant(1e15), "1E+15");
        plain("exponent when small", QVariant(1.5e-5), "1,5E-05");
        plain("Single", QVariant(0.1f), "0,1");
        plain("Single, seven digits", QVariant(1234567.0f), "1234567");
        plain("Single, exponent beyond seven", QVariant(16777216.0f), "1,677722E+07");
        plain("Currency", money(-12345000), "-1234,5");
        mask("mask filled", 7, "0000", "0007");
        mask("mask of five", 123, "00000", "00123");
        mask("longer than the mask", 123456, "0000", "123456");
        mask("negative through a mask", -7, "0000", "-0007");
    }
    void plainText()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, mask);
        QFETCH(QString, expected);
        if (!mask.isEmpty()) {
            QCOMPARE(::formatMask(value.toLongLong(), mask), expected);
            return;
        }
        const QString written = value.typeId() == QMetaType::Float ? plainTextIt(value.toFloat())
            : value.typeId() == QMetaType::Double                  ? plainTextIt(value.toDouble())
                                                                   : plainTextIt(value.value<Currency>());
        QCOMPARE(written, expected);
        QVERIFY(isNumericIt(written)); // what is written reads back
    }

    void formatDates_data()
    {
        columns<QDateTime, QString, QString>("when", "dateTime", "stamp");
        addRows("morning", QDateTime(QDate(2023, 12, 5), QTime(9, 5, 7)), str("05/12/2023 09:05:07"),
                str("20231205-090507"));
        addRows("evening", QDateTime(QDate(2024, 2, 29), QTime(23, 59)), str("29/02/2024 23:59:00"),
                str("20240229-235900"));
        addRows("short year", QDateTime(QDate(999, 1, 2), QTime(0, 0)), str("02/01/0999 00:00:00"),
                str("09990102-000000"));
        addRows("invalid", QDateTime(), QString(), QString());
    }
    void formatDates()
    {
        LOCALE_SCOPE;
        QFETCH(QDateTime, when);
        QFETCH(QString, dateTime);
        QFETCH(QString, stamp);
        QCOMPARE(formatDateTime(when), dateTime);
        QCOMPARE(formatDate(when.date()), dateTime.left(10));
        QCOMPARE(formatDate(QVariant(when)), dateTime.left(10));
        QCOMPARE(formatStamp(when), stamp);
        QCOMPARE(formatTimeHM(when.time()), dateTime.mid(11, 5));
        QCOMPARE(formatDateTime(QVariant(dateTime)), dateTime); // what is written reads back
    }

    void toDateTime_data()
    {
        columns<QVariant, QDateTime>("value", "expected");
        const QDate d(2023, 12, 5);
        const QDateTime midnight(d, QTime(0, 0));
        const QDateTime withTime(d, QTime(10, 20, 30));
        addRows("Italian", text("05/12/2023"), midnight);
        addRows("Italian, short", text("5/12/23"), midnight);
        addRows("two-digit year of the last century", text("5/2/45"), QDateTime(QDate(1945, 2, 5), QTime(0, 0)));
        addRows("dashes", text("05-12-2023"), midnight);
        addRows("blanks around", text(" 05/12/2023 "), midnight);
        addRows("Italian with time", text("05/12/2023 10:20:30"), withTime);
        addRows("Italian with dotted time", text("05/12/2023 10.20.30"), withTime);
        addRows("ISO", text("2023-12-05"), midnight);
        addRows("ISO date-time", text("2023-12-05 10:20:30"), withTime);
        addRows("ISO with T and fraction", text("2023-12-05T10:20:30.500"), QDateTime(d, QTime(10, 20, 30, 500)));
        addRows("ISO without seconds", text("2023-12-05 10:20"), QDateTime(d, QTime(10, 20)));
        addRows("QDate", QVariant(d), midnight);
        addRows("QDateTime", QVariant(withTime), withTime);
        addRows("no such day", text("31/02/2023"), QDateTime());
        addRows("no such hour", text("2023-12-05 25:00"), QDateTime());
        addRows("mixed separators", text("05/12-2023"), QDateTime());
        addRows("three-digit year", text("05/12/202"), QDateTime());
        addRows("a number", text("12.5"), QDateTime());
        addRows("numeric variant", QVariant(45000), QDateTime());
        addRows("Null", QVariant(), QDateTime());
        addRows("typed Null", typedNull<QDate>(), QDateTime());
    }
    void toDateTime()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QDateTime, expected);
        QCOMPARE(::toDateTime(value), expected);
        QCOMPARE(toDate(value), expected.date());
        QCOMPARE(isDateIt(value), expected.isValid());
    }

    void screenHelpers_data()
    {
        columns<QVariant, QString, int>("value", "id", "chek");
        const QString null = str("Null");
        addRows("int", QVariant(15), str("15"), 15);
        addRows("whole double", QVariant(15.0), str("15"), 15);
        addRows("text", text(" 15 "), str("15"), 15);
        addRows("text with thousands", text("1.234"), str("1234"), 1234);
        addRows("beyond double precision", QVariant(qlonglong(9007199254740993LL)), str("9007199254740993"), 32767);
        addRows("Null", QVariant(), null, 0);
        addRows("typed Null", typedNull<int>(), null, 0);
        addRows("zero", QVariant(0), null, 0);
        addRows("check box -1", QVariant(-1), null, 1);
        addRows("one", QVariant(1), str("1"), 1);
        addRows("text -1", text("-1"), null, 1);
        addRows("true", QVariant(true), null, 1);
        addRows("not numeric", text("abc"), null, 0);
    }
    void screenHelpers()
    {
        LOCALE_SCOPE;
        QFETCH(QVariant, value);
        QFETCH(QString, id);
        QFETCH(int, chek);
        QCOMPARE(getIDOrNullStr(value), id);
        QCOMPARE(int(getChekByBool(value)), chek);
    }
};

QTEST_GUILESS_MAIN(TstItalianText)
#include "tst_italiantext.moc"
