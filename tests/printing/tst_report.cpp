// The report renderer: selection formulas in SQL on each back end, templates
// and their faults, expressions and formats, groups over several pages,
// subreports, the PDF and CSV written.

#include "common/ean13.h"
#include "data/cadosqlserver.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "printing/creport.h"
#include "printing/reportexpression.h"
#include "printing/reportlayout.h"
#include "printing/selezione.h"
#include "support/testdb.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using namespace testdb;

namespace {

class Valori : public report::EvaluationContext
{
public:
    QHash<QString, QVariant> campi;
    QVariant field(const QString& key) const override { return campi.value(key); }
    QVariant formula(const QString&) const override { return QVariant(); }
    QVariant aggregate(const QString&, const report::ExpressionNode*) const override { return QVariant(); }
    QVariant special(const QString&) const override { return QVariant(); }
};

QString scrivi(const QTemporaryDir& dir, const QString& nome, const QString& testo)
{
    const QString path = dir.filePath(nome);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return QString();
    f.write(testo.toUtf8());
    return path;
}

// A SQLite file with a table of rows: group, name, amount.
QString fileRighe(const QTemporaryDir& dir, const QList<std::tuple<QString, QString, double>>& righe)
{
    const QString path = dir.filePath(QStringLiteral("righe.db"));
    QFile::remove(path);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("righe"));
        db.setDatabaseName(path);
        db.open();
        QSqlQuery q(db);
        q.exec(QStringLiteral("CREATE TABLE Righe (RID INTEGER, GRUPPO TEXT, NOME TEXT, IMPORTO REAL, DATA TEXT)"));
        q.prepare(QStringLiteral("INSERT INTO Righe VALUES (?, ?, ?, ?, '2026-03-10')"));
        int rid = 0;
        for (const auto& [gruppo, nome, importo] : righe) {
            q.addBindValue(++rid);
            q.addBindValue(gruppo);
            q.addBindValue(nome);
            q.addBindValue(importo);
            q.exec();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("righe"));
    return path;
}

QString testoPagina(const report::RenderedReport& r, int pagina)
{
    QString out;
    for (const report::PageItem& item : r.pages.at(pagina).items)
        if (item.kind == report::PageItem::Kind::Text)
            out += item.text + QLatin1Char('\n');
    return out;
}

} // namespace

class TestReport : public BackendTest
{
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    // Each formula the screens write, as SQL for the three back ends, and the
    // rows it selects on the database under test.
    void selezione_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("sqlServer");
        QTest::addColumn<QString>("fileDb");
        QTest::addColumn<QString>("mySql");
        QTest::addColumn<int>("righe");
        const QString s = QStringLiteral("\u00A4");
        QTest::newRow("key") << "{Scadenze.RID}=2"
                             << "Scadenze.RID = 2"
                             << "Scadenze.RID = 2"
                             << "Scadenze.RID = 2" << 1;
        QTest::newRow("date range") << "{Scadenze.DATA} IN Date(2026,3,1) TO Date(2026,3,31)"
                                    << "(Scadenze.DATA >= { d " + s + "2026-03-01" + s + " } AND Scadenze.DATA < { d "
                + s + "2026-04-01" + s + " })"
                                    << "(Scadenze.DATA >= #03/01/2026# AND Scadenze.DATA < #04/01/2026#)"
                                    << "(Scadenze.DATA >= " + s + "2026-03-01" + s + " AND Scadenze.DATA < " + s
                + "2026-04-01" + s + ")"
                                    << 2;
        QTest::newRow("and, date equal") << "{Scadenze.Importo} > 100 AND {Scadenze.DATA}=Date(2026,3,31)"
                                         << "Scadenze.Importo > 100 AND Scadenze.DATA = { d " + s + "2026-03-31" + s
                + " }"
                                         << "Scadenze.Importo > 100 AND Scadenze.DATA = #03/31/2026#"
                                         << "Scadenze.Importo > 100 AND Scadenze.DATA = " + s + "2026-03-31" + s << 1;
        QTest::newRow("text, or, brackets")
            << "({TipoDocumenti.CODICE}= 'FV' Or {TipoDocumenti.CODICE}='DDT') and not {TipoDocumenti.RID}=0"
            << "(TipoDocumenti.CODICE = " + sqlText("FV") + " OR TipoDocumenti.CODICE = " + s + "DDT" + s
                + ") AND NOT TipoDocumenti.RID = 0"
            << "(TipoDocumenti.CODICE = " + sqlText("FV") + " OR TipoDocumenti.CODICE = " + s + "DDT" + s
                + ") AND NOT TipoDocumenti.RID = 0"
            << "(TipoDocumenti.CODICE = " + sqlText("FV") + " OR TipoDocumenti.CODICE = " + s + "DDT" + s
                + ") AND NOT TipoDocumenti.RID = 0"
            << 2;
        QTest::newRow("flag true") << "{TipoDocumenti.ACCOMPAGNATORIO}=True"
                                   << "TipoDocumenti.ACCOMPAGNATORIO <> 0"
                                   << "TipoDocumenti.ACCOMPAGNATORIO <> 0"
                                   << "TipoDocumenti.ACCOMPAGNATORIO <> 0" << 3;
        QTest::newRow("flag not true") << "{TipoDocumenti.ACCOMPAGNATORIO}<>True"
                                       << "TipoDocumenti.ACCOMPAGNATORIO = 0"
                                       << "TipoDocumenti.ACCOMPAGNATORIO = 0"
                                       << "TipoDocumenti.ACCOMPAGNATORIO = 0" << 4;
        QTest::newRow("apostrophe") << "{TipoDocumenti.DESCSTAMPA}='Conferma d''ordine'"
                                    << "TipoDocumenti.DESCSTAMPA = " + sqlText("Conferma d'ordine")
                                    << "TipoDocumenti.DESCSTAMPA = " + sqlText("Conferma d'ordine")
                                    << "TipoDocumenti.DESCSTAMPA = " + sqlText("Conferma d'ordine") << 1;
        QTest::newRow("empty") << ""
                               << ""
                               << ""
                               << "" << -1;
    }

    void selezione()
    {
        QFETCH(QString, formula);
        FETCH_EACH(QString, sqlServer, fileDb, mySql);
        QFETCH(int, righe);
        QCOMPARE(selezioneInSql(formula, TipoServer::SqlServer).sql, sqlServer);
        QCOMPARE(selezioneInSql(formula, TipoServer::FileDb).sql, fileDb);
        QCOMPARE(selezioneInSql(formula, TipoServer::MySql).sql, mySql);
        if (righe < 0)
            return;
        run(QStringLiteral("DELETE FROM Scadenze"));
        const QList<std::tuple<int, QDate, QString>> scadenze{{1, QDate(2026, 2, 28), "500"},
                                                              {2, QDate(2026, 3, 1), "80"},
                                                              {3, QDate(2026, 3, 31), "120.5"},
                                                              {4, QDate(2026, 4, 1), "120.5"}};
        for (const auto& [rid, data, importo] : scadenze)
            run(QStringLiteral("INSERT INTO Scadenze (RID, DATA, Importo) VALUES (%1, %2, %3)")
                    .arg(rid)
                    .arg(gAdoSqlServer().getSQLDate(data), importo));
        const QString table =
            formula.contains(QLatin1String("Scadenze")) ? QStringLiteral("Scadenze") : QStringLiteral("TipoDocumenti");
        const QString sql = selezioneInSql(formula, gSession().tipoServer).sql;
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM ") + table + QStringLiteral(" WHERE ") + sql), righe);
    }

    void selezioneRifiutata_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::newRow("no field") << "RID = 2";
        QTest::newRow("no table") << "{RID} = 2";
        QTest::newRow("formula field") << "{@INFO} = 'x'";
        QTest::newRow("open text") << "{A.B} = 'x";
        QTest::newRow("bad date") << "{A.B} = Date(2026,2,30)";
        QTest::newRow("range without TO") << "{A.B} IN Date(2026,1,1)";
        QTest::newRow("flag compared") << "{A.B} > True";
        QTest::newRow("trailing text") << "{A.B} = 1 {C.D}";
        QTest::newRow("injection") << "{A.B} = 1; DROP TABLE A";
    }

    void selezioneRifiutata()
    {
        QFETCH(QString, formula);
        const SelezioneSql s = selezioneInSql(formula, TipoServer::MySql);
        QVERIFY(!s.ok);
        QVERIFY(s.sql.isEmpty());
        QVERIFY(s.errore.contains(formula));
    }

    void espressioni_data()
    {
        QTest::addColumn<QString>("espressione");
        QTest::addColumn<QString>("formato");
        QTest::addColumn<QString>("atteso");
        QTest::newRow("money") << "{R.IMPORTO}"
                               << "money"
                               << "1.234,50";
        QTest::newRow("money from server text") << "{R.TESTONUM}"
                                                << "money"
                                                << "12,30";
        QTest::newRow("money rounds half up") << "{R.IMPORTO} * 0.001"
                                              << "money"
                                              << "1,23";
        QTest::newRow("negative") << "-{R.IMPORTO}"
                                  << "num:1"
                                  << "-1.234,5";
        QTest::newRow("qty whole") << "{R.QTA}"
                                   << "qty"
                                   << "3";
        QTest::newRow("qty decimals") << "{R.QTA} / 2"
                                      << "qty"
                                      << "1,50";
        QTest::newRow("pad") << "{R.NUMERO}"
                             << "pad:5"
                             << "00012";
        QTest::newRow("date iso text") << "{R.DATA}"
                                       << "date"
                                       << "10/03/2026";
        QTest::newRow("concat") << "'N.' & {R.NUMERO} & ' del ' & ToText({R.DATA})"
                                << ""
                                << "N.12 del 10/03/2026";
        QTest::newRow("plus joins text") << "'riga uno' + CHR(13) + 'riga due'"
                                         << ""
                                         << "riga uno\nriga due";
        QTest::newRow("iif and compare") << "IIf({R.QTA} >= 3 And Not IsNull({R.DATA}), 'sì', 'no')"
                                         << ""
                                         << "sì";
        QTest::newRow("null is empty") << "{R.MANCA}"
                                       << "money"
                                       << "";
        QTest::newRow("round") << "Round(2.675, 2)"
                               << "num:2"
                               << "2,68";
        QTest::newRow("text functions") << "Upper(Left(Trim('  abc  '), 2)) & Len('abc')"
                                        << ""
                                        << "AB3";
        QTest::newRow("quote twice") << "'d''ordine'"
                                     << ""
                                     << "d'ordine";
    }

    void espressioni()
    {
        FETCH_EACH(QString, espressione, formato, atteso);
        Valori v;
        v.campi = {{"r.importo", 1234.5},
                   {"r.testonum", QStringLiteral("12.30")},
                   {"r.qta", 3},
                   {"r.numero", 12},
                   {"r.data", QStringLiteral("2026-03-10")}};
        QString errore;
        const report::Expression e = report::parseExpression(espressione, &errore);
        QVERIFY2(e, qPrintable(errore));
        QCOMPARE(report::formatValue(report::evaluate(*e, v), formato, false), atteso);
    }

    void modelloErrato_data()
    {
        QTest::addColumn<QString>("testo");
        QTest::addColumn<QString>("messaggio");
        QTest::newRow("object outside") << "text 0 0 10 5 \"x\""
                                        << "riga 1: oggetto fuori da una sezione";
        QTest::newRow("bad measure") << "section detail height=5\n  field 0 a 10 5 \"{A.B}\""
                                     << "riga 2: misura non valida «a»";
        QTest::newRow("unknown option") << "section detail height=5\n  text 0 0 10 5 \"x\" colour=red"
                                        << "riga 2: opzione sconosciuta «colour»";
        QTest::newRow("open quote") << "section detail height=5\n  text 0 0 10 5 \"x"
                                    << "riga 2: virgolette non chiuse";
        QTest::newRow("missing group") << "section groupfooter 2 height=5"
                                       << "riga 1: gruppo inesistente";
        QTest::newRow("subreport not closed") << "subreport Iva\n  data from=\"Iva\""
                                              << "manca «end» del sottoreport Iva";
        QTest::newRow("unknown subreport") << "section detail height=5\n  subreport 0 0 10 \"Iva\""
                                           << "sottoreport inesistente «Iva»";
    }

    void modelloErrato()
    {
        FETCH_EACH(QString, testo, messaggio);
        QString errore;
        QVERIFY(!report::parseTemplate(testo, QStringLiteral("Prova.rpt"), &errore));
        QVERIFY2(errore.contains(messaggio), qPrintable(errore));
    }

    // Three groups of 25 rows on a page that holds about 30: group headers,
    // footers with their own sums, page headers and "Pagina N di M".
    void gruppiSuTrePagine()
    {
        QList<std::tuple<QString, QString, double>> righe;
        for (const QString& g : {QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")})
            for (int i = 1; i <= 25; ++i)
                righe << std::tuple{g, g + QString::number(i).rightJustified(2, QLatin1Char('0')),
                                    i
                                            * (g == QLatin1String("A")       ? 1.0
                                                   : g == QLatin1String("B") ? 10.0
                                                                             : 100.0)
                                        + 0.01};
        const QString db = fileRighe(m_dir, righe);
        const QString path = scrivi(m_dir, QStringLiteral("Gruppi.rpt"), QStringLiteral(R"rpt(
report title="Gruppi" margins="10 10 10 10"
data from="Righe" where="{Righe.IMPORTO} > 0" order="{Righe.NOME}"
group "{Righe.GRUPPO}"
section pageheader height=10
  text 0 0 100 8 "Intestazione"
section groupheader height=8
  field 0 0 100 8 "'Gruppo ' & {Righe.GRUPPO}"
section detail height=7
  field 0 0 50 7 "{Righe.NOME}"
  field 60 0 40 7 "{Righe.IMPORTO}" format=money
section groupfooter height=8
  field 0 0 50 8 "'Totale ' & {Righe.GRUPPO}"
  field 60 0 40 8 "Sum({Righe.IMPORTO})" format=money
section reportfooter height=8
  field 60 0 40 8 "Sum({Righe.IMPORTO})" format=money
section pagefooter height=8
  special 0 0 100 8 pagenofm
)rpt"));
        cReport r;
        r.setReportFileName(path);
        r.setConnect(QStringLiteral("DSN=") + db);
        QVERIFY2(r.prepare(), qPrintable(r.error()));
        const report::RenderedReport pages = r.layout();
        QVERIFY2(r.error().isEmpty(), qPrintable(r.error()));
        QCOMPARE(pages.pageCount(), 3);
        QStringList tutte;
        for (int p = 0; p < 3; ++p) {
            const QString t = testoPagina(pages, p);
            QVERIFY(t.startsWith(QLatin1String("Intestazione")));
            QVERIFY(t.contains(QStringLiteral("Pagina %1 di 3").arg(p + 1)));
            tutte << t;
        }
        const QString tutto = report::pagesText(pages);
        // Sums of each group: 1..25 = 325, plus 25 cents.
        const QStringList totali{"Totale A\n325,25", "Totale B\n3.250,25", "Totale C\n32.500,25"};
        for (const QString& t : totali)
            QVERIFY2(tutto.contains(t), qPrintable(t));
        QVERIFY(tutto.contains(QLatin1String("36.075,75")));
        // Each footer comes after its last row and before the next group.
        QVERIFY(tutto.indexOf(QLatin1String("A25")) < tutto.indexOf(QLatin1String("Totale A")));
        QVERIFY(tutto.indexOf(QLatin1String("Totale A")) < tutto.indexOf(QLatin1String("Gruppo B")));
        QVERIFY(tutto.indexOf(QLatin1String("Totale B")) < tutto.indexOf(QLatin1String("Gruppo C")));
        // No row lies under the page footer.
        for (const report::RenderedPage& page : pages.pages)
            for (const report::PageItem& item : page.items)
                QVERIFY(item.rect.bottom() <= 297 - 10 + 0.01);
        QCOMPARE(pages.csvRows.size(), 75);
        QCOMPARE(pages.csvRows.first(), (QStringList{"A01", "1,01"}));
    }

    // A subreport linked to its parent row, its own sums, the formula list
    // over the template's formulas, and the names of the subreports.
    void sottoreportEFormule()
    {
        QList<std::tuple<QString, QString, double>> righe;
        for (int i = 1; i <= 4; ++i)
            righe << std::tuple{i <= 3 ? QStringLiteral("X") : QStringLiteral("Y"), QStringLiteral("n%1").arg(i),
                                i * 1.1};
        const QString db = fileRighe(m_dir, righe);
        const QString path = scrivi(m_dir, QStringLiteral("Sotto.rpt"), QStringLiteral(R"rpt(
report title="Sotto"
data from="Righe" where="{Righe.NOME} = 'n1' Or {Righe.NOME} = 'n4'"
formula INFO = 'dal modello'
section detail height=20
  field 0 0 80 6 "{Righe.NOME} & ' ' & {@INFO}"
  subreport 0 6 100 "Gruppo"
subreport Gruppo link="{Righe.GRUPPO}={Righe.GRUPPO}"
  data from="Righe" order="{Righe.NOME} DESC"
  section detail height=5
    field 10 0 30 5 "{Righe.NOME}"
  section reportfooter height=5
    field 10 0 30 5 "'Somma ' & ToText(Sum({Righe.IMPORTO}), 2)"
end
)rpt"));
        QCOMPARE(getSubReportName(path), QStringLiteral("Gruppo"));
        cReport r;
        r.setReportFileName(path);
        r.setConnect(QStringLiteral("DSN=") + db);
        r.setFormulaList(QStringLiteral("INFO = 'dalla schermata' + CHR(13) + 'seconda riga'")
                         + gSession().sqlSeparator);
        QVERIFY2(r.prepare(), qPrintable(r.error()));
        const QString t = report::pagesText(r.layout());
        QVERIFY2(r.error().isEmpty(), qPrintable(r.error()));
        QVERIFY(t.contains(QLatin1String("n1 dalla schermata\nseconda riga\n")));
        // n1 belongs to X (n3, n2, n1 in descending order; 6,60), n4 to Y alone.
        QVERIFY2(t.contains(QLatin1String("n3\nn2\nn1\nSomma 6,60\n")), qPrintable(t));
        QVERIFY2(t.contains(QLatin1String("n4\nSomma 4,40\n")), qPrintable(t));
        QVERIFY(!t.contains(QLatin1String("dal modello")));
    }

    // The live database through the data layer: the shipped chart of accounts
    // in a PDF whose text a PDF reader finds, and the CSV of its rows.
    void pdfECsv()
    {
        const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (pdftotext.isEmpty())
            QSKIP("pdftotext is not installed");
        const QString path = scrivi(m_dir, QStringLiteral("Conti.rpt"), QStringLiteral(R"rpt(
report title="Conti"
data from="PianoConti" where="{PianoConti.CODICE} <> ''" order="{PianoConti.CODICE}"
section detail height=6
  field 0 0 30 6 "{PianoConti.CODICE}"
  field 40 0 100 6 "{PianoConti.DESCRIZIONE}"
section reportfooter height=6
  field 0 0 100 6 "'Conti: ' & Count()"
)rpt"));
        const int conti = count(QStringLiteral("PianoConti"), QStringLiteral("CODICE <> ''"));
        QVERIFY(conti > 3);
        cReport r;
        r.setReportFileName(path);
        report::RenderedReport pages;
        QVERIFY2(r.run(&pages), qPrintable(r.error()));
        const QString pdf = m_dir.filePath(QStringLiteral("conti.pdf"));
        QVERIFY(report::writePdf(pages, pdf));
        QProcess p;
        p.start(pdftotext, {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QVERIFY(p.waitForFinished(30000));
        const QString testo = QString::fromUtf8(p.readAllStandardOutput());
        const QString primo = text(QStringLiteral("SELECT MIN(CODICE) FROM PianoConti WHERE CODICE <> ''"));
        QVERIFY2(testo.contains(primo), qPrintable(testo.left(400)));
        QVERIFY(testo.contains(QStringLiteral("Conti: %1").arg(conti)));
        const QString csv = m_dir.filePath(QStringLiteral("conti.csv"));
        QVERIFY(report::writeCsv(pages, csv));
        QFile f(csv);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QList<QByteArray> linee = f.readAll().split('\n');
        QCOMPARE(linee.size() - 1, conti + 1); // heading line, one a row, a last empty piece
        QVERIFY(linee.at(1).startsWith(QByteArray(primo.toUtf8() + ';')));
    }

    void ean13_data()
    {
        QTest::addColumn<QString>("codice");
        QTest::newRow("first digit 0") << "0012345678905";
        QTest::newRow("first digit 8") << "8001234567890";
        QTest::newRow("first digit 9") << "9788838664311";
    }

    // The bars come out the same from the digits and from the font text, and
    // read back the digits; each digit is 7 modules in 2 bars and 2 spaces.
    void ean13()
    {
        QFETCH(QString, codice);
        const ModuliEAN13 daCifre = moduliEAN13(codice);
        const ModuliEAN13 daFont = moduliEAN13(EncodeEAN13(codice));
        QCOMPARE(daCifre.moduli.size(), 95);
        QCOMPARE(daCifre.moduli, daFont.moduli);
        QCOMPARE(daCifre.cifre, codice);
        QVERIFY(daCifre.moduli.startsWith(QLatin1String("101")) && daCifre.moduli.endsWith(QLatin1String("101")));
        QCOMPARE(daCifre.moduli.mid(45, 5), QStringLiteral("01010"));
        for (int d = 0; d < 12; ++d) {
            const QString cifra = daCifre.moduli.mid(d < 6 ? 3 + d * 7 : 50 + (d - 6) * 7, 7);
            int cambi = 0;
            for (int i = 1; i < 7; ++i)
                cambi += cifra.at(i) != cifra.at(i - 1);
            QVERIFY(cambi == 3 || cambi == 4);
        }
        QVERIFY(moduliEAN13(QStringLiteral("12345")).moduli.isEmpty());
    }
};

QTEST_MAIN(TestReport)
#include "tst_report.moc"
