#pragma once
// "Informazioni su...": the program, its version and the database in use.

#include <QDialog>

class frmInformazioni : public QDialog
{
    Q_OBJECT

public:
    explicit frmInformazioni(QWidget* parent = nullptr);
};
