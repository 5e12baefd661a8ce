#include "screens/framework/cfieldleave.h"

#include <QApplication>
#include <QWidget>

cFieldLeave::cFieldLeave(QWidget* screen, std::function<bool(QWidget* old)> handler)
    : QObject(screen)
{
    m_watch = connect(qApp, &QApplication::focusChanged, this,
                      [this, screen, handler = std::move(handler)](QWidget* old, QWidget* now) {
                          if (!old || !now || !screen->isAncestorOf(old) || !screen->isAncestorOf(now))
                              return;
                          if (m_refocusing)
                              return;
                          m_refused = false;
                          if (!handler(old)) {
                              m_refused = true;
                              m_refocusing = true;
                              old->setFocus();
                              m_refocusing = false;
                          }
                      });
}

// The screen still moves the focus while its window closes.
cFieldLeave::~cFieldLeave() { disconnect(m_watch); }
