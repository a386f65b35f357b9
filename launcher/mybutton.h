#pragma once
// A launcher button of the panel: a picture that swells under the mouse while its neighbours
// (by id) swell half way. The panel relays who is active through its button_is_active(int).

#include <QLabel>
#include <QPixmap>
#include <QString>

class MyButton : public QLabel {
    Q_OBJECT
public:
    MyButton(QWidget *parent, int x, int y, int id, int sizeClass, const QString &normalPath,
             const QString &nearPath, const QString &activePath, const QString &tip);

    enum Look { Rest, Near, Hover, Pressed };
    // Size and offset from the rest position of a look, for this button's size class.
    QSize lookSize(Look look) const;
    QPoint lookOffset(Look look) const;

    QPixmap picNormal;
    QPixmap picNear;
    QPixmap picActive;
    qint32 posX = 0;
    qint32 posY = 0;
    qint32 id = 0;
    qint32 sizeClass = 1;
    bool hovered = false;
    QString tip;

signals:
    void i_am_active(int);
    void looseActive();
    void mButtonClicked(int);

public slots:
    void near_button_is_active(int n);

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void showLook(Look look);
};
