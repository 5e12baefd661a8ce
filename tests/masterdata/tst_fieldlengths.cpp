// Every text field of the table screens is as long as its column in the
// schema, so that no back end refuses a text for its length: each field is
// listed here with its column (or as not a text column), and a field that a
// screen adds without saying where it goes fails the test. Texts typed past
// the end, emoji included, are saved and read back whole on both back ends.
#include "cadosqlserver.h"
#include "frmsimpleform.h"
#include "masterdatascreens.h"
#include "opzionicampi.h"
#include "recordset.h"
#include "schema.h"
#include "screenregistry.h"
#include "sqlliteral.h"
#include "testdb.h"

#include <QLineEdit>
#include <QtTest>
#include <memory>

namespace {

// "txtCodice=Iva.CODICE": the field and its column; "txtValoreIva=": a
// field that holds no text column (a number, a rate).
using Bindings = QStringList;

int schemaLength(const QString& binding)
{
    const QString table = binding.section(QLatin1Char('.'), 0, 0);
    const QString column = binding.section(QLatin1Char('.'), 1);
    const schema::Table* t = schema::findTable(table);
    if (!t)
        return -1;
    for (const schema::Column& c : t->columns)
        if (c.name.compare(column, Qt::CaseInsensitive) == 0)
            return c.kind == schema::ColKind::Text ? c.length : 0;
    return -1;
}

std::unique_ptr<QWidget> open(const QString& name, const QVariant& argument)
{
    const screens::ScreenEntry* entry = screens::findScreen(name);
    return std::unique_ptr<QWidget>(entry ? entry->create(nullptr, argument) : nullptr);
}

bool wellFormed(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (!text.at(i).isHighSurrogate() || i + 1 >= text.size() || !text.at(i + 1).isLowSurrogate())
            return false;
        ++i;
    }
    return true;
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
    for (int i = 0;; ++i) {
        const QString& piece = pieces.at(i % pieces.size());
        if (prefix.size() + piece.size() > length - 1)
            break;
        prefix += piece;
    }
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

    void everyTextField_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<Bindings>("bindings");
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
        for (const char* item : {"mnuTab_0", "mnuTab_1", "mnuTab_2", "mnuTab_3", "mnuTab_4", "mnuTab_5", "mnuTab_6",
                                 "mnuTab_7", "mnuTab_8", "mnuTab_9", "mnuTab_10", "mnuTab_11", "mnuTab_12",
                                 "mnuCollezioni", "mnuFasceClienti"}) {
            const QString table = simpleFormUse(QString::fromLatin1(item)).tabella;
            screens.append({QStringLiteral("frmSimpleForm"), QString::fromLatin1(item),
                            {"txtCodice=" + table + ".CODICE", "txtDescrizione=" + table + ".DESCRIZIONE"}});
        }
        // Options live in a memo column (their own rules limit them); the key
        // fields hold a code of another table.
        Bindings opzioni;
        for (const opzioni::Campo& c : opzioni::campi()) {
            if (c.tipo == opzioni::Controllo::Chiave)
                opzioni << QLatin1String(c.controllo) + QLatin1Char('=') + QLatin1String(c.tabella->nome) + QLatin1Char('.')
                               + QLatin1String(c.tabella->colonnaCodice);
            else
                opzioni << QLatin1String(c.controllo) + QLatin1Char('=');
        }
        screens.append({QStringLiteral("frmOpzioni"), QString(), opzioni});

        for (const QString& b : testdb::backends())
            for (const auto& [screen, argument, bindings] : screens)
                QTest::addRow("%s %s %s", qPrintable(b), qPrintable(screen), qPrintable(argument))
                    << b << screen << argument << bindings;
    }
    void everyTextField()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(Bindings, bindings);
        QVERIFY(testdb::shared(backend).isValid());
        const std::unique_ptr<QWidget> window = open(screen, argument.isEmpty() ? QVariant() : QVariant(argument));
        QVERIFY(window);
        QHash<QString, QString> columns;
        for (const QString& b : std::as_const(bindings))
            columns.insert(b.section(QLatin1Char('='), 0, 0), b.section(QLatin1Char('='), 1));
        int limited = 0;
        for (QLineEdit* field : window->findChildren<QLineEdit*>()) {
            if (field->objectName().isEmpty() || field->objectName().startsWith(QLatin1String("qt_")))
                continue;   // the editors inside combo boxes and spin boxes
            QVERIFY2(columns.contains(field->objectName()), qPrintable(field->objectName() + QStringLiteral(" has no column")));
            const QString column = columns.value(field->objectName());
            if (column.isEmpty())
                continue;
            const int length = schemaLength(column);
            QVERIFY2(length >= 0, qPrintable(column + QStringLiteral(" is not in the schema")));
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
            QVERIFY2(wellFormed(field->text()), qPrintable(field->objectName()));
            QVERIFY2(field->text().compare(kept, Qt::CaseInsensitive) == 0,
                     qPrintable(field->objectName() + QStringLiteral(": ") + field->text()));
        }
        QVERIFY(limited > 0);
    }

    // A record typed to the end of every field, emoji at the cut, is saved
    // without a word from the server and read back as the fields show it.
    void fullRecordSaved_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<QStringList>("columns");
        for (const QString& b : testdb::backends()) {
            QTest::addRow("%s frmBanche", qPrintable(b))
                << b << "frmBanche" << QString() << "Banche"
                << QStringList{"txtCodice", "txtDescrizione", "txtABI", "txtCAB", "txtCIN", "txtAgenzia", "txtIndirizzo",
                               "txtCivico", "txtCAP", "txtCitta", "txtProvincia", "txtTelefono", "txtFax"}
                << QStringList{"CODICE", "DESCRIZIONE", "ABI", "CAB", "CIN", "AGENZIA", "INDIRIZZO", "CIVICO", "CAP",
                               "CITTA", "PROVINCIA", "TELEFONO", "FAX"};
            QTest::addRow("%s frmSimpleForm", qPrintable(b))
                << b << "frmSimpleForm" << "mnuTab_8" << "Marche" << QStringList{"txtCodice", "txtDescrizione"}
                << QStringList{"CODICE", "DESCRIZIONE"};
            QTest::addRow("%s frmIva", qPrintable(b)) << b << "frmIva" << QString() << "Iva"
                                                      << QStringList{"txtCodice", "txtDescrizione"}
                                                      << QStringList{"CODICE", "DESCRIZIONE"};
        }
    }
    void fullRecordSaved()
    {
        QFETCH(QString, backend);
        QFETCH(QString, screen);
        QFETCH(QString, argument);
        QFETCH(QString, table);
        QFETCH(QStringList, fields);
        QFETCH(QStringList, columns);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::ErrorRecorder errors;
        const std::unique_ptr<QWidget> window = open(screen, argument.isEmpty() ? QVariant() : QVariant(argument));
        QVERIFY(window);
        QStringList typed;
        for (const QString& name : std::as_const(fields)) {
            auto* field = window->findChild<QLineEdit*>(name);
            QVERIFY(field);
            QString kept;
            typeCharacters(field, acrossTheEnd(field->maxLength(), &kept));
            typed << field->text();
        }
        auto* save = window->findChild<QWidget*>(QStringLiteral("cmdCommand_1"));
        QVERIFY(save);
        QTest::mouseClick(save, Qt::LeftButton);
        QVERIFY2(errors.reports.isEmpty(), qPrintable(errors.reports.value(0).description));

        RecordsetPtr rs = gAdoSqlServer().getNewRecordset(QStringLiteral("SELECT ") + columns.join(QStringLiteral(", "))
                                                              + QStringLiteral(" FROM ") + table + QStringLiteral(" WHERE CODICE = ")
                                                              + sqlText(typed.first()),
                                                          QStringLiteral("test"));
        QVERIFY(rs);
        QVERIFY(!rs->eof());
        for (qsizetype i = 0; i < columns.size(); ++i)
            QCOMPARE(rs->text(columns.at(i)), typed.at(i));
        rs->close();
        gAdoSqlServer().disconnect();
    }
};

QTEST_MAIN(TestFieldLengths)
#include "tst_fieldlengths.moc"
