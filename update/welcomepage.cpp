#include "welcomepage.h"
#include "morvaneupdatemanager.h"
#include "qmorvanesettings.h"
#include "updatefacts.h"
#include "updateversion.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QVBoxLayout>
#include <QWizard>

MyItemModel::MyItemModel(int rows, int columns, QObject *parent)
    : QStandardItemModel(rows, columns, parent)
{
}

Qt::ItemFlags MyItemModel::flags(const QModelIndex &index) const
{
    return QStandardItemModel::flags(index) & ~Qt::ItemIsEditable;
}

WelcomePage::WelcomePage(const QString &productName, QWidget *parent) : QWizardPage(parent)
{
    setTitle(tr("<font size=-1>%1%2 v. %3</font>")
                 .arg(productName, QStringLiteral("&trade;"), buildToVersion(currentBuild())));
    setPixmap(QWizard::WatermarkPixmap, QPixmap(QStringLiteral(":/images/watermark.png")));

    introLabel = new QLabel(tr("This wizard will help you update the software to be up to date or "
                               "rollback updates to the previous version."),
                            this);
    introLabel->setWordWrap(true);
    // Stands until the server answers: no answer means this.
    statusLabel = new QLabel(tr("<b><font color=red>Network isn't operational!</font></b> Software update is not available"),
                             this);
    updateCheckBox = new QCheckBox(tr("I agree to download && install the latest software update"), this);
    updateCheckBox->setChecked(true);
    updateCheckBox->hide();
    connect(updateCheckBox, &QCheckBox::toggled, this, &WelcomePage::updateCheckboxClicked);

    auto *model = new MyItemModel(0, 3, this);
    model->setHorizontalHeaderLabels({tr("Version"), tr("Installed"), tr("Status")});
    for (int n = 0; !getUpdateField(n, VersionField).isEmpty(); ++n) {
        model->insertRow(0);
        model->setData(model->index(0, 0), getUpdateField(n, VersionField), Qt::EditRole);
        model->setData(model->index(0, 1), getUpdateField(n, DateField), Qt::EditRole);
        model->setData(model->index(0, 2), getUpdateField(n, TitleField), Qt::EditRole);
        const QString notes = getUpdateField(n, NotesField);
        if (!notes.isEmpty()) {
            model->setData(model->index(0, 0), notes, Qt::ToolTipRole);
            model->setData(model->index(0, 1), notes, Qt::ToolTipRole);
        }
    }
    tree = new QTreeView(this);
    tree->setRootIsDecorated(true);
    tree->setAlternatingRowColors(true);
    tree->setModel(model);
    tree->setMaximumHeight(125);
    tree->setAnimated(true);
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(tree, &QTreeView::clicked, this, &WelcomePage::enableRollbacks);
    connect(tree, &QTreeView::doubleClicked, this, &WelcomePage::showUpdateNotes);

    rollbackCheckBox = new QCheckBox(tr("Rollback current version to the previously installed version"), this);
    rollbackCheckBox->setEnabled(false);
    connect(rollbackCheckBox, &QCheckBox::toggled, this, &WelcomePage::rollbackCheckboxClicked);

    bottomLabel = new QLabel(this);
    bottomLabel->setWordWrap(true);
    bottomLabel->setOpenExternalLinks(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(introLabel);
    layout->addSpacing(10);
    layout->addWidget(statusLabel);
    layout->addWidget(updateCheckBox);
    layout->addWidget(tree);
    layout->addWidget(rollbackCheckBox);
    layout->addWidget(bottomLabel);

    auto *manager = new MorvaneUpdateManager;
    connect(manager, &MorvaneUpdateManager::LatestVersion, this, &WelcomePage::LatestVersion);
    manager->requestLatestVersion(latestVersionUrl());
}

void WelcomePage::initializePage()
{
}

bool WelcomePage::nextReadsClose() const
{
    return wizard() && wizard()->button(QWizard::NextButton)->text() == tr("Close");
}

bool WelcomePage::validatePage()
{
    return (!updateCheckBox->isHidden() && updateCheckBox->isChecked())
           || (rollbackCheckBox->isEnabled() && rollbackCheckBox->isChecked()) || nextReadsClose();
}

int WelcomePage::nextId() const
{
    if (nextReadsClose())
        wizard()->close();
    return updateCheckBox->isChecked() ? 1 : 2;
}

void WelcomePage::LatestVersion(QString text)
{
    const int build = versionToBuild(text);
    if (build <= currentBuild()) {
        statusLabel->setText(tr("<b><font color=red>Your version is the latest!</font></b> Software update is not available"));
        setButtonText(QWizard::NextButton, tr("Close"));
        return;
    }
    newBuild = build;
    updateCheckBox->show();
    statusLabel->setText(tr("<b><font color=red>Update is available!</font></b> Ready to download version <b>%1</b>")
                             .arg(text));
    emit NewVersionExists(build);
}

void WelcomePage::updateCheckboxClicked()
{
    if (updateCheckBox->isChecked())
        rollbackCheckBox->setChecked(false);
}

void WelcomePage::rollbackCheckboxClicked()
{
    if (rollbackCheckBox->isChecked()) {
        updateCheckBox->setChecked(false);
        setButtonText(QWizard::NextButton, tr("Next"));
    } else if (updateCheckBox->isHidden()) {
        setButtonText(QWizard::NextButton, tr("Close"));
    }
}

void WelcomePage::enableRollbacks()
{
    const QModelIndexList selected = tree->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : selected) {
        const QVariant version = index.sibling(index.row(), 0).data(Qt::EditRole);
        if (version.isNull())
            continue;
        rollbackCheckBox->setEnabled(true);
        if (!version.toString().isEmpty())
            emit Rollback(versionToBuild(version.toString()));
    }
}

void WelcomePage::showUpdateNotes()
{
    const QModelIndexList selected = tree->selectionModel()->selectedRows();
    if (selected.isEmpty())
        return;
    const QVariant notes = selected.first().data(Qt::ToolTipRole);
    if (!notes.isNull())
        QMessageBox::information(this, tr("Release Notes"), notes.toString(), QMessageBox::Ok);
}
