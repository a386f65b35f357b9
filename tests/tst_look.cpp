#include "testmain.h"

#include "look/aboutdlg.h"
#include "look/analog_clock.h"
#include "look/chook_style.h"
#include "look/fontwarmup.h"
#include "look/lazyicon.h"
#include "look/resources.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <QSlider>
#include <QStyleOptionButton>
#include <QTemporaryDir>
#include <QtMath>

namespace {
const QString white = QStringLiteral("<p style=\"color:#FFFFFF\">");

QImage clear(int w, int h, QColor fill = Qt::transparent)
{
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    img.fill(fill);
    return img;
}

// Ink in the 3 by 3 pixels around the point at `radius` pixels from the clock's centre, in the
// direction of `degrees` clockwise from twelve.
int inkAt(const QImage &img, double degrees, double radius)
{
    const double a = qDegreesToRadians(degrees);
    const int cx = int(std::floor(34.0 + radius * std::sin(a)));
    const int cy = int(std::floor(32.0 - radius * std::cos(a)));
    int sum = 0;
    for (int i = 0; i < 9; ++i)
        sum += qAlpha(img.pixel(cx - 1 + i % 3, cy - 1 + i / 3));
    return sum;
}
}

class TestLook : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    void fontWarmUpListsTheFamiliesBesideTheCaller()
    {
        FontWarmUp warm({QFont(QStringLiteral("Tahoma"), 11), QApplication::font()});
        warm.wait();
        // Whatever the platform lists (the offscreen platform under Wine has no fonts at all).
        QCOMPARE(warm.families(), QFontDatabase().families().size());
        warm.wait();   // a second wait, and the destructor's, return at once
        FontWarmUp unwaited({QApplication::font()});
    }

    void clockAngles_data()
    {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QList<double>>("angles");   // hour, minute, second
        QTest::newRow("the hour angle is not reduced below 360") << QTime(15, 30, 0) << QList<double>{465, 180, 0};
        QTest::newRow("seconds move the minute hand, minutes the hour hand")
            << QTime(23, 59, 59) << QList<double>{719.5, 359.9, 354};
        QTest::newRow("milliseconds do not count") << QTime(6, 10, 30, 900) << QList<double>{185, 63, 180};
    }

    void clockAngles()
    {
        QFETCH(QTime, time);
        QFETCH(QList<double>, angles);
        QCOMPARE(analog_clock::hourAngle(time), angles[0]);
        QCOMPARE(analog_clock::minuteAngle(time), angles[1]);
        QCOMPARE(analog_clock::secondAngle(time), angles[2]);
    }

    void clockFace()
    {
        // Scaled by 0.27 the hour hand reaches 10.8 px, the minute hand 18.9, the second hand 24.3.
        QImage img = clear(64, 64);
        QPainter painter(&img);
        analog_clock clock(nullptr);
        clock.drawClock(painter, QTime(15, 30, 0));   // hour 105, minute 180, second 0
        painter.end();
        QVERIFY(inkAt(img, 105, 7) > 200 && inkAt(img, 180, 12) > 200 && inkAt(img, 0, 14) > 200);
        QCOMPARE(inkAt(img, 105, 14) + inkAt(img, 270, 12), 0);   // the hour hand is short
        // Marks at the hours only, between 23.8 and 25.9 px out.
        QVERIFY(inkAt(img, 90, 24.8) > 0);
        QCOMPARE(inkAt(img, 15, 24.8), 0);

        // The corner keeps what was behind. Next to the centre, where the hands overlap at any time,
        // the colour is 253, 253, 253, fully opaque.
        img = clear(64, 64, Qt::red);
        clock.render(&img, QPoint(), QRegion(), QWidget::RenderFlags());
        QCOMPARE(QColor(img.pixel(0, 0)), QColor(Qt::red));
        QCOMPARE(QColor(img.pixel(33, 31)), QColor(253, 253, 253));
        // A double click, and only that, asks for the time editor.
        QSignalSpy spy(&clock, &analog_clock::needStartTimeEditor);
        QTest::mouseClick(&clock, Qt::LeftButton, Qt::NoModifier, QPoint(32, 32));
        QTest::mouseDClick(&clock, Qt::LeftButton, Qt::NoModifier, QPoint(32, 32));
        QCOMPARE(spy.count(), 1);
    }

    void lazyIconIsMadeWhenFirstAsked()
    {
        QTemporaryDir dir;
        const QString old = QDir::currentPath();
        QVERIFY(QDir::setCurrent(dir.path()));
        const QIcon relative = lazyFileIcon("late.png");   // against the folder of now
        QVERIFY(QDir::setCurrent(old));
        const QIcon missing = lazyFileIcon(dir.filePath("none.png"));
        QVERIFY(clear(8, 8, Qt::green).save(dir.filePath("late.png")));
        QVERIFY(!relative.isNull());
        QVERIFY(missing.pixmap(8, 8).isNull());
        QCOMPARE(QColor(relative.pixmap(8, 8).toImage().pixel(4, 4)), QColor(Qt::green));
        // Made once: the picture gone afterwards changes nothing, in any copy.
        QVERIFY(QFile::remove(dir.filePath("late.png")));
        const QIcon copy = relative;
        QCOMPARE(QColor(copy.pixmap(8, 8).toImage().pixel(4, 4)), QColor(Qt::green));
    }

    void aboutDialog()
    {
        // No version known: the label is only its white prefix.
        QCOMPARE(formWidget<QLabel>(aboutDlg(nullptr), "label_8")->text(), white);
        shellVersion = QStringLiteral("3.2.1.0");
        webDefault = QStringLiteral("www.kelpie.example");
        aboutDlg dlg(nullptr);
        QCOMPARE(formWidget<QLabel>(dlg, "label_8")->text(), white + "3.2.1.0");
        QCOMPARE(formWidget<QLabel>(dlg, "label_11")->text(), white + "<font size=4>www.kelpie.example");
        // The window's shape cuts the picture's transparent parts.
        const QImage picture = QImage(shellResource("fonAbout.png")).convertToFormat(QImage::Format_ARGB32);
        int seen[2] = {0, 0};   // clear, solid
        for (int y = 0; y < picture.height(); y += 3)
            for (int x = 0; x < picture.width(); x += 3) {
                const int a = qAlpha(picture.pixel(x, y));
                if (a == 0 || a == 255) {
                    ++seen[a / 255];
                    QVERIFY2(dlg.mask().contains(QPoint(x, y)) == (a == 255),
                             qPrintable(QString("%1,%2").arg(x).arg(y)));
                }
            }
        QVERIFY(seen[0] > 0 && seen[1] > 0);
    }

    void buttonSheetsNameTheirOwnBuiltInPictures_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<QString>("letter");
        QTest::newRow("restart") << restartButtonStyleSheet() << "r";
        QTest::newRow("turn off") << turnOffButtonStyleSheet() << "t";
    }

    void buttonSheetsNameTheirOwnBuiltInPictures()
    {
        QFETCH(QString, sheet);
        QFETCH(QString, letter);
        // Normal, hover and pressed, in that order, each a picture that the program carries.
        QStringList named, pictures;
        QRegularExpressionMatchIterator url = QRegularExpression("url\\(([^)]*)\\)").globalMatch(sheet);
        while (url.hasNext())
            named << url.next().captured(1);
        for (const char *look : {"_normal.png", "_hover.png", "_pressed.png"}) {
            pictures << shellResource("buttn_" + letter + look);
            QVERIFY(!QPixmap(pictures.last()).isNull());
        }
        QCOMPARE(named, pictures);
    }

    void stylePolishes()
    {
        // The grey goes to a palette in every group and to a window, not to its children; hover is
        // switched on for buttons and sliders alone.
        chook_style_off style;
        QPalette pal(Qt::red);
        style.polish(pal);
        QCOMPARE(pal.color(QPalette::Disabled, QPalette::Window), QColor(241, 241, 241));
        QCOMPARE(pal.color(QPalette::Button), QColor(Qt::red));
        QWidget window;
        QLabel *label = new QLabel(&window);
        label->setPalette(QPalette(Qt::red));
        const QList<QWidget *> hovering = {new QPushButton(&window), new QRadioButton(&window), new QSlider(&window)};
        for (QWidget *w : QList<QWidget *>{&window, label} + hovering)
            style.polish(w);
        QCOMPARE(window.palette().color(QPalette::Window), QColor(241, 241, 241));
        QCOMPARE(label->palette().color(QPalette::Window), QColor(Qt::red));
        QVERIFY(!label->testAttribute(Qt::WA_Hover));
        for (QWidget *w : hovering) {
            QVERIFY(w->testAttribute(Qt::WA_Hover));
            style.unpolish(w);
            QVERIFY(!w->testAttribute(Qt::WA_Hover));
        }
    }

    void stylePicksPicture_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("look");
        const int on = QStyle::State_Enabled;
        QTest::newRow("enabled: normal") << on << "normal";
        QTest::newRow("enabled under the mouse: hover") << (on | QStyle::State_MouseOver) << "hover";
        QTest::newRow("disabled under the mouse: normal") << int(QStyle::State_MouseOver) << "normal";
        QTest::newRow("sunken: pressed") << (on | QStyle::State_Sunken | QStyle::State_MouseOver) << "pressed";
        QTest::newRow("checked, even disabled: pressed") << int(QStyle::State_On) << "pressed";
    }

    void stylePicksPicture()
    {
        QFETCH(int, state);
        QFETCH(QString, look);
        QCOMPARE(chook_style().pictureFor(QStyle::State(state)), shellResource("buttn_r_" + look + ".png"));
        QCOMPARE(chook_style_off().pictureFor(QStyle::State(state)), shellResource("buttn_t_" + look + ".png"));
    }

    void styleDrawsOnlyButtonsUnscaledAtOrigin()
    {
        QTemporaryDir dir;
        QVERIFY(clear(10, 10, Qt::green).save(dir.filePath("hover.png")));
        picture_button_style style(QString(), dir.filePath("hover.png"), QString());
        // Each paint on a clear image: ink at its first, its last pixel of the picture and past it.
        auto paint = [&](const QStyleOption *opt) {
            QImage img = clear(64, 64);
            QPainter p(&img);
            style.drawPrimitive(QStyle::PE_PanelButtonCommand, opt, &p);
            return QList<int>{qAlpha(img.pixel(0, 0)), qAlpha(img.pixel(9, 9)), qAlpha(img.pixel(10, 10))};
        };
        QStyleOptionButton button, old;
        QStyleOption other;
        button.rect = QRect(20, 20, 40, 40);
        button.state = other.state = old.state = QStyle::State_Enabled | QStyle::State_MouseOver;
        old.version = 0;
        QCOMPARE(paint(&button), QList<int>({255, 255, 0}));
        // No option, an option that is not a button's, or a version 0 one: nothing is drawn.
        for (const QStyleOption *o : std::initializer_list<const QStyleOption *>{nullptr, &other, &old})
            QCOMPARE(paint(o), QList<int>({0, 0, 0}));
    }
};

KELPIE_TEST_MAIN(TestLook)
#include "tst_look.moc"
