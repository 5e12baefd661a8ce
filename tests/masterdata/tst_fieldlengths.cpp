// Every text field of the table screens is as long as its column in the
// schema, so that no back end refuses a text for its length: each field is
// listed here with its column (or as not a text column), and a field that a
// screen adds without saying where it goes fails the test. Texts typed past
// the end, emoji included, are saved and read back whole on both back ends.
#include "data/cadosqlserver.h"
#include "screens/framework/frmsimpleform.h"
#include "masterdata/masterdatascreens.h"
#include "masterdata/opzionicampi.h"
#include "data/schema.h"
#include "core/screenregistry.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QLineEdit>
#include <QtTest>
#include <memory>

namespace {

// "txtCodice=Iva.CODICE": the field and its column; "txtValoreIva=": a
// field that holds no text column (a number, a rate).
using Bindings = QStringList;

// The screens, with the argument that opens them and their fields.
QList<std::tuple<QString, QString, Bindings>> screenFields()
{
    QList<std::tuple<QString, QString, Bindings>> screens{
        {"frmIva", {}, {"txtCodice=Iva.CODICE", "txtDescrizione=Iva.DESCRIZIONE", "txtValoreIva="}},
        {"frmCausali", {}, {"txtCodice=Causali.CODICE", "txtDescrizione=Causali.DESCRIZIONE",
                            "txtMagazzinoOrig=Magazzini.CODICE", "txtMagazzinoDest=Magazzini.CODICE",
                            "txtDare1=PianoConti.CODICE", "txtDare2=PianoConti.CODICE",
                            "txtAvere1=PianoConti.CODICE", "txtAvere2=PianoConti.CODICE"}},
        {"frmBanche", {}, {"txtCodice=Banche.CODICE", "txtDescrizione=Banche.DESCRIZIONE", "txtABI=Banche.ABI",
                           "txtCAB=Banche.CAB", "txtCIN=Banche.CIN", "txtAgenzia=Banche.AGENZIA",
                           "txtIndirizzo=Banche.INDIRIZZO", "txtCivico=Banche.CIVICO", "txtCAP=Banche.CAP",
                           "txtCitta=Banche.CITTA", "txtProvincia=Banche.PROVINCIA",
                           "txtTelefono=Banche.TELEFONO", "txtFax=Banche.FAX"}},
        {"frmVenditore", {}, {"txtCodice=Venditori.CODICE", "txtDescrizione=Venditori.DESCRIZIONE",
                              "txtCodiceExtra=Venditori.CODICEEXTRA"}},
        {"frmTipoDocumento", {}, {"txtCodice=TipoDocumenti.CODICE", "txtDescrizione=TipoDocumenti.DESCRIZIONE",
                                  "txtDescStampa=TipoDocumenti.DESCSTAMPA", "txtCausale=Causali.CODICE",
                                  "txtRDA1=", "txtRDA2="}},
        {"frmNumeratori", {}, {"txtDescrizione=Numeratori.DESCRIZIONE", "txtNumero="}},
        // The account code is the tree's own rule (8), stricter than its column.
        {"frmPianoConti", {}, {"txtCodice=", "txtDescrizione=PianoConti.DESCRIZIONE"}},
    };
    for (int i = 0; i <= 14; ++i) {
        const QString item = i < 13 ? "mnuTab_" + QString::number(i) : QString(i == 13 ? "mnuCollezioni" : "mnuFasceClienti");
        const QString table = simpleFormUse(item).tabella;
        screens.append({"frmSimpleForm", item, {"txtCodice=" + table + ".CODICE", "txtDescrizione=" + table + ".DESCRIZIONE"}});
    }
    // Options live in a memo column (their own rules limit them); the key
    // fields hold a code of another table.
    Bindings opzioni;
    for (const opzioni::Campo& c : opzioni::campi())
        opzioni << QLatin1String(c.controllo) + QLatin1Char('=')
                       + (c.tipo == opzioni::Controllo::Chiave
                              ? QLatin1String(c.tabella->table) + QLatin1Char('.') + QLatin1String(c.tabella->codeColumn)
                              : QString());
    screens.append({"frmOpzioni", QString(), opzioni});
    return screens;
}

// One row per back end and screen; `only` keeps those screens alone.
void addScreenRows(const QStringList& only = {})
{
    testdb::addBackendColumn();
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<Bindings>("bindings");
    for (const QString& b : testdb::backends())
        for (const auto& [screen, argument, bindings] : screenFields())
            if (only.isEmpty() || only.contains(screen + argument))
                testdb::row(b, QString(screen + u' ' + argument).trimmed()) << screen << argument << bindings;
}

int schemaLength(const QString& binding)
{
    const schema::Table* t = schema::findTable(binding.section(QLatin1Char('.'), 0, 0));
    if (!t)
        return -1;
    for (const schema::Column& c : t->columns)
        if (c.name.compare(binding.section(QLatin1Char('.'), 1), Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return -1;
}

std::unique_ptr<QWidget> open(const QString& name, const QString& argument)
{
    const screens::ScreenEntry* entry = screens::findScreen(name);
    return std::unique_ptr<QWidget>(entry ? entry->create(nullptr, argument.isEmpty() ? QVariant() : QVariant(argument)) : nullptr);
}

// Types the text as a keyboard does, one character (one or two UTF-16
// units) a key.
void typeCharacters(QLineEdit* field, const QString& text)
{
    field->clear();
    field->setFocus();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qsizetype units = text.at(i).isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, text.mid(i, units), Qt::NoModifier);
        i += units - 1;
    }
}

// Mixed characters filling `length` - 1 UTF-16 units, then an emoji that
// no longer fits whole, then more letters. `kept` is what the field may
// hold: the emoji left out, one letter after it.
QString acrossTheEnd(int length, QString* kept)
{
    const QStringList pieces{QStringLiteral("a"), QStringLiteral("é"), QString::fromUtf8("😀"), QStringLiteral("¤"),
                             QStringLiteral("'"), QStringLiteral("\\"), QStringLiteral("‡"), QString::fromUtf8("𝄞")};
    QString prefix;
    for (int i = 0; prefix.size() + pieces.at(i % pieces.size()).size() <= length - 1; ++i)
        prefix += pieces.at(i % pieces.size());
    while (prefix.size() < length - 1)
        prefix += QLatin1Char('a');
    *kept = prefix + QLatin1Char('x');
    return prefix + QString::fromUtf8("😀") + QStringLiteral("xyz");
}

} // namespace

class TestFieldLengths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        testdb::isolateProgramFolder();
        registerMasterdataScreens();
    }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { gAdoSqlServer().closeAll(); }

    void everyTextField_data() { addScreenRows(); }
    void everyTextField()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(Bindings, bindings);
        QVERIFY(testdb::shared(backend).isValid());
        const std::unique_ptr<QWidget> window = open(screen, argument);
        QVERIFY(window);
        QHash<QString, QString> columns;
        for (const QString& b : std::as_const(bindings))
            columns.insert(b.section(QLatin1Char('='), 0, 0), b.section(QLatin1Char('='), 1));
        int limited = 0;
        for (QLineEdit* field : window->findChildren<QLineEdit*>()) {
            if (field->objectName().isEmpty() || field->objectName().startsWith(QLatin1String("qt_")))
                continue;   // the editors inside combo boxes and spin boxes
            QVERIFY2(columns.contains(field->objectName()), qPrintable(field->objectName() + " has no column"));
            const QString column = columns.value(field->objectName());
            if (column.isEmpty())
                continue;
            const int length = schemaLength(column);
            QVERIFY2(length >= 0, qPrintable(column + " is not in the schema"));
            if (length == 0) {   // a code that is a number (a customer's)
                QCOMPARE(field->maxLength(), QLineEdit().maxLength());
                continue;
            }
            QCOMPARE(field->maxLength(), length);
            ++limited;

            // Typed past the end: it stops at the column, on whole characters.
            if (!field->isEnabled())
                continue;   // a field that its screen's state keeps locked
            QString kept;
            typeCharacters(field, acrossTheEnd(length, &kept));
            QVERIFY2(field->text().isValidUtf16(), qPrintable(field->objectName()));
            QVERIFY2(field->text().compare(kept, Qt::CaseInsensitive) == 0, qPrintable(field->objectName() + ": " + field->text()));
        }
        QVERIFY(limited > 0);
    }

    // A record typed to the end of every field of its own table, emoji at
    // the cut, is saved without a word from the server and read back as the
    // fields show it.
    void fullRecordSaved_data() { addScreenRows({"frmBanche", "frmSimpleFormmnuTab_8", "frmIva"}); }
    void fullRecordSaved()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(Bindings, bindings);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::ErrorRecorder errors;
        const std::unique_ptr<QWidget> window = open(screen, argument);
        QVERIFY(window);
        const QString table = bindings.first().section(QLatin1Char('='), 1).section(QLatin1Char('.'), 0, 0);
        QStringList columns, typed;
        for (const QString& b : std::as_const(bindings)) {
            if (!b.contains("=" + table + "."))
                continue;
            auto* field = window->findChild<QLineEdit*>(b.section(QLatin1Char('='), 0, 0));
            QVERIFY(field);
            QString kept;
            typeCharacters(field, acrossTheEnd(field->maxLength(), &kept));
            typed << field->text();
            columns << b.section(QLatin1Char('.'), 1);
        }
        auto* save = window->findChild<QWidget*>("cmdCommand_1");
        QVERIFY(save);
        QTest::mouseClick(save, Qt::LeftButton);
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).description));

        const QList<QVariantList> rows = testdb::rows("SELECT " + columns.join(", ") + " FROM " + table + " WHERE CODICE = "
                                                      + sqlText(typed.first()));
        QCOMPARE(rows.size(), 1);
        for (qsizetype i = 0; i < columns.size(); ++i)
            QCOMPARE(rows.first().at(i).toString(), typed.at(i));
    }
};

QTEST_MAIN(TestFieldLengths)
#include "tst_fieldlengths.moc"
