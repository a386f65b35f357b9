#pragma once
// The round start button at the left end of the panel. It only keeps its looks and tells the
// panel what the user did; the panel runs the menu and resets the pressed look on its tick.

#include <QPixmap>
#include <QWidget>

class QTimer;

class mainButton : public QWidget {
    Q_OBJECT
public:
    explicit mainButton(QWidget *parent = nullptr);

    // 0 normal, 1 hover, 2 pressed, 5..9 the yellow pulse frames; 3 and 4 paint nothing.
    qint32 state = 2;
    bool opened = true;          // the menu counts as open
    bool menuRunning = false;    // the menu's modal run is under way
    QTimer *rainbowTimer = nullptr;
    qint32 rainbowIndex = 4;     // 4..14
    qint32 rainbowRound = 1;     // which pause comes next, 1 or 2

    QPixmap pixNormal;
    QPixmap pixHover;
    QPixmap pixPressed;
    QPixmap pixYellow1;
    QPixmap pixYellow2;
    QPixmap pixYellow3;
    QPixmap pixYellow4;
    QPixmap pixYellow5;

    // The picture painted for a state, or null for states without one.
    const QPixmap *pixmapForState(int s) const;

signals:
    void needOpenMenu();
    void needCloseMenu();
    void needShowWindow();
    void needSetWindowOpacity(int);
    void needMoveWindow();

public slots:
    void rainbowStep();

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
