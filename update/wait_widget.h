#pragma once
// A ring of twelve dots whose red head runs round, for a wait. Built hidden and stopped.

#include <QTimer>
#include <QWidget>

class wait_widget : public QWidget {
    Q_OBJECT
public:
    explicit wait_widget(QWidget *parent = nullptr);

    int step = 0;
    QTimer timer;
    bool running = false;

public slots:
    void init();
    void timerUpdate();
    void stop();

protected:
    void paintEvent(QPaintEvent *event) override;
};
