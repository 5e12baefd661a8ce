// The search dialogs: the statement work as text, then frmRicerca and
// frmSelectElement on real rows of both back ends.
#include "data/cadosqlserver.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/frmselectelement.h"
#include "screens/framework/listhelpers.h"
#include "data/recordset.h"
#include "screens/services/ricercasql.h"
#include "support/scripteddialogs.h"
#include "core/serversettings.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTreeWidget>
#include <QtTest>

namespace {

// The database of the back end with the rows of the cases, once.
bool open(const QString& backend)
{
    if (!testdb::shared(backend).isValid())
        return false;
    if (testdb::number(QStringLiteral("SELECT COUNT(*) FROM Marche WHERE CODICE = ¤ZZROVER¤")) == 0) {
        testdb::run(QStringLiteral("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤ZZROSSO¤, ¤Rosso fuoco¤), "
                                   "(¤ZZROSA¤, ¤Rosa antico¤), (¤ZZBLU¤, ¤Blu notte¤)"));
        testdb::run(QStringLiteral("INSERT INTO Marche (CODICE, DESCRIZIONE) VALUES (¤ZZROVER¤, ¤Rover¤)"));
    }
    return true;
}

const QString kUnion = QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Colori UNION SELECT RID, CODICE, DESCRIZIONE "
                                      "FROM Marche ORDER BY CODICE");

QStringList codes(QTreeWidget* list)
{
    QStringList shown;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        shown << list->topLevelItem(i)->text(1);
    return shown;
}

struct Dialog
{
    frmRicerca dialog;
    Dialog() { dialog.show(); }
    QTreeWidget* list() { return dialog.findChild<QTreeWidget*>(QStringLiteral("lswMain")); }
    QLineEdit* edit(const char* name) { return dialog.findChild<QLineEdit*>(QString::fromLatin1(name)); }
    QCheckBox* like() { return dialog.findChild<QCheckBox*>(QStringLiteral("chkLike")); }
    void filter(const QString& text)
    {
        edit("txtFiltro")->clear();
        QTest::keyClicks(edit("txtFiltro"), text);
    }
    // Any character, one key at a time (keyClicks knows Latin-1 alone).
    void type(const QString& text)
    {
        edit("txtFiltro")->clear();
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, edit("txtFiltro"), Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
};

} // namespace

class TestRicerca : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    void statements_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("expected");
        QTest::newRow("distinct stays") << "prepare" << "SELECT DISTINCT RID, A FROM X" << "SELECT DISTINCT RID, A FROM X";
        QTest::newRow("start empty after where") << "empty" << "SELECT RID FROM T WHERE A = 1"
                                                 << "SELECT¤¤ AS BLANK, RID FROM T WHERE A = 1 AND RID = -1";
        QTest::newRow("filter beside a sub-select")
            << "filter" << "SELECT RID FROM (SELECT RID FROM X WHERE K = 1) Q"
            << "SELECT RID FROM (SELECT RID FROM X WHERE K = 1) Q WHERE C LIKE ¤AB%¤";
        QTest::newRow("blank beside a union in a sub-select")
            << "prepare" << "SELECT RID, A FROM (SELECT RID, A FROM X UNION SELECT RID, A FROM Y) Q"
            << "SELECT¤¤ AS BLANK, RID, A FROM (SELECT RID, A FROM X UNION SELECT RID, A FROM Y) Q";
        QTest::newRow("limit, SQL Server, union inside a value")
            << "max0" << "SELECT RID FROM X WHERE A LIKE ¤a\tUNION\tSELECT B%¤ UNION SELECT RID FROM Y"
            << "SELECT TOP 7 RID FROM X WHERE A LIKE ¤a\tUNION\tSELECT B%¤ UNION SELECT TOP 7 RID FROM Y";
        QTest::newRow("limit, SQL Server") << "max0" << "SELECT RID FROM X UNION SELECT DISTINCT RID FROM Y"
                                           << "SELECT TOP 7 RID FROM X UNION SELECT DISTINCT TOP 7 RID FROM Y";
        QTest::newRow("column by position") << "name2" << "SELECT¤¤ AS BLANK, RID, P.CODICE, P.DESCRIZIONE AS DESCPRODOTTO FROM P"
                                            << "P.DESCRIZIONE";
        QTest::newRow("protected commas") << "name1" << "SELECT RID, IIf(A = 1‡ B‡ C) AS X, D FROM P" << "IIF(A = 1, B, C)";
        QTest::newRow("back end block") << "name1" << "SELECT RID, •A•Left(N‡ 2)•/A••M•LEFT(N‡ 2)•/M• AS L FROM P"
                                        << "LEFT(N, 2)";
    }
    void statements()
    {
        QFETCH(QString, step);
        QFETCH(QString, given);
        QFETCH(QString, expected);
        gAdoSqlServer().setTipoServer(TipoServer::FileDb);
        QString result;
        if (step == QLatin1String("prepare"))
            result = ricerca::prepareStatement(given, false);
        else if (step == QLatin1String("empty"))
            result = ricerca::prepareStatement(given, true);
        else if (step == QLatin1String("filter"))
            result = ricerca::addCondition(given, ricerca::likeCondition(QStringLiteral("C"), QStringLiteral("AB"), false));
        else if (step.startsWith(QLatin1String("max")))
            result = ricerca::withMaxRows(given, QStringLiteral("7"), step.mid(3).toInt());
        else
            result = ricerca::nomeCampo(given, step.mid(4).toInt());
        QCOMPARE(result, expected);
    }

    // A UNION search filters both halves, stops at "Max. Righe", searches
    // anywhere with chkLike and by the column whose header was clicked.
    void filterAndLimit_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void filterAndLimit()
    {
        QFETCH(QString, backend);
        QVERIFY(open(backend));
        Dialog d;
        d.dialog.startMe(kUnion, 0, false, false, 1, QString(), QStringLiteral("ChkLike_Prova"), false);
        QCOMPARE(d.edit("txtMax")->text(), QStringLiteral("500"));
        QCOMPARE(d.list()->headerItem()->text(1), QStringLiteral("CODICE"));
        QVERIFY(d.list()->isColumnHidden(0));
        QVERIFY(d.list()->topLevelItemCount() >= 5);

        d.filter(QStringLiteral("zzro"));
        QCOMPARE(codes(d.list()), (QStringList{"ZZROSA", "ZZROSSO", "ZZROVER"}));
        d.edit("txtMax")->setText(QStringLiteral("2"));
        d.filter(QStringLiteral("ZZRO"));
        QCOMPARE(d.list()->topLevelItemCount(), 2);

        d.edit("txtMax")->setText(QStringLiteral("500"));
        d.like()->setChecked(true);
        d.filter(QStringLiteral("OSS"));
        QCOMPARE(codes(d.list()), QStringList{"ZZROSSO"});

        // The description becomes the search column; a second click inverts.
        d.like()->setChecked(false);
        d.filter(QString());
        QHeaderView* header = d.list()->header();
        const QPoint description(header->sectionViewportPosition(2) + 5, 5);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, description);
        d.filter(QStringLiteral("Ros"));
        QCOMPARE(codes(d.list()), (QStringList{"ZZROSA", "ZZROSSO"}));
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, description);
        QCOMPARE(codes(d.list()), (QStringList{"ZZROSSO", "ZZROSA"}));

        d.like()->setChecked(true);
        d.dialog.reject();
        QCOMPARE(machineSettings().value(QStringLiteral("Options/ChkLike_Prova")).toInt(), 1);
        Dialog again;
        again.dialog.startMe(kUnion, 0, false, false, 1, QString(), QStringLiteral("ChkLike_Prova"), false);
        QVERIFY(again.like()->isChecked());
        QVERIFY(machineSettings().value(QStringLiteral("Options/FrmRicerca_Widht")).toInt() > 0);
    }

    // What the user types in the filter is text to look for, never part of
    // the statement: the delimiter gives no error, a crafted condition finds
    // nothing, "%" matches only itself. tst_roundtrip tries every such
    // character on the statement; here the dialog's own path, in both modes.
    void typedFilter_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("contains");
        QTest::addColumn<QStringList>("expected");
        for (const QString& b : testdb::backends()) {
            auto row = [&b](const char* name, const QString& typed, bool contains, const QStringList& expected) {
                testdb::row(b, QLatin1String(name)) << typed << contains << expected;
            };
            row("delimiter", QStringLiteral("¤"), true, {"YYCENTO"});
            row("crafted condition", QStringLiteral("x¤ OR 1=1 OR DESCRIZIONE LIKE ¤"), false, {});
            row("percent", QStringLiteral("Sconto 100%"), false, {"YYCENTO"});
            row("backslash", QStringLiteral("C:\\"), true, {"YYCENTX"});
            row("mark-up", QStringLiteral("•A•"), true, {"YYCENTX"});
        }
    }
    void typedFilter()
    {
        QFETCH(QString, backend);
        QFETCH(QString, typed);
        QFETCH(bool, contains);
        QFETCH(QStringList, expected);
        QVERIFY(open(backend));
        if (testdb::number(QStringLiteral("SELECT COUNT(*) FROM Colori WHERE CODICE = ¤YYCENTO¤")) == 0)
            testdb::run(QStringLiteral("INSERT INTO Colori (CODICE, DESCRIZIONE) VALUES (¤YYCENTO¤, %1), (¤YYCENTX¤, %2)")
                            .arg(sqlText(QStringLiteral("Sconto 100% ¤ netto")), sqlText(QStringLiteral("Sconto 1000 C:\\•A•"))));
        testdb::ErrorRecorder errors;
        Dialog d;   // rows of its own (YY...), which the other cases do not see
        d.dialog.startMe(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Colori WHERE CODICE LIKE ¤YY%¤ ORDER BY CODICE"), 0,
                         false, false, 2);
        d.like()->setChecked(contains);
        d.type(typed);
        QCOMPARE(d.edit("txtFiltro")->text(), typed);
        QCOMPARE(codes(d.list()), expected);
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).information));
    }

    // Cancel, the close box, a choice, Enter in the filter, "&Nuovo".
    void choice_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("expected");   // "rid" for the row ZZBLU
        for (const QString& b : testdb::backends()) {
            testdb::row(b, "cancel") << "cmdCancel" << "0";
            testdb::row(b, "close box") << "close" << "0";
            testdb::row(b, "escape") << "escape" << "0";
            testdb::row(b, "ok") << "cmdOK" << "rid";
            testdb::row(b, "enter") << "enter" << "rid";
            testdb::row(b, "new") << "cmdNuovo" << "-1";
        }
    }
    void choice()
    {
        QFETCH(QString, backend);
        QFETCH(QString, how);
        QFETCH(QString, expected);
        QVERIFY(open(backend));
        const int blu = testdb::number(QStringLiteral("SELECT RID FROM Colori WHERE CODICE = ¤ZZBLU¤"));
        testdb::ScriptedDialogs script;
        script.expectDialog(QStringLiteral("frmRicerca"), [&](QDialog& dialog) {
            auto* filtro = dialog.findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
            QTest::keyClicks(filtro, QStringLiteral("ZZB"));
            if (how == QLatin1String("close"))
                dialog.close();
            else if (how == QLatin1String("escape"))
                QTest::keyClick(filtro, Qt::Key_Escape);
            else if (how == QLatin1String("enter"))
                QTest::keyClick(filtro, Qt::Key_Return);
            else
                testdb::click(dialog, how);
        });
        const int rid = frmRicerca::cerca(kUnion, QStringLiteral("Colori e marche"), 1, true, true);
        QCOMPARE(rid, expected == QLatin1String("rid") ? blu : expected.toInt());
    }

    // Starting empty shows the headers and no row until a filter is typed.
    void startEmpty_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void startEmpty()
    {
        QFETCH(QString, backend);
        QVERIFY(open(backend));
        Dialog d;
        d.dialog.startMe(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Colori ORDER BY CODICE"), 0, true);
        QCOMPARE(d.list()->topLevelItemCount(), 0);
        QCOMPARE(d.list()->headerItem()->text(2), QStringLiteral("DESCRIZIONE"));
        d.filter(QStringLiteral("ZZ"));
        QCOMPARE(codes(d.list()), (QStringList{"ZZBLU", "ZZROSA", "ZZROSSO"}));
        d.filter(QString());
        QCOMPARE(d.list()->topLevelItemCount(), 0);
    }

    // The chooser gives back the keys of the rows picked, in list order.
    void selectElement_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void selectElement()
    {
        QFETCH(QString, backend);
        QVERIFY(open(backend));
        RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
            QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Colori WHERE CODICE LIKE ¤ZZ%¤ ORDER BY CODICE"), QStringLiteral("test"));
        QVERIFY(rs);
        gAdoSqlServer().disconnect();
        frmSelectElement dialog;
        dialog.startMe(QStringLiteral("Codice¤1800¤CODICE|Descrizione¤4500¤DESCRIZIONE|"), *rs, true, false);
        auto* list = dialog.findChild<QTreeWidget*>(QStringLiteral("lswElenco"));
        QCOMPARE(list->headerItem()->text(1), QStringLiteral("Codice"));
        QCOMPARE(list->columnWidth(2), 300);
        QCOMPARE(codes(list), (QStringList{"ZZBLU", "ZZROSA", "ZZROSSO"}));
        list->topLevelItem(2)->setSelected(true);
        list->topLevelItem(0)->setSelected(true);
        testdb::click(dialog, QStringLiteral("cmdOK"));
        const auto key = [](const char* code) {
            return QStringLiteral("E_%1").arg(testdb::number(QStringLiteral("SELECT RID FROM Colori WHERE CODICE = ¤%1¤").arg(QLatin1String(code))));
        };
        QCOMPARE(dialog.selectedKeys(), (QStringList{key("ZZBLU"), key("ZZROSSO")}));
    }

    // A combo filled from key and text, an entry chosen by its key.
    void comboByKey_data() { testdb::addBackendColumn(); testdb::addBackendRows(); }
    void comboByKey()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        QComboBox combo;
        combo.setObjectName(QStringLiteral("cmbNumeratore"));
        QVERIFY(fillComboBox(QStringLiteral("SELECT RID, DESCRIZIONE FROM Numeratori ORDER BY DESCRIZIONE"), &combo));
        QCOMPARE(combo.count(), 5);
        QCOMPARE(combo.itemText(0), QStringLiteral("Carichi da fornitore"));
        setListindexByItemData(&combo, 2);
        QCOMPARE(combo.currentText(), QStringLiteral("Documenti di trasporto"));
        setListindexByItemData(&combo, 99);
        QCOMPARE(combo.currentIndex(), -1);
        QCOMPARE(gAdoSqlServer().getConnectionCount(), 0);
    }

    // Numbers sort as numbers, dates as dates, text without regard to case.
    void listSort()
    {
        QList<QVariantList> rows{{10, QStringLiteral("b"), QDate(2026, 3, 1)},
                                 {9, QStringLiteral("A"), QDate(2025, 12, 31)},
                                 {100, QStringLiteral("c"), QDate(2026, 1, 15)}};
        const auto column = [&rows](int c) {
            QVariantList values;
            for (const QVariantList& row : rows)
                values << row.at(c);
            return values;
        };
        orderVbaList(rows, 0);
        QCOMPARE(column(0), (QVariantList{9, 10, 100}));
        orderVbaList(rows, 1, true);
        QCOMPARE(column(1), (QVariantList{QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("A")}));
        orderVbaList(rows, 2);
        QCOMPARE(column(0), (QVariantList{9, 100, 10}));
    }
};

QTEST_MAIN(TestRicerca)
#include "tst_ricerca.moc"
