#pragma once
// A record screen whose records are found by a number drawn at the first
// save (the address book, the customers and suppliers): the number field,
// shown as "0000", finds the record when left; a new record takes the
// highest number plus one inside the save's transaction, and shows it once
// committed.

#include "screens/framework/crecordscreen.h"

class cNumberedScreen : public cRecordScreen
{
    Q_OBJECT

public:
    using cRecordScreen::cRecordScreen;

    bool saveRecord() override;

    // "0007".
    static QString formatNumero(const QString& number);

protected:
    int writeRecord(int rid) override;
    void fillFields(const Recordset& rs) override;
    void codeLeft(const QString& code) override;
    // The values written for a new record with this number.
    virtual QStringList newValues(int numero) const;

private:
    int m_drawn = 0;
};
