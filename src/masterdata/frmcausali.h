#pragma once
// The causals: what a document of each type does to stock, journal and due
// dates, who stands on its two sides, and the accounts of its journal lines.

#include "screens/framework/crecordscreen.h"

class frmCausali : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmCausali(QWidget* parent = nullptr);

    // Kinds of origin and destination.
    enum Tipo {
        Nessuna = 0,
        Cliente = 1,
        Fornitore = 2,
        Magazzino = 3
    };

protected:
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QString searchStatement() const override;

private:
    QWidget* sideBox(const QString& title, const char* side);
    QWidget* accountsBox();
    bool checked(const QString& name) const;
    void applyDependencies();
};
