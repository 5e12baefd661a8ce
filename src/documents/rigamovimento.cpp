#include "documents/rigamovimento.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/screenregistry.h"
#include "documents/campimovimento.h"
#include "documents/editordocumento.h"
#include "lookups/lookups.h"
#include "lookups/lookuptable.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/crecordscreen.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/waitcursor.h"
#include "screens/services/typedinput.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

const char* const kAzioni[] = {"[F6] - Aggiunge/Modifica la riga selezionata",
                               "[F8] - Nuova Riga",
                               "[F9] - Elimina Riga",
                               "Scheda Prodotto",
                               "Copia Riga",
                               "Incolla Riga"};

QLabel* etichetta(const QString& testo, QWidget* parent)
{
    auto* label = new QLabel(testo, parent);
    label->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    return label;
}

// A label that shows a value as a read-only field does.
QLabel* valore(const QString& nome, QWidget* parent, Qt::Alignment allineamento = Qt::AlignLeft)
{
    auto* label = new QLabel(parent);
    label->setObjectName(nome);
    label->setFrameShape(QFrame::StyledPanel);
    label->setAlignment(allineamento | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("000.000,00")) + 8);
    return label;
}

} // namespace

RigaMovimento::RigaMovimento(EditorDocumento& editor, cKeyFunction* keys, QWidget* parent)
    : QWidget(parent)
    , m_editor(editor)
{
    setObjectName(QStringLiteral("fraRiga"));
    const int dec = editor.decimali();
    // The product field has its own look-up (codes, bar codes, a part of the
    // code, several products); its button searches the same way.
    m_prodotto = campo(this, QStringLiteral("txtProdotto"), typedinput::Testo, keys);
    inputDi(m_prodotto)->setIsCodice(true);
    inputDi(m_prodotto)->setCaseState(1);
    QToolButton* sfogliaProdotto = nullptr;
    QWidget* rigaProdotto = conSfoglia(m_prodotto, nullptr, sfogliaProdotto);
    connect(sfogliaProdotto, &QToolButton::clicked, this, [this] { sfoglia(m_prodotto->objectName()); });
    m_marca = valore(QStringLiteral("lblMarca"), this);
    m_descrizione = campo(this, QStringLiteral("txtDescProdotto"), typedinput::Testo, keys);
    limitToColumn(m_descrizione, QStringLiteral("DettagliMovimento"), QStringLiteral("DESCPRODOTTO"));
    m_quantita = campo(this, QStringLiteral("txtQuantita"), typedinput::DecimaleZero, keys, dec);
    m_um = valore(QStringLiteral("lblUM"), this);
    const CampoCodificato iva =
        campoCodificato(this, QStringLiteral("txtIva"), &lookup::iva, keys, QStringLiteral("Ricerca - IVA"));
    m_iva = iva.campo;
    m_descIva = iva.etichetta;
    m_lookupIva = iva.lookup;
    m_giacenza = valore(QStringLiteral("lblGiacenza"), this, Qt::AlignRight);
    m_addPrev = new QCheckBox(QStringLiteral("Aggiungi alla riga precedente"), this);
    m_addPrev->setObjectName(QStringLiteral("chkAddPrev"));
    m_like = new QCheckBox(QStringLiteral("[F4] - Parte del codice"), this);
    m_like->setObjectName(QStringLiteral("chkLike"));

    m_prezzi = new QWidget(this);
    m_prezzi->setObjectName(QStringLiteral("pctPrezziSconti"));
    m_listino = campo(m_prezzi, QStringLiteral("txtPrezzoListino"), typedinput::DecimaleZero, keys, dec);
    m_sconto1 = campo(m_prezzi, QStringLiteral("txtSconto1"), typedinput::DecimaleZero, keys);
    m_sconto2 = campo(m_prezzi, QStringLiteral("txtSconto2"), typedinput::DecimaleZero, keys);
    m_sconto3 = campo(m_prezzi, QStringLiteral("txtSconto3"), typedinput::DecimaleZero, keys);
    m_netto = campo(m_prezzi, QStringLiteral("txtPrezzoNetto"), typedinput::DecimaleZero, keys, dec);
    m_ivaInclusa = campo(m_prezzi, QStringLiteral("txtPrezzoIvaInclusa"), typedinput::DecimaleZero, keys);
    m_pannelloTotale = new QWidget(m_prezzi);
    m_pannelloTotale->setObjectName(QStringLiteral("pctTotRiga"));
    m_totRiga = valore(QStringLiteral("lblTotRigaImponibile"), m_pannelloTotale, Qt::AlignRight);
    auto* totale = new QVBoxLayout(m_pannelloTotale);
    totale->setContentsMargins(0, 0, 0, 0);
    totale->setSpacing(2);
    totale->addWidget(etichetta(QStringLiteral("Imponibile riga"), m_pannelloTotale));
    totale->addWidget(m_totRiga);
    auto* prezzi = new QGridLayout(m_prezzi);
    prezzi->setContentsMargins(0, 0, 0, 0);
    prezzi->setVerticalSpacing(2);
    const QList<QPair<const char*, QWidget*>> colonne = {
        {"Prezzo Listino", m_listino}, {"Sconto 1 %", m_sconto1}, {"Sconto 2 %", m_sconto2},
        {"Sconto 3 %", m_sconto3},     {"Prezzo Netto", m_netto}, {"Prezzo IVA incl.", m_ivaInclusa}};
    for (int i = 0; i < colonne.size(); ++i) {
        prezzi->addWidget(etichetta(QString::fromUtf8(colonne[i].first), m_prezzi), 0, i);
        prezzi->addWidget(colonne[i].second, 1, i);
    }
    prezzi->addWidget(m_pannelloTotale, 0, int(colonne.size()), 2, 1);
    m_messaggio = new QLabel(QStringLiteral("SEZIONE NON DISPONIBILE PER MOVIMENTI DA MAGAZZINO A MAGAZZINO"), this);
    m_messaggio->setObjectName(QStringLiteral("pctMessage"));
    m_messaggio->setAlignment(Qt::AlignCenter);
    m_messaggio->setStyleSheet(QStringLiteral("color: #7a0000; font-weight: bold; border: 1px solid #b0b0b0"));
    m_messaggio->setMinimumHeight(m_prezzi->sizeHint().height());
    m_messaggio->hide();

    auto* campi = new QGridLayout;
    campi->setVerticalSpacing(2);
    campi->addWidget(etichetta(QStringLiteral("Codice Prodotto [F3]"), this), 0, 0);
    campi->addWidget(rigaProdotto, 1, 0);
    campi->addWidget(etichetta(QStringLiteral("Marca"), this), 0, 1);
    campi->addWidget(m_marca, 1, 1);
    campi->addWidget(etichetta(QStringLiteral("Descrizione"), this), 0, 2);
    campi->addWidget(m_descrizione, 1, 2);
    campi->addWidget(etichetta(QStringLiteral("Quantità"), this), 0, 3);
    campi->addWidget(m_quantita, 1, 3);
    campi->addWidget(etichetta(QStringLiteral("UM"), this), 0, 4);
    campi->addWidget(m_um, 1, 4);
    campi->addWidget(etichetta(QStringLiteral("IVA"), this), 0, 5);
    campi->addWidget(iva.riga, 1, 5);
    campi->addWidget(etichetta(QStringLiteral("Giacenza"), this), 0, 6);
    campi->addWidget(m_giacenza, 1, 6);
    campi->setColumnStretch(2, 3);
    campi->setColumnStretch(0, 1);
    campi->setColumnStretch(5, 1);
    m_um->setMinimumWidth(m_um->fontMetrics().horizontalAdvance(QStringLiteral("MMMM")));

    auto* spunte = new QHBoxLayout;
    spunte->addWidget(m_addPrev);
    spunte->addWidget(m_like);
    spunte->addStretch(1);
    auto* azioni = new QHBoxLayout;
    for (int i = 0; i < int(std::size(kAzioni)); ++i) {
        auto* button = new QPushButton(QString::fromUtf8(kAzioni[i]), this);
        button->setObjectName(QStringLiteral("cmdAction_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { Q_EMIT azionePremuta(i); });
        azioni->addWidget(button);
        m_azioni << button;
    }
    azioni->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(campi);
    layout->addWidget(m_prezzi);
    layout->addWidget(m_messaggio);
    layout->addLayout(spunte);
    layout->addLayout(azioni);

    for (QLineEdit* e : findChildren<QLineEdit*>())
        connect(e, &QLineEdit::textEdited, this, &RigaMovimento::modificato);
    connect(m_lookupIva, &cLookupField::changed, this, [this] {
        raccogli();
        Single aliquota = 0;
        QString codice = m_iva->text(), descrizione;
        int rid = 0;
        if (m_lookupIva->rid() > 0 && validaIva(codice, descrizione, rid, aliquota)) {
            m_editor.dati.iva = rid;
            m_editor.dati.codIva = codice;
            m_editor.dati.descIva = descrizione;
            m_editor.riga.aliquota = plainTextIt(aliquota);
            aliquotaCambiata(m_editor.riga, m_editor.prezziIvaInclusa, m_editor.decimali());
        }
        mostra();
    });
    mostra();
}

void RigaMovimento::mostra()
{
    const EditorRiga& r = m_editor.riga;
    const DatiRiga& d = m_editor.dati;
    m_prodotto->setText(d.codice);
    m_prodottoAccettato = d.codice;
    m_marca->setText(d.marca);
    m_descrizione->setText(d.descrizione);
    m_quantita->setText(r.quantita);
    m_um->setText(d.codUM);
    m_lookupIva->setRecord(d.iva, d.codIva, d.descIva);
    m_giacenza->setText(m_editor.giacenza());
    m_listino->setText(r.prezzoListino);
    m_sconto1->setText(r.sconto1);
    m_sconto2->setText(r.sconto2);
    m_sconto3->setText(r.sconto3);
    m_netto->setText(r.prezzoNetto);
    m_ivaInclusa->setText(r.prezzoIvaInclusa);
    m_totRiga->setText(r.totRigaImponibile);
    m_addPrev->setChecked(m_editor.aggiungiPrecedente);
    m_azioni.at(0)->setEnabled(d.prodotto > 0);
}

void RigaMovimento::raccogli()
{
    EditorRiga& r = m_editor.riga;
    r.quantita = m_quantita->text();
    r.prezzoListino = m_listino->text();
    r.sconto1 = m_sconto1->text();
    r.sconto2 = m_sconto2->text();
    r.sconto3 = m_sconto3->text();
    r.prezzoNetto = m_netto->text();
    r.prezzoIvaInclusa = m_ivaInclusa->text();
    m_editor.dati.descrizione = m_descrizione->text();
    m_editor.aggiungiPrecedente = m_addPrev->isChecked();
}

bool RigaMovimento::campoLasciato(QWidget* campo)
{
    if (campo == m_prodotto) {
        prodottoLasciato();
        return true;
    }
    if (campo == m_iva)
        return m_iva->text().trimmed().isEmpty() || m_lookupIva->rid() > 0;
    raccogli();
    const int dec = m_editor.decimali();
    EditorRiga& r = m_editor.riga;
    if (campo == m_listino) {
        m_editor.prezzoListinoLasciato(m_modificaPrezzoAcquisto);
    } else if (campo == m_sconto1 || campo == m_sconto2 || campo == m_sconto3) {
        scontoLasciato(r, dec);
    } else if (campo == m_netto) {
        prezzoNettoLasciato(r, dec);
    } else if (campo == m_ivaInclusa) {
        prezzoIvaInclusaLasciato(r, dec);
    } else if (campo == m_quantita) {
        m_editor.quantitaLasciata();
    } else {
        return true;
    }
    mostra();
    return true;
}

void RigaMovimento::prodottoLasciato()
{
    const QString codice = m_prodotto->text().trimmed();
    if (codice == m_prodottoAccettato)
        return;
    WaitCursor attesa;
    if (!codice.isEmpty() && m_intestazioneOk && !m_intestazioneOk()) {
        m_editor.pulisciRiga();
        mostra();
        return;
    }
    raccogli();
    const EsitoProdotto esito = m_editor.prodottoLasciato(codice, m_like->isChecked());
    switch (esito.tipo) {
    case EsitoProdotto::NuovoProdotto: apriNuovoProdotto(esito.codice); break;
    case EsitoProdotto::Multipla:
        if (m_editor.nuovoProdottoChiesto())
            apriNuovoProdotto(QString());
        Q_EMIT righeCambiate();
        break;
    case EsitoProdotto::RigaEsistente: Q_EMIT righeCambiate(); break;
    default: break;
    }
    mostra();
    if (esito.tipo == EsitoProdotto::Rifiutato)
        m_prodotto->setFocus();
}

void RigaMovimento::apriNuovoProdotto(const QString& codice)
{
    auto* scheda = qobject_cast<cRecordScreen*>(screens::openScreen(QStringLiteral("frmProdotto"), 0));
    if (!scheda)
        return;
    if (QLineEdit* campoCodice = scheda->lineEdit(QStringLiteral("txtCodice1")))
        campoCodice->setText(codice);
    connect(scheda, &cRecordScreen::evtUnloadWithRecord, this, [this](int rid) {
        m_editor.prodottoCreato(rid);
        mostra();
        Q_EMIT righeCambiate();
    });
}

void RigaMovimento::mostraPrezzi(bool visibili)
{
    m_prezzi->setVisible(visibili);
    m_messaggio->setVisible(!visibili);
}

void RigaMovimento::mostraTotaleRiga(bool visibile) { m_pannelloTotale->setVisible(visibile); }

void RigaMovimento::abilitaPrezzoIvaInclusa(bool abilitato) { m_ivaInclusa->setEnabled(abilitato); }

QLineEdit* RigaMovimento::campoDiColonna(int c) const
{
    switch (c) {
    case colonna::Quantita: return m_quantita;
    case colonna::PrezzoListino: return m_listino;
    case colonna::PrezzoNetto: return m_netto;
    case colonna::Iva: return m_iva;
    default: return nullptr;
    }
}

bool RigaMovimento::sfoglia(const QString& nome)
{
    if (nome == m_iva->objectName()) {
        m_lookupIva->browse();
        return true;
    }
    if (nome != m_prodotto->objectName())
        return false;
    // The search of the product field is the look-up itself on a part of the code.
    const bool like = m_like->isChecked();
    m_like->setChecked(true);
    m_prodottoAccettato = QStringLiteral("\x01");
    prodottoLasciato();
    m_like->setChecked(like);
    return true;
}
