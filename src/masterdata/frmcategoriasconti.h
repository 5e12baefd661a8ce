#pragma once
// The discount categories, and the way to their ranges: "Configura" opens
// the discount ranges of a brand or the net prices of a product.

#include "screens/framework/crecordscreen.h"

class frmCategoriaSconti : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmCategoriaSconti(QWidget* parent = nullptr);

    // 0 the discount ranges of a brand, 1 the net prices of a product.
    void openConfigForm(int which);

protected:
    bool removeRecord(int rid) override;
};
