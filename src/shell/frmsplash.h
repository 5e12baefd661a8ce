#pragma once
// The start window: the program's name, the step in progress and the version.

#include <QWidget>

class QLabel;
class QTimer;

class frmSplash : public QWidget
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget* parent = nullptr);

    // Shows the text of the step in progress and the version line.
    void addInfo(const QString& text);
    QString info() const;

    // Closes the window one second from now.
    void closeIt();

private:
    QLabel* m_lblInfo;
    QLabel* m_lblVersione;
    QTimer* m_tmrUnload;
};
