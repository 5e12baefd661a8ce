#include "optionstore.h"

#include "cadosqlserver.h"
#include "errorlog.h"
#include "italiantext.h"
#include "serversettings.h"
#include "sqlliteral.h"

#include <QSettings>

namespace {
const QString kModule = QStringLiteral("bOrvantis");

int asInt(const QString& text)
{
    return int(getValoreNumerico(text));
}

bool asFlag(const QString& text)
{
    return getValoreNumerico(text) != 0;
}

bool machineFlag(QSettings& s, const char* key)
{
    return asFlag(s.value(QLatin1String(key), QStringLiteral("0")).toString());
}
} // namespace

OptionGlobals& gOptions()
{
    static OptionGlobals globals;
    return globals;
}

QString getOpzione(const QString& nome)
{
    cAdoSqlServer& db = gAdoSqlServer();
    RecordsetPtr rs = db.getNewRecordset(QStringLiteral("select valore from Opzioni where nome = ") + sqlText(nome),
                                         kModule + QStringLiteral(".getOpzione"));
    if (!rs)
        return QString();
    QString value;
    bool ok = true;
    if (rs->eof()) {
        Err().raise(3021, QStringLiteral("cAdoSqlServer"),
                    QStringLiteral("BOF o EOF è True oppure il record corrente è stato eliminato. "
                                   "Per l'operazione richiesta è necessario un record corrente."));
        ok = false;
    } else if (rs->isNull(QStringLiteral("VALORE"))) {
        Err().raise(94, kModule, QStringLiteral("Utilizzo non valido di Null"));
        ok = false;
    } else {
        value = rs->text(QStringLiteral("VALORE"));
    }
    rs->close();
    db.disconnect();
    if (!ok)
        notifyError(kModule, QStringLiteral("getOpzione"), QStringLiteral("Nome=") + nome);
    return value;
}

void setOpzione(const QString& nome, const QString& valore)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString tag = kModule + QStringLiteral(".setOpzione");
    RecordsetPtr rs = db.getNewRecordset(QStringLiteral("SELECT COUNT(NOME) FROM Opzioni WHERE NOME = ") + sqlText(nome), tag);
    if (!rs || rs->eof())
        return;
    QString sql;
    if (rs->value(0).toInt() > 0)
        sql = QStringLiteral("UPDATE Opzioni SET VALORE = ") + sqlText(valore) + QStringLiteral(" WHERE NOME = ") + sqlText(nome);
    else
        sql = QStringLiteral("INSERT INTO Opzioni (NOME, VALORE) VALUES (") + sqlText(nome) + QStringLiteral(" , ")
            + sqlText(valore) + QLatin1Char(')');
    if (!db.executeSQL(sql, tag))
        return;   // the count's connection stays, as it always has after a failed write
    rs->close();
    db.disconnect();
}

void loadOptionGlobals()
{
    OptionGlobals& o = gOptions();
    o.amministratore = getOpzione(QStringLiteral("Amministratore"));
    o.tipoStampaDistinta = asInt(getOpzione(QStringLiteral("TipoStampaDistinta")));
    o.ivaPredRigaLibera = asInt(getOpzione(QStringLiteral("IvaPredRigaLibera")));
    o.catPrezziNetti = asInt(getOpzione(QStringLiteral("CatPrezziNetti")));
    o.clientePredefinito = asInt(getOpzione(QStringLiteral("ClientePredefinito")));
    o.tipoDocVb = asInt(getOpzione(QStringLiteral("TipoDocVb")));
    o.causalePagVb = asInt(getOpzione(QStringLiteral("CausalePagVb")));
    o.annoCorrente = getOpzione(QStringLiteral("AnnoCorrente"));
    o.contoClienti = asInt(getOpzione(QStringLiteral("ContoClienti")));
    o.contoFornitori = asInt(getOpzione(QStringLiteral("ContoFornitori")));
    o.decimaliDopo = asInt(getOpzione(QStringLiteral("DecimaliDopo")));
    o.venditoreChar = getOpzione(QStringLiteral("VenditoreChar"));
    if (o.venditoreChar.isEmpty())
        o.venditoreChar = QStringLiteral("%");
    o.distintaBase = getOpzione(QStringLiteral("DistintaBase"));
    o.rigaLibera = getOpzione(QStringLiteral("RigaLibera"));
    o.gruppoPredefinito = asInt(getOpzione(QStringLiteral("GruppoPredefinito")));
    o.gruppoProdInteg = asInt(getOpzione(QStringLiteral("GruppoProdInteg")));
    o.gruppoProdCL = asInt(getOpzione(QStringLiteral("GruppoProdCL")));
    o.marca = asInt(getOpzione(QStringLiteral("Marca")));
    o.fornitore = asInt(getOpzione(QStringLiteral("Fornitore")));
    o.tipoDocProd = asInt(getOpzione(QStringLiteral("TipoDocProd")));
    o.docConversione = asInt(getOpzione(QStringLiteral("DocConversione")));
    o.docConversioneDDT = asInt(getOpzione(QStringLiteral("DocConversioneDDT")));
    o.pagamentoVB = asInt(getOpzione(QStringLiteral("PagamentoVB")));
    o.prezzoMedio = asFlag(getOpzione(QStringLiteral("PrezzoMedio")));
    o.mesiPrezzoMedio = asInt(getOpzione(QStringLiteral("MesiPrezzoMedio")));
    o.bloccoPN = asFlag(getOpzione(QStringLiteral("BloccoPN")));
    o.descPN = asFlag(getOpzione(QStringLiteral("DescPN")));
    o.fidoAllaData = asFlag(getOpzione(QStringLiteral("FidoAllaData")));
    o.noShowCptEstratto = asFlag(getOpzione(QStringLiteral("NoShowCptEstratto")));
    o.mostraTotaleRigaMov = asFlag(getOpzione(QStringLiteral("MostraTotaleRigaMov")));
    o.usaPrezziIva = asFlag(getOpzione(QStringLiteral("UsaPrezziIva")));
    o.piePagina = getOpzione(QStringLiteral("PiePagina"));
    o.ridIvaProdotti = asInt(getOpzione(QStringLiteral("RidIvaProdotti")));
    o.ridUMProdotti = asInt(getOpzione(QStringLiteral("RidUMProdotti")));
    o.ridMarcaProdotti = asInt(getOpzione(QStringLiteral("RidMarcaProdotti")));
    o.ridCollezioneProdotti = asInt(getOpzione(QStringLiteral("RidCollezioneProdotti")));
    o.reportElencoSpeciale = getOpzione(QStringLiteral("ReportElencoSpeciale"));
    o.numeratoreElencoSpeciale = asInt(getOpzione(QStringLiteral("NumeratoreElencoSpeciale")));
    o.sottoScorta = asFlag(getOpzione(QStringLiteral("SottoScorta")));
    o.bloccaSottoScorta = asFlag(getOpzione(QStringLiteral("BloccaSottoScorta")));
    o.avvisaSottoScorta = asFlag(getOpzione(QStringLiteral("AvvisaSottoScorta")));
    o.venditeGiorniDiversi = asFlag(getOpzione(QStringLiteral("VenditeGiorniDiversi")));
    o.bloccaVenditeGiorniDiversi = asFlag(getOpzione(QStringLiteral("BloccaVenditeGiorniDiversi")));
    o.avvisaVenditeGiorniDiversi = asFlag(getOpzione(QStringLiteral("AvvisaVenditeGiorniDiversi")));
    o.lockVBEdit = asFlag(getOpzione(QStringLiteral("LockVBEdit")));
    o.lockVBPrezzo = asFlag(getOpzione(QStringLiteral("LockVBPrezzo")));
    o.venditoriObbligatori = asFlag(getOpzione(QStringLiteral("VenditoriObbligatori")));
    o.venditoriBlocco = asFlag(getOpzione(QStringLiteral("VenditoriBlocco")));
    o.pagatoAltriClienti = asFlag(getOpzione(QStringLiteral("PagatoAltriClienti")));
    o.prezzoListino = asFlag(getOpzione(QStringLiteral("PrezzoListino")));

    QSettings& s = machineSettings();
    s.beginGroup(QStringLiteral("Opzioni"));
    o.laserChar = s.value(QStringLiteral("LaserChar")).toString();
    o.clienteChar = s.value(QStringLiteral("ClienteChar")).toString();
    s.endGroup();
    s.beginGroup(QStringLiteral("Options"));
    o.usaGrassetto = machineFlag(s, "UsaGrassetto");
    o.mostraClienteVB = machineFlag(s, "MostraClienteVB");
    o.ignoraVerificaCodiceProdotto = machineFlag(s, "IgnoraVerificaCodiceProdotto");
    o.checkUpgrade = machineFlag(s, "CheckUpgrade");
    s.endGroup();
}
