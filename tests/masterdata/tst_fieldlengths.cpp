// Every text field of the table screens is as long as its column in the
// schema, so that no back end refuses a text for its length: each field is
// listed here with its column (or as not a text column), and a field that a
// screen adds without saying where it goes fails the test. A text typed past
// the end, emoji included, stops at the column on whole characters. (That
// such a text is stored and read back whole, tst_roundtrip shows.)
#include "data/cadosqlserver.h"
#include "data/schema.h"
#include "masterdata/masterdatascreens.h"
#include "masterdata/opzionicampi.h"
#include "screens/framework/frmsimpleform.h"
#include "support/screendriver.h"
#include "support/testdb.h"

#include <QLineEdit>
#include <QtTest>

namespace {

// "txtCodice=Iva.CODICE": the field and its column; "txtValoreIva=": a
// field that holds no text column (a number, a rate).
using Bindings = QStringList;

int schemaLength(const QString& binding)
{
    const schema::Table* t = schema::findTable(binding.section('.', 0, 0));
    for (const schema::Column& c : t ? t->columns : QList<schema::Column>())
        if (c.name.compare(binding.section('.', 1), Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return -1;
}

// Mixed characters filling `length` - 1 UTF-16 units, then an emoji that
// no longer fits whole, then more letters. `kept` is what the field may
// hold: the emoji left out, one letter after it.
QString acrossTheEnd(int length, QString* kept)
{
    const QStringList pieces{"a", "é", "😀", "¤", "'", "\\", "‡", "𝄞"};
    QString prefix;
    for (int i = 0; prefix.size() + pieces.at(i % pieces.size()).size() <= length - 1; ++i)
        prefix += pieces.at(i % pieces.size());
    prefix = prefix.leftJustified(length - 1, 'a');
    *kept = prefix + 'x';
    return prefix + "😀xyz";
}

} // namespace

class TestFieldLengths : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        BackendTest::initTestCase();
        registerMasterdataScreens();
    }

    // The screens, with the argument that opens them, and their fields.
    void everyTextField_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<Bindings>("bindings");
        const auto row = [](const QString& screen, const QString& argument, const Bindings& bindings) {
            QTest::newRow(qPrintable(QString(screen + ' ' + argument).trimmed())) << screen << argument << bindings;
        };
        row("frmIva", {}, {"txtCodice=Iva.CODICE", "txtDescrizione=Iva.DESCRIZIONE", "txtValoreIva="});
        row("frmCausali", {},
            {"txtCodice=Causali.CODICE", "txtDescrizione=Causali.DESCRIZIONE", "txtMagazzinoOrig=Magazzini.CODICE",
             "txtMagazzinoDest=Magazzini.CODICE", "txtDare1=PianoConti.CODICE", "txtDare2=PianoConti.CODICE",
             "txtAvere1=PianoConti.CODICE", "txtAvere2=PianoConti.CODICE"});
        row("frmBanche", {},
            {"txtCodice=Banche.CODICE", "txtDescrizione=Banche.DESCRIZIONE", "txtABI=Banche.ABI", "txtCAB=Banche.CAB",
             "txtCIN=Banche.CIN", "txtAgenzia=Banche.AGENZIA", "txtIndirizzo=Banche.INDIRIZZO",
             "txtCivico=Banche.CIVICO", "txtCAP=Banche.CAP", "txtCitta=Banche.CITTA", "txtProvincia=Banche.PROVINCIA",
             "txtTelefono=Banche.TELEFONO", "txtFax=Banche.FAX"});
        row("frmVenditore", {},
            {"txtCodice=Venditori.CODICE", "txtDescrizione=Venditori.DESCRIZIONE",
             "txtCodiceExtra=Venditori.CODICEEXTRA"});
        row("frmTipoDocumento", {},
            {"txtCodice=TipoDocumenti.CODICE", "txtDescrizione=TipoDocumenti.DESCRIZIONE",
             "txtDescStampa=TipoDocumenti.DESCSTAMPA", "txtCausale=Causali.CODICE", "txtRDA1=", "txtRDA2="});
        row("frmNumeratori", {}, {"txtDescrizione=Numeratori.DESCRIZIONE", "txtNumero="});
        // The account code is the tree's own rule (8), stricter than its column.
        row("frmPianoConti", {}, {"txtCodice=", "txtDescrizione=PianoConti.DESCRIZIONE"});
        for (int i = 0; i <= 14; ++i) {
            const QString item =
                i < 13 ? "mnuTab_" + QString::number(i) : QString(i == 13 ? "mnuCollezioni" : "mnuFasceClienti");
            const QString table = simpleFormUse(item).tabella;
            row("frmSimpleForm", item, {"txtCodice=" + table + ".CODICE", "txtDescrizione=" + table + ".DESCRIZIONE"});
        }
        // Options live in a memo column (their own rules limit them); the key
        // fields hold a code of another table.
        Bindings opzioni;
        for (const opzioni::Campo& c : opzioni::campi())
            opzioni << c.control + '='
                    + (c.tipo == opzioni::Controllo::Chiave
                           ? QLatin1String(c.lookup->table) + '.' + QLatin1String(c.lookup->codeColumn)
                           : QString());
        row("frmOpzioni", {}, opzioni);
    }
    void everyTextField()
    {
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(Bindings, bindings);
        testdb::Screen<testdb::RegisteredScreen> window(screen, argument.isEmpty() ? QVariant() : QVariant(argument));
        QHash<QString, QString> columns;
        for (const QString& b : std::as_const(bindings))
            columns.insert(b.section('=', 0, 0), b.section('=', 1));
        int limited = 0;
        for (QLineEdit* field : window.screen.findChildren<QLineEdit*>()) {
            if (field->objectName().isEmpty() || field->objectName().startsWith("qt_"))
                continue; // the editors inside combo boxes and spin boxes
            QVERIFY2(columns.contains(field->objectName()), qPrintable(field->objectName() + " has no column"));
            const QString column = columns.value(field->objectName());
            if (column.isEmpty())
                continue;
            const int length = schemaLength(column);
            QVERIFY2(length >= 0, qPrintable(column + " is not in the schema"));
            if (length == 0) { // a code that is a number (a customer's)
                QCOMPARE(field->maxLength(), QLineEdit().maxLength());
                continue;
            }
            QCOMPARE(field->maxLength(), length);
            ++limited;
            if (!field->isEnabled())
                continue; // a field that its screen's state keeps locked
            QString kept;
            testdb::typeKeys(field, acrossTheEnd(length, &kept));
            QVERIFY2(field->text().isValidUtf16(), qPrintable(field->objectName()));
            QVERIFY2(field->text().compare(kept, Qt::CaseInsensitive) == 0,
                     qPrintable(field->objectName() + ": " + field->text()));
        }
        QVERIFY(limited > 0);
    }
};

QTEST_MAIN(TestFieldLengths)
#include "tst_fieldlengths.moc"
