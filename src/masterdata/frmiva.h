#pragma once
// The VAT rates: code, description and rate.

#include "screens/framework/crecordscreen.h"

class frmIva : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmIva(QWidget* parent = nullptr);

protected:
    QStringList faults() const override;
    QString searchStatement() const override;
    // The system's own rates begin with key 1.
    bool protectsFirstRow() const override { return true; }
};
