#include "masterdata/frmanagrafica.h"

#include "common/codicefiscale.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/screenregistry.h"
#include "data/sqlliteral.h"
#include "masterdata/anagrafica.h"
#include "printing/anteprima.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace fields;

namespace {

struct Extra
{
    const char* caption;
    const char* icon;
};
// The commands 4 to 7, after the four of the pattern.
const Extra kExtra[] = {{"Estratto Conto", "x-office-spreadsheet"},
                        {"Scadenze", "x-office-calendar"},
                        {"Stampa Informartiva Privacy", "document-print"},
                        {"Stampa Scheda Anagrafica", "document-print-preview"}};

FieldList anagraficaFields()
{
    const unsigned t = Trimmed;
    return {QStringLiteral("Anagrafiche"),
            {number("NUMERO", "txtNumero", "Numero", 0, WholeNumber | Code),
             combo("TIPO", "cmbTipo", "Tipo", Required | ComboText),
             field("DENOMINAZIONE", "txtDenominazione", "Denominazione", Required | t),
             field("INDIRIZZO", "txtIndirizzo", "Indirizzo", t),
             field("CIVICO", "txtCivico", "Civico", t),
             field("CAP", "txtCAP", "CAP", t),
             field("CITTA", "txtCitta", "Città", t),
             field("PROVINCIA", "txtProvincia", "Provincia", t),
             field("CFISCALE", "txtCodifeFiscale", "Codice Fiscale", t),
             field("PIVA", "txtPartitaIVA", "Partita IVA", t),
             field("DATANASCITA", "txtDataNascita", "Data Nascita"),
             field("CODICEEXTRA", "txtCodiceExtra", "Codice Scheda", t),
             field("INDIRIZZODEST", "txtIndirizzoDest", "Indirizzo", t),
             field("CIVICODEST", "txtCivicoDest", "Civico", t),
             field("CAPDEST", "txtCAPDest", "CAP", t),
             field("CITTADEST", "txtCittaDest", "Città", t),
             field("PROVINCIADEST", "txtProvinciaDest", "Provincia", t),
             field("TELUFFICIO", "txtTelefonoUff", "Tel. Ufficio", t),
             field("TELABITAZIONE", "txtTelefonoAbit", "Tel. Abitazione", t),
             field("TELUFFICIO3", "txtTelUfficio3", "Tel. Ufficio 2", t),
             field("FAX", "txtFax", "Fax", t),
             field("CELL", "txtCellulare", "Cellulare", t),
             field("EMAIL", "txtEmail", "E-mail", t),
             field("REFERENTE", "txtReferente", "Nome Referente", t),
             key("FK_PAGAMENTO", "txtPagamento", "Pagamento", lookup::pagamenti),
             key("FK_BANCA", "txtBanca", "Banca", lookup::banche),
             field("IBAN", "txtIBAN", "IBAN", t),
             key("FK_FASCIACLIENTE", "txtFasciaCliente", "Fascia Cliente", lookup::fasceClienti),
             combo("LISTINO", "cmbListino", "Listino"),
             number("SCONTO", "txtSconto", "Sconto %", 2, ZeroWhenEmpty),
             field("CTRLFIDO", "chkFido", "Fido"),
             number("FIDO", "txtFido", "Importo Fido", 2, ZeroWhenEmpty),
             field("SEGNALA", "chkSegnala", "Segnala in VB"),
             field("DATIAUTORIZZAZIONE", "txtDatiAutorizzazione", "Autorizzazione", t),
             field("DOCUMENTORICONOSCIMENTO", "txtDocumentoRiconoscimento", "Docum. Riconos.", t)}};
}

bool numerico(const QString& text)
{
    bool ok = false;
    text.toLongLong(&ok);
    return ok;
}

} // namespace

frmAnagrafica::frmAnagrafica(QWidget* parent)
    : cNumberedScreen(QStringLiteral("frmAnagrafica"), QStringLiteral("Anagrafica Clienti/Fornitori"), parent)
{
    writeDebugLine(QStringLiteral("frmAnagrafica: apertura"));
    setFields(anagraficaFields());
    writeDebugLine(QStringLiteral("frmAnagrafica: campi"));

    auto* tipo = static_cast<QComboBox*>(control(QStringLiteral("cmbTipo")));
    tipo->addItem(QStringLiteral("Cliente"), QStringLiteral("C"));
    tipo->addItem(QStringLiteral("Fornitore"), QStringLiteral("F"));
    auto* listino = static_cast<QComboBox*>(control(QStringLiteral("cmbListino")));
    for (int i = 1; i <= 4; ++i)
        listino->addItem(QStringLiteral("Listino ") + QString::number(i), i);

    auto* grid = new QGridLayout(fraMain());
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(fieldGroup(QStringLiteral("Anagrafica"),
                               {"txtNumero", "cmbTipo", "txtDenominazione", "txtIndirizzo", "txtCivico", "txtCAP",
                                "txtCitta", "txtProvincia", "txtCodifeFiscale", "txtPartitaIVA", "txtDataNascita",
                                "txtCodiceExtra"}),
                    0, 0, 2, 1);
    grid->addWidget(fieldGroup(QStringLiteral("Recapiti"),
                               {"txtTelefonoUff", "txtTelefonoAbit", "txtTelUfficio3", "txtFax", "txtCellulare",
                                "txtEmail", "txtReferente"}),
                    0, 1);
    grid->addWidget(fieldGroup(QStringLiteral("Indirizzo Destinazione"),
                               {"txtIndirizzoDest", "txtCivicoDest", "txtCAPDest", "txtCittaDest", "txtProvinciaDest"}),
                    1, 1);
    grid->addWidget(fieldGroup(QStringLiteral("Condizioni"),
                               {"txtPagamento", "txtBanca", "txtIBAN", "txtFasciaCliente", "cmbListino", "txtSconto",
                                "chkFido", "txtFido", "chkSegnala"}),
                    0, 2);
    grid->addWidget(fieldGroup(QStringLiteral("Documenti"), {"txtDatiAutorizzazione", "txtDocumentoRiconoscimento"}), 1,
                    2);

    // The two statement forms: the customer's and the supplier's.
    auto* commands = new QHBoxLayout;
    m_pctEstrC = new QLabel(QStringLiteral("Estratto Conto Cliente"), fraMain());
    m_pctEstrC->setObjectName(QStringLiteral("pctEstrC"));
    m_pctEstrF = new QLabel(QStringLiteral("Estratto Conto Fornitore"), fraMain());
    m_pctEstrF->setObjectName(QStringLiteral("pctEstrF"));
    commands->addWidget(m_pctEstrC);
    commands->addWidget(m_pctEstrF);
    for (int i = 0; i < int(std::size(kExtra)); ++i) {
        auto* button = new QPushButton(QIcon::fromTheme(QString::fromLatin1(kExtra[i].icon)),
                                       QString::fromUtf8(kExtra[i].caption), fraMain());
        button->setObjectName(QStringLiteral("cmdCommand_") + QString::number(i + 4));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { cmdCommandExtra_Click(i + 4); });
        commands->addWidget(button);
    }
    commands->addStretch(1);
    grid->addLayout(commands, 2, 0, 1, 3);

    connect(tipo, &QComboBox::activated, this, &frmAnagrafica::cmbTipo_Click);
    connect(static_cast<QCheckBox*>(control(QStringLiteral("chkFido"))), &QCheckBox::clicked, this,
            &frmAnagrafica::chkFido_Click);
    writeDebugLine(QStringLiteral("frmAnagrafica: pronta"));
}

QString frmAnagrafica::tipo() const
{
    return static_cast<QComboBox*>(control(QStringLiteral("cmbTipo")))->currentData().toString();
}

QString frmAnagrafica::codeCondition(const QString& code) const
{
    // A number is looked for among the cards of the kind shown.
    QString condition = cNumberedScreen::codeCondition(code);
    if (!tipo().isEmpty())
        condition += QStringLiteral(" AND TIPO = ") + sqlText(tipo());
    return condition;
}

QString frmAnagrafica::searchStatement() const
{
    QString sql = QStringLiteral("SELECT RID, NUMERO, DENOMINAZIONE, CITTA, PIVA FROM Anagrafiche ");
    if (!tipo().isEmpty())
        sql += QStringLiteral("WHERE TIPO = ") + sqlText(tipo()) + QLatin1Char(' ');
    return sql + QStringLiteral("ORDER BY DENOMINAZIONE ");
}

void frmAnagrafica::clearFields()
{
    // The kind stays: a new card is of the kind the user was working on.
    const int kind = static_cast<QComboBox*>(control(QStringLiteral("cmbTipo")))->currentIndex();
    cNumberedScreen::clearFields();
    static_cast<QComboBox*>(control(QStringLiteral("cmbTipo")))->setCurrentIndex(kind);
    for (const char* name : {"txtSconto", "txtFido"})
        lineEdit(QString::fromLatin1(name))->setText(formattaImporto(Currency(), 2));
    cmbTipo_Click();
    chkFido_Click();
}

void frmAnagrafica::fillFields(const Recordset& rs)
{
    cNumberedScreen::fillFields(rs);
    cmbTipo_Click();
    chkFido_Click();
}

void frmAnagrafica::cmbTipo_Click()
{
    m_pctEstrC->setVisible(tipo() == QLatin1String("C"));
    m_pctEstrF->setVisible(tipo() == QLatin1String("F"));
}

void frmAnagrafica::chkFido_Click()
{
    control(QStringLiteral("txtFido"))->setEnabled(isChecked(QStringLiteral("chkFido")));
}

bool frmAnagrafica::confermaCodice(bool valido, const QString& messaggio)
{
    return valido
        || msgBox(messaggio + QStringLiteral("\rContinuare?"), vb::YesNo | vb::Question | vb::DefaultButton2)
        == vb::Yes;
}

bool frmAnagrafica::fieldLeft(const QString& controlName)
{
    if (controlName == QLatin1String("txtCodifeFiscale")) {
        const QString codice = text("txtCodifeFiscale");
        if (codice.isEmpty())
            return true;
        // A firm's tax code is its VAT number.
        const bool valido = numerico(codice) ? checkPartitaIva(codice) : checkCodiceFiscale(codice.left(16));
        return confermaCodice(valido, QStringLiteral("Attenzione! Codice Fiscale errato."));
    }
    if (controlName == QLatin1String("txtPartitaIVA")) {
        const QString numero = text("txtPartitaIVA");
        return numero.isEmpty()
            || confermaCodice(checkPartitaIva(numero), QStringLiteral("Attenzione! Partita IVA errata."));
    }
    return true;
}

bool frmAnagrafica::checkCodFiscPIVA(const QString& codiceFiscale, const QString& partitaIva, const QString& kind)
{
    const QString elenco = anagraficheConCodici(codiceFiscale, partitaIva, kind);
    if (elenco.isEmpty() || currentRid() > 0)
        return true;
    msgBox(QStringLiteral("Attenzione il Cod.Fiscale o la P.Iva inseriti sono già in uso:\r") + elenco,
           vb::Exclamation);
    return false;
}

bool frmAnagrafica::saveRecord()
{
    if (controllaInserimento())
        return false;
    if (!checkCodFiscPIVA(text("txtCodifeFiscale").trimmed(), text("txtPartitaIVA").trimmed(), tipo()))
        return false;
    return cNumberedScreen::saveRecord();
}

// A card in use by documents or entries is refused by the database.
QString frmAnagrafica::deleteQuestion() const
{
    return QStringLiteral("Eliminare il record con progressivo ") + codeText() + QStringLiteral("?");
}

void frmAnagrafica::cmdCommandExtra_Click(int index)
{
    const int rid = currentRid();
    switch (index) {
    case 4:
        if (rid > 0)
            screens::openOrTell(QStringLiteral("frmEstrattoConto"), QVariantList{QVariant(tipo()), QVariant(rid)},
                                QStringLiteral("Estratto Conto"));
        break;
    case 5:
        if (rid > 0)
            screens::openOrTell(QStringLiteral("frmRiepilogoScadenze"), rid, QStringLiteral("Scadenze"));
        break;
    case 6: printInformativa(); break;
    case 7:
        if (rid > 0)
            mostraAnteprima(QStringLiteral("SchedaAnagrafica.rpt"),
                            QStringLiteral("{Anagrafiche.RID}=") + QString::number(rid),
                            QStringLiteral("Stampa Scheda Anagrafica"));
        break;
    default: break;
    }
}

void frmAnagrafica::printInformativa()
{
    const int rid = currentRid();
    if (rid <= 0)
        return;
    const DatiInformativa dati{text("txtDenominazione"), text("txtIndirizzo"), text("txtCivico"),    text("txtCAP"),
                               text("txtCitta"),         text("txtProvincia"), text("txtPartitaIVA")};
    if (!salvaInformativa(rid, preparaRichText(testoInformativa(), dati, QDate::currentDate())))
        return;
    mostraAnteprima(QStringLiteral("Informativa.rpt"), QStringLiteral("{Anagrafiche.RID}=") + QString::number(rid),
                    QStringLiteral("Stampa Informativa: ") + text("txtDenominazione"));
}
