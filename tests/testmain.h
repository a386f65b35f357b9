#pragma once
// Every suite runs on the offscreen platform; set here because Wine does not pass QT_* variables
// into a Windows process.
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

// A widget of a form by its designer name: generated form headers stay private to their library.
// Only widgets in the owner's own window count: dialogs it keeps have forms with the same names.
template <typename T = QWidget>
T *formWidget(const QObject &owner, const char *name)
{
    const QWidget *ownerWidget = qobject_cast<const QWidget *>(&owner);
    for (T *w : owner.findChildren<T *>(QLatin1String(name)))
        if (!ownerWidget || !qobject_cast<QWidget *>(w)
            || qobject_cast<QWidget *>(w)->window() == ownerWidget->window())
            return w;
    qFatal("no form widget %s", name);
}

#define KELPIE_TEST_MAIN(TestClass)                                  \
    int main(int argc, char *argv[])                                 \
    {                                                                \
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))          \
            qputenv("QT_QPA_PLATFORM", "offscreen");                 \
        QApplication app(argc, argv);                                \
        /* Menus appear at once, so a test sees their final place. */ \
        QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);   \
        QApplication::setEffectEnabled(Qt::UI_FadeMenu, false);      \
        TestClass tc;                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                   \
        return QTest::qExec(&tc, argc, argv);                        \
    }

// Answers the next message box with `answer` and records "title|text|buttons", "|parented" if it
// had a parent. A click, since the static question reads the button clicked, not the result.
#include <QMessageBox>
#include <QTimer>
inline void answerBox(QString *seen, QMessageBox::StandardButton answer = QMessageBox::Ok)
{
    seen->clear();
    QTimer::singleShot(0, [seen, answer]() {
        if (QMessageBox *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            *seen = box->windowTitle() + '|' + box->text() + '|' + QString::number(int(box->standardButtons()))
                    + (box->parentWidget() ? "|parented" : "");
            box->button(answer) ? box->button(answer)->click() : box->done(answer);
        }
    });
}
