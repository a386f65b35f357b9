#pragma once
// Every suite runs on the offscreen platform; set here because Wine does not pass QT_* variables
// into a Windows process.
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

// A widget of a form by its designer name: generated form headers stay private to their library.
template <typename T = QWidget>
T *formWidget(const QObject &owner, const char *name)
{
    T *w = owner.findChild<T *>(QLatin1String(name));
    if (!w)
        qFatal("no form widget %s", name);
    return w;
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
