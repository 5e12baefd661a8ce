// The typed input fields: what each kind accepts, how it formats on leaving,
// and the wrappers on real widgets (focus, Enter, arrows, function keys).
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "support/localerows.h"
#include "screens/services/typedinput.h"

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
        QTest::addColumn<QString>("result");   // empty: refused
        addRows("dot becomes comma", int(Decimale), 0, QStringLiteral("12"), false, QStringLiteral("."), QStringLiteral(","));
        addRows("dot becomes comma (kind 9)", int(DecimaleZero), 0, QString(), false, QStringLiteral("."), QStringLiteral(","));
        addRows("second comma refused", int(Decimale), 0, QStringLiteral("1,5"), false, QStringLiteral(","), QString());
        addRows("second comma as dot refused", int(Decimale), 0, QStringLiteral("1,5"), false, QStringLiteral("."), QString());
        addRows("minus in empty field", int(Decimale), 0, QString(), false, QStringLiteral("-"), QStringLiteral("-"));
        addRows("minus after text refused", int(Intero), 0, QStringLiteral("12"), false, QStringLiteral("-"), QString());
        addRows("minus over a full selection", int(InteroZero), 0, QStringLiteral("12"), true, QStringLiteral("-"), QStringLiteral("-"));
        addRows("minus in free text", int(Testo), 0, QStringLiteral("ab"), false, QStringLiteral("-"), QStringLiteral("-"));
        addRows("letter in whole number", int(Intero), 0, QString(), false, QStringLiteral("a"), QString());
        addRows("comma in whole number", int(InteroNonFormattato), 0, QString(), false, QStringLiteral(","), QString());
        addRows("dot in time", int(Ora), 0, QStringLiteral("08"), false, QStringLiteral("."), QStringLiteral("."));
        addRows("colon in time refused", int(Ora), 0, QStringLiteral("08"), false, QStringLiteral(":"), QString());
        addRows("slash in date", int(Data), 0, QStringLiteral("01"), false, QStringLiteral("/"), QStringLiteral("/"));
        addRows("plus in date refused", int(Data), 0, QStringLiteral("01"), false, QStringLiteral("+"), QString());
        addRows("plus in date expression", int(EspressioneData), 0, QString(), false, QStringLiteral("+"), QStringLiteral("+"));
        addRows("upper case", int(Testo), 1, QString(), false, QStringLiteral("à"), QStringLiteral("À"));
        addRows("lower case", int(Testo), 2, QString(), false, QStringLiteral("Q"), QStringLiteral("q"));
        addRows("backspace always", int(Intero), 0, QStringLiteral("1"), false, QStringLiteral("\b"), QStringLiteral("\b"));
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

    void contentValidate_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("precision");
        QTest::addColumn<bool>("thousands");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::addColumn<bool>("event");
        addRows("decimal", int(Decimale), 2, true, QStringLiteral("1234,5"), QStringLiteral("1.234,50"), true);
        addRows("decimal without thousands", int(Decimale), 3, false, QStringLiteral("-1234567,1239"), QStringLiteral("-1234567,124"), true);
        addRows("decimal as typed", int(Decimale), -1, true, QStringLiteral("1234,5"), QStringLiteral("1234,5"), false);
        addRows("decimal empty stays", int(Decimale), 2, true, QString(), QString(), true);
        addRows("decimal empty becomes 0", int(DecimaleZero), 2, true, QStringLiteral("  "), QStringLiteral("0,00"), true);
        addRows("lone minus stays", int(Decimale), 2, true, QStringLiteral("-"), QStringLiteral("-"), true);
        addRows("whole number", int(Intero), 2, true, QStringLiteral("1234567"), QStringLiteral("1.234.567"), false);
        addRows("whole number empty becomes 0", int(InteroZero), 2, true, QString(), QStringLiteral("0"), false);
        addRows("whole number left as typed", int(InteroNonFormattato), 2, true, QStringLiteral("1234"), QStringLiteral("1234"), false);
        addRows("date six digits", int(Data), 2, true, QStringLiteral("010508"), QStringLiteral("01/05/2008"), true);
        addRows("date eight digits", int(Data), 2, true, QStringLiteral("01052008"), QStringLiteral("01/05/2008"), true);
        addRows("date 31 February empties", int(Data), 2, true, QStringLiteral("31/02/2008"), QString(), true);
        addRows("short date only tested", int(Data), 2, true, QStringLiteral("1/5/08"), QStringLiteral("1/5/08"), true);
        addRows("short wrong date empties", int(Data), 2, true, QStringLiteral("1/13/08"), QString(), true);
        addRows("leap day", int(Data), 2, true, QStringLiteral("29022024"), QStringLiteral("29/02/2024"), true);
        addRows("date empty", int(Data), 2, true, QString(), QString(), true);
        addRows("time four digits", int(Ora), 2, true, QStringLiteral("0830"), QStringLiteral("08:30:00"), false);
        addRows("time six digits", int(Ora), 2, true, QStringLiteral("173005"), QStringLiteral("17:30:05"), false);
        addRows("time with dots", int(Ora), 2, true, QStringLiteral("8.5"), QStringLiteral("08:05:00"), false);
        addRows("time 25 hours empties", int(Ora), 2, true, QStringLiteral("2500"), QString(), false);
        addRows("free text untouched", int(Testo), 2, true, QStringLiteral(" a,b "), QStringLiteral(" a,b "), false);
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
        const Validation v = typedinput::contentValidate(kind, text, precision, thousands, QStringLiteral("DD/MM/YYYY"));
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
        QTest::keyClick(txtImporto, Qt::Key_F9);   // not one of F3 to F7
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
