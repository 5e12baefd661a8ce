#pragma once
// The address book: names, addresses and phones of people who are neither
// customers nor suppliers, numbered in their own sequence.

#include "screens/framework/cnumberedscreen.h"

class frmRubrica : public cNumberedScreen
{
    Q_OBJECT

public:
    explicit frmRubrica(QWidget* parent = nullptr);

    // 0 by name, 1 by city.
    void cmdSfoglia_Click(int index) override;

protected:
    QString searchStatement() const override;
};
