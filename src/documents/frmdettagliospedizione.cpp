#include "documents/frmdettagliospedizione.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/screenregistry.h"
#include "documents/campimovimento.h"
#include "lookups/lookups.h"
#include "lookups/lookuptable.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTime>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>

namespace {

const LookupTable kAspetto{"AspettoEsteriore", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaAspetto};
const LookupTable kCausaleTrasporto{"CausaliTrasporto",    "CODICE", "DESCRIZIONE", "", "DESCRIZIONE",
                                    validaCausaleTrasporto};
const LookupTable kSpedizione{"Spedizioni", "CODICE", "DESCRIZIONE", "", "DESCRIZIONE", validaSpedizione};

const QString kTabella = QStringLiteral("Movimenti");

// A time typed in any form the time field takes, as the document keeps it.
QString oraHM(const QString& text)
{
    for (const char* format : {"HH:mm:ss", "H:mm:ss", "HH:mm", "H:mm"}) {
        const QTime time = QTime::fromString(text.trimmed(), QLatin1String(format));
        if (time.isValid())
            return formatTimeHM(time);
    }
    return QString();
}

QLabel* etichetta(const QString& text, QWidget* buddy, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

// The captions of the groups in one column, however long each group's are.
void allineaEtichette(std::initializer_list<QGridLayout*> griglie)
{
    int larghezza = 0;
    for (QGridLayout* g : griglie)
        for (int row = 0; row < g->rowCount(); ++row)
            if (QLayoutItem* item = g->itemAtPosition(row, 0))
                larghezza = qMax(larghezza, item->sizeHint().width());
    for (QGridLayout* g : griglie)
        g->setColumnMinimumWidth(0, larghezza);
}

} // namespace

frmDettaglioSpedizione::frmDettaglioSpedizione(const DatiSpedizione& dati, Single nuovoPeso, qint16 nuoviColli,
                                               QWidget* parent)
    : QDialog(parent)
    , m_dati(dati)
    , m_nuovoPeso(nuovoPeso)
    , m_nuoviColli(nuoviColli)
{
    setObjectName(QStringLiteral("frmDettaglioSpedizione"));
    setWindowTitle(QStringLiteral("Dettagli Spedizione"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_keys = new cKeyFunction(this);
    connect(m_keys, &cKeyFunction::evtFunctionKeyPressed, this, &frmDettaglioSpedizione::onFunctionKey);

    // The fields are made in the order of Tab and Enter.
    auto* indirizzo = new QGroupBox(QStringLiteral("Indirizzo di consegna"), this);
    m_txtVia = campoTesto(indirizzo, QStringLiteral("txtViaCons"), "VIACONS", 30);
    m_txtCivico = campoTesto(indirizzo, QStringLiteral("txtCivicoCons"), "CIVICOCONS", 0);
    m_txtCAP = campoTesto(indirizzo, QStringLiteral("txtCAPCons"), "CAPCONS", 0);
    m_txtCitta = campoTesto(indirizzo, QStringLiteral("txtCittaCons"), "CITTACONS", 20);
    m_txtProvincia = campoTesto(indirizzo, QStringLiteral("txtProvinciaCons"), "PROVINCIACONS", 0, true);
    m_txtTelefono = campoTesto(indirizzo, QStringLiteral("txtTelefonoCons"), "TELEFONOCONS", 15);
    m_txtFax = campoTesto(indirizzo, QStringLiteral("txtFaxCons"), "FAXCONS", 15);
    auto* gIndirizzo = new QGridLayout(indirizzo);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Via"), m_txtVia, indirizzo), 0, 0);
    gIndirizzo->addWidget(m_txtVia, 0, 1, 1, 3);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Civico"), m_txtCivico, indirizzo), 0, 4);
    gIndirizzo->addWidget(m_txtCivico, 0, 5);
    gIndirizzo->addWidget(etichetta(QStringLiteral("CAP"), m_txtCAP, indirizzo), 1, 0);
    gIndirizzo->addWidget(m_txtCAP, 1, 1);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Città"), m_txtCitta, indirizzo), 1, 2);
    gIndirizzo->addWidget(m_txtCitta, 1, 3);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Provincia"), m_txtProvincia, indirizzo), 1, 4);
    gIndirizzo->addWidget(m_txtProvincia, 1, 5);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Telefono"), m_txtTelefono, indirizzo), 2, 0);
    gIndirizzo->addWidget(m_txtTelefono, 2, 1);
    gIndirizzo->addWidget(etichetta(QStringLiteral("Fax"), m_txtFax, indirizzo), 2, 2);
    gIndirizzo->addWidget(m_txtFax, 2, 3);
    gIndirizzo->setColumnStretch(3, 1);

    auto* trasporto = new QGroupBox(QStringLiteral("Trasporto"), this);
    m_txtData = new QLineEdit(trasporto);
    m_txtData->setObjectName(QStringLiteral("txtDataCons"));
    (new cTextBox(m_txtData, typedinput::Data, this))->setCKeyRef(m_keys);
    m_txtOra = new QLineEdit(trasporto);
    m_txtOra->setObjectName(QStringLiteral("txtOraCons"));
    (new cTextBox(m_txtOra, typedinput::Ora, this))->setCKeyRef(m_keys);
    // The document keeps hours and minutes: seconds typed are dropped on leaving.
    connect(m_txtOra, &QLineEdit::editingFinished, this, [this] {
        if (const QString ora = oraHM(m_txtOra->text()); ora != m_txtOra->text())
            m_txtOra->setText(ora);
    });
    m_txtPeso = new QLineEdit(trasporto);
    m_txtPeso->setObjectName(QStringLiteral("txtPesoCons"));
    (new cTextBox(m_txtPeso, typedinput::Decimale, this))->setCKeyRef(m_keys);
    m_txtColli = new QLineEdit(trasporto);
    m_txtColli->setObjectName(QStringLiteral("txtColliCons"));
    (new cTextBox(m_txtColli, typedinput::Intero, this))->setCKeyRef(m_keys);
    for (QLineEdit* field : {m_txtData, m_txtOra, m_txtPeso, m_txtColli})
        keepReadable(field, readableWidth(field, 10));
    auto* cmdAggiorna = new QPushButton(QIcon::fromTheme(QStringLiteral("view-refresh")),
                                        QStringLiteral("Aggiorna Peso e Colli"), trasporto);
    cmdAggiorna->setObjectName(QStringLiteral("cmdAggiornaPesoColli"));
    cmdAggiorna->setToolTip(QStringLiteral("Peso e colli calcolati dalle righe del documento"));
    cmdAggiorna->setAutoDefault(false);
    connect(cmdAggiorna, &QPushButton::clicked, this, &frmDettaglioSpedizione::cmdAggiornaPesoColli_Click);
    auto* gTrasporto = new QGridLayout(trasporto);
    gTrasporto->addWidget(etichetta(QStringLiteral("Data"), m_txtData, trasporto), 0, 0);
    gTrasporto->addWidget(m_txtData, 0, 1);
    gTrasporto->addWidget(etichetta(QStringLiteral("Ora"), m_txtOra, trasporto), 0, 2);
    gTrasporto->addWidget(m_txtOra, 0, 3);
    gTrasporto->addWidget(etichetta(QStringLiteral("Peso Kg."), m_txtPeso, trasporto), 1, 0);
    gTrasporto->addWidget(m_txtPeso, 1, 1);
    gTrasporto->addWidget(etichetta(QStringLiteral("Nr. Colli"), m_txtColli, trasporto), 1, 2);
    gTrasporto->addWidget(m_txtColli, 1, 3);
    gTrasporto->addWidget(cmdAggiorna, 1, 4, Qt::AlignLeft);
    const struct
    {
        const char* suffisso;
        const char* campo;
        const LookupTable* tabella;
        const char* caption;
        cLookupField** lookup;
    } codici[] = {
        {"Aspetto", "txtAspettoCons", &kAspetto, "Aspetto Esteriore", &m_aspetto},
        {"CausaleTrasporto", "txtCausaleCons", &kCausaleTrasporto, "Causale Trasporto", &m_causale},
        {"Spedizione", "txtSpedizione", &kSpedizione, "Spedizione", &m_spedizione},
        {"Pagamento", "txtPagamento", &lookup::pagamenti, "Modalità Pagamento", &m_pagamento},
    };
    int row = gTrasporto->rowCount();
    for (const auto& c : codici) {
        const QString caption = QString::fromUtf8(c.caption);
        QWidget* riga = nullptr;
        *c.lookup =
            campoCodice(QLatin1String(c.suffisso), QLatin1String(c.campo), *c.tabella, caption, trasporto, riga);
        gTrasporto->addWidget(etichetta(caption, (*c.lookup)->field(), trasporto), row, 0);
        gTrasporto->addWidget(riga, row, 1, 1, 5);
        ++row;
    }
    gTrasporto->setColumnStretch(5, 1);

    auto* elenco = new QGroupBox(QStringLiteral("Elenco speciale"), this);
    m_txtDest = campoTesto(elenco, QStringLiteral("txtDestElencoSpeciale"), "DESTELENCOSPECIALE", 40);
    m_txtDocum = campoTesto(elenco, QStringLiteral("txtDocumElencoSpeciale"), "DOCUMELENCOSPECIALE", 40);
    m_txtAut = campoTesto(elenco, QStringLiteral("txtAutElencoSpeciale"), "AUTELENCOSPECIALE", 40);
    auto* gElenco = new QGridLayout(elenco);
    row = 0;
    for (const auto& [caption, field] :
         {std::pair{"Destinazione", m_txtDest}, std::pair{"Docum. riconoscim.", m_txtDocum},
          std::pair{"Autorizzazione", m_txtAut}}) {
        gElenco->addWidget(etichetta(QString::fromUtf8(caption), field, elenco), row, 0);
        gElenco->addWidget(field, row++, 1);
    }
    gElenco->setColumnStretch(1, 1);

    auto* cmdSalva = new QPushButton(QIcon::fromTheme(QStringLiteral("document-save")), QStringLiteral("Salva"), this);
    cmdSalva->setObjectName(QStringLiteral("cmdSalva"));
    connect(cmdSalva, &QPushButton::clicked, this, &frmDettaglioSpedizione::cmdSalva_Click);
    auto* cmdEsci = new QPushButton(QIcon::fromTheme(QStringLiteral("system-log-out"),
                                                     QIcon::fromTheme(QStringLiteral("application-exit"))),
                                    QStringLiteral("Esci"), this);
    cmdEsci->setObjectName(QStringLiteral("cmdEsci"));
    cmdEsci->setToolTip(QStringLiteral("Esci senza salvare [Esc]"));
    connect(cmdEsci, &QPushButton::clicked, this, &QDialog::reject);
    auto* pulsanti = new QHBoxLayout;
    pulsanti->addStretch(1);
    pulsanti->addWidget(cmdSalva);
    pulsanti->addWidget(cmdEsci);

    allineaEtichette({gIndirizzo, gTrasporto, gElenco});

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(indirizzo);
    layout->addWidget(trasporto);
    layout->addWidget(elenco);
    layout->addStretch(1);
    layout->addLayout(pulsanti);

    // Tab follows the groups from top to bottom, whatever the parents.
    const QList<QWidget*> ordine{m_txtVia,
                                 m_txtCivico,
                                 m_txtCAP,
                                 m_txtCitta,
                                 m_txtProvincia,
                                 m_txtTelefono,
                                 m_txtFax,
                                 m_txtData,
                                 m_txtOra,
                                 m_txtPeso,
                                 m_txtColli,
                                 cmdAggiorna,
                                 m_aspetto->field(),
                                 m_causale->field(),
                                 m_spedizione->field(),
                                 m_pagamento->field(),
                                 m_txtDest,
                                 m_txtDocum,
                                 m_txtAut,
                                 cmdSalva,
                                 cmdEsci};
    for (qsizetype i = 1; i < ordine.size(); ++i)
        setTabOrder(ordine.at(i - 1), ordine.at(i));

    carica();
    m_txtVia->setFocus();
}

// A text field limited to its column of Movimenti; `caratteri` gives it a
// readable minimum width, 0 the width of a short field.
QLineEdit* frmDettaglioSpedizione::campoTesto(QWidget* parent, const QString& name, const char* colonna, int caratteri,
                                              bool maiuscolo)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    auto* input = new cTextBox(field, typedinput::Testo, this);
    input->setCKeyRef(m_keys);
    if (maiuscolo)
        input->setCaseState(1);
    limitToColumn(field, kTabella, QLatin1String(colonna));
    if (caratteri > 0)
        field->setMinimumWidth(readableWidth(field, caratteri));
    else
        keepReadable(field, readableWidth(field, 8));
    return field;
}

// The code, its browse button (cmd + suffix, F3 too) and the description
// (lbl + suffix), in one row.
cLookupField* frmDettaglioSpedizione::campoCodice(const QString& suffisso, const QString& campo,
                                                  const LookupTable& tabella, const QString& titolo, QWidget* parent,
                                                  QWidget*& riga)
{
    const CampoCodificato c = campoCodificato(parent, campo, &tabella, m_keys, QStringLiteral("Ricerca - ") + titolo);
    c.riga->findChild<QToolButton*>()->setObjectName(QStringLiteral("cmd") + suffisso);
    c.etichetta->setObjectName(QStringLiteral("lbl") + suffisso);
    riga = c.riga;
    return c.lookup;
}

void frmDettaglioSpedizione::carica()
{
    const DatiSpedizione& d = m_dati;
    m_txtVia->setText(d.via);
    m_txtCivico->setText(d.civico);
    m_txtCAP->setText(d.cap);
    m_txtCitta->setText(d.citta);
    m_txtProvincia->setText(d.provincia);
    m_txtTelefono->setText(d.telefono);
    m_txtFax->setText(d.fax);
    m_txtData->setText(formatDate(d.data));
    m_txtOra->setText(oraHM(d.ora));
    m_txtPeso->setText(testoPeso(d.peso));
    m_txtColli->setText(testoColli(d.colli));
    m_aspetto->setRid(d.aspetto);
    m_causale->setRid(d.causaleTrasporto);
    m_spedizione->setRid(d.spedizione);
    m_pagamento->setRid(d.pagamento);
    m_txtDest->setText(d.destElencoSpeciale);
    m_txtDocum->setText(d.documElencoSpeciale);
    m_txtAut->setText(d.autElencoSpeciale);
}

void frmDettaglioSpedizione::onFunctionKey(const QString& controlName, int keyCode, int)
{
    if (keyCode != vbKey::F3)
        return;
    for (cLookupField* lookup : {m_aspetto, m_causale, m_spedizione, m_pagamento})
        if (lookup->field()->objectName() == controlName)
            lookup->browse();
}

void frmDettaglioSpedizione::cmdAggiornaPesoColli_Click()
{
    const AggiornamentoPesoColli esito =
        aggiornaPesoColli(m_txtPeso->text(), m_txtColli->text(), m_nuovoPeso, m_nuoviColli);
    if (!esito.aggiorna)
        return;
    m_txtPeso->setText(esito.peso);
    m_txtColli->setText(esito.colli);
}

void frmDettaglioSpedizione::cmdSalva_Click()
{
    // A code typed and not yet left is looked up first, as leaving the field would.
    for (cLookupField* lookup : {m_aspetto, m_causale, m_spedizione, m_pagamento})
        lookup->validate();

    // Numbers the document could not store are refused here, not cut.
    const std::optional<Single> peso = toSingleChecked(getValoreNumerico(m_txtPeso->text()));
    if (!peso) {
        msgBox(QStringLiteral("Il valore del campo [Peso Kg.] non è valido."), vb::Exclamation);
        m_txtPeso->setFocus();
        return;
    }
    const double colli = std::nearbyint(getValoreNumerico(m_txtColli->text()));
    if (colli < 0 || colli > 32767) {
        msgBox(QStringLiteral("Il valore del campo [Nr. Colli] deve essere compreso tra 0 e 32.767."), vb::Exclamation);
        m_txtColli->setFocus();
        return;
    }

    DatiSpedizione d;
    d.via = m_txtVia->text();
    d.civico = m_txtCivico->text();
    d.cap = m_txtCAP->text();
    d.citta = m_txtCitta->text();
    d.provincia = m_txtProvincia->text();
    d.telefono = m_txtTelefono->text();
    d.fax = m_txtFax->text();
    d.data = toDate(m_txtData->text());
    d.ora = oraHM(m_txtOra->text());
    d.peso = *peso;
    d.colli = qint16(colli);
    d.aspetto = m_aspetto->rid();
    d.causaleTrasporto = m_causale->rid();
    d.spedizione = m_spedizione->rid();
    d.pagamento = m_pagamento->rid();
    d.destElencoSpeciale = m_txtDest->text();
    d.documElencoSpeciale = m_txtDocum->text();
    d.autElencoSpeciale = m_txtAut->text();
    m_dati = d;
    salvaDestElencoSpeciale(d.destElencoSpeciale);
    accept();
}

bool frmDettaglioSpedizione::mostra(DatiSpedizione& dati, Single nuovoPeso, qint16 nuoviColli, QWidget* parent)
{
    frmDettaglioSpedizione dialog(dati, nuovoPeso, nuoviColli, parent ? parent : dialogs::ownerWindow());
    if (dialogs::exec(dialog) != QDialog::Accepted)
        return false;
    dati = dialog.dati();
    return true;
}

void registerSpedizioneScreen()
{
    screens::registerScreen(QStringLiteral("frmDettaglioSpedizione"),
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant&) -> QWidget* {
                                 return new frmDettaglioSpedizione(DatiSpedizione(), 0, 0, parent);
                             },
                             true});
}
