#include "documents/intestazionemovimento.h"

#include "accounting/fido.h"
#include "accounting/primanota.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "lookups/lookuptable.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/services/typedinput.h"

#include <QCheckBox>
#include <QDate>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

QLabel* didascalia(const QString& testo, QWidget* parent)
{
    auto* label = new QLabel(testo, parent);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

// The look-up of a side by its kind.
struct Lato
{
    const char* didascalia;
    const LookupTable* tabella;
};
Lato latoDi(int tipo)
{
    switch (tipo) {
    case lato::Cliente: return {"Cliente", &lookup::clienti};
    case lato::Fornitore: return {"Fornitore", &lookup::fornitori};
    case lato::Magazzino: return {"Magazzino", &lookup::magazzini};
    default: return {"", nullptr};
    }
}

bool diControparte(int tipo) { return tipo == lato::Cliente || tipo == lato::Fornitore; }

} // namespace

IntestazioneMovimento::IntestazioneMovimento(cKeyFunction* keys, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("fraIntestazione"));
    m_anno = campo(this, QStringLiteral("txtAnno"), typedinput::InteroNonFormattato, keys);
    m_anno->setMaxLength(4);
    m_progressivo = campo(this, QStringLiteral("txtProgressivo"), typedinput::Testo, keys);
    m_data = campo(this, QStringLiteral("txtData"), typedinput::Data, keys);
    m_tipoDoc = campoCodificato(this, QStringLiteral("txtTipoDocumento"), nullptr, keys,
                                QStringLiteral("Ricerca - Tipo Documento"));
    m_tipoDoc.lookup->setTable(
        [this](QString& codice, QString& descrizione, int& rid) {
            DocumentoEsteso d;
            d.codice = codice;
            d.rid = rid;
            if (!validaDocumentoEsteso(d))
                return false;
            m_tipo = d;
            codice = d.codice;
            descrizione = d.descrizione;
            rid = d.rid;
            return true;
        },
        lookupSearch(lookup::tipoDocumenti), QStringLiteral("Ricerca - Tipo Documento"));
    m_origine = campoCodificato(this, QStringLiteral("txtOrigine"), nullptr, keys, QString());
    m_destinazione = campoCodificato(this, QStringLiteral("txtDestinazione"), nullptr, keys, QString());
    m_pagamento = campoCodificato(this, QStringLiteral("txtPagamento"), &lookup::pagamenti, keys,
                                  QStringLiteral("Ricerca - Pagamenti"));
    m_banca =
        campoCodificato(this, QStringLiteral("txtBanca"), &lookup::banche, keys, QStringLiteral("Ricerca - Banche"));
    m_riferimenti = campo(this, QStringLiteral("txtRiferimenti"), typedinput::Testo, keys);
    limitToColumn(m_riferimenti, QStringLiteral("Movimenti"), QStringLiteral("RIFERIMENTI"));
    m_codPartita = campo(this, QStringLiteral("txtCodPartita"), typedinput::Testo, keys);
    limitToColumn(m_codPartita, QStringLiteral("Movimenti"), QStringLiteral("CODPARTITA"));
    m_numeroOriginale = campo(this, QStringLiteral("txtNumeroOriginale"), typedinput::Testo, keys);
    limitToColumn(m_numeroOriginale, QStringLiteral("Movimenti"), QStringLiteral("NUMEROORIGINALE"));
    m_dataOriginale = campo(this, QStringLiteral("txtDataOriginale"), typedinput::Data, keys);
    m_prezziIva = new QCheckBox(QStringLiteral("Prezzi IVA inclusa"), this);
    m_prezziIva->setObjectName(QStringLiteral("chkPrezziIva"));
    m_didOrigine = didascalia(QString(), this);
    m_didDestinazione = didascalia(QString(), this);
    m_stampato = new QLabel(this);
    m_stampato->setObjectName(QStringLiteral("lblStampato"));
    m_stampato->setStyleSheet(QStringLiteral("color: #a00000; font-weight: bold"));
    m_primaNota = new QLabel(this);
    m_primaNota->setObjectName(QStringLiteral("lblPrimaNota"));
    for (QLineEdit* corto : {m_anno, m_progressivo, m_data, m_dataOriginale})
        corto->setMaximumWidth(readableWidth(corto, 11));

    auto* numero = new QHBoxLayout;
    numero->addWidget(m_anno);
    numero->addWidget(didascalia(QStringLiteral("Numero"), this));
    numero->addWidget(m_progressivo);
    numero->addWidget(didascalia(QStringLiteral("Data"), this));
    numero->addWidget(m_data);
    numero->addStretch(1);
    numero->addWidget(m_stampato);
    numero->addWidget(m_primaNota);

    // The counterparty's own paper: its number and date.
    auto* originale = new QHBoxLayout;
    originale->addWidget(m_numeroOriginale, 1);
    originale->addWidget(didascalia(QStringLiteral("del"), this));
    originale->addWidget(m_dataOriginale);

    auto* griglia = new QGridLayout(this);
    griglia->setContentsMargins(0, 0, 0, 0);
    griglia->addWidget(didascalia(QStringLiteral("Anno"), this), 0, 0);
    griglia->addLayout(numero, 0, 1, 1, 3);
    griglia->addWidget(didascalia(QStringLiteral("Tipo Documento"), this), 1, 0);
    griglia->addWidget(m_tipoDoc.riga, 1, 1);
    griglia->addWidget(m_prezziIva, 1, 3);
    griglia->addWidget(m_didOrigine, 2, 0);
    griglia->addWidget(m_origine.riga, 2, 1);
    griglia->addWidget(didascalia(QStringLiteral("Mod. Pagamento"), this), 2, 2);
    griglia->addWidget(m_pagamento.riga, 2, 3);
    griglia->addWidget(m_didDestinazione, 3, 0);
    griglia->addWidget(m_destinazione.riga, 3, 1);
    griglia->addWidget(didascalia(QStringLiteral("Banca"), this), 3, 2);
    griglia->addWidget(m_banca.riga, 3, 3);
    griglia->addWidget(didascalia(QStringLiteral("Riferimenti"), this), 4, 0);
    griglia->addWidget(m_riferimenti, 4, 1);
    griglia->addWidget(didascalia(QStringLiteral("Cod. Partita"), this), 4, 2);
    griglia->addWidget(m_codPartita, 4, 3);
    griglia->addWidget(didascalia(QStringLiteral("Doc. originale n."), this), 5, 0);
    griglia->addLayout(originale, 5, 1);
    griglia->setColumnStretch(1, 1);
    griglia->setColumnStretch(3, 1);

    for (QLineEdit* e : findChildren<QLineEdit*>())
        connect(e, &QLineEdit::textEdited, this, &IntestazioneMovimento::modificato);
    connect(m_prezziIva, &QCheckBox::clicked, this, [this] {
        Q_EMIT modificato();
        Q_EMIT tipoCambiato(); // the rows' prices follow the box
    });
    connect(m_tipoDoc.lookup, &cLookupField::changed, this, [this] { applicaTipo(); });
    connect(m_origine.lookup, &cLookupField::changed, this, [this] { controparteScelta(false); });
    connect(m_destinazione.lookup, &cLookupField::changed, this, [this] { controparteScelta(true); });
    pulisci();
}

void IntestazioneMovimento::pulisci()
{
    m_caricando = true;
    for (QLineEdit* e : findChildren<QLineEdit*>())
        e->clear();
    for (CampoCodificato* c : {&m_tipoDoc, &m_origine, &m_destinazione, &m_pagamento, &m_banca})
        c->lookup->clear();
    m_progressivo->setText(QStringLiteral("(Auto)"));
    m_data->setText(formatDate(QDate::currentDate()));
    m_anno->setText(gOptions().annoCorrente.isEmpty() ? QString::number(QDate::currentDate().year())
                                                      : gOptions().annoCorrente);
    m_prezziIva->setChecked(false);
    m_info = InfoDocumento();
    m_tipo = DocumentoEsteso();
    m_tipoMostrato = 0;
    m_scontoControparte = Currency();
    m_rdaPerc = m_rdaPercSu = formattaImporto(Currency(), 2);
    applicaLato(m_origine, m_didOrigine, lato::Nessuno, 0);
    applicaLato(m_destinazione, m_didDestinazione, lato::Nessuno, 0);
    m_stampato->clear();
    m_stampato->hide();
    m_primaNota->clear();
    m_caricando = false;
}

void IntestazioneMovimento::mostra(const TestataDocumento& t)
{
    m_caricando = true;
    m_anno->setText(QString::number(t.anno));
    m_progressivo->setText(formatMask(t.progressivo, QStringLiteral("00000")));
    m_data->setText(formatDate(t.data));
    m_numeroOriginale->setText(t.numeroOriginale);
    m_dataOriginale->setText(formatDate(t.dataOriginale));
    m_tipoDoc.lookup->setRid(t.tipo.rid);
    applicaTipo();
    m_caricando = true;
    // The kinds of the causal as it is now name the fields.
    if (t.tipoOrigine >= 0)
        m_origine.lookup->setRecord(t.origine.rid, t.origine.codice, t.origine.descrizione);
    if (t.tipoDestinazione >= 0)
        m_destinazione.lookup->setRecord(t.destinazione.rid, t.destinazione.codice, t.destinazione.descrizione);
    InfoContropartita terms;
    if (controparte() > 0 && getInfoContropartita(controparte(), terms))
        m_scontoControparte = terms.sconto;
    m_pagamento.lookup->setRecord(t.pagamento.rid, t.pagamento.codice, t.pagamento.descrizione);
    m_banca.lookup->setRecord(t.banca.rid, t.banca.codice, t.banca.descrizione);
    m_riferimenti->setText(t.riferimenti);
    m_codPartita->setText(t.codPartita);
    mostraDataStampa(t.dataStampa);
    m_primaNota->setText(t.primaNota > 0 ? QStringLiteral("P.N.: ")
                                 + formatMask(getProgPrimaNotaByID(t.primaNota), QStringLiteral("00000"))
                                         : QString());
    m_rdaPerc = t.rda1;
    m_rdaPercSu = t.rda2;
    m_prezziIva->setChecked(t.usaPrezziIva);
    m_caricando = false;
}

void IntestazioneMovimento::mostraDataStampa(const QDate& dataStampa)
{
    m_stampato->setVisible(dataStampa.isValid());
    m_stampato->setText(dataStampa.isValid() ? QStringLiteral("Documento stampato il ") + formatDate(dataStampa)
                                             : QString());
}

void IntestazioneMovimento::caricaTipo(int tipoDocumento)
{
    m_tipoDoc.lookup->setRid(tipoDocumento);
    applicaTipo();
}

void IntestazioneMovimento::applicaTipo()
{
    const int rid = m_tipoDoc.lookup->rid();
    if (rid <= 0) {
        m_tipo = DocumentoEsteso();
        m_info = InfoDocumento();
        applicaLato(m_origine, m_didOrigine, lato::Nessuno, 0);
        applicaLato(m_destinazione, m_didDestinazione, lato::Nessuno, 0);
        m_tipoMostrato = 0;
        Q_EMIT tipoCambiato();
        return;
    }
    const bool altroTipo = rid != m_tipoMostrato;
    m_tipoMostrato = rid;
    m_prezziIva->setChecked(m_tipo.usaPrezziIva);
    getInfoDocumento(rid, m_info);
    if (altroTipo) {
        applicaLato(m_origine, m_didOrigine, m_info.origine, m_info.magazzinoOrig);
        applicaLato(m_destinazione, m_didDestinazione, m_info.destinazione, m_info.magazzinoDest);
    }
    const auto percentuale = [&](const QString& valore) {
        return formattaImporto(m_tipo.usaRda ? getValoreCurrency(valore) : Currency(), 2);
    };
    m_rdaPerc = percentuale(m_tipo.rda1);
    m_rdaPercSu = percentuale(m_tipo.rda2);
    Q_EMIT tipoCambiato();
}

void IntestazioneMovimento::applicaLato(CampoCodificato& c, QLabel* caption, int tipo, int predefinito)
{
    const Lato l = latoDi(tipo);
    caption->setText(QString::fromLatin1(l.didascalia));
    if (l.tabella)
        c.lookup->setTable(l.tabella->validate, lookupSearch(*l.tabella),
                           QStringLiteral("Ricerca - ") + QString::fromLatin1(l.didascalia));
    else
        c.lookup->clear();
    c.lookup->setEnabled(l.tabella != nullptr);
    if (tipo == lato::Magazzino && predefinito > 0)
        c.lookup->setRid(predefinito);
}

void IntestazioneMovimento::controparteScelta(bool destinazione)
{
    const int tipo = destinazione ? m_info.destinazione : m_info.origine;
    const int rid = (destinazione ? m_destinazione : m_origine).lookup->rid();
    if (diControparte(tipo)) {
        if (rid > 0) {
            riempiDaControparte(rid);
        } else {
            m_pagamento.lookup->clear();
            m_banca.lookup->clear();
            m_scontoControparte = Currency();
        }
    }
    if (destinazione && rid > 0 && tipo == lato::Cliente && !m_caricando) {
        const QString avviso =
            avvisoFuoriFido(rid, gOptions().contoClienti, gOptions().fidoAllaData, QDate::currentDate());
        if (!avviso.isEmpty())
            msgBox(avviso, vb::Exclamation);
    }
    Q_EMIT latoCambiato();
}

void IntestazioneMovimento::riempiDaControparte(int rid)
{
    InfoContropartita info;
    if (!getInfoContropartita(rid, info))
        return;
    m_scontoControparte = info.sconto;
    // A field filled by hand is kept unless the user wants the counterparty's.
    const auto riempi = [](CampoCodificato& c, const Codificato& valore, const char* nome) {
        if (valore.rid <= 0 || valore.rid == c.lookup->rid())
            return;
        if (c.lookup->rid() > 0
            && msgBox(QStringLiteral("Il valore del campo [%1] è stato modificato. Si desidera reimpostare il valore "
                                     "corretto?")
                          .arg(QLatin1String(nome)),
                      vb::YesNo | vb::Question | vb::DefaultButton2)
                != vb::Yes)
            return;
        c.lookup->setRecord(valore.rid, valore.codice, valore.descrizione);
    };
    riempi(m_pagamento, info.pagamento, "Mod. Pagamento");
    riempi(m_banca, info.banca, "Banca");
}

TestataDocumento IntestazioneMovimento::testata() const
{
    const auto codificato = [](const CampoCodificato& c) {
        return Codificato{c.lookup->rid(), c.campo->text().trimmed(), c.etichetta->text()};
    };
    TestataDocumento t;
    t.anno = anno();
    t.progressivo = progressivo();
    t.data = toDate(m_data->text());
    t.numeroOriginale = m_numeroOriginale->text().trimmed();
    t.dataOriginale = toDate(m_dataOriginale->text());
    t.tipo = codificato(m_tipoDoc);
    t.tipoOrigine = m_info.origine;
    t.tipoDestinazione = m_info.destinazione;
    t.origine = codificato(m_origine);
    t.destinazione = codificato(m_destinazione);
    t.pagamento = codificato(m_pagamento);
    t.banca = codificato(m_banca);
    t.riferimenti = m_riferimenti->text();
    t.codPartita = m_codPartita->text();
    t.rda1 = m_rdaPerc;
    t.rda2 = m_rdaPercSu;
    t.usaPrezziIva = m_prezziIva->isChecked();
    return t;
}

int IntestazioneMovimento::tipoRid() const { return m_tipoDoc.lookup->rid(); }

int IntestazioneMovimento::origine() const { return m_origine.lookup->rid(); }

int IntestazioneMovimento::destinazione() const { return m_destinazione.lookup->rid(); }

int IntestazioneMovimento::controparte() const
{
    if (diControparte(m_info.origine))
        return origine();
    return diControparte(m_info.destinazione) ? destinazione() : 0;
}

int IntestazioneMovimento::anno() const { return m_anno->text().toInt(); }

int IntestazioneMovimento::progressivo() const { return m_progressivo->text().toInt(); }

bool IntestazioneMovimento::prezziIvaInclusa() const { return m_prezziIva->isChecked(); }

QString IntestazioneMovimento::campiMancanti()
{
    QStringList mancanti;
    QWidget* primo = nullptr;
    const auto manca = [&](QWidget* campo, const QString& riga) {
        mancanti << riga;
        if (!primo)
            primo = campo;
    };
    if (tipoRid() <= 0)
        manca(m_tipoDoc.campo, QStringLiteral(" -Tipo Documento."));
    if (m_origine.campo->isEnabled() && origine() <= 0)
        manca(m_origine.campo, QStringLiteral("-") + m_didOrigine->text());
    if (m_destinazione.campo->isEnabled() && destinazione() <= 0)
        manca(m_destinazione.campo, QStringLiteral("-") + m_didDestinazione->text());
    if (mancanti.isEmpty())
        return QString();
    primo->setFocus();
    return QStringLiteral("Attenzione è necessario selezionare prima le seguenti informazioni:\n")
        + mancanti.join(QLatin1Char('\n'));
}

bool IntestazioneMovimento::campoLasciato(QWidget* campo)
{
    if (campo == m_anno && m_anno->text().trimmed().isEmpty())
        m_anno->setText(QString::number(QDate::currentDate().year()));
    // The counter's customer stands in for an empty destination.
    if (campo == m_destinazione.campo && gOptions().mostraClienteVB && m_info.destinazione == lato::Cliente
        && destinazione() <= 0 && gOptions().clientePredefinito > 0) {
        m_destinazione.lookup->setRid(gOptions().clientePredefinito);
        controparteScelta(true);
    }
    // A type that is not there keeps the cursor.
    if (campo == m_tipoDoc.campo)
        return m_tipoDoc.campo->text().trimmed().isEmpty() || tipoRid() > 0;
    return true;
}

void IntestazioneMovimento::dopoTipo()
{
    for (QLineEdit* campo : {m_origine.campo, m_destinazione.campo, m_pagamento.campo})
        if (campo->isEnabled()) {
            campo->setFocus();
            return;
        }
}

bool IntestazioneMovimento::sfoglia(const QString& nome)
{
    for (CampoCodificato* c : {&m_tipoDoc, &m_origine, &m_destinazione, &m_pagamento, &m_banca})
        if (c->campo->objectName() == nome) {
            c->lookup->browse();
            return true;
        }
    return false;
}
