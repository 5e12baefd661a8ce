// The typed input fields: what each kind accepts, how it formats on leaving,
// and the wrappers on real widgets (focus, Enter, arrows, function keys).
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/services/typedinput.h"
#include "support/localerows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

using namespace typedinput;

class TestTypedInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyPress_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("caseState");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("allSelected");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("result"); // empty: refused
        const auto row = [](const char* name, Kind kind, const char* text, const char* typed, const char* result,
                            int caseState = 0, bool allSelected = false) {
            addRows(name, int(kind), caseState, QString(text), allSelected, QString(typed), QString(result));
        };
        row("dot becomes comma", Decimale, "12", ".", ",");
        row("dot becomes comma (kind 9)", DecimaleZero, "", ".", ",");
        row("second comma refused", Decimale, "1,5", ",", "");
        row("second comma as dot refused", Decimale, "1,5", ".", "");
        row("minus in empty field", Decimale, "", "-", "-");
        row("minus after text refused", Intero, "12", "-", "");
        row("minus over a full selection", InteroZero, "12", "-", "-", 0, true);
        row("minus in free text", Testo, "ab", "-", "-");
        row("letter in whole number", Intero, "", "a", "");
        row("comma in whole number", InteroNonFormattato, "", ",", "");
        row("dot in time", Ora, "08", ".", ".");
        row("colon in time refused", Ora, "08", ":", "");
        row("slash in date", Data, "01", "/", "/");
        row("plus in date refused", Data, "01", "+", "");
        row("plus in date expression", EspressioneData, "", "+", "+");
        row("upper case", Testo, "", "à", "À", 1);
        row("lower case", Testo, "", "Q", "q", 2);
        row("backspace always", Intero, "1", "\b", "\b");
    }
    void keyPress()
    {
        LOCALE_SCOPE;
        QFETCH(int, kind);
        QFETCH(int, caseState);
        QFETCH(QString, text);
        QFETCH(bool, allSelected);
        QFETCH(QString, typed);
        QFETCH(QString, result);
        const QChar accepted = filterKeyPress(kind, caseState, text, allSelected, typed.at(0));
        QCOMPARE(accepted.isNull() ? QString() : QString(accepted), result);
    }

    // What a field holds when it is left, and whether it raises its event.
    void contentValidate_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("precision");
        QTest::addColumn<bool>("thousands");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::addColumn<bool>("event");
        const auto row = [](const char* name, Kind kind, const char* text, const char* result, bool event,
                            int precision = 2, bool thousands = true) {
            addRows(name, int(kind), precision, thousands, QString(text), QString(result), event);
        };
        row("decimal", Decimale, "1234,5", "1.234,50", true);
        row("decimal without thousands", Decimale, "-1234567,1239", "-1234567,124", true, 3, false);
        row("decimal as typed", Decimale, "1234,5", "1234,5", false, -1);
        row("decimal empty stays", Decimale, "", "", true);
        row("decimal empty becomes 0", DecimaleZero, "  ", "0,00", true);
        row("lone minus stays", Decimale, "-", "-", true);
        row("whole number", Intero, "1234567", "1.234.567", false);
        row("whole number empty becomes 0", InteroZero, "", "0", false);
        row("whole number left as typed", InteroNonFormattato, "1234", "1234", false);
        row("date six digits", Data, "010508", "01/05/2008", true);
        row("date eight digits", Data, "01052008", "01/05/2008", true);
        row("date 31 February empties", Data, "31/02/2008", "", true);
        row("short date only tested", Data, "1/5/08", "1/5/08", true);
        row("short wrong date empties", Data, "1/13/08", "", true);
        row("leap day", Data, "29022024", "29/02/2024", true);
        row("date empty", Data, "", "", true);
        row("time four digits", Ora, "0830", "08:30:00", false);
        row("time six digits", Ora, "173005", "17:30:05", false);
        row("time with dots", Ora, "8.5", "08:05:00", false);
        row("time 25 hours empties", Ora, "2500", "", false);
        row("free text untouched", Testo, " a,b ", " a,b ", false);
    }
    void contentValidate()
    {
        LOCALE_SCOPE;
        QFETCH(int, kind);
        QFETCH(int, precision);
        QFETCH(bool, thousands);
        QFETCH(QString, text);
        QFETCH(QString, result);
        QFETCH(bool, event);
        const Validation v = typedinput::contentValidate(kind, text, precision, thousands, "DD/MM/YYYY");
        QCOMPARE(v.text, result);
        QCOMPARE(v.raiseEvent, event);
    }

    // The wrappers on real widgets: typing, Enter, arrows, leaving, F-keys.
    void textBoxOnAForm()
    {
        QWidget form;
        auto* layout = new QVBoxLayout(&form);
        const auto add = [layout](auto* w, const char* name) {
            w->setObjectName(QLatin1String(name));
            layout->addWidget(w);
            return w;
        };
        auto* txtImporto = add(new QLineEdit(&form), "txtImporto");
        auto* txtData = add(new QLineEdit(&form), "txtData");
        auto* txtCodice = add(new QLineEdit(&form), "txtCodice");
        auto* cmbTipo = add(new QComboBox(&form), "cmbTipo");
        cmbTipo->addItems({QStringLiteral("A"), QStringLiteral("B")});
        auto* chkAttivo = add(new QCheckBox(&form), "chkAttivo");

        cKeyFunction keys;
        cTextBox importo(txtImporto, Decimale);
        cTextBox data(txtData, Data);
        cTextBox codice(txtCodice, Testo);
        codice.setIsCodice(true);
        codice.setCaseState(1);
        cComboBox tipo(cmbTipo);
        cCheckBox attivo(chkAttivo);
        for (cInputBase* input : std::initializer_list<cInputBase*>{&importo, &data, &codice, &tipo, &attivo})
            input->setCKeyRef(&keys);
        QSignalSpy functionKeys(&keys, &cKeyFunction::evtFunctionKeyPressed);
        QSignalSpy validated(&importo, &cTextBox::evtContentValidate);
        QSignalSpy codeEntered(&codice, &cTextBox::evtCodiceKeyRetunr);

        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QCOMPARE(txtImporto->alignment() & Qt::AlignRight, Qt::AlignRight);
        QCOMPARE(txtData->maxLength(), 10);

        txtImporto->setFocus();
        QCOMPARE(txtImporto->palette().color(QPalette::Base), cInputBase::focusColour(false));
        QTest::keyClicks(txtImporto, QStringLiteral("-1x234.5.6"));
        QCOMPARE(txtImporto->text(), QStringLiteral("-1234,56"));
        QTest::keyClick(txtImporto, Qt::Key_F5);
        QCOMPARE(functionKeys.size(), 1);
        QCOMPARE(functionKeys.first().at(0).toString(), QStringLiteral("txtImporto"));
        QCOMPARE(functionKeys.first().at(1).toInt(), 116);
        QTest::keyClick(txtImporto, Qt::Key_F9); // not one of F3 to F7
        QCOMPARE(functionKeys.size(), 1);

        // Enter moves on; leaving formats and repaints.
        QTest::keyClick(txtImporto, Qt::Key_Return);
        QTRY_VERIFY(txtData->hasFocus());
        QCOMPARE(txtImporto->text(), QStringLiteral("-1.234,56"));
        QCOMPARE(validated.size(), 1);
        QCOMPARE(txtImporto->palette().color(QPalette::Base), cInputBase::restColour());

        QTest::keyClicks(txtData, QStringLiteral("010508"));
        QTest::keyClick(txtData, Qt::Key_Down);
        QTRY_VERIFY(txtCodice->hasFocus());
        QCOMPARE(txtData->text(), QStringLiteral("01/05/2008"));

        // A code field answers Enter with its event and stays.
        QTest::keyClicks(txtCodice, QStringLiteral("ab1"));
        QCOMPARE(txtCodice->text(), QStringLiteral("AB1"));
        QTest::keyClick(txtCodice, Qt::Key_Return);
        QCOMPARE(codeEntered.size(), 1);
        QCoreApplication::processEvents();
        QVERIFY(txtCodice->hasFocus());
        QTest::keyClick(txtCodice, Qt::Key_Up);
        QTRY_VERIFY(txtData->hasFocus());
        QTest::keyClick(txtData, Qt::Key_Down);
        QTRY_VERIFY(txtCodice->hasFocus());
        QTest::keyClick(txtCodice, Qt::Key_Tab);
        QTRY_VERIFY(cmbTipo->hasFocus());

        // The combo keeps its arrows for the list and moves on Enter.
        QTest::keyClick(cmbTipo, Qt::Key_Down);
        QCOMPARE(cmbTipo->currentIndex(), 1);
        QVERIFY(cmbTipo->hasFocus());
        QTest::keyClick(cmbTipo, Qt::Key_Return);
        QTRY_VERIFY(chkAttivo->hasFocus());
        QTest::keyClick(chkAttivo, Qt::Key_F3);
        QCOMPARE(functionKeys.last().at(0).toString(), QStringLiteral("chkAttivo"));
        QCOMPARE(functionKeys.last().at(1).toInt(), 114);
    }

    void lockedFieldAndNoTabSend()
    {
        QWidget form;
        auto* layout = new QVBoxLayout(&form);
        auto* txtA = new QLineEdit(QStringLiteral("abc"), &form);
        layout->addWidget(txtA);
        layout->addWidget(new QLineEdit(&form));
        txtA->setReadOnly(true);
        cTextBox a(txtA, Testo);
        a.setNoTabSend(true);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        txtA->setFocus();
        QCOMPARE(txtA->palette().color(QPalette::Base), cInputBase::focusColour(true));
        QTRY_COMPARE(txtA->selectedText(), QStringLiteral("abc"));
        QTest::keyClick(txtA, Qt::Key_Return);
        QTest::keyClick(txtA, Qt::Key_Down);
        QCoreApplication::processEvents();
        QVERIFY(txtA->hasFocus());
    }
};

QTEST_MAIN(TestTypedInput)
#include "tst_typedinput.moc"
