#pragma once
// Proxy styles that paint a push button from three pictures (pressed, hover, normal) over a light
// grey window colour. They wrap the application's style. The turn off dialog creates one of each
// beside its button style sheets.

#include <QProxyStyle>
#include <QString>

// What the two styles share; they differ only in their pictures.
class picture_button_style : public QProxyStyle
{
    Q_OBJECT
public:
    picture_button_style(const QString &pressed, const QString &hover, const QString &normal);
    ~picture_button_style() override;

    void polish(QPalette &palette) override;
    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;

    // The picture a button in this state is painted with.
    QString pictureFor(QStyle::State state) const;

    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

private:
    QString pressedPicture;
    QString hoverPicture;
    QString normalPicture;
};

// The restart button's pictures.
class chook_style : public picture_button_style
{
    Q_OBJECT
public:
    chook_style();
    ~chook_style() override;
};

// The turn off button's pictures.
class chook_style_off : public picture_button_style
{
    Q_OBJECT
public:
    chook_style_off();
    ~chook_style_off() override;
};
