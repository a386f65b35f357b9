#include "testmain.h"

#include "look/aboutdlg.h"
#include "look/analog_clock.h"
#include "look/chook_style.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"

#include <QBitmap>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyleOptionButton>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QtMath>

namespace {
const QString white = QStringLiteral("<p style=\"color:#FFFFFF\">");

QImage clear(int w, int h, QColor fill = Qt::transparent)
{
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    img.fill(fill);
    return img;
}

QImage clockAt(const QTime &t)
{
    analog_clock clock(nullptr);
    QImage img = clear(64, 64);
    QPainter p(&img);
    clock.drawClock(p, t);
    p.end();
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
    for (int y = cy - 1; y <= cy + 1; ++y)
        for (int x = cx - 1; x <= cx + 1; ++x)
            sum += qAlpha(img.pixel(x, y));
    return sum;
}

QString plain(const QString &rich)
{
    QTextDocument doc;
    doc.setHtml(rich);
    return doc.toPlainText().trimmed();
}

QString writePicture(const QTemporaryDir &dir, const QString &name, QColor colour)
{
    QImage img = clear(10, 10, colour);
    const QString path = dir.filePath(name);
    img.save(path);
    return path;
}
}

class TestLook : public QObject
{
    Q_OBJECT
private slots:
    void init() { resetGlobals(); }

    void clockAngles_data();
    void clockAngles();
    void clockHandsPointWhereTheAnglesSay();
    void clockCentreStandsRightOfMiddle();
    void clockPaintsOverWhatIsBehind();
    void clockDoubleClickAsksForTimeEditor();

    void aboutFormAndTexts();
    void aboutWithoutVersionShowsCaptionAlone();
    void aboutButtonAccepts();
    void aboutMaskCutsTransparentParts();

    void styleSheets();
    void stylePolishesPalette();
    void stylePolishesWidgets();
    void stylePicksPicture_data();
    void stylePicksPicture();
    void styleDrawsPictureUnscaledAtOrigin();
    void styleIgnoresOtherOptions();
};

void TestLook::clockAngles_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<double>("hour");
    QTest::addColumn<double>("minute");
    QTest::addColumn<double>("second");
    QTest::newRow("midnight") << QTime(0, 0, 0) << 0.0 << 0.0 << 0.0;
    QTest::newRow("15:30 keeps the hour unreduced") << QTime(15, 30, 0) << 465.0 << 180.0 << 0.0;
    QTest::newRow("23:59:59") << QTime(23, 59, 59) << 719.5 << 359.9 << 354.0;
    QTest::newRow("second hand ignores milliseconds") << QTime(6, 10, 30, 900) << 185.0 << 63.0
                                                      << 180.0;
}

void TestLook::clockAngles()
{
    QFETCH(QTime, time);
    QFETCH(double, hour);
    QFETCH(double, minute);
    QFETCH(double, second);
    QVERIFY(qAbs(analog_clock::hourAngle(time) - hour) < 1e-9);
    QVERIFY(qAbs(analog_clock::minuteAngle(time) - minute) < 1e-9);
    QVERIFY(qAbs(analog_clock::secondAngle(time) - second) < 1e-9);
}

void TestLook::clockHandsPointWhereTheAnglesSay()
{
    // Scaled by 0.27 the hour hand reaches 10.8 px, the minute hand 18.9, the second hand 24.3.
    const QImage img = clockAt(QTime(15, 30, 0));   // hour 105, minute 180, second 0
    QVERIFY(inkAt(img, 105, 7) > 200);
    QVERIFY(inkAt(img, 180, 12) > 200);
    QVERIFY(inkAt(img, 0, 14) > 200);
    QCOMPARE(inkAt(img, 105, 14), 0);   // the hour hand is short
    QCOMPARE(inkAt(img, 180, 21), 0);   // the minute hand stops before the marks
    QCOMPARE(inkAt(img, 270, 12), 0);
    QCOMPARE(inkAt(img, 45, 12), 0);
    // Twelve marks between 23.8 and 25.9 px out, at the hours only.
    for (int h = 0; h < 12; ++h)
        QVERIFY2(inkAt(img, h * 30, 24.8) > 0, qPrintable(QString::number(h)));
    QCOMPARE(inkAt(img, 15, 24.8), 0);
    // Where all three hands overlap the colour is 253, 253, 253, fully opaque.
    const QRgb c = img.pixel(33, 31);
    QCOMPARE(qAlpha(c), 255);
    QCOMPARE(QColor(c), QColor(253, 253, 253));
}

void TestLook::clockCentreStandsRightOfMiddle()
{
    // At midnight everything is symmetric about the vertical through the centre.
    const QImage img = clockAt(QTime(0, 0, 0));
    double sum = 0, sumX = 0, sumY = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const int a = qAlpha(img.pixel(x, y));
            sum += a;
            sumX += a * (x + 0.5);
            sumY += a * (y + 0.5);
        }
    QVERIFY(sum > 0);
    QVERIFY2(qAbs(sumX / sum - 34.0) < 0.05, qPrintable(QString::number(sumX / sum)));
    // The hands all point up, so the ink sits above the centre's row.
    QVERIFY(sumY / sum < 32.0);
}

void TestLook::clockPaintsOverWhatIsBehind()
{
    QWidget parent;
    parent.resize(300, 300);
    analog_clock fresh(&parent);
    QCOMPARE(fresh.size(), QSize(64, 64));
    QImage img = clear(64, 64, Qt::red);
    fresh.render(&img, QPoint(), QRegion(), QWidget::RenderFlags());
    // No background of its own: the corner keeps what was behind. The pixels next to the centre
    // lie inside the hour hand at any angle.
    QCOMPARE(QColor(img.pixel(0, 0)), QColor(Qt::red));
    QCOMPARE(QColor(img.pixel(33, 31)), QColor(253, 253, 253));
}

void TestLook::clockDoubleClickAsksForTimeEditor()
{
    analog_clock clock(nullptr);
    QSignalSpy spy(&clock, &analog_clock::needStartTimeEditor);
    QTest::mouseClick(&clock, Qt::LeftButton, Qt::NoModifier, QPoint(32, 32));
    QCOMPARE(spy.count(), 0);
    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(32, 32), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
    dbl.ignore();
    QCoreApplication::sendEvent(&clock, &dbl);
    QCOMPARE(spy.count(), 1);
    QVERIFY(dbl.isAccepted());
}

void TestLook::aboutFormAndTexts()
{
    shellVersion = QStringLiteral("3.2.1.0");
    webDefault = QStringLiteral("www.kelpie.example");
    aboutDlg dlg(nullptr);
    QCOMPARE(dlg.objectName(), QStringLiteral("aboutDlgClass"));
    QCOMPARE(dlg.windowTitle(), QStringLiteral("About"));
    QCOMPARE(dlg.size(), QSize(400, 284));
    QCOMPARE(dlg.windowFlags(),
             Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    QVERIFY(!dlg.layout());

    auto label = [&](const char *name) { return dlg.findChild<QLabel *>(name); };
    QCOMPARE(label("label_8")->text(), white + "3.2.1.0");
    QCOMPARE(label("label_11")->text(), white + "<font size=4>www.kelpie.example");
    QCOMPARE(label("label_8")->geometry(), QRect(110, 145, 251, 20));
    QCOMPARE(label("label_11")->geometry(), QRect(230, 60, 161, 20));
    QVERIFY(!label("label")->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(label("label_6")->wordWrap());
    QCOMPARE(label("label_6")->alignment() & (Qt::AlignLeft | Qt::AlignTop),
             Qt::AlignLeft | Qt::AlignTop);
    for (const char *name : {"label_3", "label_4", "label_6"})
        QVERIFY2(label(name)->text().startsWith(white) && !plain(label(name)->text()).isEmpty(),
                 name);
    auto *ok = dlg.findChild<QPushButton *>("pushButton");
    QCOMPARE(ok->text(), QStringLiteral("OK"));
    QCOMPARE(ok->geometry(), QRect(314, 251, 75, 23));
}

void TestLook::aboutWithoutVersionShowsCaptionAlone()
{
    aboutDlg dlg(nullptr);
    auto *version = dlg.findChild<QLabel *>("label_8");
    QCOMPARE(version->text(), white);
    QCOMPARE(plain(version->text()), QString());
    QCOMPARE(plain(dlg.findChild<QLabel *>("label_12")->text()), QStringLiteral("Version:"));
}

void TestLook::aboutButtonAccepts()
{
    aboutDlg dlg(nullptr);
    dlg.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dlg));
    QTest::mouseClick(dlg.findChild<QPushButton *>("pushButton"), Qt::LeftButton);
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QVERIFY(!dlg.isVisible());
}

void TestLook::aboutMaskCutsTransparentParts()
{
    const QImage picture = QImage(":/my_shell1/Resources/fonAbout.png")
                               .convertToFormat(QImage::Format_ARGB32);
    QVERIFY(!picture.isNull());
    aboutDlg dlg(nullptr);
    const QRegion mask = dlg.mask();
    int clearSeen = 0, solidSeen = 0;
    for (int y = 0; y < picture.height(); y += 3)
        for (int x = 0; x < picture.width(); x += 3) {
            const int a = qAlpha(picture.pixel(x, y));
            if (a == 0) {
                ++clearSeen;
                QVERIFY2(!mask.contains(QPoint(x, y)), qPrintable(QString("%1,%2").arg(x).arg(y)));
            } else if (a == 255) {
                ++solidSeen;
                QVERIFY2(mask.contains(QPoint(x, y)), qPrintable(QString("%1,%2").arg(x).arg(y)));
            }
        }
    if (clearSeen == 0)
        QSKIP("the background picture has no transparent part to cut out");
    QVERIFY(solidSeen > 0);
}

void TestLook::styleSheets()
{
    QCOMPARE(menuStyleSheet(),
             QStringLiteral("QMenu {background-color: #134c78; border: 1px solid black;}"
                            "QMenu::item {background-color: #134c78; color: #FFFFFF;}"
                            "QMenu::item:selected {background-color: #F4DB8F; color: #083894;}"));
    QCOMPARE(restartButtonStyleSheet(),
             QStringLiteral("QPushButton{border: 0px solid #000105;border-radius: 6px;background: "
                            "url(:/my_shell1/Resources/buttn_r_normal.png);}QPushButton:hover "
                            "{background: url(:/my_shell1/Resources/buttn_r_hover.png);}"
                            "QPushButton:pressed {background: "
                            "url(:/my_shell1/Resources/buttn_r_pressed.png);}"));
    QCOMPARE(QString(turnOffButtonStyleSheet()).replace("buttn_t_", "buttn_r_"),
             restartButtonStyleSheet());
    // Every picture that the button sheets name is built in.
    const QRegularExpression url("url\\((:[^)]+)\\)");
    for (const QString &sheet : {restartButtonStyleSheet(), turnOffButtonStyleSheet()}) {
        auto it = url.globalMatch(sheet);
        int n = 0;
        for (; it.hasNext(); ++n) {
            const QString path = it.next().captured(1);
            QVERIFY2(!QPixmap(path).isNull(), qPrintable(path));
        }
        QCOMPARE(n, 3);
    }
    QCOMPARE(whiteLargePrefix(), white + "<font size=4>");
}

void TestLook::stylePolishesPalette()
{
    chook_style style;
    QPalette pal(Qt::red);
    style.polish(pal);
    for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(pal.brush(group, QPalette::Window).color(), QColor(241, 241, 241, 255));
        QCOMPARE(pal.brush(group, QPalette::Window).style(), Qt::SolidPattern);
    }
    QCOMPARE(pal.color(QPalette::Button), QColor(Qt::red));
}

void TestLook::stylePolishesWidgets()
{
    chook_style_off style;
    QWidget window;
    QWidget child(&window);
    QPalette red;
    red.setColor(QPalette::Window, Qt::red);
    child.setPalette(red);
    style.polish(&window);
    style.polish(&child);
    QCOMPARE(window.palette().color(QPalette::Inactive, QPalette::Window), QColor(241, 241, 241));
    QCOMPARE(child.palette().color(QPalette::Window), QColor(Qt::red));

    QPushButton push(&window);
    QRadioButton radio(&window);
    QSlider slider(&window);
    QLabel label(&window);
    for (QWidget *w : {static_cast<QWidget *>(&push), static_cast<QWidget *>(&radio),
                       static_cast<QWidget *>(&slider), static_cast<QWidget *>(&label)}) {
        w->setAttribute(Qt::WA_Hover, false);
        style.polish(w);
    }
    QVERIFY(push.testAttribute(Qt::WA_Hover));
    QVERIFY(radio.testAttribute(Qt::WA_Hover));
    QVERIFY(slider.testAttribute(Qt::WA_Hover));
    QVERIFY(!label.testAttribute(Qt::WA_Hover));
    label.setAttribute(Qt::WA_Hover, true);
    style.unpolish(&push);
    style.unpolish(&label);
    QVERIFY(!push.testAttribute(Qt::WA_Hover));
    QVERIFY(label.testAttribute(Qt::WA_Hover));
}

void TestLook::stylePicksPicture_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("kind");
    const int on = QStyle::State_Enabled;
    QTest::newRow("normal") << on << "normal";
    QTest::newRow("hover") << (on | QStyle::State_MouseOver) << "hover";
    QTest::newRow("disabled under the mouse") << int(QStyle::State_MouseOver) << "normal";
    QTest::newRow("pressed") << (on | QStyle::State_Sunken | QStyle::State_MouseOver) << "pressed";
    QTest::newRow("checked, not pressed") << (on | QStyle::State_On) << "pressed";
    QTest::newRow("checked and disabled") << int(QStyle::State_On) << "pressed";
}

void TestLook::stylePicksPicture()
{
    QFETCH(int, state);
    QFETCH(QString, kind);
    const QStyle::State s(state);
    chook_style restart;
    chook_style_off turnOff;
    QCOMPARE(restart.pictureFor(s), ":/my_shell1/Resources/buttn_r_" + kind + ".png");
    QCOMPARE(turnOff.pictureFor(s), ":/my_shell1/Resources/buttn_t_" + kind + ".png");
}

void TestLook::styleDrawsPictureUnscaledAtOrigin()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    picture_button_style style(writePicture(dir, "p.png", Qt::red),
                               writePicture(dir, "h.png", Qt::green),
                               writePicture(dir, "n.png", Qt::blue));
    QStyleOptionButton opt;
    opt.rect = QRect(20, 20, 40, 40);
    const struct {
        QStyle::State state;
        QColor colour;
    } cases[] = {{QStyle::State_Enabled | QStyle::State_Sunken, Qt::red},
                 {QStyle::State_Enabled | QStyle::State_MouseOver, Qt::green},
                 {QStyle::State_MouseOver, Qt::blue}};
    for (const auto &c : cases) {
        opt.state = c.state;
        QImage img = clear(64, 64);
        QPainter p(&img);
        p.setPen(Qt::yellow);
        style.drawPrimitive(QStyle::PE_PanelButtonCommand, &opt, &p);
        QCOMPARE(p.pen().color(), QColor(Qt::yellow));
        p.end();
        QCOMPARE(QColor(img.pixel(0, 0)), c.colour);
        QCOMPARE(QColor(img.pixel(9, 9)), c.colour);
        QCOMPARE(qAlpha(img.pixel(10, 10)), 0);
        QCOMPARE(qAlpha(img.pixel(30, 30)), 0);
    }
}

void TestLook::styleIgnoresOtherOptions()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    picture_button_style style(writePicture(dir, "p.png", Qt::red),
                               writePicture(dir, "h.png", Qt::red),
                               writePicture(dir, "n.png", Qt::red));
    QImage img = clear(64, 64);
    QPainter p(&img);
    style.drawPrimitive(QStyle::PE_PanelButtonCommand, nullptr, &p);
    QStyleOption plainOption;   // not a button option
    plainOption.state = QStyle::State_Enabled;
    style.drawPrimitive(QStyle::PE_PanelButtonCommand, &plainOption, &p);
    QStyleOptionButton old;
    old.version = 0;
    style.drawPrimitive(QStyle::PE_PanelButtonCommand, &old, &p);
    p.end();
    QCOMPARE(qAlpha(img.pixel(0, 0)), 0);

}

KELPIE_TEST_MAIN(TestLook)
#include "tst_look.moc"
