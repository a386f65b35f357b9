#include "chook_style.h"

#include "resources.h"

#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyleOption>

namespace {
const QColor windowGrey(241, 241, 241, 255);

bool wantsHover(const QWidget *widget)
{
    return qobject_cast<const QPushButton *>(widget) || qobject_cast<const QRadioButton *>(widget)
        || qobject_cast<const QSlider *>(widget);
}
}

picture_button_style::picture_button_style(const QString &pressed, const QString &hover,
                                           const QString &normal)
    : QProxyStyle()
    , pressedPicture(pressed)
    , hoverPicture(hover)
    , normalPicture(normal)
{
}

picture_button_style::~picture_button_style() = default;

void picture_button_style::polish(QPalette &palette)
{
    palette.setBrush(QPalette::Window, QBrush(windowGrey, Qt::SolidPattern));
}

void picture_button_style::polish(QWidget *widget)
{
    if (wantsHover(widget))
        widget->setAttribute(Qt::WA_Hover, true);
    // Only top-level windows take the grey; children keep what they have.
    QPalette palette = widget->palette();
    if (widget->isWindow()) {
        palette.setBrush(QPalette::Window, QBrush(windowGrey, Qt::SolidPattern));
        widget->setPalette(palette);
    }
}

void picture_button_style::unpolish(QWidget *widget)
{
    if (wantsHover(widget))
        widget->setAttribute(Qt::WA_Hover, false);
}

QString picture_button_style::pictureFor(QStyle::State state) const
{
    if (state & (QStyle::State_Sunken | QStyle::State_On))
        return pressedPicture;
    // A disabled button under the mouse stays normal.
    if ((state & QStyle::State_Enabled) && (state & QStyle::State_MouseOver))
        return hoverPicture;
    return normalPicture;
}

void picture_button_style::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                         QPainter *painter, const QWidget *widget) const
{
    if (element != PE_PanelButtonCommand) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    if (!option || option->version < 1)
        return;
    if (option->type != QStyleOption::SO_Button)
        return;
    painter->save();
    painter->drawPixmap(0, 0, QPixmap(pictureFor(option->state)));
    painter->restore();
}

chook_style::chook_style()
    : picture_button_style(shellResource("buttn_r_pressed.png"),
                           shellResource("buttn_r_hover.png"),
                           shellResource("buttn_r_normal.png"))
{
}

chook_style::~chook_style() = default;

chook_style_off::chook_style_off()
    : picture_button_style(shellResource("buttn_t_pressed.png"),
                           shellResource("buttn_t_hover.png"),
                           shellResource("buttn_t_normal.png"))
{
}

chook_style_off::~chook_style_off() = default;
