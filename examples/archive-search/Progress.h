#pragma once

#include <QElapsedTimer>

/// A bar on the terminal behind stderr: how much is done, and how fast. Erased at the end.
class Progress
{
public:
    /// Draws nothing unless @p total is above 0.
    explicit Progress(qlonglong total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Cheap enough for every batch of rows: draws ten times a second at most.
    void update(qlonglong done);

    /// Whether there is a terminal to draw on.
    static bool isVisible();

private:
    void draw(qlonglong done);

    qlonglong m_total;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceDrawn;
};
