#pragma once
// A long run on the screen's thread brings its window up to date a few times
// a second, and at its first and last step: not at every one of thousands of
// steps, which would spend the run redrawing.

#include <QElapsedTimer>
#include <QtGlobal>

class RitmoDisegno
{
public:
    // A new run: its first step is drawn.
    void azzera() { m_ultimo.invalidate(); }

    // True when the window is due now; its clock starts again then.
    bool tocca(qint64 fatto, qint64 totale)
    {
        constexpr qint64 kIntervalloMs = 80;
        if (fatto > 1 && fatto < totale && m_ultimo.isValid() && m_ultimo.elapsed() < kIntervalloMs)
            return false;
        m_ultimo.start();
        return true;
    }

private:
    QElapsedTimer m_ultimo;
};
