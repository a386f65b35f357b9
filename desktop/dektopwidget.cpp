#include "dektopwidget.h"
#include "ui_dektopwidget.h"

#include "my_toolbutton.h"
#include "launcher/appstart.h"
#include "look/lazyicon.h"
#include "look/resources.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"
#include "platform/platform.h"
#include "settings/savedvolume.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QToolButton>

namespace {

const int columnStep = 120;
const int rowStep = 60;
const int gridMargin = 20;
const int buttonWidth = 110;
const int buttonHeight = 60;
// A column ends once the next row would come within this of the lower edge.
const int columnReserve = 220;

} // namespace

dektopWidget::dektopWidget(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint
                          | Qt::WindowDoesNotAcceptFocus),
      ui(new Ui::dektopWidget)
{
    ui->setupUi(this);
    waitPanel = ui->widget;

    // The shortcut buttons' looks ride on this one sheet: parsed once, not two hundred times.
    setStyleSheet(desktopStyleSheet(menuStyle));

    removeButton = new QToolButton(this);
    removeButton->setGeometry(450, 150, 25, 25);
    // Hidden until an entry is pointed at: decoded then.
    removeButton->setIcon(lazyFileIcon(shellResource("cancel.png")));
    removeButton->setAutoRaise(true);
    // The word on this button has always been "Refresh"; users know it so.
    removeButton->setToolTip(tr("Refresh"));
    removeButton->hide();
    connect(removeButton, &QToolButton::clicked, this, &dektopWidget::removeUserAction_clicked);

    removeTimer = new QTimer(this);
    connect(removeTimer, &QTimer::timeout, this, &dektopWidget::hideRemoveButton);

    for (QLabel *l : {ui->label, ui->label_2, ui->label_3, ui->label_4, ui->label_5})
        l->setStyleSheet(whiteTextStyleSheet());

    contextMenu = new QMenu(this);
    contextMenu->setStyleSheet(menuStyle);
    contextMenu->setFont(menuFont());
    QAction *createAction = new QAction(tr("Create Shortcut"), this);
    connect(createAction, &QAction::triggered, this, &dektopWidget::createShotcut_Slot);
    contextMenu->addAction(createAction);
    QAction *refreshAction = new QAction(tr("Refresh"), this);
    connect(refreshAction, &QAction::triggered, this, &dektopWidget::refresh_Slot);
    contextMenu->addAction(refreshAction);
    connect(this, &QWidget::customContextMenuRequested, this, &dektopWidget::openContMenu);

    const QSize screen = primaryScreenSize();
    desktopHeight = screen.height();
    desktopWidth = screen.width();
    desktopCount = 0;

    desktopButtons.reserve(poolSize);
    for (int i = 0; i < poolSize; ++i) {
        my_ToolButton *b = new my_ToolButton(this);
        b->hide();
        b->setIconSize(QSize(32, 32));
        b->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        b->setAutoRaise(true);
        connect(b, &QToolButton::clicked, this, &dektopWidget::openDesktopLink);
        connect(b, &my_ToolButton::removeShortCut, this, &dektopWidget::removeShortCut);
        desktopButtons.append(b);
    }
}

dektopWidget::~dektopWidget()
{
    delete ui;
}

QLabel *dektopWidget::label() const { return ui->label; }
QLabel *dektopWidget::label_3() const { return ui->label_3; }
QLabel *dektopWidget::label_4() const { return ui->label_4; }
QLabel *dektopWidget::titleLabel() const { return ui->titleLabel; }
QToolButton *dektopWidget::toolButton() const { return ui->toolButton; }

QSize dektopWidget::primaryScreenSize() const
{
    // The panel's screen, which a simulated display may make smaller than the toolkit's.
    if (screenWidth > 0 && screenHeight > 0)
        return QSize(screenWidth, screenHeight);
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->size() : QSize();
}

void dektopWidget::layoutDesktop(QString title, QString version)
{
    const QSize screen = primaryScreenSize();
    desktopHeight = screen.height();
    desktopWidth = screen.width();
    resize(desktopWidth, desktopHeight);

    ui->titleLabel->setGeometry(desktopWidth - 430, 50, 390, 200);

    // Each half is rounded down by itself.
    waitPanel->move(desktopWidth / 2 - waitPanel->width() / 2,
                    desktopHeight / 2 - waitPanel->height() / 2);

    ui->titleLabel->setText(
        QStringLiteral("<span style=\"font-size:18px;\"><font color=\"#FFFFFF\"><B>") + title
        + QStringLiteral("</B><br><span style=\"font-size:14px;\"><font color=\"#FFFFFF\">")
        + version + QStringLiteral("<br></p>"));

    rebuildDesktop();
}

void dektopWidget::rebuildDesktop()
{
    for (my_ToolButton *b : qAsConst(desktopButtons))
        b->hide();
    desktopCount = 0;

    QString folder = desktopPath;
    if (!folder.endsWith(QLatin1Char('/')) && !folder.endsWith(QLatin1Char('\\')))
        folder += QLatin1Char('/');
    const QDir dir(sys().hostPath(folder));
    if (!dir.exists())
        return;

    const QStringList entries = dir.entryList(
        QStringList{QStringLiteral("*")},
        QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDir::Name | QDir::IgnoreCase);

    int column = 0;
    int row = 0;
    for (const QString &name : entries) {
        if (isDesktopIni(name))
            continue;
        // The pool is all there is; entries past it get no button.
        if (desktopCount >= desktopButtons.size())
            break;

        my_ToolButton *b = desktopButtons.at(desktopCount);
        b->show();
        b->setGeometry(column * columnStep + gridMargin, row * rowStep + gridMargin, buttonWidth,
                       buttonHeight);
        const QFileInfo info(dir.absoluteFilePath(name));
        b->path = sys().drivePath(info.absoluteFilePath());
        b->setText(info.baseName());
        b->setIcon(QIcon(pixmapForFile(folder + name)));
        ++desktopCount;

        if (row * rowStep + columnReserve > desktopHeight) {
            ++column;
            row = 0;
        } else {
            ++row;
        }
    }
}

QString dektopWidget::startLinkMessage(const QString &s, qint32 code)
{
    const char *text = nullptr;
    switch (code) {
    case 0:
        text = QT_TR_NOOP("The operating system is out of memory or resources.");
        break;
    case 2:
        text = QT_TR_NOOP("The specified file was not found.");
        break;
    case 3:
        text = QT_TR_NOOP("The specified path was not found.");
        break;
    case 5:
        text = QT_TR_NOOP("The operating system denied access to the specified file.");
        break;
    case 8:
        text = QT_TR_NOOP("There was not enough memory to complete the operation.");
        break;
    case 11:
        text = QT_TR_NOOP(
            "The .exe file is invalid (non-Microsoft Win32 .exe or error in .exe image).");
        break;
    case 26:
        text = QT_TR_NOOP("A sharing violation occurred.");
        break;
    case 27:
        text = QT_TR_NOOP("The file name association is incomplete or invalid.");
        break;
    case 28:
        text = QT_TR_NOOP(
            "The DDE transaction could not be completed because the request timed out.");
        break;
    case 29:
        text = QT_TR_NOOP("The DDE transaction failed.");
        break;
    case 30:
        text = QT_TR_NOOP("The Dynamic Data Exchange (DDE) transaction could not be completed "
                          "because other DDE transactions were being processed.");
        break;
    case 31:
        text = QT_TR_NOOP("There is no application associated with the given file name "
                          "extension. This error will also be returned if you attempt to print "
                          "a file that is not printable.");
        break;
    case 32:
        text = QT_TR_NOOP("The specified dynamic-link library (DLL) was not found.");
        break;
    default:
        return QString();
    }
    const QString head = tr("Windows cannot start ") + QLatin1Char('"') + s + QLatin1Char('"')
                         + QStringLiteral(".\n");
    return head + tr(text);
}

void dektopWidget::startLink(QString s, QString p)
{
    const ShellResult result = appstart::open(s, p);
    const QString message = startLinkMessage(s, qint32(result.code));
    if (message.isEmpty())
        return;
    QMessageBox::critical(nullptr, tr("Error"), message, QMessageBox::Ok);
}

void dektopWidget::openDesktopLink()
{
    const my_ToolButton *b = qobject_cast<my_ToolButton *>(sender());
    if (!b)
        return;
    QString path = b->path;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    startLink(path, QString());
}

void dektopWidget::openContMenu(QPoint point)
{
    contextMenu->exec(mapToGlobal(point));
}

void dektopWidget::createShotcut_Slot()
{
    appstart::open(QStringLiteral("X:\\Program Files\\kelpie\\createShortcut.exe"));
}

void dektopWidget::removeShortCut(QString path)
{
    if (QFile::remove(sys().hostPath(path)))
        rebuildDesktop();

    // The saved copy on the settings medium goes too, even when the file itself stayed.
    removeSavedTwin(QStringLiteral("Desktop.1"), path);
}

void dektopWidget::refresh_Slot()
{
    rebuildDesktop();
    emit refreshClicked();
}

void dektopWidget::removeUserAction_clicked()
{
    emit userProgram_Remove();
}

void dektopWidget::hideRemoveButton()
{
    removeButton->hide();
}

void dektopWidget::on_toolButton_clicked()
{
    emit needStopOperation(1);
}

void dektopWidget::closeEvent(QCloseEvent *event)
{
    // The desktop stays as long as the shell; the window system does not close it.
    event->ignore();
}
