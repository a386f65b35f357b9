#pragma once
// The update wizard: the history and the version check, then the download and install or a
// rollback, then the result. Nothing in the shell opens it; runUpdateWizard does.

#include <QWizard>

class WelcomePage;
class UpdatePage;
class RollbackPage;
class FinishPage;

class UpdateWizard : public QWizard {
    Q_OBJECT
public:
    enum { WelcomePageId, UpdatePageId, RollbackPageId, FinishPageId };

    UpdateWizard(int startId, const QString &productName, QWidget *parent = nullptr);

    WelcomePage *welcomePage = nullptr;
    UpdatePage *updatePage = nullptr;
    RollbackPage *rollbackPage = nullptr;
    FinishPage *finishPage = nullptr;

public slots:
    void showHelp();
};

// Runs the wizard from its first page; true when it ended accepted.
bool runUpdateWizard();
