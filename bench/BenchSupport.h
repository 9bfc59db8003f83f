#pragma once

// What the benchmarks share: medians, the wait for a widget to be painted,
// the resident memory of the process, and the line that prints a program's
// figure beside its reference and their ratio.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "UiPort.h"
#include "frame/view/QtUi.h"

namespace Bench {

inline double median(std::vector<double> v)
{
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

inline double ms(const QElapsedTimer& t)
{
    return t.nsecsElapsed() / 1e6;
}

// The widget of that name in the windows on screen.
template <class T> T* shown(const QString& name)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->isVisible())
            if (T* found = top->findChild<T*>(name))
                return found;
    return nullptr;
}

// Counts the paint events a widget receives.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* widget) : m_widget(widget) { widget->installEventFilter(this); }
    int paints() const { return m_paints; }
    // Lets pending events run, and paints the widget at once when they did
    // not paint it since `since` paints.
    void waitPaintedAfter(int since) const
    {
        QApplication::processEvents();
        if (m_paints <= since)
            m_widget->repaint();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_paints;
        return false;
    }

private:
    QWidget* m_widget;
    int m_paints = 0;
};

// Resident memory of this process, in MiB.
inline double residentMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

// "what   program   reference   ratio  (goal)".
inline void printRatio(const char* what, double program, double reference, double goal,
                       const char* unit = "ms")
{
    const double ratio = reference > 0 ? program / reference : 0;
    std::printf("%-34s %9.1f %s %9.1f %s %6.2fx  %s\n", what, program, unit, reference, unit, ratio,
                ratio <= goal ? "ok" : "OVER GOAL");
    std::fflush(stdout);
}

inline void printHeader(const char* title, double goal)
{
    std::printf("%s (goal: program within %.1fx the reference)\n", title, goal);
    std::printf("%-34s %12s %12s %7s\n", "", "program", "reference", "ratio");
}

// The Qt port, with every question answered "Yes" and every message
// acknowledged at once: the benchmarks time the work, not a person reading.
class AnsweringUi : public QtUi
{
public:
    int messageBox(const QString& text, int style, const QString& title) override
    {
        Q_UNUSED(title);
        m_texts << text;
        return (style & 0xF) == Msg::YesNo ? Msg::Yes : Msg::Ok;
    }
    QStringList m_texts;
};

} // namespace Bench
