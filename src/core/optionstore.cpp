#include "core/optionstore.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QSettings>

#include <type_traits>
#include <variant>

namespace {
const QString kModule = QStringLiteral("bOrvantis");

int asInt(const QString& text) { return int(getValoreNumerico(text)); }

bool asFlag(const QString& text) { return getValoreNumerico(text) != 0; }

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

// The machine options that the options screen edits: section, key, global.
// CheckUpgrade belongs to the notice of a newer version, which writes it.
struct MachineField
{
    const char* section;
    const char* name;
    OptionMember member;
};

const MachineField kMachineOptions[] = {
    {"Opzioni", "LaserChar", &OptionGlobals::laserChar},
    {"Opzioni", "ClienteChar", &OptionGlobals::clienteChar},
    {"Options", "UsaGrassetto", &OptionGlobals::usaGrassetto},
    {"Options", "MostraClienteVB", &OptionGlobals::mostraClienteVB},
    {"Options", "IgnoraVerificaCodiceProdotto", &OptionGlobals::ignoraVerificaCodiceProdotto},
};

bool machineFlag(QSettings& s, const char* key)
{
    return asFlag(s.value(QLatin1String(key), QStringLiteral("0")).toString());
}

const OptionMember* memberOf(const QString& nome)
{
    for (const OptionField& field : kFirmOptions)
        if (nome == QLatin1String(field.name))
            return &field.member;
    for (const MachineField& field : kMachineOptions)
        if (nome == QLatin1String(field.name))
            return &field.member;
    return nullptr;
}

QString memberText(const OptionGlobals& o, const OptionMember& member)
{
    return std::visit(
        [&](auto m) -> QString {
            using Type = std::remove_cvref_t<decltype(o.*m)>;
            if constexpr (std::is_same_v<Type, QString>)
                return o.*m;
            else if constexpr (std::is_same_v<Type, bool>)
                return (o.*m) ? QStringLiteral("1") : QStringLiteral("0");
            else
                return QString::number(o.*m);
        },
        member);
}

void setMember(OptionGlobals& o, const OptionMember& member, const QString& value)
{
    std::visit(
        [&](auto m) {
            using Type = std::remove_reference_t<decltype(o.*m)>;
            if constexpr (std::is_same_v<Type, QString>)
                o.*m = value;
            else if constexpr (std::is_same_v<Type, bool>)
                o.*m = asFlag(value);
            else
                o.*m = asInt(value);
        },
        member);
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
    const cReader rs(QStringLiteral("select valore from Opzioni where nome = ") + sqlText(nome),
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
    if (!ok)
        notifyError(kModule, QStringLiteral("getOpzione"), QStringLiteral("Nome=") + nome);
    return value;
}

void setOpzione(const QString& nome, const QString& valore)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString tag = kModule + QStringLiteral(".setOpzione");
    const QVariant count =
        db.getValueBySQL(QStringLiteral("SELECT COUNT(NOME) FROM Opzioni WHERE NOME = ") + sqlText(nome), tag);
    if (!count.isValid())
        return;
    QString sql;
    if (count.toInt() > 0)
        sql = QStringLiteral("UPDATE Opzioni SET VALORE = ") + sqlText(valore) + QStringLiteral(" WHERE NOME = ")
            + sqlText(nome);
    else
        sql = QStringLiteral("INSERT INTO Opzioni (NOME, VALORE) VALUES (") + sqlText(nome) + QStringLiteral(" , ")
            + sqlText(valore) + QLatin1Char(')');
    db.executeSQL(sql, tag);
}

void loadOptionGlobals()
{
    OptionGlobals& o = gOptions();
    for (const OptionField& field : kFirmOptions) {
        setMember(o, field.member, getOpzione(QLatin1String(field.name)));
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

QStringList firmOptionNames()
{
    QStringList names;
    for (const OptionField& field : kFirmOptions)
        names << QLatin1String(field.name);
    return names;
}

QString optionText(const OptionGlobals& options, const QString& nome)
{
    const OptionMember* member = memberOf(nome);
    return member ? memberText(options, *member) : QString();
}

bool setOptionText(OptionGlobals& options, const QString& nome, const QString& valore)
{
    const OptionMember* member = memberOf(nome);
    if (!member)
        return false;
    setMember(options, *member, valore);
    if (options.venditoreChar.isEmpty())
        options.venditoreChar = QStringLiteral("%"); // as at start
    return true;
}

void saveMachineOptions(const OptionGlobals& options)
{
    QSettings& s = machineSettings();
    for (const MachineField& field : kMachineOptions)
        s.setValue(QLatin1String(field.section) + QLatin1Char('/') + QLatin1String(field.name),
                   memberText(options, field.member));
    s.sync();
}

void saveOptionGlobals()
{
    const OptionGlobals& o = gOptions();
    for (const OptionField& field : kFirmOptions)
        setOpzione(QLatin1String(field.name), memberText(o, field.member));
    saveMachineOptions(o);
}
