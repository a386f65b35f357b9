#pragma once
// The full-screen desktop under the panel: a pool of shortcut buttons laid out as a grid, the
// title in the upper right corner, the remove button of the user programs menu and the wait
// panel of the start-up network steps.

#include <QFileIconProvider>
#include <QList>
#include <QSize>
#include <QString>
#include <QWidget>

class QAction;
class QCloseEvent;
class QLabel;
class QMenu;
class QTimer;
class QToolButton;
class my_ToolButton;

namespace Ui {
class dektopWidget;
}

class dektopWidget : public QWidget {
    Q_OBJECT

public:
    explicit dektopWidget(QWidget *parent = nullptr);
    ~dektopWidget() override;

    // Buttons made once by the constructor; a rebuild never places more than these.
    static constexpr int poolSize = 100;

    // Fits the widget to the screen, moves the title and the wait panel, sets the title text
    // and rebuilds the grid.
    void layoutDesktop(QString title, QString version);
    // Fills the pool from the entries of desktopPath.
    void rebuildDesktop();

    // The text startLink shows for a result of the shell execution of s; empty when the
    // result is not one that is told to the user.
    static QString startLinkMessage(const QString &s, qint32 code);

    // The wait panel's labels and stop button, for the network bring-up.
    QLabel *label() const;       // the message line
    QLabel *label_3() const;     // the attempt number
    QLabel *label_4() const;     // the seconds left
    QLabel *titleLabel() const;
    QToolButton *toolButton() const;

    int desktopHeight = 0;
    int desktopWidth = 0;
    int desktopCount = 0;
    QToolButton *removeButton = nullptr;
    QTimer *removeTimer = nullptr;
    Ui::dektopWidget *ui = nullptr;
    QWidget *waitPanel = nullptr;   // the form's `widget`
    QFileIconProvider iconProvider;
    QMenu *contextMenu = nullptr;
    QList<my_ToolButton *> desktopButtons;

signals:
    void refreshClicked();
    void userProgram_Remove();
    void needStopOperation(int);

public slots:
    void refresh_Slot();
    void startLink(QString s, QString p);

private slots:
    void openDesktopLink();
    void openContMenu(QPoint point);
    void createShotcut_Slot();
    void removeShortCut(QString path);
    void removeUserAction_clicked();
    void hideRemoveButton();
    void on_toolButton_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    // Logical size of the primary screen, the one the panel took (screenWidth, screenHeight);
    // the toolkit's before it was read.
    QSize primaryScreenSize() const;
};
