#pragma once
// The wizard's first page: the history of updates, the answer of the version check, and the
// choice between the update and a rollback to a version installed earlier.

#include <QCheckBox>
#include <QLabel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QWizardPage>

// The history as the tree shows it: read-only.
class MyItemModel : public QStandardItemModel {
    Q_OBJECT
public:
    MyItemModel(int rows, int columns, QObject *parent = nullptr);
    Qt::ItemFlags flags(const QModelIndex &index) const override;
};

class WelcomePage : public QWizardPage {
    Q_OBJECT
public:
    WelcomePage(const QString &productName, QWidget *parent = nullptr);

    void initializePage() override;
    bool validatePage() override;
    int nextId() const override;

    QTreeView *tree = nullptr;
    QLabel *introLabel = nullptr;
    QLabel *statusLabel = nullptr;
    QCheckBox *updateCheckBox = nullptr;
    QCheckBox *rollbackCheckBox = nullptr;
    QLabel *bottomLabel = nullptr;
    int newBuild = 0;

signals:
    void NewVersionExists(int new_build);
    void Rollback(int prev_build);

private slots:
    void updateCheckboxClicked();
    void rollbackCheckboxClicked();
    void enableRollbacks();
    void showUpdateNotes();
    void LatestVersion(QString text);

private:
    bool nextReadsClose() const;
};
