#pragma once
// The wizard's rollback page: runs the setup kept from an earlier update, silently, polled once a
// second. Kept setups are what make a rollback possible without a network.

#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QWizardPage>

class RollbackPage : public QWizardPage {
    Q_OBJECT
public:
    RollbackPage(const QString &productName, QWidget *parent = nullptr);

    void initializePage() override;
    bool validatePage() override;
    int nextId() const override;

    QString productName;
    QPushButton *button = nullptr;
    QProgressBar *progress = nullptr;
    int rollbackTo = 0;
    QString setupPath;
    QProcess process;
    QLabel *statusLabel = nullptr;
    QLabel *infoLabel = nullptr;

signals:
    void rollbackOK();   // declared; never emitted
    void RollbackComplete(QString text);

private slots:
    void rollbackUpdate();
    void InstallProgress();

public slots:
    void RollbackTo(int prev_build);
};
