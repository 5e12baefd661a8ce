#include "optionstore.h"

#include "cadosqlserver.h"
#include "errorlog.h"
#include "italiantext.h"
#include "serversettings.h"
#include "sqlliteral.h"

#include <QSettings>
#include <type_traits>
#include <variant>

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

using OptionMember = std::variant<QString OptionGlobals::*, int OptionGlobals::*, bool OptionGlobals::*>;

struct OptionField
{
    const char* name;
    OptionMember member;
};

// The firm options in the order of the option table: the order in which
// they are loaded at start and written back by the options screen.
const OptionField kFirmOptions[] = {
    {"Amministratore", &OptionGlobals::amministratore},
    {"TipoStampaDistinta", &OptionGlobals::tipoStampaDistinta},
    {"IvaPredRigaLibera", &OptionGlobals::ivaPredRigaLibera},
    {"CatPrezziNetti", &OptionGlobals::catPrezziNetti},
    {"ClientePredefinito", &OptionGlobals::clientePredefinito},
    {"TipoDocVb", &OptionGlobals::tipoDocVb},
    {"CausalePagVb", &OptionGlobals::causalePagVb},
    {"AnnoCorrente", &OptionGlobals::annoCorrente},
    {"ContoClienti", &OptionGlobals::contoClienti},
    {"ContoFornitori", &OptionGlobals::contoFornitori},
    {"DecimaliDopo", &OptionGlobals::decimaliDopo},
    {"VenditoreChar", &OptionGlobals::venditoreChar},
    {"DistintaBase", &OptionGlobals::distintaBase},
    {"RigaLibera", &OptionGlobals::rigaLibera},
    {"GruppoPredefinito", &OptionGlobals::gruppoPredefinito},
    {"GruppoProdInteg", &OptionGlobals::gruppoProdInteg},
    {"GruppoProdCL", &OptionGlobals::gruppoProdCL},
    {"Marca", &OptionGlobals::marca},
    {"Fornitore", &OptionGlobals::fornitore},
    {"TipoDocProd", &OptionGlobals::tipoDocProd},
    {"DocConversione", &OptionGlobals::docConversione},
    {"DocConversioneDDT", &OptionGlobals::docConversioneDDT},
    {"PagamentoVB", &OptionGlobals::pagamentoVB},
    {"PrezzoMedio", &OptionGlobals::prezzoMedio},
    {"MesiPrezzoMedio", &OptionGlobals::mesiPrezzoMedio},
    {"BloccoPN", &OptionGlobals::bloccoPN},
    {"DescPN", &OptionGlobals::descPN},
    {"FidoAllaData", &OptionGlobals::fidoAllaData},
    {"NoShowCptEstratto", &OptionGlobals::noShowCptEstratto},
    {"MostraTotaleRigaMov", &OptionGlobals::mostraTotaleRigaMov},
    {"UsaPrezziIva", &OptionGlobals::usaPrezziIva},
    {"PiePagina", &OptionGlobals::piePagina},
    {"RidIvaProdotti", &OptionGlobals::ridIvaProdotti},
    {"RidUMProdotti", &OptionGlobals::ridUMProdotti},
    {"RidMarcaProdotti", &OptionGlobals::ridMarcaProdotti},
    {"RidCollezioneProdotti", &OptionGlobals::ridCollezioneProdotti},
    {"ReportElencoSpeciale", &OptionGlobals::reportElencoSpeciale},
    {"NumeratoreElencoSpeciale", &OptionGlobals::numeratoreElencoSpeciale},
    {"SottoScorta", &OptionGlobals::sottoScorta},
    {"BloccaSottoScorta", &OptionGlobals::bloccaSottoScorta},
    {"AvvisaSottoScorta", &OptionGlobals::avvisaSottoScorta},
    {"VenditeGiorniDiversi", &OptionGlobals::venditeGiorniDiversi},
    {"BloccaVenditeGiorniDiversi", &OptionGlobals::bloccaVenditeGiorniDiversi},
    {"AvvisaVenditeGiorniDiversi", &OptionGlobals::avvisaVenditeGiorniDiversi},
    {"LockVBEdit", &OptionGlobals::lockVBEdit},
    {"LockVBPrezzo", &OptionGlobals::lockVBPrezzo},
    {"VenditoriObbligatori", &OptionGlobals::venditoriObbligatori},
    {"VenditoriBlocco", &OptionGlobals::venditoriBlocco},
    {"PagatoAltriClienti", &OptionGlobals::pagatoAltriClienti},
    {"PrezzoListino", &OptionGlobals::prezzoListino},
};

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
    for (const OptionField& field : kFirmOptions) {
        const QString value = getOpzione(QLatin1String(field.name));
        std::visit([&](auto member) {
            using Type = std::remove_reference_t<decltype(o.*member)>;
            if constexpr (std::is_same_v<Type, QString>)
                o.*member = value;
            else if constexpr (std::is_same_v<Type, bool>)
                o.*member = asFlag(value);
            else
                o.*member = asInt(value);
        }, field.member);
    }
    if (o.venditoreChar.isEmpty())
        o.venditoreChar = QStringLiteral("%");

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
